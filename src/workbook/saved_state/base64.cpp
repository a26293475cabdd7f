#include "src/workbook/saved_state/base64.h"

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

constexpr std::wstring_view alphabet = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr wchar_t padding = L'=';
constexpr std::uint8_t skipped = 0xFF;

// Workbooks have always been read by the low byte alone.
constexpr std::uint8_t lowByte(wchar_t unit) noexcept { return static_cast<std::uint8_t>(unit); }

constexpr std::array<std::uint8_t, 256> makeValues() {
    std::array<std::uint8_t, 256> values{};
    values.fill(skipped);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        values[lowByte(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    values[lowByte(padding)] = 0;
    return values;
}
constexpr std::array<std::uint8_t, 256> values = makeValues();

constexpr std::uint8_t valueOf(wchar_t unit) noexcept { return values[lowByte(unit)]; }
constexpr bool counts(wchar_t unit) noexcept { return valueOf(unit) != skipped; }

std::size_t trailingPadding(std::wstring_view text) noexcept {
    std::size_t count = 0;
    for (std::size_t i = text.size(); i-- > 0;) {
        if (!counts(text[i])) {
            continue;
        }
        if (lowByte(text[i]) != padding) {
            break;
        }
        ++count;
    }
    return count;
}

} // namespace

std::wstring toBase64(std::span<const std::uint8_t> bytes) {
    std::wstring text(base64Length(bytes.size()), padding);
    auto digit = text.begin();
    const auto put = [&digit](std::uint32_t group, std::size_t digits) {
        for (std::size_t i = 0; i < digits; ++i) {
            *digit++ = alphabet[group >> (18U - 6U * i) & 0x3FU];
        }
    };
    for (; bytes.size() >= 3; bytes = bytes.subspan(3)) {
        put(std::uint32_t{bytes[0]} << 16U | std::uint32_t{bytes[1]} << 8U | bytes[2], 4);
    }
    if (bytes.size() == 2) {
        put(std::uint32_t{bytes[0]} << 16U | std::uint32_t{bytes[1]} << 8U, 3);
    } else if (bytes.size() == 1) {
        put(std::uint32_t{bytes[0]} << 16U, 2);
    }
    return text;
}

Bytes fromBase64(std::wstring_view text) {
    Bytes bytes(text.size() / 4 * 3); // the most that it can hold
    auto byte = bytes.begin();
    const auto put = [&byte](std::uint32_t group) {
        for (const unsigned shift : {16U, 8U, 0U}) {
            *byte++ = static_cast<std::uint8_t>(group >> shift);
        }
    };
    std::uint32_t group = 0;
    unsigned filled = 0;
    for (std::size_t i = 0; i < text.size();) {
        // What is skipped is rare: nearly always four units in a row are a group.
        if (filled == 0 && text.size() - i >= 4) {
            const std::uint32_t a = valueOf(text[i]);
            const std::uint32_t b = valueOf(text[i + 1]);
            const std::uint32_t c = valueOf(text[i + 2]);
            const std::uint32_t d = valueOf(text[i + 3]);
            if ((a | b | c | d) < skipped) {
                put(a << 18U | b << 12U | c << 6U | d);
                i += 4;
                continue;
            }
        }
        if (const std::uint32_t value = valueOf(text[i++]); value != skipped) {
            group = group << 6U | value;
            if (++filled == 4) {
                put(group);
                group = 0;
                filled = 0;
            }
        }
    }
    bytes.erase(byte, bytes.end());
    // Three padding characters alone stand for no byte, because no group ends in three; more of them are
    // whole groups. All of them are cut off, also when the group they belong to was dropped.
    const std::size_t padded = trailingPadding(text);
    const std::size_t rest = padded % 4;
    const std::size_t cut = padded / 4 * 3 + (rest == 3 ? 0 : rest);
    bytes.resize(bytes.size() - std::min(cut, bytes.size()));
    return bytes;
}

} // namespace quorvane
