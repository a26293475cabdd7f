#include "sheet/excel/range.h"

#include "com/safe_array.h"

#include <array>
#include <stdexcept>

namespace sheet::excel {

namespace {

constexpr long xlRangeValueDefault = 10;

} // namespace

Range::Range(std::size_t rows, std::size_t columns, std::vector<com::variant> cells)
    : count_{rows * columns} {
    if (cells.size() != count_ || cells.empty()) {
        throw std::invalid_argument{"a range has as many cells as rows times columns, and at least one"};
    }
    cells_ = std::make_shared<const Cells>(Cells{rows, columns, std::move(cells)});
}

com::com_ptr<Range> Range::empty(std::size_t rows, std::size_t columns) {
    return com::make<Range>(rows, columns, std::vector<com::variant>(rows * columns));
}

Range& Range::rowLines() { return lines(rows_, cells_->rows); }

Range& Range::columnLines() { return lines(columns_, cells_->columns); }

Range& Range::lines(com::com_ptr<Range>& kept, std::size_t count) {
    if (!kept) {
        kept = com::com_ptr<Range>::share(new Range{cells_, count});
    }
    return *kept;
}

std::span<const Member<Range>> Range::members() {
    static constexpr std::array table{
        Member<Range>{L"_Default", DISPID_VALUE, 1, &Range::value},
        Member<Range>{L"Value", 6, 1, &Range::value},
        Member<Range>{L"Value2", 1388, 0, &Range::value},
        Member<Range>{L"Rows", 258, 0, &Range::rows},
        Member<Range>{L"Columns", 241, 0, &Range::columns},
        Member<Range>{L"Count", 118, 0, &Range::count},
    };
    return table;
}

com::variant Range::value(Arguments arguments) {
    if (!arguments.empty() && arguments[0].vt != VT_ERROR) {
        const com::variant kind = converted(arguments[0], VT_I4);
        if (kind.vt != VT_I4) {
            throw Refusal{DISP_E_TYPEMISMATCH};
        }
        if (kind.lVal != xlRangeValueDefault) {
            throw Refusal{E_INVALIDARG};
        }
    }
    if (cells_->values.size() == 1) {
        return com::variant::copyOf(cells_->values.front());
    }
    com::unique_safearray array = com::makeMatrix(VT_VARIANT, cells_->rows, cells_->columns);
    {
        const com::array_lock<com::variant> lock{array.get()};
        const std::span<com::variant> elements = lock.elements();
        for (std::size_t row = 0; row < cells_->rows; ++row) {
            for (std::size_t column = 0; column < cells_->columns; ++column) {
                elements[row + column * cells_->rows] =
                    com::variant::copyOf(cells_->values[row * cells_->columns + column]);
            }
        }
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

com::variant Range::rows(Arguments) { return objectOrNothing(rowLines().dispatch()); }

com::variant Range::columns(Arguments) { return objectOrNothing(columnLines().dispatch()); }

} // namespace sheet::excel
