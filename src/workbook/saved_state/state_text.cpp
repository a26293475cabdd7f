#include "src/workbook/saved_state/state_text.h"

namespace quorvane {

namespace {

constexpr wchar_t compressedMark = L'#';
constexpr std::size_t largestUncompressed = 500; // bytes
constexpr std::size_t leastSaving = 100;         // characters

} // namespace

std::wstring stateTextOf(std::span<const std::uint8_t> bytes, InflationAllowance& allowance) {
    if (bytes.size() > largestUncompressed && bytes.size() <= allowance.next()) {
        const Bytes compressed = deflated(bytes);
        if (base64Length(compressed.size()) + leastSaving < base64Length(bytes.size())) {
            allowance.spend(bytes.size());
            return compressedMark + toBase64(compressed);
        }
    }
    return toBase64(bytes);
}

Bytes bytesOfStateText(std::wstring_view text, InflationAllowance& allowance) {
    if (text.starts_with(compressedMark)) {
        return inflated(fromBase64(text.substr(1)), allowance);
    }
    return fromBase64(text);
}

} // namespace quorvane
