// The options of a phase equilibrium: comma separated words and names of extra properties. Blanks are not
// trimmed: a token is what stands between two commas.
#pragma once

#include "src/catalogue/property_catalogue.h"

#include <string>
#include <string_view>
#include <vector>

namespace quorvane::udf {

struct ExtraProperty {
    std::wstring name; ///< as typed
    const PropertyInfo* info;
};

struct EquilibriumOptions {
    bool overallResults = false;
    bool phaseResults = true;
    bool temperature = true;
    bool pressure = true;
    bool phaseFraction = true;
    bool composition = true;
    bool transpose = false;
    std::wstring solutionType;                  ///< empty: none requested
    std::vector<ExtraProperty> extraProperties; ///< in the order given, duplicates kept
};

/// Throws CWStrException for a second solution type, WStrException for a name that is not a single-phase
/// property without derivative, and what lookupProperty throws for an unknown one. An empty text gives the
/// defaults.
EquilibriumOptions parseEquilibriumOptions(std::wstring_view text);

} // namespace quorvane::udf
