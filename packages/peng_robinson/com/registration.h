// Registers the package for the current user: COM class, names, CAPE-OPEN description and component
// categories.
#pragma once

#include "com/platform.h"

namespace peng_robinson {

HRESULT registerPackage() noexcept;

/// Leaves no key of the package behind. Succeeds when there was none.
HRESULT unregisterPackage() noexcept;

} // namespace peng_robinson
