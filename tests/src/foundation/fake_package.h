// The error texts and life cycle of a property package, as a test sets them.
#pragma once

#include "com/com_ptr.h"
#include "com/dual.h"
#include "com/implements.h"

#include <capeopen_idl.h>

#include <optional>
#include <string>

namespace quorvane {

class FakePackage final
    : public com::implements<com::COMObject, com::RefusedDual<ECapeUser>, com::RefusedDual<ECapeRoot>,
                             com::RefusedDual<ICapeUtilities>> {
  public:
    static inline const std::wstring nullText = L"(success without a text)";
    static inline const std::wstring failingText = L"(failure)";

    std::optional<std::wstring> description; ///< set: the package answers for ECapeUser
    std::optional<std::wstring> name;        ///< set: the package answers for ECapeRoot
    bool hasUtilities = true;
    HRESULT lifeCycleResult = S_OK;
    int queries = 0;
    std::wstring calls;

    IUnknown* object() noexcept { return static_cast<com::COMObject*>(this); }

    void* findInterface(REFIID iid) noexcept override {
        ++queries;
        if ((iid == __uuidof(ECapeUser) && !description) || (iid == __uuidof(ECapeRoot) && !name) ||
            (iid == __uuidof(ICapeUtilities) && !hasUtilities)) {
            return nullptr;
        }
        return implements::findInterface(iid);
    }

    HRESULT STDMETHODCALLTYPE get_code(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_description(BSTR* text) noexcept override {
        return give(*description, text);
    }
    HRESULT STDMETHODCALLTYPE get_scope(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_interfaceName(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_operation(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_moreInfo(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_name(BSTR* text) noexcept override { return give(*name, text); }

    HRESULT STDMETHODCALLTYPE get_parameters(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_simulationContext(IDispatch*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Initialize() noexcept override { return called(L"Initialize "); }
    HRESULT STDMETHODCALLTYPE Terminate() noexcept override { return called(L"Terminate "); }
    HRESULT STDMETHODCALLTYPE Edit() noexcept override { return called(L"Edit "); }

  private:
    static HRESULT give(const std::wstring& answer, BSTR* text) noexcept {
        *text = nullptr;
        if (answer == failingText) {
            return E_FAIL;
        }
        if (answer != nullText) {
            *text = SysAllocString(answer.c_str());
        }
        return S_OK;
    }

    HRESULT called(const wchar_t* operation) {
        calls += operation;
        return lifeCycleResult;
    }
};

} // namespace quorvane
