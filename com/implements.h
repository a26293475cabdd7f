// implements<Base, Interfaces...>: a COM object says which interfaces it has by listing them once.
// Base is COMObject or another implements<>; its own interfaces stay answered. A listed type may be an
// interface or a face of one (dual.h) that names it as `interface_type`.
#pragma once

#include "com/com_object.h"

#include <type_traits>

namespace com {

namespace detail {
template <typename Face>
auto interfaceOf(int) -> typename Face::interface_type;
template <typename Face>
auto interfaceOf(long) -> Face;
} // namespace detail

template <typename Face>
using interface_of = decltype(detail::interfaceOf<Face>(0));

// The faces are abstract here: only the most derived class is complete.
template <typename Base, typename... Faces>
class implements : public Base, public Faces... {
  public:
    using Base::Base;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) noexcept override {
        return this->queryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return this->addReference(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return this->releaseReference(); }

    void* findInterface(REFIID iid) noexcept override {
        void* found = nullptr;
        (offer<Faces>(iid, found) || ...);
        if (found != nullptr) {
            return found;
        }
        if constexpr (std::is_same_v<Base, COMObject>) {
            return iid == IID_IUnknown ? static_cast<IUnknown*>(static_cast<COMObject*>(this)) : nullptr;
        } else {
            return Base::findInterface(iid);
        }
    }

  private:
    template <typename Face>
    bool offer(REFIID iid, void*& found) noexcept {
        if (iid != __uuidof(interface_of<Face>)) {
            return false;
        }
        found = static_cast<interface_of<Face>*>(static_cast<Face*>(this));
        return true;
    }
};

} // namespace com
