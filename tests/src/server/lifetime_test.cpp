// Packages that hold on to their material, call it at any time or release it once too often. Whatever they do
// ends in an error or a result, and with every object released.
#include "tests/src/server/lifetime.h"

#include <functional>
#include <map>

using namespace tests;

namespace {

using Words = std::vector<std::string>;

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

class FlashesEarly : public Lifetime {
  protected:
    void SetUp() override {
        Lifetime::SetUp();
        package->hook("SetMaterial", [this](scripted::Call& call) {
            all.push_back(com::queryFor<IUnknown>(call.in[0].punkVal));
            return call.healthy();
        });
    }
    void TearDown() override {
        all.clear();
        Lifetime::TearDown();
    }
    void flashOnce() {
        if (!std::exchange(hasFlashed, true)) {
            inner = flash({});
        }
    }
    void expectOneMaterialThatEndsWithThePackage() {
        EXPECT_EQ(all.size(), 1U);
        flash({});
        ASSERT_EQ(remove(), S_OK);
        for (const auto& material : all) {
            expectAnswers(callEverything(material.get()), &Answer::withoutOwner);
        }
    }

    const std::string property = "22000.3001";
    std::vector<com::com_ptr<IUnknown>> all;
    bool hasFlashed = false;
    std::string inner;
};

TEST_F(FlashesEarly, APackageThatDoesWhileItListsItsPhasesHasOneMaterial) {
    package->hook("GetPhaseList", [this](scripted::Call& call) {
        flashOnce();
        return call.healthy();
    });
    EXPECT_EQ(enthalpy(), property);
    EXPECT_EQ(inner, "Property package is already calculating");
    expectOneMaterialThatEndsWithThePackage();
}
TEST_F(FlashesEarly, APackageThatDoesWhenAskedWhetherItTakesAMaterialHasOneMaterial) {
    package->whenAsked(__uuidof(ICapeThermoMaterialContext), [this] { flashOnce(); });
    EXPECT_EQ(enthalpy(), property);
    EXPECT_EQ(inner, flash({}));
    expectOneMaterialThatEndsWithThePackage();
}

// --- References

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
