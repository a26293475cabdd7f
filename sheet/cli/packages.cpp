#include "sheet/cli/packages.h"

#include "sheet/cli/csv_files.h"

namespace sheet::cli {

namespace {

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

} // namespace

Attachments::Attachments(const PackageOptions& options) : options_{options} {
    if (options.file) {
        saved_ = readCsvFile(*options.file);
    }
    for (const PackageOption& package : options.named) {
        components_.push_back(componentFor(package));
    }
}

void Attachments::enter(AddIn& addIn) const {
    std::string problems;
    for (std::size_t row = 0; row < saved_.size(); ++row) {
        if (const auto problem = addIn.restore(saved_[row])) {
            problems += (problems.empty() ? "" : "\n") + *options_.file + ": row " + std::to_string(row + 1) +
                        ": " + *problem;
        }
    }
    if (!problems.empty()) {
        throw AddInError{problems};
    }
    for (std::size_t i = 0; i < components_.size(); ++i) {
        addIn.attach(options_.named[i], components_[i]);
    }
}

} // namespace sheet::cli
