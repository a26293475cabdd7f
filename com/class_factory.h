// CClassFactory<T>: the class object of a creatable class. T is derived from COMObject and has a default
// constructor.
#pragma once

#include "com/com_ptr.h"
#include "com/guarded.h"
#include "com/implements.h"

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
        return guarded(E_FAIL, [&] { return make<T>()->queryInterface(iid, out); });
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
    if (!isReadyToThrow()) {
        return E_OUTOFMEMORY;
    }
    return guarded(E_UNEXPECTED, [&] { return make<CClassFactory<T>>()->queryInterface(iid, out); });
}

} // namespace com
