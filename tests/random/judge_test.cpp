// The judge of random calls must be able to find fault.
#include "com/safe_array.h"
#include "tests/random/judge.h"

#include <gtest/gtest.h>

namespace chance {
namespace {

Call callOf(std::string_view function, Direction direction) {
    return {&conformance::functionNamed(function), {}, direction};
}

com::variant block(VARTYPE type, std::size_t rows, std::size_t columns) {
    return com::variant::array(com::makeMatrix(type, rows, columns), type);
}
com::variant list(VARTYPE type, std::size_t count) {
    return com::variant::array(com::makeVector(type, count), type);
}
com::variant listFrom(LONG lower, VARTYPE type, ULONG count) {
    return com::variant::array(com::unique_safearray{SafeArrayCreateVector(type, lower, count)}, type);
}

class JudgeOfAnswers : public ::testing::Test {
  protected:
    std::string ofResult(std::string_view function, Direction direction, const VARIANT& result) const {
        return judge.complaint(callOf(function, direction), false, S_OK, result, std::nullopt);
    }
    std::string ofFailure(const wchar_t* shown, const wchar_t* told) const {
        return judge.complaint(callOf("Phases", Direction::row), false, S_OK, com::variant{shown}, told);
    }

    const Judge judge;
};

TEST_F(JudgeOfAnswers, AcceptsEachShapeWhereItBelongs) {
    EXPECT_EQ(ofResult("PhaseEquilibrium", Direction::row, list(VT_VARIANT, 4)), "");
    EXPECT_EQ(ofResult("PhaseEquilibrium", Direction::column, block(VT_VARIANT, 4, 1)), "");
    EXPECT_EQ(ofResult("PhaseEquilibrium", Direction::matrix, block(VT_VARIANT, 2, 3)), "");
    EXPECT_EQ(ofResult("MixtureProperty", Direction::row, com::variant{1.0}), "");
    EXPECT_EQ(ofResult("UnitOfMeasure", Direction::row, com::variant{com::unique_bstr{}}), "");
}
TEST_F(JudgeOfAnswers, AcceptsPackagesWithoutPhases) {
    EXPECT_EQ(ofResult("Phases", Direction::row, com::variant{}), "");
    EXPECT_EQ(ofResult("Compounds", Direction::row, com::variant{}), "the result is of type 0");
}
TEST_F(JudgeOfAnswers, RefusesARowForAColumn) {
    EXPECT_EQ(ofResult("PhaseEquilibrium", Direction::column, list(VT_VARIANT, 4)), "a column was asked for");
    EXPECT_EQ(ofResult("Compounds", Direction::column, block(VT_BSTR, 1, 3)), "a column was asked for");
}
TEST_F(JudgeOfAnswers, RefusesAColumnForARow) {
    EXPECT_EQ(ofResult("MixtureProperty", Direction::row, block(VT_R8, 3, 1)), "a row was asked for");
    EXPECT_EQ(ofResult("Compounds", Direction::row, block(VT_BSTR, 3, 1)), "a row was asked for");
}
TEST_F(JudgeOfAnswers, LooksAtTheCallingRangeWhenNothingWasSaid) {
    EXPECT_EQ(
        judge.complaint(callOf("PhaseEquilibrium", Direction::unsaid), true, S_OK, list(VT_VARIANT, 4), {}),
        "a column was asked for");
    EXPECT_EQ(
        judge.complaint(callOf("PhaseEquilibrium", Direction::unsaid), false, S_OK, list(VT_VARIANT, 4), {}),
        "");
}
TEST_F(JudgeOfAnswers, RefusesOtherBounds) {
    EXPECT_EQ(ofResult("MixtureProperty", Direction::row, listFrom(1, VT_R8, 3)),
              "the result has unusual bounds");
}
TEST_F(JudgeOfAnswers, RefusesArraysOfNothing) {
    EXPECT_EQ(ofResult("MixtureProperty", Direction::row, list(VT_R8, 0)), "the result has no elements");
}
TEST_F(JudgeOfAnswers, RefusesOtherTypes) {
    EXPECT_EQ(ofResult("MixtureProperty", Direction::row, list(VT_BSTR, 3)), "the result is of type 8200");
    EXPECT_EQ(ofResult("PhaseEquilibrium", Direction::row, com::variant{}), "the result is of type 0");
}
TEST_F(JudgeOfAnswers, RefusesElementsThatAreNotWhatTheLabelSays) {
    com::variant lie = list(VT_I8, 3);
    lie.vt = VT_ARRAY | VT_R8;
    EXPECT_EQ(ofResult("MixtureProperty", Direction::row, lie),
              "the elements are of another type than the result says");
}
TEST_F(JudgeOfAnswers, RefusesObjectsInCells) {
    com::variant cells = list(VT_VARIANT, 1);
    static_cast<VARIANT*>(cells.parray->pvData)->vt = VT_DISPATCH;
    EXPECT_EQ(ofResult("PhaseEquilibrium", Direction::row, cells), "a cell holds no single value");
}
TEST_F(JudgeOfAnswers, RefusesReferencesAmongConstants) {
    com::variant cells = list(VT_VARIANT, 2);
    auto* const elements = static_cast<VARIANT*>(cells.parray->pvData);
    double number = 1.0;
    elements[0].vt = VT_DECIMAL;
    EXPECT_EQ(ofResult("CompoundConstant", Direction::row, cells), "");
    elements[1].vt = VT_R8 | VT_BYREF;
    elements[1].pdblVal = &number;
    EXPECT_EQ(ofResult("CompoundConstant", Direction::row, cells), "a cell refers to a value elsewhere");
    EXPECT_EQ(ofResult("PhaseEquilibrium", Direction::row, cells), "a cell refers to a value elsewhere");
    elements[1].vt = VT_EMPTY;
}
TEST_F(JudgeOfAnswers, RefusesEmptyNames) {
    EXPECT_EQ(ofResult("Phases", Direction::row, block(VT_BSTR, 1, 2)), "a name is empty");
}
TEST_F(JudgeOfAnswers, RefusesCodesOfFailure) {
    EXPECT_EQ(judge.complaint(callOf("Phases", Direction::row), false, E_FAIL, com::variant{}, {}),
              "the code is -2147467259");
}
TEST_F(JudgeOfAnswers, RefusesAFailureThatTheCellDoesNotShow) {
    EXPECT_EQ(ofFailure(L"Vapor", L"Invalid phase name"),
              "the cell does not show the failure: Invalid phase name");
}
TEST_F(JudgeOfAnswers, RefusesTextsThatTheHelpDoesNotExplain) {
    EXPECT_EQ(ofFailure(L"Invalid phase name", L"Invalid phase name"), "");
    EXPECT_EQ(ofFailure(L"Bad phase name", L"Bad phase name"), "nothing explains this text: Bad phase name");
}
TEST_F(JudgeOfAnswers, RefusesEmptyTextsAndLineEnds) {
    EXPECT_EQ(ofFailure(L"", L""), "the failure has no text");
    EXPECT_EQ(ofFailure(L"Invalid phase name\n", L"Invalid phase name\n"),
              "the text does not end well: Invalid phase name\n");
}
TEST_F(JudgeOfAnswers, RefusesTextsThatEndEarly) {
    const com::variant cut{std::wstring_view{L"Invalid basis \"m\0\"", 18}};
    const std::string complaint = judge.complaint(callOf("Phases", Direction::row), false, S_OK, cut,
                                                  std::wstring{com::viewOf(cut.bstrVal)});
    EXPECT_EQ(complaint.substr(0, 37), "a null character ends the text early:");
}
TEST_F(JudgeOfAnswers, RefusesServicesThatFailWithoutAText) {
    EXPECT_EQ(judge.complaint(E_FAIL, std::nullopt), "the failure has no text");
    EXPECT_EQ(judge.complaint(E_FAIL, L"No such package"), "");
    EXPECT_EQ(judge.complaint(E_UNEXPECTED, std::nullopt), "the code is -2147418113");
}

TEST_F(JudgeOfAnswers, ReadsTheMessagesOfServicesThatSucceed) {
    EXPECT_EQ(judge.complaint(S_OK, std::nullopt), "");
    EXPECT_EQ(judge.complaint(S_OK, L"No such package"), "");
    EXPECT_EQ(judge.complaint(S_OK, L""), "the failure has no text");
    EXPECT_EQ(judge.complaint(S_OK, L"No such thing"), "nothing explains this text: No such thing");
}

TEST(MessagePatterns, MatchAnythingWhereSomethingVaries) {
    using namespace std::string_view_literals;
    EXPECT_TRUE(matches(L"No"sv, L"No"sv));
    EXPECT_FALSE(matches(L"No"sv, L"Not"sv));
    EXPECT_TRUE(matches(L"Call to \"\0\" failed: \0"sv, L"Call to \"Value\" failed: busy"sv));
    EXPECT_FALSE(matches(L"Call to \"\0\" failed: \0"sv, L"Call to Value failed: busy"sv));
    EXPECT_TRUE(matches(L"\0, no"sv, L"no, no, no"sv));
    EXPECT_FALSE(matches(L"\0, no"sv, L"no, no, not"sv));
}

} // namespace
} // namespace chance
