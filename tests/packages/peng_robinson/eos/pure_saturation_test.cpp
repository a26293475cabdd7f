#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/pure_saturation.h"
#include "tests/packages/peng_robinson/eos/support.h"

namespace peng_robinson::eos::test {
namespace {

const std::vector<double> one{1.0};

PengRobinson pure(const Compound& c) { return mixture({c.Tc}, {c.Pc}, {c.acentricFactor}); }

TEST(PureSaturation, FugacitiesAreEqualFromFarBelowToTheCriticalPoint) {
    for (const Compound& c : compounds()) {
        const PengRobinson model = pure(c);
        for (const double reduced : {0.2, 0.3, 0.5, 0.7, 0.9, 0.99, 0.9999, 0.9999999}) {
            const Saturation at = saturationAtTemperature(model, reduced * c.Tc);
            EXPECT_NEAR(at.vapor.lnPhi[0], at.liquid.lnPhi[0], 1e-12) << c.name << ' ' << reduced;
            EXPECT_GT(at.vapor.v, at.liquid.v) << c.name << ' ' << reduced;
            EXPECT_LT(at.P, c.Pc);
        }
    }
}

TEST(PureSaturation, TemperatureAndPressureAreInverse) {
    for (const Compound& c : compounds()) {
        for (const double reduced : {0.3, 0.5, 0.7, 0.9, 0.999}) {
            const Saturation at = saturationAtTemperature(pure(c), reduced * c.Tc);
            expectRelative(saturationAtPressure(pure(c), at.P).T, at.T, 1e-12, std::string{c.name});
        }
    }
}

// Clausius-Clapeyron: dP/dT = h / (T dv).
TEST(PureSaturation, SlopeOfTheVaporPressureGivesTheHeatOfVaporization) {
    for (const Compound& c : compounds()) {
        const double T = 0.7 * c.Tc, h = 1e-3 * T;
        const auto P = [&](double t) { return saturationAtTemperature(pure(c), t).P; };
        const double slope = (8.0 * (P(T + h) - P(T - h)) - (P(T + 2.0 * h) - P(T - 2.0 * h))) / (12.0 * h);
        const Saturation at = saturationAtTemperature(pure(c), T);
        expectRelative(slope * T * (at.vapor.v - at.liquid.v), at.heatOfVaporization(), 1e-8,
                       std::string{c.name});
    }
}

TEST(PureSaturation, EquationReachesItsOwnCriticalPoint) {
    const Compound& c = *findCompound("n-butane");
    const Saturation at = saturationAtTemperature(pure(c), c.Tc * (1.0 - 1e-9));
    expectRelative(at.P, c.Pc, 1e-8);
    expectRelative(at.vapor.Z, 0.3074013087, 1e-3);
}

TEST(PureSaturation, NothingBoilsAtTheCriticalPointOrAbove) {
    const PengRobinson model = pure(*findCompound("methane"));
    try {
        saturationAtTemperature(model, 200.0);
        FAIL() << "methane does not boil at 200 K";
    } catch (const OutOfRange& error) {
        EXPECT_STREQ(error.what(), "A pure compound boils only below its critical temperature of 190.564 K");
        EXPECT_EQ(error.value(), 200.0);
        EXPECT_EQ(error.upper(), 190.564);
    }
    try {
        saturationAtPressure(model, 5e6);
        FAIL() << "methane does not boil at 50 bar";
    } catch (const OutOfRange& error) {
        EXPECT_STREQ(error.what(), "A pure compound boils only below its critical pressure of 4.5992e+06 Pa");
    }
}

TEST(PureSaturation, VaporPressureTooSmallForTheMachineIsNotAvailable) {
    const PengRobinson model = pure(*findCompound("n-decane"));
    try {
        saturationAtTemperature(model, 10.0);
        FAIL() << "the vapor pressure of n-decane at 10 K is some 1e-700 Pa";
    } catch (const NotAvailable& error) {
        EXPECT_STREQ(error.what(), "The vapor pressure at 10 K is too small to be calculated");
    }
}

TEST(PureSaturation, VaporPressureIsThereUntilItUnderflows) {
    const PengRobinson model = pure(*findCompound("n-decane"));
    double previous = saturationAtTemperature(model, 60.0).P;
    for (int T = 60; T > 24; --T) {
        const Saturation at = saturationAtTemperature(model, T);
        EXPECT_LE(at.P, previous) << T;
        EXPECT_NEAR(at.vapor.lnPhi[0], at.liquid.lnPhi[0], 1e-10) << T;
        previous = at.P;
    }
}

TEST(PureFlash, TemperatureAndPressureGiveOnePhase) {
    const PengRobinson model = pure(*findCompound("propane"));
    const double P = saturationAtTemperature(model, 300.0).P;
    EXPECT_TRUE(flashTP(model, 300.0, 1.001 * P, one).liquid);
    EXPECT_FALSE(flashTP(model, 300.0, 1.001 * P, one).vapor);
    EXPECT_TRUE(flashTP(model, 300.0, 0.999 * P, one).vapor);
    EXPECT_FALSE(flashTP(model, 300.0, 0.999 * P, one).liquid);
}

TEST(PureFlash, SupercriticalFluidIsCalledVapor) {
    EXPECT_TRUE(flashTP(pure(*findCompound("methane")), 300.0, 5e7, one).vapor);
}

TEST(PureFlash, VaporFractionFixesTheSaturationPoint) {
    const PengRobinson model = pure(*findCompound("propane"));
    const Saturation expected = saturationAtTemperature(model, 300.0);
    for (const double fraction : {0.0, 0.25, 1.0}) {
        const Equilibrium byT = flashTVaporFraction(model, 300.0, fraction, one);
        EXPECT_EQ(byT.P, expected.P);
        EXPECT_EQ(byT.vapor->fraction, fraction);
        EXPECT_EQ(byT.liquid->fraction, 1.0 - fraction);
        expectRelative(flashPVaporFraction(model, expected.P, fraction, one).T, 300.0, 1e-13);
    }
}

TEST(PureFlash, OneCompoundAmongZerosIsPure) {
    const Fluid fluid = fluidOf({"methane", "propane", "water"});
    const std::vector<double> z{0.0, 2.0, 0.0};
    const Equilibrium result = flashPVaporFraction(fluid.model(), 101325.0, 0.5, z);
    expectRelative(result.T, saturationAtPressure(pure(*findCompound("propane")), 101325.0).T, 1e-15);
    EXPECT_EQ(result.vapor->x, (std::vector<double>{0.0, 1.0, 0.0}));
    EXPECT_EQ(result.liquid->x, (std::vector<double>{0.0, 1.0, 0.0}));
}

} // namespace
} // namespace peng_robinson::eos::test
