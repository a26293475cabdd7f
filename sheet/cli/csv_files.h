// Tables in CSV files, in UTF-8.
#pragma once

#include "sheet/formula/csv.h"

namespace sheet::cli {

/// Throws FileError, with the place of each mistake.
formula::CsvTable readCsvFile(const std::string& name);
/// Throws FileError.
void writeCsvFile(const std::string& name, const formula::CsvTable& table);

} // namespace sheet::cli
