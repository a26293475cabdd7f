// Real vectors, such as compositions, out of whatever a worksheet user passes for one.
#pragma once

#include "com/platform.h"

#include <vector>

namespace quorvane {

/// Reads a number, a range, or an array with at most one dimension longer than 1: a row, a column and a
/// single cell are all accepted, a block is refused. Inside arrays an empty cell reads as 0 and a numeric
/// text as its number; an empty value is an empty vector. Throws CWStrException or WStrException: "value not
/// specified", "unexpected dimension; array expected", "Failed to convert ..." with the offending text,
/// "Array contains values that are not numbers", "not a real array". The memory of `reuse` serves for the
/// result.
std::vector<double> readRealVector(const VARIANT& value, std::vector<double> reuse = {});

} // namespace quorvane
