#include "packages/peng_robinson/eos/transport.h"

#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/volume_shift.h"

#include <array>
#include <cmath>
#include <string>

namespace peng_robinson::eos {
namespace {

// m3/mol; not a number when it is not known, and the compound is not there.
template <typename Number>
double criticalVolume(const Compound& c, const Number& x) {
    if (std::isnan(c.criticalVolume()) && valueOf(x) != 0.0) {
        throw NotAvailable{"Viscosity and thermal conductivity need the critical volume of " +
                           std::string{c.name} + ", which is not known"};
    }
    return c.criticalVolume();
}

// The one fluid that stands for a mixture, by the mixing rules of Chung et al. with unit interaction
// parameters: size in angstrom, Vc in cm3/mol, M in g/mol. All sums but that of the molecular weight are
// squares of simple sums, because the unlike pairs are geometric means.
template <typename Number>
struct OneFluid {
    Number sigma2, Vc, Tc, M, w;

    explicit OneFluid(const BasicPhaseProperties<Number>& phase) {
        using std::pow;
        const Fluid& fluid = *phase.fluid;
        const std::size_t n = fluid.size();
        std::vector<double> weight(n,
                                   0.0); // sqrt(epsilon) sigma of the rule for M; zero for what is not there
        Number volume = 0.0, attraction = 0.0, acentric = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            if (isNothing(phase.x[i])) {
                continue;
            }
            const Compound& c = fluid.compound(i);
            const Number& x = phase.x[i];
            const double sigma = 0.809 * std::cbrt(criticalVolume(c, x) * 1e6);
            const double energy = c.Tc / 1.2593; // divided by Boltzmann's constant
            const double root = std::pow(sigma, 1.5);
            weight[i] = std::sqrt(energy) * sigma;
            volume += share(x, root);
            attraction += share(x, std::sqrt(energy) * root);
            acentric += share(x, c.acentricFactor * root);
        }
        Number rootM = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            if (isNothing(phase.x[i])) {
                continue;
            }
            Number sum = 0.0;
            const double Mi = fluid.compound(i).molecularWeight;
            for (std::size_t j = 0; j < n; ++j) {
                const double Mj = fluid.compound(j).molecularWeight;
                sum += share(phase.x[j], weight[j] * std::sqrt(2.0 * Mi * Mj / (Mi + Mj)));
            }
            rootM += share(phase.x[i], weight[i]) * sum;
        }
        const Number sigma3 = volume * volume;
        const Number energy = attraction * attraction / sigma3;
        sigma2 = pow(sigma3, 2.0 / 3.0);
        rootM = rootM / (energy * sigma2);
        Vc = sigma3 / (0.809 * 0.809 * 0.809);
        Tc = 1.2593 * energy;
        M = rootM * rootM;
        w = acentric * volume / sigma3;
    }
};

// Neufeld, Janzen, Aziz, J. Chem. Phys. 57 (1972) 1100.
template <typename Number>
Number collisionIntegral(const Number& reducedT) {
    using std::exp, std::pow;
    return 1.16145 * pow(reducedT, -0.14874) + 0.52487 * exp(-0.77320 * reducedT) +
           2.16178 * exp(-2.43787 * reducedT);
}

// Of the gas at low pressure, Pa s.
template <typename Number>
Number diluteViscosity(const OneFluid<Number>& fluid, const Number& T) {
    using std::sqrt;
    return 26.69e-7 * (1.0 - 0.2756 * fluid.w) * sqrt(fluid.M * T) /
           (fluid.sigma2 * collisionIntegral<Number>(1.2593 * T / fluid.Tc));
}

// What density adds to the viscosity, Pa s: a polynomial of the reduced density, which is never negative.
// Pressures in atm, viscosities in mPa s.
template <typename Number>
Number residualViscosity(const BasicPhaseProperties<Number>& phase) {
    using std::pow, std::sqrt;
    Number Tc = 0.0, Pc = 0.0, Vc = 0.0;
    for (std::size_t i = 0; i < phase.x.size(); ++i) {
        if (isNothing(phase.x[i])) {
            continue;
        }
        const Compound& c = phase.fluid->compound(i);
        Tc += phase.x[i] * c.Tc;
        Pc += phase.x[i] * (c.Pc / 101325.0);
        Vc += share(phase.x[i], criticalVolume(c, phase.x[i]));
    }
    const Number inverseScale = pow(Tc, -1.0 / 6.0) * sqrt(phase.molecularWeight) * pow(Pc, 2.0 / 3.0);
    const Number r = Vc / shiftedVolume(phase);
    const Number quarter = 0.1023 + r * (0.023364 + r * (0.058533 + r * (-0.040758 + r * 0.0093324)));
    const Number square = quarter * quarter;
    // Jossi et al. round this to 1e-4, which would leave a residue of some percent in a gas without density.
    constexpr double atZero = 0.1023 * 0.1023 * 0.1023 * 0.1023;
    return 1e-3 * (square * square - atZero) * inverseScale;
}

template <typename Number>
Number viscosityOf(const BasicPhaseProperties<Number>& phase) {
    return diluteViscosity(OneFluid<Number>{phase}, phase.state.T) + residualViscosity(phase);
}

// B1 to B7 of Chung et al., each b0 + b1 w; as reprinted in Poling, Prausnitz, O'Connell, The Properties of
// Gases and Liquids, 5th ed. (2001), Table 10-3.
constexpr double conductivityTable[7][2] = {{2.4166, 0.74824}, {-0.50924, -1.5094}, {6.6107, 5.6207},
                                            {14.543, -8.9139}, {0.79274, 0.82019},  {-5.8634, 12.801},
                                            {91.089, 128.11}};

// The ratio of the conductivity of the dilute gas to 3.75 R times its viscosity, by the heat capacity.
template <typename Number>
Number conductivityFactor(const OneFluid<Number>& fluid, const Number& Cv, const Number& Tr) {
    const Number alpha = Cv / molarGasConstant - 1.5;
    const Number beta = 0.7862 - 0.7109 * fluid.w + 1.3168 * fluid.w * fluid.w;
    const Number Z = 2.0 + 10.5 * Tr * Tr;
    return 1.0 + alpha * (0.215 + 0.28288 * alpha - 1.061 * beta + 0.26665 * Z) /
                     (0.6366 + beta * Z + 1.061 * alpha * beta);
}

template <typename Number>
Number thermalConductivityOf(const BasicPhaseProperties<Number>& phase) {
    using std::exp, std::expm1, std::pow, std::sqrt;
    const OneFluid<Number> fluid{phase};
    const Number T = phase.state.T, Tr = T / fluid.Tc;
    const Number idealGasCv = phase.Cv - phase.state.residualCv;
    const Number kilogramsPerMole = fluid.M / 1000.0;
    std::array<Number, 7> B{};
    for (std::size_t i = 0; i < B.size(); ++i) {
        B[i] = conductivityTable[i][0] + conductivityTable[i][1] * fluid.w;
    }
    const Number y = fluid.Vc / (6e6 * shiftedVolume(phase));
    const Number rest = 1.0 - y;
    const Number G1 = (1.0 - 0.5 * y) / (rest * rest * rest);
    const Number G2 =
        (-B[0] * expm1(-B[3] * y) / y + B[1] * G1 * exp(B[4] * y) + B[2] * G1) / (B[0] * B[3] + B[1] + B[2]);
    const Number q = 3.586e-3 * sqrt(fluid.Tc / kilogramsPerMole) / pow(fluid.Vc, 2.0 / 3.0);
    // 31.2 is 3.75 R.
    const Number dilute = 31.2 * diluteViscosity(fluid, T) * conductivityFactor(fluid, idealGasCv, Tr);
    return dilute / kilogramsPerMole * (1.0 / G2 + B[5] * y) + q * B[6] * y * y * sqrt(Tr) * G2;
}

} // namespace

double viscosity(const PhaseProperties& phase) { return viscosityOf(phase); }
Dual viscosity(const PhaseSlopes& phase) { return viscosityOf(phase); }
double thermalConductivity(const PhaseProperties& phase) { return thermalConductivityOf(phase); }
Dual thermalConductivity(const PhaseSlopes& phase) { return thermalConductivityOf(phase); }

} // namespace peng_robinson::eos
