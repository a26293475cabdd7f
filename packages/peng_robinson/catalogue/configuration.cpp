#include "packages/peng_robinson/catalogue/configuration.h"

#include <numeric>

namespace peng_robinson {

Configuration Configuration::allOf(std::shared_ptr<const Catalogue> catalogue) {
    Selection selection;
    selection.compounds.resize(catalogue->compounds.size());
    std::iota(selection.compounds.begin(), selection.compounds.end(), std::size_t{0});
    return {std::move(catalogue), std::move(selection)};
}

std::optional<std::size_t> Configuration::find(std::string_view name) const noexcept {
    for (std::size_t i = 0; i < size(); ++i) {
        if (isSameName(compound(i).name, name)) {
            return i;
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> Configuration::findByCas(std::string_view cas) const noexcept {
    for (std::size_t i = 0; i < size() && !cas.empty(); ++i) {
        if (compound(i).cas == cas) {
            return i;
        }
    }
    return std::nullopt;
}

double Configuration::k(std::size_t i, std::size_t j) const {
    const CompoundPair pair = pairOf(selection_.compounds[i], selection_.compounds[j]);
    const auto changed = selection_.changed.find(pair);
    return changed != selection_.changed.end() ? changed->second : catalogue_->k(pair.first, pair.second);
}

eos::Fluid Configuration::fluidOf(std::span<const std::size_t> chosen) const {
    std::vector<const eos::Compound*> compounds;
    eos::InteractionMatrix matrix{chosen.size()};
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        compounds.push_back(&compound(chosen[i]));
        for (std::size_t j = 0; j < i; ++j) {
            matrix.set(i, j, k(chosen[i], chosen[j]));
        }
    }
    return eos::Fluid{std::move(compounds), std::move(matrix), constants()};
}

} // namespace peng_robinson
