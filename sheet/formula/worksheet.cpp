#include "sheet/formula/worksheet.h"

#include <algorithm>

namespace sheet::formula {

namespace {

class Builder {
  public:
    Builder(const CsvTable& table, std::span<const Block> arrays) : table_{table}, arrays_{arrays} {}

    Worksheet worksheet() {
        checkArrays();
        for (std::size_t row = 0; row < table_.size(); ++row) {
            for (std::size_t column = 0; column < table_[row].size(); ++column) {
                enter({row, column}, table_[row][column]);
            }
        }
        if (!problems_.empty()) {
            throw InputError{std::move(problems_)};
        }
        return std::move(sheet_);
    }

  private:
    void checkArrays() {
        for (auto array = arrays_.begin(); array != arrays_.end(); ++array) {
            const Address first = array->first;
            const bool inTable = first.row < table_.size() && first.column < table_[first.row].size();
            if (!inTable || !isFormula(table_[first.row][first.column])) {
                report(first, "no formula stands here to be entered over " + nameOf(*array) +
                                  "; an array range begins with the cell that holds its formula");
            }
            for (auto other = arrays_.begin(); other != array; ++other) {
                if (array->intersects(*other)) {
                    report(first, "the array range " + nameOf(*array) + " overlaps " + nameOf(*other) +
                                      "; give each array formula cells of its own");
                }
            }
        }
    }

    void enter(Address cell, const std::string& text) {
        if (text.empty()) {
            return;
        }
        const auto array = std::ranges::find_if(arrays_, [cell](const Block& b) { return b.contains(cell); });
        if (array != arrays_.end() && cell != array->first) {
            report(cell, "this cell belongs to the array range " + nameOf(*array) +
                             " and must be empty; clear it or make the range smaller");
            return;
        }
        if (!isFormula(text)) {
            sheet_.constants.push_back({cell, readCell(text)});
            return;
        }
        try {
            const bool isArray = array != arrays_.end();
            sheet_.formulas.push_back({isArray ? *array : Block{cell}, isArray, readFormula(text)});
        } catch (const FormulaError& error) {
            report(cell, error.what());
        }
    }

    void report(Address cell, std::string message) { problems_.push_back({cell, std::move(message)}); }

    const CsvTable& table_;
    std::span<const Block> arrays_;
    Worksheet sheet_;
    std::vector<Problem> problems_;
};

} // namespace

Worksheet readWorksheet(const CsvTable& table, std::span<const Block> arrays) {
    return Builder{table, arrays}.worksheet();
}

} // namespace sheet::formula
