// What the scripted package contains when nothing else is said, and its arithmetic: three compounds, two
// phases, and values whose digits tell where they come from.
//
// A calculated value is   100000 d + 10000 k + 1000 j + 100 m + 10 a + b + T/1000 + P/1e9   with
//   d  derivative: 0 none, 1 .Dtemperature, 2 .Dpressure, 3 .DmolFraction, 4 .Dmoles
//   k  position of the property in the package's list, from 1
//   j  position of the phase, from 1; m that of the second phase, 0 when there is only one
//   a  compound of a value per compound, b the other compound of a value per pair, from 1; else 0; values per
//      pair stand compound by compound: all b of the first a, then those of the second
// so that the enthalpy (k = 2) of the liquid (j = 2) at 350 K and 100000 Pa is 22000.3501 J/mol. In a
// two-phase composition derivative, b is 5 larger in the second phase's half. Compound constants are
// 10000 k + 10 a, temperature-dependent values 10000 k + 10 a + T/1000, pressure-dependent ones
// 10000 k + 10 a + P/1e9.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace scripted {

struct Compound {
    std::wstring id;
    std::wstring name;
    std::wstring formula;
    double boilingPoint;    ///< K
    double molecularWeight; ///< g/mol
    std::wstring cas;
};

struct Phase {
    std::wstring label;
    std::wstring state;
};

struct Property {
    std::wstring name;
    int rank; ///< compound dimensions: 0, 1 or 2
    bool hasBasis;
};

/// Values that the package reports instead of its arithmetic; an empty basis is none.
struct Values {
    std::wstring basis;
    std::vector<double> values;
};

/// One phase as a flash reports it. A missing value is not reported.
struct FlashPhase {
    std::wstring label;
    std::optional<double> fraction;
    std::wstring fractionBasis;
    std::optional<std::vector<double>> composition;
    std::wstring compositionBasis;
    std::optional<double> temperature;
    std::optional<double> pressure;
};

struct Flash {
    std::vector<FlashPhase> phases;
    std::optional<double> temperature;
    std::optional<double> pressure;
};

struct Model {
    std::vector<Compound> compounds = {{L"A1", L"Alpha", L"A", 100.0, 10.0, L"11-11-1"},
                                       {L"B2", L"Beta", L"B", 200.0, 20.0, L"22-22-2"},
                                       {L"C3", L"Gamma", L"C", 300.0, 40.0, L"33-33-3"}};
    std::vector<Phase> phases = {{L"Vapor", L"Vapor"}, {L"Liquid", L"Liquid"}};
    std::vector<Property> singlePhase = {{L"volume", 0, true},
                                         {L"enthalpy", 0, true},
                                         {L"entropy", 0, true},
                                         {L"density", 0, true},
                                         {L"fugacityCoefficient", 1, false},
                                         {L"viscosity", 0, false},
                                         {L"diffusionCoefficient", 2, false}};
    std::vector<Property> twoPhase = {{L"surfaceTension", 0, false}, {L"kvalue", 1, false}};
    std::vector<std::wstring> constants = {L"criticalTemperature", L"criticalPressure", L"casRegistryNumber"};
    std::vector<std::wstring> temperatureDependent = {L"vaporPressure", L"idealGasEnthalpy"};
    std::vector<std::wstring> pressureDependent = {L"boilingPointTemperature"};

    std::map<std::wstring, Values> calculated; ///< by property name; instead of the arithmetic
    std::optional<Flash> flash;                ///< instead of the arithmetic

    std::string state = "scripted state"; ///< what the package saves; replaced by what it loads
};

struct Conditions {
    double temperature; ///< K
    double pressure;    ///< Pa
};

/// Equal in any letter case, as the names of the standard are compared.
bool sameName(std::wstring_view a, std::wstring_view b);

/// Position from 1 of the phase with this label in any letter case; 0 when there is none.
int phaseNumber(const Model& model, std::wstring_view label);

/// Values of a property or one of its derivatives; nothing when the package does not have it. `second` is 0
/// for a single phase.
std::optional<Values> calculate(const Model& model, const std::vector<Property>& offered,
                                std::wstring_view property, int first, int second,
                                const Conditions& conditions);

/// Both phases are there. A vaporFraction of `vaporFraction`; the first compound is enriched in the vapor at
/// the cost of the last by half of the smaller of the two amounts, so that the phases add up to the mixture.
Flash split(const Model& model, const std::vector<double>& moleFractions, double vaporFraction,
            const Conditions& conditions);

} // namespace scripted
