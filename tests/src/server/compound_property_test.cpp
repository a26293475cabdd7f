// Compound constants and temperature-dependent properties in cells.
#include "tests/src/server/worksheet.h"

#include "com/safe_array.h"

using namespace tests;

namespace {

com::variant values(std::vector<com::variant> given) {
    com::unique_safearray array = com::makeVector(VT_VARIANT, given.size());
    {
        const com::array_lock<VARIANT> lock{array.get()};
        for (std::size_t i = 0; i < given.size(); ++i) {
            lock.elements()[i] = given[i].release();
        }
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

com::variant numbers(std::initializer_list<double> given) {
    std::vector<com::variant> all;
    for (const double value : given) {
        all.push_back(number(value));
    }
    return values(std::move(all));
}

const double notANumber = std::numeric_limits<double>::quiet_NaN();

// Compounds weigh 10, 20 and 40 g/mol.
class CompoundConstant : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
        package->answers("GetCompoundConstant", numbers({1000.0, 2000.0, 4000.0}));
    }

    std::string constant(const wchar_t* name, com::variant basis = omitted(),
                         com::variant orientation = omitted(), com::variant compound = omitted()) {
        return show(L"CapeOpenCompoundConstant", text(L"P"), text(name), std::move(basis),
                    std::move(orientation), std::move(compound));
    }
};

TEST_F(CompoundConstant, AllCompoundsStandInARow) {
    EXPECT_EQ(constant(L"criticalTemperature"), "list: 1000 | 2000 | 4000");
}
TEST_F(CompoundConstant, AllCompoundsStandInAColumnOnRequest) {
    EXPECT_EQ(constant(L"criticalTemperature", omitted(), number(2)), "1000 / 2000 / 4000");
}
TEST_F(CompoundConstant, ThePackageIsAskedForOneProperty) {
    constant(L"criticalTemperature");
    constant(L"criticalTemperature", omitted(), omitted(), number(0));
    EXPECT_EQ(package->calls("GetCompoundConstant").front(),
              "GetCompoundConstant([criticalTemperature], empty)");
}
TEST_F(CompoundConstant, OneCompoundIsAskedForByItsIdentifier) {
    package->answers("GetCompoundConstant", numbers({7.0}));
    EXPECT_EQ(constant(L"criticalTemperature", omitted(), omitted(), text(L"Beta")), "list: 7");
    EXPECT_EQ(package->calls("GetCompoundConstant").front(),
              "GetCompoundConstant([criticalTemperature], [B2])");
}
TEST_F(CompoundConstant, TextsPassUnchanged) {
    std::vector<com::variant> formulae;
    formulae.push_back(text(L"N2"));
    formulae.push_back(text(L"CO2"));
    formulae.push_back(text(L""));
    package->answers("GetCompoundConstant", values(std::move(formulae)));
    EXPECT_EQ(constant(L"chemicalFormula"), "list: N2 | CO2 | \"\"");
    EXPECT_EQ(constant(L"chemicalFormula", text(L"mass")), "list: N2 | CO2 | \"\"");
}
TEST_F(CompoundConstant, AValueThatRefersToThePackagesMemoryIsCopied) {
    double own = 3000.0;
    DECIMAL unknown{};
    std::vector<com::variant> given(3);
    given[0].vt = VT_BYREF | VT_R8;
    given[0].pdblVal = &own;
    given[1].vt = VT_BYREF | VT_DECIMAL;
    given[1].pdecVal = &unknown;
    given[2] = number(4000.0);
    package->answers("GetCompoundConstant", values(std::move(given)));
    const com::variant result = call(L"CapeOpenCompoundConstant", [] {
        std::vector<com::variant> arguments;
        arguments.push_back(text(L"P"));
        arguments.push_back(text(L"criticalTemperature"));
        return arguments;
    }());
    own = 1.0;
    ASSERT_EQ(result.vt, VT_ARRAY | VT_VARIANT);
    const com::array_lock<VARIANT> lock{result.parray};
    ASSERT_EQ(lock.elements().size(), 3U);
    EXPECT_EQ(lock.elements()[0].vt, VT_R8);
    EXPECT_EQ(lock.elements()[0].dblVal, 3000.0);
    EXPECT_EQ(lock.elements()[1].vt, VT_EMPTY);
    EXPECT_EQ(lock.elements()[2].dblVal, 4000.0);
}
TEST_F(CompoundConstant, MassBasisDividesEachValueByItsCompoundsWeight) {
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass")), "list: 100000 | 100000 | 100000");
}
TEST_F(CompoundConstant, MassBasisMultipliesDensities) {
    EXPECT_EQ(constant(L"criticalDensity", text(L"mass")), "list: 10 | 40 | 160");
}
TEST_F(CompoundConstant, ASingleCompoundIsConvertedByTheFirstCompoundsWeight) {
    package->answers("GetCompoundConstant", numbers({2000.0}));
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass"), omitted(), number(2)), "list: 200000");
}
TEST_F(CompoundConstant, MassBasisLeavesAConstantWithoutBasisAlone) {
    EXPECT_EQ(constant(L"criticalTemperature", text(L"mass")), "list: 1000 | 2000 | 4000");
}
TEST_F(CompoundConstant, AMissingValueBecomesAnEmptyTextInConversion) {
    package->answers("GetCompoundConstant", numbers({1000.0, notANumber, 4000.0}));
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass")), "list: 100000 | \"\" | 100000");
}
TEST_F(CompoundConstant, AConstantThatThePackageLacksIsNoFailure) {
    package->hook("GetCompoundConstant", [](scripted::Call& call) {
        call.out[0].give(numbers({1.0, 2.0, 3.0}));
        return static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR);
    });
    EXPECT_EQ(constant(L"criticalTemperature"), "list: 1 | 2 | 3");
}
TEST_F(CompoundConstant, AFailureShowsThePackagesWordsAlone) {
    package->fails("GetCompoundConstant", static_cast<HRESULT>(ECapeLimitedImplHR), L"no such constant");
    EXPECT_EQ(constant(L"parachor"), "no such constant");
}
TEST_F(CompoundConstant, UnknownWeightsFailOnlyWhereTheyAreNeeded) {
    package->model.compounds[1].molecularWeight = notANumber;
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass")),
              "Unable to perform mole-to-mass conversion, one or more unknown molecular weights");
    package->answers("GetCompoundConstant", numbers({1000.0, 0.0, 4000.0}));
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass")), "list: 100000 | 0 | 100000");
}
TEST_F(CompoundConstant, WrongValuesAreReported) {
    package->answers("GetCompoundConstant", scripted::reals({1.0, 2.0, 3.0}));
    EXPECT_EQ(constant(L"criticalVolume"), "Unexpected property values: Expected an array of type VARIANT");
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass")),
              "Unable to perform mole-to-mass conversion, unexpected property "
              "values: Expected an array of type VARIANT");
    package->answers("GetCompoundConstant", numbers({1.0, 2.0}));
    EXPECT_EQ(constant(L"criticalVolume"), "Unexpected number of values");
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass")),
              "Unable to perform mole-to-mass conversion, unexpected number of values");
    std::vector<com::variant> mixed;
    mixed.push_back(number(1));
    mixed.push_back(text(L"2"));
    mixed.push_back(number(3));
    package->answers("GetCompoundConstant", values(std::move(mixed)));
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass")),
              "Unable to perform mole-to-mass conversion, unexpected value data type");
}
TEST_F(CompoundConstant, ChecksComeInTheirOrder) {
    EXPECT_EQ(show(L"CapeOpenCompoundConstant", text(L"Q"), text(L""), text(L"kg"), number(9), number(9)),
              "Empty string is not valid for constant name");
    EXPECT_EQ(show(L"CapeOpenCompoundConstant", text(L"Q"), text(L"x"), text(L"kg"), number(9), number(9)),
              "Invalid basis \"kg\"");
    EXPECT_EQ(show(L"CapeOpenCompoundConstant", text(L"Q"), text(L"x"), text(L"mass"), number(9), number(9)),
              "Invalid package name");
    EXPECT_EQ(constant(L"x", text(L"mass"), number(9), text(L"Delta")), "Invalid compound name");
    EXPECT_EQ(constant(L"x", text(L"mass"), number(9)), "Invalid/unknown property \"x\"");
    EXPECT_EQ(constant(L"criticalVolume", text(L"mass"), number(9)),
              "Invalid value for orientation - expected \"Auto\" (default,0), \"Horizontal\" (1) or "
              "\"Vertical\" (2)");
}

class TemperatureDependent : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
        package->answers("GetTDependentProperty", scripted::reals({1000.0, 2000.0, 4000.0}));
    }

    std::string property(const wchar_t* name, com::variant T = number(350.0), com::variant basis = omitted(),
                         com::variant orientation = omitted(), com::variant compound = omitted()) {
        return show(L"CapeOpenTemperatureDependentProperty", text(L"P"), text(name), std::move(T),
                    std::move(basis), std::move(orientation), std::move(compound));
    }
};

TEST_F(TemperatureDependent, AllCompoundsStandInARowWhateverTheOrientation) {
    EXPECT_EQ(property(L"vaporPressure"), "list: 1000 | 2000 | 4000");
    EXPECT_EQ(property(L"vaporPressure", number(350.0), omitted(), number(2)), "list: 1000 | 2000 | 4000");
    EXPECT_EQ(property(L"vaporPressure", number(350.0), omitted(), number(9)), "list: 1000 | 2000 | 4000");
}
TEST_F(TemperatureDependent, TheTemperatureGoesToThePackageAsItStands) {
    property(L"vaporPressure", number(-5.0));
    EXPECT_EQ(package->calls("GetTDependentProperty").front(),
              "GetTDependentProperty([vaporPressure], -5, empty)");
}
TEST_F(TemperatureDependent, MassBasisConverts) {
    EXPECT_EQ(property(L"idealGasEnthalpy", number(350.0), text(L"mass")), "list: 100000 | 100000 | 100000");
    EXPECT_EQ(property(L"vaporPressure", number(350.0), text(L"mass")), "list: 1000 | 2000 | 4000");
}
TEST_F(TemperatureDependent, AMissingValueShowsAnEmptyText) {
    package->answers("GetTDependentProperty", scripted::reals({1000.0, notANumber, 4000.0}));
    EXPECT_EQ(property(L"vaporPressure"), "list: 1000 | \"\" | 4000");
    EXPECT_EQ(property(L"idealGasEnthalpy", number(350.0), text(L"mass")), "list: 100000 | \"\" | 100000");
}
TEST_F(TemperatureDependent, WrongValuesAreReported) {
    package->answers("GetTDependentProperty", scripted::texts({L"1", L"2", L"3"}));
    EXPECT_EQ(property(L"vaporPressure"),
              "Unexpected property values: Expected an array of type double precision");
    package->answers("GetTDependentProperty", scripted::reals({1.0}));
    EXPECT_EQ(property(L"vaporPressure"), "Unexpected number of values");
    EXPECT_EQ(property(L"vaporPressure", number(350.0), omitted(), omitted(), number(1)), "list: 1");
}
TEST_F(TemperatureDependent, UnknownWeightsAreReported) {
    package->model.compounds[1].molecularWeight = notANumber;
    EXPECT_EQ(property(L"idealGasEnthalpy", number(350.0), text(L"mass")),
              "Unable to perform mole-to-mass conversion, one or more unknown molecular weights");
}
TEST_F(TemperatureDependent, AnEmptyNameIsReported) {
    EXPECT_EQ(property(L""), "Empty string is not valid for property name");
}
TEST_F(TemperatureDependent, AFailureShowsThePackagesWordsAlone) {
    package->fails("GetTDependentProperty", static_cast<HRESULT>(ECapeOutOfBoundsHR),
                   L"valid from 200 K to 600 K");
    EXPECT_EQ(property(L"vaporPressure"), "valid from 200 K to 600 K");
}

} // namespace
