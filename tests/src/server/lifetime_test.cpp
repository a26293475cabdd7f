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

TEST_F(Lifetime, OfTwoMaterialsThatAreSetInsideEachOtherNeitherOutlivesItsOwner) {
    std::vector<com::com_ptr<IUnknown>> all;
    std::string inner;
    package->hook("SetMaterial", [&](scripted::Call& call) {
        all.push_back(com::queryFor<IUnknown>(call.in[0].punkVal));
        if (all.size() == 1) {
            inner = flash({});
        }
        return call.healthy();
    });
    const std::string outer = flash({});
    EXPECT_EQ(all.size(), 2U);
    EXPECT_EQ(outer, inner);
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

class TakenAway : public Lifetime, public testing::WithParamInterface<Ground> {
  protected:
    /// The workbook goes away in the middle of the method.
    void during(const char* method) {
        package->hook(method, [this](scripted::Call& call) {
            GetParam().remove(addIn.get(), events.get(), book());
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

    std::size_t terminatedBefore = 99;
};

TEST_P(TakenAway, InTheMiddleOfAFlash) {
    const std::string undisturbed = flash({});
    during("CalcEquilibrium");
    EXPECT_EQ(flash({}), undisturbed);
    expectReleased();
}
TEST_P(TakenAway, InTheMiddleOfAProperty) {
    const std::string undisturbed = enthalpy();
    during("CalcSinglePhaseProp");
    EXPECT_EQ(enthalpy(), undisturbed);
    expectReleased();
}
TEST_P(TakenAway, WhileCompoundsAreListed) {
    during("GetCompoundList");
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "A1 | B2 | C3");
    expectReleased();
}
TEST_P(TakenAway, WhileItIsSaved) {
    during("Save");
    com::variant table;
    EXPECT_EQ(addIn->Persist(book(), &table), S_OK);
    EXPECT_EQ(shown(table).substr(0, 36), "P | Scripted | StandAlonePackage11 |");
    expectReleased();
}
TEST_P(TakenAway, WhileItIsEdited) {
    during("Edit");
    VARIANT_BOOL changed = VARIANT_FALSE;
    EXPECT_EQ(addIn->EditWorkbookPP(book(), com::makeBstr(L"P").get(), &changed), S_OK);
    EXPECT_EQ(changed, VARIANT_TRUE);
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(By, TakenAway, testing::ValuesIn(grounds),
                         [](const auto& ground) { return std::string{ground.param.name}; });

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
TEST_F(Lifetime, AMaterialThatIsReleasedOnceTooOftenStaysWithThePackagesOwner) {
    const std::string undisturbed = flash({});
    kept.reset();
    package->hook("CalcEquilibrium", [](scripted::Call& call) {
        call.material->Release(); // the reference that UnsetMaterial or Terminate gives back
        return call.healthy();
    });
    EXPECT_EQ(flash({}), undisturbed);
    package->recovers("CalcEquilibrium");
    EXPECT_EQ(close(), S_OK); // gives back once more
    EXPECT_EQ(scripted::liveObjects(), 0);
}

} // namespace
