// Vapour-liquid flashes of a mixture of given overall composition. Fractions need not be normalised and may
// be zero, but not negative. A phase fraction is a mole fraction of the mixture. Two liquids are never
// reported: a liquid that would rather split into two is one liquid here.
#pragma once

#include "packages/peng_robinson/eos/equilibrium.h"
#include "packages/peng_robinson/eos/peng_robinson.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

/// Which solution of a phase-fraction flash is wanted. Normal: more vapour at a higher temperature or a lower
/// pressure. Retrograde: the other way round, as on the upper dew line of a natural gas. Any: normal if there
/// is one. Thus of two dew points at one pressure, the one at the higher temperature; of two at one
/// temperature, the one at the lower pressure. The same goes where several are normal, or several retrograde.
enum class SolutionType { any, normal, retrograde };

/// Mole fractions that sum to one. Throws InvalidInput for a wrong number of values, negative values or no
/// amount.
std::vector<double> normalisedComposition(std::span<const double> amounts, std::size_t expectedSize);

/// Phases that a flash may use. With one of them only, all of the mixture is that phase.
enum class PhasesAllowed { both, vaporOnly, liquidOnly };

Equilibrium flashTP(const PengRobinson& model, double T, double P, std::span<const double> z,
                    PhasesAllowed allowed = PhasesAllowed::both);

/// Temperature and vapour fraction (0 to 1 inclusive) given. The incipient phase of a bubble or dew point is
/// reported as present in zero amount. Every answer is a stable state of vapour and liquid: their fugacities
/// are equal, the vapour is the lighter one, each has its stable volume, and no other phase would rather
/// form. Throws NoConvergence where there is none, as above the critical point.
Equilibrium flashTVaporFraction(const PengRobinson& model, double T, double vaporFraction,
                                std::span<const double> z, SolutionType wanted = SolutionType::any);

/// Pressure and vapour fraction given.
Equilibrium flashPVaporFraction(const PengRobinson& model, double P, double vaporFraction,
                                std::span<const double> z, SolutionType wanted = SolutionType::any);

} // namespace peng_robinson::eos
