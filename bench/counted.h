// CountedObject: base of the bench's own COM objects, which count the calls that cross an interface: those
// that they receive, and those that the package makes on its material.
#pragma once

#include "com/com_object.h"

namespace bench {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): all objects count together
inline long interfaceCalls = 0;

class CountedObject : public com::COMObject {
  public:
    void* findInterface(REFIID iid) noexcept override {
        return iid == IID_IUnknown ? static_cast<IUnknown*>(static_cast<com::COMObject*>(this)) : nullptr;
    }
    ULONG addReference() noexcept override {
        ++interfaceCalls;
        return com::COMObject::addReference();
    }
    ULONG releaseReference() noexcept override {
        ++interfaceCalls;
        return com::COMObject::releaseReference();
    }
    HRESULT queryInterface(REFIID iid, void** out) noexcept override {
        ++interfaceCalls;
        return com::COMObject::queryInterface(iid, out);
    }
};

} // namespace bench
