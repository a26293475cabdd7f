// The material while a single-phase property is asked for: what the package can read, and which values
// arrive.
#include "tests/src/material/material_fixture.h"

namespace quorvane {

namespace {

using scripted::reals;
using testing::ElementsAre;
using testing::IsEmpty;

class SinglePhaseMaterial : public MaterialTest {
  protected:
    SinglePhaseMaterial() { requestSinglePhase(L"enthalpy", L"Liquid"); }
};

TEST_F(SinglePhaseMaterial, GivesConditionsOfTheRequestedPhaseInAnyLetterCase) {
    EXPECT_EQ(getTPFraction(L"LIQUID"), "350 200000 [0.2, 0.3, 0.5]");
}

TEST_F(SinglePhaseMaterial, KnowsTheRequestedPhaseByLettersOfOtherAlphabetsInAnyCase) {
    requestSinglePhase(L"enthalpy", L"fl\u00FCssig");
    EXPECT_EQ(getSinglePhase(L"temperature", L"FL\u00DCSSIG", nullptr), "[350]");
}

TEST_F(SinglePhaseMaterial, GivesMoleFractionsForAMassComposition) {
    // 0.2 kg of 10 g/mol, 0.2 kg of 20 g/mol and 0.6 kg of 40 g/mol: 20, 10 and 15 mol.
    material->setComposition({0.2, 0.2, 0.6}, Basis_Mass);
    EXPECT_EQ(getTPFraction(L"liquid"), "350 200000 [0.4444444444, 0.2222222222, 0.3333333333]");
}

TEST_F(SinglePhaseMaterial, GivesNoConditionsOfAnotherPhase) {
    EXPECT_EQ(getTPFraction(L"Vapor"), refused("GetTPFraction", "No value available"));
    EXPECT_EQ(getTPFraction(nullptr), refused("GetTPFraction", "No value available"));
}

TEST_F(SinglePhaseMaterial, GivesTemperatureAndPressureAsArraysOfOne) {
    EXPECT_EQ(getSinglePhase(L"Temperature", L"Liquid", nullptr), "[350]");
    EXPECT_EQ(getSinglePhase(L"PRESSURE", L"Liquid", L""), "[200000]");
}

TEST_F(SinglePhaseMaterial, TemperatureAndPressureTakeNoBasis) {
    EXPECT_EQ(getSinglePhase(L"temperature", L"Liquid", L"Mole"),
              refused("GetSinglePhaseProp", "invalid basis"));
    EXPECT_EQ(getSinglePhase(L"pressure", L"Liquid", L"Mass"),
              refused("GetSinglePhaseProp", "invalid basis"));
}

TEST_F(SinglePhaseMaterial, GivesFractionsOnTheBasisAskedFor) {
    EXPECT_EQ(getSinglePhase(L"fraction", L"Liquid", L"MOLE"), "[0.2, 0.3, 0.5]");
    // 2, 6 and 20 g.
    EXPECT_EQ(getSinglePhase(L"fraction", L"Liquid", L"mass"), "[0.07142857143, 0.2142857143, 0.7142857143]");
}

TEST_F(SinglePhaseMaterial, FractionsNeedABasis) {
    EXPECT_EQ(getSinglePhase(L"fraction", L"Liquid", nullptr),
              refused("GetSinglePhaseProp", "Specified basis does not apply"));
}

TEST_F(SinglePhaseMaterial, ABasisIsExactlyMoleOrMass) {
    EXPECT_EQ(getSinglePhase(L"fraction", L"Liquid", L" mole"),
              refused("GetSinglePhaseProp", "invalid basis"));
    EXPECT_EQ(getSinglePhase(L"fraction", L"Liquid", L"moles"),
              refused("GetSinglePhaseProp", "invalid basis"));
    EXPECT_EQ(getSinglePhase(L"enthalpy", L"Liquid", L"UNDEFINED"),
              refused("GetSinglePhaseProp", "invalid basis"));
}

TEST_F(SinglePhaseMaterial, GivesNothingElse) {
    EXPECT_EQ(getSinglePhase(L"fraction", L"Vapor", L"mole"),
              refused("GetSinglePhaseProp", "No value available"));
    EXPECT_EQ(getSinglePhase(L"enthalpy", L"Liquid", L"mole"),
              refused("GetSinglePhaseProp", "No value available"));
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"Liquid", L"mole"),
              refused("GetSinglePhaseProp", "No value available"));
}

TEST_F(SinglePhaseMaterial, NamesUnknownPropertiesInTheMessage) {
    EXPECT_EQ(getSinglePhase(L"colour", L"Liquid", L"mole"),
              refused("GetSinglePhaseProp", "Invalid/unknown property \"colour\""));
    EXPECT_EQ(getSinglePhase(nullptr, L"Liquid", L"mole"),
              refused("GetSinglePhaseProp", "Property name not specified"));
}

TEST_F(SinglePhaseMaterial, HasNoOverallValues) {
    EXPECT_EQ(getOverall(L"temperature", nullptr), refused("GetOverallProp", "No value available"));
    EXPECT_EQ(getOverall(L"fraction", L"mole"), refused("GetOverallProp", "No value available"));
}

TEST_F(SinglePhaseMaterial, OverallConditionsAreRecordedUnderTheOtherMethod) {
    EXPECT_EQ(getOverallTPFraction(), "80040509 GetOverallProp of ICapeThermoMaterial: Not implemented");
}

TEST_F(SinglePhaseMaterial, ShowsAllPhasesOfThePackage) {
    EXPECT_EQ(getPresentPhases(), "[Vapor, Liquid, Solid] [0, 0, 0]");
    EXPECT_EQ(getPresentPhases(), "[Vapor, Liquid, Solid] [0, 0, 0]");
}

TEST_F(SinglePhaseMaterial, TakesTheRequestedValueWithItsBasis) {
    EXPECT_EQ(setSinglePhase(L"Enthalpy", L"liquid", L"Mass", reals({-5.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(-5.0));
    EXPECT_EQ(material->resultBasis, Basis_Mass);
    EXPECT_EQ(setSinglePhase(L"ENTHALPY", L"LIQUID", L"Mole", reals({7.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(7.0));
    EXPECT_EQ(material->resultBasis, Basis_Mole);
}

TEST_F(SinglePhaseMaterial, IgnoresValuesThatWereNotAskedFor) {
    EXPECT_EQ(setSinglePhase(L"entropy", L"Liquid", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(setSinglePhase(L"enthalpy", L"Vapor", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(setSinglePhase(L"enthalpy", nullptr, L"nonsense", reals({1.0, 2.0})), "ok");
    EXPECT_EQ(setSinglePhase(nullptr, L"Liquid", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(setSinglePhase(L"no property at all", L"Liquid", L"Mole", reals({1.0})), "ok");
    EXPECT_THAT(material->result, IsEmpty());
}

TEST_F(SinglePhaseMaterial, RefusesValuesThatAreNoRealsEvenWhenNobodyAskedForThem) {
    EXPECT_EQ(setSinglePhase(L"entropy", L"Vapor", L"Mole", com::variant{1.0}),
              refused("SetSinglePhaseProp", "Invalid values: Expected an array of type double precision"));
}

TEST_F(SinglePhaseMaterial, NamesAWrongBasisBeforeAWrongNumberOfValues) {
    EXPECT_EQ(setSinglePhase(L"enthalpy", L"Liquid", nullptr, reals({1.0, 2.0})),
              refused("SetSinglePhaseProp", "Invalid basis"));
    EXPECT_EQ(setSinglePhase(L"enthalpy", L"Liquid", L"Molar", reals({1.0, 2.0})),
              refused("SetSinglePhaseProp", "invalid basis"));
}

TEST_F(SinglePhaseMaterial, NamesAnUnknownPropertyBeforeItsBasis) {
    EXPECT_EQ(getSinglePhase(L"colour", L"Liquid", L"weight"),
              refused("GetSinglePhaseProp", "Invalid/unknown property \"colour\""));
}

TEST_F(SinglePhaseMaterial, AValueWithABasisNeedsOne) {
    EXPECT_EQ(setSinglePhase(L"enthalpy", L"Liquid", nullptr, reals({1.0})),
              refused("SetSinglePhaseProp", "Invalid basis"));
    EXPECT_EQ(setSinglePhase(L"enthalpy", L"Liquid", L"Molar", reals({1.0})),
              refused("SetSinglePhaseProp", "invalid basis"));
    EXPECT_THAT(material->result, IsEmpty());
}

TEST_F(SinglePhaseMaterial, AValueWithoutABasisMustHaveNone) {
    requestSinglePhase(L"viscosity", L"Liquid");
    EXPECT_EQ(setSinglePhase(L"viscosity", L"Liquid", L"Mole", reals({1.0})),
              refused("SetSinglePhaseProp", "Invalid basis"));
    EXPECT_EQ(setSinglePhase(L"viscosity", L"Liquid", L"", reals({1.0})), "ok");
    EXPECT_EQ(material->resultBasis, Basis_Undefined);
}

TEST_F(SinglePhaseMaterial, ARefusedValueLeavesTheOneBefore) {
    ASSERT_EQ(setSinglePhase(L"enthalpy", L"Liquid", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(setSinglePhase(L"enthalpy", L"Liquid", L"Mass", reals({1.0, 2.0})),
              refused("SetSinglePhaseProp", "Unexpected number of values"));
    EXPECT_THAT(material->result, ElementsAre(1.0));
    EXPECT_EQ(material->resultBasis, Basis_Mole);
}

TEST_F(SinglePhaseMaterial, IgnoresOverallAndTwoPhaseValues) {
    EXPECT_EQ(setOverall(L"temperature", nullptr, reals({1.0})), "ok");
    EXPECT_EQ(setOverall(L"nonsense", L"nonsense", com::variant{}), "ok");
    EXPECT_EQ(setPresent(com::variant{L"nonsense"}), "ok");
    EXPECT_EQ(setTwoPhase(L"enthalpy", com::variant{}, nullptr, com::variant{}), "ok");
    EXPECT_EQ(material->temperature, 350.0);
    EXPECT_THAT(material->result, IsEmpty());
}

TEST_F(SinglePhaseMaterial, ClearAllPropsClearsNothing) {
    ASSERT_EQ(setSinglePhase(L"enthalpy", L"Liquid", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(material->ClearAllProps(), S_OK);
    EXPECT_THAT(material->result, ElementsAre(1.0));
    EXPECT_EQ(getTPFraction(L"Liquid"), "350 200000 [0.2, 0.3, 0.5]");
}

struct Shape {
    const wchar_t* property;
    const wchar_t* basis;
    std::size_t values;
};

class ShapeOfResult : public MaterialTest, public testing::WithParamInterface<Shape> {};

TEST_P(ShapeOfResult, IsOneValuePerCombinationOfCompounds) {
    const Shape& shape = GetParam();
    requestSinglePhase(shape.property, L"Vapor");
    for (const std::size_t count :
         {std::size_t{0}, std::size_t{1}, std::size_t{3}, std::size_t{6}, std::size_t{9}, std::size_t{27}}) {
        const com::variant values = com::realArray(std::vector<double>(count, 1.5));
        EXPECT_EQ(setSinglePhase(shape.property, L"Vapor", shape.basis, values),
                  count == shape.values ? "ok" : refused("SetSinglePhaseProp", "Unexpected number of values"))
            << count;
    }
    EXPECT_EQ(material->result.size(), shape.values);
}

INSTANTIATE_TEST_SUITE_P(
    Properties, ShapeOfResult,
    testing::Values(Shape{L"density", L"Mole", 1}, Shape{L"enthalpy.Dtemperature", L"Mole", 1},
                    Shape{L"enthalpy.Dpressure", L"Mass", 1}, Shape{L"enthalpy.DmolFraction", L"Mole", 3},
                    Shape{L"enthalpy.Dmoles", L"Mole", 3}, Shape{L"fugacityCoefficient", nullptr, 3},
                    Shape{L"fugacityCoefficient.Dmoles", nullptr, 9},
                    Shape{L"diffusionCoefficient", nullptr, 9},
                    Shape{L"diffusionCoefficient.DmolFraction", nullptr, 27}),
    [](const auto& shape) {
        std::string name = scripted::narrow(shape.param.property);
        std::ranges::replace(name, '.', '_');
        return name;
    });

} // namespace

} // namespace quorvane
