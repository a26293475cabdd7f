// Which formula refers to the cell of which other, and circles among them.
#pragma once

#include "sheet/formula/worksheet.h"

#include <functional>

namespace sheet::formula {

/// For each formula, the formulas (by index, ascending) that it refers to when result i stands in area(i). An
/// area begins with its formula's cell, and no two share one.
using Graph = std::vector<std::vector<std::size_t>>;
Graph referencesAmong(const Worksheet& sheet, const std::function<Block(std::size_t)>& area);

/// The members of one circle in ascending order; empty when there is none.
std::vector<std::size_t> findCircle(const Graph& references);

/// With every result in its formula's own cells. Throws InputError when formulas refer to each other's cells
/// in a circle, or one to its own.
Graph acyclicReferences(const Worksheet& sheet);

/// "A1", "A1 and B2", "A1, B2 and C3"
std::string listed(const Worksheet& sheet, const std::vector<std::size_t>& formulas);

} // namespace sheet::formula
