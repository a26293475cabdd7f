// How results lie on the sheet: along a row, down a column, or as a matrix; by the user's word, else by the
// shape of the calling range.
#pragma once

#include "src/foundation/array_variant.h"

#include <quorvane_idl.h>

namespace quorvane::udf {

/// The orientation that `argument` asks for, never Orientation_Auto. Without a request (nothing, an empty
/// cell, an unknown word, 0) a range of two or more rows and exactly one column gives a column and everything
/// else a row. Throws WStrException for a number outside the allowed ones; the word "matrix" is accepted even
/// where a matrix is not allowed, and gives a row there.
PropertyOrientation readOrientation(const VARIANT& argument, bool allowMatrix);

/// `values` as one column (vertical) or one row, lower bounds 1; no values give an empty result.
ArrayVariant shapeVector(std::span<const double> values, PropertyOrientation orientation);

/// The texts of a one-dimensional text list, copied into one column or one row.
ArrayVariant shapeTexts(std::span<const BSTR> texts, PropertyOrientation orientation);

/// Turns a one-dimensional array of VARIANT, as packages return them, into a column; its elements are moved.
/// Throws WStrException "Invalid values from Property Package: ..." when it is something else.
void toColumn(ArrayVariant& holder);

} // namespace quorvane::udf
