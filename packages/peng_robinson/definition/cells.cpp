#include "packages/peng_robinson/definition/cells.h"

#include "packages/peng_robinson/catalogue/catalogue.h"
#include "packages/peng_robinson/catalogue/decimal.h"

#include <algorithm>

namespace peng_robinson {

double readNumber(const std::string& text, std::string_view what, const Limits& limits, std::size_t line) {
    const std::optional<double> value = readDecimal(text);
    if (!value) {
        const bool hasComma = text.find(',') != std::string::npos;
        throw DefinitionError{line, "the " + std::string{what} + " " + quoted(text) + " is not a number" +
                                        (hasComma ? "; write it with a decimal point" : "")};
    }
    if (*value < limits.lowest || *value > limits.highest) {
        const std::string unit = limits.unit.empty() ? std::string{} : std::string{' '}.append(limits.unit);
        throw DefinitionError{line, "the " + std::string{what} + " must be between " +
                                        decimalText(limits.lowest) + " and " + decimalText(limits.highest) +
                                        unit + ", not " + text};
    }
    return *value;
}

Columns::Columns(const Row& header, const std::vector<std::string_view>& known)
    : line_{header.line}, names_{header.cells} {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        const std::string& name = names_[i];
        const auto is = [&name](std::string_view other) { return isSameName(name, other); };
        if (name.empty()) {
            throw DefinitionError{line_, "column " + std::to_string(i + 1) + " has no name"};
        }
        if (std::ranges::none_of(known, is)) {
            throw DefinitionError{line_, "the column " + quoted(name) + " is unknown"};
        }
        if (position(name) != i) {
            throw DefinitionError{line_, "the column " + quoted(name) + " is there twice"};
        }
    }
}

void Columns::require(std::string_view name) const {
    if (!has(name)) {
        throw DefinitionError{line_, "the column " + quoted(name) + " is missing"};
    }
}

std::string Columns::cell(const Row& row, std::string_view name) const {
    const std::optional<std::size_t> i = position(name);
    return i && *i < row.cells.size() ? row.cells[*i] : std::string{};
}

void Columns::requireFitting(const Row& row) const {
    if (row.cells.size() > names_.size()) {
        throw DefinitionError{row.line,
                              "the line has " + std::to_string(row.cells.size()) +
                                  " cells, but the table has " + std::to_string(names_.size()) +
                                  " columns; write numbers with a decimal point and put texts with a "
                                  "separator in quotes"};
    }
}

std::optional<std::size_t> Columns::position(std::string_view name) const noexcept {
    const auto found =
        std::ranges::find_if(names_, [name](const std::string& column) { return isSameName(column, name); });
    return found == names_.end() ? std::nullopt : std::optional{std::size_t(found - names_.begin())};
}

} // namespace peng_robinson
