// Range: a rectangular block of cell values behind Excel's Range interface. One cell answers its value,
// several answer a two-dimensional array of values whose bounds begin with 1.
#pragma once

#include "sheet/excel/late_bound.h"

#include <office_idl.h>

#include <memory>

namespace sheet::excel {

class Range final : public LateBound<Range, ExcelRange> {
  public:
    /// `cells` in row order, rows x columns of them.
    Range(std::size_t rows, std::size_t columns, std::vector<com::variant> cells);

    template <typename... Values>
    static com::com_ptr<Range> row(Values&&... values) {
        return com::make<Range>(1U, sizeof...(values), collect(std::forward<Values>(values)...));
    }
    template <typename... Values>
    static com::com_ptr<Range> column(Values&&... values) {
        return com::make<Range>(sizeof...(values), 1U, collect(std::forward<Values>(values)...));
    }
    template <typename Value>
    static com::com_ptr<Range> cell(Value&& value) {
        return row(std::forward<Value>(value));
    }
    /// Empty cells: a calling range.
    static com::com_ptr<Range> empty(std::size_t rows, std::size_t columns);

    /// What Rows and Columns answer, to be told to misbehave.
    Range& rowLines();
    Range& columnLines();

    static std::span<const Member<Range>> members();

  private:
    struct Cells {
        std::size_t rows;
        std::size_t columns;
        std::vector<com::variant> values;
    };
    Range(std::shared_ptr<const Cells> cells, std::size_t count) : cells_{std::move(cells)}, count_{count} {}

    template <typename... Values>
    static std::vector<com::variant> collect(Values&&... values) {
        std::vector<com::variant> result;
        (result.emplace_back(std::forward<Values>(values)), ...);
        return result;
    }

    com::variant value(Arguments arguments);
    com::variant rows(Arguments);
    com::variant columns(Arguments);
    // NOLINTNEXTLINE(readability-make-member-function-const): the table of members has one kind of pointer
    com::variant count(Arguments) { return com::variant{static_cast<long>(count_)}; }

    Range& lines(com::com_ptr<Range>& kept, std::size_t count);

    std::shared_ptr<const Cells> cells_;
    std::size_t count_; // of cells, or of rows or columns in the range that Rows or Columns answers
    com::com_ptr<Range> rows_;
    com::com_ptr<Range> columns_;
};

} // namespace sheet::excel
