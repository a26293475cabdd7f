// Properties of two phases in contact.
#include "tests/src/package/package_fixture.h"

namespace quorvane {

namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

class TwoPhaseProperty : public PackageTest {
  protected:
    const std::unique_ptr<PropertyPackage> bound = bind();
    bool isMass = false;

    const std::vector<double>& calculate(const wchar_t* property, const wchar_t* phase1 = L"Vapor",
                                         const wchar_t* phase2 = L"Liquid") {
        const com::unique_bstr name = com::makeBstr(property);
        const com::unique_bstr first = com::makeBstr(phase1);
        const com::unique_bstr second = com::makeBstr(phase2);
        return bound->calcTwoPhaseProperty(name.get(), first.get(), second.get(), 350.0, 2e5, {0.2, 0.2, 0.6},
                                           {0.5, 0.5, 0.0}, isMass, lookupProperty(property));
    }
    std::string failure(const wchar_t* property) {
        return failureOf([&] { calculate(property); });
    }
};

TEST_F(TwoPhaseProperty, IsWhatThePackageCalculates) {
    EXPECT_THAT(calculate(L"surfaceTension"), ElementsAre(DoubleNear(11200.3502, 1e-9)));
    EXPECT_THAT(calculate(L"kvalue", L"liquid", L"vapor"),
                Pointwise(DoubleNear(1e-9), {22110.3502, 22120.3502, 22130.3502}));
}

TEST_F(TwoPhaseProperty, CompositionDerivativesComeForBothPhases) {
    EXPECT_THAT(calculate(L"surfaceTension.DmolFraction"),
                Pointwise(DoubleNear(1e-9),
                          {311210.3502, 311220.3502, 311230.3502, 311215.3502, 311225.3502, 311235.3502}));
    EXPECT_EQ(calculate(L"kvalue.Dmoles").size(), 18U);
}

TEST_F(TwoPhaseProperty, SendsTheNamesAsTheyAreWritten) {
    calculate(L"SurfaceTension", L"VAPOR", L"liquid");
    EXPECT_THAT(script.calls("CalcTwoPhaseProp"),
                ElementsAre("CalcTwoPhaseProp([SurfaceTension], [VAPOR, liquid])"));
}

TEST_F(TwoPhaseProperty, ThePackageReadsBothCompositions) {
    std::string seen;
    script.hook("CalcTwoPhaseProp", [&](scripted::Call& call) {
        for (const wchar_t* phase : {L"Vapor", L"Liquid"}) {
            com::variant T{0.0}, P{0.0}, fractions;
            const auto label = com::makeBstr(phase);
            EXPECT_EQ(call.material->GetTPFraction(label.get(), &T.dblVal, &P.dblVal, &fractions), S_OK);
            seen += scripted::textOf(T) + " " + scripted::textOf(P) + " " + scripted::textOf(fractions) + ";";
        }
        return call.healthy();
    });
    calculate(L"surfaceTension");
    EXPECT_EQ(seen, "350 200000 [0.2, 0.2, 0.6];350 200000 [0.5, 0.5, 0];");
    seen.clear();
    isMass = true;
    calculate(L"surfaceTension");
    EXPECT_EQ(seen, "350 200000 [0.4444444444, 0.2222222222, 0.3333333333];"
                    "350 200000 [0.6666666667, 0.3333333333, 0];");
}

TEST_F(TwoPhaseProperty, TextsAreTakenBackFromBothArraysWhetherTheCallSucceedsOrNot) {
    SAFEARRAY* names = nullptr;
    SAFEARRAY* labels = nullptr;
    bool fails = false;
    script.hook("CalcTwoPhaseProp", [&](scripted::Call& call) {
        EXPECT_TRUE(names == nullptr || names == call.in[0].parray) << "the array is the same each time";
        EXPECT_TRUE(labels == nullptr || labels == call.in[1].parray) << "the array is the same each time";
        names = call.in[0].parray;
        labels = call.in[1].parray;
        EXPECT_EQ(scripted::textOf(call.in[0]) + scripted::textOf(call.in[1]),
                  "[surfaceTension][Vapor, Liquid]");
        return fails ? E_FAIL : call.healthy();
    });
    for (const char* outcome : {"no failure", "a failure", "no failure"}) {
        fails = outcome == std::string_view{"a failure"};
        EXPECT_EQ(failure(L"surfaceTension"), fails ? systemText(E_FAIL) : outcome);
        EXPECT_EQ(static_cast<BSTR*>(names->pvData)[0], nullptr);
        EXPECT_EQ(static_cast<BSTR*>(labels->pvData)[0], nullptr);
        EXPECT_EQ(static_cast<BSTR*>(labels->pvData)[1], nullptr);
    }
}

TEST_F(TwoPhaseProperty, IsTheSameForAMassComposition) {
    isMass = true;
    script.calculates(L"kvalue", L"", {1.0, 2.0, 3.0});
    EXPECT_THAT(calculate(L"kvalue"), ElementsAre(1.0, 2.0, 3.0));
}

TEST_F(TwoPhaseProperty, AFailureCountsEvenWhenAValueArrived) {
    script.hook("CalcTwoPhaseProp", [](scripted::Call& call) {
        EXPECT_EQ(call.healthy(), S_OK);
        return E_FAIL;
    });
    EXPECT_EQ(failure(L"surfaceTension"), systemText(E_FAIL));
}

TEST_F(TwoPhaseProperty, AFailureIsShownInThePackagesWordsAlone) {
    script.fails("CalcTwoPhaseProp", ecapeComputation, L"No root found");
    EXPECT_EQ(failure(L"surfaceTension"), "No root found");
    script.fails("CalcTwoPhaseProp", E_FAIL, L"No root found");
    EXPECT_EQ(failure(L"surfaceTension"), systemText(E_FAIL));
}

TEST_F(TwoPhaseProperty, APackageThatCalculatesNothingIsFoundOut) {
    calculate(L"surfaceTension");
    script.answers("CalcTwoPhaseProp");
    EXPECT_EQ(failure(L"surfaceTension"), "Property was not calculated by property package");
}

TEST_F(TwoPhaseProperty, WhatTheMaterialRefusesIsNotAResult) {
    script.calculates(L"surfaceTension", L"Mole", {1.0});
    EXPECT_EQ(failure(L"surfaceTension"), "The material says: Invalid basis");
    script.calculates(L"surfaceTension", L"", {1.0, 2.0});
    EXPECT_EQ(failure(L"surfaceTension"), "The material says: Unexpected number of values");
}

} // namespace

} // namespace quorvane
