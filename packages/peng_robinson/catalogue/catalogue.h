// Catalogue: what a package can be made of: compounds, their binary parameters and the constants of the
// equation of state. Made once, then shared by every package that uses it. Texts are UTF-8.
#pragma once

#include "packages/peng_robinson/eos/compound.h"
#include "packages/peng_robinson/eos/peng_robinson.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

struct Catalogue {
    Catalogue() = default;
    Catalogue(const Catalogue&) = delete; // the compounds refer to the texts
    Catalogue& operator=(const Catalogue&) = delete;

    std::string origin; ///< name of the definition that it comes from; empty for the built-in one
    std::string description;
    std::deque<std::string> texts; ///< owner of the texts of compounds that are not built in
    std::vector<eos::Compound> compounds;
    eos::InteractionMatrix k;
    eos::EquationConstants constants;

    /// Position of the compound of that name.
    std::optional<std::size_t> find(std::string_view name) const noexcept;
};

/// The compounds of eos::compounds() with the tabulated binary parameters.
std::shared_ptr<const Catalogue> builtInCatalogue();

/// Names of compounds and packages are compared without ASCII case.
bool isSameName(std::string_view a, std::string_view b) noexcept;

// Far beyond what was ever fitted. A larger value is a slip, and above 1 the attraction of two compounds
// would turn into repulsion.
inline constexpr double lowestInteraction = -2.0, highestInteraction = 1.0;

inline bool isInteraction(double k) noexcept { return k >= lowestInteraction && k <= highestInteraction; }

} // namespace peng_robinson
