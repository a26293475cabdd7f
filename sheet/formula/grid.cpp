#include "sheet/formula/grid.h"

#include <algorithm>

namespace sheet::formula {

namespace {

template <typename Function>
void forEachCell(const Block& block, Function function) {
    for (std::size_t row = block.first.row; row < block.endRow(); ++row) {
        for (std::size_t column = block.first.column; column < block.endColumn(); ++column) {
            function(Address{row, column});
        }
    }
}

// As Excel fills a range by an array formula: a single row or column is repeated, what is too much is cut
// off, and what is missing shows #N/A.
Matrix fitted(const Matrix& result, std::size_t rows, std::size_t columns) {
    Matrix filled{rows, columns, {}};
    filled.values.reserve(rows * columns);
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            const std::size_t fromRow = result.rows == 1 ? 0 : row;
            const std::size_t fromColumn = result.columns == 1 ? 0 : column;
            const bool exists = fromRow < result.rows && fromColumn < result.columns;
            filled.values.push_back(exists ? result.at(fromRow, fromColumn) : Value{CellError::na});
        }
    }
    return filled;
}

} // namespace

Grid::Grid(const Worksheet& sheet) {
    for (const EnteredConstant& constant : sheet.constants) {
        slot(constant.cell) = {constant.value, nobody, true};
    }
    for (const EnteredFormula& formula : sheet.formulas) {
        forEachCell(formula.block, [&](Address cell) { slot(cell) = {{}, placements_.size(), true}; });
        placements_.push_back({formula.block, formula.array, formula.block, std::nullopt});
    }
}

Grid::Slot& Grid::slot(Address cell) {
    if (rows_.size() <= cell.row) {
        rows_.resize(cell.row + 1);
    }
    std::vector<Slot>& row = rows_[cell.row];
    if (row.size() <= cell.column) {
        row.resize(cell.column + 1);
    }
    return row[cell.column];
}

const Grid::Slot* Grid::find(Address cell) const {
    return cell.row < rows_.size() && cell.column < rows_[cell.row].size() ? &rows_[cell.row][cell.column]
                                                                           : nullptr;
}

const Value& Grid::at(Address cell) const {
    static const Value empty;
    const Slot* const found = find(cell);
    return found == nullptr ? empty : found->value;
}

Matrix Grid::values(const Block& block) const {
    Matrix result{block.rows, block.columns, {}};
    result.values.reserve(block.cellCount());
    forEachCell(block, [&](Address cell) { result.values.push_back(at(cell)); });
    return result;
}

bool Grid::hasEmptyCell(const Block& block) const {
    bool found = false;
    forEachCell(block, [&](Address cell) { found = found || isEmpty(at(cell)); });
    return found;
}

std::size_t Grid::rows() const {
    const auto last = std::ranges::find_if(rows_.rbegin(), rows_.rend(), [](const std::vector<Slot>& row) {
        return std::ranges::any_of(row, [](const Slot& s) { return !isEmpty(s.value); });
    });
    return static_cast<std::size_t>(rows_.rend() - last);
}

std::size_t Grid::columns() const {
    std::size_t columns = 0;
    for (const std::vector<Slot>& row : rows_) {
        const auto last =
            std::ranges::find_if(row.rbegin(), row.rend(), [](const Slot& s) { return !isEmpty(s.value); });
        columns = std::max(columns, static_cast<std::size_t>(row.rend() - last));
    }
    return columns;
}

std::optional<Grid::Blockage> Grid::findBlockage(std::size_t index, const Block& needed) const {
    if (needed.endRow() > maximumRows || needed.endColumn() > maximumColumns) {
        return Blockage{needed, std::nullopt};
    }
    std::optional<Blockage> found;
    forEachCell(needed, [&](Address cell) {
        const Slot* const there = find(cell);
        const bool ours =
            there == nullptr || there->owner == index || (there->owner == nobody && !there->entered);
        if (!ours && !found) {
            found = Blockage{needed, cell};
        }
    });
    return found;
}

void Grid::clearSpill(std::size_t index) {
    const Placement& placement = placements_[index];
    forEachCell(placement.covered, [&](Address cell) {
        Slot& there = slot(cell);
        there.value = {};
        there.owner = placement.entered.contains(cell) ? index : nobody;
    });
}

void Grid::write(std::size_t index, const Block& block, const Matrix& values) {
    auto value = values.values.begin();
    forEachCell(block, [&](Address cell) {
        Slot& there = slot(cell);
        there.value = *value++;
        there.owner = index;
    });
}

bool Grid::place(std::size_t index, const Matrix& result) {
    Placement& placement = placements_[index];
    const Block before = placement.covered;
    const Matrix valuesBefore = values(before);
    clearSpill(index);

    Block target = placement.entered;
    Matrix shown;
    if (placement.array) {
        shown = fitted(result, target.rows, target.columns);
    } else {
        const Block needed{target.first, result.rows, result.columns};
        placement.blockage = findBlockage(index, needed);
        target = placement.blockage ? target : needed;
        shown = placement.blockage ? Matrix::of(CellError::spill) : result;
    }
    write(index, target, shown);
    placement.covered = target;
    return before != target || valuesBefore != shown;
}

} // namespace sheet::formula
