// What a package is asked, and how answers of all shapes are read; the answers are given here.
#include "sheet/checking/check.h"
#include "sheet/checking/questions.h"

#include <cmath>
#include <gtest/gtest.h>

namespace sheet::checking {
namespace {

using formula::CellError;
using formula::Matrix;
using formula::Result;
using formula::Value;

// Answers of the worksheet functions, by name.
class Answers {
  public:
    Answers() {
        answers["CapeOpenCompounds"] = {Matrix{2, 1, {"water", "ethanol"}}};
        answers["CapeOpenPhases"] = {Matrix{2, 1, {"Vapor", "Liquid"}}};
    }
    Package package(Offer offer = {}) {
        return {"Wet", std::move(offer),
                [this](const formula::EnteredFormula& entered, const formula::Grid& grid) {
                    last = entered.formula;
                    cells = grid.values({{0, 0}, 2, 2});
                    return answers.at(entered.formula.function);
                }};
    }

    std::map<std::string, Result> answers;
    formula::Formula last;
    Matrix cells;
};

TEST(Package, APropertyIsAskedWithTheCompositionInCells) {
    Answers answers;
    const Package package = answers.package();
    answers.answers["CapeOpenMixtureProperty"] = {Matrix::of(5.0)};
    EXPECT_EQ(package.property("volume", {{"Liquid"}, 300.0, 1e5, {{0.25, 0.75}}}).values, std::vector{5.0});
    EXPECT_EQ(answers.last.function, "CapeOpenMixtureProperty");
    EXPECT_EQ(answers.last.arguments, (std::vector<formula::Argument>{
                                          "Wet", "volume", "Liquid", 300.0, 1e5, formula::Block{{0, 0}, 2, 1},
                                          formula::Omitted{}, formula::Omitted{}, "vertical"}));
    EXPECT_EQ(answers.cells, (Matrix{2, 2, {0.25, {}, 0.75, {}}}));
}

TEST(Package, AFailureIsReadAsItsText) {
    Answers answers;
    const Package package = answers.package();
    answers.answers["CapeOpenCompoundConstant"] = {Matrix::of("No such thing"), true};
    EXPECT_EQ(package.constant("charge").failure, "No such thing");
    answers.answers["CapeOpenCompoundConstant"] = {Matrix::of(CellError::value), true, "too many"};
    EXPECT_EQ(package.constant("charge").failure, "#VALUE! (too many)");
}

TEST(Package, AMissingValueIsNoNumber) {
    Answers answers;
    const Package package = answers.package();
    answers.answers["CapeOpenTemperatureDependentProperty"] = {Matrix{2, 1, {"", 7.0}}};
    const Answer answer = package.temperatureDependent("vaporPressure", 300.0);
    EXPECT_FALSE(answer.failed());
    EXPECT_TRUE(std::isnan(answer.values.at(0)));
    EXPECT_EQ(answer.values.at(1), 7.0);
}

TEST(Package, PhasesWithoutNumbersAreNotThere) {
    Answers answers;
    const Package package = answers.package();
    answers.answers["CapeOpenPhaseEquilibrium"] = {
        Matrix{3, 5, {300.0, 1e5, 1.0, 0.5, 0.5, "", "", "", "", "", 300.0, 1e5, 1.0, 0.5, 0.5}}};
    const Equilibrium found = package.equilibrium({0.5, 0.5}, {"temperature", 300.0}, {"pressure", 1e5});
    ASSERT_EQ(found.phases.size(), 1U);
    EXPECT_EQ(found.phases[0].phase, "Liquid");
    EXPECT_EQ(found.phases[0].composition, (Composition{0.5, 0.5}));
    EXPECT_EQ(found.temperature, 300.0);
}

TEST(Package, AListOfKValuesOfAnotherLengthFails) {
    Answers answers;
    const Package package = answers.package({{}, {{"kvalue", 1}}, {}, {}, {}, {}});
    answers.answers["CapeOpenTwoPhaseProperty"] = {Matrix{3, 1, {1.0, 1.0, 1.0}}};
    Report report;
    askForKValues(package, {{{"Vapor", "Liquid"}, 300.0, 1e5, {{0.5, 0.5}, {0.5, 0.5}}}, "300 K"}, report);
    EXPECT_EQ(report.table().at(1, 5), Value{"FAILS: 3 values instead of 2"});
}

TEST(Package, ATableOfAnotherSizeIsAFailure) {
    Answers answers;
    const Package package = answers.package();
    answers.answers["CapeOpenPhaseEquilibrium"] = {Matrix{1, 1, {300.0}}};
    EXPECT_EQ(package.equilibrium({0.5, 0.5}, {"temperature", 300.0}, {"pressure", 1e5}).failure,
              "the table of the phase equilibrium has an unexpected size");
}

TEST(Package, WithoutCompoundsNothingElseIsAsked) {
    Answers answers;
    answers.answers["CapeOpenCompounds"] = {Matrix::of("No licence"), true};
    const Report report = check(answers.package(), {});
    EXPECT_FALSE(report.agrees());
    EXPECT_EQ(report.table().at(1, 5), Value{"FAILS: No licence"});
    EXPECT_EQ(report.table().rows, 2U);
}

TEST(Offer, PropertiesAreFoundInAnyLetterCaseAndSpelling) {
    const Offer offer{{{"Enthalpy", 0, true}}, {{"kvalue", 1}}, {}, {}, {}, {}};
    constexpr std::string_view spellings[] = {"kvalues", "KVALUE"};
    EXPECT_EQ(offer.find(spellings)->name, "kvalue");
    EXPECT_TRUE(offer.find("enthalpy")->extensive);
    EXPECT_EQ(offer.find("entropy"), nullptr);
}

} // namespace
} // namespace sheet::checking
