#include "packages/peng_robinson/catalogue/named_packages.h"

#include <array>

namespace peng_robinson {
namespace {

constexpr std::string_view naturalGas[] = {
    "nitrogen", "carbon dioxide", "hydrogen sulfide", "methane",  "ethane",    "propane",  "isobutane",
    "n-butane", "isopentane",     "n-pentane",        "n-hexane", "n-heptane", "n-octane", "water",
};
constexpr std::string_view airSeparation[] = {"nitrogen", "oxygen", "argon"};
constexpr std::string_view lightEnds[] = {
    "hydrogen",         "methane",  "ethylene",   "ethane",    "propylene",  "propane",
    "isobutane",        "n-butane", "isopentane", "n-pentane", "neopentane", "n-hexane",
    "hydrogen sulfide", "benzene",  "n-heptane",  "toluene",
};
constexpr std::string_view synthesisGas[] = {
    "hydrogen", "carbon dioxide", "carbon monoxide", "methane", "nitrogen", "argon", "water",
};
constexpr std::string_view aromatics[] = {"benzene", "toluene"};

constexpr std::array packages{
    NamedPackage{"All compounds", "Peng-Robinson equation of state (1976) with all built-in compounds", {}},
    NamedPackage{"Natural gas", "Peng-Robinson equation of state (1976) for natural gas and its liquids",
                 naturalGas},
    NamedPackage{"Air separation", "Peng-Robinson equation of state (1976) for nitrogen, oxygen and argon",
                 airSeparation},
    NamedPackage{"Refinery light ends", "Peng-Robinson equation of state (1976) for light hydrocarbons",
                 lightEnds},
    NamedPackage{"Hydrogen and CO2",
                 "Peng-Robinson equation of state (1976) for synthesis gas and captured CO2", synthesisGas},
    NamedPackage{"Benzene and toluene", "Peng-Robinson equation of state (1976) for benzene and toluene",
                 aromatics},
};

} // namespace

Configuration NamedPackage::configuration() const {
    const auto catalogue = builtInCatalogue();
    if (compounds.empty()) {
        return Configuration::allOf(catalogue);
    }
    Selection selection;
    for (const std::string_view compound : compounds) {
        selection.compounds.push_back(catalogue->find(compound).value());
    }
    return {catalogue, std::move(selection)};
}

std::span<const NamedPackage> namedPackages() noexcept { return packages; }

} // namespace peng_robinson
