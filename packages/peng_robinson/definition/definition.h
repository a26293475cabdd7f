// Package definitions: text files with which users give the package compounds of their own. The format is
// described in docs/package_definition.md.
#pragma once

#include "packages/peng_robinson/catalogue/catalogue.h"
#include "packages/peng_robinson/definition/definition_error.h"

#include <memory>
#include <string>
#include <string_view>

namespace peng_robinson {

inline constexpr std::size_t largestDefinition = 1U << 20; ///< bytes

/// `name` is the name of the package. Throws DefinitionError for the first mistake.
std::shared_ptr<const Catalogue> readDefinition(std::string_view text, std::string name);

} // namespace peng_robinson
