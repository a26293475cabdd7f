// Cell values on their way to the add-in and back, as Excel passes them.
#pragma once

#include "sheet/excel/range.h"
#include "sheet/formula/grid.h"

namespace sheet::cli {

com::variant toVariant(const formula::Value& value);

/// The cells of the block with the values they have now.
com::com_ptr<excel::Range> rangeOf(const formula::Grid& grid, const formula::Block& block);

/// A worksheet function's result: a one-dimensional array is a row, an empty result shows 0. At least one
/// value.
formula::Matrix fromResult(const VARIANT& result);

} // namespace sheet::cli
