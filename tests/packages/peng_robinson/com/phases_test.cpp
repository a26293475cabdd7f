#include "tests/packages/peng_robinson/com/support.h"

namespace peng_robinson::test {
namespace {

struct Phases : Package {
    com::variant info(const wchar_t* label, const wchar_t* attribute, HRESULT expected = S_OK) {
        const com::unique_bstr labelText = com::makeBstr(label), attributeText = com::makeBstr(attribute);
        com::variant value;
        EXPECT_EQ(phases->GetPhaseInfo(labelText.get(), attributeText.get(), &value), expected);
        return value;
    }
};

TEST_F(Phases, VaporAndLiquid) {
    com::variant labels, states, keys;
    ASSERT_EQ(phases->GetPhaseList(&labels, &states, &keys), S_OK);
    EXPECT_EQ(textsOf(labels), (Texts{L"Vapor", L"Liquid"}));
    EXPECT_EQ(textsOf(states), (Texts{L"Vapor", L"Liquid"}));
    EXPECT_EQ(textsOf(keys), (Texts{L"", L""}));
    LONG count = 0;
    ASSERT_EQ(phases->GetNumPhases(&count), S_OK);
    EXPECT_EQ(count, 2);
}

TEST_F(Phases, AttributesInAnyCase) {
    EXPECT_EQ(com::viewOf(info(L"liquid", L"stateofaggregation").bstrVal), L"Liquid");
    EXPECT_EQ(info(L"Vapor", L"KeyCompoundId").vt, VT_EMPTY);
    EXPECT_EQ(info(L"Vapor", L"UserDescription").vt, VT_BSTR);
}

TEST_F(Phases, UnknownLabelAndAttributeAreRefused) {
    info(L"Solid", L"StateOfAggregation", static_cast<HRESULT>(ECapeInvalidArgumentHR));
    expectFailure(static_cast<HRESULT>(ECapeInvalidArgumentHR), ECapeInvalidArgumentHR,
                  L"\"Solid\" is not a phase of this package; its phases are Vapor and Liquid",
                  L"ICapeThermoPhases", L"GetPhaseInfo");
    info(L"Vapor", L"Colour", static_cast<HRESULT>(ECapeInvalidArgumentHR));
    expectFailure(static_cast<HRESULT>(ECapeInvalidArgumentHR), ECapeInvalidArgumentHR,
                  L"\"Colour\" is not an attribute of phases", L"ICapeThermoPhases", L"GetPhaseInfo");
    short position = 0;
    ASSERT_EQ(object.tryAs<ECapeBadArgument>()->get_position(&position), S_OK);
    EXPECT_EQ(position, 2);
}

TEST_F(Phases, UniversalConstants) {
    com::variant names;
    ASSERT_EQ(constants->GetUniversalConstantList(&names), S_OK);
    EXPECT_EQ(textsOf(names).size(), 6u);
    const com::unique_bstr gas = com::makeBstr(L"MolarGasConstant"), unknown = com::makeBstr(L"pi");
    com::variant value;
    ASSERT_EQ(constants->GetUniversalConstant(gas.get(), &value), S_OK);
    EXPECT_EQ(value.vt, VT_R8);
    EXPECT_EQ(value.dblVal, 8.31446261815324);
    expectFailure(constants->GetUniversalConstant(unknown.get(), &value), ECapeInvalidArgumentHR,
                  L"\"pi\" is not a universal constant", L"ICapeThermoUniversalConstant",
                  L"GetUniversalConstant");
}

} // namespace
} // namespace peng_robinson::test
