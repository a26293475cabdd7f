// Flashes whose vapour fraction is a mass fraction: kilograms of vapour per kilogram of mixture.
#pragma once

#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/fluid.h"

namespace peng_robinson::eos {

/// The same as flashTVaporFraction(), for a mass fraction. The answer's phase fractions are mole fractions.
Equilibrium flashTVaporMassFraction(const Fluid& fluid, double T, double massFraction,
                                    std::span<const double> z, SolutionType wanted = SolutionType::any);

/// The same as flashPVaporFraction(), for a mass fraction.
Equilibrium flashPVaporMassFraction(const Fluid& fluid, double P, double massFraction,
                                    std::span<const double> z, SolutionType wanted = SolutionType::any);

} // namespace peng_robinson::eos
