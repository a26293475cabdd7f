// The two rules by which units are made of units.
#include "src/catalogue/property_catalogue.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

struct MassUnit {
    const wchar_t* mole;
    const wchar_t* mass;
};

TEST(MassUnit, HasKilogramsInThePlaceOfMoles) {
    constexpr MassUnit cases[] = {
        {L"J/mol", L"J/kg"},
        {L"mol/m3", L"kg/m3"},
        {L"mol/mol", L"kg/kg"},
        {L"J/mol/K", L"J/kg/K"},
        {L"m3*kg0.25/s0.5/mol", L"m3*kg0.25/s0.5/kg"},
        {L"mol", L"kg"},
        {L"molmol", L"kgkg"},
        {L"momol", L"mokg"},
        {L"mmolol", L"mkgol"},
        {L"kmol", L"kkg"},
        {L"mol2/mol3", L"kg2/kg3"},
    };
    for (const MassUnit& unit : cases) {
        EXPECT_EQ(massUnitOf(unit.mole), unit.mass);
    }
}

TEST(MassUnit, OfAUnitWithoutMolesIsThatUnit) {
    for (const wchar_t* unit : {L"K", L"Pa", L"W/m/K", L"", L"m", L"mo", L"MOL", L"m*o*l"}) {
        EXPECT_EQ(massUnitOf(unit), unit);
    }
}

struct DerivativeUnit {
    const wchar_t* unit;
    const wchar_t* suffix;
    const wchar_t* expected;
};

TEST(DerivativeUnit, OfADimensionlessPropertyIsTheDivisorAlone) {
    EXPECT_EQ(derivativeUnit(nullptr, L"/K"), L"/K");
    EXPECT_EQ(derivativeUnit(nullptr, L"/Pa"), L"/Pa");
    EXPECT_EQ(derivativeUnit(nullptr, L"/mol"), L"/mol");
}

TEST(DerivativeUnit, HasTheDivisorAtItsEnd) {
    constexpr DerivativeUnit cases[] = {
        {L"J/mol", L"/K", L"J/mol/K"},
        {L"Pa", L"/K", L"Pa/K"},
        {L"Pa", L"/Pa", L"Pa/Pa"},
        {L"m2/s", L"/mol", L"m2/s/mol"},
        {L"mol/m3", L"/Pa", L"mol/m3/Pa"},
        {L"K/Pa", L"/K", L"K/Pa/K"},
        {L"", L"/K", L"/K"},
    };
    for (const DerivativeUnit& row : cases) {
        EXPECT_EQ(derivativeUnit(row.unit, row.suffix), row.expected);
    }
}

TEST(DerivativeUnit, SquaresADivisorThatIsThereAlready) {
    constexpr DerivativeUnit cases[] = {
        {L"J/mol/K", L"/K", L"J/mol/K2"}, {L"/Pa", L"/Pa", L"/Pa2"},
        {L"J/mol", L"/mol", L"J/mol2"},   {L"W/m/K", L"/K", L"W/m/K2"},
        {L"K/Pa", L"/Pa", L"K/Pa2"},      {L"J/K/mol", L"/K", L"J/K2/mol"},
        {L"J/K/K", L"/K", L"J/K2/K"},     {L"mol/mol", L"/mol", L"mol/mol2"},
    };
    for (const DerivativeUnit& row : cases) {
        EXPECT_EQ(derivativeUnit(row.unit, row.suffix), row.expected);
    }
}

} // namespace
} // namespace quorvane
