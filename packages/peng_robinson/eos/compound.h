// The compounds of the package: one table of constants, each with its source beside it. SI units, except the
// molecular weight, which is the relative molar mass (numerically g/mol).
#pragma once

#include "packages/peng_robinson/eos/heat_capacity.h"

#include <limits>
#include <span>
#include <string_view>

namespace peng_robinson::eos {

struct Compound {
    std::string_view name;
    std::string_view formula;
    std::string_view iupacName;
    std::string_view smiles;
    std::string_view cas;
    double molecularWeight;    // g/mol
    double Tc;                 // K
    double Pc;                 // Pa
    double criticalDensity;    // mol/m3
    double acentricFactor;     // -
    double normalBoilingPoint; // K at 101325 Pa; carbon dioxide: its sublimation point
    double formationEnthalpy;  // J/mol, ideal gas at 298.15 K
    double formationGibbs;     // J/mol, ideal gas at 298.15 K
    double standardEntropy;    // J/(mol K), ideal gas at 298.15 K, absolute
    // Compounds from elsewhere need not have these two:
    double liquidDensity = std::numeric_limits<double>::quiet_NaN(); // kg/m3 at saturation, see below
    double parachor = std::numeric_limits<double>::quiet_NaN();      // (mN/m)^(1/4) cm3/mol
    HeatCapacity idealGas;                                           // J/(mol K)

    double criticalVolume() const { return 1.0 / criticalDensity; }
    double criticalCompressibility() const;
    double liquidReferenceTemperature() const; ///< K, of the liquid density
};

/// All compounds, in the order in which the package lists them.
std::span<const Compound> compounds() noexcept;

/// The compound of that name (ASCII case is ignored), or null.
const Compound* findCompound(std::string_view name) noexcept;

} // namespace peng_robinson::eos
