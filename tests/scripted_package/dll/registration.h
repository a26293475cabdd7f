// Enters the classes of this DLL for the current user as CAPE-OPEN components, and takes them out again.
#pragma once

#include "com/platform.h"

namespace scripted {

/// {5D1B6C5B-0C5C-4C4E-9C55-3C0C4A6B7101} and {5D1B6C5B-0C5C-4C4E-9C55-3C0C4A6B7102}
inline constexpr CLSID packageClass = {
    0x5D1B6C5B, 0x0C5C, 0x4C4E, {0x9C, 0x55, 0x3C, 0x0C, 0x4A, 0x6B, 0x71, 0x01}};
inline constexpr CLSID managerClass = {
    0x5D1B6C5B, 0x0C5C, 0x4C4E, {0x9C, 0x55, 0x3C, 0x0C, 0x4A, 0x6B, 0x71, 0x02}};

HRESULT registerClasses() noexcept;
HRESULT unregisterClasses() noexcept;

} // namespace scripted
