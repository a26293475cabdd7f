// What is read from a package and kept: compounds, phases, property lists.
#include "tests/src/package/package_fixture.h"

#include <cmath>

namespace quorvane {

namespace {

using scripted::reals;
using scripted::texts;
using scripted::textsFrom;
using testing::DoubleEq;
using testing::ElementsAre;

class Lists : public PackageTest {
  protected:
    const std::unique_ptr<PropertyPackage> bound = bind();

    std::string compoundsFailure() {
        return failureOf([&] { bound->loadCompounds(); });
    }
    std::string phasesFailure() {
        return failureOf([&] { bound->loadPhases(); });
    }
    /// GetCompoundList answers with these identifiers, names and molecular weights.
    void compoundsAre(com::variant ids, com::variant names, com::variant weights) {
        script.answers("GetCompoundList", std::move(ids), com::variant{}, std::move(names), com::variant{},
                       std::move(weights), com::variant{});
    }
};

TEST_F(Lists, CompoundsAreFoundByNameInAnyLetterCase) {
    bound->loadCompounds();
    EXPECT_EQ(bound->compoundCount(), 3);
    EXPECT_EQ(bound->compoundIndex(L"alpha"), 0);
    EXPECT_EQ(bound->compoundIndex(L"GAMMA"), 2);
    EXPECT_EQ(bound->compoundIndex(L"C3"), std::nullopt) << "an identifier is not a name";
}

TEST_F(Lists, MolecularWeightsAreInKilograms) {
    bound->loadCompounds();
    EXPECT_THAT(bound->molecularWeights(), ElementsAre(DoubleEq(0.01), DoubleEq(0.02), DoubleEq(0.04)));
    EXPECT_THAT(bound->inverseMolecularWeights(),
                ElementsAre(DoubleEq(100.0), DoubleEq(50.0), DoubleEq(25.0)));
    EXPECT_FALSE(bound->missingMolecularWeight());
}

TEST_F(Lists, AMaterialDoesNotFollowWhatAListOfCompoundsReferredTo) {
    com::variant text{L"gone when it is asked for"};
    VARIANT named{};
    named.vt = VT_VARIANT | VT_BYREF;
    named.pvarVal = &text;
    com::variant values = com::variant::array(com::makeVector(VT_VARIANT, 1), VT_VARIANT);
    com::array_lock<VARIANT>{values.parray}.elements()[0] = named;
    SAFEARRAY* array = values.parray;
    VARIANT listed{};
    listed.vt = VT_ARRAY | VT_VARIANT | VT_BYREF;
    listed.pparray = &array;
    script.hook("GetCompoundList", [&](scripted::Call& call) {
        const HRESULT code = call.healthy();
        call.out[1].replace(com::variant::attach(listed));
        call.out[3].replace(com::variant::attach(named));
        return code;
    });
    com::variant lists[6];
    script.hook("CalcSinglePhaseProp", [&](scripted::Call& call) {
        const auto compounds = com::queryFor<ICapeThermoCompounds>(call.material);
        EXPECT_EQ(
            compounds->GetCompoundList(&lists[0], &lists[1], &lists[2], &lists[3], &lists[4], &lists[5]),
            S_OK);
        return call.healthy();
    });
    bound->ensureMaterial();
    array = reinterpret_cast<SAFEARRAY*>(0x10);
    text = com::variant{L"something else"};
    bound->calcSinglePhaseProperty(com::makeBstr(L"enthalpy").get(), com::makeBstr(L"Liquid").get(), 300.0,
                                   1e5, {0.2, 0.3, 0.5}, false, lookupProperty(L"enthalpy"), false);
    EXPECT_EQ(scripted::textOf(lists[0]), "[A1, B2, C3]");
    EXPECT_EQ(lists[1].vt, VT_EMPTY);
    EXPECT_EQ(lists[3].vt, VT_EMPTY);
    EXPECT_EQ(scripted::textOf(lists[5]), "[11-11-1, 22-22-2, 33-33-3]");
}

TEST_F(Lists, AMissingMolecularWeightIsNoFailure) {
    for (const double missing : {missingMarker, std::nan("")}) {
        bound->reset();
        compoundsAre(texts({L"1", L"2"}), texts({L"a", L"b"}), reals({missing, 20.0}));
        EXPECT_EQ(compoundsFailure(), "no failure");
        EXPECT_TRUE(std::isnan(bound->molecularWeights()[0]));
        EXPECT_TRUE(std::isnan(bound->inverseMolecularWeights()[0]));
        EXPECT_DOUBLE_EQ(bound->molecularWeights()[1], 0.02);
        EXPECT_TRUE(bound->missingMolecularWeight());
    }
}

TEST_F(Lists, AllSixCompoundListsAreKept) {
    bound->loadCompounds();
    EXPECT_EQ(scripted::textOf(bound->compoundList(CompoundList_Ids).value), "[A1, B2, C3]");
    EXPECT_EQ(scripted::textOf(bound->compoundList(CompoundList_Formulae).value), "[A, B, C]");
    EXPECT_EQ(scripted::textOf(bound->compoundList(CompoundList_Names).value), "[Alpha, Beta, Gamma]");
    EXPECT_EQ(scripted::textOf(bound->compoundList(CompoundList_BoilingPoints).value), "[100, 200, 300]");
    EXPECT_EQ(scripted::textOf(bound->compoundList(CompoundList_MolecularWeights).value), "[10, 20, 40]");
    EXPECT_EQ(scripted::textOf(bound->compoundList(CompoundList_CasNumbers).value),
              "[11-11-1, 22-22-2, 33-33-3]");
}

TEST_F(Lists, CompoundsAreReadOnce) {
    bound->loadCompounds();
    bound->loadCompounds();
    EXPECT_EQ(script.count("GetCompoundList"), 1U);
    bound->reset();
    EXPECT_EQ(bound->compoundCount(), 0);
    EXPECT_EQ(bound->compoundIndex(L"Alpha"), std::nullopt);
    script.compounds({{L"1", L"Solo", L"S", 1.0, 2.0, L""}});
    bound->loadCompounds();
    EXPECT_EQ(script.count("GetCompoundList"), 2U);
    EXPECT_EQ(bound->compoundIndex(L"Solo"), 0);
}

TEST_F(Lists, AFailedReadIsRepeated) {
    script.fails("GetCompoundList", ecapeComputation, L"Not now");
    EXPECT_EQ(compoundsFailure(), "Failed to obtain compound data: Not now");
    EXPECT_EQ(bound->compoundCount(), 0);
    script.recovers("GetCompoundList");
    compoundsAre(texts({L"1"}), texts({nullptr}), reals({1.0}));
    EXPECT_EQ(compoundsFailure(), "Compound list contains empty strings");
    script.recovers("GetCompoundList");
    EXPECT_EQ(compoundsFailure(), "no failure");
    EXPECT_EQ(script.count("GetCompoundList"), 3U);
}

TEST_F(Lists, CompoundArraysMayBeginAtAnyIndex) {
    compoundsAre(textsFrom(1, {L"1", L"2"}), textsFrom(-3, {L"a", L"b"}),
                 scripted::realsFrom(7, {10.0, 20.0}));
    EXPECT_EQ(compoundsFailure(), "no failure");
    EXPECT_EQ(bound->compoundIndex(L"b"), 1);
    EXPECT_DOUBLE_EQ(bound->molecularWeights()[1], 0.02);
}

TEST_F(Lists, MalformedCompoundListsAreNamed) {
    const auto failure = [&](com::variant ids, com::variant names, com::variant weights) {
        compoundsAre(std::move(ids), std::move(names), std::move(weights));
        return compoundsFailure();
    };
    const auto ids = [] { return texts({L"1", L"2"}); };
    const auto names = [] { return texts({L"a", L"b"}); };
    const auto weights = [] { return reals({1.0, 2.0}); };
    EXPECT_EQ(failure(reals({1.0}), names(), weights()),
              "Invalid values for compound IDs: Expected an array of type string");
    EXPECT_EQ(failure(scripted::textBlock(2), names(), weights()),
              "Invalid values for compound IDs: unexpected dimension; 1-dimensional array expected");
    EXPECT_EQ(failure(ids(), com::variant{L"a"}, weights()),
              "Invalid values for compound names: Expected an array of type string");
    EXPECT_EQ(failure(ids(), names(), texts({L"1", L"2"})),
              "Invalid values for molecular weights: Expected an array of type double precision");
    EXPECT_EQ(failure(ids(), names(), com::variant{1.0}),
              "Invalid values for molecular weights: Expected an array of type double precision");
    EXPECT_EQ(failure(com::variant{}, com::variant{}, com::variant{}),
              "Property Package does not contain compounds");
    EXPECT_EQ(failure(texts({}), texts({}), reals({})), "Property Package does not contain compounds");
    EXPECT_EQ(failure(ids(), texts({L"a"}), weights()),
              "Mismatch in number of compound names and number of compounds IDs from Property Package");
    EXPECT_EQ(failure(ids(), com::variant{}, weights()),
              "Mismatch in number of compound names and number of compounds IDs from Property Package");
    EXPECT_EQ(failure(ids(), names(), reals({1.0})),
              "Mismatch in number of compound names and number of molecular weights from Property Package");
    EXPECT_EQ(failure(ids(), texts({L"a", nullptr}), weights()), "Compound list contains empty strings");
    EXPECT_EQ(failure(ids(), texts({L"Water", L"WATER"}), weights()), "Compound list contains duplicates");
}

TEST_F(Lists, OfSeveralMistakesInTheCompoundListsTheFirstIsNamed) {
    const auto failure = [&](com::variant ids, com::variant names, com::variant weights) {
        compoundsAre(std::move(ids), std::move(names), std::move(weights));
        return compoundsFailure();
    };
    const auto ids = [] { return texts({L"1", L"2"}); };
    EXPECT_EQ(failure(reals({1.0}), reals({1.0}), texts({L"1"})),
              "Invalid values for compound IDs: Expected an array of type string");
    EXPECT_EQ(failure(com::variant{}, reals({1.0}), texts({L"1"})),
              "Invalid values for compound names: Expected an array of type string");
    EXPECT_EQ(failure(com::variant{}, texts({L"a"}), texts({L"1"})),
              "Invalid values for molecular weights: Expected an array of type double precision");
    EXPECT_EQ(failure(com::variant{}, texts({L"a"}), reals({1.0})),
              "Property Package does not contain compounds");
    EXPECT_EQ(failure(ids(), texts({nullptr}), reals({1.0})),
              "Mismatch in number of compound names and number of compounds IDs from Property Package");
    EXPECT_EQ(failure(ids(), texts({L"a", L"A"}), reals({1.0})),
              "Mismatch in number of compound names and number of molecular weights from Property Package");
    const auto three = [] { return texts({L"1", L"2", L"3"}); };
    EXPECT_EQ(failure(three(), texts({L"a", nullptr, L"A"}), reals({1.0, 2.0, 3.0})),
              "Compound list contains empty strings");
    EXPECT_EQ(failure(three(), texts({L"a", L"A", nullptr}), reals({1.0, 2.0, 3.0})),
              "Compound list contains duplicates");
}

TEST_F(Lists, ACompoundNameWithoutCharactersIsANameLikeOthers) {
    compoundsAre(texts({L"1", L"2"}), texts({L"", L"b"}), reals({1.0, 2.0}));
    EXPECT_EQ(compoundsFailure(), "no failure");
    EXPECT_EQ(bound->compoundIndex(L""), 0);
    bound->reset();
    compoundsAre(texts({L"1", L"2"}), texts({L"", L""}), reals({1.0, 2.0}));
    EXPECT_EQ(compoundsFailure(), "Compound list contains duplicates");
}

TEST_F(Lists, PhasesHaveTheirStates) {
    script.phases(
        {{L"Gas", L"Vapor"}, {L"Oil", L"LIQUID"}, {L"Water", L"Aqueous"}, {L"Ice", L"solid"}, {L"?", L""}});
    bound->loadPhases();
    EXPECT_EQ(bound->phaseCount(), 5);
    EXPECT_EQ(bound->phaseType(0), VaporPhase);
    EXPECT_EQ(bound->phaseType(1), LiquidPhase);
    EXPECT_EQ(bound->phaseType(2), UnknownPhase);
    EXPECT_EQ(bound->phaseType(3), SolidPhase);
    EXPECT_EQ(bound->phaseType(4), UnknownPhase);
    EXPECT_EQ(bound->vaporPhaseIndex(), 0);
    EXPECT_EQ(bound->phaseIndex(L"oil"), 1);
    EXPECT_EQ(bound->phaseIndex(L"Plasma"), std::nullopt);
    EXPECT_TRUE(bound->isVapor(L"GAS"));
    EXPECT_FALSE(bound->isVapor(L"Oil"));
    EXPECT_FALSE(bound->isVapor(L"Plasma"));
}

TEST_F(Lists, TheLastVaporCounts) {
    script.phases({{L"V1", L"vapor"}, {L"L", L"Liquid"}, {L"V2", L"VAPOR"}});
    bound->loadPhases();
    EXPECT_EQ(bound->vaporPhaseIndex(), 2);
}

TEST_F(Lists, ARepeatedLabelMeansTheLaterPhase) {
    script.phases({{L"A", L"Vapor"}, {L"a", L"Liquid"}});
    EXPECT_EQ(phasesFailure(), "no failure");
    EXPECT_EQ(bound->phaseIndex(L"A"), 1);
    EXPECT_FALSE(bound->isVapor(L"A"));
    EXPECT_EQ(bound->phaseCount(), 2);
    EXPECT_EQ(bound->vaporPhaseIndex(), 0);
}

TEST_F(Lists, PhasesAreReadOnce) {
    EXPECT_EQ(bound->vaporPhaseIndex(), -1);
    bound->loadPhases();
    bound->loadPhases();
    EXPECT_EQ(script.count("GetPhaseList"), 1U);
    bound->reset();
    EXPECT_EQ(bound->vaporPhaseIndex(), -1);
    EXPECT_EQ(bound->phaseCount(), 0);
    bound->loadPhases();
    EXPECT_EQ(script.count("GetPhaseList"), 2U);
}

TEST_F(Lists, APackageWithoutPhasesIsNoFailure) {
    script.answers("GetPhaseList", com::variant{}, com::variant{}, com::variant{});
    EXPECT_EQ(phasesFailure(), "no failure");
    EXPECT_EQ(bound->phaseCount(), 0);
    EXPECT_EQ(bound->vaporPhaseIndex(), -1);
}

TEST_F(Lists, MalformedPhaseListsAreNamed) {
    const auto failure = [&](com::variant labels, com::variant states) {
        script.answers("GetPhaseList", std::move(labels), std::move(states), com::variant{});
        return phasesFailure();
    };
    EXPECT_EQ(failure(reals({1.0}), texts({L"Vapor"})),
              "Invalid phase name list: Expected an array of type string");
    EXPECT_EQ(failure(texts({L"V"}), scripted::textBlock(1)),
              "Invalid aggregation state list: unexpected dimension; 1-dimensional array expected");
    EXPECT_EQ(failure(texts({L"V", nullptr}), texts({L"Vapor", L"Liquid"})),
              "Phase list contains empty strings");
    script.fails("GetPhaseList", E_FAIL);
    EXPECT_EQ(phasesFailure(), "Failed to obtain list of phases: " + systemText(E_FAIL));
    script.recovers("GetPhaseList");
    EXPECT_EQ(phasesFailure(), "no failure");
}

TEST_F(Lists, OfSeveralMistakesInThePhaseListsTheFirstIsNamed) {
    const auto failure = [&](com::variant labels, com::variant states) {
        script.answers("GetPhaseList", std::move(labels), std::move(states), com::variant{});
        return phasesFailure();
    };
    EXPECT_EQ(failure(reals({1.0}), reals({1.0})),
              "Invalid phase name list: Expected an array of type string");
    EXPECT_EQ(failure(texts({nullptr, L"L"}), reals({1.0})),
              "Invalid aggregation state list: Expected an array of type string");
    EXPECT_EQ(failure(texts({nullptr, L"L"}), texts({L"Vapor"})), "Unknown exception");
    EXPECT_EQ(failure(com::variant{}, texts({L"Vapor"})), "Unknown exception");
}

TEST_F(Lists, APhaseLabelWithoutCharactersIsALabelLikeOthers) {
    script.answers("GetPhaseList", texts({L"", L"L"}), texts({L"Vapor", L"Liquid"}), com::variant{});
    EXPECT_EQ(phasesFailure(), "no failure");
    EXPECT_EQ(bound->phaseIndex(L""), 0);
    EXPECT_EQ(bound->vaporPhaseIndex(), 0);
}

TEST_F(Lists, PhasesAndStatesOfDifferentNumberAreAnUnknownException) {
    script.answers("GetPhaseList", texts({L"V", L"L"}), texts({L"Vapor"}), com::variant{});
    EXPECT_EQ(phasesFailure(), "Unknown exception");
    EXPECT_EQ(bound->phaseCount(), 0);
}

TEST_F(Lists, ANullStateIsAnUnknownState) {
    script.answers("GetPhaseList", textsFrom(1, {L"V", L"L"}), textsFrom(5, {nullptr, L"Liquid"}),
                   reals({1.0}));
    EXPECT_EQ(phasesFailure(), "no failure");
    EXPECT_EQ(bound->phaseType(0), UnknownPhase);
    EXPECT_EQ(bound->phaseType(1), LiquidPhase);
}

struct ListCase {
    const char* method;
    ArrayVariant (PropertyPackage::*read)();
    const char* failed;
    const char* invalid;
};

class PropertyLists : public Lists, public testing::WithParamInterface<ListCase> {
  protected:
    const ListCase& list() const { return GetParam(); }
    std::string read() { return scripted::textOf(((*bound).*list().read)().value); }
    std::string failure() {
        return failureOf([&] { read(); });
    }
};

TEST_P(PropertyLists, AreSortedWhateverTheLetterCase) {
    script.answers(list().method, texts({L"entropy", L"Volume", L"enthalpy", L"Density"}));
    EXPECT_EQ(read(), "[Density, enthalpy, entropy, Volume]");
}

TEST_P(PropertyLists, AreReadOnce) {
    const std::string first = read();
    EXPECT_EQ(read(), first);
    EXPECT_EQ(script.count(list().method), 1U);
    bound->reset();
    script.answers(list().method, texts({L"new"}));
    EXPECT_EQ(read(), "[new]");
    EXPECT_EQ(script.count(list().method), 2U);
}

TEST_P(PropertyLists, AreCopies) {
    script.answers(list().method, texts({L"b", L"a"}));
    ArrayVariant copy = ((*bound).*list().read)();
    std::wstring message;
    ASSERT_TRUE(inspectVector(copy, VT_BSTR, message));
    copy.elements<BSTR>()[0][0] = L'!';
    copy.release();
    EXPECT_EQ(read(), "[a, b]");
}

TEST_P(PropertyLists, MayBeginAtAnyIndex) {
    script.answers(list().method, textsFrom(3, {L"b", L"a"}));
    EXPECT_EQ(read(), "[a, b]");
}

TEST_P(PropertyLists, MayBeEmpty) {
    script.answers(list().method, com::variant{});
    EXPECT_EQ(read(), "empty");
    bound->reset();
    script.answers(list().method, texts({}));
    EXPECT_EQ(read(), "[]");
}

TEST_P(PropertyLists, KeepANameWithoutCharacters) {
    script.answers(list().method, texts({L"b", L"", L"A"}));
    const ArrayVariant names = ((*bound).*list().read)();
    EXPECT_THAT(scripted::textsOf(names.value), ElementsAre(L"", L"A", L"b"));
}

TEST_P(PropertyLists, FailWithThePackagesWordsAndAreReadAgain) {
    script.fails(list().method, ecapeComputation, L"Not now");
    EXPECT_EQ(failure(), std::string{list().failed} + "Not now");
    script.fails(list().method, E_FAIL);
    EXPECT_EQ(failure(), list().failed + systemText(E_FAIL));
    script.recovers(list().method);
    EXPECT_EQ(failure(), "no failure");
}

TEST_P(PropertyLists, MalformedOnesAreNamedAndReadAgain) {
    script.answers(list().method, reals({1.0}));
    EXPECT_EQ(failure(), std::string{list().invalid} + "Expected an array of type string");
    script.answers(list().method, com::variant{L"enthalpy"});
    EXPECT_EQ(failure(), std::string{list().invalid} + "Expected an array of type string");
    script.answers(list().method, scripted::textBlock(2));
    EXPECT_EQ(failure(), std::string{list().invalid} + "unexpected dimension; 1-dimensional array expected");
    script.answers(list().method, texts({L"a", nullptr}));
    EXPECT_EQ(failure(), "Property list contains empty strings");
    script.recovers(list().method);
    EXPECT_EQ(failure(), "no failure");
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PropertyLists,
    testing::Values(
        ListCase{"GetConstPropList", &PropertyPackage::compoundConstantList,
                 "Failed to obtain list of compound constants: ", "Invalid compound constant list: "},
        ListCase{"GetTDependentPropList", &PropertyPackage::temperatureDependentPropertyList,
                 "Failed to obtain list of temperature dependent properties: ", "Invalid property list: "},
        ListCase{"GetSinglePhasePropList", &PropertyPackage::singlePhasePropertyList,
                 "Failed to obtain list of single phase properties: ", "Invalid property list: "},
        ListCase{"GetTwoPhasePropList", &PropertyPackage::twoPhasePropertyList,
                 "Failed to obtain list of two phase properties: ", "Invalid property list: "}),
    [](const auto& kind) { return kind.param.method; });

} // namespace

} // namespace quorvane
