// The text that stands for a package's saved bytes in a workbook: base64, after "#" of the compressed bytes.
#pragma once

#include "src/workbook/saved_state/compression.h"

namespace quorvane {

/// Compressed where that makes the text more than 100 characters shorter; no bytes give an empty text.
std::wstring stateTextOf(std::span<const std::uint8_t> bytes);

/// The bytes of a state text, which may be damaged in any way. Throws what inflated() throws.
Bytes bytesOfStateText(std::wstring_view text, std::size_t limit = maximumInflatedSize);

} // namespace quorvane
