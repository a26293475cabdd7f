#include "sheet/excel/front_end.h"

namespace sheet::excel {

void* FrontEnd::findInterface(REFIID iid) noexcept {
    return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : implements::findInterface(iid);
}

HRESULT STDMETHODCALLTYPE FrontEnd::SetServices(IQuorvaneVSTOServices* services) noexcept {
    ++handOvers_;
    if (FAILED(refusal_)) {
        return refusal_;
    }
    services_ = com::com_ptr<IQuorvaneVSTOServices>::share(services);
    return S_OK;
}

} // namespace sheet::excel
