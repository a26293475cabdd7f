#include "com/com_object.h"

namespace com {

COMObject::COMObject() noexcept { ++liveObjects; }

COMObject::~COMObject() { --liveObjects; }

HRESULT STDMETHODCALLTYPE COMObject::QueryInterface(REFIID iid, void** out) noexcept {
    return queryInterface(iid, out);
}

ULONG STDMETHODCALLTYPE COMObject::AddRef() noexcept { return addReference(); }

ULONG STDMETHODCALLTYPE COMObject::Release() noexcept { return releaseReference(); }

ULONG COMObject::addReference() noexcept { return ++references_; }

ULONG COMObject::releaseReference() noexcept {
    if (isHeld_ && references_ == 1) {
        return references_;
    }
    const std::uint32_t left = --references_;
    if (left == 0) {
        // A destructor that hands `this` out for a moment (releasing a partner that releases us back) must
        // not bring the count to zero a second time.
        references_ = 1U << 30U;
        delete this;
    }
    return left;
}

HRESULT COMObject::queryInterface(REFIID iid, void** out) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = findInterface(iid);
    if (*out == nullptr) {
        return E_NOINTERFACE;
    }
    addReference();
    return S_OK;
}

} // namespace com
