// Splits a mixture at T and P into two phases of equal fugacities. All mole fractions of z are positive.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <optional>
#include <span>
#include <vector>

namespace peng_robinson::eos {

struct PhaseSplit {
    double beta;              ///< fraction of the lighter phase y, strictly between 0 and 1
    std::vector<double> x, y; ///< heavier and lighter phase
    PhaseState heavy, light;
};

/// Successive substitution from K = y/x, finished by Newton's method for the Gibbs energy. Empty when the
/// iteration ends at equal compositions or with one phase only.
std::optional<PhaseSplit> splitPhases(const Isotherm& isotherm, double P, std::span<const double> z,
                                      std::vector<double> lnK);

/// Well below its pseudo-critical temperature and far denser than critical. Near a critical point both phases
/// of a true vapour-liquid equilibrium are dense, but neither is this dense and this cold.
bool isClearlyLiquid(const PhaseState& phase, double RT);

} // namespace peng_robinson::eos
