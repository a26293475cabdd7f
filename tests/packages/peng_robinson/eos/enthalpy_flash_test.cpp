#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/flash_ph.h"
#include "packages/peng_robinson/eos/pure_saturation.h"
#include "tests/packages/peng_robinson/eos/support.h"

namespace peng_robinson::eos::test {
namespace {

struct EnthalpyFlash : testing::Test {
    Fluid gas = fluidOf(
        {"methane", "nitrogen", "carbon dioxide", "ethane", "propane", "n-butane", "n-pentane", "n-heptane"});
    std::vector<double> z{0.7, 0.03, 0.04, 0.06, 0.1, 0.03, 0.03, 0.01};
    Fluid pure = fluidOf({"propane"});
    std::vector<double> one{1.0};
};

TEST_F(EnthalpyFlash, FindsTheTemperatureBackInAnyState) {
    for (const double P : {1e5, 1e6, 5e6, 9e6, 2e7}) {
        for (const double T : {120.0, 180.0, 220.0, 250.0, 300.0, 400.0, 900.0}) {
            SCOPED_TRACE(testing::Message() << T << " K, " << P << " Pa");
            const Equilibrium forward = flashTP(gas.model(), T, P, z);
            const Equilibrium back = flashPH(gas, P, enthalpyOf(gas, forward), z);
            EXPECT_NEAR(back.T, T, 1e-9 * T);
            ASSERT_EQ(back.vapor.has_value(), forward.vapor.has_value());
            ASSERT_EQ(back.liquid.has_value(), forward.liquid.has_value());
            if (forward.vapor) {
                EXPECT_NEAR(back.vapor->fraction, forward.vapor->fraction, 1e-9);
            }
        }
    }
}

TEST_F(EnthalpyFlash, PureCompoundBoilsAtOneTemperature) {
    const Saturation saturation = saturationAtPressure(pure.model(), 101325.0);
    const double liquid = pure.properties(saturation.T, 101325.0, one, Root::liquid).enthalpy;
    const double vapor = pure.properties(saturation.T, 101325.0, one, Root::vapor).enthalpy;
    const Equilibrium result = flashPH(pure, 101325.0, 0.7 * liquid + 0.3 * vapor, one);
    EXPECT_EQ(result.T, saturation.T);
    ASSERT_TRUE(result.vapor && result.liquid);
    EXPECT_NEAR(result.vapor->fraction, 0.3, 1e-12);
}

TEST_F(EnthalpyFlash, PureCompoundBelowAndAboveItsBoilingPoint) {
    for (const double T : {200.0, 260.0, 500.0}) {
        const double h = pure.properties(T, 101325.0, one, Root::stable).enthalpy;
        const Equilibrium result = flashPH(pure, 101325.0, h, one);
        EXPECT_NEAR(result.T, T, 1e-9 * T);
        EXPECT_EQ(result.liquid.has_value(), T < 231.0);
        EXPECT_EQ(result.vapor.has_value(), T > 231.0);
    }
}

TEST_F(EnthalpyFlash, PureCompoundAboveItsCriticalPressure) {
    const double h = pure.properties(400.0, 1e7, one, Root::stable).enthalpy;
    EXPECT_NEAR(flashPH(pure, 1e7, h, one).T, 400.0, 1e-7);
}

// Isobutane with a ten-millionth of n-butane boils within microkelvins: the temperature has not the digits to
// tell how much has boiled, the vapour fraction has.
TEST_F(EnthalpyFlash, NarrowBoilingMixture) {
    const Fluid narrow = fluidOf({"isobutane", "n-butane"});
    const std::vector<double> almostPure{1.0, 1e-12};
    const Equilibrium half = flashPVaporFraction(narrow.model(), 5e5, 0.5, almostPure);
    const double h = enthalpyOf(narrow, half);
    const Equilibrium result = flashPH(narrow, 5e5, h, almostPure);
    EXPECT_NEAR(result.T, half.T, 1e-9);
    ASSERT_TRUE(result.vapor && result.liquid);
    EXPECT_NEAR(result.vapor->fraction, 0.5, 1e-6);
}

TEST_F(EnthalpyFlash, OnePhaseOnly) {
    for (const PhasesAllowed allowed : {PhasesAllowed::vaporOnly, PhasesAllowed::liquidOnly}) {
        const Equilibrium forward = flashTP(gas.model(), 200.0, 1e6, z, allowed);
        EXPECT_EQ(forward.vapor.has_value(), allowed == PhasesAllowed::vaporOnly);
        EXPECT_EQ(forward.liquid.has_value(), allowed == PhasesAllowed::liquidOnly);
        EXPECT_NEAR(flashPH(gas, 1e6, enthalpyOf(gas, forward), z, allowed).T, 200.0, 1e-8);
    }
}

TEST_F(EnthalpyFlash, EnthalpyOutOfReachIsRefused) {
    try {
        flashPH(gas, 1e5, -1e6, z);
        FAIL() << "an impossible enthalpy was accepted";
    } catch (const NoConvergence& error) {
        EXPECT_STREQ(error.what(),
                     "No temperature between 5 K and 5000 K gives an enthalpy of -1e+06 J/mol; check the "
                     "enthalpy and its reference state");
    }
}

} // namespace
} // namespace peng_robinson::eos::test
