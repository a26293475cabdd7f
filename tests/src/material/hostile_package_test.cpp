// Packages that hand over malformed values, call at the wrong time, or keep the material for too long.
#include "tests/src/material/material_fixture.h"

#include <functional>

namespace quorvane {

namespace {

using scripted::reals;
using scripted::texts;
using testing::ElementsAre;
using testing::IsEmpty;

class HostilePackage : public MaterialTest {
  protected:
    HostilePackage() { requestSinglePhase(L"enthalpy", L"Liquid"); }

    std::string set(const VARIANT& values) { return setSinglePhase(L"enthalpy", L"Liquid", L"Mole", values); }
};

TEST_F(HostilePackage, ValuesMustBeAnArrayOfReals) {
    const std::string message =
        refused("SetSinglePhaseProp", "Invalid values: Expected an array of type double precision");
    EXPECT_EQ(set(com::variant{1.0}), message);
    EXPECT_EQ(set(com::variant{L"1"}), message);
    EXPECT_EQ(set(com::variant{1L}), message);
    EXPECT_EQ(set(com::variant::missing()), message);
    EXPECT_EQ(set(com::variant::object(nullptr)), message);
    EXPECT_EQ(set(texts({L"1"})), message);
    EXPECT_EQ(set(scripted::longs({1})), message);
    EXPECT_EQ(set(com::variant::array(com::makeVector(VT_VARIANT, 1), VT_VARIANT)), message);
    EXPECT_EQ(set(com::variant::array(com::makeVector(VT_R4, 1), VT_R4)), message);
    EXPECT_THAT(material->result, IsEmpty());
}

TEST_F(HostilePackage, AnArrayWithAFalseLabelIsNotRead) {
    com::unique_safearray array = com::makeVector(VT_I2, 1);
    VARIANT lie{};
    lie.vt = VT_ARRAY | VT_R8;
    lie.parray = array.get();
    EXPECT_EQ(set(lie),
              refused("SetSinglePhaseProp", "Invalid values: Expected an array of type double precision"));
}

TEST_F(HostilePackage, AnArrayThatIsNotThereIsNotRead) {
    VARIANT nothing{};
    nothing.vt = VT_ARRAY | VT_R8;
    EXPECT_EQ(set(nothing), refused("SetSinglePhaseProp",
                                    "Invalid values: unexpected dimension; 1-dimensional array expected"));
}

TEST_F(HostilePackage, ABlockIsNoVector) {
    EXPECT_EQ(
        set(scripted::realBlock(1)),
        refused("SetSinglePhaseProp", "Invalid values: unexpected dimension; 1-dimensional array expected"));
}

TEST_F(HostilePackage, ArraysMayBeginAtAnyIndex) {
    EXPECT_EQ(set(scripted::realsFrom(1, {5.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(5.0));
    EXPECT_EQ(set(scripted::realsFrom(-3, {6.0})), "ok");
    EXPECT_THAT(material->result, ElementsAre(6.0));
    EXPECT_EQ(set(scripted::realsFrom(-3, {6.0, 7.0})),
              refused("SetSinglePhaseProp", "Unexpected number of values"));
}

TEST_F(HostilePackage, AnEmptyValueIsNoValues) {
    EXPECT_EQ(set(com::variant{}), refused("SetSinglePhaseProp", "Unexpected number of values"));
}

TEST_F(HostilePackage, ArraysMayComeByReference) {
    const com::variant values = reals({8.0});
    VARIANT reference{};
    reference.vt = VT_ARRAY | VT_R8 | VT_BYREF;
    SAFEARRAY* array = values.parray;
    reference.pparray = &array;
    EXPECT_EQ(set(reference), "ok");
    EXPECT_THAT(material->result, ElementsAre(8.0));
    com::variant inner = reals({9.0});
    VARIANT toVariant{};
    toVariant.vt = VT_VARIANT | VT_BYREF;
    toVariant.pvarVal = &inner;
    EXPECT_EQ(set(toVariant), "ok");
    EXPECT_THAT(material->result, ElementsAre(9.0));
    VARIANT toNothing{};
    toNothing.vt = VT_ARRAY | VT_R8 | VT_BYREF;
    EXPECT_EQ(set(toNothing), refused("SetSinglePhaseProp", "Unexpected number of values"));
}

TEST_F(HostilePackage, NumbersThatAreNoneAreTakenAsTheyAre) {
    EXPECT_EQ(set(reals({std::numeric_limits<double>::quiet_NaN()})), "ok");
    ASSERT_EQ(material->result.size(), 1U);
    EXPECT_NE(material->result[0], material->result[0]);
    EXPECT_EQ(set(reals({std::numeric_limits<double>::infinity()})), "ok");
    EXPECT_THAT(material->result, ElementsAre(std::numeric_limits<double>::infinity()));
}

TEST_F(HostilePackage, TheValuesStillBelongToThePackage) {
    const com::variant values = reals({1.0});
    ASSERT_EQ(set(values), "ok");
    EXPECT_EQ(scripted::textOf(values), "[1]");
    EXPECT_EQ(values.parray->cLocks, 0U) << "left locked";
    EXPECT_NE(set(texts({L"x"})), "ok");
    EXPECT_EQ(set(values), "ok");
}

TEST_F(HostilePackage, PhaseLabelsMayBeginAtAnyIndexAndMustBeAVector) {
    requestEquilibrium({L"pressure", 1e5, Basis_Undefined}, {L"temperature", 300.0, Basis_Undefined});
    EXPECT_EQ(setPresent(scripted::textsFrom(-3, {L"Vapor"})), "ok");
    EXPECT_TRUE(material->phases[0].present);
    EXPECT_EQ(setPresent(scripted::textBlock(2)),
              refused("SetPresentPhases",
                      "Invalid phase labels: unexpected dimension; 1-dimensional array expected"));
    const com::variant labels = texts({L"Liquid"});
    SAFEARRAY* array = labels.parray;
    VARIANT reference{};
    reference.vt = VT_ARRAY | VT_BSTR | VT_BYREF;
    reference.pparray = &array;
    EXPECT_EQ(setPresent(reference), "ok");
    EXPECT_TRUE(material->phases[1].present);
}

TEST_F(HostilePackage, NullOutputsAreRefusedWithoutARecord) {
    double number = 0.0;
    com::variant value;
    const auto name = com::makeBstr(L"temperature");
    EXPECT_EQ(material->GetOverallProp(name.get(), nullptr, nullptr), E_POINTER);
    EXPECT_EQ(material->GetOverallTPFraction(nullptr, &number, &value), E_POINTER);
    EXPECT_EQ(material->GetOverallTPFraction(&number, nullptr, &value), E_POINTER);
    EXPECT_EQ(material->GetOverallTPFraction(&number, &number, nullptr), E_POINTER);
    EXPECT_EQ(material->GetPresentPhases(nullptr, &value), E_POINTER);
    EXPECT_EQ(material->GetPresentPhases(&value, nullptr), E_POINTER);
    EXPECT_EQ(material->GetSinglePhaseProp(name.get(), name.get(), nullptr, nullptr), E_POINTER);
    EXPECT_EQ(material->GetTPFraction(name.get(), nullptr, &number, &value), E_POINTER);
    EXPECT_EQ(material->GetTPFraction(name.get(), &number, nullptr, &value), E_POINTER);
    EXPECT_EQ(material->GetTPFraction(name.get(), &number, &number, nullptr), E_POINTER);
    EXPECT_EQ(told(E_POINTER), "80004003  of : ");
}

TEST_F(HostilePackage, WhatAnOutputHeldIsReplaced) {
    com::variant value{L"old text"};
    const auto label = com::makeBstr(L"Liquid");
    const auto name = com::makeBstr(L"temperature");
    ASSERT_EQ(material->GetSinglePhaseProp(name.get(), label.get(), nullptr, &value), S_OK);
    EXPECT_EQ(scripted::textOf(value), "[350]");
}

TEST_F(HostilePackage, AFailedReadLeavesTheOutputs) {
    com::variant value{L"old text"};
    double T = 1.0;
    double P = 2.0;
    const auto label = com::makeBstr(L"Vapor");
    EXPECT_EQ(material->GetTPFraction(label.get(), &T, &P, &value), ecapeUnknown);
    EXPECT_EQ(T, 1.0);
    EXPECT_EQ(P, 2.0);
    EXPECT_EQ(scripted::textOf(value), "old text");
}

// Goes with a last act.
class Parting final : public com::implements<com::COMObject, IPersist> {
  public:
    explicit Parting(std::function<void()> act) : act_{std::move(act)} {}
    ~Parting() override { act_(); }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) noexcept override { return E_NOTIMPL; }

  private:
    std::function<void()> act_;
};

TEST_F(HostilePackage, WhatAnOutputHeldMayMakeAnotherRequestWhileItGoes) {
    auto parting = com::make<Parting>([this] {
        material->temperature = 400.0;
        material->pressure = 4e5;
        material->setComposition({1.0, 0.0, 0.0}, Basis_Mole);
    });
    com::variant fractions;
    fractions.vt = VT_UNKNOWN;
    fractions.punkVal = static_cast<IPersist*>(parting.release());
    double T = 0.0;
    double P = 0.0;
    const auto label = com::makeBstr(L"Liquid");
    ASSERT_EQ(material->GetTPFraction(label.get(), &T, &P, &fractions), S_OK);
    EXPECT_EQ(T, 350.0);
    EXPECT_EQ(P, 2e5);
    EXPECT_EQ(scripted::textOf(fractions), "[0.2, 0.3, 0.5]");
}

TEST(MaterialBeforeAnyRequest, TakesAndGivesNothing) {
    TestOwner owner;
    const auto material = com::make<MaterialObject11>(owner);
    const com::variant values = reals({1.0});
    const com::variant labels = texts({L"Vapor", L"Liquid"});
    const auto enthalpy = com::makeBstr(L"enthalpy");
    const auto mole = com::makeBstr(L"Mole");
    EXPECT_EQ(material->SetSinglePhaseProp(nullptr, nullptr, nullptr, values), S_OK);
    EXPECT_EQ(material->SetSinglePhaseProp(enthalpy.get(), nullptr, mole.get(), values), S_OK);
    EXPECT_EQ(material->SetTwoPhaseProp(nullptr, labels, nullptr, values), S_OK);
    EXPECT_EQ(material->SetOverallProp(enthalpy.get(), mole.get(), values), S_OK);
    EXPECT_EQ(material->SetPresentPhases(labels, com::variant{}), S_OK);
    EXPECT_THAT(material->result, IsEmpty());
    com::variant out;
    EXPECT_EQ(material->GetOverallProp(enthalpy.get(), mole.get(), &out), ecapeUnknown);
    EXPECT_EQ(material->GetPresentPhases(&out, com::variant{}.put()), S_OK);
    material->forgetOwner();
}

TEST(MaterialBeforeAnyRequest, HasAPlaceForEveryCompoundAndPhase) {
    TestOwner owner;
    const auto material = com::make<MaterialObject11>(owner);
    EXPECT_EQ(material->composition().values.size(), 3U);
    EXPECT_EQ(material->composition2.values.size(), 3U);
    EXPECT_EQ(material->phases.size(), 3U);
    for (const PhaseResult& phase : material->phases) {
        EXPECT_FALSE(phase.present);
        EXPECT_EQ(phase.composition.values.size(), 3U);
    }
    material->forgetOwner();
}

TEST_F(HostilePackage, ATwoPhaseWriteBeforeAnyRequestIsIgnored) {
    material->property = nullptr;
    material->propertyName.clear();
    material->mode = CalculationMode::TwoPhase;
    EXPECT_EQ(setTwoPhase(nullptr, texts({nullptr, nullptr}), nullptr, reals({1.0})), "ok");
    EXPECT_THAT(material->result, IsEmpty());
}

TEST_F(HostilePackage, AMaterialWithoutOwnerRefusesWhatNeedsOne) {
    const std::string gone = "The material object is no longer in use by its property package";
    material->forgetOwner();
    EXPECT_EQ(getPresentPhases(), refused("GetPresentPhases", gone));
    EXPECT_EQ(set(reals({1.0})), "ok") << "a single number needs no owner";
    requestSinglePhase(L"fugacityCoefficient", L"Liquid");
    EXPECT_EQ(setSinglePhase(L"fugacityCoefficient", L"Liquid", nullptr, reals({1.0})),
              refused("SetSinglePhaseProp", gone));
    EXPECT_EQ(getSinglePhase(L"fraction", L"Liquid", L"mass"), refused("GetSinglePhaseProp", gone));
    LONG count = 0;
    EXPECT_EQ(told(material->GetNumCompounds(&count)),
              "80040501 MaterialObject11::GetNumCompounds of ICapeThermoCompounds: " + gone);
    com::variant lists[6];
    EXPECT_EQ(
        told(material->GetCompoundList(&lists[0], &lists[1], &lists[2], &lists[3], &lists[4], &lists[5])),
        "80040501 MaterialObject11::GetCompoundList of ICapeThermoCompounds: " + gone);
    requestEquilibrium({L"pressure", 1e5, Basis_Undefined}, {L"enthalpy", 1.0, Basis_Mole});
    material->setComposition({0.1, 0.1, 0.8}, Basis_Mole);
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), refused("GetOverallProp", gone));
    EXPECT_EQ(getSinglePhase(L"phaseFraction", L"Vapor", L"mole"), refused("GetSinglePhaseProp", gone));
    EXPECT_EQ(setPresent(texts({L"Vapor"})), refused("SetPresentPhases", gone));
    EXPECT_EQ(setSinglePhase(L"temperature", L"Vapor", nullptr, reals({1.0})),
              refused("SetSinglePhaseProp", gone));
}

} // namespace

} // namespace quorvane
