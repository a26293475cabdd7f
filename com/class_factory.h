// CClassFactory<T>: the class object of a creatable class. T is derived from COMObject and has a default
// constructor.
#pragma once

#include "com/com_ptr.h"
#include "com/implements.h"

#include <new>

namespace com {

template <typename T>
class CClassFactory final : public implements<COMObject, IClassFactory> {
  public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        try {
            return make<T>()->queryInterface(iid, out);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }

    // A lock outlives the factory, so it counts like an object of its own.
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
        liveObjects += lock ? 1 : -1;
        return S_OK;
    }
};

/// DllGetClassObject for a module with the single class T.
template <typename T>
HRESULT getClassObject(REFCLSID expected, REFCLSID clsid, REFIID iid, void** out) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    if (clsid != expected) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    try {
        return make<CClassFactory<T>>()->queryInterface(iid, out);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

} // namespace com
