#include "tests/fuzz/fuzz.h"

#include <algorithm>

namespace fuzz {

std::uint8_t Input::byte() {
    const auto taken = take(1);
    return taken.empty() ? std::uint8_t{0} : taken.front();
}

std::uint16_t Input::word() {
    const unsigned low = byte();
    return static_cast<std::uint16_t>(low | unsigned{byte()} << 8U);
}

std::string_view Input::line() {
    const auto end = std::ranges::find(left_, std::uint8_t{'\n'});
    const auto taken = take(static_cast<std::size_t>(end - left_.begin()));
    take(1);
    return Input{taken}.text();
}

std::span<const std::uint8_t> Input::take(std::size_t count) {
    const auto taken = left_.first(std::min(count, left_.size()));
    left_ = left_.subspan(taken.size());
    return taken;
}

std::string_view Input::text() {
    const auto bytes = rest();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void require(bool holds, const char* promise) {
    if (!holds) {
        throw Broken{promise};
    }
}

std::wstring wide(std::string_view text) {
    std::wstring result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            result.push_back(byte);
        } else {
            const unsigned low = ++i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
            result.push_back(static_cast<wchar_t>(unsigned{byte} << 8U | low));
        }
    }
    return result;
}

std::wstring repeated(std::wstring_view text, std::size_t length) {
    std::wstring result;
    while (!text.empty() && result.size() < length) {
        result += text.substr(0, length - result.size());
    }
    return result;
}

std::vector<std::wstring> parts(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring> result{{}};
    for (const wchar_t unit : text) {
        if (unit == separator) {
            result.emplace_back();
        } else {
            result.back().push_back(unit);
        }
    }
    return result;
}

} // namespace fuzz
