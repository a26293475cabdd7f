// The text that stands for a package's saved bytes in a workbook: base64, after "#" of the compressed bytes.
#pragma once

#include "src/workbook/saved_state/compression.h"

namespace quorvane {

/// Compressed where that makes the text more than 100 characters shorter and the allowance is enough for
/// restoring it, which is then spent; no bytes give an empty text.
std::wstring stateTextOf(std::span<const std::uint8_t> bytes, InflationAllowance& allowance);

/// The bytes of a state text, which may be damaged in any way. Throws what inflated() throws.
Bytes bytesOfStateText(std::wstring_view text, InflationAllowance& allowance);

} // namespace quorvane
