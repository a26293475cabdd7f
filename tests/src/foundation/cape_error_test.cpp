// What a failing property package is quoted with, and its optional life-cycle calls.
#include "src/foundation/error_texts.h"
#include "src/foundation/life_cycle.h"
#include "tests/src/foundation/fake_package.h"
#include "tests/src/foundation/messages.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

constexpr HRESULT hresult(unsigned long code) { return static_cast<HRESULT>(code); }

constexpr HRESULT computation = hresult(0x8004050B);

struct CapeText {
    unsigned long code;
    const wchar_t* text;
};

constexpr CapeText capeTexts[] = {
    {0x80040501, L"Failed to get error name for ECapeUnknown"},
    {0x80040502, L"invalid data"},
    {0x80040503, L"license problem"},
    {0x80040504, L"Bad Cape-Open parameter"},
    {0x80040505, L"Bad argument"},
    {0x80040506, L"Invalid argument"},
    {0x80040507, L"index out of bounds"},
    {0x80040508, L"current implementation related error"},
    {0x80040509, L"not implemented"},
    {0x8004050A, L"implementation is limited"},
    {0x8004050B, L"computation error"},
    {0x8004050C, L"out of resources"},
    {0x8004050D, L"out of memory"},
    {0x8004050E, L"operation was timed out"},
    {0x8004050F, L"initialization error"},
    {0x80040510, L"solution error"},
    {0x80040511, L"invalid order of invocations"},
    {0x80040512, L"invalid operation"},
    {0x80040513, L"storage / persistence error"},
    {0x80040514, L"illegal access"},
    {0x80040515, L"persistence error: not found"},
    {0x80040516, L"persistence system error"},
    {0x80040517, L"persistence overflow error"},
    {0x80040518, L"solver scope error"},
    {0x80040519, L"Hessian information not available"},
    {0x8004051A, L"One or more of the requested thermodynamic properties are not set on the material"},
};

TEST(CapeErrorText, OfASilentPackageIsTheTextOfTheCode) {
    const auto package = com::make<FakePackage>();
    for (const CapeText& row : capeTexts) {
        EXPECT_EQ(capeErrorText(package->object(), hresult(row.code)), row.text);
        EXPECT_EQ(capeErrorText(nullptr, hresult(row.code)), row.text);
    }
    EXPECT_EQ(std::size(capeTexts), 26U);
}

TEST(CapeErrorText, IsThePackagesDescriptionForEveryCode) {
    const auto package = com::make<FakePackage>();
    package->description = L"The flash did not converge after 50 iterations.";
    package->name = L"ECapeSolvingError";
    for (const CapeText& row : capeTexts) {
        EXPECT_EQ(capeErrorText(package->object(), hresult(row.code)),
                  L"The flash did not converge after 50 iterations.");
    }
}

TEST(CapeErrorText, IsTheNameOfTheErrorWhenThereIsNoDescription) {
    const auto package = com::make<FakePackage>();
    package->name = L"ECapeComputation";
    EXPECT_EQ(capeErrorText(package->object(), computation), L"ECapeComputation");
    package->description = L"";
    EXPECT_EQ(capeErrorText(package->object(), computation), L"ECapeComputation");
    package->description = FakePackage::nullText;
    EXPECT_EQ(capeErrorText(package->object(), computation), L"ECapeComputation");
    package->description = FakePackage::failingText;
    EXPECT_EQ(capeErrorText(package->object(), computation), L"ECapeComputation");
}

TEST(CapeErrorText, IsTheTextOfTheCodeWhenDescriptionAndNameAreEmpty) {
    const auto package = com::make<FakePackage>();
    for (const std::wstring& nothing : {std::wstring{}, FakePackage::nullText, FakePackage::failingText}) {
        package->description = nothing;
        package->name = nothing;
        EXPECT_EQ(capeErrorText(package->object(), computation), L"computation error");
    }
}

TEST(CapeErrorText, OfOtherCodesIsTheSystemsAndThePackageIsNotAsked) {
    const auto package = com::make<FakePackage>();
    package->description = L"ignored";
    for (const unsigned long code : {0x80004005UL, 0x80040500UL, 0x8004051BUL, 0x80040520UL, 0x80004001UL}) {
        EXPECT_EQ(capeErrorText(package->object(), hresult(code)), systemErrorText(hresult(code)));
    }
    EXPECT_EQ(package->queries, 0);
}

TEST(CapeErrorText, ReleasesEverythingThatItAskedFor) {
    const long before = com::liveObjects;
    {
        const auto package = com::make<FakePackage>();
        package->description = L"";
        package->name = L"x";
        static_cast<void>(capeErrorText(package->object(), computation));
    }
    EXPECT_EQ(com::liveObjects, before);
}

TEST(RequireSuccess, PutsItsContextBeforeTheText) {
    EXPECT_EQ(composedMessageOf([] { requireSuccess(computation, nullptr, L"Calculation failed: "); }),
              L"Calculation failed: computation error");
    EXPECT_EQ(composedMessageOf([] { requireSuccess(computation, nullptr, L""); }), L"computation error");
}

TEST(RequireSuccess, IsContentWithEverySuccess) {
    EXPECT_NO_THROW(requireSuccess(S_OK, nullptr, L"Calculation failed: "));
    EXPECT_NO_THROW(requireSuccess(S_FALSE, nullptr, L"Calculation failed: "));
}

TEST(InitializeObject, InitialisesAPackageOnce) {
    const auto package = com::make<FakePackage>();
    initializeObject(package->object());
    EXPECT_EQ(package->calls, L"Initialize ");
}

TEST(InitializeObject, UsesAPackageThatNeedsNoInitialisation) {
    const auto package = com::make<FakePackage>();
    for (const unsigned long code : {0x80004001UL, 0x80040509UL}) {
        package->lifeCycleResult = hresult(code);
        EXPECT_NO_THROW(initializeObject(package->object()));
    }
    package->hasUtilities = false;
    package->lifeCycleResult = E_FAIL;
    EXPECT_NO_THROW(initializeObject(package->object()));
    EXPECT_NO_THROW(initializeObject(nullptr));
    EXPECT_EQ(package->calls, L"Initialize Initialize ");
}

TEST(InitializeObject, ReportsAPackageThatCannotBeInitialised) {
    const auto package = com::make<FakePackage>();
    const auto failure = [&] { return composedMessageOf([&] { initializeObject(package->object()); }); };
    package->lifeCycleResult = hresult(0x80040503);
    EXPECT_EQ(failure(), L"Failed to initialized property package: license problem");
    package->description = L"The licence server is down";
    EXPECT_EQ(failure(), L"Failed to initialized property package: The licence server is down");
    package->lifeCycleResult = E_FAIL;
    EXPECT_EQ(failure(), L"Failed to initialized property package: " + systemErrorText(E_FAIL));
}

TEST(TerminateObject, TerminatesAndIgnoresWhatComesBack) {
    const auto package = com::make<FakePackage>();
    package->lifeCycleResult = E_FAIL;
    terminateObject(package->object());
    EXPECT_EQ(package->calls, L"Terminate ");
    package->hasUtilities = false;
    terminateObject(package->object());
    terminateObject(nullptr);
    EXPECT_EQ(package->calls, L"Terminate ");
}

TEST(LifeCycle, ReleasesThePackage) {
    const long before = com::liveObjects;
    {
        const auto package = com::make<FakePackage>();
        initializeObject(package->object());
        package->lifeCycleResult = E_FAIL;
        static_cast<void>(composedMessageOf([&] { initializeObject(package->object()); }));
        terminateObject(package->object());
    }
    EXPECT_EQ(com::liveObjects, before);
}

TEST(IsNotImplemented, KnowsBothWaysOfSayingSo) {
    EXPECT_TRUE(isNotImplemented(E_NOTIMPL));
    EXPECT_TRUE(isNotImplemented(hresult(0x80040509)));
    EXPECT_FALSE(isNotImplemented(S_OK));
    EXPECT_FALSE(isNotImplemented(E_FAIL));
    EXPECT_FALSE(isNotImplemented(hresult(0x8004050A)));
}

} // namespace
} // namespace quorvane
