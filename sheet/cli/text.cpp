#include "sheet/cli/text.h"

#include <array>
#include <cstdio>

namespace sheet::cli {

std::wstring toWide(std::string_view text) {
    const int length =
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
    return wide;
}

std::string toUtf8(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

std::string systemText(HRESULT code) {
    std::array<wchar_t, 512> buffer{};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), 0, buffer.data(),
                                        static_cast<DWORD>(buffer.size()), nullptr);
    std::string text = toUtf8({buffer.data(), length});
    text.erase(text.find_last_not_of(" \r\n") + 1);
    if (text.empty()) {
        std::array<char, 32> number{};
        std::snprintf(number.data(), number.size(), "error code 0x%08lX", static_cast<unsigned long>(code));
        text = number.data();
    }
    return text;
}

} // namespace sheet::cli
