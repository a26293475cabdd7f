#include "packages/peng_robinson/eos/fluid.h"

#include "packages/peng_robinson/eos/flash.h"

#include <cmath>

namespace peng_robinson::eos {
namespace {

InteractionMatrix tabulated(std::span<const Compound* const> compounds) {
    InteractionMatrix k{compounds.size()};
    for (std::size_t i = 0; i < compounds.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            k.set(i, j, interactionParameter(compounds[i]->name, compounds[j]->name));
        }
    }
    return k;
}

std::vector<CriticalConstants> criticalConstants(std::span<const Compound* const> compounds) {
    std::vector<CriticalConstants> constants;
    constants.reserve(compounds.size());
    for (const Compound* compound : compounds) {
        constants.push_back({compound->Tc, compound->Pc, compound->acentricFactor});
    }
    return constants;
}

} // namespace

double PhaseProperties::jouleThomsonCoefficient() const {
    return (-state.T * state.dP_dT / state.dP_dv - state.v) / Cp;
}

double PhaseProperties::speedOfSound() const {
    const double kilogramsPerMole = molecularWeight / 1000.0;
    return state.v * std::sqrt(-Cp / Cv * state.dP_dv / kilogramsPerMole);
}

Fluid::Fluid(std::vector<const Compound*> compounds) : Fluid{compounds, tabulated(compounds)} {}

Fluid::Fluid(std::vector<const Compound*> compounds, InteractionMatrix k, EquationConstants constants)
    : compounds_{std::move(compounds)}, model_{criticalConstants(compounds_), std::move(k), constants} {}

double Fluid::molecularWeight(std::span<const double> x) const {
    double sum = 0.0;
    for (std::size_t i = 0; i < size(); ++i) {
        sum += x[i] * compounds_[i]->molecularWeight;
    }
    return sum;
}

PhaseProperties Fluid::properties(double T, double P, std::span<const double> amounts, Root root) const {
    const std::vector<double> x = normalisedComposition(amounts, size());
    const double R = model_.R();
    PhaseProperties result{};
    result.state = model_.at(T).phase(P, x, root, {.thermal = true});
    result.molecularWeight = molecularWeight(x);
    result.enthalpy = result.state.residualEnthalpy;
    result.entropy = result.state.residualEntropy - R * std::log(P / referencePressure);
    result.Cp = result.state.residualCp;
    for (std::size_t i = 0; i < size(); ++i) {
        if (x[i] == 0.0) {
            continue;
        }
        const Compound& c = *compounds_[i];
        result.enthalpy += x[i] * c.idealGas.enthalpy(T);
        result.entropy += x[i] * (c.idealGas.entropy(T) - R * std::log(x[i]));
        result.Cp += x[i] * c.idealGas.cp(T);
        result.formationEnthalpy += x[i] * c.formationEnthalpy;
        result.formationEntropy += x[i] * (c.formationEnthalpy - c.formationGibbs) / referenceTemperature;
    }
    result.Cv = result.Cp - result.state.residualCp - R + result.state.residualCv;
    return result;
}

} // namespace peng_robinson::eos
