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
// To be expected: viscosity of gases up to their critical density within 5 %, of dense gases within 30 %, of
// liquids within 30 % from their normal boiling point or 298 K, whichever is lower, up to a reduced
// temperature of 0.8; thermal conductivity of gases within 8 %, of liquids within 25 %. Hydrogen: 10 % and
// 16 %; steam: 12 % and 10 %. The viscosity of colder liquids is far too low: half of what it is for n-decane
// at 250 K, a sixth for propane at 100 K. The methods are not meant for liquid water, of which they make too
// much: up to twice the viscosity, more than twice the conductivity. They have no critical enhancement.
//
// Both throw NotAvailable when a compound that is there has no critical volume. By an absent compound without
// one the derivative is not a number.
#pragma once

#include "packages/peng_robinson/eos/phase_slopes.h"

namespace peng_robinson::eos {

double viscosity(const PhaseProperties& phase); ///< Pa s
Dual viscosity(const PhaseSlopes& phase);

double thermalConductivity(const PhaseProperties& phase); ///< W/(m K)
Dual thermalConductivity(const PhaseSlopes& phase);

} // namespace peng_robinson::eos
