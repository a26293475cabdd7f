// The table of compounds in a package definition.
#pragma once

#include "packages/peng_robinson/catalogue/catalogue.h"
#include "packages/peng_robinson/definition/cells.h"

#include <span>

namespace peng_robinson {

/// Reads the compounds below a header row into the catalogue. Throws DefinitionError.
void readCompounds(std::span<const Row> rows, Catalogue& catalogue);

} // namespace peng_robinson
