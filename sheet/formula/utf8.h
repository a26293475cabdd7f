// The little that tables and limits need to know about UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace sheet::formula {

/// Position of the first byte that is no part of well-formed UTF-8 (Unicode 15, table 3-7); npos when there
/// is none.
std::size_t firstInvalidUtf8(std::string_view text);

/// Characters (code points) of a valid text.
std::size_t characterCount(std::string_view text);

/// The length of a valid text in UTF-16 units, which is how Excel counts.
std::size_t utf16Length(std::string_view text);

} // namespace sheet::formula
