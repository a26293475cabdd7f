// Splits a mixture at T and P into two phases of equal fugacities. All mole fractions of z are positive.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

struct PhaseSplit {
    double beta = 0.0;        ///< fraction of the lighter phase y, strictly between 0 and 1
    std::vector<double> x, y; ///< heavier and lighter phase
    PhaseState heavy, light;
};

/// Its memory is used again from one mixture to the next.
class PhaseSplitter {
  public:
    /// Successive substitution from K-values, finished by Newton's method for the Gibbs energy. False when
    /// the iteration ends at equal compositions or with one phase only.
    bool split(const Isotherm& isotherm, double P, std::span<const double> z, std::span<const double> lnK,
               PhaseSplit& result);

    /// From a phase that lies below the tangent plane of z, always towards lower Gibbs energy, which cannot
    /// end with one phase: slower, for mixtures near a critical point.
    bool splitDownhill(const Isotherm& isotherm, double P, std::span<const double> z,
                       std::span<const double> formed, PhaseSplit& result);

  private:
    struct Iterate {
        std::vector<double> lnK, x, y;
        double beta = 0.0;
        PhaseState liquid, vapor;
        std::vector<double> residual; ///< ln of the fugacity ratio, vapour over liquid
        double error = 0.0;           ///< its largest modulus
        bool hasDerivatives = false;
    };
    /// The phases that belong to the K-values of the iterate, from which all else follows; false when there
    /// are none.
    bool evaluate(Iterate& at, double guess, bool derivatives);
    void setPhases(Iterate& at, bool derivatives);
    bool setMoles(Iterate& at, std::span<const double> vapor);
    double gibbsEnergy(const Iterate& at) const;
    bool setNewtonStep(double damping);
    void setLnKOfNext();
    bool iterate();
    bool isResult() const;

    const Isotherm* isotherm_ = nullptr;
    double P_ = 0.0;
    std::span<const double> z_;
    Iterate at_, next_;
    std::vector<double> K_, scale_, matrix_, step_, moles_;
};

/// Well below its pseudo-critical temperature and far denser than critical. Near a critical point both phases
/// of a true vapour-liquid equilibrium are dense, but neither is this dense and this cold.
bool isClearlyLiquid(const PhaseState& phase, double RT);

} // namespace peng_robinson::eos
