// The CAPE-OPEN 1.1 property packages and package managers that are installed, as the registry describes
// them.
#pragma once

#include "sheet/cli/text.h"

#include <optional>
#include <vector>

namespace sheet::cli {

struct Component {
    CLSID clsid{};
    bool isPackage = false;
    bool isManager = false;
    std::string progId;
    std::string name; // registered for display, else the name of the class, else its ProgID
    std::string version;
    std::string vendor; // its address on the web
};

/// Ordered by name.
std::vector<Component> installedComponents();

/// The class registered under a ProgID, whether it says what it is or not.
std::optional<Component> findComponent(const std::string& progId);

} // namespace sheet::cli
