// Which formula refers to the cell of which other, and circles among them.
#pragma once

#include "sheet/formula/worksheet.h"

#include <functional>

namespace sheet::formula {

/// For each formula, the formulas (by index) that it refers to when result i stands in area(i).
using Graph = std::vector<std::vector<std::size_t>>;
Graph referencesAmong(const Worksheet& sheet, const std::function<Block(std::size_t)>& area);
/// Every result in its formula's own cells.
Graph cellReferences(const Worksheet& sheet);

/// The members of one circle in ascending order; empty when there is none.
std::vector<std::size_t> findCircle(const Graph& references);

/// Throws InputError when formulas refer to each other's cells in a circle, or one to its own.
void refuseCircles(const Worksheet& sheet);

/// "A1", "A1 and B2", "A1, B2 and C3"
std::string listed(const Worksheet& sheet, const std::vector<std::size_t>& formulas);

} // namespace sheet::formula
