// FrontEnd: the object that the add-in finds as COMAddIns("Quorvane").Object and hands its services to.
#pragma once

#include "com/com_ptr.h"
#include "com/dual.h"
#include "com/implements.h"

#include <quorvane_idl.h>

namespace sheet::excel {

/// Under this name the front end is registered in Excel.
inline constexpr const wchar_t* frontEndName = L"Quorvane";

class FrontEnd final : public com::implements<com::COMObject, com::RefusedDual<IQuorvaneVSTOContext>> {
  public:
    void* findInterface(REFIID iid) noexcept override;
    HRESULT STDMETHODCALLTYPE SetServices(IQuorvaneVSTOServices* services) noexcept override;

    com::com_ptr<IDispatch> dispatch() noexcept { return com::com_ptr<IDispatch>::share(this); }

    /// Null until the add-in has handed them over.
    IQuorvaneVSTOServices* services() const noexcept { return services_.get(); }
    /// The services keep the add-in alive: let them go before it is to be unloaded.
    void letGo() noexcept { services_.reset(); }

    int handOvers() const noexcept { return handOvers_; }
    /// From now on SetServices answers this and keeps nothing.
    void refuse(HRESULT code) noexcept { refusal_ = code; }

  private:
    com::com_ptr<IQuorvaneVSTOServices> services_;
    int handOvers_ = 0;
    HRESULT refusal_ = S_OK;
};

} // namespace sheet::excel
