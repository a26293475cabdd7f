// The options text of a phase equilibrium, as users type it.
#include "src/udf/equilibrium_options.h"
#include "tests/src/foundation/messages.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace quorvane::udf {
namespace {

// Options written as the switches that differ from the defaults, in a fixed order.
std::wstring changed(const EquilibriumOptions& options) {
    std::wstring text;
    const auto note = [&text](bool differs, const wchar_t* name) { text += differs ? name : L""; };
    note(options.overallResults, L"+overall");
    note(!options.phaseResults, L"-phases");
    note(!options.temperature, L"-T");
    note(!options.pressure, L"-P");
    note(!options.phaseFraction, L"-fraction");
    note(!options.composition, L"-composition");
    note(options.transpose, L"+transpose");
    return text;
}

std::vector<std::wstring> extraNames(const EquilibriumOptions& options) {
    std::vector<std::wstring> names;
    for (const ExtraProperty& extra : options.extraProperties) {
        names.push_back(extra.name);
    }
    return names;
}

std::optional<std::wstring> refusalOf(const wchar_t* text) {
    return composedMessageOf([=] { parseEquilibriumOptions(text); });
}

struct Word {
    const wchar_t* text;
    const wchar_t* effect;
};

TEST(EquilibriumOptions, OfAnEmptyTextAreTheDefaults) {
    const EquilibriumOptions options = parseEquilibriumOptions(L"");
    EXPECT_FALSE(options.overallResults);
    EXPECT_TRUE(options.phaseResults);
    EXPECT_TRUE(options.temperature);
    EXPECT_TRUE(options.pressure);
    EXPECT_TRUE(options.phaseFraction);
    EXPECT_TRUE(options.composition);
    EXPECT_FALSE(options.transpose);
    EXPECT_EQ(options.solutionType, L"");
    EXPECT_TRUE(options.extraProperties.empty());
}

TEST(EquilibriumOptions, EachWordChangesItsOwnSwitchAndNoOther) {
    constexpr Word words[] = {
        {L"overallResults", L"+overall"},
        {L"noPhaseResults", L"-phases"},
        {L"noTemperature", L"-T"},
        {L"noPressure", L"-P"},
        {L"noPhaseFraction", L"-fraction"},
        {L"noComposition", L"-composition"},
        {L"transpose", L"+transpose"},
        {L"normal", L""},
        {L"retrograde", L""},
        {L"enthalpy", L""},
    };
    for (const Word& word : words) {
        EXPECT_EQ(changed(parseEquilibriumOptions(word.text)), word.effect);
    }
}

TEST(EquilibriumOptions, WordsAreUnderstoodInAnyLetterCase) {
    constexpr Word words[] = {
        {L"OVERALLRESULTS", L"+overall"},
        {L"overallresults", L"+overall"},
        {L"nophaseresults", L"-phases"},
        {L"NOTEMPERATURE", L"-T"},
        {L"NoPressure", L"-P"},
        {L"nOpHASEfRACTION", L"-fraction"},
        {L"NOCOMPOSITION", L"-composition"},
        {L"TransPose", L"+transpose"},
    };
    for (const Word& word : words) {
        EXPECT_EQ(changed(parseEquilibriumOptions(word.text)), word.effect);
    }
    EXPECT_EQ(parseEquilibriumOptions(L"RETROgrade").solutionType, L"retrograde");
    EXPECT_EQ(parseEquilibriumOptions(L"Normal").solutionType, L"normal");
}

TEST(EquilibriumOptions, WordsAreSeparatedByCommas) {
    const EquilibriumOptions options =
        parseEquilibriumOptions(L"overallResults,noPhaseResults,noTemperature,noPressure,noPhaseFraction,"
                                L"noComposition,transpose,retrograde,volume");
    EXPECT_EQ(changed(options), L"+overall-phases-T-P-fraction-composition+transpose");
    EXPECT_EQ(options.solutionType, L"retrograde");
    EXPECT_EQ(extraNames(options), std::vector<std::wstring>{L"volume"});
}

TEST(EquilibriumOptions, AWordMayBeRepeated) {
    EXPECT_EQ(changed(parseEquilibriumOptions(L"noPressure,NOPRESSURE,transpose,transpose")),
              L"-P+transpose");
}

TEST(EquilibriumOptions, TakeOneSolutionTypeOnly) {
    for (const wchar_t* text : {L"normal,Retrograde", L"retrograde,normal", L"normal,normal",
                                L"retrograde,noPressure,RETROGRADE"}) {
        EXPECT_EQ(fixedMessageOf([=] { parseEquilibriumOptions(text); }),
                  L"Multiple solution type specifications");
    }
}

TEST(EquilibriumOptions, ExtraPropertiesKeepTheirOrderTheirSpellingAndTheirRepetitions) {
    const EquilibriumOptions options =
        parseEquilibriumOptions(L"volume,ENTHALPY,noPressure,fugacity,volume,gibbsFreeEnergy");
    EXPECT_EQ(extraNames(options), (std::vector<std::wstring>{L"volume", L"ENTHALPY", L"fugacity", L"volume",
                                                              L"gibbsFreeEnergy"}));
    EXPECT_EQ(options.extraProperties[1].info, &lookupProperty(L"enthalpy"));
    EXPECT_EQ(options.extraProperties[2].info, &lookupProperty(L"fugacity"));
    EXPECT_EQ(options.extraProperties[4].info, &lookupProperty(L"gibbsFreeEnergy"));
}

TEST(EquilibriumOptions, BlanksBelongToTheWord) {
    EXPECT_EQ(refusalOf(L"overallResults, noPressure"), L"Invalid/unknown property \" noPressure\"");
    EXPECT_EQ(refusalOf(L"noPressure "), L"Invalid/unknown property \"noPressure \"");
    EXPECT_EQ(refusalOf(L" "), L"Invalid/unknown property \" \"");
}

TEST(EquilibriumOptions, NothingBetweenCommasIsAnUnknownProperty) {
    for (const wchar_t* text : {L",", L"normal,", L",normal", L"normal,,enthalpy"}) {
        EXPECT_EQ(refusalOf(text), L"Invalid/unknown property \"\"");
    }
}

TEST(EquilibriumOptions, AnUnknownNameIsReportedAsTyped) {
    EXPECT_EQ(refusalOf(L"noPressure,NoPresure"), L"Invalid/unknown property \"NoPresure\"");
    EXPECT_EQ(refusalOf(L"noPressureX"), L"Invalid/unknown property \"noPressureX\"");
    EXPECT_EQ(refusalOf(L"unspecified"), L"Invalid/unknown property \"unspecified\"");
}

TEST(EquilibriumOptions, ADerivativeIsNoOutputOfAPhaseEquilibrium) {
    for (const wchar_t* name : {L"enthalpy.Dtemperature", L"fugacity.DMOLES"}) {
        EXPECT_EQ(refusalOf(name), L"Property \"" + std::wstring{name} +
                                       L"\" is not supported as phase equilibrium calculation output");
    }
}

TEST(EquilibriumOptions, OnlySinglePhasePropertiesAreOutputs) {
    for (const wchar_t* name : {L"kvalues", L"surfaceTension", L"vaporPressure", L"criticalPressure",
                                L"casRegistryNumber", L"temperature", L"Fraction", L"phaseFraction"}) {
        EXPECT_EQ(refusalOf(name), L"Property \"" + std::wstring{name} +
                                       L"\" is not supported as phase equilibrium calculation output");
    }
}

TEST(EquilibriumOptions, TheFirstWrongWordIsReported) {
    EXPECT_EQ(refusalOf(L"normal,foo,normal"), L"Invalid/unknown property \"foo\"");
    EXPECT_EQ(fixedMessageOf([] { parseEquilibriumOptions(L"normal,normal,foo"); }),
              L"Multiple solution type specifications");
}

} // namespace
} // namespace quorvane::udf
