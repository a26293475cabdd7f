// Texts of the plain parts are UTF-8, those of Windows are UTF-16.
#pragma once

#include "com/platform.h"

#include <string>
#include <string_view>

namespace peng_robinson {

inline std::wstring widen(std::string_view text) {
    // One UTF-16 unit at most comes from each byte.
    std::wstring result(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    result.resize(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), size)));
    return result;
}

inline std::string narrow(std::wstring_view text) {
    // Three bytes at most come from each UTF-16 unit.
    std::string result(3 * text.size(), '\0');
    result.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(),
                            static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}

} // namespace peng_robinson
