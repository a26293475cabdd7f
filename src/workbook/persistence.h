// Packages travel inside their workbook: before the workbook is saved they become a table of texts, one row
// each (saved_state/persisted_package.h), and the table becomes packages again when it is opened.
//
// Packages run foreign code while they are saved and restored, and a message pumps Excel's messages: either
// may change the store in the middle of these calls.
#pragma once

#include "src/workbook/saved_state/inflation_allowance.h"
#include "src/workbook/workbook_store.h"

#include <functional>

namespace quorvane {

/// Tells the user about a package that could not be saved or restored.
using Report = std::function<void(const std::wstring& message)>;

/// The table: a two-dimensional array of strings, both lower bounds 1, in the order of the workbook's table;
/// VT_EMPTY for a workbook without packages. A package that cannot be saved is reported. The first table
/// after it was restored still holds the state it was restored from, any later one none. Throws WException
/// and std::bad_alloc.
ArrayVariant persist(const WorkbookStore& store, WorkbookKey workbook, const Report& report,
                     InflationAllowance allowance = InflationAllowance{});

/// Enters the packages of a table; one of a name already there takes its place. A row that cannot be restored
/// is reported and left out; of many such rows only the first hundred are told one by one. Decompressed, the
/// state of a package may have 256 MB and the compressed states of a table 1 GB together. Throws
/// CWStrException for something that is no such table, and std::bad_alloc.
void depersist(WorkbookStore& store, WorkbookKey workbook, const VARIANT& table, const Report& report,
               InflationAllowance allowance = InflationAllowance{});

} // namespace quorvane
