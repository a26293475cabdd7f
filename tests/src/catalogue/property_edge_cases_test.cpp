// What a user meets who asks the catalogue for unusual names, and the relations between its entries.
#include "src/catalogue/property_catalogue.h"
#include "tests/src/foundation/messages.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace quorvane {
namespace {

std::optional<std::wstring> failureOf(const wchar_t* name) {
    return composedMessageOf([=] { lookupProperty(name); });
}

void expectEqualButForTheName(const wchar_t* one, const wchar_t* other) {
    const PropertyInfo& a = lookupProperty(one);
    const PropertyInfo& b = lookupProperty(other);
    const auto text = [](const wchar_t* unit) { return std::wstring{unit == nullptr ? L"(none)" : unit}; };
    EXPECT_EQ(std::wstring{a.propName}, one);
    EXPECT_EQ(std::wstring{b.propName}, other);
    EXPECT_EQ(text(a.unitMole), text(b.unitMole));
    EXPECT_EQ(text(a.unitMass), text(b.unitMass));
    EXPECT_EQ(a.derivType, b.derivType);
    EXPECT_EQ(a.propType, b.propType);
    EXPECT_EQ(a.moleConversion, b.moleConversion);
    EXPECT_EQ(a.rank, b.rank);
    EXPECT_EQ(a.extensive, b.extensive);
    EXPECT_EQ(a.overall, b.overall);
}

TEST(PropertyLookup, IgnoresTheLetterCaseAndKeepsTheRegisteredSpelling) {
    const PropertyInfo& shouted = lookupProperty(L"ENTHALPY");
    EXPECT_EQ(&shouted, &lookupProperty(L"enthalpy"));
    EXPECT_EQ(std::wstring{shouted.propName}, L"enthalpy");
    EXPECT_EQ(std::wstring{lookupProperty(L"smilesformula").propName}, L"SMILESformula");
    EXPECT_EQ(std::wstring{lookupProperty(L"LOGKVALUE").propName}, L"logKvalue");
}

TEST(PropertyLookup, FindsDerivativesInAnyLetterCase) {
    EXPECT_EQ(std::wstring{lookupProperty(L"Enthalpy.DTEMPERATURE").propName}, L"enthalpy.Dtemperature");
    EXPECT_EQ(std::wstring{lookupProperty(L"fugacity.dMOLFRACTION").propName}, L"fugacity.DmolFraction");
}

TEST(PropertyLookup, FoldsNoLettersOutsideAscii) {
    // U+212A, the Kelvin sign, is a capital k to Unicode but not to the catalogue.
    EXPECT_EQ(failureOf(L"\u212Avalue"), L"Invalid/unknown property \"\u212Avalue\"");
}

TEST(PropertyLookup, AMissingNameIsSaidToBeMissing) {
    EXPECT_EQ(fixedMessageOf([] { lookupProperty(nullptr); }), L"Property name not specified");
}

TEST(PropertyLookup, AnUnknownNameIsQuotedExactlyAsTyped) {
    EXPECT_EQ(failureOf(L"EnThalpi"), L"Invalid/unknown property \"EnThalpi\"");
    EXPECT_EQ(failureOf(L""), L"Invalid/unknown property \"\"");
    EXPECT_EQ(failureOf(L" enthalpy"), L"Invalid/unknown property \" enthalpy\"");
    EXPECT_EQ(failureOf(L"enthalpy "), L"Invalid/unknown property \"enthalpy \"");
    EXPECT_EQ(failureOf(L"\"x\""), L"Invalid/unknown property \"\"x\"\"");
}

TEST(PropertyLookup, ThePartsOfANameAreNoNames) {
    for (const wchar_t* name : {L"enthal", L"enthalpyy", L".Dtemperature", L"Dtemperature", L"enthalpy."}) {
        EXPECT_EQ(failureOf(name), L"Invalid/unknown property \"" + std::wstring{name} + L"\"");
    }
}

TEST(PropertyLookup, TheTriplePointTemperatureHasATrailingBlank) {
    EXPECT_EQ(failureOf(L"triplePointTemperature"), L"Invalid/unknown property \"triplePointTemperature\"");
    EXPECT_EQ(std::wstring{lookupProperty(L"triplePointTemperature ").propName}, L"triplePointTemperature ");
}

TEST(PropertyLookup, AnAliasDiffersInNothingButItsName) {
    constexpr std::pair<const wchar_t*, const wchar_t*> aliases[] = {
        {L"standardFormationGibbsEnergyGas", L"standardFreeFormationEnthalpyGas"},
        {L"standardFormationGibbsEnergyLiquid", L"standardFreeFormationEnthalpyLiquid"},
        {L"standardFormationGibbsEnergySolid", L"standardFreeFormationEnthalpySolid"},
        {L"excessGibbsEnergy", L"excessGibbsFreeEnergy"},
        {L"excessHelmholtzEnergy", L"excessHelmholtzFreeEnergy"},
        {L"excessInternalEnergy", L"excessEnergy"},
        {L"gibbsEnergy", L"gibbsFreeEnergy"},
        {L"gibbsEnergy.Dmoles", L"gibbsFreeEnergy.Dmoles"},
        {L"heatCapacityCp", L"heatCapacity"},
        {L"helmholtzEnergy", L"helmholtzFreeEnergy"},
        {L"internalEnergy", L"energy"},
        {L"kvalues", L"kvalue"},
        {L"logkvalues", L"logKvalue"},
        {L"logkvalues.Dpressure", L"logKvalue.Dpressure"},
    };
    for (const auto& [name, alias] : aliases) {
        expectEqualButForTheName(name, alias);
    }
}

TEST(PropertyLookup, TextConstantsAndDimensionlessPropertiesHaveNoUnit) {
    for (const wchar_t* name : {L"casRegistryNumber", L"name", L"acentricFactor", L"compressibilityFactor",
                                L"kvalues", L"dielectricConstant"}) {
        EXPECT_EQ(lookupProperty(name).unitMole, nullptr);
        EXPECT_EQ(lookupProperty(name).unitMass, nullptr);
    }
}

TEST(Derivatives, OfConstantsAndConditionsAreUnknown) {
    for (const wchar_t* name :
         {L"acentricFactor.Dtemperature", L"criticalDensity.Dpressure", L"temperature.Dpressure",
          L"fraction.DmolFraction", L"casRegistryNumber.Dtemperature"}) {
        EXPECT_EQ(failureOf(name), L"Invalid/unknown property \"" + std::wstring{name} + L"\"");
    }
}

TEST(Derivatives, OfTemperatureDependentPropertiesAreByTemperatureOnly) {
    EXPECT_EQ(std::wstring{lookupProperty(L"vaporPressure.Dtemperature").unitMole}, L"Pa/K");
    for (const wchar_t* name :
         {L"vaporPressure.Dpressure", L"vaporPressure.DmolFraction", L"vaporPressure.Dmoles"}) {
        EXPECT_EQ(failureOf(name), L"Invalid/unknown property \"" + std::wstring{name} + L"\"");
    }
}

TEST(Derivatives, ByOtherQuantitiesOrOfDerivativesAreUnknown) {
    for (const wchar_t* name : {L"enthalpy.Dvolume", L"enthalpy.Dtemperature.Dtemperature",
                                L"enthalpy.Dpressure.Dtemperature", L"enthalpy Dtemperature"}) {
        EXPECT_EQ(failureOf(name), L"Invalid/unknown property \"" + std::wstring{name} + L"\"");
    }
}

TEST(Catalogue, IsBuiltOnce) { EXPECT_EQ(&catalogue(), &catalogue()); }

TEST(Catalogue, AnswersAnUnknownNameWithNothing) { EXPECT_EQ(catalogue().find(L"enthalpi"), nullptr); }

TEST(Catalogue, PublishesTheNumbersOfItsKinds) {
    EXPECT_EQ(PropType_Temperature, 0);
    EXPECT_EQ(PropType_Pressure, 1);
    EXPECT_EQ(PropType_Fraction, 2);
    EXPECT_EQ(PropType_PhaseFraction, 3);
    EXPECT_EQ(PropType_VaporFraction, 4);
    EXPECT_EQ(PropType_StringConstant, 5);
    EXPECT_EQ(PropType_RealConstant, 6);
    EXPECT_EQ(PropType_TemperatureDependent, 7);
    EXPECT_EQ(PropType_SinglePhase, 8);
    EXPECT_EQ(PropType_TwoPhase, 9);
    EXPECT_EQ(Derivative_None, 0);
    EXPECT_EQ(Derivative_Temperature, 1);
    EXPECT_EQ(Derivative_Pressure, 2);
    EXPECT_EQ(Derivative_MolFraction, 3);
    EXPECT_EQ(Derivative_MoleNumber, 4);
}

} // namespace
} // namespace quorvane
