#include "sheet/cli/csv_files.h"

#include "sheet/cli/files.h"
#include "sheet/formula/input_error.h"
#include "sheet/formula/utf8.h"

namespace sheet::cli {

formula::CsvTable readCsvFile(const std::string& name) {
    try {
        return formula::readCsv(readFile(name));
    } catch (const formula::InputError& error) {
        std::string text;
        for (const formula::Problem& problem : error.problems()) {
            text += (text.empty() ? "" : "\n") + problem.inFile(name);
        }
        throw FileError{text};
    }
}

// Excel takes a file for UTF-8 only when it begins with the mark; plain ASCII needs none.
void writeCsvFile(const std::string& name, const formula::CsvTable& table) {
    const std::string text = formula::writeCsv(table);
    writeFile(name, formula::characterCount(text) == text.size() ? text : "\xEF\xBB\xBF" + text);
}

} // namespace sheet::cli
