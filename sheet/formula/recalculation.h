// Calculates the formulas of a worksheet in the order of their references.
//
// A formula is calculated after every formula whose cell it refers to; those references are known before, and
// a circle among them is refused. How far a result spills is known only when it is there. So a formula that
// refers to a cell that is still empty waits while anything else can be calculated, and a formula that refers
// to a cell that changed after it was calculated is calculated again: in the end each one has seen the final
// values of all its cells. Results that keep changing the cells they are made from are a circle too. Where
// two spills meet, the one calculated first stays.
#pragma once

#include "sheet/formula/dependencies.h"
#include "sheet/formula/grid.h"

#include <functional>

namespace sheet::formula {

struct Result {
    Matrix values;
    bool failed = false;  // the value is the text of a failure, or an error value
    std::string reason{}; // what an error value does not say
};

/// Calls a worksheet function; never asked for a reference alone.
using Calculate = std::function<Result(const EnteredFormula&, const Grid&)>;

/// Told after each calculation how many of the formulas are up to date.
using Progress = std::function<void(std::size_t done, std::size_t all)>;

struct Failure {
    Block where;
    std::string text; // what the cell shows, and the reason in parentheses where it does not say it
};

struct Recalculated {
    Grid grid;
    std::vector<Failure> failures; // in row order
};

/// Throws InputError for a circle.
Recalculated recalculate(const Worksheet& sheet, const Calculate& calculate, const Progress& progress = {});
/// For who has looked for circles before: `references` are the sheet's acyclicReferences().
Recalculated recalculate(const Worksheet& sheet, const Graph& references, const Calculate& calculate,
                         const Progress& progress);

} // namespace sheet::formula
