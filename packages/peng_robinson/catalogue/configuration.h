// Configuration: a package's choice from a catalogue: which compounds, in which order, and the binary
// parameters that a person has changed. Immutable: an edit makes a new one, and calculations that still use
// the old one are not disturbed.
#pragma once

#include "packages/peng_robinson/catalogue/catalogue.h"
#include "packages/peng_robinson/eos/fluid.h"

#include <algorithm>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace peng_robinson {

/// Two compounds by their positions in a catalogue, the smaller first.
using CompoundPair = std::pair<std::size_t, std::size_t>;

inline CompoundPair pairOf(std::size_t i, std::size_t j) { return std::minmax(i, j); }

struct Selection {
    std::vector<std::size_t> compounds;     ///< positions in the catalogue, each at most once, at least one
    std::map<CompoundPair, double> changed; ///< binary parameters that replace those of the catalogue

    bool operator==(const Selection&) const = default;
};

class Configuration {
  public:
    Configuration(std::shared_ptr<const Catalogue> catalogue, Selection selection)
        : catalogue_{std::move(catalogue)}, selection_{std::move(selection)} {}

    /// All compounds in the order of the catalogue.
    static Configuration allOf(std::shared_ptr<const Catalogue> catalogue);

    const Catalogue& catalogue() const noexcept { return *catalogue_; }
    const std::shared_ptr<const Catalogue>& sharedCatalogue() const noexcept { return catalogue_; }
    const Selection& selection() const noexcept { return selection_; }

    std::size_t size() const noexcept { return selection_.compounds.size(); }
    const eos::Compound& compound(std::size_t i) const {
        return catalogue_->compounds[selection_.compounds[i]];
    }
    const eos::EquationConstants& constants() const noexcept { return catalogue_->constants; }

    /// Which of the chosen compounds has that name or that CAS number.
    std::optional<std::size_t> find(std::string_view name) const noexcept;
    std::optional<std::size_t> findByCas(std::string_view cas) const noexcept;

    /// Binary parameter of two chosen compounds.
    double k(std::size_t i, std::size_t j) const;

    /// A mixture of some of the chosen compounds, which refers to the catalogue.
    eos::Fluid fluidOf(std::span<const std::size_t> chosen) const;

  private:
    std::shared_ptr<const Catalogue> catalogue_;
    Selection selection_;
};

} // namespace peng_robinson
