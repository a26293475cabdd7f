// How the worksheet functions read what a user types into their optional arguments.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

class Arguments : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
    }

    template <typename Compound>
    std::string compound(Compound&& argument) {
        return show(L"CapeOpenCompounds", text(L"P"), omitted(), std::forward<Compound>(argument));
    }
    template <typename Phase>
    std::string phase(Phase&& argument) {
        return show(L"CapeOpenPhases", text(L"P"), omitted(), std::forward<Phase>(argument));
    }
    template <typename Basis>
    std::string unit(Basis&& basis) {
        return show(L"CapeOpenUnitOfMeasure", text(L"enthalpy"), std::forward<Basis>(basis));
    }

    static constexpr const char* all = "A1 | B2 | C3";
    static constexpr const char* badCompound =
        "Invalid value for compound - expected compound name or 1-based compound "
        "index (\"All\" or 0 for all compounds)";
    static constexpr const char* badPhase =
        "Invalid value for phase - expected phase name or 1-based phase index (\"All\" "
        "or 0 for all phases)";
};

TEST_F(Arguments, AnOmittedCompoundMeansAll) { EXPECT_EQ(compound(omitted()), all); }
TEST_F(Arguments, CompoundZeroMeansAll) { EXPECT_EQ(compound(number(0)), all); }
TEST_F(Arguments, AnEmptyCellForTheCompoundMeansAll) { EXPECT_EQ(compound(emptyCell()), all); }
TEST_F(Arguments, AnErrorCellForTheCompoundIsRefused) { EXPECT_EQ(compound(cell(errorCell())), badCompound); }
TEST_F(Arguments, TheWordAllIsNotACompound) { EXPECT_EQ(compound(text(L"All")), "Invalid compound name"); }
TEST_F(Arguments, ACompoundNamedAllIsFound) {
    package->model.compounds[1].name = L"all";
    EXPECT_EQ(compound(text(L"All")), "list: B2");
}
TEST_F(Arguments, ACompoundIsSelectedByItsNumber) { EXPECT_EQ(compound(number(3)), "list: C3"); }
TEST_F(Arguments, ANumberBeyondTheCompoundsIsRefused) { EXPECT_EQ(compound(number(4)), badCompound); }
TEST_F(Arguments, ANegativeNumberIsRefused) { EXPECT_EQ(compound(number(-1)), badCompound); }
TEST_F(Arguments, ANearlyWholeNumberSelects) {
    EXPECT_EQ(compound(number(1.0000001)), "list: A1");
    EXPECT_EQ(compound(number(2.9999995)), "list: C3");
}
TEST_F(Arguments, AFractionalNumberIsRefused) {
    EXPECT_EQ(compound(number(1.2)), badCompound);
    EXPECT_EQ(compound(number(2.5)), badCompound);
}
TEST_F(Arguments, NumbersThatAreNoIndexAreRefused) {
    EXPECT_EQ(compound(number(1e300)), badCompound);
    EXPECT_EQ(compound(number(std::numeric_limits<double>::quiet_NaN())), badCompound);
    EXPECT_EQ(compound(number(std::numeric_limits<double>::infinity())), badCompound);
}
TEST_F(Arguments, AWholeNumberTypeSelects) { EXPECT_EQ(compound(com::variant{2L}), "list: B2"); }
TEST_F(Arguments, AWholeNumberTypeBeyondTheCompoundsIsRefused) {
    EXPECT_EQ(compound(com::variant{4L}), badCompound);
    EXPECT_EQ(compound(com::variant{-1L}), badCompound);
}
TEST_F(Arguments, ATruthValueIsNoCompound) {
    EXPECT_EQ(compound(truth(true)), badCompound);
    EXPECT_EQ(compound(truth(false)), all);
}
TEST_F(Arguments, ACompoundIsFoundByNameInAnyCase) { EXPECT_EQ(compound(text(L"gAMMA")), "list: C3"); }
TEST_F(Arguments, ACompoundIsFoundByNameInACell) { EXPECT_EQ(compound(cell(text(L"Beta"))), "list: B2"); }
TEST_F(Arguments, AnIdentifierThatIsNoNameIsNotFound) {
    EXPECT_EQ(compound(text(L"B2")), "Invalid compound name");
}
TEST_F(Arguments, ANullTextIsNoName) {
    // Automation hands a null text over as an empty one; a caller of the vtable can really pass it.
    const com::unique_bstr name = com::makeBstr(L"P");
    const com::variant nullText{com::unique_bstr{}};
    com::variant result;
    ASSERT_EQ(addIn->CapeOpenCompounds(name.get(), omitted(), nullText, &result), S_OK);
    EXPECT_EQ(shown(result), "Empty string is invalid for compound name");
    ASSERT_EQ(addIn->CapeOpenPhases(name.get(), omitted(), nullText, result.put()), S_OK);
    EXPECT_EQ(shown(result), "Empty string is invalid for phase name");
}
TEST_F(Arguments, AnEmptyTextIsAnUnknownName) {
    EXPECT_EQ(compound(text(L"")), "Invalid compound name");
    EXPECT_EQ(phase(text(L"")), "Invalid phase name");
}
TEST_F(Arguments, ABlockOfCellsIsNoCompound) { EXPECT_EQ(compound(cells({1, 2})), badCompound); }

TEST_F(Arguments, PhasesAreSelectedLikeCompounds) {
    EXPECT_EQ(phase(omitted()), "Vapor | Liquid");
    EXPECT_EQ(phase(number(0)), "Vapor | Liquid");
    EXPECT_EQ(phase(number(2)), "list: Liquid");
    EXPECT_EQ(phase(text(L"LIQUID")), "list: Liquid");
}
TEST_F(Arguments, BadPhasesAreRefused) {
    EXPECT_EQ(phase(number(3)), badPhase);
    EXPECT_EQ(phase(text(L"Aqueous")), "Invalid phase name");
}

TEST_F(Arguments, BasisIsMoleUnlessSaidOtherwise) {
    EXPECT_EQ(unit(omitted()), "J/mol");
    EXPECT_EQ(unit(com::variant{}), "J/mol");
    EXPECT_EQ(unit(text(L"")), "J/mol");
    EXPECT_EQ(unit(text(L"Mole")), "J/mol");
}
TEST_F(Arguments, BasisMassIsReadInAnyCase) { EXPECT_EQ(unit(text(L"MASS")), "J/kg"); }
TEST_F(Arguments, AnUnknownBasisIsQuoted) {
    EXPECT_EQ(unit(text(L"kg")), "Invalid basis \"kg\"");
    EXPECT_EQ(unit(text(L" mass")), "Invalid basis \" mass\"");
}
TEST_F(Arguments, ABasisThatIsNoTextIsRefused) {
    EXPECT_EQ(unit(number(1)), "Invalid value for basis - expected string value");
    EXPECT_EQ(unit(truth(true)), "Invalid value for basis - expected string value");
}
TEST_F(Arguments, AReferenceToACellIsNotAcceptedAsBasis) {
    EXPECT_EQ(unit(cell(text(L"mass"))), "Invalid value for basis - expected string value");
}

TEST_F(Arguments, APackageNameMatchesExactly) {
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), all);
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"p")), "Invalid package name");
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P ")), "Invalid package name");
}
TEST_F(Arguments, AnEmptyPackageNameIsRefused) {
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"")), "Empty string is not valid for package name");
    EXPECT_EQ(show(L"CapeOpenCompounds", emptyCell()), "Empty string is not valid for package name");
    EXPECT_EQ(show(L"CapeOpenCompounds"), "Empty string is not valid for package name");
}
TEST_F(Arguments, WithoutAWorkbookEveryFunctionSaysSo) {
    excel->setActiveWorkbook({});
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No current workbook");
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "No current workbook");
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P")), "No current workbook");
    EXPECT_EQ(flash({}), "No current workbook");
}
TEST_F(Arguments, AWorkbookThatExcelWillNotTellIsReported) {
    excel->fail(L"ActiveWorkbook", E_FAIL);
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "Cannot determine current workbook");
}
TEST_F(Arguments, APackageOfAnotherWorkbookIsNotFound) {
    excel->setActiveWorkbook(com::make<sheet::excel::Workbook>(L"Book2"));
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "Invalid package name");
}

TEST_F(Arguments, AFlagIsReadFromTruthNumberAndText) {
    const auto unscaled = [&](com::variant flag) {
        return flash(
            {.options = text(L"overallResults,noPhaseResults,noTemperature,noPressure,noPhaseFraction"),
             .orientation = number(3),
             .normalize = std::move(flag)});
    };
    EXPECT_EQ(unscaled(omitted()), "0.25 | 0.25 | 0.5");
    EXPECT_EQ(unscaled(emptyCell()), "0.25 | 0.25 | 0.5");
    EXPECT_EQ(unscaled(truth(true)), "0.25 | 0.25 | 0.5");
    EXPECT_EQ(unscaled(truth(false)), "1 | 1 | 2");
    EXPECT_EQ(unscaled(number(0)), "1 | 1 | 2");
    EXPECT_EQ(unscaled(number(2)), "0.25 | 0.25 | 0.5");
    EXPECT_EQ(unscaled(text(L"False")), "1 | 1 | 2");
    EXPECT_EQ(unscaled(cell(truth(false))), "1 | 1 | 2");
}
TEST_F(Arguments, AFlagThatIsNoneNamesItsArgument) {
    EXPECT_EQ(flash({.normalize = text(L"perhaps")}),
              "Invalid value for normalizeComposition - expected bool value");
    EXPECT_EQ(flash({.normalize = cells({1, 0})}),
              "Invalid value for normalizeComposition - expected bool value");
}

} // namespace
