// Packages that hold on to their material, call it at any time, or make Excel take the ground from under
// their own calculation. Whatever they do ends in an error or a result, and with every object released.
#include "tests/src/server/every_call.h"
#include "tests/src/server/worksheet.h"

#include <functional>
#include <map>

using namespace tests;

namespace {

using Words = std::vector<std::string>;

class Lifetime : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        package->hook("SetMaterial", [this](scripted::Call& call) {
            kept = com::queryFor<IUnknown>(call.in[0].punkVal);
            return call.healthy();
        });
        attach();
    }
    void TearDown() override {
        kept.reset();
        Worksheet::TearDown();
    }

    /// From now on the package calls every method of its material in the middle of `method`.
    void callsBackDuring(const char* method) {
        package->hook(method, [this](scripted::Call& call) {
            said = callEverything(kept.get());
            return call.healthy();
        });
    }

    std::string enthalpy() {
        return show(L"CapeOpenMixtureProperty", text(L"P"), text(L"enthalpy"), text(L"Liquid"), number(300.0),
                    number(1e5), cells({1.0, 1.0, 2.0}));
    }
    HRESULT close() { return addIn->CloseWorkbook(book()); }
    HRESULT remove() { return addIn->DeleteWorkbookPP(book(), com::makeBstr(L"P").get()); }

    com::com_ptr<IUnknown> kept;
    Words said;
};

// What the material says at three times: before anything was asked of it, after a flash, and without its
// owner. Every other method says "Not implemented", always.
constexpr const char* done = "done";
constexpr const char* none = "No value available";
constexpr const char* outOfUse = "The material object is no longer in use by its property package";

struct Answer {
    const char* fresh;
    const char* afterAFlash;
    const char* withoutOwner;
};
const std::map<std::string, Answer> answers = {{"ClearAllProps", {done, done, done}},
                                               {"GetOverallProp", {none, done, done}},
                                               {"GetOverallTPFraction", {"Not implemented", done, done}},
                                               {"GetPresentPhases", {done, done, outOfUse}},
                                               {"GetSinglePhaseProp", {none, none, none}},
                                               {"GetTPFraction", {none, none, none}},
                                               {"SetOverallProp", {done, done, done}},
                                               {"SetPresentPhases", {done, done, outOfUse}},
                                               {"SetSinglePhaseProp", {done, done, outOfUse}},
                                               {"SetTwoPhaseProp", {done, done, done}},
                                               {"GetCompoundList", {done, done, outOfUse}},
                                               {"GetNumCompounds", {done, done, outOfUse}}};

void expectAnswers(const Words& said, const char* Answer::*when) {
    EXPECT_EQ(said.size(), 35U);
    for (const std::string& words : said) {
        const std::string method = words.substr(0, words.find(':'));
        const auto answer = answers.find(method);
        EXPECT_EQ(words,
                  method + ": " + (answer == answers.end() ? "Not implemented" : answer->second.*when));
    }
}

TEST_F(Lifetime, AMaterialCanBeCalledWhileItIsSet) {
    package->hook("SetMaterial", [this](scripted::Call& call) {
        kept = com::queryFor<IUnknown>(call.in[0].punkVal);
        said = callEverything(kept.get());
        return call.healthy();
    });
    const std::string shown = flash({});
    expectAnswers(said, &Answer::fresh);
    package->recovers("SetMaterial");
    EXPECT_EQ(flash({}), shown) << "what was written then is of no consequence";
}
TEST_F(Lifetime, AMaterialCanBeCalledWhileThePackageIsSaved) {
    flash({});
    callsBackDuring("Save");
    com::variant table;
    EXPECT_EQ(addIn->Persist(book(), &table), S_OK);
    expectAnswers(said, &Answer::afterAFlash);
}
TEST_F(Lifetime, AMaterialCanBeCalledDuringTerminate) {
    flash({});
    callsBackDuring("Terminate");
    EXPECT_EQ(close(), S_OK);
    expectAnswers(said, &Answer::afterAFlash);
}
TEST_F(Lifetime, AMaterialIsOutOfUseAfterTerminate) {
    flash({});
    EXPECT_EQ(close(), S_OK);
    expectAnswers(callEverything(kept.get()), &Answer::withoutOwner);
}
TEST_F(Lifetime, AMaterialIsOutOfUseWhileAnotherPackageIsInitialized) {
    flash({});
    EXPECT_EQ(close(), S_OK);
    callsBackDuring("Initialize");
    EXPECT_EQ(create(book(), L"P"), S_OK);
    expectAnswers(said, &Answer::withoutOwner);
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "P");
}
TEST_F(Lifetime, AMaterialIsOutOfUseWhileAnEditedPackageListsItsCompounds) {
    const std::string shown = flash({});
    VARIANT_BOOL changed = VARIANT_FALSE;
    ASSERT_EQ(addIn->EditWorkbookPP(book(), com::makeBstr(L"P").get(), &changed), S_OK);
    callsBackDuring("GetCompoundList");
    EXPECT_EQ(flash({}), shown);
    expectAnswers(said, &Answer::withoutOwner);
}

TEST_F(Lifetime, WhileAMaterialIsSetNoSecondOneIs) {
    std::vector<com::com_ptr<IUnknown>> all;
    std::string inner;
    package->hook("SetMaterial", [&](scripted::Call& call) {
        all.push_back(com::queryFor<IUnknown>(call.in[0].punkVal));
        inner = flash({});
        return call.healthy();
    });
    const std::string outer = flash({});
    EXPECT_EQ(inner, "Property package is already calculating");
    EXPECT_EQ(all.size(), 1U);
    EXPECT_EQ(flash({}), outer);
    EXPECT_EQ(close(), S_OK);
    for (const auto& material : all) {
        expectAnswers(callEverything(material.get()), &Answer::withoutOwner);
    }
}

// --- The workbook goes away
// ------------------------------------------------------------------------------------

struct Ground {
    const char* name;
    void (*remove)(IQuorvaneVSTOServices* addIn, _IDTExtensibility2* events, IUnknown* book);
};

constexpr Ground grounds[] = {
    {"CloseWorkbook",
     [](IQuorvaneVSTOServices* addIn, _IDTExtensibility2*, IUnknown* book) { addIn->CloseWorkbook(book); }},
    {"DeleteWorkbookPP", [](IQuorvaneVSTOServices* addIn, _IDTExtensibility2*,
                            IUnknown* book) { addIn->DeleteWorkbookPP(book, com::makeBstr(L"P").get()); }},
    {"OnBeginShutdown",
     [](IQuorvaneVSTOServices*, _IDTExtensibility2* events, IUnknown*) { events->OnBeginShutdown(nullptr); }},
    {"OnDisconnection", [](IQuorvaneVSTOServices*, _IDTExtensibility2* events,
                           IUnknown*) { events->OnDisconnection(ext_dm_UserClosed, nullptr); }},
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

    std::size_t terminatedBefore = 99;
};

struct Moment {
    const char* method;
    std::string (TakenAway::*go)();
    const char* seen;
};

using Services = IQuorvaneVSTOServices;

constexpr Moment moments[] = {
    {"CalcEquilibrium", &TakenAway::flashAtConditions,
     "list: 300 | 100000 | 0.25 | 0.34375 | 0.25 | 0.40625 | 0.75 | 0.21875 | 0.25 | 0.53125"},
    {"CalcSinglePhaseProp", &TakenAway::property, "22000.3001"},
    {"CalcTwoPhaseProp", &TakenAway::twoPhaseProperty, "list: 21210.3001 | 21220.3001 | 21230.3001"},
    {"SetMaterial", &TakenAway::property, "22000.3001"},
    {"GetCompoundConstant", &TakenAway::constant, "list: 10010 | 10020 | 10030"},
    {"GetTDependentProperty", &TakenAway::temperatureDependent, "list: 10010.3 | 10020.3 | 10030.3"},
    {"GetCompoundList", &TakenAway::compounds, "A1 | B2 | C3"},
    {"GetPhaseList", &TakenAway::phases, "Vapor | Liquid"},
    {"GetConstPropList", &TakenAway::listed<&Services::CompoundConstantNames>,
     "list: casRegistryNumber | criticalPressure | criticalTemperature"},
    {"GetTDependentPropList", &TakenAway::listed<&Services::TemperatureDependentPropertyNames>,
     "list: idealGasEnthalpy | vaporPressure"},
    {"GetSinglePhasePropList", &TakenAway::listed<&Services::SinglePhasePropertyNames>,
     "list: density | diffusionCoefficient | enthalpy | entropy | fugacityCoefficient | viscosity | volume"},
    {"GetTwoPhasePropList", &TakenAway::listed<&Services::TwoPhasePropertyNames>,
     "list: kvalue | surfaceTension"},
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
    EXPECT_EQ((this->*moment.go)(), moment.seen);
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(Of, TakenAwayDuring,
                         testing::Combine(testing::ValuesIn(moments), testing::ValuesIn(grounds)),
                         [](const auto& tested) {
                             return std::string{std::get<0>(tested.param).method} + "_" +
                                    std::get<1>(tested.param).name;
                         });

// --- The workbook goes away while a package comes
// -------------------------------------------------------------

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
    // The package that is deleted is not there yet. A restored one that does not come is no failure of the
    // others.
    const bool comes = std::string_view{ground.name} == "DeleteWorkbookPP";
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

// --- References
// ------------------------------------------------------------------------------------------------

TEST_F(Lifetime, AMaterialThatIsNeverReleasedKeepsTheAddInLoaded) {
    flash({});
    ASSERT_EQ(close(), S_OK);
    events->OnDisconnection(ext_dm_UserClosed, nullptr);
    frontEnd->letGo();
    events.reset();
    addIn.reset();
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(AddIn::instance().canUnloadNow(), S_FALSE);
    kept.reset();
    EXPECT_EQ(AddIn::instance().canUnloadNow(), S_OK);
    addIn = AddIn::instance().create();
    events = addIn.tryAs<_IDTExtensibility2>();
}
class ReleasedOnceTooOften : public Lifetime {
  protected:
    void SetUp() override {
        Lifetime::SetUp();
        undisturbed = flash({});
        kept.reset();
        package->hook("CalcEquilibrium", [this](scripted::Call& call) {
            call.material->Release(); // the reference that UnsetMaterial or Terminate gives back
            meanwhile();
            return call.healthy();
        });
    }
    /// Everything is released in the end; only then is a reference too few found.
    void expectReleased() {
        EXPECT_EQ(close(), S_OK);
        EXPECT_EQ(scripted::liveObjects(), 0);
    }
    void edit() {
        VARIANT_BOOL changed = VARIANT_FALSE;
        EXPECT_EQ(addIn->EditWorkbookPP(book(), com::makeBstr(L"P").get(), &changed), S_OK);
    }

    std::string undisturbed;
    std::function<void()> meanwhile = [] {};
};

TEST_F(ReleasedOnceTooOften, AMaterialMayBeGivenBackWhenThePackageIsTerminated) {
    EXPECT_EQ(flash({}), undisturbed);
    expectReleased();
}
TEST_F(ReleasedOnceTooOften, AMaterialMayBeGivenBackWhenThePackageIsReleased) {
    EXPECT_EQ(flash({}), undisturbed);
    package->hook("Terminate", [](scripted::Call&) { return S_OK; });
    expectReleased();
}
TEST_F(ReleasedOnceTooOften, AMaterialMayBeGivenBackWhenThePackageTakesAnother) {
    EXPECT_EQ(flash({}), undisturbed);
    package->recovers("CalcEquilibrium");
    edit();
    EXPECT_EQ(flash({}), undisturbed);
    expectReleased();
}
TEST_F(ReleasedOnceTooOften, AMaterialMayBeUsedWhileThePackageIsEdited) {
    meanwhile = [this] { edit(); };
    EXPECT_EQ(flash({}), "Property package was changed during the calculation");
    package->recovers("CalcEquilibrium");
    EXPECT_EQ(flash({}), undisturbed);
    expectReleased();
}
TEST_F(ReleasedOnceTooOften, AStreamServesUntilThePackageIsSavedOrRestored) {
    package->model.state = "scripted state";
    for (const char* const method : {"Save", "Load"}) {
        package->hook(method, [](scripted::Call& call) {
            call.in[0].punkVal->Release();
            return call.healthy();
        });
    }
    com::variant table;
    ASSERT_EQ(addIn->Persist(book(), &table), S_OK);
    ASSERT_EQ(remove(), S_OK);
    package->model.state.clear();
    ASSERT_EQ(addIn->Depersist(book(), table), S_OK);
    EXPECT_EQ(package->model.state, "scripted state");
    expectReleased();
}

} // namespace
