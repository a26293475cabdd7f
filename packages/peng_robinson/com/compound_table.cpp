#include "packages/peng_robinson/com/compound_table.h"

#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/eos/constants.h"
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/pure_saturation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace peng_robinson {
namespace {

using eos::Compound;
using Equation = eos::EquationConstants;
using eos::HeatCapacity;
using eos::Saturation;
using Number = std::optional<double>;

Number known(double value) { return std::isnan(value) ? std::nullopt : Number{value}; }

eos::PengRobinson modelOf(const Compound& c, const Equation& equation) {
    return eos::PengRobinson{{{c.Tc, c.Pc, c.acentricFactor}}, eos::InteractionMatrix{}, equation};
}

// Empty where the compound does not boil, and where it does so at a pressure too small for a number.
std::optional<Saturation> saturation(const Compound& c, const Equation& equation, double T) {
    try {
        return T < c.Tc ? std::optional{eos::saturationAtTemperature(modelOf(c, equation), T)} : std::nullopt;
    } catch (const eos::NotAvailable&) {
        return std::nullopt;
    }
}

Number boilingTemperature(const Compound& c, const Equation& equation, double P) {
    try {
        return P < c.Pc ? Number{eos::saturationAtPressure(modelOf(c, equation), P).T} : std::nullopt;
    } catch (const eos::NotAvailable&) {
        return std::nullopt;
    }
}

// F is a function of the state at saturation.
template <auto F>
Number saturated(const Compound& c, const Equation& equation, double T) {
    const auto at = saturation(c, equation, T);
    return at ? Number{std::invoke(F, *at)} : std::nullopt;
}

Number heatOfVaporizationAtBoilingPoint(const Compound& c, const Equation& equation) {
    // Carbon dioxide sublimes at one atmosphere: it has no boiling point there to speak of.
    return c.cas == "124-38-9"
               ? std::nullopt
               : saturated<&Saturation::heatOfVaporization>(c, equation, c.normalBoilingPoint);
}

template <double Compound::*Member>
Number member(const Compound& c, const Equation&) {
    return known(c.*Member);
}

template <auto F>
Number idealGas(const Compound& c, const Equation&, double T) {
    return std::invoke(F, c.idealGas, T);
}

// (mN/m)^(1/4) cm3/mol in SI units, m3 kg^(1/4) / (s^(1/2) mol).
Number parachor(const Compound& c, const Equation&) {
    return known(c.parachor * 1e-6 * std::pow(1e-3, 0.25));
}

constexpr std::array constants{
    ConstantRow{L"acentricFactor", nullptr, member<&Compound::acentricFactor>},
    ConstantRow{L"casRegistryNumber", &Compound::cas, nullptr},
    ConstantRow{L"chemicalFormula", &Compound::formula, nullptr},
    ConstantRow{L"criticalCompressibilityFactor", nullptr,
                [](const Compound& c, const Equation&) { return known(c.criticalCompressibility()); }},
    ConstantRow{L"criticalDensity", nullptr, member<&Compound::criticalDensity>},
    ConstantRow{L"criticalPressure", nullptr, member<&Compound::Pc>},
    ConstantRow{L"criticalTemperature", nullptr, member<&Compound::Tc>},
    ConstantRow{L"criticalVolume", nullptr,
                [](const Compound& c, const Equation&) { return known(c.criticalVolume()); }},
    ConstantRow{L"heatOfVaporizationAtNormalBoilingPoint", nullptr, heatOfVaporizationAtBoilingPoint},
    ConstantRow{L"idealGasEnthalpyOfFormationAt25C", nullptr, member<&Compound::formationEnthalpy>},
    ConstantRow{L"idealGasGibbsFreeEnergyOfFormationAt25C", nullptr, member<&Compound::formationGibbs>},
    ConstantRow{L"iupacName", &Compound::iupacName, nullptr},
    ConstantRow{L"molecularWeight", nullptr, member<&Compound::molecularWeight>},
    ConstantRow{L"normalBoilingPoint", nullptr, member<&Compound::normalBoilingPoint>},
    ConstantRow{L"parachor", nullptr, parachor},
    ConstantRow{L"SMILESformula", &Compound::smiles, nullptr},
    ConstantRow{L"standardEntropyGas", nullptr, member<&Compound::standardEntropy>},
    ConstantRow{L"standardFormationEnthalpyGas", nullptr, member<&Compound::formationEnthalpy>},
    ConstantRow{L"standardFormationGibbsEnergyGas", nullptr, member<&Compound::formationGibbs>},
};

constexpr std::array temperatureTable{
    DependentRow{L"heatOfVaporization", saturated<&Saturation::heatOfVaporization>},
    DependentRow{L"heatOfVaporization.Dtemperature", saturated<&Saturation::heatOfVaporizationSlope>},
    DependentRow{L"idealGasEnthalpy", idealGas<&HeatCapacity::enthalpy>},
    DependentRow{L"idealGasEnthalpy.Dtemperature", idealGas<&HeatCapacity::cp>},
    DependentRow{L"idealGasEntropy", idealGas<&HeatCapacity::entropy>},
    DependentRow{L"idealGasEntropy.Dtemperature",
                 [](const Compound& c, const Equation&, double T) -> Number { return c.idealGas.cp(T) / T; }},
    DependentRow{L"idealGasHeatCapacity", idealGas<&HeatCapacity::cp>},
    DependentRow{L"idealGasHeatCapacity.Dtemperature", idealGas<&HeatCapacity::dCp_dT>},
    DependentRow{L"vaporPressure", saturated<&Saturation::P>},
    DependentRow{L"vaporPressure.Dtemperature", saturated<&Saturation::dP_dT>},
    DependentRow{L"volumeOfLiquid", saturated<[](const Saturation& at) { return at.liquid.v; }>},
    DependentRow{L"volumeOfLiquid.Dtemperature", saturated<&Saturation::liquidVolumeSlope>},
};

constexpr std::array pressureTable{
    DependentRow{L"boilingPointTemperature", boilingTemperature},
};

} // namespace

std::span<const ConstantRow> constantRows() noexcept { return constants; }

const ConstantRow* findConstant(std::wstring_view name) noexcept {
    const auto found = std::ranges::find_if(
        constants, [name](const ConstantRow& row) { return isSameName(row.name, name); });
    return found == constants.end() ? nullptr : &*found;
}

std::span<const DependentRow> temperatureRows() noexcept { return temperatureTable; }
std::span<const DependentRow> pressureRows() noexcept { return pressureTable; }

const DependentRow* findRow(std::span<const DependentRow> rows, std::wstring_view name) noexcept {
    const auto found =
        std::ranges::find_if(rows, [name](const DependentRow& row) { return isSameName(row.name, name); });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace peng_robinson
