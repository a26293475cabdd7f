// Properties of two phases together, and their derivatives. Each phase has its own composition; temperature
// and pressure are common to both. A composition derivative has the values by the composition of the first
// phase, then those by the composition of the second, each part in the order of phase_slopes.h.
//
// K-values are the fraction in the first phase over that in the second when both are at equilibrium.
//
// Surface tension: Macleod, Trans. Faraday Soc. 19 (1923) 38, and Sugden, J. Chem. Soc. 125 (1924) 32, with
// the mixing rule of Weinaug, Katz, Ind. Eng. Chem. 35 (1943) 239: the fourth root of the tension is sum P_i
// (x_i rho' - y_i rho''), P_i being the parachors. The densities are those of volume_shift.h. To be expected:
// within 10 % for pure liquids from a reduced temperature of 0.4 to one of 0.8. The formula is even in the
// phases: it does not matter which of them is the liquid.
#pragma once

#include "packages/peng_robinson/eos/phase_slopes.h"

namespace peng_robinson::eos {

enum class TwoPhaseProperty { kValue, logKValue, surfaceTension };

/// Surface tension in N/m. `first` and `second` belong to one fluid. Throws NotAvailable when the surface
/// tension is asked for and a compound that is there has no parachor; by an absent compound without one the
/// derivative is not a number.
std::vector<double> twoPhaseValues(TwoPhaseProperty property, Derivative derivative,
                                   DifferentiablePhase& first, DifferentiablePhase& second);

} // namespace peng_robinson::eos
