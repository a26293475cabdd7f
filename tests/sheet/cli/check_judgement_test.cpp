// What `quorvane-sheet check` does not hold against a package: what it cannot calculate, does not list or
// counts in another way; and which states are asked.
#include "tests/sheet/cli/check_fixture.h"

#include <gmock/gmock.h>

namespace sheet::cli {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

TEST_F(CheckTest, DerivativesThatThePackageDoesNotHaveAreNoMiss) {
    ideal_->fails = "volume.Dmoles";
    ideal_->failure = static_cast<HRESULT>(ECapeLimitedImplHR);
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    const formula::Matrix table = report.table();
    const auto row = std::ranges::find_if(table.values, [](const formula::Value& cell) {
        return formula::exactText(cell).starts_with("not available: ");
    });
    EXPECT_NE(row, table.values.end());
}

TEST_F(CheckTest, WhatIsInfiniteForACompoundThatIsNotThereIsNoMiss) {
    ideal_->package->model.singlePhase.push_back({L"logFugacity", 1, false});
    ideal_->package->model.singlePhase.push_back({L"entropy.Dmoles", 1, true});
    const checking::Report report = check({{}, {}, {{1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}}});
    EXPECT_THAT(misses(report), IsEmpty());
}

TEST_F(CheckTest, TwoPhasePropertiesAreAskedOfThePhasesThatThePackageOffersThemFor) {
    ideal_->package->model.phases.push_back({L"Solid", L"Solid"});
    ideal_->withSolid = true;
    ideal_->package->hook("CheckTwoPhasePropSpec", [](scripted::Call& call) {
        const std::vector<std::wstring> phases = scripted::textsOf(call.in[1]);
        const HRESULT code = call.healthy();
        if (std::ranges::find(phases, L"Solid") != phases.end()) {
            call.out[0].give(com::variant{false});
        }
        return code;
    });
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report),
                testing::Contains("K-values fit the compositions: 2 of 3: not available: not for "
                                  "these phases"));
    EXPECT_FALSE(ideal_->askedWithSolid);
}

// A vapor is not condensed, so that it stays one phase.
TEST_F(CheckTest, WithoutTwoPhasesWhatNeedsThemIsToldAsNotAvailable) {
    const checking::Report report = check({{700.0}, {50'000.0}, {}});
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report),
                testing::IsSupersetOf(
                    {"fugacities agree across phases: phases: not available: no state has two phases",
                     "K-values fit the compositions: phases: not available: no state has two phases",
                     "listed properties of two phases: kvalue: not available: no state has two phases"}));
}

TEST_F(CheckTest, WhatIsNotListedIsToldAsNotAvailable) {
    std::erase_if(ideal_->package->model.singlePhase,
                  [](const scripted::Property& listed) { return listed.name == L"heatCapacityCp"; });
    EXPECT_THAT(
        rowsOf(check()),
        testing::IsSupersetOf(
            {"heat capacities and volumes as slopes: 2 of 4: not available: it lists no heatCapacityCp",
             "properties that follow from each other: 6 of 8: not available: it lists no internalEnergy; "
             "and for other reasons"}));
}

TEST_F(CheckTest, APropertyThatIsMissingCloseByIsToldAsNotAvailable) {
    ideal_->refuses = [](const ideal::State& state) { return state.T != 300.0; };
    const checking::Report report = check({{300.0}, {50'000.0}, {{1.0, 1.0, 1.0}}});
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(
        rowsOf(report),
        testing::IsSupersetOf<testing::Matcher<std::string>>(
            {"heat capacities and volumes as slopes: 2 of 4: not available: a value is missing within "
             "0.5 % of the temperature",
             testing::AllOf(StartsWith("derivatives by temperature: "),
                            testing::HasSubstr("it is not calculated close by, so that no difference "
                                               "can be formed"))}));
}

TEST_F(CheckTest, KValuesAreOfTheVaporOverTheLiquidWhateverTheOrderOfThePhases) {
    std::ranges::reverse(ideal_->package->model.phases);
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report), testing::Contains("K-values fit the compositions: Vapor and Liquid: agrees"));
}

TEST_F(CheckTest, AGibbsEnergyMayCountFromTheFormationOfTheCompounds) {
    ideal_->package->model.singlePhase.push_back({L"enthalpyF", 0, true});
    ideal_->package->model.singlePhase.push_back({L"entropyF", 0, true});
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name == "gibbsEnergy") {
            values[0] -= 1e5 + 50.0 * state.T;
        } else if (name == "gibbsEnergy.Dtemperature") {
            values[0] -= 50.0;
        } else if (name == "gibbsEnergy.Dmoles") {
            for (double& value : values) {
                value -= 1e5 + 50.0 * state.T;
            }
        }
    };
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(CheckTest, AStateThatThePackageRefusesIsToldAsNotAvailable) {
    ideal_->refusesFlash = [](const ideal::State& state) { return state.T > 370.0; };
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report), testing::Contains("K-values fit the compositions: Vapor and Liquid: agrees"));
}

TEST_F(CheckTest, DewPointsBelowBubblePointsByRoundingAreOneTemperature) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        split.T *= split.vaporFraction == 1.0 ? 1.0 - 1e-9 : 1.0;
    };
    EXPECT_THAT(rowsOf(check({{}, {}, {{0.0, 1.0, 0.0}}})),
                testing::Contains("fugacities agree across phases: Vapor and Liquid: agrees"));
}

TEST_F(CheckTest, TracesThatAFlashDoesNotResolveAreNoMiss) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        if (!split.liquid.empty() && !split.vapor.empty()) {
            split.liquid[2] += 1e-11;
            split.liquid[0] -= 1e-11;
        }
    };
    EXPECT_THAT(misses(check({{}, {}, {{0.5, 0.5, 1e-7}}})), IsEmpty());
}

TEST_F(CheckTest, ChosenConditionsAreThoseThatAreAsked) {
    const checking::Report report = check({{290.0}, {50'000.0}, {{1.0, 1.0, 2.0}}});
    EXPECT_THAT(misses(report), IsEmpty());
    bool asked = false;
    for (const formula::Value& cell : report.table().values) {
        const std::string text = formula::exactText(cell);
        asked = asked || text.find("290 K, 50000 Pa, composition 1") != std::string::npos;
        EXPECT_EQ(text.find("composition 2"), std::string::npos) << text;
    }
    EXPECT_TRUE(asked);
}

} // namespace
} // namespace sheet::cli
