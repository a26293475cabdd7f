// Which calls of the package and of its manager are made while memory runs out.
#include "packages/peng_robinson/com/identity.h"
#include "tests/leak_gate/imported_calls.h"
#include "tests/packages/peng_robinson/com/memory_failure.h"
#include "tests/src/com/type_information.h"

#include <array>
#include <gmock/gmock.h>
#include <thread>

namespace peng_robinson::test {
namespace {

using leak_gate::Refusal;

com::unique_bstr bstr(const wchar_t* text) { return com::makeBstr(text); }

/// A getter of one value.
template <typename Interface, auto getter>
Answer got(Stage& stage) {
    return [&]<typename Value>(HRESULT (STDMETHODCALLTYPE Interface::*get)(Value*)) -> Answer {
        if constexpr (std::is_same_v<Value, BSTR>) {
            com::unique_bstr out;
            const HRESULT code = (stage.of<Interface>().get()->*get)(out.put());
            return {code, plain(com::viewOf(out))};
        } else if constexpr (std::is_same_v<Value, VARIANT>) {
            com::variant out;
            const HRESULT code = (stage.of<Interface>().get()->*get)(&out);
            return {code, shown(out)};
        } else {
            Value out{};
            const HRESULT code = (stage.of<Interface>().get()->*get)(&out);
            return {code, std::to_string(out)};
        }
    }(getter);
}

/// A setter of a text.
template <auto setter>
Answer put(Stage& stage) {
    return {(stage.of<ICapeIdentification>().get()->*setter)(bstr(L"a text for the package").get())};
}

/// A package of the manager.
Answer made(const Stage& stage, const wchar_t* name) {
    com::com_ptr<IDispatch> out;
    const HRESULT code = stage.managing()->GetPropertyPackage(bstr(name).get(), out.put());
    return {code, out ? "object" : "-"};
}

const Case cases[] = {
    {"ICapeIdentification", "get_ComponentName",
     &got<ICapeIdentification, &ICapeIdentification::get_ComponentName>},
    {"ICapeIdentification", "get_ComponentDescription",
     &got<ICapeIdentification, &ICapeIdentification::get_ComponentDescription>},
    {"ECapeRoot", "get_name", &got<ECapeRoot, &ECapeRoot::get_name>},
    {"ECapeUser", "get_code", &got<ECapeUser, &ECapeUser::get_code>},
    {"ECapeUser", "get_description", &got<ECapeUser, &ECapeUser::get_description>},
    {"ECapeUser", "get_scope", &got<ECapeUser, &ECapeUser::get_scope>},
    {"ECapeUser", "get_interfaceName", &got<ECapeUser, &ECapeUser::get_interfaceName>},
    {"ECapeUser", "get_operation", &got<ECapeUser, &ECapeUser::get_operation>},
    {"ECapeUser", "get_moreInfo", &got<ECapeUser, &ECapeUser::get_moreInfo>},
    {"ECapeBadArgument", "get_position", &got<ECapeBadArgument, &ECapeBadArgument::get_position>},
    {"ECapeBoundaries", "get_LowerBound", &got<ECapeBoundaries, &ECapeBoundaries::get_LowerBound>},
    {"ECapeBoundaries", "get_UpperBound", &got<ECapeBoundaries, &ECapeBoundaries::get_UpperBound>},
    {"ECapeBoundaries", "get_value", &got<ECapeBoundaries, &ECapeBoundaries::get_value>},
    {"ECapeBoundaries", "get_Type", &got<ECapeBoundaries, &ECapeBoundaries::get_Type>},
    {"ECapeBadInvOrder", "get_requestedOperation",
     &got<ECapeBadInvOrder, &ECapeBadInvOrder::get_requestedOperation>},
    {"ICapeThermoCompounds", "GetConstPropList",
     &got<ICapeThermoCompounds, &ICapeThermoCompounds::GetConstPropList>},
    {"ICapeThermoCompounds", "GetNumCompounds",
     &got<ICapeThermoCompounds, &ICapeThermoCompounds::GetNumCompounds>},
    {"ICapeThermoCompounds", "GetPDependentPropList",
     &got<ICapeThermoCompounds, &ICapeThermoCompounds::GetPDependentPropList>},
    {"ICapeThermoCompounds", "GetTDependentPropList",
     &got<ICapeThermoCompounds, &ICapeThermoCompounds::GetTDependentPropList>},
    {"ICapeThermoPhases", "GetNumPhases", &got<ICapeThermoPhases, &ICapeThermoPhases::GetNumPhases>},
    {"ICapeThermoPropertyRoutine", "GetSinglePhasePropList",
     &got<ICapeThermoPropertyRoutine, &ICapeThermoPropertyRoutine::GetSinglePhasePropList>},
    {"ICapeThermoPropertyRoutine", "GetTwoPhasePropList",
     &got<ICapeThermoPropertyRoutine, &ICapeThermoPropertyRoutine::GetTwoPhasePropList>},
    {"ICapeThermoUniversalConstant", "GetUniversalConstantList",
     &got<ICapeThermoUniversalConstant, &ICapeThermoUniversalConstant::GetUniversalConstantList>},
    {"ICapeIdentification", "put_ComponentName", &put<&ICapeIdentification::put_ComponentName>},
    {"ICapeIdentification", "put_ComponentDescription", &put<&ICapeIdentification::put_ComponentDescription>},
    {"ICapeUtilities", "get_parameters",
     [](Stage& stage) -> Answer {
         com::com_ptr<IDispatch> out;
         const HRESULT code = stage.of<ICapeUtilities>()->get_parameters(out.put());
         return {code, out ? "object" : "-"};
     }},
    {"ICapeUtilities", "put_simulationContext",
     [](Stage& stage) -> Answer {
         return {stage.of<ICapeUtilities>()->put_simulationContext(stage.material->self()), {}};
     }},
    {"ICapeUtilities", "Initialize",
     [](Stage& stage) -> Answer {
         return {stage.of<ICapeUtilities>()->Initialize(), {}};
     }},
    {"ICapeUtilities", "Terminate",
     [](Stage& stage) -> Answer {
         return {stage.of<ICapeUtilities>()->Terminate(), {}};
     }},
    {"ICapeUtilities", "Edit", // without a screen
     [](Stage& stage) -> Answer {
         return {stage.of<ICapeUtilities>()->Edit(), {}};
     }},
    {"ICapeThermoCompounds", "GetCompoundConstant",
     [](Stage& stage) -> Answer {
         com::variant out;
         const HRESULT code = stage.of<ICapeThermoCompounds>()->GetCompoundConstant(
             texts({L"casRegistryNumber", L"criticalTemperature"}), texts({L"methane", L"propane"}), &out);
         return {code, shown(out)};
     }},
    {"ICapeThermoCompounds", "GetCompoundList",
     [](Stage& stage) -> Answer {
         std::array<com::variant, 6> out;
         const HRESULT code = stage.of<ICapeThermoCompounds>()->GetCompoundList(out.data(), &out[1], &out[2],
                                                                                &out[3], &out[4], &out[5]);
         std::string all;
         for (const com::variant& list : out) {
             all += shown(list) + "\n";
         }
         return {code, all};
     }},
    {"ICapeThermoCompounds", "GetPDependentProperty",
     [](Stage& stage) -> Answer {
         com::variant out;
         const HRESULT code = stage.of<ICapeThermoCompounds>()->GetPDependentProperty(
             texts({L"boilingPointTemperature"}), 1e5, texts({L"methane", L"propane"}), &out);
         return {code, shown(out)};
     }},
    {"ICapeThermoCompounds", "GetTDependentProperty",
     [](Stage& stage) -> Answer {
         com::variant out;
         const HRESULT code = stage.of<ICapeThermoCompounds>()->GetTDependentProperty(
             texts({L"vaporPressure", L"idealGasEnthalpy"}), 150.0, texts({L"methane", L"propane"}), &out);
         return {code, shown(out)};
     }},
    {"ICapeThermoPhases", "GetPhaseInfo",
     [](Stage& stage) -> Answer {
         com::variant out;
         const HRESULT code = stage.of<ICapeThermoPhases>()->GetPhaseInfo(
             bstr(L"Liquid").get(), bstr(L"StateOfAggregation").get(), &out);
         return {code, shown(out)};
     }},
    {"ICapeThermoPhases", "GetPhaseList",
     [](Stage& stage) -> Answer {
         com::variant labels, states, keys;
         const HRESULT code = stage.of<ICapeThermoPhases>()->GetPhaseList(&labels, &states, &keys);
         return {code, shown(labels) + shown(states) + shown(keys)};
     }},
    {"ICapeThermoPropertyRoutine", "CalcAndGetLnPhi",
     [](Stage& stage) -> Answer {
         com::variant lnPhi, byT, byP, byN;
         const HRESULT code = stage.of<ICapeThermoPropertyRoutine>()->CalcAndGetLnPhi(
             bstr(L"Vapor").get(), 280.0, 2e6, reals({1.0, 2.0}),
             CAPE_LOG_FUGACITY_COEFFICIENTS | CAPE_T_DERIVATIVE | CAPE_P_DERIVATIVE |
                 CAPE_MOLE_NUMBERS_DERIVATIVES,
             &lnPhi, &byT, &byP, &byN);
         return {code, shown(lnPhi) + shown(byT) + shown(byP) + shown(byN)};
     }},
    {"ICapeThermoPropertyRoutine", "CalcSinglePhaseProp",
     [](Stage& stage) -> Answer {
         const HRESULT code = stage.of<ICapeThermoPropertyRoutine>()->CalcSinglePhaseProp(
             texts({L"enthalpy", L"viscosity", L"fugacityCoefficient.Dmoles"}), bstr(L"Liquid").get());
         return {code, SUCCEEDED(code) ? stage.written(L"Liquid", L"enthalpy") +
                                             stage.written(L"Liquid", L"fugacityCoefficient.Dmoles")
                                       : ""};
     }},
    {"ICapeThermoPropertyRoutine", "CalcTwoPhaseProp",
     [](Stage& stage) -> Answer {
         const HRESULT code = stage.of<ICapeThermoPropertyRoutine>()->CalcTwoPhaseProp(
             texts({L"kvalue", L"surfaceTension"}), texts({L"Vapor", L"Liquid"}));
         return {code, {}};
     }},
    {"ICapeThermoPropertyRoutine", "CheckSinglePhasePropSpec",
     [](Stage& stage) -> Answer {
         VARIANT_BOOL out = VARIANT_FALSE;
         const HRESULT code = stage.of<ICapeThermoPropertyRoutine>()->CheckSinglePhasePropSpec(
             bstr(L"fugacityCoefficient.Dmoles").get(), bstr(L"Liquid").get(), &out);
         return {code, std::to_string(out)};
     }},
    {"ICapeThermoPropertyRoutine", "CheckTwoPhasePropSpec",
     [](Stage& stage) -> Answer {
         VARIANT_BOOL out = VARIANT_FALSE;
         const HRESULT code = stage.of<ICapeThermoPropertyRoutine>()->CheckTwoPhasePropSpec(
             bstr(L"kvalue").get(), texts({L"Vapor", L"Liquid"}), &out);
         return {code, std::to_string(out)};
     }},
    {"ICapeThermoEquilibriumRoutine", "CalcEquilibrium",
     [](Stage& stage) -> Answer {
         const HRESULT code = stage.of<ICapeThermoEquilibriumRoutine>()->CalcEquilibrium(
             texts({L"temperature", L"", L"Overall"}), texts({L"pressure", L"", L"Overall"}),
             bstr(L"Unspecified").get());
         return {code, SUCCEEDED(code)
                           ? stage.written(L"Vapor", L"phaseFraction") + stage.written(L"Liquid", L"fraction")
                           : ""};
     }},
    {"ICapeThermoEquilibriumRoutine", "CheckEquilibriumSpec",
     [](Stage& stage) -> Answer {
         VARIANT_BOOL out = VARIANT_FALSE;
         const HRESULT code = stage.of<ICapeThermoEquilibriumRoutine>()->CheckEquilibriumSpec(
             texts({L"temperature", L"", L"Overall"}), texts({L"pressure", L"", L"Overall"}),
             bstr(L"Unspecified").get(), &out);
         return {code, std::to_string(out)};
     }},
    {"ICapeThermoUniversalConstant", "GetUniversalConstant",
     [](Stage& stage) -> Answer {
         com::variant out;
         const HRESULT code = stage.of<ICapeThermoUniversalConstant>()->GetUniversalConstant(
             bstr(L"molarGasConstant").get(), &out);
         return {code, shown(out)};
     }},
    {"ICapeThermoMaterialContext", "SetMaterial",
     [](Stage& stage) -> Answer {
         return {stage.of<ICapeThermoMaterialContext>()->SetMaterial(stage.material->self()), {}};
     }},
    {"ICapeThermoMaterialContext", "UnsetMaterial",
     [](Stage& stage) -> Answer {
         return {stage.of<ICapeThermoMaterialContext>()->UnsetMaterial(), {}};
     }},
    {"ICapeThermoPropertyPackageManager", "GetPropertyPackageList",
     [](Stage& stage) -> Answer {
         com::variant out;
         const HRESULT code = stage.managing()->GetPropertyPackageList(&out);
         return {code, shown(out)};
     }},
    {"ICapeThermoPropertyPackageManager", "GetPropertyPackage",
     [](Stage& stage) { return made(stage, L"Natural gas"); }},
    {"ICapeThermoPropertyPackageManager", "GetPropertyPackage",
     [](Stage& stage) { return made(stage, L"my gas"); }, "OfADefinition"},
    {"ICapeThermoPropertyPackageManager", "GetPropertyPackage",
     [](Stage& stage) { return made(stage, L"no gas"); }, "ThatDoesNotExist"},
    {"IPersistStreamInit", "GetClassID",
     [](Stage& stage) -> Answer {
         CLSID out{};
         const HRESULT code = stage.of<IPersistStreamInit>()->GetClassID(&out);
         return {code, out == packageClsid ? "the package" : "another"};
     }},
    {"IPersistStreamInit", "IsDirty",
     [](Stage& stage) -> Answer {
         return {stage.of<IPersistStreamInit>()->IsDirty(), {}};
     }},
    {"IPersistStreamInit", "InitNew",
     [](Stage& stage) -> Answer {
         return {stage.of<IPersistStreamInit>()->InitNew(), {}};
     }},
    {"IPersistStreamInit", "GetSizeMax",
     [](Stage& stage) -> Answer {
         ULARGE_INTEGER size{};
         const HRESULT code = stage.of<IPersistStreamInit>()->GetSizeMax(&size);
         return {code, std::to_string(size.QuadPart)};
     }},
    {"IPersistStreamInit", "Save",
     [](Stage& stage) -> Answer {
         stage.stream->bytes.clear();
         const HRESULT code = stage.of<IPersistStreamInit>()->Save(stage.stream.get(), TRUE);
         return {code, std::string{stage.stream->bytes.begin(), stage.stream->bytes.end()}};
     }},
    {"IPersistStreamInit", "Load",
     [](Stage& stage) -> Answer {
         stage.stream->position = 0;
         return {stage.of<IPersistStreamInit>()->Load(stage.stream.get()), {}};
     }},
    {"IClassFactory", "CreateInstance",
     [](Stage&) -> Answer {
         com::com_ptr<IClassFactory> factory;
         com::com_ptr<IDispatch> out;
         HRESULT code =
             PackageDll::instance().getClassObject(packageClsid, IID_IClassFactory, factory.putVoid());
         if (SUCCEEDED(code)) {
             code = factory->CreateInstance(nullptr, IID_IDispatch, out.putVoid());
         }
         return {code, out ? "object" : "-"};
     }},
    {"IDispatch", "Invoke",
     [](Stage& stage) -> Answer {
         wchar_t name[] = L"GetTDependentPropList";
         LPOLESTR names[] = {name};
         DISPID id = 0;
         DISPPARAMS none{};
         com::variant out;
         const auto late = stage.of<ICapeThermoCompounds>();
         EXCEPINFO failure{};
         HRESULT code = late->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
         if (SUCCEEDED(code)) {
             code = late->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &out, &failure,
                                 nullptr);
         }
         const com::unique_bstr source{failure.bstrSource};
         const com::unique_bstr description{failure.bstrDescription};
         const com::unique_bstr help{failure.bstrHelpFile};
         if (code == DISP_E_EXCEPTION) {
             code = failure.scode;
         }
         return {code, shown(out)};
     }},
};

/// Runs on a thread that has not been in the DLL before.
template <typename Body>
void onNewThread(const Body& body) {
    bool isSurvived = false;
    std::thread{[&] {
        body();
        isSurvived = true;
    }}.join();
    EXPECT_TRUE(isSurvived);
}

TEST(FirstFailure, OfAThreadIsSurvivedWithoutAnyMemory) {
    const leak_gate::Owner dll = packageDll();
    onNewThread([dll] {
        const Stage stage;
        com::variant out;
        {
            const Refusal refusal{dll, 1, Refusal::Extent::AllFromThereOn};
            EXPECT_EQ(stage.of<ICapeThermoCompounds>()->GetConstPropList(&out), noMemory);
        }
        EXPECT_EQ(stage.of<ICapeThermoCompounds>()->GetConstPropList(&out), S_OK);
    });
}
TEST(FirstFailure, IsThatThereIsNoMemoryForTheClassObject) {
    const leak_gate::Owner dll = packageDll();
    onNewThread([dll] {
        const auto get = [] {
            com::com_ptr<IClassFactory> factory;
            return PackageDll::instance().getClassObject(packageClsid, IID_IClassFactory, factory.putVoid());
        };
        {
            const Refusal refusal{dll, 1, Refusal::Extent::AllFromThereOn};
            EXPECT_EQ(get(), E_OUTOFMEMORY);
        }
        EXPECT_EQ(get(), S_OK);
    });
}

std::string nameOf(const testing::TestParamInfo<Case>& tested) {
    return testing::PrintToString(tested.param);
}

INSTANTIATE_TEST_SUITE_P(Method, MemoryFailure, testing::ValuesIn(cases), nameOf);

std::wstring pathOfTheDll() {
    std::wstring path(2048, L'\0');
    path.resize(GetModuleFileNameW(GetModuleHandleW(L"PengRobinson.dll"), path.data(),
                                   static_cast<DWORD>(path.size())));
    return path;
}

std::vector<std::string> untested(const com::com_ptr<IDispatch>& object) {
    com::com_ptr<ITypeLib> library;
    EXPECT_EQ(LoadTypeLib(pathOfTheDll().c_str(), library.put()), S_OK);
    std::vector<std::string> missing;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        com::com_ptr<ITypeInfo> info;
        EXPECT_EQ(library->GetTypeInfo(i, info.put()), S_OK);
        const std::string name = plain(quorvane::nameOf(info.get()));
        const TYPEATTR attributes = quorvane::attributesOf(info.get());
        com::com_ptr<IUnknown> face;
        if (attributes.typekind != TKIND_DISPATCH ||
            FAILED(object->QueryInterface(attributes.guid, face.putVoid()))) {
            continue;
        }
        for (const auto& method : quorvane::membersOf(
                 quorvane::typeNamed(library.get(), quorvane::nameOf(info.get()).c_str()).get())) {
            if (std::ranges::none_of(cases, [&](const Case& tested) {
                    return name == tested.interfaceName && plain(method.name) == tested.method;
                })) {
                missing.push_back(name + "." + plain(method.name));
            }
        }
    }
    return missing;
}

TEST(MemoryFailureCases, HaveEveryMethodOfThePackage) {
    EXPECT_THAT(untested(PackageDll::instance().createPackage()), testing::IsEmpty());
}
TEST(MemoryFailureCases, HaveEveryMethodOfTheManager) {
    EXPECT_THAT(untested(PackageDll::instance().createManager()), testing::IsEmpty());
}

TEST(MemoryFailureCases, RefuseEveryFunctionOfTheSystemThatAllocates) {
    packageDll();
    const std::vector<std::string> allocateNothing{"SafeArrayDestroy", "SafeArrayGetDim", "SafeArrayLock",
                                                   "SafeArrayUnlock",  "StringFromGUID2", "SysFreeString",
                                                   "SysStringLen",     "VariantClear",    "VariantInit"};
    EXPECT_THAT(leak_gate::unwatchedCalls(GetModuleHandleW(L"PengRobinson.dll")),
                testing::IsSubsetOf(allocateNothing));
}

} // namespace
} // namespace peng_robinson::test
