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

constexpr bool counts(wchar_t unit) noexcept { return values[lowByte(unit)] != skipped; }

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
    std::wstring text;
    text.reserve(base64Length(bytes.size()));
    for (; !bytes.empty(); bytes = bytes.subspan(std::min<std::size_t>(bytes.size(), 3))) {
        const std::size_t count = std::min<std::size_t>(bytes.size(), 3);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            group = group << 8U | (i < count ? bytes[i] : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            text.push_back(i <= count ? alphabet[group >> (18U - 6U * i) & 0x3FU] : padding);
        }
    }
    return text;
}

Bytes fromBase64(std::wstring_view text) {
    Bytes bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    unsigned filled = 0;
    for (const wchar_t unit : text) {
        if (!counts(unit)) {
            continue;
        }
        group = group << 6U | values[lowByte(unit)];
        if (++filled == 4) {
            for (const unsigned shift : {16U, 8U, 0U}) {
                bytes.push_back(static_cast<std::uint8_t>(group >> shift));
            }
            group = 0;
            filled = 0;
        }
    }
    // Three padding characters alone stand for no byte, because no group ends in three; more of them are
    // whole groups. All of them are cut off, also when the group they belong to was dropped.
    const std::size_t padded = trailingPadding(text);
    const std::size_t rest = padded % 4;
    const std::size_t cut = padded / 4 * 3 + (rest == 3 ? 0 : rest);
    bytes.resize(bytes.size() - std::min(cut, bytes.size()));
    return bytes;
}

} // namespace quorvane
