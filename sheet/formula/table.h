// The cells as a table for people: column letters above, row numbers at the left, numbers aligned at the
// decimal point.
#pragma once

#include "sheet/formula/grid.h"

#include <string>

namespace sheet::formula {

/// Lines end with "\n". As on screen, a text runs on over empty cells at its right.
std::string printedTable(const Grid& grid);

/// Lines of columns aligned in the same way, without letters and row numbers.
std::string printedRows(const Matrix& rows);

} // namespace sheet::formula
