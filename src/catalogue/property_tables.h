// The fixed vocabulary, one row a property. Mass-basis units, derivative names and derivative units follow
// from these rows by rule (property_catalogue.cpp). Names and units are those that users' workbooks already
// contain, oddities included.
#pragma once

namespace quorvane::tables {

struct Constant {
    const wchar_t* name;
    const wchar_t* unit; ///< on mole basis; null: dimensionless
    int moleConversion;
};

struct SinglePhase {
    const wchar_t* name;
    const wchar_t* alias; ///< a second name for the same property; null: none
    const wchar_t* unit;
    int moleConversion;
    int rank;
    bool extensive;
    bool overall;
};

struct TwoPhase {
    const wchar_t* name;
    const wchar_t* alias;
    const wchar_t* unit;
    int rank;
};

// clang-format off
inline constexpr const wchar_t* textConstants[] = {
    L"name", L"casRegistryNumber", L"chemicalFormula", L"iupacName", L"SMILESformula", L"structureFormula",
};

// "triplePointTemperature " ends in a blank, gyrationRadius is in "M" and the standard entropies are in "J/mol": kept, because
// workbooks compare with these texts.
inline constexpr Constant realConstants[] = {
    {L"acentricFactor", nullptr, 0},
    {L"associationParameter", nullptr, 0},
    {L"bornRadius", L"m", 0},
    {L"charge", nullptr, 0},
    {L"criticalCompressibilityFactor", nullptr, 0},
    {L"criticalDensity", L"mol/m3", -1},
    {L"criticalPressure", L"Pa", 0},
    {L"criticalTemperature", L"K", 0},
    {L"criticalVolume", L"m3/mol", 1},
    {L"diffusionVolume", L"m3", 0},
    {L"dipoleMoment", L"C*m", 0},
    {L"energyLennardJones", L"K", 0},
    {L"gyrationRadius", L"M", 0},
    {L"heatOfFusionAtNormalFreezingPoint", L"J/mol", 1},
    {L"heatOfVaporizationAtNormalBoilingPoint", L"J/mol", 1},
    {L"idealGasEnthalpyOfFormationAt25C", L"J/mol", 1},
    {L"idealGasGibbsFreeEnergyOfFormationAt25C", L"J/mol", 1},
    {L"liquidDensityAt25C", L"mol/m3", -1},
    {L"liquidVolumeAt25C", L"m3/mol", 1},
    {L"lengthLennardJones", L"m", 0},
    {L"normalBoilingPoint", L"K", 0},
    {L"normalFreezingPoint", L"K", 0},
    {L"parachor", L"m3*kg0.25/s0.5/mol", 1},
    {L"standardEntropyGas", L"J/mol", 1},
    {L"standardEntropyLiquid", L"J/mol", 1},
    {L"standardEntropySolid", L"J/mol", 1},
    {L"standardEnthalpyAqueousDilution", L"J/mol", 1},
    {L"standardFormationEnthalpyGas", L"J/mol", 1},
    {L"standardFormationEnthalpyLiquid", L"J/mol", 1},
    {L"standardFormationEnthalpySolid", L"J/mol", 1},
    {L"standardFormationGibbsEnergyGas", L"J/mol", 1},
    {L"standardFreeFormationEnthalpyGas", L"J/mol", 1},
    {L"standardFormationGibbsEnergyLiquid", L"J/mol", 1},
    {L"standardFreeFormationEnthalpyLiquid", L"J/mol", 1},
    {L"standardFormationGibbsEnergySolid", L"J/mol", 1},
    {L"standardFreeFormationEnthalpySolid", L"J/mol", 1},
    {L"standardGibbsAqueousDilution", L"J/mol", 1},
    {L"triplePointPressure", L"Pa", 0},
    {L"triplePointTemperature ", L"K", 0},
    {L"vanderwaalsArea", L"m2/mol", 1},
    {L"vanderwaalsVolume", L"m3/mol", 1},
};

// The two viscosities are in "Pas", without the sign that viscosity has in "Pa*s": kept for the same reason.
inline constexpr Constant temperatureDependent[] = {
    {L"cpAqueousInfiniteDilution", L"J/mol/K", 1},
    {L"dielectricConstant", nullptr, 0},
    {L"expansivity", L"/K", 0},
    {L"fugacityCoefficientOfVapor", nullptr, 0},
    {L"glassTransitionPressure", L"Pa", 0},
    {L"heatCapacityOfLiquid", L"J/mol/K", 1},
    {L"heatCapacityOfSolid", L"J/mol/K", 1},
    {L"heatOfFusion", L"J/mol", 1},
    {L"heatOfSublimation", L"J/mol", 1},
    {L"heatOfSolidSolidPhaseTransition", L"J/mol", 1},
    {L"heatOfVaporization", L"J/mol", 1},
    {L"idealGasEnthalpy", L"J/mol", 1},
    {L"idealGasEntropy", L"J/mol/K", 1},
    {L"idealGasHeatCapacity", L"J/mol/K", 1},
    {L"meltingPressure", L"Pa", 0},
    {L"selfDiffusionCoefficientGas", L"m2/s", 0},
    {L"selfDiffusionCoefficientLiquid", L"m2/s", 0},
    {L"solidSolidPhaseTransitionPressure", L"Pa", 0},
    {L"sublimationPressure", L"Pa", 0},
    {L"surfaceTensionSatLiquid", L"N/m", 0},
    {L"thermalConductivityOfLiquid", L"W/m/K", 0},
    {L"thermalConductivityOfSolid", L"W/m/K", 0},
    {L"thermalConductivityOfVapor", L"W/m/K", 0},
    {L"vaporPressure", L"Pa", 0},
    {L"virialCoefficient", L"m3/mol", 1},
    {L"viscosityOfLiquid", L"Pas", 0},
    {L"viscosityOfVapor", L"Pas", 0},
    {L"volumeChangeUponMelting", L"m3/mol", 1},
    {L"volumeChangeUponSolidSolidPhaseTransition", L"m3/mol", 1},
    {L"volumeChangeUponSublimation", L"m3/mol", 1},
    {L"volumeChangeUponVaporization", L"m3/mol", 1},
    {L"volumeOfLiquid", L"m3/mol", 1},
    {L"volumeOfSolid", L"m3/mol", 1},
};

inline constexpr SinglePhase singlePhase[] = {
    {L"activity", nullptr, nullptr, 0, 1, false, false},
    {L"activityCoefficient", nullptr, nullptr, 0, 1, false, false},
    {L"compressibility", nullptr, L"/Pa", 0, 0, false, false},
    {L"compressibilityFactor", nullptr, nullptr, 0, 0, false, false},
    {L"density", nullptr, L"mol/m3", -1, 0, false, false},
    {L"diffusionCoefficient", nullptr, L"m2/s", 0, 2, false, false},
    {L"dissociationConstant", nullptr, nullptr, 0, 0, false, false},
    {L"enthalpy", nullptr, L"J/mol", 1, 0, true, true},
    {L"enthalpyF", nullptr, L"J/mol", 1, 0, true, true},
    {L"enthalpyNF", nullptr, L"J/mol", 1, 0, true, true},
    {L"entropy", nullptr, L"J/mol/K", 1, 0, true, true},
    {L"entropyF", nullptr, L"J/mol/K", 1, 0, true, true},
    {L"entropyNF", nullptr, L"J/mol/K", 1, 0, true, true},
    {L"excessEnthalpy", nullptr, L"J/mol", 1, 0, true, false},
    {L"excessEntropy", nullptr, L"J/mol/K", 1, 0, true, false},
    {L"excessGibbsEnergy", L"excessGibbsFreeEnergy", L"J/mol", 1, 0, true, false},
    {L"excessHelmholtzEnergy", L"excessHelmholtzFreeEnergy", L"J/mol", 1, 0, true, false},
    {L"excessInternalEnergy", L"excessEnergy", L"J/mol", 1, 0, true, false},
    {L"excessVolume", nullptr, L"m3/mol", 1, 0, true, false},
    {L"fugacity", nullptr, L"Pa", 0, 1, false, false},
    {L"fugacityCoefficient", nullptr, nullptr, 0, 1, false, false},
    {L"gibbsEnergy", L"gibbsFreeEnergy", L"J/mol", 1, 0, true, true},
    {L"heatCapacityCp", L"heatCapacity", L"J/mol/K", 1, 0, true, false},
    {L"heatCapacityCv", nullptr, L"J/mol/K", 1, 0, true, false},
    {L"helmholtzEnergy", L"helmholtzFreeEnergy", L"J/mol", 1, 0, true, true},
    {L"internalEnergy", L"energy", L"J/mol", 1, 0, true, true},
    {L"jouleThomsonCoefficient", nullptr, L"K/Pa", 0, 0, false, false},
    {L"logFugacity", nullptr, nullptr, 0, 1, false, false},
    {L"logFugacityCoefficient", nullptr, nullptr, 0, 1, false, false},
    {L"meanActivityCoefficient", nullptr, nullptr, 0, 0, false, false},
    {L"osmoticCoefficient", nullptr, nullptr, 0, 0, false, false},
    {L"pH", nullptr, nullptr, 0, 0, false, false},
    {L"pOH", nullptr, nullptr, 0, 0, false, false},
    {L"speedOfSound", nullptr, L"m/s", 0, 0, false, false},
    {L"thermalConductivity", nullptr, L"W/m/K", 0, 0, false, false},
    {L"viscosity", nullptr, L"Pa*s", 0, 0, false, false},
    {L"volume", nullptr, L"m3/mol", 1, 0, true, true},
    {L"molecularWeight", nullptr, nullptr, 0, 0, false, false},
};

// surfaceTension is in "N*m", unlike surfaceTensionSatLiquid: kept as well.
inline constexpr TwoPhase twoPhase[] = {
    {L"kvalues", L"kvalue", nullptr, 1},
    {L"logkvalues", L"logKvalue", nullptr, 1},
    {L"surfaceTension", nullptr, L"N*m", 0},
};
// clang-format on

} // namespace quorvane::tables
