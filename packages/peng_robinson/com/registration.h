// Registers the package and its manager for the current user: COM classes, names, CAPE-OPEN descriptions and
// component categories.
#pragma once

#include "com/platform.h"

namespace peng_robinson {

HRESULT registerClasses() noexcept;

/// Leaves no key of the two behind. Succeeds when there was none.
HRESULT unregisterClasses() noexcept;

} // namespace peng_robinson
