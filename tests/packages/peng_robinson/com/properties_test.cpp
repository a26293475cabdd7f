#include "packages/peng_robinson/eos/fluid.h"
#include "tests/packages/peng_robinson/com/test_material.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::test {
namespace {

constexpr const wchar_t* routine = L"ICapeThermoPropertyRoutine";

// Compounds in an order that is not the package's.
struct Properties : Package {
    com::com_ptr<TestMaterial> material = com::make<TestMaterial>(Texts{L"propane", L"methane", L"nitrogen"});
    eos::Fluid fluid{
        {eos::findCompound("propane"), eos::findCompound("methane"), eos::findCompound("nitrogen")}};
    Reals x{0.2, 0.7, 0.1};

    Properties() {
        EXPECT_EQ(context->SetMaterial(material->self()), S_OK);
        material->setConditions(L"Vapor", 280.0, 2e6, x);
        material->setConditions(L"Liquid", 280.0, 2e6, {0.9, 0.09, 0.01});
    }
    HRESULT calculate(const Texts& names, const wchar_t* label = L"Vapor") {
        const com::unique_bstr labelText = com::makeBstr(label);
        return properties->CalcSinglePhaseProp(texts(names), labelText.get());
    }
    HRESULT calculateTwo(const Texts& names, const Texts& labels = {L"Vapor", L"Liquid"}) {
        return properties->CalcTwoPhaseProp(texts(names), texts(labels));
    }
    bool isSupported(const wchar_t* property, const wchar_t* label) {
        const com::unique_bstr name = com::makeBstr(property), labelText = com::makeBstr(label);
        VARIANT_BOOL valid = VARIANT_FALSE;
        EXPECT_EQ(properties->CheckSinglePhasePropSpec(name.get(), labelText.get(), &valid), S_OK);
        return valid == VARIANT_TRUE;
    }
    bool isSupportedForTwo(const wchar_t* property, const Texts& labels) {
        const com::unique_bstr name = com::makeBstr(property);
        VARIANT_BOOL valid = VARIANT_FALSE;
        EXPECT_EQ(properties->CheckTwoPhasePropSpec(name.get(), texts(labels), &valid), S_OK);
        return valid == VARIANT_TRUE;
    }
    eos::PhaseProperties expected(const Reals& composition, eos::Root root) const {
        return fluid.properties(280.0, 2e6, composition, root);
    }
};

TEST_F(Properties, AreCalculatedInTheMaterialsOrderOfCompounds) {
    ASSERT_EQ(calculate({L"fugacityCoefficient", L"enthalpy", L"volume"}), S_OK);
    const eos::PhaseProperties gas = expected(x, eos::Root::vapor);
    const auto phi = material->phaseValue(L"Vapor", L"fugacityCoefficient");
    ASSERT_TRUE(phi && phi->values.size() == 3);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_DOUBLE_EQ(phi->values[i], std::exp(gas.state.lnPhi[i]));
    }
    EXPECT_EQ(phi->basis, L"");
    EXPECT_DOUBLE_EQ(material->scalar(L"Vapor", L"enthalpy"), gas.enthalpy);
    EXPECT_EQ(material->phaseValue(L"Vapor", L"enthalpy")->basis, L"Mole");
    EXPECT_DOUBLE_EQ(material->scalar(L"Vapor", L"volume"), gas.state.v);
}

TEST_F(Properties, OfTheLiquidComeFromTheLiquidRoot) {
    ASSERT_EQ(calculate({L"DENSITY"}, L"liquid"), S_OK);
    EXPECT_DOUBLE_EQ(material->scalar(L"Liquid", L"density"),
                     expected({0.9, 0.09, 0.01}, eos::Root::liquid).density());
}

TEST_F(Properties, EveryListedOneIsSupportedAndCalculated) {
    com::variant names;
    ASSERT_EQ(properties->GetSinglePhasePropList(&names), S_OK);
    const Texts list = textsOf(names);
    EXPECT_EQ(list.size(), 23u * 5u);
    for (const std::wstring& name : list) {
        SCOPED_TRACE(testing::PrintToString(name));
        EXPECT_TRUE(isSupported(name.c_str(), L"Vapor"));
        EXPECT_EQ(calculate({name}), S_OK);
        const auto value = material->phaseValue(L"Vapor", name);
        ASSERT_TRUE(value);
        EXPECT_TRUE(value->values.size() == 1 || value->values.size() == 3 || value->values.size() == 9);
        EXPECT_TRUE(std::ranges::all_of(value->values, [](double number) { return std::isfinite(number); }));
    }
}

TEST_F(Properties, UnsupportedOneIsRefusedByName) {
    EXPECT_FALSE(isSupported(L"activity", L"Vapor"));
    EXPECT_FALSE(isSupported(L"enthalpy", L"Solid"));
    EXPECT_FALSE(isSupported(L"enthalpy.Dvolume", L"Vapor"));
    EXPECT_FALSE(isSupported(L"enthalpy.Dmoles.Dmoles", L"Vapor"));
    expectFailure(calculate({L"enthalpy", L"activity"}), ECapeLimitedImplHR,
                  L"\"activity\" is not a single-phase property of this package", routine,
                  L"CalcSinglePhaseProp");
    EXPECT_FALSE(material->phaseValue(L"Vapor", L"enthalpy"));
}

TEST_F(Properties, UnknownPhaseIsRefused) {
    expectFailure(calculate({L"enthalpy"}, L"Solid"), ECapeInvalidArgumentHR,
                  L"\"Solid\" is not a phase of this package; its phases are Vapor and Liquid", routine,
                  L"CalcSinglePhaseProp");
}

TEST_F(Properties, NothingAskedForIsRefused) {
    expectFailure(calculate({}), ECapeInvalidArgumentHR, L"No property is asked for", routine,
                  L"CalcSinglePhaseProp");
}

TEST_F(Properties, FractionsThatAreNoneAreTheMaterialsFault) {
    material->nonsense[L"GetTPFraction"] = texts({L"a", L"b", L"c"});
    expectFailure(calculate({L"volume"}), ECapeFailedInitialisationHR,
                  L"The fractions of the material object must be a list of numbers", routine,
                  L"CalcSinglePhaseProp");
    material->nonsense[L"GetTPFraction"] = reals({0.5, 0.5});
    expectFailure(calculate({L"volume"}), ECapeFailedInitialisationHR,
                  L"The material object has not one fraction for each of its compounds in the phase "
                  L"\"Vapor\"",
                  routine, L"CalcSinglePhaseProp");
}

TEST_F(Properties, MissingConditionsAreReportedWithTheMaterialsReason) {
    const auto empty = com::make<TestMaterial>(Texts{L"methane"});
    ASSERT_EQ(context->SetMaterial(empty->self()), S_OK);
    expectFailure(
        calculate({L"enthalpy"}), ECapeFailedInitialisationHR,
        L"The material object has no value for temperature, pressure and composition of the phase \"Vapor\": "
        L"the test material says no",
        routine, L"CalcSinglePhaseProp");
}

TEST_F(Properties, ImpossibleConditionsAreOutOfBounds) {
    material->setConditions(L"Vapor", 0.0, 2e6, x);
    expectFailure(calculate({L"enthalpy"}), ECapeOutOfBoundsHR,
                  L"The temperature must be a positive number of kelvin", routine, L"CalcSinglePhaseProp");
    material->setConditions(L"Vapor", 280.0, -2e6, x);
    expectFailure(calculate({L"enthalpy"}), ECapeOutOfBoundsHR,
                  L"The pressure must be a positive number of pascal", routine, L"CalcSinglePhaseProp");
}

TEST_F(Properties, WrongCompositionsAreRefused) {
    material->setConditions(L"Vapor", 280.0, 2e6, {0.5, 0.5});
    expectFailure(
        calculate({L"enthalpy"}), ECapeFailedInitialisationHR,
        L"The material object has not one fraction for each of its compounds in the phase \"Vapor\"", routine,
        L"CalcSinglePhaseProp");
    material->setConditions(L"Vapor", 280.0, 2e6, {0.5, 0.6, -0.1});
    expectFailure(calculate({L"enthalpy"}), ECapeInvalidArgumentHR,
                  L"A composition cannot contain -0.1; every value must be zero or a positive number",
                  routine, L"CalcSinglePhaseProp");
}

TEST_F(Properties, MaterialThatRefusesTheResultIsNamed) {
    material->refusesWrites = true;
    expectFailure(
        calculate({L"enthalpy"}), ECapeUnknownHR,
        L"The material object does not accept enthalpy of the phase \"Vapor\": the test material says no",
        routine, L"CalcSinglePhaseProp");
}

// At such a pressure rounding leaves nothing between the volume and the covolume.
TEST_F(Properties, PressureAtWhichTheEquationGivesNoNumberIsNotBlamedOnTheCompound) {
    material = com::make<TestMaterial>(Texts{L"toluene"});
    material->setConditions(L"Vapor", 300.0, 1e30, {1.0});
    ASSERT_EQ(context->SetMaterial(material->self()), S_OK);
    expectFailure(calculate({L"entropy"}), ECapeThrmPropertyNotAvailableHR,
                  L"No value for entropy: the equation gives none at these conditions", routine,
                  L"CalcSinglePhaseProp");
}

TEST_F(Properties, NeedAMaterial) {
    ASSERT_EQ(context->UnsetMaterial(), S_OK);
    EXPECT_EQ(context->UnsetMaterial(), S_OK);
    expectFailure(calculate({L"enthalpy"}), ECapeBadInvOrderHR, L"No material is set; call SetMaterial first",
                  routine, L"CalcSinglePhaseProp");
    com::unique_bstr operation;
    ASSERT_EQ(object.tryAs<ECapeBadInvOrder>()->get_requestedOperation(operation.put()), S_OK);
    EXPECT_EQ(com::viewOf(operation), L"CalcSinglePhaseProp");
    expectFailure(calculateTwo({L"kvalue"}), ECapeBadInvOrderHR,
                  L"No material is set; call SetMaterial first", routine, L"CalcTwoPhaseProp");
}

TEST_F(Properties, MaterialIsReleasedWhenUnset) {
    EXPECT_EQ(context->UnsetMaterial(), S_OK);
    EXPECT_EQ(material->AddRef(), 2u);
    EXPECT_EQ(material->Release(), 1u);
}

TEST_F(Properties, KValuesAreFirstPhaseOverSecond) {
    ASSERT_EQ(calculateTwo({L"kvalue", L"logKvalue"}), S_OK);
    const eos::PhaseProperties gas = expected(x, eos::Root::vapor);
    const eos::PhaseProperties liquid = expected({0.9, 0.09, 0.01}, eos::Root::liquid);
    const Reals k = material->phaseValue(L"two", L"kvalue")->values;
    const Reals lnK = material->phaseValue(L"two", L"logKvalue")->values;
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_DOUBLE_EQ(lnK[i], liquid.state.lnPhi[i] - gas.state.lnPhi[i]);
        EXPECT_DOUBLE_EQ(k[i], std::exp(lnK[i]));
    }
    EXPECT_EQ(material->twoPhaseLabels, (Texts{L"Vapor", L"Liquid"}));
    ASSERT_EQ(calculateTwo({L"kvalues"}, {L"Liquid", L"Vapor"}), S_OK);
    EXPECT_DOUBLE_EQ(material->phaseValue(L"two", L"kvalues")->values[1], 1.0 / k[1]);
}

TEST_F(Properties, EveryListedTwoPhasePropertyIsCalculated) {
    com::variant names;
    ASSERT_EQ(properties->GetTwoPhasePropList(&names), S_OK);
    for (const std::wstring& name : textsOf(names)) {
        EXPECT_TRUE(isSupportedForTwo(name.c_str(), {L"Vapor", L"Liquid"}));
        ASSERT_EQ(calculateTwo({name}), S_OK);
        const Reals values = material->phaseValue(L"two", name)->values;
        const bool isTension = name.starts_with(L"surfaceTension");
        const bool byComposition = name.ends_with(L".DmolFraction") || name.ends_with(L".Dmoles");
        EXPECT_EQ(values.size(), (isTension ? 1u : 3u) * (byComposition ? 6u : 1u))
            << testing::PrintToString(name);
    }
}

TEST_F(Properties, TwoPhasePropertyNeedsTwoPhases) {
    EXPECT_FALSE(isSupportedForTwo(L"kvalue", {L"Vapor"}));
    EXPECT_FALSE(isSupportedForTwo(L"kvalue", {L"Vapor", L"Solid"}));
    EXPECT_FALSE(isSupportedForTwo(L"volume", {L"Vapor", L"Liquid"}));
    expectFailure(calculateTwo({L"kvalue"}, {L"Vapor"}), ECapeInvalidArgumentHR,
                  L"A two-phase property needs two phase labels", routine, L"CalcTwoPhaseProp");
    expectFailure(calculateTwo({L"kvalue"}, {L"Vapor", L"VAPOR"}), ECapeInvalidArgumentHR,
                  L"A two-phase property needs two different phases", routine, L"CalcTwoPhaseProp");
    expectFailure(calculateTwo({L"kvalue", L"volume"}), ECapeLimitedImplHR,
                  L"\"volume\" is not a two-phase property of this package", routine, L"CalcTwoPhaseProp");
}

struct LnPhi : Properties {
    com::variant lnPhi, byT, byP, byN;

    HRESULT calculate(int flags, const Reals& moles, double T = 280.0, double P = 2e6) {
        const com::unique_bstr label = com::makeBstr(L"Vapor");
        return properties->CalcAndGetLnPhi(label.get(), T, P, reals(moles), flags, &lnPhi, &byT, &byP, &byN);
    }
};

TEST_F(LnPhi, WithAllDerivatives) {
    ASSERT_EQ(calculate(15, {0.4, 1.4, 0.2}), S_OK);
    const eos::PhaseState gas =
        fluid.model().at(280.0).phase(2e6, x, eos::Root::vapor, {.thermal = true, .moles = true});
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(realsOf(lnPhi)[i], gas.lnPhi[i], 1e-14);
        EXPECT_NEAR(realsOf(byT)[i], gas.dlnPhi_dT[i], 1e-16);
        EXPECT_NEAR(realsOf(byP)[i], gas.dlnPhi_dP[i], 1e-20);
    }
    ASSERT_EQ(realsOf(byN).size(), 9u);
    EXPECT_NEAR(realsOf(byN)[1], gas.dlnPhi_dn[1] / 2.0, 1e-15); // two moles in all
}

TEST_F(LnPhi, OnlyWhatTheFlagsAskFor) {
    byN = com::variant{1.0};
    ASSERT_EQ(calculate(CAPE_LOG_FUGACITY_COEFFICIENTS, x), S_OK);
    EXPECT_EQ(realsOf(lnPhi).size(), 3u);
    EXPECT_EQ(byT.vt, VT_EMPTY);
    EXPECT_EQ(byP.vt, VT_EMPTY);
    EXPECT_EQ(byN.vt, VT_EMPTY);
}

TEST_F(LnPhi, WrongArgumentsAreRefused) {
    expectFailure(calculate(1, {0.5, 0.5}), ECapeInvalidArgumentHR,
                  L"The mole numbers must be one for each compound of the material", routine,
                  L"CalcAndGetLnPhi");
    expectFailure(calculate(16, x), ECapeInvalidArgumentHR, L"The flags are a sum of 1, 2, 4 and 8", routine,
                  L"CalcAndGetLnPhi");
    expectFailure(calculate(1, x, -280.0), ECapeOutOfBoundsHR,
                  L"The temperature must be a positive number of kelvin", routine, L"CalcAndGetLnPhi");
    ASSERT_EQ(context->UnsetMaterial(), S_OK);
    expectFailure(calculate(1, x), ECapeBadInvOrderHR, L"No material is set; call SetMaterial first", routine,
                  L"CalcAndGetLnPhi");
}

struct SettingMaterials : Package {
    void expectRefused(const Texts& ids, eCapeErrorInterfaceHR code, const std::wstring& message) {
        const auto material = com::make<TestMaterial>(ids);
        expectFailure(context->SetMaterial(material->self()), code, message, L"ICapeThermoMaterialContext",
                      L"SetMaterial");
    }
};

TEST_F(SettingMaterials, UnknownCompoundIsRefused) {
    expectRefused({L"methane", L"phlogiston"}, ECapeFailedInitialisationHR,
                  L"The compound \"phlogiston\" of the material object is not in this package");
}

TEST_F(SettingMaterials, CompoundsMustBeThereOnce) {
    expectRefused({}, ECapeFailedInitialisationHR, L"The material object has no compounds");
    expectRefused({L"methane", L"Methane"}, ECapeFailedInitialisationHR,
                  L"The material object has the compound \"Methane\" twice");
}

TEST_F(SettingMaterials, ListThatIsNoListOfCompoundsIsTheMaterialsFault) {
    const auto material = com::make<TestMaterial>(Texts{L"methane"});
    material->nonsense[L"GetCompoundList"] = reals({1.0});
    expectFailure(context->SetMaterial(material->self()), ECapeFailedInitialisationHR,
                  L"The compounds of the material object must be a list of texts",
                  L"ICapeThermoMaterialContext", L"SetMaterial");
}

TEST_F(SettingMaterials, OtherObjectsAreNoMaterials) {
    expectFailure(context->SetMaterial(nullptr), ECapeInvalidArgumentHR, L"The material object is missing",
                  L"ICapeThermoMaterialContext", L"SetMaterial");
    expectFailure(context->SetMaterial(object.get()), ECapeInvalidArgumentHR,
                  L"The object is no material object: it has no ICapeThermoMaterial",
                  L"ICapeThermoMaterialContext", L"SetMaterial");
    short position = 0;
    ASSERT_EQ(object.tryAs<ECapeBadArgument>()->get_position(&position), S_OK);
    EXPECT_EQ(position, 1);
}

} // namespace
} // namespace peng_robinson::test
