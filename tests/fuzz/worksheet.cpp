// Whatever stands in a worksheet: it is refused with a place, or in the end every formula has seen the final
// values of all its cells. The first line of the input has the ranges of array formulas, the rest is the CSV
// file.
#include "sheet/formula/recalculation.h"
#include "sheet/formula/table.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cmath>

namespace fuzz {

namespace {

using namespace sheet::formula;

// Larger worksheets differ in the time they take only.
constexpr std::size_t mostFormulas = 80;
constexpr std::size_t mostCells = 3000;

std::vector<Block> arraysIn(std::string_view line) {
    std::vector<Block> arrays;
    while (!line.empty()) {
        const std::string_view word = line.substr(0, line.find(' '));
        if (const std::optional<Block> block = readBlock(word); block && block->cellCount() <= mostCells) {
            arrays.push_back(*block);
        }
        line.remove_prefix(std::min(word.size() + 1, line.size()));
    }
    return arrays;
}

bool isSmall(const Worksheet& sheet) {
    std::size_t cells = 0;
    for (const EnteredFormula& entered : sheet.formulas) {
        cells += entered.block.cellCount();
        for (const Block& block : entered.formula.references()) {
            cells += block.cellCount();
        }
    }
    return cells <= mostCells && sheet.formulas.size() <= mostFormulas;
}

/// Up to three columns and two rows, as the numbers and texts referred to decide.
Matrix madeFrom(const Formula& formula, const Grid& grid) {
    double sum = 0.0;
    for (const Block& block : formula.references()) {
        for (const Value& value : grid.values(block).values) {
            const double number = std::holds_alternative<double>(value) ? std::get<double>(value) : 1.0;
            sum += std::abs(number) < 1e6 ? std::abs(number) : 0.0;
        }
    }
    const auto whole = static_cast<std::size_t>(sum);
    Matrix result{1 + whole % 2, 1 + whole % 3, {}};
    for (std::size_t i = 0; i < result.rows * result.columns; ++i) {
        result.values.emplace_back(std::fmod(sum + static_cast<double>(i), 5.0));
    }
    return result;
}

Matrix shownFor(const EnteredFormula& entered, const Grid& grid) {
    if (!entered.formula.function.empty()) {
        return madeFrom(entered.formula, grid);
    }
    Matrix values = grid.values(std::get<Block>(entered.formula.arguments.front()));
    for (Value& value : values.values) {
        value = isEmpty(value) ? Value{0.0} : value;
    }
    return values;
}

void requireSettled(const Worksheet& sheet, const Recalculated& result) {
    for (std::size_t i = 0; i < sheet.formulas.size(); ++i) {
        const Block& covered = result.grid.covered(i);
        if (result.grid.blockage(i)) {
            require(result.grid.values(covered) == Matrix::of(CellError::spill), "what does not fit says so");
            continue;
        }
        const Matrix expected = shownFor(sheet.formulas[i], result.grid);
        if (sheet.formulas[i].array) {
            require(covered == sheet.formulas[i].block, "an array formula fills its range");
            require(result.grid.at(covered.first) == expected.at(0, 0), "its first cell is up to date");
        } else {
            require(result.grid.values(covered) == expected, "every result is up to date");
        }
    }
    for (const EnteredConstant& constant : sheet.constants) {
        require(result.grid.at(constant.cell) == constant.value, "what was typed stays");
    }
}

} // namespace

void run(Input input) {
    const std::vector<Block> arrays = arraysIn(input.line());
    try {
        const Worksheet sheet = readWorksheet(readCsv(input.text()), arrays);
        if (!isSmall(sheet)) {
            return;
        }
        const Recalculated result = recalculate(sheet, [](const EnteredFormula& entered, const Grid& grid) {
            return Result{madeFrom(entered.formula, grid)};
        });
        requireSettled(sheet, result);
        const std::string table = printedTable(result.grid);
        const auto lines = static_cast<std::size_t>(std::ranges::count(table, '\n'));
        require(lines == result.grid.rows() + 1, "each row is one line");
    } catch (const InputError& error) {
        for (const Problem& problem : error.problems()) {
            require(!problem.message.empty(), "a refusal says why");
        }
    }
}

} // namespace fuzz
