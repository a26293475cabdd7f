// Late binding of the Excel class.
#include "src/server/excel.h"
#include "src/server/late_calls.h"

namespace quorvane {

HRESULT STDMETHODCALLTYPE Excel::GetTypeInfoCount(UINT* count) noexcept {
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 1;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Excel::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
    return com::giveTypeInfo(__uuidof(IQuorvaneUDF), index, info);
}

HRESULT STDMETHODCALLTYPE Excel::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                               DISPID* ids) noexcept {
    ITypeInfo* const info = com::keptTypeInfoOf<IQuorvaneVSTOServices>();
    return info == nullptr ? DISP_E_UNKNOWNNAME : DispGetIDsOfNames(info, names, count, ids);
}

HRESULT STDMETHODCALLTYPE Excel::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                        VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept {
    if (parameters == nullptr) {
        return E_INVALIDARG;
    }
    ITypeInfo* const info = com::keptTypeInfoOf<IQuorvaneVSTOServices>();
    if (info == nullptr) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    auto* const self = static_cast<IQuorvaneVSTOServices*>(this);
    return isWorksheetFunction(member)
               ? invokeWorksheetFunction(self, info, spare_, member, flags, *parameters, result, exception,
                                         argument)
               : invokeService(self, info, member, flags, *parameters, result, exception, argument);
}

} // namespace quorvane
