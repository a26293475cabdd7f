// The worksheet functions for constants and temperature-dependent properties of compounds. Each fills
// `result`, which holds nothing before, or throws WException with the text for the cell.
#pragma once

#include "src/workbook/session.h"

namespace quorvane::udf {

/// The arguments that the two functions share, in their order; all of them borrowed.
struct CompoundPropertyArguments {
    BSTR packageName;
    BSTR propertyName;
    const VARIANT& basis;
    const VARIANT& orientation;
    const VARIANT& compound;
};

/// Checks come in this order: name, basis, package, compound; then the call, the conversion, and last the
/// orientation.
void compoundConstant(Session& session, const CompoundPropertyArguments& arguments, VARIANT& result);

/// The same at temperature T (K), which goes to the package as it stands. The result is always a row: the
/// orientation is not looked at.
void temperatureDependentProperty(Session& session, const CompoundPropertyArguments& arguments, double T,
                                  VARIANT& result);

} // namespace quorvane::udf
