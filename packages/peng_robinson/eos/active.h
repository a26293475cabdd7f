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
    /// No mixture yet. The model outlives it.
    explicit ActiveMixture(const PengRobinson& full) : full_{&full}, model_{full} {}
    ActiveMixture(const PengRobinson& full, std::span<const double> amounts) : ActiveMixture{full} {
        assign(amounts);
    }

    /// Another mixture of the model, which takes no memory when it has the same compounds. Throws
    /// InvalidInput as normalisedComposition().
    void assign(std::span<const double> amounts);

    const PengRobinson& model() const noexcept { return model_; }
    const std::vector<double>& z() const noexcept { return z_; }
    bool isPure() const noexcept { return z_.size() == 1; }

    /// Two phases at T and P, `beta` being vapour.
    void setTwoPhases(double T, double P, double beta, std::span<const double> x, std::span<const double> y,
                      Equilibrium& result) const;
    Equilibrium twoPhases(double T, double P, double beta, std::span<const double> x,
                          std::span<const double> y) const;
    /// All of it as one phase.
    void setOnePhase(double T, double P, bool isLiquid, Equilibrium& result) const;

  private:
    /// A composition of the active compounds as one of all compounds.
    void setPhase(double fraction, std::span<const double> active, std::optional<PhaseAmount>& phase) const;

    const PengRobinson* full_;
    std::vector<double> all_, z_;
    std::vector<std::size_t> indices_, found_;
    PengRobinson model_;
};

} // namespace peng_robinson::eos
