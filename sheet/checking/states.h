// The states in which a package is asked: phase equilibria of its compounds.
#pragma once

#include "sheet/checking/check.h"

namespace sheet::checking {

struct State {
    Composition overall;
    Condition one;
    Condition other;
    std::string text; // "Vapor and the like at 300 K, 101325 Pa, composition 1" without the phase
    bool isGuess;     // nobody asked for it, so that the package may refuse it
};

/// Asks the package where its mixtures boil and condense, and tells the report when it does not say.
std::vector<State> statesFor(const Package& package, const Choices& choices, Report& report);

/// "300 K, 101325 Pa", six digits
std::string textOf(double temperature, double pressure);

} // namespace sheet::checking
