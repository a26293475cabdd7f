#include "sheet/checking/check.h"
#include "sheet/cli/commands.h"
#include "sheet/cli/files.h"
#include "sheet/cli/packages.h"
#include "sheet/cli/progress.h"
#include "sheet/formula/table.h"

#include <algorithm>

namespace sheet::cli {

namespace {

constexpr const char* askedFunctions[] = {"CapeOpenCompounds",        "CapeOpenPhases",
                                          "CapeOpenCompoundConstant", "CapeOpenTemperatureDependentProperty",
                                          "CapeOpenMixtureProperty",  "CapeOpenTwoPhaseProperty",
                                          "CapeOpenPhaseEquilibrium"};

void requireFunctions(AddIn& addIn) {
    for (const char* const name : askedFunctions) {
        if (!addIn.hasFunction(name)) {
            throw AddInError{std::string{"the add-in Quorvane.Excel has no worksheet function "} + name +
                             "; register it again"};
        }
    }
}

void requireCompositionsFor(const checking::Package& package, const Check& command) {
    for (const checking::Composition& composition : command.choices.compositions) {
        if (composition.size() != package.compounds().size() && package.problem().empty()) {
            throw AddInError{"the package " + command.name + " has " +
                             std::to_string(package.compounds().size()) +
                             " compounds, and --composition has " + std::to_string(composition.size()) +
                             " amounts; give one for each compound"};
        }
    }
}

} // namespace

int check(const Check& command) {
    const Attachments attachments{command.packages};
    AddIn addIn{"check"};
    requireFunctions(addIn);
    attachments.enter(addIn);
    if (const auto names = addIn.packageNames(); std::ranges::find(names, command.name) == names.end()) {
        throw AddInError{"no package " + command.name + " is attached; attach it by --package " +
                         command.name + "=PROGID"};
    }
    const checking::Package package{command.name, addIn.offerOf(command.name),
                                    [&](const formula::EnteredFormula& entered, const formula::Grid& grid) {
                                        return addIn.call(entered, grid);
                                    }};
    requireCompositionsFor(package, command);
    checking::Report report;
    {
        ProgressLine progress{"states"};
        report = checking::check(package, command.choices,
                                 [&](std::size_t done, std::size_t all) { progress.show(done, all); });
    }
    print(Stream::output, formula::printedRows(report.table()));
    print(Stream::output, report.agrees() ? "\nEverything that was checked agrees.\n"
                                          : "\nNot everything that was checked agrees.\n");
    return report.agrees() ? success : doesNotFit;
}

} // namespace sheet::cli
