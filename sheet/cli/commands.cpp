#include "sheet/cli/commands.h"

#include "sheet/cli/components.h"
#include "sheet/cli/files.h"
#include "sheet/formula/table.h"

namespace sheet::cli {

namespace {

const char* kindOf(const Component& component) { return component.isPackage ? "package" : "manager"; }

struct Runner {
    int operator()(const Recalc& command) const { return recalc(command); }
    int operator()(const Info& command) const { return info(command); }
    int operator()(const Check& command) const { return check(command); }
    int operator()(List) const { return list(); }
    int operator()(Help) const {
        print(Stream::output, helpText);
        return success;
    }
    int operator()(Version) const {
        print(Stream::output, "quorvane-sheet " QUORVANE_VERSION "\n");
        return success;
    }
};

} // namespace

int run(const Command& command) { return std::visit(Runner{}, command); }

int list() {
    const std::vector<Component> components = installedComponents();
    if (components.empty()) {
        print(Stream::output, "No CAPE-OPEN 1.1 property packages or package managers are installed.\n");
        return success;
    }
    formula::Matrix table{components.size() + 1, 5, {"kind", "name", "version", "ProgID", "vendor"}};
    for (const Component& component : components) {
        for (const std::string& cell : {std::string{kindOf(component)}, component.name, component.version,
                                        component.progId, component.vendor}) {
            table.values.emplace_back(cell);
        }
    }
    print(Stream::output, formula::printedRows(table));
    return success;
}

int reject(std::string_view message) noexcept {
    try {
        print(Stream::error, "quorvane-sheet: " + std::string{message} + '\n');
    } catch (const std::bad_alloc&) {
        // The exit code tells as much as there is memory for.
    }
    return unusable;
}

} // namespace sheet::cli
