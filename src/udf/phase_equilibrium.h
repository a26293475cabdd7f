// The phase equilibrium function of the worksheet.
#pragma once

#include "src/workbook/session.h"

namespace quorvane::udf {

/// The arguments of CapeOpenPhaseEquilibrium in its order; all of them borrowed. The condition values have
/// the units of EquilibriumCondition.
struct PhaseEquilibriumArguments {
    BSTR packageName;
    const VARIANT& overallComposition;
    BSTR condition1;
    double condition1Value;
    BSTR condition2;
    double condition2Value;
    const VARIANT& basis;
    const VARIANT& options;
    const VARIANT& noNumber;
    const VARIANT& orientation;
    const VARIANT& normalizeComposition;
};

/// Runs the flash and lays its table out. `result` holds nothing before. Throws WException with the text for
/// the cell.
///
/// Checks come in this order: condition names, basis, condition values, filler, package, normalisation,
/// composition, options; then the flash, the extra properties, and last the orientation.
void phaseEquilibrium(Session& session, const PhaseEquilibriumArguments& arguments, VARIANT& result);

} // namespace quorvane::udf
