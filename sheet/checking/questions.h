// The single questions. Each tells the report what it compared.
#pragma once

#include "sheet/checking/states.h"

namespace sheet::checking {

inline constexpr Question listedOfTwoPhases{"listed properties of two phases", 0.0};

/// One phase or two of an equilibrium, with its words for the report.
struct Spot {
    Place place;
    std::string text; // "Liquid, 300 K, 101325 Pa, composition 1"
};

/// Do the phases have the temperature and pressure that were asked for, and add up to the mixture?
void askForBalance(const State& state, const Equilibrium& found, const std::string& where, Report& report);

/// ln of the fugacities over the pressure, ln(x phi), from whatever of them the package lists.
Answer logFugacities(const Package& package, const Place& place);

/// Does each compound have one fugacity in all phases?
void askForFugacities(const Package& package, const std::vector<Spot>& spots, Report& report);

/// Are the K-values the quotients of the compositions?
void askForKValues(const Package& package, const Spot& twoPhases, Report& report);

/// What cannot be asked when no state has two phases.
void tellThatTwoPhasesAreMissing(const Package& package, Report& report);

/// Does the package answer for all that it lists?
void askForListed(const Package& package, const Spot& spot, Report& report);
void askForListedOfCompounds(const Package& package, const std::vector<double>& temperatures, Report& report);

/// Do properties that follow from each other fit: energies, volumes, heat capacities, fugacities?
void askForIdentities(const Package& package, const Spot& spot, Report& report);
void askForIntegrals(const Package& package, const Spot& spot, Report& report);

/// Are derivatives the slopes of their properties?
void askForDerivatives(const Package& package, const Spot& spot, Report& report);

} // namespace sheet::checking
