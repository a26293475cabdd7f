// The type library embedded in the module that this code is linked into, and the module itself.
#pragma once

#include "com/platform.h"

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

/// IDispatch::GetTypeInfo for interface `iid`: the form that describes it to automation clients.
HRESULT giveTypeInfo(REFIID iid, UINT index, ITypeInfo** out) noexcept;

} // namespace com
