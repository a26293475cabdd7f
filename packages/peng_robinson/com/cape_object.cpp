#include "packages/peng_robinson/com/cape_object.h"

#include "com/owned.h"
#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/eos/errors.h"

#include <new>
#include <string_view>

namespace peng_robinson {
namespace {

HRESULT give(BSTR* out, std::wstring_view text) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    try {
        *out = com::makeBstr(text).release();
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

template <typename T>
HRESULT give(T* out, T value) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = value;
    return S_OK;
}

} // namespace

CapeObject::CapeObject(std::wstring name, std::wstring description)
    : name_{std::move(name)}, description_{std::move(description)} {}

// Automation clients that ask for no interface in particular get the identification.
void* CapeObject::findInterface(REFIID iid) noexcept {
    return implements::findInterface(iid == IID_IDispatch ? __uuidof(ICapeIdentification) : iid);
}

HRESULT CapeObject::recordCurrentException(const wchar_t* interfaceName, const wchar_t* operation) noexcept {
    ErrorRecord record;
    record.interfaceName = interfaceName;
    record.operation = operation;
    const auto set = [&record](eCapeErrorInterfaceHR code, const std::exception& error) {
        record.code = static_cast<HRESULT>(code);
        record.description = widen(error.what());
    };
    try {
        try {
            throw;
        } catch (const ArgumentError& error) {
            record.code = error.code();
            record.description = error.description();
            record.position = error.position();
        } catch (const CapeError& error) {
            record.code = error.code();
            record.description = error.description();
        } catch (const eos::OutOfRange& error) {
            set(ECapeOutOfBoundsHR, error);
            record.value = error.value();
            record.lower = error.lower();
            record.upper = error.upper();
        } catch (const eos::InvalidInput& error) {
            set(ECapeInvalidArgumentHR, error);
        } catch (const eos::NotAvailable& error) {
            set(ECapeThrmPropertyNotAvailableHR, error);
        } catch (const eos::NoConvergence& error) {
            set(ECapeSolvingErrorHR, error);
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            set(ECapeUnknownHR, error);
        }
    } catch (const std::bad_alloc&) {
        // Here ends also a failure for whose text there is no memory. What is told instead takes none.
        record.code = static_cast<HRESULT>(ECapeNoMemoryHR);
    } catch (...) {
        record.code = static_cast<HRESULT>(ECapeUnknownHR);
    }
    error_ = std::move(record);
    return error_.code;
}

HRESULT STDMETHODCALLTYPE CapeObject::get_ComponentName(BSTR* name) noexcept { return give(name, name_); }

HRESULT STDMETHODCALLTYPE CapeObject::put_ComponentName(BSTR name) noexcept {
    return call(L"ICapeIdentification", L"ComponentName", [&] {
        if (com::viewOf(name).empty()) {
            throw ArgumentError{1, L"The name of the component cannot be empty"};
        }
        name_ = com::viewOf(name);
    });
}

HRESULT STDMETHODCALLTYPE CapeObject::get_ComponentDescription(BSTR* description) noexcept {
    return give(description, description_);
}

HRESULT STDMETHODCALLTYPE CapeObject::put_ComponentDescription(BSTR description) noexcept {
    return call(L"ICapeIdentification", L"ComponentDescription",
                [&] { description_ = com::viewOf(description); });
}

HRESULT STDMETHODCALLTYPE CapeObject::get_name(BSTR* name) noexcept {
    return give(name, errorName(error_.code));
}

// The component's own number: the part of the code that tells one error from another.
HRESULT STDMETHODCALLTYPE CapeObject::get_code(LONG* code) noexcept {
    return give<LONG>(code, HRESULT_CODE(error_.code));
}

HRESULT STDMETHODCALLTYPE CapeObject::get_description(BSTR* description) noexcept {
    return error_.code == static_cast<HRESULT>(ECapeNoMemoryHR) ? give(description, L"Not enough memory")
                                                                : give(description, error_.description);
}

HRESULT STDMETHODCALLTYPE CapeObject::get_scope(BSTR* scope) noexcept {
    try {
        return give(scope, std::wstring{L"PengRobinson::"} + error_.interfaceName + L"::" + error_.operation);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE CapeObject::get_interfaceName(BSTR* interfaceName) noexcept {
    return give(interfaceName, error_.interfaceName);
}

HRESULT STDMETHODCALLTYPE CapeObject::get_operation(BSTR* operation) noexcept {
    return give(operation, error_.operation);
}

HRESULT STDMETHODCALLTYPE CapeObject::get_moreInfo(BSTR* moreInfo) noexcept {
    return give(moreInfo, L"See the documentation of the Tarnwick Peng-Robinson property package.");
}

HRESULT STDMETHODCALLTYPE CapeObject::get_position(short* position) noexcept {
    return give(position, error_.position);
}

HRESULT STDMETHODCALLTYPE CapeObject::get_LowerBound(double* lowerBound) noexcept {
    return give(lowerBound, error_.lower);
}

HRESULT STDMETHODCALLTYPE CapeObject::get_UpperBound(double* upperBound) noexcept {
    return give(upperBound, error_.upper);
}

HRESULT STDMETHODCALLTYPE CapeObject::get_value(double* value) noexcept { return give(value, error_.value); }

HRESULT STDMETHODCALLTYPE CapeObject::get_Type(BSTR* type) noexcept { return give(type, L"CapeReal"); }

HRESULT STDMETHODCALLTYPE CapeObject::get_requestedOperation(BSTR* operation) noexcept {
    return give(operation, error_.operation);
}

} // namespace peng_robinson
