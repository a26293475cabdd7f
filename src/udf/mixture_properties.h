// The worksheet functions for properties of mixtures: of one phase, and of two phases together.
//
// Layout. One value is a single number. Several values are a list (horizontal), a column (vertical) or, for a
// property per pair of compounds, a matrix: the package's values are taken pair by pair, the first compound's
// pairs first, so that value i * n + j stands in row i and column j: rows are the compounds of the property,
// columns the compounds differentiated by. A derivative with respect to both phases' compositions has 2 n
// columns, those of phase 1 before those of phase 2. `transposed` exchanges rows and columns.
#pragma once

#include "src/workbook/session.h"

namespace quorvane::udf {

/// The arguments of CapeOpenMixtureProperty in its order; all of them borrowed. T in K, P in Pa.
struct MixturePropertyArguments {
    BSTR packageName;
    BSTR propertyName;
    BSTR phaseName;
    double T;
    double P;
    const VARIANT& composition;
    const VARIANT& compositionBasis;
    const VARIANT& propertyBasis;
    const VARIANT& orientation;
    const VARIANT& transposed;
    const VARIANT& normalizeComposition;
};

/// The arguments of CapeOpenTwoPhaseProperty in its order.
struct TwoPhasePropertyArguments {
    BSTR packageName;
    BSTR propertyName;
    BSTR phase1Name;
    BSTR phase2Name;
    double T;
    double P;
    const VARIANT& phase1Composition;
    const VARIANT& phase2Composition;
    const VARIANT& compositionBasis;
    const VARIANT& orientation;
    const VARIANT& compositionDerivativePhase;
    const VARIANT& transposed;
    const VARIANT& normalizeComposition;
};

/// `result` holds nothing before. Throws WException with the text for the cell. Checks come in this order:
/// names, bases (of the property, then of the composition), temperature, pressure, package, normalisation,
/// composition, property; then the calculation, and last the layout.
void mixtureProperty(Session& session, const MixturePropertyArguments& arguments, VARIANT& result);

/// The same with two phases; the derivative phase is read after the calculation.
void twoPhaseProperty(Session& session, const TwoPhasePropertyArguments& arguments, VARIANT& result);

} // namespace quorvane::udf
