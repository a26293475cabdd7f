// Properties of two phases at equilibrium and their derivatives.
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/ideal_gas.h"
#include "packages/peng_robinson/eos/two_phase.h"
#include "tests/packages/peng_robinson/differences.h"
#include "tests/packages/peng_robinson/eos/support.h"

namespace peng_robinson::eos::test {
namespace {

using Values = std::vector<double>;
using peng_robinson::test::slopes;

class TwoPhases : public testing::TestWithParam<TwoPhaseProperty> {
  protected:
    Fluid fluid = fluidOf({"nitrogen", "methane", "propane", "n-hexane", "carbon dioxide"});
    double T = 250.0, P = 3e6;
    Equilibrium flash = flashTP(fluid.model(), T, P, Values{0.05, 0.6, 0.2, 0.1, 0.05});
    Values y = flash.vapor->x, x = flash.liquid->x;

    // Compositions need not sum to one here.
    DifferentiablePhase phase(double atT, double atP, const Values& composition, Root root) const {
        PhaseState state = fluid.model().at(atT).phase(atP, composition, root, {.thermal = true});
        return DifferentiablePhase{totalProperties(fluid, std::move(state), composition)};
    }
    Values values(double atT, double atP, const Values& ofVapor, const Values& ofLiquid,
                  Derivative derivative = Derivative::none) const {
        DifferentiablePhase vapor = phase(atT, atP, ofVapor, Root::vapor);
        DifferentiablePhase liquid = phase(atT, atP, ofLiquid, Root::liquid);
        return twoPhaseValues(GetParam(), derivative, vapor, liquid);
    }

    void expectNear(double actual, double expected, double scale) const {
        EXPECT_NEAR(actual, expected, 2e-8 * std::abs(expected) + 1e-9 * scale);
    }

    // Derivatives by the composition of each phase in turn, the composition being made from one changed
    // amount by `compositionOf`.
    template <typename F>
    void expectCompositionDerivatives(Derivative derivative, F compositionOf) {
        const std::size_t n = x.size();
        const Values reference = values(T, P, y, x), derivatives = values(T, P, y, x, derivative);
        ASSERT_EQ(derivatives.size(), 2 * reference.size() * n);
        for (std::size_t j = 0; j < n; ++j) {
            const auto with = [&](const Values& original, double amount) {
                Values changed = original;
                changed[j] = amount;
                return compositionOf(changed);
            };
            const Values first =
                slopes([&](double amount) { return values(T, P, with(y, amount), x); }, y[j]);
            const Values second =
                slopes([&](double amount) { return values(T, P, y, with(x, amount)); }, x[j]);
            for (std::size_t i = 0; i < reference.size(); ++i) {
                SCOPED_TRACE(testing::Message() << "value " << i << " by compound " << j);
                expectNear(derivatives[i * n + j], first[i], std::abs(reference[i]) / y[j]);
                expectNear(derivatives[reference.size() * n + i * n + j], second[i],
                           std::abs(reference[i]) / x[j]);
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Properties, TwoPhases,
                         testing::Values(TwoPhaseProperty::kValue, TwoPhaseProperty::logKValue,
                                         TwoPhaseProperty::surfaceTension));

TEST_P(TwoPhases, DeriveByTemperatureInBothPhasesTogether) {
    const Values reference = values(T, P, y, x), derivatives = values(T, P, y, x, Derivative::temperature);
    const Values differences = slopes([&](double t) { return values(t, P, y, x); }, T);
    ASSERT_EQ(derivatives.size(), differences.size());
    for (std::size_t i = 0; i < differences.size(); ++i) {
        expectNear(derivatives[i], differences[i], std::abs(reference[i]) / T);
    }
}

TEST_P(TwoPhases, DeriveByPressureInBothPhasesTogether) {
    const Values reference = values(T, P, y, x), derivatives = values(T, P, y, x, Derivative::pressure);
    const Values differences = slopes([&](double p) { return values(T, p, y, x); }, P);
    ASSERT_EQ(derivatives.size(), differences.size());
    for (std::size_t i = 0; i < differences.size(); ++i) {
        expectNear(derivatives[i], differences[i], std::abs(reference[i]) / P);
    }
}

TEST_P(TwoPhases, DeriveByTheFractionsOfTheFirstPhaseThenOfTheSecond) {
    expectCompositionDerivatives(Derivative::moleFraction, [](const Values& changed) { return changed; });
}

TEST_P(TwoPhases, DeriveByTheMolesOfTheFirstPhaseThenOfTheSecond) {
    expectCompositionDerivatives(Derivative::moleNumber, [](const Values& amounts) {
        return normalisedComposition(amounts, amounts.size());
    });
}

struct KValues : TwoPhases {};
INSTANTIATE_TEST_SUITE_P(OfAFlash, KValues, testing::Values(TwoPhaseProperty::kValue));

TEST_P(KValues, AreTheRatiosOfTheFractionsAtEquilibrium) {
    const Values K = values(T, P, y, x);
    for (std::size_t i = 0; i < x.size(); ++i) {
        expectRelative(K[i], y[i] / x[i], 1e-9);
    }
}

struct Tension : TwoPhases {};
INSTANTIATE_TEST_SUITE_P(OfAFlash, Tension, testing::Values(TwoPhaseProperty::surfaceTension));

TEST_P(Tension, IsTheSameFromBothSides) {
    DifferentiablePhase vapor = phase(T, P, y, Root::vapor), liquid = phase(T, P, x, Root::liquid);
    const Values there = twoPhaseValues(GetParam(), Derivative::none, vapor, liquid);
    const Values back = twoPhaseValues(GetParam(), Derivative::none, liquid, vapor);
    expectRelative(back, there, 1e-14);
    EXPECT_GT(there[0], 1e-3);
    EXPECT_LT(there[0], 20e-3);
}

} // namespace
} // namespace peng_robinson::eos::test
