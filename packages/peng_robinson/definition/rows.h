// A package definition as rows of cells: UTF-8 text whose cells stand between commas, semicolons or tabs (the
// first of these that the file uses). A cell in double quotes may hold the separator; a doubled quote in it
// stands for one. Empty lines and lines that begin with # say nothing. Spreadsheet programs save such files.
#pragma once

#include "packages/peng_robinson/definition/definition_error.h"

#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

struct Row {
    std::size_t line;
    std::vector<std::string>
        cells; ///< without blanks around them and without empty cells at the end; not empty
};

/// Throws DefinitionError.
std::vector<Row> readRows(std::string_view text);

} // namespace peng_robinson
