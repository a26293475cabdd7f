// Viscosity and thermal conductivity of gases and liquids, pure and mixed, by corresponding states. SI units.
//
// Viscosity: that of the dilute gas after Chung, Ajlan, Lee, Starling, Ind. Eng. Chem. Res. 27 (1988) 671,
// and what density adds to it after Jossi, Stiel, Thodos, AIChE J. 8 (1962) 59, with the mixing rules of
// Lohrenz, Bray, Clark, J. Pet. Technol. 16 (1964) 1171. Thermal conductivity: Chung et al. The densities are
// those of volume_shift.h.
//
// The polar and association terms of Chung et al. are left out: of the compounds here only hydrogen sulfide
// and water would have them, and in both they do more harm than good.
//
// To be expected: viscosity of gases below their critical density within 4 %, of dense gases and liquids
// within 30 %; thermal conductivity of gases within 6 %, of liquids within 20 %. Hydrogen: 10 % and 16 %. The
// method is not meant for liquid water, of which it makes too much: up to twice the viscosity, more than
// twice the conductivity. The correlations hold up to some three times the critical density; they have no
// critical enhancement.
#pragma once

#include "packages/peng_robinson/eos/phase_slopes.h"

namespace peng_robinson::eos {

double viscosity(const PhaseProperties& phase); ///< Pa s
Dual viscosity(const PhaseSlopes& phase);

double thermalConductivity(const PhaseProperties& phase); ///< W/(m K)
Dual thermalConductivity(const PhaseSlopes& phase);

} // namespace peng_robinson::eos
