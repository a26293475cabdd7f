// Worksheet values as they arrive: Excel ranges resolved to their contents, and references followed.
#pragma once

#include "src/foundation/array_variant.h"

namespace quorvane {

/// The value behind a VARIANT passed by reference (as scripts pass their variables), shallow: the original
/// still owns it. A value that is not by reference, or of a kind that no worksheet
/// passes, is returned as it stands.
VARIANT withoutReference(const VARIANT& value) noexcept;

/// True for an argument that the caller left out.
inline bool isOmitted(const VARIANT& value) noexcept { return value.vt == VT_ERROR; }

/// An Excel range becomes its contents, owned by the result: a single cell a scalar, several cells a
/// two-dimensional array of VARIANT. Everything else, and a range whose value cannot be read, stays as it is
/// and is borrowed.
ArrayVariant resolveRangeValue(const VARIANT& value);

} // namespace quorvane
