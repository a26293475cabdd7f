// What `quorvane-sheet check` finds in a package that fits itself, and in the same package with one error
// planted.
#include "tests/sheet/cli/check_fixture.h"

#include <gmock/gmock.h>
#include <limits>

namespace sheet::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

TEST_F(CheckTest, AHealthyPackageFitsInEveryRespect) {
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    const formula::Matrix table = report.table();
    std::vector<std::string> agreeing;
    for (std::size_t row = 1; row < table.rows; ++row) {
        if (table.at(row, 5) == formula::Value{"agrees"}) {
            agreeing.push_back(formula::exactText(table.at(row, 0)) + ": " +
                               formula::exactText(table.at(row, 1)));
        }
    }
    EXPECT_THAT(
        agreeing,
        ElementsAre("phases add up to the mixture: all 3", "phases have the conditions asked for: all 2",
                    "properties that follow from each other: 2 of 8",
                    "heat capacities and volumes as slopes: all 4", "derivatives by temperature: 7 of 8",
                    "derivatives by pressure: 7 of 8", "derivatives by mole fractions: 7 of 8",
                    "derivatives by mole numbers: 7 of 8", "fugacities agree across phases: Vapor and Liquid",
                    "K-values fit the compositions: Vapor and Liquid"));
}

TEST_F(CheckTest, AWrongTemperatureDerivativeIsNamed) {
    plant("enthalpy.Dtemperature", 1.001);
    EXPECT_THAT(found(), ElementsAre("derivatives by temperature: enthalpy: DIFFERS"));
}

TEST_F(CheckTest, AWrongPressureDerivativeIsNamed) {
    plant("volume.Dpressure", -1.0);
    EXPECT_THAT(found(), ElementsAre("derivatives by pressure: volume: DIFFERS"));
}

TEST_F(CheckTest, AWrongDerivativeByMoleFractionsIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "entropy.DmolFraction") {
            values[1] += 1.0;
        }
    };
    EXPECT_THAT(found(), ElementsAre("derivatives by mole fractions: entropy: DIFFERS"));
}

TEST_F(CheckTest, ATransposedMatrixOfDerivativesIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "fugacity.Dmoles") {
            std::swap(values[1], values[3]);
            std::swap(values[2], values[6]);
            std::swap(values[5], values[7]);
        }
    };
    EXPECT_THAT(found(), ElementsAre("derivatives by mole numbers: fugacity: DIFFERS"));
}

TEST_F(CheckTest, DerivativesByMoleNumbersMustSumToTheProperty) {
    // Of one mole, not of all moles: differences between compounds cannot tell.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name == "enthalpy.Dmoles") {
            const double h = ideal::property("enthalpy", state).at(0);
            for (double& value : values) {
                value -= h;
            }
        }
    };
    EXPECT_THAT(found(), ElementsAre("derivatives by mole numbers: enthalpy: DIFFERS"));
}

TEST_F(CheckTest, FugacitiesThatDifferBetweenThePhasesAreNamed) {
    // All that follows from the fugacities of the vapor is wrong in the same way.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name.starts_with("fugacity") && state.phase == ideal::Phase::vapor) {
            for (double& value : values) {
                value *= 1.0001;
            }
        }
    };
    EXPECT_THAT(found(), ElementsAre("fugacities agree across phases: Vapor and Liquid: DIFFERS"));
}

TEST_F(CheckTest, FugacityCoefficientsThatDoNotFitTheFugacitiesAreNamed) {
    plant("fugacityCoefficient", 1.001);
    EXPECT_THAT(found(), testing::Contains("properties that follow from each other: fugacity = x "
                                           "fugacityCoefficient P: DIFFERS"));
}

TEST_F(CheckTest, APhaseThatLacksSomeOfTheMixtureIsNamed) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        if (!split.vapor.empty()) {
            split.vapor[0] -= 1e-3;
            split.vapor[2] += 1e-3;
        }
    };
    EXPECT_THAT(found(), testing::Contains("phases add up to the mixture: compositions: DIFFERS"));
}

TEST_F(CheckTest, PhaseFractionsThatDoNotSumToOneAreNamed) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        if (split.liquid.empty()) {
            split.vaporFraction = 0.99;
        }
    };
    EXPECT_THAT(found(), testing::Contains("phases add up to the mixture: sum of phase fractions: DIFFERS"));
}

TEST_F(CheckTest, AFlashAtAnotherTemperatureIsNamed) {
    ideal_->spoilFlash = [](ideal::Split& split) { split.T += 0.01; };
    EXPECT_THAT(found(), testing::Contains("phases have the conditions asked for: temperature: DIFFERS"));
}

TEST_F(CheckTest, AHeatCapacityThatDoesNotFitTheEnthalpyIsNamed) {
    // With its derivatives, so that the heat capacity fits itself.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name.starts_with("heatCapacityCp")) {
            for (double& value : values) {
                value *= 1.01;
            }
        }
    };
    EXPECT_THAT(
        found(),
        ElementsAre("heat capacities and volumes as slopes: enthalpy and heatCapacityCp: DIFFERS",
                    "heat capacities and volumes as slopes: entropy and heatCapacityCp / T: DIFFERS"));
}

TEST_F(CheckTest, FugacitiesThatDoNotFitTheVolumeAreNamed) {
    // In both phases alike, so that they agree across the phases.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name.starts_with("fugacity")) {
            for (double& value : values) {
                value *= std::exp(1e-8 * state.P);
            }
        }
    };
    EXPECT_THAT(found(),
                testing::Contains("heat capacities and volumes as slopes: fugacities and volume: DIFFERS"));
}

TEST_F(CheckTest, AGibbsEnergyThatDoesNotFitEnthalpyAndEntropyIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "gibbsEnergy") {
            values[0] += 50.0;
        }
    };
    EXPECT_THAT(found(),
                testing::Contains("properties that follow from each other: gibbsEnergy = enthalpy - T "
                                  "entropy: DIFFERS"));
}

TEST_F(CheckTest, KValuesThatDoNotFitTheCompositionsAreNamed) {
    plant("kvalue", 1.01);
    EXPECT_THAT(found(), ElementsAre("K-values fit the compositions: Vapor and Liquid: DIFFERS"));
}

TEST_F(CheckTest, AListedPropertyThatFailsIsNamedWithItsText) {
    ideal_->fails = "heatCapacityCp";
    ideal_->failure = static_cast<HRESULT>(ECapeLimitedImplHR);
    ideal_->package->fails("GetTDependentProperty", static_cast<HRESULT>(ECapeComputationHR),
                           L"No correlation");
    EXPECT_THAT(found(), UnorderedElementsAre(
                             StartsWith("listed properties of a phase: heatCapacityCp: FAILS: "),
                             "listed properties by temperature: vaporPressure: FAILS: No correlation",
                             "listed properties by temperature: idealGasEnthalpy: FAILS: No correlation"));
}

TEST_F(CheckTest, WhatIsInfiniteForACompoundThatIsThereIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "fugacityCoefficient") {
            values[1] = std::numeric_limits<double>::infinity();
        }
    };
    EXPECT_THAT(
        misses(check({{}, {}, {{1.0, 1.0, 0.0}}})),
        testing::Contains("listed properties of a phase: fugacityCoefficient: FAILS: a value is no number"));
}

TEST_F(CheckTest, AListOfKValuesOfAnotherLengthIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "kvalue") {
            values.pop_back();
        }
    };
    EXPECT_THAT(found(), ElementsAre("listed properties of two phases: kvalue: FAILS: The material says: "
                                     "Unexpected number of values"));
}

TEST_F(CheckTest, AStateThatWasAskedForAndIsRefusedIsNamed) {
    ideal_->refusesFlash = [](const ideal::State& state) { return state.T > 370.0; };
    EXPECT_THAT(misses(check({{300.0, 380.0}, {50'000.0}, {}})),
                ElementsAre("phase equilibria: temperature and pressure: FAILS: solution error"));
}

TEST_F(CheckTest, AFlashThatFailsIsNamedWithItsText) {
    ideal_->package->recovers("CalcEquilibrium");
    ideal_->package->fails("CalcEquilibrium", static_cast<HRESULT>(ECapeSolvingErrorHR), L"No solution");
    EXPECT_THAT(found(), testing::Contains("phase equilibria: temperature and pressure: FAILS: No solution"));
}

} // namespace
} // namespace sheet::cli
