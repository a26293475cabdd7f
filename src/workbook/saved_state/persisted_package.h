// One row of the table of texts that a workbook keeps of its packages. Columns are counted from 0 here:
//   0 name in the workbook, 1 manager, 2 kind, 3 class identifier, 4 name within the manager, 5 state text
// A state text that is too long for a cell is cut into pieces in columns 6 and on; column 5 then holds the
// number of the first piece's column.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace quorvane {

struct PersistedPackage {
    std::wstring ppName;
    std::wstring managerName;
    std::wstring kind;
    std::wstring managerGUID;
    std::wstring packageName;
    std::wstring stateText;
};

inline constexpr std::size_t fixedColumns = 6;
/// The most characters in a cell.
inline constexpr std::size_t cellLength = 32000;

/// How many columns the row needs.
std::size_t columnCount(const PersistedPackage& package) noexcept;

/// The text of one cell of the row; empty beyond its end.
std::wstring_view cellOf(const PersistedPackage& package, std::size_t column) noexcept;

/// A row of `columns` cells read back; `cell` gives the text of one, empty where there is none.
template <typename Cell>
PersistedPackage readPersistedPackage(std::size_t columns, const Cell& cell);

/// CAPEOPENPackageManagerType as a text. Throws CWStrException for another number.
const wchar_t* kindText(std::int32_t kind);
std::optional<std::int32_t> kindOf(std::wstring_view text) noexcept;

namespace detail {
/// The column that a text of digits names; a number beyond `columns` counts as `columns`. Nothing for any
/// other text.
std::optional<std::size_t> firstPiece(std::wstring_view text, std::size_t columns) noexcept;
} // namespace detail

template <typename Cell>
PersistedPackage readPersistedPackage(std::size_t columns, const Cell& cell) {
    static_assert(std::is_same_v<decltype(cell(columns)), std::wstring_view>, "a text by value would dangle");
    const auto at = [&](std::size_t column) { return column < columns ? cell(column) : std::wstring_view{}; };
    PersistedPackage package{std::wstring{at(0)}, std::wstring{at(1)}, std::wstring{at(2)},
                             std::wstring{at(3)}, std::wstring{at(4)}, {}};
    const std::wstring_view state = at(fixedColumns - 1);
    if (const auto first = detail::firstPiece(state, columns)) {
        std::size_t end = *first;
        std::size_t length = 0;
        for (; !at(end).empty(); ++end) {
            length += at(end).size();
        }
        package.stateText.reserve(length);
        for (std::size_t column = *first; column < end; ++column) {
            package.stateText += at(column);
        }
    } else {
        package.stateText = state;
    }
    return package;
}

} // namespace quorvane
