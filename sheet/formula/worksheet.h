// What was entered into a worksheet: constants and formulas, each in its cell or, for an array formula, in
// its range.
#pragma once

#include "sheet/formula/csv.h"
#include "sheet/formula/formula.h"
#include "sheet/formula/input_error.h"
#include "sheet/formula/value.h"

#include <span>
#include <vector>

namespace sheet::formula {

struct EnteredConstant {
    Address cell;
    Value value;
};

struct EnteredFormula {
    Block block; // its own cell, or the range over which it was entered
    bool array = false;
    Formula formula;
};

/// Both lists stand in row order. No two entries share a cell.
struct Worksheet {
    std::vector<EnteredConstant> constants;
    std::vector<EnteredFormula> formulas;
};

/// `arrays` are the ranges whose first cell holds a formula that is entered over the whole range (in Excel by
/// Ctrl+Shift+Enter). Throws InputError with every problem found.
Worksheet readWorksheet(const CsvTable& table, std::span<const Block> arrays);

} // namespace sheet::formula
