#include "sheet/formula/formula.h"

#include <gtest/gtest.h>

namespace sheet::formula {
namespace {

std::string problemOf(const std::string& text) {
    try {
        readFormula(text);
    } catch (const FormulaError& error) {
        return error.what();
    }
    return "(accepted)";
}

constexpr Block a1{{0, 0}};

TEST(Formula, ACallHasANameAndArguments) {
    EXPECT_EQ(readFormula("=CapeOpenFlash(\"Gas\",B1:B7,-1.5e2,TRUE,false,$A$1)"),
              (Formula{"CapeOpenFlash", {"Gas", Block{{0, 1}, 7, 1}, -150.0, true, false, a1}}));
}

TEST(Formula, LeftOutArgumentsKeepTheirPlaces) {
    EXPECT_EQ(readFormula("=CapeOpenX(,A1,,\"\",)").arguments,
              (std::vector<Argument>{Omitted{}, a1, Omitted{}, "", Omitted{}}));
}

TEST(Formula, ACallMayHaveNoArguments) {
    EXPECT_EQ(readFormula("=CapeOpenPackageNames()"), (Formula{"CapeOpenPackageNames", {}}));
    EXPECT_EQ(readFormula("=CapeOpenPackageNames( )").arguments.size(), 0U);
}

TEST(Formula, TheAddInsQualificationIsLeftAway) {
    EXPECT_EQ(readFormula("=Quorvane.Excel.1.CapeOpenPhases(A1)").function, "CapeOpenPhases");
    EXPECT_EQ(readFormula("=quorvane.excel.CapeOpenPhases(A1)").function, "CapeOpenPhases");
}

TEST(Formula, QuotesInsideATextAreDoubled) {
    EXPECT_EQ(readFormula("=CapeOpenX(\"a \"\"b\"\", c)\")").arguments[0], Argument{"a \"b\", c)"});
}

TEST(Formula, BlanksBetweenThePartsDoNotCount) {
    EXPECT_EQ(readFormula("= CapeOpenX ( \"a\" ,\n 2 , A1 ) "), (Formula{"CapeOpenX", {"a", 2.0, a1}}));
}

TEST(Formula, AReferenceAloneIsAFormula) {
    EXPECT_EQ(readFormula("=$A$1"), (Formula{"", {a1}}));
    EXPECT_EQ(readFormula("=A1:B2"), (Formula{"", {Block{{0, 0}, 2, 2}}}));
}

TEST(Formula, ReferencesAreListedInOrder) {
    EXPECT_EQ(readFormula("=CapeOpenX(B2,1,A1)").references(), (std::vector<Block>{Block{{1, 1}}, a1}));
}

TEST(Formula, ATextIsAsLongAsExcelAllows) {
    EXPECT_EQ(problemOf("=CapeOpenX(\"" + std::string(255, 'x') + "\")"), "(accepted)");
    EXPECT_EQ(problemOf("=CapeOpenX(\"" + std::string(256, 'x') + "\")"),
              "the formula cannot be read at character 12: a text in a formula has at most 255 characters; "
              "write it "
              "into a cell and refer to the cell");
    EXPECT_EQ(problemOf("=CapeOpenX(" + std::string(8192, ' ') + ")"),
              "the formula has more than 8192 characters; write long texts into cells and refer to them");
}

struct Refused {
    const char* formula;
    const char* problem;
};

class RefusedFormula : public testing::TestWithParam<Refused> {};

TEST_P(RefusedFormula, SaysWhatToWriteInstead) {
    EXPECT_EQ(problemOf(GetParam().formula),
              std::string{"the formula cannot be read at character "} + GetParam().problem);
}

constexpr const char* otherSheets =
    "other worksheets cannot be referred to; copy the cells into this worksheet";

INSTANTIATE_TEST_SUITE_P(
    Formula, RefusedFormula,
    testing::Values(
        Refused{"=", "2: a formula is one function call, such as =CapeOpenPhases(\"Gas\"), or one reference, "
                     "such as =A1"},
        Refused{"=5", "2: a formula is one function call, such as =CapeOpenPhases(\"Gas\"), or one "
                      "reference, such as =A1"},
        Refused{"=\"a\"", "2: a formula is one function call, such as =CapeOpenPhases(\"Gas\"), or one "
                          "reference, such as =A1"},
        Refused{"=SUM(A1:A3)", "2: the function SUM is not one of the add-in's; write its result into a cell "
                               "as a number or text"},
        Refused{"=LOG10(A1)", "2: the function LOG10 is not one of the add-in's; write its result into a "
                              "cell as a number or text"},
        Refused{"=CapeOpenX", "11: an opening parenthesis belongs after CapeOpenX"},
        Refused{"=CapeOpenX(", "12: the closing parenthesis is missing"},
        Refused{"=CapeOpenX(1", "13: the closing parenthesis is missing"},
        Refused{"=CapeOpenX(1,", "14: the closing parenthesis is missing"},
        Refused{"=CapeOpenX(1 2)", "14: a comma or a closing parenthesis belongs here"},
        Refused{"=CapeOpenX(1;2)", "13: arguments are separated by commas; write , instead of ;"},
        Refused{"=CapeOpenX(\"a)", "12: the text that begins here is never closed; add the closing quote"},
        Refused{"=CapeOpenX(SUM(A1))", "12: the function SUM is not one of the add-in's; write its result "
                                       "into a cell as a number or text"},
        Refused{
            "=CapeOpenX(CapeOpenY())",
            "12: a call cannot stand inside a call; give CapeOpenY a cell of its own and refer to that cell"},
        Refused{
            "=A1+B1",
            "4: formulas cannot calculate; write the result of the calculation into a cell and refer to it"},
        Refused{
            "=CapeOpenX(A1*2)",
            "14: formulas cannot calculate; write the result of the calculation into a cell and refer to it"},
        Refused{
            "=CapeOpenX(5%)",
            "13: formulas cannot calculate; write the result of the calculation into a cell and refer to it"},
        Refused{
            "=CapeOpenX()&\"a\"",
            "13: formulas cannot calculate; write the result of the calculation into a cell and refer to it"},
        Refused{"=CapeOpenX(-A1)", "12: this is not a number; write numbers like -12.5 or 1.2E-5, and "
                                   "calculations into cells of their own"},
        Refused{"=CapeOpenX(1.2.3)", "12: this is not a number; write numbers like -12.5 or 1.2E-5, and "
                                     "calculations into cells of their own"},
        Refused{"=CapeOpenX(1e)", "12: this is not a number; write numbers like -12.5 or 1.2E-5, and "
                                  "calculations into cells of their own"},
        Refused{
            "=CapeOpenX({1,2})",
            "12: array constants are not understood; write the values into cells and refer to their range"},
        Refused{"=CapeOpenX((A1))",
                "12: parentheses are not understood here; write one function call without calculations"},
        Refused{"=@A1", "2: the sign @ is not understood; leave it out"},
        Refused{"=CapeOpenX(#N/A)",
                "12: error values cannot be written in a formula; refer to a cell that shows the error"},
        Refused{"=CapeOpenX(B2#)",
                "14: spilled ranges cannot be referred to by #; write the range, such as B2:B9"},
        Refused{"=CapeOpenX(A:A)",
                "12: whole columns cannot be referred to; write the rows too, such as A1:A20"},
        Refused{"=CapeOpenX(A1:B)", "15: a range is written from one cell to another, such as A1:B7"},
        Refused{"=CapeOpenX(1:3)", "13: a range is written from one cell to another, such as A1:B7"},
        Refused{"=CapeOpenX(Feed)", "12: the name Feed is not known; write a text in quotes, a number, TRUE, "
                                    "FALSE or a reference like A1"},
        Refused{"=CapeOpenX(XFE1)", "12: the name XFE1 is not known; write a text in quotes, a number, TRUE, "
                                    "FALSE or a reference like A1"},
        Refused{"=$A", "2: this is no cell of a worksheet; write a reference like A1, $A$1 or A1:B7"},
        Refused{"=CapeOpenX(A1:B1048576)",
                "12: the range A1:B1048576 has more than 1048576 cells; write the range that is used"},
        Refused{"=CapeOpenX(1)2", "14: text follows the formula; write one function call only"}));

TEST(Formula, OtherWorksheetsAreRefused) {
    for (const char* text :
         {"=Sheet2!A1", "=CapeOpenX(Sheet2!A1)", "=CapeOpenX('My sheet'!A1)", "=CapeOpenX(AB2!A1)"}) {
        EXPECT_NE(problemOf(text).find(otherSheets), std::string::npos) << text << " -> " << problemOf(text);
    }
}

TEST(Formula, TooManyArgumentsAreRefused) {
    EXPECT_EQ(problemOf("=CapeOpenX(" + std::string(254, ',') + ")"), "(accepted)");
    EXPECT_NE(
        problemOf("=CapeOpenX(" + std::string(255, ',') + ")").find("a function takes at most 255 arguments"),
        std::string::npos);
}

} // namespace
} // namespace sheet::formula
