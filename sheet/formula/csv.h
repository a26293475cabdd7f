// Comma-separated values as RFC 4180 describes them: UTF-8 with or without a byte order mark, lines ended by
// CRLF or LF, cells in quotes may hold commas, doubled quotes and line breaks. A text that is not such a
// table is refused with the place and the remedy: a guess would shift cells, and formulas would refer to the
// wrong ones.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sheet::formula {

using CsvTable = std::vector<std::vector<std::string>>;

/// Throws InputError.
CsvTable readCsv(std::string_view text);

/// Lines end with CRLF; a cell is put in quotes where it must be.
std::string writeCsv(const CsvTable& table);

} // namespace sheet::formula
