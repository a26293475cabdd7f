// Memory that runs out in the middle of a call. For each worksheet function and each service, the first
// allocation that the add-in asks for is refused, then the second, and so on until the call needs no more: of
// its own heap and of COM's, one allocation alone or all from there on. Each time the failure is reported,
// the workbook has the packages that it had, nothing is lost, and the same call then succeeds.
#include "tests/leak_gate/allocations.h"
#include "tests/src/server/worksheet.h"

#include <functional>

using namespace tests;

namespace {

using leak_gate::Refusal;

struct Means {
    const char* name;
    bool isCom;
    Refusal::Extent extent;
};
constexpr Means allMeans[] = {{"one block of the heap", false, Refusal::Extent::One},
                              {"two blocks of the heap", false, Refusal::Extent::Two},
                              {"all blocks of the heap", false, Refusal::Extent::AllFromThereOn},
                              {"one block of COM", true, Refusal::Extent::One},
                              {"all blocks of COM", true, Refusal::Extent::AllFromThereOn}};

// Each starts with a workbook that has the package P, and tells what the caller sees.
struct Case;

class MemoryFailure : public Worksheet, public testing::WithParamInterface<Case> {
  public:
    /// The package that each call begins with.
    void SetUp() override;

    std::string function(const wchar_t* name, std::vector<com::variant> arguments);
    std::string service(const std::function<HRESULT(com::variant& out)>& call);

    using Worksheet::addIn;
    using Worksheet::book;
    using Worksheet::create;

    com::variant savedTable;

  protected:
    std::string packages();
    void failEachAllocation(const Means& means);
    void deleteCreated();
    void failOne(const Means& means, long long position, bool& happened);

    leak_gate::Owner dll = leak_gate::ownerOf("Quorvane.dll");
    std::string healthy;
};

struct Case {
    const char* name;
    std::string (*call)(MemoryFailure& test);
};

void PrintTo(const Case& tested, std::ostream* out) { *out << tested.name; }

std::string nameOf(const testing::TestParamInfo<Case>& tested) { return tested.param.name; }

com::unique_bstr bstr(const wchar_t* text) { return com::makeBstr(text); }

// A failure of a service, in the words of the front end's error dialog.
std::string failed(HRESULT code) {
    char text[40];
    std::snprintf(text, sizeof text, "failed 0x%08lX ", static_cast<unsigned long>(code));
    return text;
}

// A service has no words when there is no memory for them. The package is told by the material, and its own
// words come back.
bool isReport(const std::string& shown) {
    return shown == "std::bad_alloc" || shown == "The material says: Unhandled exception" ||
           shown == "failed 0x80004005 Quorvane.Excel: std::bad_alloc" ||
           shown == "failed 0x80004005 Quorvane.Excel: " ||
           shown.find("(told Quorvane.Excel: Failed to save package P: ") != std::string::npos;
}

} // namespace

void MemoryFailure::SetUp() {
    Worksheet::SetUp();
    attach();
    ASSERT_EQ(addIn->Persist(book(), savedTable.put()), S_OK);
    // What is made once and kept: the add-in's own, and what the C++ run time needs for the first exception
    // for which there is no memory, which nothing but want of memory makes it make.
    healthy = GetParam().call(*this);
    deleteCreated();
    ASSERT_EQ(GetParam().call(*this), healthy);
    deleteCreated();
    {
        const Refusal refusal{dll, 1, Refusal::Extent::Two};
        service([&](com::variant& names) { return addIn->PackageNames(book(), &names); });
    }
    ASSERT_EQ(addIn->CloseWorkbook(book()), S_OK);
    SetErrorInfo(0, nullptr);
    package->forgetCalls();
}

std::string MemoryFailure::function(const wchar_t* name, std::vector<com::variant> arguments) {
    SetErrorInfo(0, nullptr);
    wchar_t* names[] = {const_cast<wchar_t*>(name)};
    DISPID member = 0;
    if (const HRESULT code = addIn->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member);
        FAILED(code)) {
        return failed(code);
    }
    std::ranges::reverse(arguments);
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    com::variant result;
    EXCEPINFO exception{};
    const HRESULT code = addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                       &result, &exception, nullptr);
    const com::unique_bstr source{exception.bstrSource};
    const com::unique_bstr description{exception.bstrDescription};
    const com::unique_bstr help{exception.bstrHelpFile};
    return SUCCEEDED(code) ? shown(result) : failed(code == DISP_E_EXCEPTION ? exception.scode : code);
}

std::string MemoryFailure::service(const std::function<HRESULT(com::variant& out)>& call) {
    SetErrorInfo(0, nullptr);
    com::variant out;
    const HRESULT code = call(out);
    if (FAILED(code)) {
        return failed(code) + errorInfo();
    }
    const std::string told = errorInfo(); // what a message box has said
    return told.empty() ? shown(out) : shown(out) + " (told " + told + ")";
}

std::string MemoryFailure::packages() {
    return service([&](com::variant& names) { return addIn->PackageNames(book(), &names); });
}

void MemoryFailure::deleteCreated() { addIn->DeleteWorkbookPP(book(), bstr(L"Another").get()); }

void MemoryFailure::failOne(const Means& means, long long position, bool& happened) {
    const leak_gate::AllocationUse heap{dll};
    const leak_gate::AllocationUse automation{leak_gate::comAllocator};
    attach();
    const std::string before = packages();
    std::string shown;
    {
        const Refusal refusal =
            means.isCom ? Refusal::ofCom(dll, position, means.extent) : Refusal{dll, position, means.extent};
        shown = GetParam().call(*this);
        happened = refusal.happened();
    }
    if (shown == healthy) {
        deleteCreated();
    }
    if (!happened || shown == healthy) {
        EXPECT_EQ(shown, healthy);
    } else {
        EXPECT_TRUE(isReport(shown)) << shown;
        EXPECT_EQ(packages(), before);
    }
    EXPECT_EQ(GetParam().call(*this), healthy) << "the same call afterwards";
    ASSERT_EQ(addIn->CloseWorkbook(book()), S_OK);
    SetErrorInfo(0, nullptr);
    package->forgetCalls();
    EXPECT_EQ(heap.blocks(), 0);
    EXPECT_EQ(automation.blocks(), 0);
}

void MemoryFailure::failEachAllocation(const Means& means) {
    bool happened = true;
    long long position = 0;
    while (happened && !HasFailure()) {
        SCOPED_TRACE(testing::Message() << means.name << ", from number " << ++position << " on");
        failOne(means, position, happened);
    }
    std::printf("refused %s: %lld times\n", means.name, position - 1);
    std::fflush(stdout);
}

TEST_P(MemoryFailure, IsReportedAndLosesNothing) {
    for (const Means& means : allMeans) {
        failEachAllocation(means);
    }
}

namespace {

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

const Case functions[] = {
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

const Case services[] = {
    {"CreateWorkbookPP",
     [](MemoryFailure& test) {
         return test.service([&](com::variant&) { return test.create(test.book(), L"Another"); });
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
    {"Persist",
     [](MemoryFailure& test) {
         return test.service([&](com::variant& out) { return test.addIn->Persist(test.book(), &out); });
     }},
    {"Depersist",
     [](MemoryFailure& test) {
         return test.service(
             [&](com::variant&) { return test.addIn->Depersist(test.book(), test.savedTable); });
     }},
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

INSTANTIATE_TEST_SUITE_P(Function, MemoryFailure, testing::ValuesIn(functions), nameOf);
INSTANTIATE_TEST_SUITE_P(Service, MemoryFailure, testing::ValuesIn(services), nameOf);

} // namespace
