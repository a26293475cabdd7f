// The material while a property of two phases is asked for.
#include "tests/src/material/material_fixture.h"

namespace quorvane {

namespace {

using scripted::reals;
using scripted::texts;
using testing::ElementsAre;
using testing::IsEmpty;

class TwoPhaseMaterial : public MaterialTest {
  protected:
    TwoPhaseMaterial() { requestTwoPhase(L"surfaceTension", L"Vapor", L"Liquid"); }
};

TEST_F(TwoPhaseMaterial, GivesEachPhaseItsComposition) {
    EXPECT_EQ(getTPFraction(L"VAPOR"), "350 200000 [0.2, 0.3, 0.5]");
    EXPECT_EQ(getTPFraction(L"Liquid"), "350 200000 [0.6, 0.2, 0.2]");
    EXPECT_EQ(getSinglePhase(L"fraction", L"vapor", L"Mole"), "[0.2, 0.3, 0.5]");
    // 6, 4 and 8 g.
    EXPECT_EQ(getSinglePhase(L"fraction", L"liquid", L"Mass"), "[0.3333333333, 0.2222222222, 0.4444444444]");
}

TEST_F(TwoPhaseMaterial, GivesMoleFractionsOfTheSecondPhaseForAMassComposition) {
    material->composition2 = {{0.2, 0.2, 0.6}, Basis_Mass};
    EXPECT_EQ(getTPFraction(L"Liquid"), "350 200000 [0.4444444444, 0.2222222222, 0.3333333333]");
}

TEST_F(TwoPhaseMaterial, GivesTemperatureAndPressure) {
    EXPECT_EQ(getSinglePhase(L"temperature", L"Liquid", nullptr), "[350]");
    EXPECT_EQ(getSinglePhase(L"pressure", L"Vapor", nullptr), "[200000]");
    EXPECT_EQ(getSinglePhase(L"pressure", L"Vapor", L"mole"), refused("GetSinglePhaseProp", "invalid basis"));
}

TEST_F(TwoPhaseMaterial, GivesNothingOfAThirdPhase) {
    EXPECT_EQ(getTPFraction(L"Solid"), refused("GetTPFraction", "No value available"));
    EXPECT_EQ(getSinglePhase(L"fraction", L"Solid", L"mole"),
              refused("GetSinglePhaseProp", "No value available"));
    EXPECT_EQ(getOverall(L"fraction", L"mole"), refused("GetOverallProp", "No value available"));
    EXPECT_EQ(getOverallTPFraction(), "80040509 GetOverallProp of ICapeThermoMaterial: Not implemented");
    EXPECT_EQ(getPresentPhases(), "[Vapor, Liquid, Solid] [0, 0, 0]");
}

TEST_F(TwoPhaseMaterial, TakesTheRequestedValue) {
    material->resultBasis = Basis_Mass;
    EXPECT_EQ(setTwoPhase(L"SURFACETENSION", texts({L"vapor", L"liquid"}), nullptr, reals({0.07})), "ok");
    EXPECT_THAT(material->result, ElementsAre(0.07));
    EXPECT_EQ(material->resultBasis, Basis_Undefined);
}

TEST_F(TwoPhaseMaterial, LooksAtTheFirstLabelOnly) {
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Vapor", L"anything"}), nullptr, reals({1.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(1.0));
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Vapor", nullptr}), nullptr, reals({2.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(2.0));
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Liquid", L"Vapor"}), nullptr, reals({3.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(2.0));
}

TEST_F(TwoPhaseMaterial, IgnoresValuesOfAnotherFirstPhaseHoweverMalformed) {
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Solid", L"Liquid"}), L"weight", com::variant{1.0}),
              "ok");
    EXPECT_THAT(material->result, IsEmpty());
}

TEST_F(TwoPhaseMaterial, OfSeveralMistakesTheFirstIsNamed) {
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Solid"}), L"Mole", com::variant{1.0}),
              refused("SetTwoPhaseProp", "Invalid phase labels: expected two phases"));
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Vapor", L"Liquid"}), L"Mole", com::variant{1.0}),
              refused("SetTwoPhaseProp", "Invalid basis"));
}

TEST_F(TwoPhaseMaterial, ARefusedValueLeavesTheOneBefore) {
    const com::variant labels = texts({L"Vapor", L"Liquid"});
    ASSERT_EQ(setTwoPhase(L"surfaceTension", labels, nullptr, reals({1.0})), "ok");
    EXPECT_NE(setTwoPhase(L"surfaceTension", labels, nullptr, reals({1.0, 2.0})), "ok");
    EXPECT_NE(setTwoPhase(L"surfaceTension", labels, L"Mole", reals({3.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(1.0));
}

TEST_F(TwoPhaseMaterial, IgnoresOtherPropertiesAndOtherKindsOfValues) {
    EXPECT_EQ(setTwoPhase(L"kvalue", com::variant{}, L"Mole", com::variant{}), "ok");
    EXPECT_EQ(setSinglePhase(L"surfaceTension", L"Vapor", L"Mole", reals({1.0, 2.0})), "ok");
    EXPECT_EQ(setOverall(L"temperature", nullptr, com::variant{}), "ok");
    EXPECT_EQ(setPresent(com::variant{}), "ok");
    EXPECT_THAT(material->result, IsEmpty());
    EXPECT_EQ(material->temperature, 350.0);
}

TEST_F(TwoPhaseMaterial, WantsExactlyTwoLabels) {
    const std::string message = refused("SetTwoPhaseProp", "Invalid phase labels: expected two phases");
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Vapor"}), nullptr, reals({1.0})), message);
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Vapor", L"Liquid", L"Solid"}), nullptr, reals({1.0})),
              message);
    EXPECT_EQ(setTwoPhase(L"surfaceTension", com::variant{}, nullptr, reals({1.0})), message);
    EXPECT_EQ(setTwoPhase(L"surfaceTension", com::variant{L"Vapor"}, nullptr, reals({1.0})),
              refused("SetTwoPhaseProp", "Invalid phase labels: Expected an array of type string"));
}

TEST_F(TwoPhaseMaterial, TakesNoBasis) {
    const com::variant labels = texts({L"Vapor", L"Liquid"});
    EXPECT_EQ(setTwoPhase(L"surfaceTension", labels, L"Mole", reals({1.0})),
              refused("SetTwoPhaseProp", "Invalid basis"));
    EXPECT_EQ(setTwoPhase(L"surfaceTension", labels, L"molar", reals({1.0})),
              refused("SetTwoPhaseProp", "invalid basis"));
}

TEST_F(TwoPhaseMaterial, RefusesValuesThatAreNoReals) {
    EXPECT_EQ(setTwoPhase(L"surfaceTension", texts({L"Vapor", L"Liquid"}), nullptr, com::variant{1.0}),
              refused("SetTwoPhaseProp", "Invalid values: Expected an array of type double precision"));
}

TEST_F(TwoPhaseMaterial, CompositionDerivativesComeForBothPhases) {
    const com::variant labels = texts({L"Vapor", L"Liquid"});
    const struct {
        const wchar_t* property;
        std::size_t values;
    } cases[] = {{L"surfaceTension", 1},
                 {L"surfaceTension.Dtemperature", 1},
                 {L"surfaceTension.Dpressure", 1},
                 {L"surfaceTension.DmolFraction", 6},
                 {L"surfaceTension.Dmoles", 6},
                 {L"kvalue", 3},
                 {L"kvalue.Dtemperature", 3},
                 {L"kvalue.DmolFraction", 18},
                 {L"kvalue.Dmoles", 18}};
    for (const auto& shape : cases) {
        requestTwoPhase(shape.property, L"Vapor", L"Liquid");
        for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{3}, std::size_t{6},
                                        std::size_t{9}, std::size_t{18}}) {
            const com::variant values = com::realArray(std::vector<double>(count, 1.5));
            EXPECT_EQ(setTwoPhase(shape.property, labels, nullptr, values),
                      count == shape.values ? "ok"
                                            : refused("SetTwoPhaseProp", "Unexpected number of values"))
                << scripted::narrow(shape.property) << " with " << count;
        }
    }
}

} // namespace

} // namespace quorvane
