// The worksheet functions that tell what the packages of a workbook contain. Each fills `result`, which holds
// nothing before, or throws WException with the text for the cell.
#pragma once

#include "src/workbook/session.h"

namespace quorvane::udf {

/// Names of the packages in the active workbook, sorted.
void packageNames(Session& session, IQuorvaneVSTOServices* services, const VARIANT& orientation,
                  VARIANT& result);

/// Unit of a property on mole or mass basis; null for one without a unit.
BSTR unitOfMeasure(BSTR propertyName, const VARIANT& basis);

/// Identifiers of all compounds, or of the one selected (for which the orientation is not looked at).
void compounds(Session& session, BSTR packageName, const VARIANT& orientation, const VARIANT& compound,
               VARIANT& result);

/// Labels of all phases, or of the one selected.
void phases(Session& session, BSTR packageName, const VARIANT& orientation, const VARIANT& phase,
            VARIANT& result);

} // namespace quorvane::udf
