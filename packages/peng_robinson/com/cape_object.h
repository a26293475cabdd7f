// CapeObject: base of the package's COM object. It gives it a name and a description, the error interfaces
// that a client asks after a failing call, and the frame in which every CAPE-OPEN method runs.
#pragma once

#include "com/dual.h"
#include "com/implements.h"
#include "packages/peng_robinson/com/cape_error.h"

#include <string>
#include <utility>

namespace peng_robinson {

// COM knows no inheritance between error interfaces, so the object answers those of every error it can raise
// and of their ancestors; the code that the failing method returned tells which one it was.
class CapeObject
    : public com::implements<com::COMObject, com::ServedDual<ICapeIdentification>, com::ServedDual<ECapeRoot>,
                             com::ServedDual<ECapeUser>, com::ServedDual<ECapeUnknown>,
                             com::ServedDual<ECapeData>, com::ServedDual<ECapeBadArgument>,
                             com::ServedDual<ECapeInvalidArgument>, com::ServedDual<ECapeOutOfBounds>,
                             com::ServedDual<ECapeBoundaries>, com::ServedDual<ECapeImplementation>,
                             com::ServedDual<ECapeNoImpl>, com::ServedDual<ECapeLimitedImpl>,
                             com::ServedDual<ECapeComputation>, com::ServedDual<ECapeOutOfResources>,
                             com::ServedDual<ECapeNoMemory>, com::ServedDual<ECapeFailedInitialisation>,
                             com::ServedDual<ECapeSolvingError>, com::ServedDual<ECapeBadInvOrder>,
                             com::ServedDual<ECapeThrmPropertyNotAvailable>> {
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

    // ECapeBadArgument
    HRESULT STDMETHODCALLTYPE get_position(short* position) noexcept override;

    // ECapeBoundaries
    HRESULT STDMETHODCALLTYPE get_LowerBound(double* lowerBound) noexcept override;
    HRESULT STDMETHODCALLTYPE get_UpperBound(double* upperBound) noexcept override;
    HRESULT STDMETHODCALLTYPE get_value(double* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Type(BSTR* type) noexcept override;

    // ECapeBadInvOrder
    HRESULT STDMETHODCALLTYPE get_requestedOperation(BSTR* operation) noexcept override;

  protected:
    CapeObject(std::wstring name, std::wstring description);

    const std::wstring& name() const noexcept { return name_; }

    /// The frame of every CAPE-OPEN method: no exception leaves it, and each becomes a code and its texts.
    template <typename Body>
    HRESULT call(const wchar_t* interfaceName, const wchar_t* operation, Body&& body) noexcept {
        try {
            std::forward<Body>(body)();
            return S_OK;
        } catch (...) {
            return recordCurrentException(interfaceName, operation);
        }
    }

  private:
    struct ErrorRecord {
        HRESULT code = S_OK;
        std::wstring description; ///< empty when there is no memory
        const wchar_t* interfaceName = L"";
        const wchar_t* operation = L"";
        short position = 0;
        double value = 0.0, lower = 0.0, upper = 0.0;
    };

    HRESULT recordCurrentException(const wchar_t* interfaceName, const wchar_t* operation) noexcept;

    std::wstring name_;
    std::wstring description_;
    ErrorRecord error_;
};

} // namespace peng_robinson
