// Packages that make Excel take the ground from under their own calculation or creation: the workbook, or the
// package in it, goes away, or the package becomes another. It ends in an error or a result, and with every
// object released.
#include "tests/src/server/lifetime.h"

#include <tuple>
#include <utility>

using namespace tests;

namespace {

struct Ground {
    const char* name;
    void (*remove)(IQuorvaneVSTOServices* addIn, _IDTExtensibility2* events, IUnknown* book);
    bool edits = false; ///< the package stays, but is another
};

constexpr Ground grounds[] = {
    {"CloseWorkbook",
     [](IQuorvaneVSTOServices* addIn, _IDTExtensibility2*, IUnknown* book) { addIn->CloseWorkbook(book); }},
    // Excel recalculates before the call is over, which makes the workbook's table anew.
    {"CloseWorkbookAndOpenOne",
     [](IQuorvaneVSTOServices* addIn, _IDTExtensibility2*, IUnknown* book) {
         addIn->CloseWorkbook(book);
         com::variant names;
         addIn->CapeOpenPackageNames(com::variant::missing(), &names);
     }},
    {"DeleteWorkbookPP", [](IQuorvaneVSTOServices* addIn, _IDTExtensibility2*,
                            IUnknown* book) { addIn->DeleteWorkbookPP(book, com::makeBstr(L"P").get()); }},
    {"OnBeginShutdown",
     [](IQuorvaneVSTOServices*, _IDTExtensibility2* events, IUnknown*) { events->OnBeginShutdown(nullptr); }},
    {"OnDisconnection", [](IQuorvaneVSTOServices*, _IDTExtensibility2* events,
                           IUnknown*) { events->OnDisconnection(ext_dm_UserClosed, nullptr); }},
    {"EditWorkbookPP",
     [](IQuorvaneVSTOServices* addIn, _IDTExtensibility2*, IUnknown* book) {
         VARIANT_BOOL changed = VARIANT_FALSE;
         addIn->EditWorkbookPP(book, com::makeBstr(L"P").get(), &changed);
     },
     true},
};

void PrintTo(const Ground& ground, std::ostream* out) { *out << ground.name; }

class TakenAway : public Lifetime {
  public:
    // What a user does while it happens.
    std::string flashAtConditions() { return flash({}); }
    std::string property() { return enthalpy(); }
    std::string twoPhaseProperty() {
        return show(L"CapeOpenTwoPhaseProperty", text(L"P"), text(L"kvalue"), text(L"Vapor"), text(L"Liquid"),
                    number(300.0), number(1e5), cells({1.0, 1.0, 2.0}), cells({2.0, 1.0, 1.0}));
    }
    std::string constant() {
        return show(L"CapeOpenCompoundConstant", text(L"P"), text(L"criticalTemperature"));
    }
    std::string temperatureDependent() {
        return show(L"CapeOpenTemperatureDependentProperty", text(L"P"), text(L"vaporPressure"),
                    number(300.0));
    }
    std::string compounds() { return show(L"CapeOpenCompounds", text(L"P")); }
    std::string phases() { return show(L"CapeOpenPhases", text(L"P")); }
    template <HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*list)(IUnknown*, BSTR, VARIANT*)>
    std::string listed() {
        com::variant names;
        const HRESULT code = (addIn.get()->*list)(book(), com::makeBstr(L"P").get(), &names);
        return service(code, shown(names));
    }
    std::string singlePhaseIsOffered() {
        VARIANT_BOOL offered = VARIANT_FALSE;
        const HRESULT code = addIn->CheckSinglePhaseProperty(book(), com::makeBstr(L"P").get(),
                                                             com::makeBstr(L"enthalpy").get(),
                                                             com::makeBstr(L"Liquid").get(), &offered);
        return service(code, offered != VARIANT_FALSE ? "true" : "false");
    }
    std::string twoPhaseIsOffered() {
        VARIANT_BOOL offered = VARIANT_FALSE;
        const HRESULT code = addIn->CheckTwoPhaseProperty(
            book(), com::makeBstr(L"P").get(), com::makeBstr(L"kvalue").get(), com::makeBstr(L"Vapor").get(),
            com::makeBstr(L"Liquid").get(), &offered);
        return service(code, offered != VARIANT_FALSE ? "true" : "false");
    }
    std::string save() {
        com::variant table;
        const HRESULT code = addIn->Persist(book(), &table);
        return service(code, shown(table).substr(0, 36));
    }
    std::string edit() {
        VARIANT_BOOL changed = VARIANT_FALSE;
        const HRESULT code = addIn->EditWorkbookPP(book(), com::makeBstr(L"P").get(), &changed);
        return service(code, changed != VARIANT_FALSE ? "changed" : "not changed");
    }

  protected:
    /// The workbook goes away in the middle of the method.
    void during(const Ground& ground, const char* method) {
        package->hook(method, [this, &ground](scripted::Call& call) {
            if (std::exchange(isGone, true)) {
                return call.healthy(); // an edit in the middle of an edit
            }
            ground.remove(addIn.get(), events.get(), book());
            const HRESULT code = call.healthy();
            terminatedBefore = package->count("Terminate");
            return code;
        });
    }
    void expectReleased() {
        EXPECT_EQ(terminatedBefore, 0U) << "the package works to the end of its call";
        EXPECT_EQ(package->count("Terminate"), 1U);
        kept.reset();
        EXPECT_EQ(scripted::liveObjects(), 0);
    }
    static std::string service(HRESULT code, const std::string& result) {
        return code == S_OK ? result : std::to_string(code) + " " + errorInfo();
    }

    bool isGone = false;
    std::size_t terminatedBefore = 99;
};

struct Moment {
    const char* method;
    std::string (TakenAway::*go)();
    const char* seen;
    /// What is seen when the package is edited meanwhile, but for calls whose result has nothing to do with
    /// it.
    const char* seenWhenEdited = nullptr;
};

constexpr const char* changedMeanwhile = "Property package was changed during the calculation";
constexpr const char* changedService =
    "-2147467259 Quorvane.Excel: Property package was changed during the calculation";

using Services = IQuorvaneVSTOServices;

constexpr Moment moments[] = {
    {"CalcEquilibrium", &TakenAway::flashAtConditions,
     "list: 300 | 100000 | 0.25 | 0.34375 | 0.25 | 0.40625 | 0.75 | 0.21875 | 0.25 | 0.53125",
     changedMeanwhile},
    {"CalcSinglePhaseProp", &TakenAway::property, "22000.3001", changedMeanwhile},
    {"CalcTwoPhaseProp", &TakenAway::twoPhaseProperty, "list: 21210.3001 | 21220.3001 | 21230.3001",
     changedMeanwhile},
    {"SetMaterial", &TakenAway::property, "22000.3001", changedMeanwhile},
    {"GetCompoundConstant", &TakenAway::constant, "list: 10010 | 10020 | 10030", changedMeanwhile},
    {"GetTDependentProperty", &TakenAway::temperatureDependent, "list: 10010.3 | 10020.3 | 10030.3",
     changedMeanwhile},
    {"GetCompoundList", &TakenAway::compounds, "A1 | B2 | C3", changedMeanwhile},
    {"GetPhaseList", &TakenAway::phases, "Vapor | Liquid", changedMeanwhile},
    {"GetConstPropList", &TakenAway::listed<&Services::CompoundConstantNames>,
     "list: casRegistryNumber | criticalPressure | criticalTemperature", changedService},
    {"GetTDependentPropList", &TakenAway::listed<&Services::TemperatureDependentPropertyNames>,
     "list: idealGasEnthalpy | vaporPressure", changedService},
    {"GetSinglePhasePropList", &TakenAway::listed<&Services::SinglePhasePropertyNames>,
     "list: density | diffusionCoefficient | enthalpy | entropy | fugacityCoefficient | viscosity | volume",
     changedService},
    {"GetTwoPhasePropList", &TakenAway::listed<&Services::TwoPhasePropertyNames>,
     "list: kvalue | surfaceTension", changedService},
    {"CheckSinglePhasePropSpec", &TakenAway::singlePhaseIsOffered, "true"},
    {"CheckTwoPhasePropSpec", &TakenAway::twoPhaseIsOffered, "true"},
    {"Save", &TakenAway::save, "P | Scripted | StandAlonePackage11 |"},
    {"Edit", &TakenAway::edit, "changed"},
};

void PrintTo(const Moment& moment, std::ostream* out) { *out << moment.method; }

class TakenAwayDuring : public TakenAway, public testing::WithParamInterface<std::tuple<Moment, Ground>> {};

TEST_P(TakenAwayDuring, ACallThatEndsAsIfNothingWere) {
    const auto& [moment, ground] = GetParam();
    during(ground, moment.method);
    EXPECT_EQ((this->*moment.go)(),
              ground.edits && moment.seenWhenEdited != nullptr ? moment.seenWhenEdited : moment.seen);
    if (ground.edits) {
        terminatedBefore = package->count("Terminate");
        EXPECT_EQ((this->*moment.go)(), moment.seen) << "the next call works";
        EXPECT_EQ(close(), S_OK);
    }
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(Of, TakenAwayDuring,
                         testing::Combine(testing::ValuesIn(moments), testing::ValuesIn(grounds)),
                         [](const auto& tested) {
                             return std::string{std::get<0>(tested.param).method} + "_" +
                                    std::get<1>(tested.param).name;
                         });

// --- The workbook goes away while a package comes

enum class Start { alone, fromManager, saved };

struct Coming {
    const char* name;
    const char* method;
    Start start;
};

constexpr Coming comings[] = {
    {"Initialize", "Initialize", Start::alone},
    {"GetPropertyPackage", "GetPropertyPackage", Start::fromManager},
    {"Load", "Load", Start::saved},
    {"InitializeOfASaved", "Initialize", Start::saved},
};

void PrintTo(const Coming& coming, std::ostream* out) { *out << coming.name; }

class TakenAwayBefore : public TakenAway, public testing::WithParamInterface<std::tuple<Coming, Ground>> {
  protected:
    void SetUp() override {
        TakenAway::SetUp();
        package->model.state = "scripted state";
        ASSERT_EQ(addIn->Persist(book(), &table), S_OK);
        ASSERT_EQ(remove(), S_OK);
        package->forgetCalls();
        SetErrorInfo(0, nullptr);
    }
    std::string come(Start start) {
        switch (start) {
        case Start::alone:
            return service(create(book(), L"P"), "created");
        case Start::fromManager:
            return service(addIn->CreateWorkbookPP(book(), com::makeBstr(L"Scripted").get(),
                                                   scripted::managerInProcess, PropertyPackageManager11,
                                                   com::makeBstr(L"First").get(), com::makeBstr(L"P").get()),
                           "created");
        default:
            return service(addIn->Depersist(book(), table), "restored");
        }
    }

    com::variant table;
};

TEST_P(TakenAwayBefore, ThePackageComesOnlyIfTheWorkbookIsThere) {
    const auto& [coming, ground] = GetParam();
    scripted::Script& script = coming.start == Start::fromManager ? static_cast<scripted::Script&>(*manager)
                                                                  : static_cast<scripted::Script&>(*package);
    script.hook(coming.method, [&, &remover = ground](scripted::Call& call) {
        remover.remove(addIn.get(), events.get(), book());
        return call.healthy();
    });
    // The package that is deleted or edited is not there yet. A restored one that does not come is no failure
    // of the others.
    const bool comes = ground.edits || std::string_view{ground.name} == "DeleteWorkbookPP";
    const char* const refusal =
        "-2147467259 Quorvane.Excel: The workbook was closed while the package was created";
    EXPECT_EQ(come(coming.start), coming.start == Start::saved ? "restored" : comes ? "created" : refusal);
    script.recovers(coming.method);
    EXPECT_EQ(package->count("Terminate"), comes ? 0U : 1U);
    EXPECT_EQ(scripted::liveObjects() > 0, comes);
    com::variant names;
    EXPECT_EQ(addIn->PackageNames(book(), &names), S_OK);
    EXPECT_EQ(names.vt, comes ? VT_ARRAY | VT_BSTR : VT_EMPTY);
    EXPECT_EQ(close(), S_OK);
    EXPECT_EQ(package->count("Terminate"), 1U);
    EXPECT_EQ(scripted::liveObjects(), 0);
}

INSTANTIATE_TEST_SUITE_P(Of, TakenAwayBefore,
                         testing::Combine(testing::ValuesIn(comings), testing::ValuesIn(grounds)),
                         [](const auto& tested) {
                             return std::string{std::get<0>(tested.param).name} + "_" +
                                    std::get<1>(tested.param).name;
                         });

} // namespace
