// Cells of a package definition as what they mean. All throw DefinitionError, which names the line and the
// cell.
#pragma once

#include "packages/peng_robinson/definition/rows.h"

#include <optional>

namespace peng_robinson {

/// What a number must be between, its ends included.
struct Limits {
    double lowest, highest;
    std::string_view unit; ///< empty: none
};

/// The double that is nearest to the decimal number in `text`. `what` names it in messages.
double readNumber(const std::string& text, std::string_view what, const Limits& limits, std::size_t line);

inline std::string quoted(std::string_view text) { return std::string{'"'}.append(text).append(1, '"'); }

/// The first row of a table, which names its columns.
class Columns {
  public:
    /// `known` are all columns that the table may have. Names are compared without case.
    Columns(const Row& header, const std::vector<std::string_view>& known);

    bool has(std::string_view name) const noexcept { return position(name).has_value(); }
    /// Throws when there is no such column.
    void require(std::string_view name) const;
    /// The cell in that column; empty when the row or the table has none.
    std::string cell(const Row& row, std::string_view name) const;
    /// Throws when the row has more cells than the table has columns.
    void requireFitting(const Row& row) const;

  private:
    std::optional<std::size_t> position(std::string_view name) const noexcept;

    std::size_t line_;
    std::vector<std::string> names_;
};

} // namespace peng_robinson
