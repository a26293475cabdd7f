// A package definition is refused with the line that is wrong, or gives compounds that can be calculated and
// saved; its rows written again are the same.
#include "packages/peng_robinson/definition/definition.h"

#include "packages/peng_robinson/catalogue/configuration.h"
#include "packages/peng_robinson/catalogue/decimal.h"
#include "packages/peng_robinson/definition/rows.h"
#include "packages/peng_robinson/state/state.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cmath>

namespace fuzz {

namespace {

using namespace peng_robinson;

/// Every cell in quotes.
std::string written(const std::vector<Row>& rows) {
    std::string text;
    for (const Row& row : rows) {
        for (const std::string& cell : row.cells) {
            text += '"';
            for (const char c : cell) {
                text.append(c == '"' ? 2 : 1, c);
            }
            text += "\",";
        }
        text += '\n';
    }
    return text;
}

void requireRows(std::string_view text) {
    const std::vector<Row> rows = readRows(text);
    const std::vector<Row> again = readRows(written(rows));
    require(std::ranges::equal(rows, again, {}, &Row::cells, &Row::cells), "rows written again are the same");
    for (const Row& row : rows) {
        require(!row.cells.empty() && !row.cells.back().empty(), "a row ends with a filled cell");
        for (const std::string& cell : row.cells) {
            const auto number = readDecimal(cell);
            require(!number || readDecimal(decimalText(*number)) == number, "a number reads back as it is");
        }
    }
}

void requireUsable(const std::shared_ptr<const Catalogue>& catalogue) {
    const std::size_t count = catalogue->compounds.size();
    require(count > 0 && catalogue->k.size() == count, "every pair of compounds has a parameter");
    for (std::size_t i = 0; i < count; ++i) {
        const eos::Compound& compound = catalogue->compounds[i];
        require(catalogue->find(compound.name) == i, "a compound is found by its name");
        require(compound.Tc > 0.0 && compound.Pc > 0.0 && compound.molecularWeight > 0.0,
                "constants are positive");
        require(compound.idealGas.cp(298.15) > 0.0, "the heat capacity is positive");
        for (std::size_t j = 0; j < count; ++j) {
            require(catalogue->k(i, j) == catalogue->k(j, i) && isInteraction(catalogue->k(i, j)),
                    "a parameter holds in both directions");
        }
    }
    const Configuration all = Configuration::allOf(catalogue);
    require(readState(writeState(all), *catalogue) == all.selection(),
            "the package is opened as it was saved");
}

} // namespace

void run(Input input) {
    const std::string_view text = input.text();
    const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) +
                       static_cast<std::size_t>(std::ranges::count(text, '\r')) + 1;
    try {
        requireRows(text);
        requireUsable(readDefinition(text, "Fuzz"));
    } catch (const DefinitionError& refusal) {
        require(*refusal.what() != '\0', "a refusal says why");
        require(refusal.line() <= lines, "a refusal names a line of the file");
    }
}

} // namespace fuzz
