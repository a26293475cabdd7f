// The type library embedded in the module that this code is linked into, and the module itself.
#pragma once

#include "com/platform.h"

#include <atomic>
#include <string>

namespace com {

/// The module (DLL or program) that this code is linked into.
HMODULE thisModule() noexcept;

/// Full file name of thisModule().
std::wstring thisModulePath();

/// Type information of interface `iid` from the module's embedded type library (first TYPELIB resource), in
/// its vtable form, which invoking needs. Loaded once and kept for the life of the process; null when the
/// library or the interface is missing. Borrowed.
ITypeInfo* typeInfoOf(REFIID iid) noexcept;

/// The same, kept by the caller: every late call needs it, and looking it up takes a lock.
/// Looked for again where it was not found, as when there was no memory for it.
template <typename Interface>
ITypeInfo* keptTypeInfoOf() noexcept {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): kept for later calls
    static std::atomic<ITypeInfo*> kept{nullptr};
    ITypeInfo* info = kept;
    if (info == nullptr) {
        info = typeInfoOf(__uuidof(Interface));
        kept = info;
    }
    return info;
}

/// IDispatch::GetTypeInfo for interface `iid`: the form that describes it to automation clients.
HRESULT giveTypeInfo(REFIID iid, UINT index, ITypeInfo** out) noexcept;

} // namespace com
