// The packages that a command attaches: those of a file, then those named one by one.
#pragma once

#include "sheet/cli/add_in.h"
#include "sheet/formula/csv.h"

namespace sheet::cli {

class Attachments {
  public:
    /// Reads the file and looks the named packages up. Throws FileError and AddInError.
    explicit Attachments(const PackageOptions& options);

    /// Attaches them. Throws AddInError.
    void enter(AddIn& addIn) const;

  private:
    const PackageOptions& options_;
    std::vector<Component> components_; // of options_.named
    formula::CsvTable saved_;
};

} // namespace sheet::cli
