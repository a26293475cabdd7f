#include "sheet/chart/chart_of_cells.h"
#include "sheet/cli/commands.h"
#include "sheet/cli/csv_files.h"
#include "sheet/cli/files.h"
#include "sheet/cli/packages.h"
#include "sheet/cli/progress.h"
#include "sheet/formula/dependencies.h"
#include "sheet/formula/table.h"

#include <algorithm>
#include <span>

namespace sheet::cli {

namespace {

using formula::InputError;
using formula::Problem;

void checkFunctions(const formula::Worksheet& sheet, AddIn& addIn) {
    std::vector<Problem> problems;
    for (const formula::EnteredFormula& entered : sheet.formulas) {
        const std::string& name = entered.formula.function;
        if (!name.empty() && !addIn.hasFunction(name)) {
            problems.push_back({entered.block.first,
                                "the add-in has no worksheet function " + name + "; check its spelling"});
        }
    }
    if (!problems.empty()) {
        throw InputError{std::move(problems)};
    }
}

// The result is printed and written as one table from A1 on, so that a few cells far apart would fill the
// memory with the empty ones between them.
void refuseHugeTable(std::size_t rows, std::size_t columns) {
    constexpr std::size_t maximumCells = 16 * formula::maximumRows;
    if (rows * columns > maximumCells) {
        throw InputError{std::nullopt,
                         "the worksheet reaches to " + nameOf(formula::Address{rows - 1, columns - 1}) +
                             ", and a table of more than 16,777,216 cells cannot be shown; move "
                             "the cells closer together"};
    }
}

void refuseHugeTable(const formula::Worksheet& sheet) {
    std::size_t rows = 0;
    std::size_t columns = 0;
    for (const formula::EnteredConstant& constant : sheet.constants) {
        rows = std::max(rows, constant.cell.row + 1);
        columns = std::max(columns, constant.cell.column + 1);
    }
    for (const formula::EnteredFormula& entered : sheet.formulas) {
        rows = std::max(rows, entered.block.endRow());
        columns = std::max(columns, entered.block.endColumn());
    }
    refuseHugeTable(rows, columns);
}

formula::CsvTable valuesOf(const formula::Grid& grid) {
    formula::CsvTable table(grid.rows());
    for (std::size_t row = 0; row < table.size(); ++row) {
        for (std::size_t column = 0; column < grid.columns(); ++column) {
            table[row].push_back(formula::exactText(grid.at({row, column})));
        }
    }
    return table;
}

struct Outcome {
    formula::Recalculated cells;
    formula::CsvTable packages; // when they are to be saved
};

Outcome calculated(const Recalc& command, const formula::Worksheet& sheet, const formula::Graph& references) {
    const Attachments attachments{command.packages};
    AddIn addIn{command.file};
    checkFunctions(sheet, addIn);
    attachments.enter(addIn);
    ProgressLine progress{"formulas"};
    Outcome outcome{formula::recalculate(
                        sheet, references,
                        [&](const formula::EnteredFormula& entered, const formula::Grid& grid) {
                            return addIn.call(entered, grid);
                        },
                        [&](std::size_t done, std::size_t all) { progress.show(done, all); }),
                    {}};
    if (command.savePackages) {
        outcome.packages = addIn.savedPackages();
    }
    return outcome;
}

void printFailures(const std::vector<formula::Failure>& failures) {
    std::string text = failures.size() == 1 ? "1 formula failed:\n"
                                            : std::to_string(failures.size()) + " formulas failed:\n";
    for (const formula::Failure& failure : failures) {
        text += "  " + nameOf(failure.where) + ": " + failure.text + '\n';
    }
    print(Stream::error, text);
}

// What would be lost or confused by writing the named files; empty when nothing would.
std::string problemWithFiles(const Recalc& command) {
    struct Written {
        const char* option;
        const std::optional<std::string>& file;
        const char* instead; // of the worksheet's formulas
    };
    const Written written[] = {{"--out", command.out, "the worksheet's formulas by values"},
                               {"--save-packages", command.savePackages, "the worksheet by its packages"},
                               {"--svg", command.svg, "the worksheet by a chart"}};
    for (const Written& one : written) {
        if (one.file && isSameFile(command.file, *one.file)) {
            return *one.file + ": " + one.option + " would replace " + one.instead + "; name another file";
        }
        for (const Written& other : std::span{&one + 1, std::end(written)}) {
            if (one.file && other.file && isSameFile(*one.file, *other.file)) {
                return *one.file + ": " + one.option + " and " + other.option +
                       " name the same file; name two";
            }
        }
    }
    if (command.out && command.packages.file && isSameFile(*command.packages.file, *command.out)) {
        return *command.out + ": --out would replace the saved packages by values; name another file";
    }
    if (command.svg && command.packages.file && isSameFile(*command.packages.file, *command.svg)) {
        return *command.svg + ": --svg would replace the saved packages by a chart; name another file";
    }
    return {};
}

void writeChart(const Recalc& command, const formula::Grid& grid) {
    const chart::Chart chart = chart::chartOf(grid, command.chartX, command.chartY);
    if (!chart::hasPoints(chart)) {
        throw InputError{command.chartY.front().first,
                         "there are no pairs of numbers in the ranges of --x and --y to be drawn"};
    }
    writeFile(*command.svg, chart::svgOf(chart));
}

} // namespace

int recalc(const Recalc& command) {
    if (const std::string problem = problemWithFiles(command); !problem.empty()) {
        return reject(problem);
    }
    try {
        const formula::Worksheet sheet =
            formula::readWorksheet(formula::readCsv(readFile(command.file)), command.arrays);
        refuseHugeTable(sheet);
        const Outcome outcome = calculated(command, sheet, formula::acyclicReferences(sheet));
        const formula::Recalculated& result = outcome.cells;
        refuseHugeTable(result.grid.rows(), result.grid.columns());
        if (command.out) {
            writeCsvFile(*command.out, valuesOf(result.grid));
        }
        if (command.savePackages) {
            writeCsvFile(*command.savePackages, outcome.packages);
        }
        print(Stream::output, formula::printedTable(result.grid));
        if (!result.failures.empty()) {
            printFailures(result.failures);
        }
        // After the failures, which may be why there is nothing to draw.
        if (command.svg) {
            writeChart(command, result.grid);
        }
        return result.failures.empty() ? success : cellsFailed;
    } catch (const InputError& error) {
        std::string text;
        for (const Problem& problem : error.problems()) {
            text += problem.inFile(command.file) + '\n';
        }
        print(Stream::error, text);
        return unusable;
    }
}

} // namespace sheet::cli
