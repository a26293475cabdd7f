// CAPEOPENBASE: base of the CAPE-OPEN objects that the system shows to property packages. It gives the object
// its identity and the error interfaces through which a package that received a failing status reads what
// went wrong. Late binding is refused: packages call through the vtable.
#pragma once

#include "com/dual.h"
#include "com/implements.h"
#include "src/foundation/exceptions.h"

#include <capeopen_idl.h>
#include <string>
#include <utility>

namespace quorvane {

// All error interfaces are always answered; the status that the failing method returned tells the kind.
class CAPEOPENBASE
    : public com::implements<com::COMObject, com::RefusedDual<ICapeIdentification>,
                             com::RefusedDual<ECapeRoot>, com::RefusedDual<ECapeUser>,
                             com::RefusedDual<ECapeUnknown>, com::RefusedDual<ECapeImplementation>,
                             com::RefusedDual<ECapeNoImpl>, com::RefusedDual<ECapeLimitedImpl>,
                             com::RefusedDual<ECapeInvalidOperation>, com::RefusedDual<ECapeComputation>,
                             com::RefusedDual<ECapeFailedInitialisation>, com::RefusedDual<ECapeSolvingError>,
                             com::RefusedDual<ECapeThrmPropertyNotAvailable>> {
  public:
    void* findInterface(REFIID iid) noexcept override;

    // ICapeIdentification
    HRESULT STDMETHODCALLTYPE get_ComponentName(BSTR* name) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ComponentName(BSTR name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ComponentDescription(BSTR* description) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ComponentDescription(BSTR description) noexcept override;

    // ECapeRoot
    HRESULT STDMETHODCALLTYPE get_name(BSTR* name) noexcept override;

    // ECapeUser
    HRESULT STDMETHODCALLTYPE get_code(LONG* code) noexcept override;
    HRESULT STDMETHODCALLTYPE get_description(BSTR* description) noexcept override;
    HRESULT STDMETHODCALLTYPE get_scope(BSTR* scope) noexcept override;
    HRESULT STDMETHODCALLTYPE get_interfaceName(BSTR* interfaceName) noexcept override;
    HRESULT STDMETHODCALLTYPE get_operation(BSTR* operation) noexcept override;
    HRESULT STDMETHODCALLTYPE get_moreInfo(BSTR* moreInfo) noexcept override;

  protected:
    /// With `identityFixed` the name and description cannot be changed through ICapeIdentification.
    CAPEOPENBASE(std::wstring name, bool identityFixed);

    /// Keeps the error for ECapeUser until the next one replaces it.
    void recordError(const wchar_t* description, const wchar_t* scope, const wchar_t* interfaceName) noexcept;

    /// The frame of every CAPE-OPEN method: a failure of `body` is recorded and returned as ECapeUnknown.
    template <typename Body>
    HRESULT capeCall(const wchar_t* scope, const wchar_t* interfaceName, Body&& body) noexcept {
        try {
            std::forward<Body>(body)();
            return S_OK;
        } catch (const WException& failure) {
            recordError(failure.message(), scope, interfaceName);
        } catch (...) {
            recordError(L"Unhandled exception", scope, interfaceName);
        }
        return static_cast<HRESULT>(ECapeUnknownHR);
    }

    /// The answer of an operation that the object does not support; `required` is the pointer that the caller
    /// must have given.
    HRESULT notImplemented(const wchar_t* operation, const wchar_t* interfaceName,
                           const void* required) noexcept;
    HRESULT notImplemented(const wchar_t* operation, const wchar_t* interfaceName) noexcept;
    /// The same for an operation that returns a result, which is left empty: its caller did not initialise
    /// it.
    template <typename Result>
    HRESULT notImplementedResult(const wchar_t* operation, const wchar_t* interfaceName,
                                 Result* result) noexcept {
        if (result != nullptr) {
            *result = Result{};
        }
        return notImplemented(operation, interfaceName, result);
    }

  private:
    std::wstring name_;
    std::wstring description_;
    std::wstring errorDescription_;
    std::wstring errorScope_;
    std::wstring errorInterface_;
    bool identityFixed_;
};

} // namespace quorvane
