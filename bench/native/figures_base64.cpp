// Base64 beside the library encoder, and beside a copy of the result.
#include "bench/native/figures.h"
#include "src/workbook/saved_state/base64.h"

#include <cstring>
#include <modp_b64.h>
#include <stdexcept>

namespace bench {

namespace {

constexpr double goal = 2.0;
constexpr std::size_t size = 300000;

quorvane::Bytes noise() {
    quorvane::Bytes bytes(size);
    unsigned long long random = 1;
    for (auto& byte : bytes) {
        random = random * 6364136223846793005U + 1442695040888963407U;
        byte = static_cast<std::uint8_t>(random >> 56U);
    }
    return bytes;
}

} // namespace

void base64(Report& report) {
    const quorvane::Bytes bytes = noise();
    const std::wstring text = quorvane::toBase64(bytes);
    std::string library(modp_b64_encode_len(size), '\0');
    const auto encodeByLibrary = [&] {
        modp_b64_encode(library.data(), reinterpret_cast<const char*>(bytes.data()), bytes.size());
    };
    encodeByLibrary();
    const std::size_t length = std::strlen(library.c_str());
    if (std::wstring(library.begin(), library.begin() + static_cast<std::ptrdiff_t>(length)) != text) {
        throw std::runtime_error("The library encodes otherwise");
    }
    std::string decoded(modp_b64_decode_len(length), '\0');
    const auto decodeByLibrary = [&] { modp_b64_decode(decoded.data(), library.data(), length); };
    std::wstring copiedText(text.size(), L'\0');
    quorvane::Bytes copiedBytes(size);
    const auto encode = [&] { static_cast<void>(quorvane::toBase64(bytes)); };
    const auto decode = [&] { static_cast<void>(quorvane::fromBase64(text)); };
    const auto copyText = [&] { std::memcpy(copiedText.data(), text.data(), text.size() * sizeof(wchar_t)); };
    const auto copyBytes = [&] { std::memcpy(copiedBytes.data(), bytes.data(), bytes.size()); };
    if (report.wants("base64 encode")) {
        report.time("base64 encode, 300 kB", "libmodpbase64", compare({encode}, {encodeByLibrary}), goal);
        report.note("base64 encode, times a copy of the text", compare({encode}, {copyText}).ratio);
    }
    if (report.wants("base64 decode")) {
        report.time("base64 decode, 300 kB", "libmodpbase64", compare({decode}, {decodeByLibrary}), goal);
        report.note("base64 decode, times a copy of the bytes", compare({decode}, {copyBytes}).ratio);
    }
}

} // namespace bench
