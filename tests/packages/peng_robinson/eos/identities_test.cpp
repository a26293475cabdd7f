// Relations that hold for every equation of state at every state, whatever its parameters: thermodynamics
// itself.
#include "packages/peng_robinson/eos/flash.h"
#include "tests/packages/peng_robinson/eos/support.h"

namespace peng_robinson::eos::test {
namespace {

struct State {
    double T, P;
    Root root;
};

void PrintTo(const State& s, std::ostream* out) {
    *out << s.T << " K, " << s.P << " Pa, " << (s.root == Root::liquid ? "liquid" : "vapor");
}

class Identities : public testing::TestWithParam<State> {
  protected:
    Fluid fluid = fluidOf({"methane", "carbon dioxide", "n-pentane", "water", "hydrogen"});
    std::vector<double> x{0.45, 0.2, 0.25, 0.04, 0.06};
    double T = GetParam().T, P = GetParam().P;

    PhaseState phase(double atT, double atP, const std::vector<double>& atX) const {
        return fluid.model().at(atT).phase(atP, atX, GetParam().root, {.thermal = true, .moles = true});
    }
    // Central difference of sixth order.
    template <typename F>
    static double slope(F f, double at, double h) {
        return (45.0 * (f(at + h) - f(at - h)) - 9.0 * (f(at + 2.0 * h) - f(at - 2.0 * h)) +
                (f(at + 3.0 * h) - f(at - 3.0 * h))) /
               (60.0 * h);
    }
};

INSTANTIATE_TEST_SUITE_P(States, Identities,
                         testing::Values(State{300.0, 1e5, Root::vapor}, State{300.0, 2e7, Root::liquid},
                                         State{220.0, 5e6, Root::liquid}, State{450.0, 1e7, Root::vapor},
                                         State{700.0, 5e7, Root::vapor}, State{200.0, 1e3, Root::vapor}));

TEST_P(Identities, EquationOfStateGivesThePressureBack) {
    const PhaseState s = phase(T, P, x);
    const double pressure =
        molarGasConstant * T / (s.v - s.b) - s.a / (s.v * s.v + 2.0 * s.b * s.v - s.b * s.b);
    const double cancelled = molarGasConstant * T / (s.v - s.b);
    EXPECT_NEAR(pressure, P, 1e-13 * cancelled);
}

TEST_P(Identities, ResidualGibbsEnergyIsTheSumOfLogarithms) {
    const PhaseState s = phase(T, P, x);
    double sum = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sum += x[i] * s.lnPhi[i];
    }
    expectRelative(s.residualEnthalpy - T * s.residualEntropy, molarGasConstant * T * sum, 1e-12);
}

// Gibbs-Helmholtz: sum x_i (d ln phi_i / dT) = -h_res / (R T^2).
TEST_P(Identities, TemperatureSlopesGiveTheResidualEnthalpy) {
    const PhaseState s = phase(T, P, x);
    double sum = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sum += x[i] * s.dlnPhi_dT[i];
    }
    expectRelative(-molarGasConstant * T * T * sum, s.residualEnthalpy, 1e-11);
}

TEST_P(Identities, PressureSlopesGiveTheResidualVolume) {
    const PhaseState s = phase(T, P, x);
    double sum = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sum += x[i] * s.dlnPhi_dP[i];
    }
    EXPECT_NEAR(sum * P, s.Z - 1.0, 1e-13 * (1.0 + s.Z));
}

TEST_P(Identities, MoleNumberSlopesObeyGibbsDuhemAndAreSymmetric) {
    const PhaseState s = phase(T, P, x);
    const std::size_t n = x.size();
    for (std::size_t j = 0; j < n; ++j) {
        double sum = 0.0, size = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            sum += x[i] * s.dlnPhi_dn[i * n + j];
            size += x[i] * std::abs(s.dlnPhi_dn[i * n + j]);
            EXPECT_EQ(s.dlnPhi_dn[i * n + j], s.dlnPhi_dn[j * n + i]);
        }
        EXPECT_NEAR(sum, 0.0, 1e-12 * (1.0 + size));
    }
}

TEST_P(Identities, DerivativesMatchDifferences) {
    const PhaseState s = phase(T, P, x);
    const std::size_t n = x.size();
    const auto near = [](double actual, double expected, double scale) {
        EXPECT_NEAR(actual, expected, 1e-8 * (std::abs(expected) + scale));
    };
    for (std::size_t i = 0; i < n; ++i) {
        near(s.dlnPhi_dT[i], slope([&](double t) { return phase(t, P, x).lnPhi[i]; }, T, 1e-3 * T), 1e-2 / T);
        near(s.dlnPhi_dP[i], slope([&](double p) { return phase(T, p, x).lnPhi[i]; }, P, 1e-3 * P), 1e-2 / P);
        for (std::size_t j = 0; j < n; ++j) {
            const auto withMoles = [&](double moles) {
                std::vector<double> changed = x;
                changed[j] = moles;
                return phase(T, P, normalisedComposition(changed, n)).lnPhi[i];
            };
            near(s.dlnPhi_dn[i * n + j], slope(withMoles, x[j], 1e-3), 1e-2);
        }
    }
    near(s.da_dT, slope([&](double t) { return phase(t, P, x).a; }, T, 1e-3 * T), 0.0);
    near(s.d2a_dT2, slope([&](double t) { return phase(t, P, x).da_dT; }, T, 1e-3 * T), 0.0);
    near(1.0 / s.dP_dv, slope([&](double p) { return phase(T, p, x).v; }, P, 1e-3 * P), 0.0);
    near(-s.dP_dT / s.dP_dv, slope([&](double t) { return phase(t, P, x).v; }, T, 1e-3 * T), 0.0);
    near(s.residualCp, slope([&](double t) { return phase(t, P, x).residualEnthalpy; }, T, 1e-3 * T), 0.0);
}

TEST_P(Identities, TotalPropertiesBelongTogether) {
    const auto at = [&](double t, double p) { return fluid.properties(t, p, x, GetParam().root); };
    const PhaseProperties p = at(T, P);
    expectRelative(p.gibbsEnergy(), p.enthalpy - T * p.entropy, 1e-15);
    expectRelative(p.internalEnergy(), p.enthalpy - P * p.state.v, 1e-15);
    expectRelative(p.helmholtzEnergy(), p.gibbsEnergy() - P * p.state.v, 1e-12);
    expectRelative(p.density() * p.state.v, 1.0, 1e-15);
    // dh = Cp dT, ds = Cp/T dT at constant pressure; dg = v dP, (dh/dP) = v - T (dv/dT) at constant
    // temperature.
    expectRelative(slope([&](double t) { return at(t, P).enthalpy; }, T, 1e-3 * T), p.Cp, 1e-8);
    expectRelative(slope([&](double t) { return at(t, P).entropy; }, T, 1e-3 * T), p.Cp / T, 1e-8);
    expectRelative(slope([&](double q) { return at(T, q).gibbsEnergy(); }, P, 1e-3 * P), p.state.v, 1e-7);
    EXPECT_NEAR(slope([&](double q) { return at(T, q).enthalpy; }, P, 1e-3 * P),
                -p.jouleThomsonCoefficient() * p.Cp, 1e-6 * p.state.v);
    expectRelative(-slope([&](double q) { return at(T, q).state.v; }, P, 1e-3 * P) / p.state.v,
                   p.compressibility(), 1e-8);
    // Mayer's relation with the volume expansion.
    expectRelative(p.Cp - p.Cv, -T * p.state.dP_dT * p.state.dP_dT / p.state.dP_dv, 1e-10);
    EXPECT_GT(p.speedOfSound(), 100.0);
}

TEST(IdealGasLimit, SpeedOfSoundInDiluteArgon) {
    const Fluid argon = fluidOf({"argon"});
    const std::vector<double> one{1.0};
    const PhaseProperties p = argon.properties(300.0, 10.0, one, Root::vapor);
    expectRelative(p.speedOfSound(), std::sqrt(5.0 / 3.0 * molarGasConstant * 300.0 / 0.039948), 1e-4);
    expectRelative(p.Cp - p.Cv, molarGasConstant, 1e-6);
}

TEST(ReferenceState, PureIdealGasesHaveNoEnthalpyAndEntropy) {
    const Fluid methane = fluidOf({"methane"});
    const std::vector<double> one{1.0};
    const PhaseProperties p = methane.properties(298.15, referencePressure, one, Root::vapor);
    EXPECT_NEAR(p.enthalpy, p.state.residualEnthalpy, 1e-10);
    EXPECT_NEAR(p.entropy, p.state.residualEntropy, 1e-12);
    expectRelative(p.formationEnthalpy - 298.15 * p.formationEntropy, -50490.0, 1e-12);
}

} // namespace
} // namespace peng_robinson::eos::test
