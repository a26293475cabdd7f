// Base64 as saved workbooks hold it: A-Z a-z 0-9 + /, padded with "=", no line breaks.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

using Bytes = std::vector<std::uint8_t>;

/// Characters of the text for so many bytes.
constexpr std::size_t base64Length(std::size_t byteCount) noexcept { return (byteCount + 2) / 3 * 4; }

std::wstring toBase64(std::span<const std::uint8_t> bytes);

/// The bytes of a text, which may be anything: of each character the low eight bits count, what is not base64
/// is skipped, and an incomplete group at the end is dropped.
Bytes fromBase64(std::wstring_view text);

} // namespace quorvane
