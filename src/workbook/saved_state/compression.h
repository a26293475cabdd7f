// The zlib streams in saved workbooks (RFC 1950: deflate, window of 32 KB).
#pragma once

#include "src/workbook/saved_state/base64.h"
#include "src/workbook/saved_state/inflation_allowance.h"

namespace quorvane {

/// At most as many bytes as go in. Of bytes that do not become fewer a useless piece comes out, as long as
/// the input. Throws std::bad_alloc.
Bytes deflated(std::span<const std::uint8_t> bytes);

/// What comes out until nothing more does: of a damaged or cut stream the part before the damage. Spends the
/// allowance, also when it throws CWStrException because there is not enough of it. Throws std::bad_alloc.
Bytes inflated(std::span<const std::uint8_t> stream, InflationAllowance& allowance);

} // namespace quorvane
