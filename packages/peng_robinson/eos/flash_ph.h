// Flash at given pressure and enthalpy. The enthalpy refers to the reference state of fluid.h and to one mole
// of mixture.
#pragma once

#include "packages/peng_robinson/eos/equilibrium.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/fluid.h"

namespace peng_robinson::eos {

/// Molar enthalpy of the phases together, J/mol.
double enthalpyOf(const Fluid& fluid, const Equilibrium& equilibrium);

/// Throws NoConvergence when no temperature between 5 K and 5000 K has that enthalpy.
Equilibrium flashPH(const Fluid& fluid, double P, double enthalpy, std::span<const double> z,
                    PhasesAllowed allowed = PhasesAllowed::both);

} // namespace peng_robinson::eos
