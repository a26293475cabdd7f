#include "src/material/cape_open_base.h"

#include "com/owned.h"

namespace quorvane {

namespace {

HRESULT giveText(BSTR* out, std::wstring_view text) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

} // namespace

CAPEOPENBASE::CAPEOPENBASE(std::wstring name, bool identityFixed)
    : name_{std::move(name)}, identityFixed_{identityFixed} {}

void* CAPEOPENBASE::findInterface(REFIID iid) noexcept {
    // Several of the faces are an IDispatch; the identification is the one that stands for the object.
    return implements::findInterface(iid == IID_IDispatch ? __uuidof(ICapeIdentification) : iid);
}

void CAPEOPENBASE::recordError(const wchar_t* description, const wchar_t* scope,
                               const wchar_t* interfaceName) noexcept {
    try {
        errorDescription_ = description == nullptr ? L"" : description;
        errorScope_ = scope;
        errorInterface_ = interfaceName;
    } catch (...) {
        // Out of memory for the texts: the failing status still reaches the caller.
        errorDescription_.clear();
    }
}

HRESULT CAPEOPENBASE::notImplemented(const wchar_t* operation, const wchar_t* interfaceName,
                                     const void* required) noexcept {
    return required == nullptr ? E_POINTER : notImplemented(operation, interfaceName);
}

HRESULT CAPEOPENBASE::notImplemented(const wchar_t* operation, const wchar_t* interfaceName) noexcept {
    recordError(L"Not implemented", operation, interfaceName);
    return static_cast<HRESULT>(ECapeNoImplHR);
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_ComponentName(BSTR* name) noexcept {
    return giveText(name, name_);
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::put_ComponentName(BSTR name) noexcept {
    return capeCall(L"put_ComponentName", L"ICapeIdentification", [&] {
        if (identityFixed_) {
            throw CWStrException{L"The name of this object cannot be changed"};
        }
        if (com::viewOf(name).empty()) {
            throw CWStrException{L"Name cannot be empty"};
        }
        name_ = com::viewOf(name);
    });
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_ComponentDescription(BSTR* description) noexcept {
    return giveText(description, description_);
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::put_ComponentDescription(BSTR description) noexcept {
    return capeCall(L"put_ComponentDescription", L"ICapeIdentification", [&] {
        if (identityFixed_) {
            throw CWStrException{L"The description of this object cannot be changed"};
        }
        description_ = com::viewOf(description);
    });
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_name(BSTR* name) noexcept {
    return giveText(name, errorDescription_);
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_code(LONG* code) noexcept {
    if (code == nullptr) {
        return E_POINTER;
    }
    *code = 0;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_description(BSTR* description) noexcept {
    return giveText(description, errorDescription_);
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_scope(BSTR* scope) noexcept {
    return giveText(scope, errorScope_);
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_interfaceName(BSTR* interfaceName) noexcept {
    return giveText(interfaceName, errorInterface_);
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_operation(BSTR* operation) noexcept {
    return giveText(operation, L"N/A");
}

HRESULT STDMETHODCALLTYPE CAPEOPENBASE::get_moreInfo(BSTR* moreInfo) noexcept {
    return giveText(moreInfo, L"For more info, please see https://tarnwick.example/quorvane");
}

} // namespace quorvane
