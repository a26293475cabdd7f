// How results lie in the calling range.
#include "tests/src/server/worksheet.h"

using namespace tests;
using sheet::excel::Range;

namespace {

class Layout : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
    }

    std::string compounds() { return show(L"CapeOpenCompounds", text(L"P")); }
    template <typename Orientation>
    std::string compounds(Orientation&& orientation) {
        return show(L"CapeOpenCompounds", text(L"P"), std::forward<Orientation>(orientation));
    }

    static constexpr const char* row = "A1 | B2 | C3";
    static constexpr const char* column = "A1 / B2 / C3";
    static constexpr const char* badOrientation = "Invalid value for orientation - expected \"Auto\" "
                                                  "(default,0), \"Horizontal\" (1) or \"Vertical\" (2)";
    static constexpr const char* badOrientationWithMatrix =
        "Invalid value for orientation - expected \"Auto\" (default,0), "
        "\"Horizontal\" (1), \"Vertical\" (2) or \"Matrix\" (3)";
};

TEST_F(Layout, AFunctionEnteredOverAColumnGivesAColumn) {
    excel->setCaller(Range::empty(5, 1));
    EXPECT_EQ(compounds(), column);
}
TEST_F(Layout, AFunctionEnteredOverARowGivesARow) {
    excel->setCaller(Range::empty(1, 5));
    EXPECT_EQ(compounds(), row);
}
TEST_F(Layout, AFunctionEnteredOverABlockGivesARow) {
    excel->setCaller(Range::empty(3, 3));
    EXPECT_EQ(compounds(), row);
}
TEST_F(Layout, AFunctionTypedInOneCellGivesARow) {
    excel->setCaller(Range::empty(1, 1));
    EXPECT_EQ(compounds(), row);
}
TEST_F(Layout, ACallFromAMacroGivesARow) {
    excel->setCaller(text(L"Button 1"));
    EXPECT_EQ(compounds(), row);
    excel->setCaller(errorCell());
    EXPECT_EQ(compounds(), row);
    excel->setCaller(com::variant::object(workbook->dispatch()));
    EXPECT_EQ(compounds(), row);
}
TEST_F(Layout, ACallingRangeThatCannotBeInspectedGivesARow) {
    for (const wchar_t* member : {L"Rows", L"Columns"}) {
        auto caller = Range::empty(5, 1);
        caller->fail(member, E_FAIL);
        excel->setCaller(caller);
        EXPECT_EQ(compounds(), row);
    }
    auto caller = Range::empty(5, 1);
    caller->rowLines().answer(L"Count", text(L"many"));
    excel->setCaller(caller);
    EXPECT_EQ(compounds(), row);
    excel->fail(L"Caller", E_FAIL);
    EXPECT_EQ(compounds(), row);
}
TEST_F(Layout, WordsAreReadInAnyCase) {
    excel->setCaller(Range::empty(5, 1));
    EXPECT_EQ(compounds(text(L"Horizontal")), row);
    EXPECT_EQ(compounds(text(L"HORIZONTAL")), row);
    excel->setCaller(Range::empty(1, 1));
    EXPECT_EQ(compounds(text(L"Vertical")), column);
    EXPECT_EQ(compounds(text(L"VERTICAL")), column);
}
TEST_F(Layout, NumbersMeanTheSameAsTheWords) {
    EXPECT_EQ(compounds(number(1)), row);
    EXPECT_EQ(compounds(number(2.0)), column);
    EXPECT_EQ(compounds(com::variant{2L}), column);
    EXPECT_EQ(compounds(cell(number(2))), column);
}
TEST_F(Layout, NothingAutoAndUnknownWordsFollowTheCallingRange) {
    excel->setCaller(Range::empty(5, 1));
    EXPECT_EQ(compounds(omitted()), column);
    EXPECT_EQ(compounds(emptyCell()), column);
    EXPECT_EQ(compounds(text(L"")), column);
    EXPECT_EQ(compounds(text(L"auto")), column);
    EXPECT_EQ(compounds(text(L"sideways")), column);
    EXPECT_EQ(compounds(number(0)), column);
}
TEST_F(Layout, NumbersOutsideTheOrientationsAreRefused) {
    EXPECT_EQ(compounds(number(-1)), badOrientation);
    EXPECT_EQ(compounds(number(4)), badOrientation);
    EXPECT_EQ(compounds(truth(true)), badOrientation);
    EXPECT_EQ(compounds(cells({1, 2})), badOrientation);
    EXPECT_EQ(compounds(cell(errorCell())), badOrientation);
}
TEST_F(Layout, AListHasNoMatrixByNumberButTakesTheWordAsARow) {
    EXPECT_EQ(compounds(number(3)), badOrientation);
    EXPECT_EQ(compounds(text(L"matrix")), row);
}
TEST_F(Layout, AFlashAllowsAMatrix) {
    EXPECT_EQ(flash({.orientation = number(4)}), badOrientationWithMatrix);
    EXPECT_EQ(flash({.orientation = number(-1)}), badOrientationWithMatrix);
}

} // namespace
