// A chart of cells. The texts above a range name it: the last one the axis, the first of two the series.
#pragma once

#include "sheet/chart/chart.h"
#include "sheet/formula/grid.h"

#include <span>

namespace sheet::chart {

/// Each range is one row or one column. There is one of `x` for all of `y`, or one for each, of as many
/// cells. A cell without a number interrupts the line. The title is the text in A1.
Chart chartOf(const formula::Grid& grid, std::span<const formula::Block> x,
              std::span<const formula::Block> y);

} // namespace sheet::chart
