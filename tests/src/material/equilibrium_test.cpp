// The material while a phase equilibrium is calculated.
#include "tests/src/material/material_fixture.h"

#include <cmath>

namespace quorvane {

namespace {

using scripted::reals;
using scripted::texts;
using testing::ElementsAre;

class EquilibriumMaterial : public MaterialTest {
  protected:
    EquilibriumMaterial() {
        requestEquilibrium({L"pressure", 2e5, Basis_Undefined}, {L"enthalpy", 1000.0, Basis_Mole});
    }
    void requestTP() {
        requestEquilibrium({L"temperature", 350.0, Basis_Undefined}, {L"pressure", 2e5, Basis_Undefined});
    }
    std::vector<bool> present() const {
        std::vector<bool> flags;
        for (const PhaseResult& phase : material->phases) {
            flags.push_back(phase.present);
        }
        return flags;
    }
};

TEST_F(EquilibriumMaterial, GivesBothConditionsInAnyLetterCase) {
    EXPECT_EQ(getOverall(L"Pressure", nullptr), "[200000]");
    EXPECT_EQ(getOverall(L"ENTHALPY", L"mole"), "[1000]");
}

TEST_F(EquilibriumMaterial, ConvertsAConditionToTheBasisAskedFor) {
    // One mole is 28 g: 1000 J/mol is 1000/0.028 J/kg.
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), "[35714.28571]");
    requestEquilibrium({L"pressure", 2e5, Basis_Undefined}, {L"enthalpy", 1000.0, Basis_Mass});
    EXPECT_EQ(getOverall(L"enthalpy", L"mole"), "[28]");
}

TEST_F(EquilibriumMaterial, ConvertsAConditionOfAMassComposition) {
    // 1 kg is 45 mol.
    material->setComposition({0.2, 0.2, 0.6}, Basis_Mass);
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), "[45000]");
}

TEST_F(EquilibriumMaterial, ANewCompositionCountsForTheNextConversion) {
    ASSERT_EQ(getOverall(L"enthalpy", L"mass"), "[35714.28571]");
    material->setComposition({1.0, 0.0, 0.0}, Basis_Mole);
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), "[100000]");
    material->setComposition({1.0, 0.0, 0.0}, Basis_Mass);
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), "[100000]");
    material->setComposition({0.0, 0.0, 1.0}, Basis_Mass);
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), "[25000]");
}

TEST_F(EquilibriumMaterial, AConditionIsAskedForWithTheBasisThatItHas) {
    EXPECT_EQ(getOverall(L"pressure", L"mole"), refused("GetOverallProp", "Specified basis does not apply"));
    EXPECT_EQ(getOverall(L"enthalpy", nullptr), refused("GetOverallProp", "Specified basis does not apply"));
    EXPECT_EQ(getOverall(L"enthalpy", L"volume"), refused("GetOverallProp", "invalid basis"));
}

TEST_F(EquilibriumMaterial, GivesTheOverallComposition) {
    EXPECT_EQ(getOverall(L"Fraction", L"Mole"), "[0.2, 0.3, 0.5]");
    EXPECT_EQ(getOverall(L"fraction", L"Mass"), "[0.07142857143, 0.2142857143, 0.7142857143]");
    EXPECT_EQ(getOverall(L"fraction", nullptr), refused("GetOverallProp", "Specified basis does not apply"));
}

TEST_F(EquilibriumMaterial, GivesNoOtherOverallValue) {
    EXPECT_EQ(getOverall(L"temperature", nullptr), refused("GetOverallProp", "No value available"));
    EXPECT_EQ(getOverall(L"entropy", L"mole"), refused("GetOverallProp", "No value available"));
    EXPECT_EQ(getOverall(L"no property at all", nullptr), refused("GetOverallProp", "No value available"));
    EXPECT_EQ(getOverall(nullptr, nullptr), refused("GetOverallProp", "No value available"));
}

TEST_F(EquilibriumMaterial, GivesTemperaturePressureAndCompositionTogetherInEitherOrder) {
    requestTP();
    EXPECT_EQ(getOverallTPFraction(), "350 200000 [0.2, 0.3, 0.5]");
    requestEquilibrium({L"pressure", 3e5, Basis_Undefined}, {L"temperature", 360.0, Basis_Undefined});
    EXPECT_EQ(getOverallTPFraction(), "360 300000 [0.2, 0.3, 0.5]");
}

TEST_F(EquilibriumMaterial, GivesMoleFractionsOfAMassComposition) {
    requestTP();
    material->setComposition({0.2, 0.2, 0.6}, Basis_Mass);
    EXPECT_EQ(getOverallTPFraction(), "350 200000 [0.4444444444, 0.2222222222, 0.3333333333]");
}

TEST_F(EquilibriumMaterial, WithoutBothTemperatureAndPressureThereIsNoneToGive) {
    EXPECT_EQ(getOverallTPFraction(), refused("GetOverallTPFraction", "No value available"));
    requestEquilibrium({L"temperature", 350.0, Basis_Undefined}, {L"enthalpy", 1.0, Basis_Mole});
    EXPECT_EQ(getOverallTPFraction(), refused("GetOverallTPFraction", "No value available"));
    requestEquilibrium({L"temperature", 350.0, Basis_Undefined}, {L"temperature", 1.0, Basis_Undefined});
    EXPECT_EQ(getOverallTPFraction(), refused("GetOverallTPFraction", "No value available"));
}

TEST_F(EquilibriumMaterial, GivesTheVaporFractionThatIsACondition) {
    requestEquilibrium({L"pressure", 2e5, Basis_Undefined}, {L"vaporfraction", 0.4, Basis_Mole});
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"vapor", L"Mole"), "[0.4]");
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"Vapor", L"Mass"),
              refused("GetSinglePhaseProp", "invalid basis"));
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"Vapor", nullptr),
              refused("GetSinglePhaseProp", "invalid basis"));
}

TEST_F(EquilibriumMaterial, TheFirstOfTwoVaporFractionsCounts) {
    requestEquilibrium({L"vaporfraction", 0.1, Basis_Mass}, {L"vaporfraction", 0.9, Basis_Mass});
    EXPECT_EQ(getSinglePhase(L"phasefraction", L"Vapor", L"mass"), "[0.1]");
}

TEST_F(EquilibriumMaterial, TheFirstOfTwoEqualConditionsCounts) {
    requestEquilibrium({L"enthalpy", 1.0, Basis_Mole}, {L"enthalpy", 2.0, Basis_Mass});
    EXPECT_EQ(getOverall(L"enthalpy", L"mole"), "[1]");
}

TEST_F(EquilibriumMaterial, NamesAnUnknownPropertyBeforeItsBasisAndABasisBeforeTheMissingValue) {
    EXPECT_EQ(getSinglePhase(L"colour", L"Nowhere", L"weight"),
              refused("GetSinglePhaseProp", "Invalid/unknown property \"colour\""));
    EXPECT_EQ(getSinglePhase(L"enthalpy", L"Nowhere", L"weight"),
              refused("GetSinglePhaseProp", "invalid basis"));
}

TEST_F(EquilibriumMaterial, GivesNoOtherPhaseValue) {
    requestEquilibrium({L"pressure", 2e5, Basis_Undefined}, {L"vaporfraction", 0.4, Basis_Mole});
    const std::string message = refused("GetSinglePhaseProp", "No value available");
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"Liquid", L"Mole"), message);
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"Nowhere", L"Mole"), message);
    EXPECT_EQ(getSinglePhase(L"phaseFraction", nullptr, L"Mole"), message);
    EXPECT_EQ(getSinglePhase(L"fraction", L"Vapor", L"Mole"), message);
    EXPECT_EQ(getSinglePhase(L"temperature", L"Vapor", nullptr), message);
    EXPECT_EQ(getTPFraction(L"Vapor"), refused("GetTPFraction", "No value available"));
    requestTP();
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"Vapor", L"Mole"), message);
}

TEST_F(EquilibriumMaterial, ShowsAllPhasesOfThePackage) {
    ASSERT_EQ(setPresent(texts({L"Liquid"})), "ok");
    EXPECT_EQ(getPresentPhases(), "[Vapor, Liquid, Solid] [0, 0, 0]");
}

TEST_F(EquilibriumMaterial, TakesOverallTemperatureAndPressure) {
    EXPECT_EQ(setOverall(L"Temperature", nullptr, reals({400.0})), "ok");
    EXPECT_EQ(setOverall(L"PRESSURE", L"", reals({1e6})), "ok");
    EXPECT_EQ(material->temperature, 400.0);
    EXPECT_EQ(material->pressure, 1e6);
}

TEST_F(EquilibriumMaterial, TemperatureAndPressureAreSingleNumbers) {
    const std::string message = refused("SetOverallProp", "Invalid number of values: scalar expected");
    EXPECT_EQ(setOverall(L"temperature", nullptr, reals({1.0, 2.0})), message);
    EXPECT_EQ(setOverall(L"pressure", nullptr, com::variant{}), message);
    EXPECT_EQ(material->temperature, 350.0);
    EXPECT_EQ(material->pressure, 2e5);
}

TEST_F(EquilibriumMaterial, AcceptsAndForgetsOtherOverallValues) {
    EXPECT_EQ(setOverall(L"enthalpy", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(setOverall(L"fraction", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(getOverall(L"enthalpy", L"mole"), "[1000]");
    EXPECT_EQ(getOverall(L"fraction", L"mole"), "[0.2, 0.3, 0.5]");
}

TEST_F(EquilibriumMaterial, RefusesMalformedOverallValues) {
    EXPECT_EQ(setOverall(L"colour", nullptr, reals({1.0})),
              refused("SetOverallProp", "Invalid/unknown property \"colour\""));
    EXPECT_EQ(setOverall(nullptr, nullptr, reals({1.0})),
              refused("SetOverallProp", "Property name not specified"));
    EXPECT_EQ(setOverall(L"temperature", L"kelvin", reals({1.0})),
              refused("SetOverallProp", "invalid basis"));
    EXPECT_EQ(setOverall(L"enthalpy", L"Mole", com::variant{1.0}),
              refused("SetOverallProp", "Invalid values: Expected an array of type double precision"));
}

TEST_F(EquilibriumMaterial, OfSeveralMistakesInAnOverallValueTheFirstIsNamed) {
    EXPECT_EQ(setOverall(L"colour", L"weight", com::variant{1.0}),
              refused("SetOverallProp", "Invalid/unknown property \"colour\""));
    EXPECT_EQ(setOverall(L"temperature", L"weight", com::variant{1.0}),
              refused("SetOverallProp", "invalid basis"));
    EXPECT_EQ(setOverall(L"entropy", nullptr, texts({L"1", L"2"})),
              refused("SetOverallProp", "Invalid values: Expected an array of type double precision"));
}

TEST_F(EquilibriumMaterial, TakesAnOverallTemperatureOnWhateverBasisItSays) {
    EXPECT_EQ(setOverall(L"temperature", L"Mole", reals({400.0})), "ok");
    EXPECT_EQ(material->temperature, 400.0);
}

TEST_F(EquilibriumMaterial, MarksThePresentPhases) {
    EXPECT_EQ(setPresent(texts({L"LIQUID", L"vapor"})), "ok");
    EXPECT_THAT(present(), ElementsAre(true, true, false));
    EXPECT_EQ(setPresent(texts({L"Solid"})), "ok");
    EXPECT_THAT(present(), ElementsAre(false, false, true));
    EXPECT_EQ(setPresent(com::variant{}), "ok");
    EXPECT_THAT(present(), ElementsAre(false, false, false));
}

TEST_F(EquilibriumMaterial, RefusesPhasesThatThePackageDoesNotHave) {
    EXPECT_EQ(setPresent(texts({L"Plasma"})),
              refused("SetPresentPhases", "Invalid phase labels: undefined phase \"Plasma\""));
    EXPECT_EQ(setPresent(texts({L"", L"Plasma"})),
              refused("SetPresentPhases", "Invalid phase labels: one or more empty strings"));
    EXPECT_EQ(setPresent(texts({nullptr})),
              refused("SetPresentPhases", "Invalid phase labels: one or more empty strings"));
    EXPECT_EQ(setPresent(reals({1.0})),
              refused("SetPresentPhases", "Invalid phase labels: Expected an array of type string"));
}

TEST_F(EquilibriumMaterial, OfSeveralMistakenLabelsTheFirstIsNamed) {
    EXPECT_EQ(setPresent(texts({L"Liquid", L"Plasma", L""})),
              refused("SetPresentPhases", "Invalid phase labels: undefined phase \"Plasma\""));
    EXPECT_EQ(setPresent(texts({L"Liquid", L"", L"Plasma"})),
              refused("SetPresentPhases", "Invalid phase labels: one or more empty strings"));
}

TEST_F(EquilibriumMaterial, AnyNewListOfPresentPhasesForgetsTheOneBefore) {
    ASSERT_EQ(setPresent(texts({L"Vapor"})), "ok");
    EXPECT_NE(setPresent(reals({1.0})), "ok");
    EXPECT_THAT(present(), ElementsAre(false, false, false));
}

TEST_F(EquilibriumMaterial, TakesTheResultsOfEachPhase) {
    EXPECT_EQ(setSinglePhase(L"Temperature", L"LIQUID", nullptr, reals({351.0})), "ok");
    EXPECT_EQ(setSinglePhase(L"pressure", L"liquid", L"", reals({3e5})), "ok");
    EXPECT_EQ(setSinglePhase(L"phaseFraction", L"liquid", L"Mass", reals({0.7})), "ok");
    EXPECT_EQ(setSinglePhase(L"fraction", L"liquid", L"MOLE", reals({0.1, 0.2, 0.7})), "ok");
    const PhaseResult& liquid = material->phases[1];
    EXPECT_EQ(liquid.temperature, 351.0);
    EXPECT_EQ(liquid.pressure, 3e5);
    EXPECT_EQ(liquid.fraction, 0.7);
    EXPECT_EQ(liquid.fractionBasis, Basis_Mass);
    EXPECT_THAT(liquid.composition.values, ElementsAre(0.1, 0.2, 0.7));
    EXPECT_EQ(liquid.composition.basis, Basis_Mole);
    EXPECT_FALSE(liquid.present) << "results do not make a phase present";
    EXPECT_EQ(material->temperature, 350.0);
}

TEST_F(EquilibriumMaterial, RefusesResultsOfAPhaseThatThePackageDoesNotHave) {
    EXPECT_EQ(setSinglePhase(L"temperature", L"Plasma", nullptr, reals({1.0})),
              refused("SetSinglePhaseProp", "Invalid phase"));
    EXPECT_EQ(setSinglePhase(L"temperature", nullptr, nullptr, reals({1.0})),
              refused("SetSinglePhaseProp", "Invalid phase"));
    EXPECT_EQ(setSinglePhase(L"no property at all", L"", nullptr, reals({1.0})),
              refused("SetSinglePhaseProp", "Invalid phase"));
}

TEST_F(EquilibriumMaterial, ChecksTheNumberOfValues) {
    const std::string message = refused("SetSinglePhaseProp", "Unexpected number of values");
    EXPECT_EQ(setSinglePhase(L"temperature", L"Vapor", nullptr, reals({1.0, 2.0})), message);
    EXPECT_EQ(setSinglePhase(L"pressure", L"Vapor", nullptr, com::variant{}), message);
    EXPECT_EQ(setSinglePhase(L"phaseFraction", L"Vapor", L"Mole", reals({1.0, 2.0, 3.0})), message);
    EXPECT_EQ(setSinglePhase(L"fraction", L"Vapor", L"Mole", reals({0.5, 0.5})), message);
    EXPECT_TRUE(std::isnan(material->phases[0].temperature));
    EXPECT_TRUE(std::isnan(material->phases[0].pressure));
}

TEST_F(EquilibriumMaterial, ChecksTheBasis) {
    const std::string message = refused("SetSinglePhaseProp", "Invalid basis");
    EXPECT_EQ(setSinglePhase(L"temperature", L"Vapor", L"Mole", reals({1.0})), message);
    EXPECT_EQ(setSinglePhase(L"pressure", L"Vapor", L"Mass", reals({1.0})), message);
    EXPECT_EQ(setSinglePhase(L"phaseFraction", L"Vapor", nullptr, reals({1.0})), message);
    EXPECT_EQ(setSinglePhase(L"fraction", L"Vapor", L"", reals({0.5, 0.3, 0.2})), message);
    EXPECT_EQ(setSinglePhase(L"fraction", L"Vapor", L"weight", reals({0.5, 0.3, 0.2})),
              refused("SetSinglePhaseProp", "invalid basis"));
}

TEST_F(EquilibriumMaterial, OfSeveralMistakesInAPhaseResultTheFirstIsNamed) {
    EXPECT_EQ(setSinglePhase(L"temperature", L"Plasma", L"Mole", texts({L"1"})),
              refused("SetSinglePhaseProp", "Invalid values: Expected an array of type double precision"));
    EXPECT_EQ(setSinglePhase(L"temperature", L"Plasma", L"Mole", reals({1.0, 2.0})),
              refused("SetSinglePhaseProp", "Invalid phase"));
    const std::string count = refused("SetSinglePhaseProp", "Unexpected number of values");
    EXPECT_EQ(setSinglePhase(L"temperature", L"Vapor", L"Mole", reals({1.0, 2.0})), count);
    EXPECT_EQ(setSinglePhase(L"fraction", L"Vapor", L"weight", reals({1.0})), count);
    EXPECT_EQ(setSinglePhase(L"phaseFraction", L"Vapor", nullptr, reals({0.5, 0.5})), count);
}

TEST_F(EquilibriumMaterial, ARefusedPhaseResultLeavesTheOneBefore) {
    ASSERT_EQ(setSinglePhase(L"phaseFraction", L"Vapor", L"Mole", reals({0.4})), "ok");
    ASSERT_EQ(setSinglePhase(L"fraction", L"Vapor", L"Mole", reals({0.1, 0.2, 0.7})), "ok");
    EXPECT_NE(setSinglePhase(L"phaseFraction", L"Vapor", nullptr, reals({0.9})), "ok");
    EXPECT_NE(setSinglePhase(L"fraction", L"Vapor", nullptr, reals({0.3, 0.3, 0.4})), "ok");
    const PhaseResult& vapor = material->phases[0];
    EXPECT_EQ(vapor.fraction, 0.4);
    EXPECT_EQ(vapor.fractionBasis, Basis_Mole);
    EXPECT_THAT(vapor.composition.values, ElementsAre(0.1, 0.2, 0.7));
    EXPECT_EQ(vapor.composition.basis, Basis_Mole);
}

TEST_F(EquilibriumMaterial, AcceptsAndForgetsOtherPhaseValues) {
    EXPECT_EQ(setSinglePhase(L"enthalpy", L"Vapor", L"Mole", reals({1.0})), "ok");
    EXPECT_EQ(setSinglePhase(L"the package's own", L"Vapor", L"any", reals({1.0})), "ok");
    EXPECT_EQ(setSinglePhase(nullptr, L"Vapor", nullptr, reals({1.0})), "ok");
    EXPECT_TRUE(material->result.empty());
}

TEST_F(EquilibriumMaterial, IgnoresValuesOfTwoPhases) {
    EXPECT_EQ(setTwoPhase(L"kvalue", com::variant{}, nullptr, com::variant{}), "ok");
}

TEST_F(EquilibriumMaterial, AResetForgetsWhatThePhasesHad) {
    ASSERT_EQ(setPresent(texts({L"Vapor"})), "ok");
    ASSERT_EQ(setSinglePhase(L"temperature", L"Vapor", nullptr, reals({351.0})), "ok");
    ASSERT_EQ(setSinglePhase(L"pressure", L"Vapor", nullptr, reals({1e5})), "ok");
    material->resetPhases();
    EXPECT_FALSE(material->phases[0].present);
    EXPECT_TRUE(std::isnan(material->phases[0].temperature));
    EXPECT_TRUE(std::isnan(material->phases[0].pressure));
}

} // namespace

} // namespace quorvane
