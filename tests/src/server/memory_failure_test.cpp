// Which calls are made while memory runs out.
#include "tests/leak_gate/imported_calls.h"
#include "tests/src/com/type_information.h"
#include "tests/src/server/memory_failure.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <thread>

using namespace tests;
using leak_gate::Refusal;

namespace {

std::string nameOf(const testing::TestParamInfo<MemoryFailureCase>& tested) { return tested.param.name; }

com::unique_bstr bstr(const wchar_t* text) { return com::makeBstr(text); }

// Of 5 KB, in which compression finds something to do.
void keepALargeState(scripted::Script& package) {
    package.model.state.clear();
    for (int i = 0; package.model.state.size() < 5000; ++i) {
        package.model.state += "parameter " + std::to_string(i * i) + ";";
    }
}

std::string persist(MemoryFailure& test) {
    return test.service([&](com::variant& out) { return test.addIn->Persist(test.book(), &out); });
}

std::string depersist(MemoryFailure& test) {
    return test.service([&](com::variant&) { return test.addIn->Depersist(test.book(), test.savedTable); });
}

using Arguments = std::vector<com::variant>;

template <typename... Values>
Arguments arguments(Values&&... values) {
    Arguments given;
    (given.push_back(std::forward<Values>(values)), ...);
    return given;
}

template <HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*list)(IUnknown*, BSTR, VARIANT*)>
std::string listOf(MemoryFailure& test) {
    const auto name = bstr(L"P");
    return test.service(
        [&](com::variant& out) { return ((*test.addIn).*list)(test.book(), name.get(), &out); });
}

const MemoryFailureCase functions[] = {
    {"CapeOpenPackageNames", [](MemoryFailure& test) { return test.function(L"CapeOpenPackageNames", {}); }},
    {"CapeOpenUnitOfMeasure",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenUnitOfMeasure", arguments(text(L"enthalpy"), text(L"mass")));
     }},
    {"CapeOpenCompounds",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenCompounds", arguments(text(L"P"), text(L"vertical")));
     }},
    {"CapeOpenPhases",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenPhases", arguments(text(L"P"), cell(text(L"horizontal"))));
     }},
    {"CapeOpenCompoundConstant",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenCompoundConstant", arguments(text(L"P"), text(L"casRegistryNumber")));
     }},
    {"CapeOpenCompoundConstantOfOneCompound",
     [](MemoryFailure& test) {
         return test.function(
             L"CapeOpenCompoundConstant",
             arguments(text(L"P"), text(L"criticalTemperature"), text(L"mole"), omitted(), text(L"Beta")));
     }},
    {"CapeOpenTemperatureDependentProperty",
     [](MemoryFailure& test) {
         return test.function(
             L"CapeOpenTemperatureDependentProperty",
             arguments(text(L"P"), text(L"idealGasEnthalpy"), cell(number(300.0)), text(L"mass")));
     }},
    {"CapeOpenMixtureProperty",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenMixtureProperty",
                              arguments(text(L"P"), text(L"fugacityCoefficient.Dmoles"), text(L"Liquid"),
                                        number(300.0), number(1e5), cells({1.0, 1.0, 2.0}), text(L"mass")));
     }},
    {"CapeOpenCompoundsOfAPackageNamedInACell",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenCompounds", arguments(cell(text(L"P")), text(L"vertical")));
     }},
    {"CapeOpenCompoundsOfAPackageNamedByANumber",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenCompounds", arguments(number(12.5), text(L"vertical")));
     }},
    {"CapeOpenCompoundsOfAPackageNamedByCells",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenCompounds", arguments(cells({1.0, 2.0}), text(L"vertical")));
     }},
    {"CapeOpenMixturePropertyOfACompositionOfTexts",
     [](MemoryFailure& test) {
         return test.function(
             L"CapeOpenMixtureProperty",
             arguments(text(L"P"), text(L"enthalpy"), text(L"Liquid"), number(300.0), number(1e5),
                       range(sheet::excel::Range::row(text(L"1.0"), text(L"1"), text(L"2.5")))));
     }},
    {"CapeOpenTwoPhaseProperty",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenTwoPhaseProperty",
                              arguments(text(L"P"), text(L"kvalue"), text(L"Vapor"), text(L"Liquid"),
                                        number(300.0), number(1e5), cells({1.0, 1.0, 2.0}),
                                        cells({2.0, 1.0, 1.0}), text(L"mass")));
     }},
    {"CapeOpenPhaseEquilibrium",
     [](MemoryFailure& test) {
         return test.function(L"CapeOpenPhaseEquilibrium",
                              arguments(text(L"P"), cells({1.0, 1.0, 2.0}), text(L"temperature"),
                                        number(300.0), text(L"pressure"), number(1e5), text(L"mass"),
                                        text(L"overallResults,enthalpy,viscosity,transpose"), omitted(),
                                        text(L"matrix")));
     }},
};

const MemoryFailureCase services[] = {
    {"CreateWorkbookPP",
     [](MemoryFailure& test) {
         return test.service([&](com::variant&) { return test.create(test.book(), L"Another"); });
     }},
    {"CreateWorkbookPPOfAManager",
     [](MemoryFailure& test) {
         const auto manager = bstr(L"Scripted Manager");
         const auto package = bstr(L"First");
         const auto name = bstr(L"Another");
         return test.service([&](com::variant&) {
             return test.addIn->CreateWorkbookPP(test.book(), manager.get(), scripted::managerInProcess,
                                                 PropertyPackageManager11, package.get(), name.get());
         });
     }},
    {"DeleteWorkbookPP",
     [](MemoryFailure& test) {
         const auto name = bstr(L"P");
         return test.service(
             [&](com::variant&) { return test.addIn->DeleteWorkbookPP(test.book(), name.get()); });
     }},
    {"CloseWorkbook",
     [](MemoryFailure& test) {
         return test.service([&](com::variant&) { return test.addIn->CloseWorkbook(test.book()); });
     }},
    {"EditWorkbookPP",
     [](MemoryFailure& test) {
         const auto name = bstr(L"P");
         return test.service([&](com::variant& out) {
             out.vt = VT_BOOL;
             return test.addIn->EditWorkbookPP(test.book(), name.get(), &out.boolVal);
         });
     }},
    {"PackageNames",
     [](MemoryFailure& test) {
         return test.service([&](com::variant& out) { return test.addIn->PackageNames(test.book(), &out); });
     }},
    {"Persist", &persist},
    {"PersistOfLargeStates", &persist, &keepALargeState},
    {"Depersist", &depersist},
    {"DepersistOfLargeStates", &depersist, &keepALargeState},
    {"CompoundNames", &listOf<&IQuorvaneVSTOServices::CompoundNames>},
    {"CompoundConstantNames", &listOf<&IQuorvaneVSTOServices::CompoundConstantNames>},
    {"TemperatureDependentPropertyNames", &listOf<&IQuorvaneVSTOServices::TemperatureDependentPropertyNames>},
    {"PhaseNames", &listOf<&IQuorvaneVSTOServices::PhaseNames>},
    {"GetPhaseType",
     [](MemoryFailure& test) {
         const auto name = bstr(L"P");
         const auto phase = bstr(L"Liquid");
         return test.service([&](com::variant& out) {
             out.vt = VT_I4;
             EnumPhaseType type = UnknownPhase;
             const HRESULT code = test.addIn->GetPhaseType(test.book(), name.get(), phase.get(), &type);
             out.lVal = type;
             return code;
         });
     }},
    {"SinglePhasePropertyNames", &listOf<&IQuorvaneVSTOServices::SinglePhasePropertyNames>},
    {"TwoPhasePropertyNames", &listOf<&IQuorvaneVSTOServices::TwoPhasePropertyNames>},
    {"CheckSinglePhaseProperty",
     [](MemoryFailure& test) {
         const auto name = bstr(L"P");
         const auto property = bstr(L"enthalpy");
         const auto phase = bstr(L"Liquid");
         return test.service([&](com::variant& out) {
             out.vt = VT_BOOL;
             return test.addIn->CheckSinglePhaseProperty(test.book(), name.get(), property.get(), phase.get(),
                                                         &out.boolVal);
         });
     }},
    {"CheckTwoPhaseProperty",
     [](MemoryFailure& test) {
         const auto name = bstr(L"P");
         const auto property = bstr(L"kvalue");
         const auto phase1 = bstr(L"Vapor");
         const auto phase2 = bstr(L"Liquid");
         return test.service([&](com::variant& out) {
             out.vt = VT_BOOL;
             return test.addIn->CheckTwoPhaseProperty(test.book(), name.get(), property.get(), phase1.get(),
                                                      phase2.get(), &out.boolVal);
         });
     }},
    {"GetPropInfo",
     [](MemoryFailure& test) {
         const auto property = bstr(L"enthalpy.Dmoles");
         com::unique_bstr mole;
         com::unique_bstr mass;
         const std::string shown = test.service([&](com::variant& out) {
             EnumPropertyType type{};
             EnumDerivativeType derivative{};
             LONG conversion = 0;
             VARIANT_BOOL extensive = 0;
             VARIANT_BOOL overall = 0;
             out.vt = VT_I4;
             return test.addIn->GetPropInfo(property.get(), mole.put(), mass.put(), &type, &derivative,
                                            &conversion, &out.lVal, &extensive, &overall);
         });
         return mole ? shown + " " + scripted::narrow(com::viewOf(mole)) : shown;
     }},
    {"ValueFromRange",
     [](MemoryFailure& test) {
         const com::variant given = cells({1.0, 2.0});
         return test.service(
             [&](com::variant& out) { return test.addIn->ValueFromRange(given.pdispVal, &out); });
     }},
    {"PhaseEquilibriumConditionNames", &listOf<&IQuorvaneVSTOServices::PhaseEquilibriumConditionNames>},
    {"Help",
     [](MemoryFailure& test) { return test.service([&](com::variant&) { return test.addIn->Help(); }); }},
    {"GetPackageInfo",
     [](MemoryFailure& test) {
         const auto name = bstr(L"P");
         return test.service([&](com::variant& out) {
             out.vt = VT_BSTR;
             out.bstrVal = nullptr;
             return test.addIn->GetPackageInfo(name.get(), &out.bstrVal);
         });
     }},
};

// Before any other test of this program: what the add-in reads once is read here.
class FirstCall : public Caller {};

TEST_F(FirstCall, ForWhichMemoryIsShortDoesNotSpoilTheNext) {
    constexpr auto one = Refusal::Extent::One;
    const auto call = [&] { return function(L"CapeOpenUnitOfMeasure", arguments(text(L"enthalpy"))); };
    {
        const Refusal refusal = Refusal::ofCom(dll_, 1, one); // that of the type library
        call();
    }
    for (const bool isCom : {false, true}) {
        bool happened = true;
        int calls = 0;
        for (long long last = 1; happened; ++last) {
            // What is kept for the next call moves all that is still to be read to the front.
            for (long long position = std::max(last - 2, 1LL); position <= last; ++position) {
                ASSERT_LT(++calls, 10000) << "each call keeps something";
                const leak_gate::AllocationUse kept{dll_};
                {
                    const Refusal refusal =
                        isCom ? Refusal::ofCom(dll_, position, one) : Refusal{dll_, position, one};
                    call();
                    happened = refusal.happened();
                }
                if (kept.blocks() > 0) {
                    last = 0;
                    break;
                }
            }
        }
    }
    EXPECT_EQ(call(), "J/mol");
    attach();
    EXPECT_EQ(function(L"CapeOpenPackageNames", arguments(text(L"horizontal"))), "P");
}

// GCC's run time needs memory for a thread's first exception.
TEST(FirstFailure, OfAThreadIsThatThereIsNoMemoryForTheClassObject) {
    const leak_gate::Owner dll = leak_gate::ownerOf("Quorvane.dll");
    bool isSurvived = false;
    std::thread{[dll, &isSurvived] {
        const auto get = [] {
            com::com_ptr<IClassFactory> factory;
            return AddIn::instance().getClassObject(__uuidof(Excel), IID_IClassFactory, factory.putVoid());
        };
        {
            const Refusal refusal{dll, 1, Refusal::Extent::AllFromThereOn};
            EXPECT_EQ(get(), E_OUTOFMEMORY);
        }
        EXPECT_EQ(get(), S_OK);
        isSurvived = true;
    }}.join();
    EXPECT_TRUE(isSurvived);
}

INSTANTIATE_TEST_SUITE_P(Function, MemoryFailure, testing::ValuesIn(functions), nameOf);
INSTANTIATE_TEST_SUITE_P(Service, MemoryFailure, testing::ValuesIn(services), nameOf);

// Each method of the interface that has no case of its name.
template <std::size_t size>
std::vector<std::wstring> untested(const wchar_t* interfaceName, const MemoryFailureCase (&cases)[size]) {
    com::com_ptr<ITypeLib> library;
    EXPECT_EQ(LoadTypeLib(AddIn::instance().path().c_str(), library.put()), S_OK);
    const auto methods = quorvane::membersOf(quorvane::typeNamed(library.get(), interfaceName).get());
    EXPECT_FALSE(methods.empty());
    std::vector<std::wstring> missing;
    for (const quorvane::LibraryMember& method : methods) {
        if (std::ranges::none_of(cases, [&](const MemoryFailureCase& tested) {
                return scripted::narrow(method.name) == tested.name;
            })) {
            missing.push_back(method.name);
        }
    }
    return missing;
}

TEST(MemoryFailureCases, HaveEveryWorksheetFunction) {
    EXPECT_THAT(untested(L"IQuorvaneUDF", functions), testing::IsEmpty());
}
TEST(MemoryFailureCases, HaveEveryService) {
    EXPECT_THAT(untested(L"IQuorvaneVSTOServices", services), testing::IsEmpty());
}

TEST(MemoryFailureCases, RefuseEveryFunctionOfTheSystemThatAllocates) {
    const std::vector<std::string> allocateNothing{
        "CLSIDFromString",     "CoTaskMemFree",        "GetErrorInfo",       "SafeArrayDestroy",
        "SafeArrayGetDim",     "SafeArrayGetElemsize", "SafeArrayGetLBound", "SafeArrayGetUBound",
        "SafeArrayGetVartype", "SafeArrayLock",        "SafeArrayUnlock",    "SetErrorInfo",
        "StringFromGUID2",     "SysFreeString",        "SysStringLen",       "VariantClear",
        "VariantInit"};
    EXPECT_THAT(leak_gate::unwatchedCalls(GetModuleHandleW(AddIn::instance().path().c_str())),
                testing::IsSubsetOf(allocateNothing));
}

} // namespace
