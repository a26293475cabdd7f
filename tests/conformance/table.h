// The conformance table (worksheet_functions.txt), read: what every formula of the table shows in which range
// and workbook. Its notation is explained at the head of the file. Plain C++.
#pragma once

#include "sheet/formula/worksheet.h"

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace conformance {

using sheet::formula::Matrix;
using sheet::formula::Value;

/// What the cells show: a failure's message, or values.
struct Shown {
    bool failed = false;
    std::string message;
    Matrix cells;
};

struct Row {
    std::size_t line; ///< in the file
    std::string name; ///< of its test: the function, then what is shown
    std::string text; ///< of the formula, as typed
    sheet::formula::Formula formula;
    sheet::formula::Block range; ///< that the formula is entered in
    bool isMacro;                ///< called by a macro instead, from no range
    std::string workbook;        ///< the words after the range; usually empty
    Shown shown;
};

struct Table {
    std::vector<sheet::formula::EnteredConstant> inputs;
    std::vector<Matrix> arrays;                  ///< the array constants of all formulas
    std::map<std::string, std::string> packages; ///< their scripts by name
    std::map<std::string, std::string> messages; ///< by short name; <...> stands for a part that varies
    std::vector<Row> rows;
    std::vector<std::string> problems; ///< lines that cannot be understood

    /// The array constant that an argument stands for; null when it is a reference to cells.
    const Matrix* arrayAt(const sheet::formula::Block& argument) const;
    /// The script of a declared package. A name declared as "Fails<code>" stands for each that has a code
    /// there, which is put into the script. Null for an undeclared name.
    const std::string* script(const std::string& package, std::string& made) const;
};

Table readTable(std::string_view text);

/// True when `text` is `pattern`, in which <...> stands for any text.
bool matches(std::string_view text, std::string_view pattern);

/// How a failing test names its row.
inline void PrintTo(const Row* row, std::ostream* out) { *out << "line " << row->line << ": " << row->text; }

/// As the table writes it.
std::string written(const Shown& shown);

/// Numbers are equal to ten digits.
bool isSame(const Shown& one, const Shown& other);

} // namespace conformance
