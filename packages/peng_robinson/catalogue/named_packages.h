// The packages that the manager offers without any file: choices from the built-in compounds.
#pragma once

#include "packages/peng_robinson/catalogue/configuration.h"

#include <span>
#include <string_view>

namespace peng_robinson {

struct NamedPackage {
    std::string_view name;
    std::string_view description;
    std::span<const std::string_view> compounds; ///< empty: all

    Configuration configuration() const;
};

std::span<const NamedPackage> namedPackages() noexcept;

} // namespace peng_robinson
