// What a front end asks about a package to fill its dialogs.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

using scripted::reals;
using scripted::texts;

constexpr auto computation = static_cast<HRESULT>(ECapeComputationHR);

class Queries : public Worksheet {
  protected:
    using List = HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*)(IUnknown*, BSTR, VARIANT*);

    void SetUp() override {
        Worksheet::SetUp();
        attach();
    }

    /// What a list holds, or the failure.
    std::string names(List list, const wchar_t* ppName = L"P") {
        const com::unique_bstr name = com::makeBstr(ppName);
        com::variant result{99L};
        SetErrorInfo(0, nullptr);
        const HRESULT code = (addIn.get()->*list)(book(), name.get(), &result);
        if (code == S_OK) {
            return shown(result);
        }
        EXPECT_EQ(code, E_FAIL);
        EXPECT_EQ(shown(result), "99") << "a failure leaves the result as it was";
        return errorInfo();
    }
    std::string phaseType(BSTR phase, const wchar_t* ppName = L"P") {
        EnumPhaseType type = UnknownPhase;
        SetErrorInfo(0, nullptr);
        const HRESULT code = addIn->GetPhaseType(book(), com::makeBstr(ppName).get(), phase, &type);
        if (code == S_OK) {
            return std::to_string(type);
        }
        EXPECT_EQ(code, E_FAIL);
        EXPECT_EQ(type, UnknownPhase);
        return errorInfo();
    }
    std::string phaseType(const wchar_t* phase) { return phaseType(com::makeBstr(phase).get()); }
    VARIANT_BOOL supports(const wchar_t* property, const wchar_t* phase) {
        VARIANT_BOOL supported = 7;
        EXPECT_EQ(addIn->CheckSinglePhaseProperty(book(), com::makeBstr(L"P").get(),
                                                  com::makeBstr(property).get(), com::makeBstr(phase).get(),
                                                  &supported),
                  S_OK);
        return supported;
    }
    VARIANT_BOOL supports(const wchar_t* property, const wchar_t* phase1, const wchar_t* phase2) {
        VARIANT_BOOL supported = 7;
        EXPECT_EQ(addIn->CheckTwoPhaseProperty(book(), com::makeBstr(L"P").get(),
                                               com::makeBstr(property).get(), com::makeBstr(phase1).get(),
                                               com::makeBstr(phase2).get(), &supported),
                  S_OK);
        return supported;
    }
    void deletePackage() { addIn->DeleteWorkbookPP(book(), com::makeBstr(L"P").get()); }

    com::com_ptr<sheet::excel::Workbook> other = com::make<sheet::excel::Workbook>(L"Book2");

    static constexpr List lists[] = {
        &IQuorvaneVSTOServices::CompoundNames,
        &IQuorvaneVSTOServices::CompoundConstantNames,
        &IQuorvaneVSTOServices::TemperatureDependentPropertyNames,
        &IQuorvaneVSTOServices::PhaseNames,
        &IQuorvaneVSTOServices::SinglePhasePropertyNames,
        &IQuorvaneVSTOServices::TwoPhasePropertyNames,
        &IQuorvaneVSTOServices::PhaseEquilibriumConditionNames,
    };
};

TEST_F(Queries, CompoundsAreListedByNameInThePackagesOrder) {
    EXPECT_EQ(names(&IQuorvaneVSTOServices::CompoundNames), "list: Alpha | Beta | Gamma");
}
TEST_F(Queries, ConstantsAreListedSorted) {
    EXPECT_EQ(names(&IQuorvaneVSTOServices::CompoundConstantNames),
              "list: casRegistryNumber | criticalPressure | criticalTemperature");
}
TEST_F(Queries, TemperatureDependentPropertiesAreListedSorted) {
    EXPECT_EQ(names(&IQuorvaneVSTOServices::TemperatureDependentPropertyNames),
              "list: idealGasEnthalpy | vaporPressure");
}
TEST_F(Queries, PhasesAreListedInThePackagesOrder) {
    EXPECT_EQ(names(&IQuorvaneVSTOServices::PhaseNames), "list: Vapor | Liquid");
}
TEST_F(Queries, SinglePhasePropertiesAreListedSortedWhateverTheirLetterCase) {
    package->answers("GetSinglePhasePropList", texts({L"volume", L"Density", L"ENTHALPY", L"activity"}));
    EXPECT_EQ(names(&IQuorvaneVSTOServices::SinglePhasePropertyNames),
              "list: activity | Density | ENTHALPY | volume");
}
TEST_F(Queries, TwoPhasePropertiesAreListedSorted) {
    EXPECT_EQ(names(&IQuorvaneVSTOServices::TwoPhasePropertyNames), "list: kvalue | surfaceTension");
}
TEST_F(Queries, EquilibriumConditionsBeginWithTemperatureAndPressure) {
    EXPECT_EQ(names(&IQuorvaneVSTOServices::PhaseEquilibriumConditionNames),
              "list: Temperature | Pressure | Enthalpy | Entropy | VaporFraction | Volume");
}
TEST_F(Queries, AnEmptyListIsGivenAsThePackageGivesIt) {
    package->answers("GetConstPropList", com::variant{});
    EXPECT_EQ(names(&IQuorvaneVSTOServices::CompoundConstantNames), "empty");
    package->phases({});
    EXPECT_EQ(names(&IQuorvaneVSTOServices::PhaseNames), "list: ");
}
TEST_F(Queries, TheListGivenAwayIsACopy) {
    com::variant given;
    ASSERT_EQ(addIn->PhaseNames(book(), com::makeBstr(L"P").get(), &given), S_OK);
    com::array_lock<BSTR>{given.parray}.elements()[0][0] = L'X';
    EXPECT_EQ(shown(given), "list: Xapor | Liquid");
    EXPECT_EQ(names(&IQuorvaneVSTOServices::PhaseNames), "list: Vapor | Liquid");
    EXPECT_EQ(package->count("GetPhaseList"), 1U);
}
TEST_F(Queries, APackageOfAnotherWorkbookIsNoSuchPackage) {
    ASSERT_EQ(create(other->dispatch(), L"Elsewhere"), S_OK);
    for (const List list : lists) {
        EXPECT_EQ(names(list, L"Elsewhere"), "Quorvane.Excel: No such package");
        EXPECT_EQ(names(list, L"p"), "Quorvane.Excel: No such package") << "names are told apart by case";
    }
    EXPECT_EQ(phaseType(com::makeBstr(L"Vapor").get(), L"Elsewhere"), "Quorvane.Excel: No such package");
    VARIANT_BOOL supported = 7;
    EXPECT_EQ(addIn->CheckSinglePhaseProperty(book(), nullptr, nullptr, nullptr, &supported), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: No such package");
    EXPECT_EQ(addIn->CheckTwoPhaseProperty(book(), nullptr, nullptr, nullptr, nullptr, &supported), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: No such package");
    EXPECT_EQ(supported, 7);
}
TEST_F(Queries, AListThatCannotBeReadIsAFailureWithTheResultAsItWas) {
    package->fails("GetCompoundList", computation, L"no data bank");
    EXPECT_EQ(names(lists[0]), "Quorvane.Excel: Failed to obtain compound data: no data bank");
    package->fails("GetConstPropList", computation);
    EXPECT_EQ(names(lists[1]),
              "Quorvane.Excel: Failed to obtain list of compound constants: computation error");
    package->fails("GetTDependentPropList", computation);
    EXPECT_EQ(names(lists[2]),
              "Quorvane.Excel: Failed to obtain list of temperature dependent properties: computation error");
    package->fails("GetPhaseList", computation);
    EXPECT_EQ(names(lists[3]), "Quorvane.Excel: Failed to obtain list of phases: computation error");
    EXPECT_EQ(names(lists[6]), "Quorvane.Excel: Failed to obtain list of phases: computation error");
    package->fails("GetSinglePhasePropList", computation);
    EXPECT_EQ(names(lists[4]),
              "Quorvane.Excel: Failed to obtain list of single phase properties: computation error");
    package->fails("GetTwoPhasePropList", computation);
    EXPECT_EQ(names(lists[5]),
              "Quorvane.Excel: Failed to obtain list of two phase properties: computation error");
}
TEST_F(Queries, AMalformedListIsAFailure) {
    package->answers("GetConstPropList", reals({1.0}));
    EXPECT_EQ(names(lists[1]),
              "Quorvane.Excel: Invalid compound constant list: Expected an array of type string");
    package->answers("GetTDependentPropList", texts({L"a", nullptr}));
    EXPECT_EQ(names(lists[2]), "Quorvane.Excel: Property list contains empty strings");
    package->answers("GetSinglePhasePropList", scripted::textBlock(2));
    EXPECT_EQ(names(lists[4]), "Quorvane.Excel: Invalid property list: unexpected dimension; 1-dimensional "
                               "array expected");
    package->answers("GetPhaseList", texts({L"V", nullptr}), texts({L"Vapor", L"Liquid"}), com::variant{});
    EXPECT_EQ(names(lists[3]), "Quorvane.Excel: Phase list contains empty strings");
    package->answers("GetPhaseList", texts({L"V"}), texts({L"Vapor", L"Liquid"}), com::variant{});
    EXPECT_EQ(names(lists[3]), "Quorvane.Excel: Unknown exception");
}
TEST_F(Queries, ConditionsOfAPackageThatCannotListItsPropertiesAreThePlainOnes) {
    package->fails("GetSinglePhasePropList", computation);
    EXPECT_EQ(names(&IQuorvaneVSTOServices::PhaseEquilibriumConditionNames),
              "list: Temperature | Pressure | VaporFraction");
}
TEST_F(Queries, ListsNeedAWorkbookAndAnOutPointer) {
    com::variant result;
    EXPECT_EQ(addIn->CompoundNames(nullptr, nullptr, &result), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Workbook not specified");
    for (const List list : lists) {
        EXPECT_EQ((addIn.get()->*list)(book(), nullptr, nullptr), E_POINTER);
    }
}
TEST_F(Queries, APackageMayDeleteItselfWhileItIsAsked) {
    package->hook("GetPhaseList", [&](scripted::Call& call) {
        deletePackage();
        return call.healthy();
    });
    EXPECT_EQ(names(&IQuorvaneVSTOServices::PhaseNames), "list: Vapor | Liquid");
    EXPECT_EQ(scripted::liveObjects(), 0);
    EXPECT_EQ(names(&IQuorvaneVSTOServices::PhaseNames), "Quorvane.Excel: No such package");
}

TEST_F(Queries, APhaseHasItsKind) {
    package->phases(
        {{L"Gas", L"Vapor"}, {L"Oil", L"LIQUID"}, {L"Hydrate", L"solid"}, {L"Water", L"Aqueous"}});
    EXPECT_EQ(phaseType(L"Gas"), "0");
    EXPECT_EQ(phaseType(L"Oil"), "1");
    EXPECT_EQ(phaseType(L"Hydrate"), "2");
    EXPECT_EQ(phaseType(L"Water"), "3");
}
TEST_F(Queries, APhaseIsFoundInAnyLetterCase) { EXPECT_EQ(phaseType(L"LIQUID"), "1"); }
TEST_F(Queries, APhaseListedTwiceHasTheLaterKind) {
    package->phases({{L"Phase", L"Vapor"}, {L"PHASE", L"Solid"}});
    EXPECT_EQ(phaseType(L"phase"), "2");
}
TEST_F(Queries, AMissingPhaseIsReported) {
    EXPECT_EQ(phaseType(BSTR{nullptr}), "Quorvane.Excel: Phase not specified");
}
TEST_F(Queries, AnUnknownPhaseIsReported) {
    EXPECT_EQ(phaseType(L"Plasma"), "Quorvane.Excel: No such phase");
    EXPECT_EQ(phaseType(L""), "Quorvane.Excel: No such phase");
}
TEST_F(Queries, APhaseKindNeedsAnOutPointer) {
    EXPECT_EQ(addIn->GetPhaseType(book(), nullptr, nullptr, nullptr), E_POINTER);
}

TEST_F(Queries, ThePackageTellsWhetherItCanCalculateAProperty) {
    EXPECT_EQ(supports(L"enthalpy", L"Liquid"), VARIANT_TRUE);
    EXPECT_EQ(supports(L"nonsense", L"Liquid"), VARIANT_FALSE);
    EXPECT_EQ(package->calls("CheckSinglePhasePropSpec").front(),
              "CheckSinglePhasePropSpec(enthalpy, Liquid)");
    EXPECT_EQ(package->count("SetMaterial"), 0U);
}
TEST_F(Queries, AFailingCheckMeansNotSupported) {
    package->hook("CheckSinglePhasePropSpec", [](scripted::Call& call) {
        call.out[0].give(com::variant{true});
        return computation;
    });
    EXPECT_EQ(supports(L"enthalpy", L"Liquid"), VARIANT_FALSE);
    package->hook("CheckTwoPhasePropSpec", [](scripted::Call& call) {
        call.out[0].give(com::variant{true});
        return computation;
    });
    EXPECT_EQ(supports(L"kvalue", L"Vapor", L"Liquid"), VARIANT_FALSE);
}
TEST_F(Queries, ThePackageTellsWhetherItCanCalculateATwoPhaseProperty) {
    EXPECT_EQ(supports(L"kvalue", L"Vapor", L"Liquid"), VARIANT_TRUE);
    EXPECT_EQ(supports(L"nonsense", L"Vapor", L"Liquid"), VARIANT_FALSE);
    EXPECT_EQ(package->calls("CheckTwoPhasePropSpec").front(),
              "CheckTwoPhasePropSpec(kvalue, [Vapor, Liquid])");
}
TEST_F(Queries, ThePhaseLabelsLentToACheckAreTakenBackWhateverItsOutcome) {
    SAFEARRAY* lent = nullptr;
    HRESULT outcome = S_OK;
    package->hook("CheckTwoPhasePropSpec", [&](scripted::Call& call) {
        lent = call.in[1].parray;
        return outcome;
    });
    for (const HRESULT code : {S_OK, computation, E_FAIL}) {
        outcome = code;
        supports(L"kvalue", L"Vapor", L"Liquid");
        const com::array_lock<BSTR> lock{lent};
        EXPECT_EQ(lock.elements()[0], nullptr);
        EXPECT_EQ(lock.elements()[1], nullptr);
    }
}
TEST_F(Queries, ACheckWithinACheckLeavesTheOuterOneItsPhases) {
    std::string outer;
    bool inside = false;
    package->hook("CheckTwoPhasePropSpec", [&](scripted::Call& call) {
        if (!std::exchange(inside, true)) {
            supports(L"kvalue", L"Liquid", L"Vapor");
            outer = scripted::textOf(call.in[1]);
        }
        return call.healthy();
    });
    EXPECT_EQ(supports(L"kvalue", L"Vapor", L"Liquid"), VARIANT_TRUE);
    EXPECT_EQ(outer, "[Vapor, Liquid]");
}
TEST_F(Queries, APackageMayDeleteItselfDuringACheck) {
    for (const char* method : {"CheckSinglePhasePropSpec", "CheckTwoPhasePropSpec"}) {
        package->hook(method, [&](scripted::Call& call) {
            deletePackage();
            return call.healthy();
        });
    }
    EXPECT_EQ(supports(L"enthalpy", L"Liquid"), VARIANT_TRUE);
    EXPECT_EQ(scripted::liveObjects(), 0);
    attach();
    EXPECT_EQ(supports(L"kvalue", L"Vapor", L"Liquid"), VARIANT_TRUE);
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(Queries, ChecksNeedAnOutPointer) {
    EXPECT_EQ(addIn->CheckSinglePhaseProperty(book(), nullptr, nullptr, nullptr, nullptr), E_POINTER);
    EXPECT_EQ(addIn->CheckTwoPhaseProperty(book(), nullptr, nullptr, nullptr, nullptr, nullptr), E_POINTER);
}

} // namespace
