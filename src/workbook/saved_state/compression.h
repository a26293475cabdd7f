// The zlib streams in saved workbooks (RFC 1950: deflate, window of 32 KB).
#pragma once

#include "src/workbook/saved_state/base64.h"

namespace quorvane {

/// The largest saved state, in bytes, that is decompressed; a larger one is never compressed, so that
/// whatever is saved can be restored. A few kilobytes of a hostile workbook must not fill the memory.
inline constexpr std::size_t maximumInflatedSize = std::size_t{256} << 20U;

/// At most as many bytes as go in. Of bytes that do not become fewer a useless piece comes out, as long as
/// the input. Throws std::bad_alloc.
Bytes deflated(std::span<const std::uint8_t> bytes);

/// What comes out until nothing more does: of a damaged or cut stream the part before the damage. Throws
/// CWStrException when that is more than `limit`, and std::bad_alloc.
Bytes inflated(std::span<const std::uint8_t> stream, std::size_t limit = maximumInflatedSize);

} // namespace quorvane
