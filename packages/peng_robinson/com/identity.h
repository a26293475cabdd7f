// Who this package is: identifiers and names. Chosen once; never to be changed, because clients store them.
#pragma once

#include "com/platform.h"

namespace peng_robinson {

// {481616A8-47AD-4A42-BE09-E48AFDFC9868}
inline constexpr GUID packageClsid = {
    0x481616A8, 0x47AD, 0x4A42, {0xBE, 0x09, 0xE4, 0x8A, 0xFD, 0xFC, 0x98, 0x68}};

inline constexpr wchar_t packageProgId[] = L"Tarnwick.PengRobinson.1";
inline constexpr wchar_t packageVersionIndependentProgId[] = L"Tarnwick.PengRobinson";
inline constexpr wchar_t packageName[] = L"Peng-Robinson";
inline constexpr wchar_t packageDescription[] =
    L"Peng-Robinson equation of state (1976) for natural gas and light hydrocarbons";
inline constexpr wchar_t packageVendorUrl[] = L"https://tarnwick.example/";
inline constexpr wchar_t packageAbout[] = L"Tarnwick Peng-Robinson CAPE-OPEN 1.1 property package";

} // namespace peng_robinson
