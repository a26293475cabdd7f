// Where cells stand: an address (row and column, both from 0) and a rectangular block of cells, with their
// worksheet names (B3, A1:B7). The limits are Excel's, so that a sheet accepted here opens there.
#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sheet::formula {

inline constexpr std::size_t maximumRows = 1'048'576;
inline constexpr std::size_t maximumColumns = 16'384;

struct Address {
    std::size_t row = 0;
    std::size_t column = 0;

    auto operator<=>(const Address&) const = default;
};

/// At least one row and one column.
struct Block {
    Address first;
    std::size_t rows = 1;
    std::size_t columns = 1;

    bool operator==(const Block&) const = default;

    std::size_t endRow() const { return first.row + rows; }
    std::size_t endColumn() const { return first.column + columns; }
    std::size_t cellCount() const { return rows * columns; }
    bool contains(Address cell) const;
    bool contains(const Block& other) const;
    bool intersects(const Block& other) const;
};

/// The block with the two cells in opposite corners.
Block spanning(Address one, Address other);

/// "A", "Z", "AA", ...
std::string columnName(std::size_t column);
std::string nameOf(Address cell);
/// "B3" for a single cell, "A1:B7" otherwise.
std::string nameOf(const Block& block);

/// The address at the beginning of `text` ("$B$3" and the like), which is then removed from it. Empty when
/// there is none or it lies beyond the last row or column of a worksheet; `text` is unchanged then.
std::optional<Address> takeAddress(std::string_view& text);

/// A whole text that names a cell or a range; empty when it is neither.
std::optional<Block> readBlock(std::string_view text);

} // namespace sheet::formula
