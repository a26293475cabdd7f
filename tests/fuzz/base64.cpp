// Whatever is encoded is decoded as it was, and any text decodes to what its characters say.
#include "src/workbook/saved_state/base64.h"

#include "tests/fuzz/fuzz.h"

namespace fuzz {

namespace {

constexpr std::wstring_view alphabet = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Bit by bit; only for texts without padding.
Bytes naivelyDecoded(std::wstring_view text) {
    std::vector<bool> bits;
    for (const wchar_t unit : text) {
        const std::size_t value = alphabet.find(static_cast<wchar_t>(static_cast<std::uint8_t>(unit)));
        for (std::size_t bit = 6; value != std::wstring_view::npos && bit-- > 0;) {
            bits.push_back((value >> bit & 1U) != 0);
        }
    }
    Bytes bytes(bits.size() / 24 * 3);
    for (std::size_t i = 0; i < bytes.size() * 8; ++i) {
        bytes[i / 8] = static_cast<std::uint8_t>(unsigned{bytes[i / 8]} << 1U | (bits[i] ? 1U : 0U));
    }
    return bytes;
}

void requireRoundTrip(const Bytes& bytes) {
    const std::wstring text = quorvane::toBase64(bytes);
    require(text.size() == quorvane::base64Length(bytes.size()), "the length is known before");
    require(text.find_first_not_of(L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=") ==
                std::wstring::npos,
            "only characters of base64");
    require(quorvane::fromBase64(text) == bytes, "decoded as encoded");
    std::wstring broken;
    for (const wchar_t unit : text) {
        broken.append(1, unit).append(L"\r\n -");
    }
    require(quorvane::fromBase64(broken) == bytes, "what is not base64 is skipped");
}

} // namespace

void run(Input input) {
    const std::string_view given = input.text();
    requireRoundTrip({given.begin(), given.end()});

    const std::wstring text = wide(given);
    const Bytes decoded = quorvane::fromBase64(text);
    require(decoded.size() <= text.size() / 4 * 3, "no more bytes than groups");
    std::wstring unpadded;
    for (const wchar_t unit : text) {
        if (static_cast<std::uint8_t>(unit) != L'=') {
            unpadded.push_back(unit);
        }
    }
    require(quorvane::fromBase64(unpadded) == naivelyDecoded(unpadded), "decoded as bit by bit");
    requireRoundTrip(decoded);
}

} // namespace fuzz
