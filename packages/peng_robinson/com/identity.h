// Who the package and its manager are: identifiers and names. Chosen once; never to be changed, because
// clients store them.
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
inline constexpr wchar_t packageAbout[] = L"Tarnwick Peng-Robinson CAPE-OPEN 1.1 property package";

// {BEB0F1DE-6F53-44A9-B382-F371CEA70202}
inline constexpr GUID managerClsid = {
    0xBEB0F1DE, 0x6F53, 0x44A9, {0xB3, 0x82, 0xF3, 0x71, 0xCE, 0xA7, 0x02, 0x02}};

inline constexpr wchar_t managerProgId[] = L"Tarnwick.PengRobinsonManager.1";
inline constexpr wchar_t managerVersionIndependentProgId[] = L"Tarnwick.PengRobinsonManager";
inline constexpr wchar_t managerName[] = L"Peng-Robinson packages";
inline constexpr wchar_t managerDescription[] =
    L"Peng-Robinson equation of state (1976) for several choices of compounds, and for compounds of your own";
inline constexpr wchar_t managerAbout[] = L"Tarnwick Peng-Robinson CAPE-OPEN 1.1 property package manager";

inline constexpr wchar_t vendorUrl[] = L"https://tarnwick.example/";

} // namespace peng_robinson
