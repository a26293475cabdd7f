// The scripted package does as it is told, and what it says of itself is true.
#include "com/com_ptr.h"
#include "tests/scripted_package/registered.h"
#include "tests/scripted_package/script_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

namespace {

using scripted::narrow;
using scripted::textOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto ecapeComputation = static_cast<HRESULT>(ECapeComputationHR);

class ScriptedPackageTest : public testing::Test {
  protected:
    ScriptedPackageTest() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~ScriptedPackageTest() override { CoUninitialize(); }
    void TearDown() override { EXPECT_EQ(scripted::liveObjects(), 0) << "objects were not released"; }

    template <typename I>
    static com::com_ptr<I> create(REFCLSID clsid = scripted::packageInProcess) {
        com::com_ptr<IDispatch> object;
        EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_ALL, IID_IDispatch, object.putVoid()), S_OK);
        return object.tryAs<I>();
    }
    static std::string descriptionOf(IUnknown* object) {
        com::unique_bstr text;
        com::queryFor<ECapeUser>(object)->get_description(text.put());
        return narrow(com::viewOf(text));
    }
};

TEST_F(ScriptedPackageTest, TheRealCoCreateInstanceFindsIt) {
    const scripted::Package package;
    EXPECT_TRUE(create<ICapeThermoCompounds>());
    EXPECT_TRUE(create<IPersistStreamInit>());
}

TEST_F(ScriptedPackageTest, ItIsGoneWithItsRegistration) {
    { const scripted::Package package; }
    com::com_ptr<IDispatch> object;
    EXPECT_EQ(
        CoCreateInstance(scripted::packageInProcess, nullptr, CLSCTX_ALL, IID_IDispatch, object.putVoid()),
        REGDB_E_CLASSNOTREG);
}

TEST_F(ScriptedPackageTest, CountsItsLiveObjects) {
    const scripted::Package package;
    auto compounds = create<ICapeThermoCompounds>();
    EXPECT_EQ(scripted::liveObjects(), 1);
    const auto phases = compounds.tryAs<ICapeThermoPhases>();
    compounds.reset();
    EXPECT_EQ(scripted::liveObjects(), 1);
}

TEST_F(ScriptedPackageTest, AHealthyOneHasThreeCompoundsAndTwoPhases) {
    const scripted::Package package;
    const auto compounds = create<ICapeThermoCompounds>();
    com::variant lists[6];
    ASSERT_EQ(compounds->GetCompoundList(&lists[0], &lists[1], &lists[2], &lists[3], &lists[4], &lists[5]),
              S_OK);
    EXPECT_EQ(textOf(lists[0]), "[A1, B2, C3]");
    EXPECT_EQ(textOf(lists[1]), "[A, B, C]");
    EXPECT_EQ(textOf(lists[2]), "[Alpha, Beta, Gamma]");
    EXPECT_EQ(textOf(lists[3]), "[100, 200, 300]");
    EXPECT_EQ(textOf(lists[4]), "[10, 20, 40]");
    EXPECT_EQ(textOf(lists[5]), "[11-11-1, 22-22-2, 33-33-3]");
    com::variant labels, states, keys;
    ASSERT_EQ(compounds.tryAs<ICapeThermoPhases>()->GetPhaseList(&labels, &states, &keys), S_OK);
    EXPECT_EQ(textOf(labels), "[Vapor, Liquid]");
    EXPECT_EQ(textOf(states), "[Vapor, Liquid]");
    EXPECT_EQ(textOf(keys), "[null, null]");
}

TEST_F(ScriptedPackageTest, ConstantsComePropertyByProperty) {
    const scripted::Package package;
    const auto compounds = create<ICapeThermoCompounds>();
    const com::variant names = scripted::texts({L"criticalPressure", L"casRegistryNumber"});
    const com::variant ids = scripted::texts({L"C3", L"A1"});
    com::variant values;
    ASSERT_EQ(compounds->GetCompoundConstant(names, ids, &values), S_OK);
    EXPECT_EQ(textOf(values), "[20030, 20010, 33-33-3, 11-11-1]");
}

TEST_F(ScriptedPackageTest, TemperatureDependentValuesShowTheTemperature) {
    const scripted::Package package;
    const auto compounds = create<ICapeThermoCompounds>();
    const com::variant names = scripted::texts({L"vaporPressure"});
    com::variant values;
    ASSERT_EQ(compounds->GetTDependentProperty(names, 350.0, com::variant{}, &values), S_OK);
    EXPECT_EQ(textOf(values), "[10010.35, 10020.35, 10030.35]");
}

TEST_F(ScriptedPackageTest, PressureDependentValuesShowThePressure) {
    const scripted::Package package;
    const auto compounds = create<ICapeThermoCompounds>();
    const com::variant names = scripted::texts({L"boilingPointTemperature"});
    com::variant values;
    ASSERT_EQ(compounds->GetPDependentProperty(names, 1e6, com::variant{}, &values), S_OK);
    EXPECT_EQ(textOf(values), "[10010.001, 10020.001, 10030.001]");
}

TEST_F(ScriptedPackageTest, FugacityCoefficientsComeOnlyAsAskedFor) {
    const scripted::Package package;
    const auto routine = create<ICapeThermoPropertyRoutine>();
    const com::unique_bstr label = com::makeBstr(L"Liquid");
    const com::variant moles = scripted::reals({1.0, 1.0, 1.0});
    com::variant lnPhi, dT, dP, dn;
    ASSERT_EQ(routine->CalcAndGetLnPhi(label.get(), 300.0, 1e6, moles,
                                       CAPE_LOG_FUGACITY_COEFFICIENTS | CAPE_P_DERIVATIVE, &lnPhi, &dT, &dP,
                                       &dn),
              S_OK);
    EXPECT_EQ(textOf(lnPhi), "[52010.301, 52020.301, 52030.301]");
    EXPECT_EQ(textOf(dP), "[252010.301, 252020.301, 252030.301]");
    EXPECT_EQ(textOf(dT), "empty");
    EXPECT_EQ(textOf(dn), "empty");
}

TEST_F(ScriptedPackageTest, ACalculationWithoutMaterialIsOutOfOrder) {
    const scripted::Package package;
    const auto routine = create<ICapeThermoPropertyRoutine>();
    const com::variant names = scripted::texts({L"enthalpy"});
    const com::unique_bstr label = com::makeBstr(L"Vapor");
    EXPECT_EQ(routine->CalcSinglePhaseProp(names, label.get()), static_cast<HRESULT>(ECapeBadInvOrderHR));
    EXPECT_EQ(descriptionOf(routine.get()), "No material is set");
}

TEST_F(ScriptedPackageTest, FailsWithCodeAndText) {
    const scripted::Package package;
    package->fails("GetNumPhases", ecapeComputation, L"No phases today", L"PhaseTrouble");
    const auto phases = create<ICapeThermoPhases>();
    LONG count = 7;
    EXPECT_EQ(phases->GetNumPhases(&count), ecapeComputation);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(descriptionOf(phases.get()), "No phases today");
    com::unique_bstr name;
    ASSERT_EQ(phases.tryAs<ECapeRoot>()->get_name(name.put()), S_OK);
    EXPECT_EQ(narrow(com::viewOf(name)), "PhaseTrouble");
    com::unique_bstr operation;
    ASSERT_EQ(phases.tryAs<ECapeUser>()->get_operation(operation.put()), S_OK);
    EXPECT_EQ(narrow(com::viewOf(operation)), "GetNumPhases");
}

TEST_F(ScriptedPackageTest, RecoversWhenTold) {
    const scripted::Package package;
    package->fails("GetNumPhases", E_FAIL);
    const auto phases = create<ICapeThermoPhases>();
    LONG count = 0;
    EXPECT_EQ(phases->GetNumPhases(&count), E_FAIL);
    package->recovers("GetNumPhases");
    EXPECT_EQ(phases->GetNumPhases(&count), S_OK);
    EXPECT_EQ(count, 2);
}

TEST_F(ScriptedPackageTest, AnswersWithAnyValue) {
    const scripted::Package package;
    package->answers("GetPhaseList", scripted::textsFrom(3, {L"a", nullptr}), scripted::realBlock(2));
    const auto phases = create<ICapeThermoPhases>();
    com::variant labels, states, keys;
    ASSERT_EQ(phases->GetPhaseList(&labels, &states, &keys), S_OK);
    EXPECT_EQ(textOf(labels), "[a, null]");
    EXPECT_EQ(labels.parray->rgsabound[0].lLbound, 3);
    EXPECT_EQ(SafeArrayGetDim(states.parray), 2U);
    EXPECT_EQ(textOf(keys), "empty");
}

TEST_F(ScriptedPackageTest, AnAnswerOfTheWrongTypeIsAFaultOfTheTest) {
    const scripted::Package package;
    package->answers("GetNumPhases", com::variant{1.5});
    const auto phases = create<ICapeThermoPhases>();
    LONG count = 0;
    EXPECT_EQ(phases->GetNumPhases(&count), E_UNEXPECTED);
    EXPECT_EQ(descriptionOf(phases.get()), "The script's answer has not the type of the method's output");
}

TEST_F(ScriptedPackageTest, AHookMayDoItsOwnAndThenGoOnAsUsual) {
    const scripted::Package package;
    std::string seen;
    package->hook("GetPhaseInfo", [&](scripted::Call& call) {
        seen = textOf(call.in[1]);
        return call.healthy();
    });
    const auto phases = create<ICapeThermoPhases>();
    const com::unique_bstr label = com::makeBstr(L"liquid");
    const com::unique_bstr attribute = com::makeBstr(L"StateOfAggregation");
    com::variant state;
    ASSERT_EQ(phases->GetPhaseInfo(label.get(), attribute.get(), &state), S_OK);
    EXPECT_EQ(seen, "StateOfAggregation");
    EXPECT_EQ(textOf(state), "Liquid");
}

TEST_F(ScriptedPackageTest, OmitsAnyInterface) {
    const scripted::Package package;
    package->omits(__uuidof(ICapeThermoPhases));
    package->omits(__uuidof(IPersistStream));
    const auto compounds = create<ICapeThermoCompounds>();
    EXPECT_FALSE(compounds.tryAs<ICapeThermoPhases>());
    EXPECT_FALSE(compounds.tryAs<IPersistStream>());
    EXPECT_TRUE(compounds.tryAs<IPersistStreamInit>());
}

TEST_F(ScriptedPackageTest, RecordsEveryCallWithItsArguments) {
    const scripted::Package package;
    const auto routine = create<ICapeThermoEquilibriumRoutine>();
    const com::variant first = scripted::texts({L"temperature", nullptr, L"overall"});
    const com::variant second = scripted::texts({L"pressure", nullptr, L"overall"});
    VARIANT_BOOL supported = VARIANT_FALSE;
    ASSERT_EQ(routine->CheckEquilibriumSpec(first, second, nullptr, &supported), S_OK);
    EXPECT_EQ(supported, VARIANT_TRUE);
    const auto context = routine.tryAs<ICapeThermoMaterialContext>();
    ASSERT_EQ(context->SetMaterial(nullptr), S_OK);
    EXPECT_THAT(
        package->calls(),
        ElementsAre("CheckEquilibriumSpec([temperature, null, overall], [pressure, null, overall], null)",
                    "SetMaterial(false)"));
    EXPECT_EQ(package->count("SetMaterial"), 1U);
    package->forgetCalls();
    EXPECT_THAT(package->calls(), IsEmpty());
}

TEST_F(ScriptedPackageTest, SavesWhatItLoaded) {
    const scripted::Package package;
    const auto persist = create<IPersistStream>();
    com::com_ptr<IStream> stream;
    ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()), S_OK);
    package->model.state = std::string(1000, 'x') + "end";
    ASSERT_EQ(persist->Save(stream.get(), TRUE), S_OK);
    package->model.state.clear();
    ASSERT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
    ASSERT_EQ(persist->Load(stream.get()), S_OK);
    EXPECT_EQ(package->model.state, std::string(1000, 'x') + "end");
    CLSID clsid{};
    ASSERT_EQ(persist->GetClassID(&clsid), S_OK);
    EXPECT_EQ(clsid, scripted::packageInProcess);
}

TEST_F(ScriptedPackageTest, TheManagerHandsOutItsPackages) {
    const scripted::Package package;
    const scripted::Manager manager{package};
    const auto object = create<ICapeThermoPropertyPackageManager>(scripted::managerInProcess);
    com::variant names;
    ASSERT_EQ(object->GetPropertyPackageList(&names), S_OK);
    EXPECT_EQ(textOf(names), "[First, Second]");
    const com::unique_bstr second = com::makeBstr(L"SECOND");
    com::com_ptr<IDispatch> created;
    ASSERT_EQ(object->GetPropertyPackage(second.get(), created.put()), S_OK);
    EXPECT_TRUE(created.tryAs<ICapeThermoCompounds>());
    const com::unique_bstr third = com::makeBstr(L"Third");
    EXPECT_EQ(object->GetPropertyPackage(third.get(), created.put()),
              static_cast<HRESULT>(ECapeInvalidArgumentHR));
    EXPECT_EQ(descriptionOf(object.get()), "There is no package Third");
    EXPECT_THAT(manager->calls("GetPropertyPackage"),
                ElementsAre("GetPropertyPackage(SECOND)", "GetPropertyPackage(Third)"));
}

TEST(ScriptTextTest, AFailureHasCodeAndText) {
    const auto scripts = scripted::parseScripts(
        L"CalcEquilibrium=0x8004050B:Flash did not converge: no; GetPhaseList=0x80004005;"
        L"manager.GetPropertyPackage=0x80040501:none");
    const scripted::Failure* failure = scripts.package->failureOf("CalcEquilibrium");
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->code, ecapeComputation);
    EXPECT_EQ(failure->description, L"Flash did not converge: no");
    ASSERT_NE(scripts.package->failureOf("GetPhaseList"), nullptr);
    EXPECT_EQ(scripts.package->failureOf("GetPhaseList")->code, E_FAIL);
    EXPECT_EQ(scripts.package->failureOf("GetPropertyPackage"), nullptr);
    ASSERT_NE(scripts.manager->failureOf("GetPropertyPackage"), nullptr);
}

TEST(ScriptTextTest, SetsTheContents) {
    const auto scripts = scripted::parseScripts(L"compounds=Water:18.015,Oddity:nan;phases=Gas:Vapor;"
                                                L"enthalpy=Mole -1000,5;viscosity=None 1e-3;state=a b");
    const scripted::Model& model = scripts.package->model;
    ASSERT_EQ(model.compounds.size(), 2U);
    EXPECT_EQ(model.compounds[0].name, L"Water");
    EXPECT_EQ(model.compounds[0].molecularWeight, 18.015);
    EXPECT_NE(model.compounds[1].molecularWeight, model.compounds[1].molecularWeight);
    ASSERT_EQ(model.phases.size(), 1U);
    EXPECT_EQ(model.phases[0].label, L"Gas");
    EXPECT_EQ(model.calculated.at(L"enthalpy").basis, L"Mole");
    EXPECT_THAT(model.calculated.at(L"enthalpy").values, ElementsAre(-1000.0, 5.0));
    EXPECT_EQ(model.calculated.at(L"viscosity").basis, L"");
    EXPECT_EQ(model.state, "a b");
}

TEST(ScriptTextTest, AnswersAndOmits) {
    const auto scripts =
        scripted::parseScripts(L"GetConstPropList=texts a,,b;GetTDependentPropList=reals 1,2;"
                               L"GetTwoPhasePropList=empty;IPersistStream=none");
    EXPECT_EQ(textOf(scripts.package->answerOf("GetConstPropList")->at(0)), "[a, null, b]");
    EXPECT_EQ(textOf(scripts.package->answerOf("GetTDependentPropList")->at(0)), "[1, 2]");
    EXPECT_EQ(textOf(scripts.package->answerOf("GetTwoPhasePropList")->at(0)), "empty");
    EXPECT_TRUE(scripts.package->hides(__uuidof(IPersistStream)));
    EXPECT_FALSE(scripts.package->hides(__uuidof(IPersistStreamInit)));
}

TEST(ScriptTextTest, AnswersWithSeveralOutputsOfAnyShape) {
    const auto scripts = scripted::parseScripts(
        L"GetPhaseList=texts Gas,Oil & empty & text block 2;GetCompoundConstant=values 1.5,x,,2;"
        L"get_name=text A name;CalcEquilibrium=nothing;GetTDependentProperty=real block 3");
    const auto answer = [&](const char* method) {
        std::string texts;
        for (const com::variant& output : *scripts.package->answerOf(method)) {
            texts += textOf(output) + ";";
        }
        return texts;
    };
    EXPECT_EQ(answer("GetPhaseList"), "[Gas, Oil];empty;[x, x, x, x];");
    EXPECT_EQ(answer("GetCompoundConstant"), "[1.5, x, , 2];");
    EXPECT_EQ(answer("get_name"), "A name;");
    EXPECT_EQ(answer("CalcEquilibrium"), "");
    EXPECT_EQ(answer("GetTDependentProperty"), "[0, 0, 0, 0, 0, 0];");
}

TEST(ScriptTextTest, AnswersPartly) {
    const auto scripts = scripted::parseScripts(L"GetCompoundConstant=partly values 1,2");
    com::variant value;
    const scripted::Out out[] = {{&value, scripted::Out::Kind::Fresh}};
    scripted::Call call{"GetCompoundConstant", {}, out, nullptr, {}};
    EXPECT_EQ((*scripts.package->hookOf("GetCompoundConstant"))(call),
              static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR));
    EXPECT_EQ(textOf(value), "[1, 2]");
}

TEST(ScriptTextTest, ReportsAFlash) {
    const auto scripts =
        scripted::parseScripts(L"flash=overall 300 -,Gas 301 2e5 0.25 Mole 0.5 0.5 Mass,Oil - - - - - -");
    const scripted::Flash& flash = *scripts.package->model.flash;
    EXPECT_EQ(flash.temperature, 300.0);
    EXPECT_FALSE(flash.pressure);
    ASSERT_EQ(flash.phases.size(), 2U);
    const scripted::FlashPhase& gas = flash.phases[0];
    EXPECT_EQ(gas.label, L"Gas");
    EXPECT_EQ(gas.temperature, 301.0);
    EXPECT_EQ(gas.pressure, 2e5);
    EXPECT_EQ(gas.fraction, 0.25);
    EXPECT_EQ(gas.fractionBasis, L"Mole");
    EXPECT_THAT(*gas.composition, ElementsAre(0.5, 0.5));
    EXPECT_EQ(gas.compositionBasis, L"Mass");
    const scripted::FlashPhase& oil = flash.phases[1];
    EXPECT_FALSE(oil.temperature || oil.pressure || oil.fraction || oil.composition);
}

TEST(ScriptTextTest, RejectsWhatItCannotUnderstand) {
    for (const wchar_t* text :
         {L"flash=Gas 1", L"flash=Gas 1 1 hot Mole 1 Mole", L"Method=real block two", L"nonsense", L"=1",
          L"Method=12", L"INothing=none", L"compounds=Water", L"compounds=Water:wet", L"enthalpy=1000",
          L"enthalpy=Mole x", L"Load=0x8004050Z"}) {
        try {
            scripted::parseScripts(text);
            ADD_FAILURE() << narrow(text) << " was accepted";
        } catch (const std::invalid_argument& failure) {
            EXPECT_EQ(failure.what(), "The script has a setting that cannot be understood: " + narrow(text));
        }
    }
}

} // namespace
