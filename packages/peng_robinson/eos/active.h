// Compounds of zero amount take no part in a flash: their logarithms have no value. A flash works on the
// others and puts the zeros back.
#pragma once

#include "packages/peng_robinson/eos/equilibrium.h"
#include "packages/peng_robinson/eos/peng_robinson.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

class ActiveMixture {
  public:
    /// Throws InvalidInput as normalisedComposition().
    ActiveMixture(const PengRobinson& full, std::span<const double> amounts);

    const PengRobinson& model() const noexcept { return model_; }
    const std::vector<double>& z() const noexcept { return z_; }
    bool isPure() const noexcept { return z_.size() == 1; }

    /// A composition of the active compounds as one of all compounds.
    std::vector<double> expand(std::span<const double> active) const;
    /// Two phases at T and P, `beta` being vapour.
    Equilibrium twoPhases(double T, double P, double beta, std::span<const double> x,
                          std::span<const double> y) const;

  private:
    std::size_t fullSize_;
    std::vector<double> z_;
    std::vector<std::size_t> indices_;
    PengRobinson model_;
};

} // namespace peng_robinson::eos
