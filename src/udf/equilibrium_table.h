// The table of a phase equilibrium. Quantities stand in the order temperature (K), pressure (Pa), phase
// fraction, composition, extra values.
#pragma once

#include "src/foundation/array_variant.h"
#include "src/material/material_object.h"
#include "src/udf/equilibrium_options.h"

#include <quorvane_idl.h>

namespace quorvane::udf {

/// One row of the table: the whole mixture or one phase. Missing where there is no number.
struct EquilibriumRow {
    bool present = true;
    double temperature = 0.0;
    double pressure = 0.0;
    double fraction = 0.0;
    std::vector<double> composition;
    std::vector<double> extra;
};

struct EquilibriumResults {
    EquilibriumRow overall;
    std::vector<EquilibriumRow> phases; ///< in the package's order, absent ones included
};

/// Lays the results out. Matrix: a row for the mixture (if asked) and one for each phase, a column for each
/// quantity; absent phases and missing numbers show `filler`. Otherwise a flat list: temperature and pressure
/// of the mixture, its extra values as far as there are any (if asked), then fraction, composition and extra
/// values of each phase. Throws CWStrException "No results" for an empty table.
ArrayVariant layOutEquilibrium(const EquilibriumResults& results, const EquilibriumOptions& options,
                               const VARIANT& filler, PropertyOrientation orientation);

} // namespace quorvane::udf
