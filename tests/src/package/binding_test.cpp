// A package is created, restored, initialised, and terminated at its end; each step may fail.
#include "tests/src/package/package_fixture.h"

#include <bit>

namespace quorvane {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Binding : public PackageTest {
  protected:
    std::string bindFailure(IStream* savedState = nullptr) {
        return failureOf([&] { bind(savedState); });
    }
    std::string managerFailure(const wchar_t* name = L"First") {
        return failureOf([&] { bindThroughManager(name); });
    }
    /// The life-cycle calls of manager and package in one list.
    std::vector<std::string> order;
    void noteOrder() {
        for (const char* method : {"Initialize", "Terminate", "GetPropertyPackage"}) {
            managerScript.hook(method, [this, method](scripted::Call& call) {
                order.push_back(std::string{"manager "} + method);
                return call.healthy();
            });
        }
        for (const char* method : {"Initialize", "Terminate", "Load", "InitNew"}) {
            script.hook(method, [this, method](scripted::Call& call) {
                order.push_back(std::string{"package "} + method);
                return call.healthy();
            });
        }
    }
};

TEST_F(Binding, AStandAlonePackageIsInitialisedOnceAndTerminatedAtItsEnd) {
    auto bound = bind();
    EXPECT_THAT(script.calls(), ElementsAre("Initialize()"));
    EXPECT_EQ(scripted::liveObjects(), 1);
    bound.reset();
    EXPECT_THAT(script.calls(), ElementsAre("Initialize()", "Terminate()"));
    EXPECT_EQ(scripted::liveObjects(), 0);
}

TEST_F(Binding, RemembersHowItWasMade) {
    const auto bound = bindThroughManager(L"Second");
    EXPECT_EQ(bound->managerName(), L"Scripted manager");
    EXPECT_EQ(bound->packageName(), L"Second");
    EXPECT_EQ(bound->managerGUID(), scripted::managerInProcess);
    EXPECT_EQ(bound->managerType(), PropertyPackageManager11);
}

TEST_F(Binding, AManagerIsTerminatedBeforeItsPackageIsUsed) {
    noteOrder();
    bindThroughManager(L"Second");
    EXPECT_THAT(order, ElementsAre("manager Initialize", "manager GetPropertyPackage", "manager Terminate",
                                   "package Initialize", "package Terminate"));
    EXPECT_THAT(managerScript.calls("GetPropertyPackage"), ElementsAre("GetPropertyPackage(Second)"));
}

TEST_F(Binding, AManagerIsReleasedAsSoonAsThePackageIsThere) {
    const auto bound = bindThroughManager();
    EXPECT_EQ(scripted::liveObjects(), 1);
}

TEST_F(Binding, AsksForTheThermodynamicInterfacesInOrder) {
    script.forgetCalls();
    const auto bound = bind();
    const IID wanted[] = {__uuidof(ICapeThermoCompounds), __uuidof(ICapeThermoPhases),
                          __uuidof(ICapeThermoPropertyRoutine), __uuidof(ICapeThermoEquilibriumRoutine)};
    std::vector<IID> asked;
    for (const IID& iid : script.queries()) {
        if (std::ranges::find(wanted, iid) != std::end(wanted)) {
            asked.push_back(iid);
        }
    }
    ASSERT_EQ(asked.size(), std::size(wanted));
    EXPECT_TRUE(std::ranges::equal(asked, wanted));
}

TEST_F(Binding, APackageThatDoesNotExistIsNotCreated) {
    package.reset();
    EXPECT_EQ(bindFailure(), "Failed to create property package: " + systemText(REGDB_E_CLASSNOTREG));
}

TEST_F(Binding, APackageMayBeAProgramOfItsOwn) {
    package.reset();
    const scripted::Package program{CLSCTX_LOCAL_SERVER};
    EXPECT_EQ(bindFailure(), "no failure");
}

TEST_F(Binding, APackageMustAnswerIDispatch) {
    script.omits(IID_IDispatch);
    EXPECT_EQ(bindFailure(), "Failed to create property package: " + systemText(E_NOINTERFACE));
}

TEST_F(Binding, AFailingCreationIsShownInTheSystemsWords) {
    const auto noLicence = static_cast<HRESULT>(ECapeLicenceErrorHR);
    const auto refuse = [=]() -> IUnknown* { throw scripted::Failure{noLicence, L"No licence", {}}; };
    package.reset();
    manager.reset();
    const scripted::Registration packages{scripted::packageInProcess, refuse};
    const scripted::Registration managers{scripted::managerInProcess, refuse};
    EXPECT_EQ(bindFailure(), "Failed to create property package: " + systemText(noLicence));
    EXPECT_EQ(managerFailure(), "Failed to create property package manager: " + systemText(noLicence));
}

TEST_F(Binding, AManagerThatDoesNotExistIsNotCreated) {
    manager.reset();
    EXPECT_EQ(managerFailure(),
              "Failed to create property package manager: " + systemText(REGDB_E_CLASSNOTREG));
}

TEST_F(Binding, AManagerMustBeOne) {
    managerScript.omits(__uuidof(ICapeThermoPropertyPackageManager));
    EXPECT_EQ(managerFailure(), "Failed to create property package manager: " + systemText(E_NOINTERFACE));
    EXPECT_THAT(managerScript.calls(), IsEmpty());
}

TEST_F(Binding, AnUnknownKindIsRefused) {
    EXPECT_EQ(failureOf([] {
                  PropertyPackage{L"Scripted", scripted::packageInProcess,
                                  std::bit_cast<CAPEOPENPackageManagerType>(2), L"", nullptr};
              }),
              "Unknown CAPE-OPEN package manager type");
}

TEST_F(Binding, AFailingManagerInitialisationIsShown) {
    managerScript.fails("Initialize", ecapeUnknown, L"No licence");
    EXPECT_EQ(managerFailure(), "Failed to initialized property package: No licence");
    EXPECT_EQ(managerScript.count("GetPropertyPackage"), 0U);
}

TEST_F(Binding, AManagerMayHaveNothingToInitialise) {
    for (const HRESULT code : {E_NOTIMPL, ecapeNoImpl}) {
        managerScript.fails("Initialize", code);
        EXPECT_EQ(managerFailure(), "no failure");
    }
    managerScript.recovers("Initialize");
    managerScript.omits(__uuidof(ICapeUtilities));
    managerScript.forgetCalls();
    EXPECT_EQ(managerFailure(), "no failure");
    EXPECT_THAT(managerScript.calls(), ElementsAre("GetPropertyPackage(First)"));
}

TEST_F(Binding, APackageThatTheManagerDoesNotHaveIsShownInItsWords) {
    EXPECT_EQ(managerFailure(L"Third"), "Failed to create property package: There is no package Third");
    EXPECT_THAT(managerScript.calls(), Contains("Terminate()"));
}

TEST_F(Binding, AManagerThatSaysNothingIsShownByItsCode) {
    managerScript.fails("GetPropertyPackage", static_cast<HRESULT>(ECapeLicenceErrorHR));
    EXPECT_EQ(managerFailure(), "Failed to create property package: license problem");
}

TEST_F(Binding, AManagerThatGivesNoObjectGivesNoPackage) {
    managerScript.answers("GetPropertyPackage");
    EXPECT_EQ(managerFailure(), "Package does not implement ICapeThermoCommpounds");
}

TEST_F(Binding, AFailingTerminateIsNobodysBusiness) {
    managerScript.fails("Terminate", E_FAIL, L"Cannot");
    script.fails("Terminate", E_FAIL, L"Cannot");
    EXPECT_EQ(managerFailure(), "no failure");
    EXPECT_EQ(script.count("Terminate"), 1U);
}

TEST_F(Binding, AFailingInitialisationIsShown) {
    script.fails("Initialize", static_cast<HRESULT>(ECapeFailedInitialisationHR),
                 L"The data bank is missing");
    EXPECT_EQ(bindFailure(), "Failed to initialized property package: The data bank is missing");
    EXPECT_EQ(managerFailure(), "Failed to initialized property package: The data bank is missing");
    EXPECT_EQ(scripted::liveObjects(), 0);
}

TEST_F(Binding, APackageMayHaveNothingToInitialise) {
    for (const HRESULT code : {E_NOTIMPL, ecapeNoImpl}) {
        script.fails("Initialize", code, L"Nothing to do");
        EXPECT_EQ(bindFailure(), "no failure");
    }
    script.omits(__uuidof(ICapeUtilities));
    script.forgetCalls();
    EXPECT_EQ(bindFailure(), "no failure");
    EXPECT_THAT(script.calls(), IsEmpty());
}

TEST_F(Binding, EachMissingInterfaceIsNamed) {
    const std::pair<IID, const char*> interfaces[] = {
        {__uuidof(ICapeThermoEquilibriumRoutine), "Package does not implement ICapeThermoEquilibriumRoutine"},
        {__uuidof(ICapeThermoPropertyRoutine), "Package does not implement ICapeThermoPropertyRoutine"},
        {__uuidof(ICapeThermoPhases), "Package does not implement ICapeThermoPhases"},
        {__uuidof(ICapeThermoCompounds), "Package does not implement ICapeThermoCommpounds"},
    };
    // One more is missing each time: the first in order is named.
    for (const auto& [iid, message] : interfaces) {
        script.omits(iid);
        script.forgetCalls();
        EXPECT_EQ(bindFailure(), message);
        EXPECT_THAT(script.calls(), ElementsAre("Initialize()", "Terminate()"));
        EXPECT_EQ(managerFailure(), message);
        EXPECT_EQ(scripted::liveObjects(), 0);
    }
}

// What the user sees of a failing call, in the order in which texts are looked for.

TEST_F(Binding, ErrorsAreShownInThePackagesOwnWords) {
    script.fails("Initialize", ecapeComputation, L"Described", L"Named");
    EXPECT_EQ(bindFailure(), "Failed to initialized property package: Described");
}

TEST_F(Binding, AnErrorWithoutDescriptionIsShownByItsName) {
    script.fails("Initialize", ecapeComputation, L"", L"Named");
    EXPECT_EQ(bindFailure(), "Failed to initialized property package: Named");
    script.fails("Initialize", ecapeComputation, L"Described", L"Named");
    script.fails("get_description", E_FAIL);
    EXPECT_EQ(bindFailure(), "Failed to initialized property package: Named");
    script.omits(__uuidof(ECapeUser));
    EXPECT_EQ(bindFailure(), "Failed to initialized property package: Named");
}

TEST_F(Binding, AnErrorWithoutWordsIsShownByItsCode) {
    script.fails("Initialize", ecapeComputation);
    EXPECT_EQ(bindFailure(), "Failed to initialized property package: computation error");
    script.fails("Initialize", ecapeUnknown);
    EXPECT_EQ(bindFailure(),
              "Failed to initialized property package: Failed to get error name for ECapeUnknown");
    script.omits(__uuidof(ECapeUser));
    script.omits(__uuidof(ECapeRoot));
    script.fails("Initialize", static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR), L"Described", L"Named");
    EXPECT_EQ(bindFailure(), "Failed to initialized property package: One or more of the requested "
                             "thermodynamic properties are not set on the material");
}

TEST_F(Binding, ForOtherCodesThePackageIsNotAsked) {
    for (const HRESULT code : {E_FAIL, E_OUTOFMEMORY, static_cast<HRESULT>(0x80040500),
                               static_cast<HRESULT>(0x8004051B), static_cast<HRESULT>(0x87654321)}) {
        script.fails("Initialize", code, L"Described", L"Named");
        EXPECT_EQ(bindFailure(), "Failed to initialized property package: " + systemText(code));
    }
    EXPECT_EQ(script.count("get_description"), 0U);
    EXPECT_EQ(script.count("get_name"), 0U);
}

TEST_F(Binding, ANewPackageStartsAfreshOnlyThroughIPersistStreamInit) {
    noteOrder();
    EXPECT_EQ(bindFailure(), "no failure");
    EXPECT_THAT(order, ElementsAre("package Initialize", "package Terminate"));
    order.clear();
    script.omits(IID_IPersistStream);
    EXPECT_EQ(bindFailure(), "no failure");
    EXPECT_THAT(order, ElementsAre("package InitNew", "package Initialize", "package Terminate"));
    order.clear();
    script.omits(IID_IPersistStreamInit);
    EXPECT_EQ(bindFailure(), "no failure");
    EXPECT_THAT(order, ElementsAre("package Initialize", "package Terminate"));
}

TEST_F(Binding, AFailingFreshStartIsLeftToTheInitialisation) {
    script.omits(IID_IPersistStream);
    script.fails("InitNew", E_FAIL);
    EXPECT_EQ(bindFailure(), "no failure");
}

TEST_F(Binding, SavedStateIsLoadedBeforeTheInitialisation) {
    noteOrder();
    const auto stream = streamOf("what was saved");
    EXPECT_EQ(bindFailure(stream.get()), "no failure");
    EXPECT_THAT(order, ElementsAre("package Load", "package Initialize", "package Terminate"));
    EXPECT_EQ(script.model.state, "what was saved");
}

TEST_F(Binding, SavedStateIsLoadedThroughEitherInterface) {
    script.omits(IID_IPersistStream);
    const auto stream = streamOf("what was saved");
    EXPECT_EQ(bindFailure(stream.get()), "no failure");
    EXPECT_EQ(script.model.state, "what was saved");
    EXPECT_EQ(script.count("InitNew"), 0U);
}

TEST_F(Binding, SavedStateOfAManagersPackageGoesToThePackage) {
    const auto stream = streamOf("what was saved");
    bindThroughManager(L"First", stream.get());
    EXPECT_EQ(script.model.state, "what was saved");
    EXPECT_THAT(script.calls("Load"), ElementsAre("Load(true)"));
}

TEST_F(Binding, APackageThatCannotBeRestoredIgnoresItsSavedState) {
    script.omits(IID_IPersistStream);
    script.omits(IID_IPersistStreamInit);
    const auto stream = streamOf("what was saved");
    EXPECT_EQ(bindFailure(stream.get()), "no failure");
    EXPECT_EQ(script.model.state, "scripted state");
}

TEST_F(Binding, AFailingRestoreIsShownInTheSystemsWords) {
    const auto stream = streamOf("what was saved");
    for (const HRESULT code : {E_FAIL, static_cast<HRESULT>(ECapePersistenceHR)}) {
        script.fails("Load", code, L"The package's words");
        EXPECT_EQ(bindFailure(stream.get()), "Failed to restore package content: " + systemText(code));
        EXPECT_EQ(scripted::liveObjects(), 0);
    }
    EXPECT_EQ(script.count("Initialize"), 0U);
}

TEST_F(Binding, TwoPackagesOfOneClassAreTwoObjects) {
    const auto one = bind();
    const auto other = bindThroughManager();
    EXPECT_EQ(scripted::liveObjects(), 2);
    EXPECT_NE(one->component(), other->component());
}

} // namespace

} // namespace quorvane
