// COMObject: base of every COM object written here. It owns the reference count and the query for interfaces;
// a derived class only says which pointer answers which identifier (usually through implements.h).
// Objects live in one apartment, so the count is a plain counter. A new object has no references:
// the first holder adds one, and the last Release destroys the object, unless a held_ptr holds it.
#pragma once

#include "com/module.h"
#include "com/platform.h"

#include <cstdint>

namespace com {

template <typename T>
class held_ptr;

class COMObject : public IUnknown {
  public:
    COMObject(const COMObject&) = delete;
    COMObject& operator=(const COMObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;

    /// The pointer that answers `iid`, without a reference added, or null.
    virtual void* findInterface(REFIID iid) noexcept = 0;

    // The same three operations for the interface faces of a derived class: each face's IUnknown forwards
    // here.
    virtual ULONG addReference() noexcept;
    virtual ULONG releaseReference() noexcept;
    /// E_POINTER for a null `out`; E_NOINTERFACE with `*out` emptied; else S_OK with a reference added.
    virtual HRESULT queryInterface(REFIID iid, void** out) noexcept;

    virtual ~COMObject();

  protected:
    COMObject() noexcept;

  private:
    template <typename T>
    friend class held_ptr;

    std::uint32_t references_ = 0;
    bool isHeld_ = false; ///< the last reference belongs to a held_ptr
};

} // namespace com
