#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "tests/packages/peng_robinson/eos/support.h"

#include <functional>
#include <limits>

namespace peng_robinson::eos::test {
namespace {

template <typename Kind>
void expectFailure(const std::function<void()>& action, const std::string& message) {
    try {
        action();
        FAIL() << "expected: " << message;
    } catch (const Kind& error) {
        EXPECT_EQ(error.what(), message);
    }
}

struct InvalidInputs : testing::Test {
    Fluid fluid = fluidOf({"methane", "propane"});
    const PengRobinson& model = fluid.model();
    std::vector<double> z{0.5, 0.5};
};

TEST_F(InvalidInputs, TemperatureMustBePositive) {
    for (const double T : {0.0, -5.0, std::numeric_limits<double>::quiet_NaN()}) {
        expectFailure<OutOfRange>([&] { flashTP(model, T, 1e5, z); },
                                  "The temperature must be a positive number of kelvin");
        expectFailure<OutOfRange>([&] { flashTVaporFraction(model, T, 0.5, z); },
                                  "The temperature must be a positive number of kelvin");
    }
}

TEST_F(InvalidInputs, PressureMustBePositive) {
    for (const double P : {0.0, -1.0, std::numeric_limits<double>::infinity()}) {
        expectFailure<OutOfRange>([&] { flashTP(model, 300.0, P, z); },
                                  "The pressure must be a positive number of pascal");
        expectFailure<OutOfRange>([&] { flashPVaporFraction(model, P, 0.5, z); },
                                  "The pressure must be a positive number of pascal");
    }
}

TEST_F(InvalidInputs, VaporFractionMustLieBetweenZeroAndOne) {
    expectFailure<OutOfRange>([&] { flashTVaporFraction(model, 250.0, 1.1, z); },
                              "A vapor fraction must lie between 0 and 1");
    expectFailure<OutOfRange>([&] { flashTVaporFraction(model, 250.0, -0.1, z); },
                              "A vapor fraction must lie between 0 and 1");
}

TEST_F(InvalidInputs, CompositionMustFitTheMixture) {
    expectFailure<InvalidInput>([&] { flashTP(model, 300.0, 1e5, std::vector{1.0}); },
                                "The composition has 1 values, but the mixture has 2 compounds");
}

TEST_F(InvalidInputs, FractionsMustNotBeNegative) {
    expectFailure<InvalidInput>(
        [&] {
            flashTP(model, 300.0, 1e5, std::vector{1.2, -0.2});
        },
        "A composition cannot contain -0.2; every value must be zero or a positive number");
}

TEST_F(InvalidInputs, SomethingMustBeThere) {
    expectFailure<InvalidInput>(
        [&] {
            flashTP(model, 300.0, 1e5, std::vector{0.0, 0.0});
        },
        "The composition is empty; at least one compound needs a positive amount");
}

TEST_F(InvalidInputs, CriticalConstantsMustBeKnown) {
    expectFailure<InvalidInput>(
        [] { mixture({190.0}, {0.0}, {0.01}); },
        "The Peng-Robinson equation needs the critical temperature, the critical pressure and "
        "the acentric factor of every compound");
}

TEST_F(InvalidInputs, BubblePointAboveTheCriticalPoint) {
    expectFailure<NoConvergence>(
        [&] { flashTVaporFraction(model, 500.0, 0.0, z); },
        "No state with a vapor fraction of 0 was found at 500 K; the mixture may be above its "
        "critical point");
}

TEST_F(InvalidInputs, AmountsNeedNotBeNormalised) {
    const Equilibrium once = flashTP(model, 250.0, 1e6, z);
    const Equilibrium scaled = flashTP(model, 250.0, 1e6, std::vector{7.0, 7.0});
    ASSERT_TRUE(once.vapor && scaled.vapor);
    EXPECT_EQ(once.vapor->fraction, scaled.vapor->fraction);
    EXPECT_EQ(once.vapor->x, scaled.vapor->x);
}

} // namespace
} // namespace peng_robinson::eos::test
