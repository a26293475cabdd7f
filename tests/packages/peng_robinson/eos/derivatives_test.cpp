// Derivatives of everything known about a phase: against differences of the values, and the relations that
// thermodynamics demands of them.
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/ideal_gas.h"
#include "packages/peng_robinson/eos/phase_slopes.h"
#include "packages/peng_robinson/eos/transport.h"
#include "tests/packages/peng_robinson/differences.h"
#include "tests/packages/peng_robinson/eos/support.h"

#include <numeric>
#include <ostream>

namespace peng_robinson::eos::test {
namespace {

using Variable = Direction::Variable;
using Values = std::vector<double>;
using peng_robinson::test::slopes;

struct State {
    std::vector<std::string> compounds;
    Values x;
    double T, P;
    Root root;
};

void PrintTo(const State& s, std::ostream* out) {
    *out << s.compounds.size() << " compounds, " << s.T << " K, " << s.P << " Pa, "
         << (s.root == Root::liquid ? "liquid" : "vapor");
}

// Every property of one number: a formula for numbers of both kinds, and whether it is in proportion to the
// amount.
template <typename Number>
struct Scalar {
    const char* name;
    bool isProportional;
    Number value;
};
template <typename Number>
std::vector<Scalar<Number>> scalarsOf(const BasicPhaseProperties<Number>& p) {
    return {{"compressibility", false, p.compressibility()},
            {"compressibility factor", false, p.state.Z},
            {"density", false, p.density()},
            {"enthalpy", true, p.enthalpy},
            {"enthalpy of formation", true, p.formationEnthalpy},
            {"entropy", true, p.entropy},
            {"entropy of formation", true, p.formationEntropy},
            {"Gibbs energy", true, p.gibbsEnergy()},
            {"Cp", true, p.Cp},
            {"Cv", true, p.Cv},
            {"Helmholtz energy", true, p.helmholtzEnergy()},
            {"internal energy", true, p.internalEnergy()},
            {"Joule-Thomson coefficient", false, p.jouleThomsonCoefficient()},
            {"molecular weight", false, p.molecularWeight},
            {"speed of sound", false, p.speedOfSound()},
            {"thermal conductivity", false, thermalConductivity(p)},
            {"viscosity", false, viscosity(p)},
            {"volume", true, p.state.v}};
}

// Those that have a value for each compound.
template <typename Number>
std::vector<Number> logFugacitiesAndCoefficients(const BasicPhaseProperties<Number>& p) {
    using std::exp, std::log;
    std::vector<Number> values = p.state.lnPhi;
    for (std::size_t i = 0; i < p.x.size(); ++i) {
        values.push_back(exp(p.state.lnPhi[i]));
        values.push_back(p.x[i] * exp(p.state.lnPhi[i]) * p.state.P);
    }
    return values;
}

template <typename Number>
std::vector<Number> allOf(const BasicPhaseProperties<Number>& p) {
    std::vector<Number> values = logFugacitiesAndCoefficients(p);
    for (const auto& scalar : scalarsOf(p)) {
        values.push_back(scalar.value);
    }
    return values;
}

class Derivatives : public testing::TestWithParam<State> {
  protected:
    Fluid fluid = fluidOf(GetParam().compounds);
    Values x = GetParam().x;
    std::size_t n = x.size();
    double T = GetParam().T, P = GetParam().P;
    DifferentiablePhase phase{fluid.properties(T, P, x, GetParam().root)};

    // The formulas as they stand: nothing brings the fractions to a sum of one.
    PhaseProperties at(double atT, double atP, const Values& atX) const {
        PhaseState state = fluid.model().at(atT).phase(atP, atX, GetParam().root, {.thermal = true});
        return totalProperties(fluid, std::move(state), atX);
    }

    void expectSlopes(Direction direction, const Values& differences, double variable) {
        const std::vector<Dual> values = allOf(phase.along(direction));
        ASSERT_EQ(values.size(), differences.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_NEAR(values[i].slope, differences[i],
                        2e-8 * std::abs(differences[i]) + 1e-10 * std::abs(values[i].value) / variable)
                << "value " << i;
        }
    }
};

INSTANTIATE_TEST_SUITE_P(
    States, Derivatives,
    testing::Values(State{{"methane", "n-butane"}, {0.7, 0.3}, 350.0, 1e5, Root::vapor},
                    State{{"methane", "n-butane"}, {0.2, 0.8}, 250.0, 1e7, Root::liquid},
                    State{{"methane", "n-butane"}, {0.6, 0.4}, 450.0, 5e7, Root::vapor},
                    State{{"water"}, {1.0}, 500.0, 1e6, Root::vapor},
                    State{{"methane", "carbon dioxide", "n-pentane", "water", "hydrogen", "toluene"},
                          {0.4, 0.2, 0.2, 0.05, 0.05, 0.1},
                          500.0,
                          2e6,
                          Root::vapor},
                    State{{"methane", "carbon dioxide", "n-pentane", "water", "hydrogen", "toluene"},
                          {0.05, 0.1, 0.5, 0.04, 0.01, 0.3},
                          300.0,
                          1e7,
                          Root::liquid},
                    State{{"methane", "carbon dioxide", "n-pentane", "water", "hydrogen", "toluene"},
                          {0.45, 0.15, 0.2, 0.05, 0.05, 0.1},
                          700.0,
                          8e7,
                          Root::vapor}));

TEST_P(Derivatives, ByNothingAreZeroAndTheValuesAreTheSame) {
    const std::vector<Dual> still = allOf(phase.along({}));
    const Values values = allOf(phase.values());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_DOUBLE_EQ(still[i].value, values[i]) << "value " << i;
        EXPECT_EQ(still[i].slope, 0.0) << "value " << i;
    }
}

TEST_P(Derivatives, ByTemperatureMatchDifferences) {
    expectSlopes({Variable::temperature}, slopes([&](double t) { return allOf(at(t, P, x)); }, T), T);
}

TEST_P(Derivatives, ByPressureMatchDifferences) {
    expectSlopes({Variable::pressure}, slopes([&](double p) { return allOf(at(T, p, x)); }, P), P);
}

TEST_P(Derivatives, ByMoleFractionMatchDifferencesOfTheFormulasAsTheyStand) {
    for (std::size_t j = 0; j < n; ++j) {
        SCOPED_TRACE(j);
        const auto with = [&](double fraction) {
            Values changed = x;
            changed[j] = fraction;
            return allOf(at(T, P, changed));
        };
        expectSlopes({Variable::moleFraction, j}, slopes(with, x[j]), x[j]);
    }
}

// Differences of the property of the whole amount, n times the property, or of the property itself.
TEST_P(Derivatives, ByMoleNumberMatchDifferencesAtOneMole) {
    for (const bool isProportional : {true, false}) {
        const Values derivatives = compositionDerivatives(
            x,
            [&](std::size_t j) {
                return allOf(phase.along({Variable::moleFraction, j}));
            },
            Derivative::moleNumber, isProportional);
        const Values values = allOf(phase.values());
        ASSERT_EQ(derivatives.size(), values.size() * n);
        for (std::size_t j = 0; j < n; ++j) {
            const auto with = [&](double moles) {
                Values amounts = x;
                amounts[j] = moles;
                const double total = std::accumulate(amounts.begin(), amounts.end(), 0.0);
                Values all = allOf(at(T, P, normalisedComposition(amounts, n)));
                for (double& value : all) {
                    value *= isProportional ? total : 1.0;
                }
                return all;
            };
            const Values differences = slopes(with, x[j]);
            for (std::size_t i = 0; i < values.size(); ++i) {
                EXPECT_NEAR(derivatives[i * n + j], differences[i],
                            2e-8 * std::abs(differences[i]) + 1e-10 * std::abs(values[i]) / x[j])
                    << "value " << i << " by compound " << j;
            }
        }
    }
}

// Euler: the partial molar properties sum up to the property; what does not depend on the amount does not
// change when all amounts do.
TEST_P(Derivatives, ByMoleNumberSumUpAsEulerSays) {
    const auto scalars = scalarsOf(phase.values());
    for (std::size_t s = 0; s < scalars.size(); ++s) {
        SCOPED_TRACE(scalars[s].name);
        const Values partial = compositionDerivatives(
            x,
            [&](std::size_t j) {
                return std::vector{scalarsOf(phase.along({Variable::moleFraction, j}))[s].value};
            },
            Derivative::moleNumber, scalars[s].isProportional);
        double sum = 0.0, size = std::abs(scalars[s].value);
        for (std::size_t j = 0; j < n; ++j) {
            sum += x[j] * partial[j];
            size += x[j] * std::abs(partial[j]);
        }
        EXPECT_NEAR(sum, scalars[s].isProportional ? scalars[s].value : 0.0, 1e-12 * size);
    }
}

TEST_P(Derivatives, OfLogarithmsByMoleNumberAreSymmetricAndObeyGibbsDuhem) {
    const Values derivatives = compositionDerivatives(
        x,
        [&](std::size_t j) {
            return phase.along({Variable::moleFraction, j}).state.lnPhi;
        },
        Derivative::moleNumber, false);
    const Values closed = fluid.model().at(T).phase(P, x, GetParam().root, {.moles = true}).dlnPhi_dn;
    for (std::size_t j = 0; j < n; ++j) {
        double sum = 0.0, size = 1.0;
        for (std::size_t i = 0; i < n; ++i) {
            const double value = derivatives[i * n + j];
            EXPECT_NEAR(value, derivatives[j * n + i], 1e-11 * (1.0 + std::abs(value)));
            EXPECT_NEAR(value, closed[i * n + j], 1e-11 * (1.0 + std::abs(value)));
            sum += x[i] * value;
            size += x[i] * std::abs(value);
        }
        EXPECT_NEAR(sum, 0.0, 1e-12 * size);
    }
}

// The partial molar Gibbs energy is the chemical potential: its residual part is R T ln phi.
TEST_P(Derivatives, PartialMolarGibbsEnergiesAreChemicalPotentials) {
    const Values partial = compositionDerivatives(
        x,
        [&](std::size_t j) {
            return std::vector{phase.along({Variable::moleFraction, j}).gibbsEnergy()};
        },
        Derivative::moleNumber, true);
    for (std::size_t i = 0; i < n; ++i) {
        const HeatCapacity& gas = fluid.compound(i).idealGas;
        const double pureGas = gas.enthalpy(T) - T * gas.entropy(T);
        const double mixing =
            molarGasConstant * T * (std::log(x[i] * P / referencePressure) + phase.values().state.lnPhi[i]);
        EXPECT_NEAR(partial[i], pureGas + mixing, 1e-12 * (std::abs(pureGas) + std::abs(mixing)));
    }
}

// Maxwell's relations and their like, between derivatives of different properties.
TEST_P(Derivatives, FitTogether) {
    const PhaseProperties& p = phase.values();
    const PhaseSlopes &byT = phase.along({Variable::temperature}), &byP = phase.along({Variable::pressure});
    expectRelative(byT.enthalpy.slope, p.Cp, 1e-11);
    expectRelative(byT.entropy.slope, p.Cp / T, 1e-11);
    expectRelative(byT.gibbsEnergy().slope, -p.entropy, 1e-10);
    expectRelative(byP.gibbsEnergy().slope, p.state.v, 1e-11);
    expectRelative(byP.entropy.slope, -byT.state.v.slope, 1e-11);
    expectRelative(byP.state.v.slope, 1.0 / p.state.dP_dv, 1e-13);
    expectRelative(byT.state.v.slope, -p.state.dP_dT / p.state.dP_dv, 1e-11);
    // (dCp/dP) = -T (d2v/dT2): the closed form of the left side, differences of the right.
    const Values curvature =
        slopes([&](double t) { return Values{-at(t, P, x).state.dP_dT / at(t, P, x).state.dP_dv}; }, T);
    EXPECT_NEAR(byP.Cp.slope, -T * curvature[0], 1e-7 * std::abs(byP.Cp.slope));
}

TEST(DerivativesByComposition, OfTheMolecularWeightAreTheMolecularWeights) {
    const Fluid fluid = fluidOf({"methane", "propane"});
    const Values x{0.25, 0.75};
    DifferentiablePhase phase{fluid.properties(300.0, 1e5, x, Root::vapor)};
    const auto weight = [&](std::size_t j) {
        return std::vector{phase.along({Variable::moleFraction, j}).molecularWeight};
    };
    const double methane = fluid.compound(0).molecularWeight, propane = fluid.compound(1).molecularWeight;
    EXPECT_EQ(compositionDerivatives(x, weight, Derivative::moleFraction, false), (Values{methane, propane}));
    const double mean = 0.25 * methane + 0.75 * propane;
    expectRelative(compositionDerivatives(x, weight, Derivative::moleNumber, false),
                   {methane - mean, propane - mean}, 1e-14);
}

TEST(DerivativesByComposition, StandWithTheCompoundOfTheValueFirst) {
    const Values x{0.25, 0.75};
    const auto values = [](std::size_t j) {
        return std::vector{Dual{0.0, 10.0 + static_cast<double>(j)},
                           Dual{0.0, 20.0 + static_cast<double>(j)}};
    };
    EXPECT_EQ(compositionDerivatives(x, values, Derivative::moleFraction, false),
              (Values{10.0, 11.0, 20.0, 21.0}));
}

// A little of what is not there raises the entropy of mixing beyond all bounds; everything else stays finite.
TEST(DerivativesByComposition, OfEntropyByAnAbsentCompoundAreInfinite) {
    const Fluid fluid = fluidOf({"methane", "propane", "n-decane"});
    const Values x{0.25, 0.75, 0.0};
    DifferentiablePhase phase{fluid.properties(300.0, 1e5, x, Root::vapor)};
    const auto derivatives = [&](auto property, Derivative kind) {
        return compositionDerivatives(
            x,
            [&](std::size_t j) {
                return std::vector{property(phase.along({Variable::moleFraction, j}))};
            },
            kind, true);
    };
    for (const Derivative kind : {Derivative::moleFraction, Derivative::moleNumber}) {
        const Values entropy = derivatives([](const PhaseSlopes& p) { return p.entropy; }, kind);
        EXPECT_TRUE(std::isfinite(entropy[0]) && std::isfinite(entropy[1]));
        EXPECT_EQ(entropy[2], std::numeric_limits<double>::infinity());
        EXPECT_EQ(derivatives([](const PhaseSlopes& p) { return p.gibbsEnergy(); }, kind)[2],
                  -std::numeric_limits<double>::infinity());
        for (const double enthalpy : derivatives([](const PhaseSlopes& p) { return p.enthalpy; }, kind)) {
            EXPECT_TRUE(std::isfinite(enthalpy));
        }
    }
}

TEST(DerivativesByComposition, OfAllElseByAnAbsentCompoundAreTheLimitOfATrace) {
    const Fluid fluid = fluidOf({"methane", "propane", "n-decane"});
    const auto slopesWith = [&](double trace) {
        const Values x{0.25, 0.75 - trace, trace};
        DifferentiablePhase phase{fluid.properties(300.0, 1e7, x, Root::liquid)};
        return allOf(phase.along({Variable::moleFraction, 2}));
    };
    const std::vector<Dual> absent = slopesWith(0.0), trace = slopesWith(1e-9);
    int infinite = 0;
    for (std::size_t i = 0; i < absent.size(); ++i) {
        if (std::isinf(absent[i].slope)) {
            ++infinite; // entropy, Gibbs and Helmholtz energy
        } else {
            EXPECT_NEAR(absent[i].slope, trace[i].slope, 1e-6 * std::abs(trace[i].slope)) << "value " << i;
        }
    }
    EXPECT_EQ(infinite, 3);
}

// At low pressure the derivatives are those of an ideal gas with a second virial coefficient: nothing is lost
// to the subtraction of nearly equal numbers.
TEST(DerivativesInTheDiluteLimit, KeepTheirDigits) {
    const Fluid fluid = fluidOf({"propane"});
    const Values one{1.0};
    const auto factorByP = [&](double P) {
        DifferentiablePhase phase{fluid.properties(300.0, P, one, Root::vapor)};
        return phase.along({Variable::pressure}).state.Z.slope;
    };
    const PhaseState state = fluid.model().at(300.0).phase(1.0, one, Root::vapor);
    const double RT = molarGasConstant * 300.0;
    expectRelative(factorByP(1.0), (state.b - state.a / RT) / RT, 1e-6);
    expectRelative(factorByP(1e-6), (state.b - state.a / RT) / RT, 1e-10);
}

} // namespace
} // namespace peng_robinson::eos::test
