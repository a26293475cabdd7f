// What the window that edits a package shows and does, without the window: compounds that are chosen and
// those that can be added, and the binary parameters of the chosen ones. Nothing is taken over before
// result().
#pragma once

#include "packages/peng_robinson/catalogue/configuration.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

class EditModel {
  public:
    explicit EditModel(const Configuration& configuration);

    /// Positions in the catalogue, in the order of the package.
    const std::vector<std::size_t>& chosen() const noexcept { return selection_.compounds; }
    /// The others, in the order of the catalogue.
    std::vector<std::size_t> available() const;
    std::string_view nameOf(std::size_t compound) const { return catalogue_->compounds[compound].name; }

    /// Adds an available compound behind the chosen ones.
    void add(std::size_t compound);
    /// Takes out the i-th chosen compound. Its parameters come back when it is added again.
    void remove(std::size_t i);
    /// The i-th chosen compound changes places with the one before or behind it, if there is one.
    void moveUp(std::size_t i);
    void moveDown(std::size_t i);

    /// All pairs of chosen compounds.
    std::vector<CompoundPair> pairs() const;
    std::string nameOf(const CompoundPair& pair) const;
    double parameter(const CompoundPair& pair) const;
    double tabulatedParameter(const CompoundPair& pair) const;
    bool isChanged(const CompoundPair& pair) const;

    /// Sets the parameter that a person typed; says what is wrong with the text when it cannot be one.
    std::optional<std::string> setParameter(const CompoundPair& pair, std::string_view text);
    void useTabulatedParameter(const CompoundPair& pair);

    /// Why the package cannot be used like this; empty when it can.
    std::optional<std::string> problem() const;
    /// Whether anything differs from the configuration at the beginning.
    bool isChanged() const { return result() != original_; }
    Selection result() const;

  private:
    std::shared_ptr<const Catalogue> catalogue_;
    Selection selection_; ///< `changed` may also hold pairs whose compounds have been taken out
    Selection original_;
};

} // namespace peng_robinson
