// From the state of a phase to its total properties: adds what the compounds are as ideal gases. A template
// over the number type, as phase_equations.h, and as internal.
#pragma once

#include "packages/peng_robinson/eos/fluid.h"

#include <cmath>

namespace peng_robinson::eos {

inline double idealGasCp(const HeatCapacity& c, double T) { return c.cp(T); }
inline double idealGasEnthalpy(const HeatCapacity& c, double T) { return c.enthalpy(T); }
inline double idealGasEntropy(const HeatCapacity& c, double T) { return c.entropy(T); }

inline Dual idealGasCp(const HeatCapacity& c, const Dual& T) {
    return chain(T, c.cp(T.value), T.slope == 0.0 ? 0.0 : c.dCp_dT(T.value));
}
inline Dual idealGasEnthalpy(const HeatCapacity& c, const Dual& T) {
    return chain(T, c.enthalpy(T.value), T.slope == 0.0 ? 0.0 : c.cp(T.value));
}
inline Dual idealGasEntropy(const HeatCapacity& c, const Dual& T) {
    return chain(T, c.entropy(T.value), T.slope == 0.0 ? 0.0 : c.cp(T.value) / T.value);
}

/// x ln x, which is zero for no amount; its derivative is minus infinity there.
inline double timesLog(double x) { return x == 0.0 ? 0.0 : x * std::log(x); }
inline Dual timesLog(const Dual& x) {
    return x.slope == 0.0 ? Dual{timesLog(x.value)} : chain(x, timesLog(x.value), std::log(x.value) + 1.0);
}

template <typename Number>
BasicPhaseProperties<Number> totalProperties(const Fluid& fluid, BasicPhaseState<Number> state,
                                             std::vector<Number> x) {
    using std::log;
    const double R = fluid.model().R();
    const Number T = state.T;
    BasicPhaseProperties<Number> total{};
    total.fluid = &fluid;
    total.enthalpy = state.residualEnthalpy;
    total.entropy = state.residualEntropy - R * log(state.P / referencePressure);
    total.Cp = state.residualCp;
    for (std::size_t i = 0; i < fluid.size(); ++i) {
        if (isNothing(x[i])) {
            continue;
        }
        const Compound& c = fluid.compound(i);
        total.molecularWeight += x[i] * c.molecularWeight;
        total.enthalpy += x[i] * idealGasEnthalpy(c.idealGas, T);
        total.entropy += x[i] * idealGasEntropy(c.idealGas, T) - R * timesLog(x[i]);
        total.Cp += x[i] * idealGasCp(c.idealGas, T);
        total.formationEnthalpy += share(x[i], c.formationEnthalpy);
        total.formationEntropy +=
            share(x[i], (c.formationEnthalpy - c.formationGibbs) / referenceTemperature);
    }
    total.Cv = total.Cp - state.residualCp - R + state.residualCv;
    total.state = std::move(state);
    total.x = std::move(x);
    return total;
}

} // namespace peng_robinson::eos
