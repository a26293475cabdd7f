// Tables of saved packages as a front end hands them over.
#pragma once

#include "com/owned.h"
#include "tests/src/workbook/golden.h"

namespace quorvane {

using Row = std::vector<std::wstring>;
using Table = std::vector<Row>;

/// The array that holds the table, as a front end makes it: an empty text is a null one.
com::variant arrayOf(const Table& table, LONG lowerBound = 1);

} // namespace quorvane
