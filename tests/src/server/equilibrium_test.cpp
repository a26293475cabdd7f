// The phase equilibrium function: its checks in order, its options, its table.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

using scripted::FlashPhase;

// Compounds weigh 10, 20 and 40 g/mol. The overall composition 1 : 1 : 2 is 0.25, 0.25, 0.5.
class Equilibrium : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
        flashesTo({vapor(), liquid()});
    }

    static FlashPhase vapor() {
        return {L"Vapor", 0.25, L"Mole", std::vector<double>{0.5, 0.25, 0.25}, L"Mole", 301.0, 100001.0};
    }
    static FlashPhase liquid() {
        return {L"Liquid", 0.75, L"Mole", std::vector<double>{0.125, 0.25, 0.625}, L"Mole", 302.0, 100002.0};
    }
    void flashesTo(std::vector<FlashPhase> phases) { package->flashes({std::move(phases), 300.5, 100000.5}); }

    std::string matrix(const wchar_t* options) {
        return flash({.options = text(options), .orientation = text(L"matrix")});
    }
    std::string list(const wchar_t* options) { return flash({.options = text(options)}); }
};

// --- The table
// ------------------------------------------------------------------------------------------------

TEST_F(Equilibrium, AMatrixHasARowForEachPhase) {
    EXPECT_EQ(flash({.orientation = text(L"matrix")}),
              "301 | 100001 | 0.25 | 0.5 | 0.25 | 0.25 / 302 | 100002 | 0.75 | 0.125 | 0.25 | 0.625");
}
TEST_F(Equilibrium, OfAPackageWithoutPhasesHasNoResults) {
    package->phases({});
    flashesTo({});
    EXPECT_EQ(matrix(L""), "No results");
}
TEST_F(Equilibrium, OverallResultsComeFirst) {
    EXPECT_EQ(matrix(L"overallResults"),
              "300.5 | 100000.5 | 1 | 0.25 | 0.25 | 0.5 / 301 | 100001 | 0.25 | 0.5 | 0.25 | 0.25 "
              "/ 302 | 100002 | 0.75 | 0.125 | 0.25 | 0.625");
}
TEST_F(Equilibrium, OverallResultsAlone) {
    EXPECT_EQ(matrix(L"overallResults,noPhaseResults"), "300.5 | 100000.5 | 1 | 0.25 | 0.25 | 0.5");
}
TEST_F(Equilibrium, OptionWordsAreReadInAnyCase) {
    EXPECT_EQ(matrix(L"OVERALLRESULTS,nophaseresults"), "300.5 | 100000.5 | 1 | 0.25 | 0.25 | 0.5");
}
TEST_F(Equilibrium, QuantitiesCanBeLeftOut) {
    EXPECT_EQ(matrix(L"noTemperature"),
              "100001 | 0.25 | 0.5 | 0.25 | 0.25 / 100002 | 0.75 | 0.125 | 0.25 | 0.625");
    EXPECT_EQ(matrix(L"noPressure"), "301 | 0.25 | 0.5 | 0.25 | 0.25 / 302 | 0.75 | 0.125 | 0.25 | 0.625");
    EXPECT_EQ(matrix(L"noPhaseFraction"),
              "301 | 100001 | 0.5 | 0.25 | 0.25 / 302 | 100002 | 0.125 | 0.25 | 0.625");
    EXPECT_EQ(matrix(L"noComposition"), "301 | 100001 | 0.25 / 302 | 100002 | 0.75");
}
TEST_F(Equilibrium, TransposeExchangesRowsAndColumns) {
    EXPECT_EQ(matrix(L"noComposition,transpose"), "301 | 302 / 100001 | 100002 / 0.25 | 0.75");
}
TEST_F(Equilibrium, ATableWithoutColumnsHasNoResults) {
    EXPECT_EQ(matrix(L"noTemperature,noPressure,noPhaseFraction,noComposition"), "No results");
    EXPECT_EQ(matrix(L"noTemperature,noPressure,noPhaseFraction,noComposition,transpose"), "No results");
}
TEST_F(Equilibrium, AListHasOverallConditionsThenABlockForEachPhase) {
    EXPECT_EQ(list(L""), "list: 300.5 | 100000.5 | 0.25 | 0.5 | 0.25 | 0.25 | 0.75 | 0.125 | 0.25 | 0.625");
}
TEST_F(Equilibrium, AListCanStandInAColumn) {
    EXPECT_EQ(flash({.options = text(L"noComposition"), .orientation = number(2)}),
              "300.5 / 100000.5 / 0.25 / 0.75");
}
TEST_F(Equilibrium, AListWithoutCellsHasNoResults) {
    EXPECT_EQ(list(L"overallResults,noPhaseResults,noTemperature,noPressure"), "No results");
}
TEST_F(Equilibrium, AnAbsentPhaseShowsEmptyTexts) {
    flashesTo({liquid()});
    EXPECT_EQ(flash({.options = text(L"noComposition"), .orientation = number(3)}),
              "\"\" | \"\" | \"\" / 302 | 100002 | 0.75");
    EXPECT_EQ(list(L"noComposition"), "list: 300.5 | 100000.5 | \"\" | 0.75");
}
TEST_F(Equilibrium, TheFillerIsTheUsersChoice) {
    flashesTo({liquid()});
    EXPECT_EQ(flash({.options = text(L"noComposition"), .noNumber = number(-1)}),
              "list: 300.5 | 100000.5 | -1 | 0.75");
    EXPECT_EQ(flash({.options = text(L"noComposition"), .noNumber = cell(text(L"n/a"))}),
              "list: 300.5 | 100000.5 | n/a | 0.75");
    EXPECT_EQ(flash({.options = text(L"noComposition"), .noNumber = emptyCell()}),
              "list: 300.5 | 100000.5 | \"\" | 0.75");
}
TEST_F(Equilibrium, AFillerOfSeveralCellsIsRefused) {
    EXPECT_EQ(flash({.noNumber = cells({1, 2})}), "Invalid value for noNumber - expected a single value");
}
TEST_F(Equilibrium, ATemperatureThatThePackageDoesNotReportShowsTheFiller) {
    package->flashes({{liquid()}, std::nullopt, 100000.5});
    EXPECT_EQ(flash({.condition1 = text(L"enthalpy"), .options = text(L"noComposition")}),
              "list: \"\" | 100000.5 | \"\" | 0.75");
}

// --- Extra properties
// -----------------------------------------------------------------------------------------

TEST_F(Equilibrium, ExtraPropertiesAreCalculatedAtEachPhasesConditions) {
    EXPECT_EQ(matrix(L"noTemperature,noPressure,noComposition,enthalpy").substr(0, 7), "0.25 | ");
    EXPECT_EQ(package->calls("CalcSinglePhaseProp"),
              (std::vector<std::string>{"CalcSinglePhaseProp([enthalpy], Vapor)",
                                        "CalcSinglePhaseProp([enthalpy], Liquid)"}));
}
TEST_F(Equilibrium, AnExtensivePropertyHasAnOverallValue) {
    package->calculates(L"enthalpy", L"Mole", {100.0});
    EXPECT_EQ(matrix(L"overallResults,noTemperature,noPressure,noComposition,enthalpy"),
              "1 | 100 / 0.25 | 100 / 0.75 | 100");
}
TEST_F(Equilibrium, APropertyThatIsNotExtensiveShowsTheFillerInTheOverallRow) {
    package->calculates(L"viscosity", L"", {5.0});
    EXPECT_EQ(matrix(L"overallResults,noTemperature,noPressure,noComposition,viscosity"),
              "1 | \"\" / 0.25 | 5 / 0.75 | 5");
}
TEST_F(Equilibrium, AnExtensivePropertyWithoutAnOverallMeaningShowsTheFiller) {
    package->model.singlePhase.push_back({L"heatCapacityCp", 0, true});
    package->calculates(L"heatCapacityCp", L"Mole", {5.0});
    EXPECT_EQ(matrix(L"overallResults,noTemperature,noPressure,noComposition,heatCapacityCp"),
              "1 | \"\" / 0.25 | 5 / 0.75 | 5");
}
TEST_F(Equilibrium, APropertyPerCompoundFillsAColumnForEach) {
    package->calculates(L"fugacityCoefficient", L"", {1.0, 2.0, 3.0});
    EXPECT_EQ(matrix(L"overallResults,noTemperature,noPressure,noComposition,fugacityCoefficient"),
              "1 | \"\" | \"\" | \"\" / 0.25 | 1 | 2 | 3 / 0.75 | 1 | 2 | 3");
}
TEST_F(Equilibrium, FugacityHasAnOverallValuePerCompound) {
    package->model.singlePhase.push_back({L"fugacity", 1, false});
    package->calculates(L"fugacity", L"", {4.0, 8.0, 12.0});
    EXPECT_EQ(
        matrix(
            L"overallResults,noPhaseResults,noTemperature,noPressure,noPhaseFraction,noComposition,Fugacity"),
        "4 | 8 | 12");
}
TEST_F(Equilibrium, AListLeavesMissingOverallValuesOut) {
    package->calculates(L"viscosity", L"", {5.0});
    package->calculates(L"enthalpy", L"Mole", {100.0});
    EXPECT_EQ(list(L"overallResults,noComposition,viscosity,enthalpy"),
              "list: 300.5 | 100000.5 | 100 | 0.25 | 5 | 100 | 0.75 | 5 | 100");
}
TEST_F(Equilibrium, ExtraPropertiesKeepTheirOrderAndDuplicates) {
    package->calculates(L"viscosity", L"", {5.0});
    package->calculates(L"enthalpy", L"Mole", {100.0});
    EXPECT_EQ(matrix(L"noTemperature,noPressure,noPhaseFraction,noComposition,viscosity,enthalpy,viscosity"),
              "5 | 100 | 5 / 5 | 100 | 5");
}
TEST_F(Equilibrium, AnUndefinedValueShowsTheFillerAndHasNoOverallValue) {
    package->calculates(L"enthalpy", L"Mole", {std::numeric_limits<double>::lowest()});
    EXPECT_EQ(matrix(L"overallResults,noTemperature,noPressure,noComposition,enthalpy"),
              "1 | \"\" / 0.25 | \"\" / 0.75 | \"\"");
    EXPECT_EQ(list(L"overallResults,noComposition,enthalpy"),
              "list: 300.5 | 100000.5 | 0.25 | \"\" | 0.75 | \"\"");
}
TEST_F(Equilibrium, AnAbsentPhaseIsNotAskedForProperties) {
    flashesTo({liquid()});
    package->calculates(L"enthalpy", L"Mole", {100.0});
    EXPECT_EQ(list(L"noComposition,enthalpy"), "list: 300.5 | 100000.5 | \"\" | \"\" | 0.75 | 100");
    EXPECT_EQ(package->count("CalcSinglePhaseProp"), 1U);
}
TEST_F(Equilibrium, AMatrixPropertyHasTheWrongSizeForATable) {
    EXPECT_EQ(list(L"diffusionCoefficient"), "Unexpected property result, invalid size");
}
TEST_F(Equilibrium, APropertyThatThePackageCannotCalculateIsQuoted) {
    package->fails("CalcSinglePhaseProp", static_cast<HRESULT>(ECapeLimitedImplHR), L"no viscosity model");
    EXPECT_EQ(list(L"viscosity"), "no viscosity model");
}

// --- Mass basis
// -----------------------------------------------------------------------------------------------

TEST_F(Equilibrium, MassBasisAppliesToInputsAndOutputs) {
    // 1 : 1 : 2 by mass; the phases are reported in moles: molecular weights 20 and 31.25 g/mol.
    package->calculates(L"enthalpy", L"Mole", {100.0});
    EXPECT_EQ(flash({.basis = text(L"mass"),
                     .options = text(L"noTemperature,noPressure,enthalpy"),
                     .orientation = number(3)}),
              "0.1758241758 | 0.25 | 0.25 | 0.5 | 5000 / 0.8241758242 | 0.04 | 0.16 | 0.8 | 3200");
}

// --- What the package is told
// -----------------------------------------------------------------------------------

TEST_F(Equilibrium, ThePackageReceivesTheConditionsAsTyped) {
    flash({.condition1 = text(L"Pressure"), .condition2 = text(L"ENTHALPY")});
    EXPECT_EQ(package->calls("CalcEquilibrium"),
              std::vector<std::string>{
                  "CalcEquilibrium([Pressure, null, overall], [ENTHALPY, null, overall], Unspecified)"});
}
TEST_F(Equilibrium, ASolutionTypeGoesWithAVaporFraction) {
    flash({.condition2 = text(L"vaporFraction"), .value2 = number(0.5), .options = text(L"Retrograde")});
    EXPECT_EQ(package->calls("CalcEquilibrium"),
              std::vector<std::string>{
                  "CalcEquilibrium([temperature, null, overall], [phaseFraction, Mole, Vapor], retrograde)"});
}
TEST_F(Equilibrium, ASolutionTypeWithoutAVaporFractionIsNotSent) {
    list(L"normal");
    EXPECT_EQ(package->calls("CalcEquilibrium").front(),
              "CalcEquilibrium([temperature, null, overall], [pressure, null, overall], Unspecified)");
}
TEST_F(Equilibrium, AVaporFractionNeedsAVaporPhase) {
    package->phases({{L"Oil", L"Liquid"}, {L"Water", L"Liquid"}});
    EXPECT_EQ(flash({.condition2 = text(L"VaporFraction")}),
              "Cannot use vapor fraction as flash condition; no vapor phase defined");
}
TEST_F(Equilibrium, AFlashThatFailsShowsThePackagesWords) {
    package->fails("CalcEquilibrium", static_cast<HRESULT>(ECapeSolvingErrorHR), L"Flash did not converge");
    EXPECT_EQ(flash({}), "Flash did not converge");
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Flash did not converge");
    package->recovers("CalcEquilibrium");
    EXPECT_EQ(list(L"noComposition"), "list: 300.5 | 100000.5 | 0.25 | 0.75");
}

// --- Messages
// -------------------------------------------------------------------------------------------------

TEST_F(Equilibrium, MissingConditionNamesAreReported) {
    EXPECT_EQ(flash({.condition1 = text(L"")}), "Empty string is not valid for condition 1 name");
    EXPECT_EQ(flash({.condition2 = omitted()}), "Empty string is not valid for condition 2 name");
}
TEST_F(Equilibrium, MissingConditionValuesAreReported) {
    EXPECT_EQ(flash({.value1 = omitted()}), "Condition 1 not specified");
    EXPECT_EQ(flash({.value2 = emptyCell()}), "Condition 2 not specified");
    EXPECT_EQ(flash({.value1 = number(std::numeric_limits<double>::quiet_NaN())}),
              "Condition 1 not specified");
}
TEST_F(Equilibrium, UnknownAndUnsupportedConditionsAreQuoted) {
    EXPECT_EQ(flash({.condition2 = text(L"Druck")}), "Invalid/unknown property \"Druck\"");
    EXPECT_EQ(flash({.condition2 = text(L"viscosity")}), "Unsupported flash condition \"viscosity\"");
}
TEST_F(Equilibrium, ACompositionOfTheWrongLengthIsReported) {
    EXPECT_EQ(flash({.composition = cells({1, 1})}), "Unexpected number of values for overall composition");
    EXPECT_EQ(flash({.composition = number(1)}), "Unexpected number of values for overall composition");
    EXPECT_EQ(flash({.composition = emptyCell()}), "Unexpected number of values for overall composition");
    EXPECT_EQ(flash({.composition = omitted()}), "value not specified");
    EXPECT_EQ(flash({.composition = text(L"air")}), "not a real array");
}
TEST_F(Equilibrium, ATextInTheCompositionIsQuoted) {
    EXPECT_EQ(flash({.composition = range(sheet::excel::Range::row(number(1), text(L"abc"), number(1)))}),
              "Failed to convert \"abc\" to real value");
}
TEST_F(Equilibrium, ANumericTextAndAnEmptyCellCountInTheComposition) {
    EXPECT_EQ(
        flash({.composition = range(sheet::excel::Range::column(number(1), text(L"3"), com::variant{})),
               .options = text(L"overallResults,noPhaseResults,noTemperature,noPressure,noPhaseFraction"),
               .orientation = number(3)}),
        "0.25 | 0.75 | 0");
}
TEST_F(Equilibrium, OptionsMustBeAText) {
    EXPECT_EQ(flash({.options = number(1)}), "Unexpected value for options; expected a string consisting of "
                                             "comma separated values of zero or more "
                                             "'overallResults', 'noPhaseResults', 'noTemperature', "
                                             "'noPressure', 'noPhaseFraction', 'noComposition', "
                                             "'normal', 'retrograde', or one or more property names");
}
TEST_F(Equilibrium, OptionsMayStandInACell) {
    EXPECT_EQ(flash({.options = cell(text(L"noComposition"))}), "list: 300.5 | 100000.5 | 0.25 | 0.75");
}
TEST_F(Equilibrium, SwitchingAllResultsOffIsReported) {
    EXPECT_EQ(list(L"noPhaseResults"), "Either overall phase or phases must be included; no output");
}
TEST_F(Equilibrium, TwoSolutionTypesAreReported) {
    EXPECT_EQ(list(L"normal,Retrograde"), "Multiple solution type specifications");
    EXPECT_EQ(list(L"normal,normal"), "Multiple solution type specifications");
}
TEST_F(Equilibrium, ABlankAfterACommaBelongsToTheWord) {
    EXPECT_EQ(list(L"overallResults, noPressure"), "Invalid/unknown property \" noPressure\"");
}
TEST_F(Equilibrium, PropertiesThatAreNoOutputAreQuoted) {
    EXPECT_EQ(list(L"Enthalpy.Dtemperature"),
              "Property \"Enthalpy.Dtemperature\" is not supported as phase equilibrium calculation output");
    EXPECT_EQ(list(L"kvalues"),
              "Property \"kvalues\" is not supported as phase equilibrium calculation output");
}

// --- Two mistakes at once: the earlier check speaks
// -------------------------------------------------------------

TEST_F(Equilibrium, ChecksComeInTheirOrder) {
    const auto steps = [&](int from) {
        // Every argument from step `from` on is wrong.
        Flash wrong;
        if (from <= 1)
            wrong.condition1 = text(L"");
        if (from <= 2)
            wrong.condition2 = text(L"");
        if (from <= 3)
            wrong.basis = text(L"kg");
        if (from <= 4)
            wrong.value1 = omitted();
        if (from <= 5)
            wrong.value2 = omitted();
        if (from <= 6)
            wrong.noNumber = cells({1, 2});
        if (from <= 7)
            wrong.package = text(L"Q");
        if (from <= 8)
            wrong.normalize = text(L"perhaps");
        if (from <= 9)
            wrong.composition = text(L"air");
        if (from <= 10)
            wrong.options = number(1);
        if (from <= 11)
            wrong.orientation = number(9);
        return flash(std::move(wrong));
    };
    EXPECT_EQ(steps(1), "Empty string is not valid for condition 1 name");
    EXPECT_EQ(steps(2), "Empty string is not valid for condition 2 name");
    EXPECT_EQ(steps(3), "Invalid basis \"kg\"");
    EXPECT_EQ(steps(4), "Condition 1 not specified");
    EXPECT_EQ(steps(5), "Condition 2 not specified");
    EXPECT_EQ(steps(6), "Invalid value for noNumber - expected a single value");
    EXPECT_EQ(steps(7), "Invalid package name");
    EXPECT_EQ(steps(8), "Invalid value for normalizeComposition - expected bool value");
    EXPECT_EQ(steps(9), "not a real array");
    EXPECT_EQ(steps(10).substr(0, 29), "Unexpected value for options;");
    EXPECT_EQ(steps(11), "Invalid value for orientation - expected \"Auto\" (default,0), \"Horizontal\" (1), "
                         "\"Vertical\" (2) or \"Matrix\" (3)");
}
TEST_F(Equilibrium, AFailingFlashIsReportedBeforeAWrongOrientation) {
    package->fails("CalcEquilibrium", static_cast<HRESULT>(ECapeSolvingErrorHR), L"Flash did not converge");
    EXPECT_EQ(flash({.orientation = number(9)}), "Flash did not converge");
}
TEST_F(Equilibrium, AWrongOptionIsReportedBeforeAnUnknownCondition) {
    EXPECT_EQ(flash({.condition2 = text(L"Druck"), .options = text(L"kvalues")}),
              "Property \"kvalues\" is not supported as phase equilibrium calculation output");
}

} // namespace
