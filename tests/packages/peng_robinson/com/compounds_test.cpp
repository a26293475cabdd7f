#include "com/safe_array.h"
#include "packages/peng_robinson/eos/compound.h"
#include "tests/packages/peng_robinson/com/support.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::test {
namespace {

struct Compounds : Package {
    const com::variant all; // VT_EMPTY: every compound of the package

    std::vector<com::variant> constant(const Texts& names, const VARIANT& ids, HRESULT expected = S_OK) {
        com::variant values;
        EXPECT_EQ(compounds->GetCompoundConstant(texts(names), ids, &values), expected);
        std::vector<com::variant> result;
        if (values.vt == (VT_ARRAY | VT_VARIANT)) {
            const com::array_lock<VARIANT> lock{values.parray};
            for (const VARIANT& element : lock.elements()) {
                result.push_back(com::variant::copyOf(element));
            }
        }
        return result;
    }
    Reals atTemperature(const Texts& names, double T, const Texts& ids, HRESULT expected = S_OK) {
        com::variant values;
        EXPECT_EQ(compounds->GetTDependentProperty(texts(names), T, texts(ids), &values), expected);
        return realsOf(values);
    }
};

TEST_F(Compounds, SixListsOfEqualLength) {
    com::variant ids, formulae, names, boiling, weights, cas;
    ASSERT_EQ(compounds->GetCompoundList(&ids, &formulae, &names, &boiling, &weights, &cas), S_OK);
    LONG count = 0;
    ASSERT_EQ(compounds->GetNumCompounds(&count), S_OK);
    const auto expected = static_cast<std::size_t>(count);
    EXPECT_EQ(expected, eos::compounds().size());
    for (const VARIANT* list : {&ids, &formulae, &names, &cas}) {
        EXPECT_EQ(textsOf(*list).size(), expected);
    }
    EXPECT_EQ(realsOf(boiling).size(), expected);
    EXPECT_EQ(realsOf(weights).size(), expected);
    EXPECT_EQ(textsOf(ids)[6], L"isobutane");
    EXPECT_EQ(textsOf(names)[6], L"isobutane");
    EXPECT_EQ(textsOf(names), textsOf(ids)) << "users select a compound by the name that they see";
    EXPECT_EQ(textsOf(cas)[6], L"75-28-5");
    EXPECT_EQ(realsOf(weights)[6], 58.1222);
}

TEST_F(Compounds, EveryListedConstantIsAvailable) {
    com::variant names;
    ASSERT_EQ(compounds->GetConstPropList(&names), S_OK);
    for (const std::wstring& name : textsOf(names)) {
        const auto values = constant({name}, texts({L"propane"}));
        ASSERT_EQ(values.size(), 1u);
        EXPECT_TRUE(values[0].vt == VT_R8 || values[0].vt == VT_BSTR)
            << std::string(name.begin(), name.end());
    }
}

TEST_F(Compounds, ConstantsComePropertyByProperty) {
    const auto values =
        constant({L"criticalTemperature", L"CASREGISTRYNUMBER"}, texts({L"Methane", L"propane"}));
    ASSERT_EQ(values.size(), 4u);
    EXPECT_EQ(values[0].dblVal, 190.564);
    EXPECT_EQ(values[1].dblVal, 369.89);
    EXPECT_EQ(com::viewOf(values[2].bstrVal), L"74-82-8");
    EXPECT_EQ(com::viewOf(values[3].bstrVal), L"74-98-6");
}

TEST_F(Compounds, SystematicNameIsAConstant) {
    const auto values = constant({L"iupacName"}, texts({L"isobutane"}));
    ASSERT_EQ(values.size(), 1u);
    EXPECT_EQ(com::viewOf(values[0].bstrVal), L"2-methylpropane");
}

// 270.5 (mN/m)^(1/4) cm3/mol, in kg^(1/4) m3 / (s^(1/2) mol).
TEST_F(Compounds, ParachorIsInSiUnits) {
    const auto values = constant({L"parachor"}, texts({L"n-hexane"}));
    ASSERT_EQ(values.size(), 1u);
    EXPECT_NEAR(values[0].dblVal, 4.8102e-5, 1e-9);
}

TEST_F(Compounds, NoIdentifiersMeansAllCompounds) {
    EXPECT_EQ(constant({L"acentricFactor"}, all).size(), eos::compounds().size());
}

TEST_F(Compounds, MissingConstantIsNoNumberAndWarns) {
    const auto values =
        constant({L"heatOfVaporizationAtNormalBoilingPoint"}, texts({L"carbon dioxide", L"propane"}),
                 static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR));
    ASSERT_EQ(values.size(), 2u);
    ASSERT_EQ(values[0].vt, VT_R8) << "a hole would show as 0";
    EXPECT_TRUE(std::isnan(values[0].dblVal));
    ASSERT_EQ(values[1].vt, VT_R8);
    EXPECT_GT(values[1].dblVal, 15000.0);
    EXPECT_EQ(
        lastFailure(object.get()).description,
        L"No value for heatOfVaporizationAtNormalBoilingPoint of carbon dioxide; the other values are valid");
}

TEST_F(Compounds, UnknownConstantIsRefused) {
    com::variant values;
    expectFailure(compounds->GetCompoundConstant(texts({L"dipoleMoment"}), all, &values), ECapeLimitedImplHR,
                  L"\"dipoleMoment\" is not a constant of this package", L"ICapeThermoCompounds",
                  L"GetCompoundConstant");
    EXPECT_EQ(values.vt, VT_EMPTY);
}

TEST_F(Compounds, UnknownCompoundIsRefused) {
    com::variant values;
    expectFailure(
        compounds->GetCompoundConstant(texts({L"acentricFactor"}), texts({L"unobtainium"}), &values),
        ECapeInvalidArgumentHR, L"\"unobtainium\" is not a compound of this package", L"ICapeThermoCompounds",
        L"GetCompoundConstant");
    short position = 0;
    ASSERT_EQ(object.tryAs<ECapeBadArgument>()->get_position(&position), S_OK);
    EXPECT_EQ(position, 2);
}

TEST_F(Compounds, NumbersWhereNamesBelongAreRefused) {
    com::variant values;
    expectFailure(compounds->GetCompoundConstant(reals({1.0}), all, &values), ECapeInvalidArgumentHR,
                  L"The property names must be a list of texts", L"ICapeThermoCompounds",
                  L"GetCompoundConstant");
}

TEST_F(Compounds, ResultWithoutAPlaceIsRefused) {
    EXPECT_EQ(compounds->GetCompoundConstant(texts({L"acentricFactor"}), all, nullptr), E_POINTER);
    EXPECT_EQ(compounds->GetNumCompounds(nullptr), E_POINTER);
    EXPECT_EQ(compounds->GetCompoundList(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), E_POINTER);
}

TEST_F(Compounds, EveryListedTemperaturePropertyIsAvailable) {
    com::variant names;
    ASSERT_EQ(compounds->GetTDependentPropList(&names), S_OK);
    const Texts list = textsOf(names);
    const Reals values = atTemperature(list, 300.0, {L"propane", L"n-butane"});
    EXPECT_EQ(values.size(), 2 * list.size());
    EXPECT_TRUE(std::ranges::all_of(values, [](double value) { return std::isfinite(value); }));
}

TEST_F(Compounds, VaporPressureOfPropane) {
    // Lemmon, McLinden, Wagner (2009): 0.9978 MPa at 300 K.
    EXPECT_NEAR(atTemperature({L"vaporPressure"}, 300.0, {L"propane"})[0], 997800.0, 5000.0);
}

TEST_F(Compounds, VaporPressureAboveTheCriticalTemperatureIsMissing) {
    const Reals values = atTemperature({L"vaporPressure"}, 300.0, {L"methane", L"propane"},
                                       static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR));
    ASSERT_EQ(values.size(), 2u);
    EXPECT_TRUE(std::isnan(values[0]));
    EXPECT_GT(values[1], 0.0);
}

TEST_F(Compounds, VaporPressureTooSmallToCalculateIsMissing) {
    for (const wchar_t* property : {L"vaporPressure", L"heatOfVaporization", L"volumeOfLiquid"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring{property}));
        const Reals values = atTemperature({property}, 10.0, {L"hydrogen", L"n-decane", L"nitrogen"},
                                           static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR));
        ASSERT_EQ(values.size(), 3u);
        EXPECT_GT(values[0], 0.0);
        EXPECT_TRUE(std::isnan(values[1]));
        EXPECT_GT(values[2], 0.0);
        EXPECT_EQ(lastFailure(object.get()).description,
                  L"No value for " + std::wstring{property} + L" of n-decane; the other values are valid");
    }
}

TEST_F(Compounds, TemperatureOutOfRangeTellsTheRange) {
    com::variant values;
    expectFailure(compounds->GetTDependentProperty(texts({L"vaporPressure"}), -1.0, all, &values),
                  ECapeOutOfBoundsHR, L"Temperature-dependent properties are available from 10 K to 3000 K",
                  L"ICapeThermoCompounds", L"GetTDependentProperty");
    const auto boundaries = object.tryAs<ECapeBoundaries>();
    double value = 0.0, lower = 0.0, upper = 0.0;
    ASSERT_EQ(boundaries->get_value(&value), S_OK);
    ASSERT_EQ(boundaries->get_LowerBound(&lower), S_OK);
    ASSERT_EQ(boundaries->get_UpperBound(&upper), S_OK);
    EXPECT_EQ(value, -1.0);
    EXPECT_EQ(lower, 10.0);
    EXPECT_EQ(upper, 3000.0);
}

TEST_F(Compounds, BoilingPointAtAPressure) {
    com::variant names, values;
    ASSERT_EQ(compounds->GetPDependentPropList(&names), S_OK);
    EXPECT_EQ(textsOf(names), Texts{L"boilingPointTemperature"});
    ASSERT_EQ(compounds->GetPDependentProperty(names, 101325.0, texts({L"n-butane"}), &values), S_OK);
    EXPECT_NEAR(realsOf(values)[0], 272.66, 0.3);
    expectFailure(compounds->GetPDependentProperty(names, 0.0, texts({L"n-butane"}), &values),
                  ECapeOutOfBoundsHR, L"The pressure must be a positive number of pascal",
                  L"ICapeThermoCompounds", L"GetPDependentProperty");
}

} // namespace
} // namespace peng_robinson::test
