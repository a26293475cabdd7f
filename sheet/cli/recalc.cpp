#include "sheet/cli/add_in.h"
#include "sheet/cli/commands.h"
#include "sheet/cli/files.h"
#include "sheet/cli/progress.h"
#include "sheet/formula/csv.h"
#include "sheet/formula/dependencies.h"
#include "sheet/formula/table.h"
#include "sheet/formula/utf8.h"

#include <algorithm>

namespace sheet::cli {

namespace {

using formula::InputError;
using formula::Problem;

Component componentFor(const PackageOption& package) {
    const std::optional<Component> found = findComponent(package.progId);
    if (!found) {
        throw AddInError{"the package " + package.name + " cannot be attached: nothing is registered as " +
                         package.progId + "; quorvane-sheet list shows what is installed"};
    }
    if (found->isManager && !found->isPackage && !package.managed) {
        throw AddInError{"the package " + package.name + " cannot be attached: " + package.progId +
                         " is a package manager; write " + package.name + "=" + package.progId +
                         "!PACKAGENAME"};
    }
    return *found;
}

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

// Excel takes a file for UTF-8 only when it begins with the mark; plain ASCII needs none.
std::string csvOf(const formula::Grid& grid) {
    formula::CsvTable table(grid.rows());
    for (std::size_t row = 0; row < table.size(); ++row) {
        for (std::size_t column = 0; column < grid.columns(); ++column) {
            table[row].push_back(formula::exactText(grid.at({row, column})));
        }
    }
    const std::string text = formula::writeCsv(table);
    return formula::characterCount(text) == text.size() ? text : "\xEF\xBB\xBF" + text;
}

formula::Recalculated calculated(const Recalc& command, const formula::Worksheet& sheet,
                                 const formula::Graph& references) {
    std::vector<Component> components;
    for (const PackageOption& package : command.packages) {
        components.push_back(componentFor(package));
    }
    AddIn addIn{command.file};
    checkFunctions(sheet, addIn);
    for (std::size_t i = 0; i < components.size(); ++i) {
        addIn.attach(command.packages[i], components[i]);
    }
    ProgressLine progress;
    return formula::recalculate(
        sheet, references,
        [&](const formula::EnteredFormula& entered, const formula::Grid& grid) {
            return addIn.call(entered, grid);
        },
        [&](std::size_t done, std::size_t all) { progress.show(done, all); });
}

void printFailures(const std::vector<formula::Failure>& failures) {
    std::string text = failures.size() == 1 ? "1 formula failed:\n"
                                            : std::to_string(failures.size()) + " formulas failed:\n";
    for (const formula::Failure& failure : failures) {
        text += "  " + nameOf(failure.where) + ": " + failure.text + '\n';
    }
    print(Stream::error, text);
}

} // namespace

int recalc(const Recalc& command) {
    if (command.out && isSameFile(command.file, *command.out)) {
        return reject(*command.out +
                      ": --out would replace the worksheet's formulas by values; name another file");
    }
    try {
        const formula::Worksheet sheet =
            formula::readWorksheet(formula::readCsv(readFile(command.file)), command.arrays);
        refuseHugeTable(sheet);
        const formula::Recalculated result = calculated(command, sheet, formula::acyclicReferences(sheet));
        refuseHugeTable(result.grid.rows(), result.grid.columns());
        if (command.out) {
            writeFile(*command.out, csvOf(result.grid));
        }
        print(Stream::output, formula::printedTable(result.grid));
        if (result.failures.empty()) {
            return success;
        }
        printFailures(result.failures);
        return cellsFailed;
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
