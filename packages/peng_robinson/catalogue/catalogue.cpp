#include "packages/peng_robinson/catalogue/catalogue.h"

#include <algorithm>

namespace peng_robinson {
namespace {

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::shared_ptr<const Catalogue> makeBuiltIn() {
    auto catalogue = std::make_shared<Catalogue>();
    catalogue->compounds.assign(eos::compounds().begin(), eos::compounds().end());
    const std::vector<eos::Compound>& all = catalogue->compounds;
    catalogue->k = eos::InteractionMatrix{all.size()};
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            catalogue->k.set(i, j, eos::interactionParameter(all[i].name, all[j].name));
        }
    }
    return catalogue;
}

} // namespace

bool isSameName(std::string_view a, std::string_view b) noexcept {
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::optional<std::size_t> Catalogue::find(std::string_view name) const noexcept {
    const auto found = std::ranges::find_if(
        compounds, [name](const eos::Compound& compound) { return isSameName(compound.name, name); });
    return found == compounds.end() ? std::nullopt : std::optional{std::size_t(found - compounds.begin())};
}

std::shared_ptr<const Catalogue> builtInCatalogue() {
    static const std::shared_ptr<const Catalogue> catalogue = makeBuiltIn();
    return catalogue;
}

} // namespace peng_robinson
