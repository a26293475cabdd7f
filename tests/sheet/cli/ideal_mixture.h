// Three made-up compounds in an ideal gas and an ideal liquid: thermodynamics that fits itself exactly, so
// that a check of it finds what a test has planted and nothing else. SI units, mole basis.
#pragma once

#include <string_view>
#include <vector>

namespace ideal {

inline constexpr std::size_t compounds = 3;
using Composition = std::vector<double>;

enum class Phase { vapor, liquid };

struct State {
    Phase phase;
    double T; ///< K
    double P; ///< Pa
    Composition x;
};

/// A property, or with a suffix its derivative, of volume, enthalpy, entropy, gibbsEnergy, heatCapacityCp,
/// fugacity, logFugacity and fugacityCoefficient; enthalpyF and entropyF are shifted by what formation may
/// add. Derivatives by composition stand compound of the property by compound of the derivative.
std::vector<double> property(std::string_view name, const State& state);

/// Of the vapor over the liquid.
std::vector<double> kValues(double T, double P);

struct Split {
    double T;
    double P;
    double vaporFraction; ///< of all, from 0 to 1
    Composition vapor;
    Composition liquid;
};
Split flashTP(double T, double P, const Composition& z);
Split flashPV(double P, double vaporFraction, const Composition& z);

} // namespace ideal
