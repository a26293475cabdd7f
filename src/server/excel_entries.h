// The add-in's entries in Excel's own settings of the current user: the OPEN values, by which each installed
// Excel from version 14 on opens add-ins at start-up. Values of other add-ins are never touched.
#pragma once

#include "com/platform.h"

namespace quorvane {

/// Writes an OPEN value under the first free name (OPEN, OPEN1, OPEN2, ...) for each version that has Excel
/// options. Versions without them are skipped, and those of which a thousand names are taken.
void addExcelEntries();

/// Removes every OPEN value that mentions the class, and its rows in the list of unchecked add-ins. Nothing
/// to remove is no failure.
LSTATUS removeExcelEntries();

} // namespace quorvane
