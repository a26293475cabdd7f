#include "sheet/formula/value.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace sheet::formula {
namespace {

TEST(CellText, NumbersAreNumbersWithBlanksAroundOrNot) {
    EXPECT_EQ(readCell("12"), Value{12.0});
    EXPECT_EQ(readCell(" -3.5 "), Value{-3.5});
    EXPECT_EQ(readCell("+.5"), Value{0.5});
    EXPECT_EQ(readCell("5."), Value{5.0});
    EXPECT_EQ(readCell("6.02E+23"), Value{6.02e23});
    EXPECT_EQ(readCell("1e-400"), Value{0.0});
}

TEST(CellText, NumbersTooSmallForADoubleAreZeroHoweverTheyAreWritten) {
    EXPECT_EQ(readCell("0." + std::string(400, '0') + "1"), Value{0.0});
    EXPECT_EQ(readCell("0." + std::string(400, '0') + "1e+5"), Value{0.0});
    EXPECT_EQ(readCell("-1e-99999999999999999999"), Value{0.0});
}

TEST(CellText, NumbersTooLargeForADoubleAreTextsHoweverTheyAreWritten) {
    for (const std::string& text : {"1" + std::string(400, '0'), "1" + std::string(400, '0') + "e-5",
                                    std::string{"-1e99999999999999999999"}}) {
        EXPECT_EQ(readCell(text), Value{text});
    }
}

TEST(CellText, TruthValuesInAnyCase) {
    EXPECT_EQ(readCell("TRUE"), Value{true});
    EXPECT_EQ(readCell("false"), Value{false});
}

TEST(CellText, ErrorValues) {
    EXPECT_EQ(readCell("#N/A"), Value{CellError::na});
    EXPECT_EQ(readCell("#div/0!"), Value{CellError::div0});
}

TEST(CellText, NothingIsAnEmptyCell) { EXPECT_TRUE(isEmpty(readCell(""))); }

TEST(CellText, EverythingElseIsTextAsItStands) {
    for (const char* text : {" ",    "a",    "1 2", "1,5", "1e",    "--1",   "+-1", "1e999", "inf", "nan",
                             "-inf", "0x10", "50%", "1/2", "TRUE.", "#N/A!", ".",   "-",     "e5",  " x "}) {
        EXPECT_EQ(readCell(text), Value{std::string{text}}) << text;
    }
}

TEST(CellText, ExactNumbersReadBackAsTheSame) {
    for (const double number : {0.1, 1.0 / 3.0, 1e-300, -2.5e20, 101325.0, 5e-324,
                                std::numeric_limits<double>::max(), 0.30000000000000004, -0.0}) {
        EXPECT_EQ(readCell(exactText(number)), Value{number});
    }
    EXPECT_EQ(exactText(0.1), "0.1");
}

TEST(CellText, DisplayedNumbersHaveAtMostEightDigits) {
    EXPECT_EQ(displayText(1.0 / 3.0), "0.33333333");
    EXPECT_EQ(displayText(-12345.678901), "-12345.679");
    EXPECT_EQ(displayText(1.5e-7), "1.5e-07");
    EXPECT_EQ(displayText(0.1 + 0.2), "0.3");
}

TEST(CellText, DisplayedWholeNumbersKeepTheirDigits) {
    EXPECT_EQ(displayText(3000000.0), "3000000");
    EXPECT_EQ(displayText(123456789012.0), "123456789012");
    EXPECT_EQ(displayText(1e15), "1e+15");
    EXPECT_EQ(displayText(-0.0), "0");
}

TEST(CellText, OtherValuesShowTheirNames) {
    EXPECT_EQ(displayText(true), "TRUE");
    EXPECT_EQ(displayText(CellError::spill), "#SPILL!");
    EXPECT_EQ(displayText({}), "");
    EXPECT_EQ(exactText(std::string{"methane"}), "methane");
}

TEST(CellText, ErrorsAreKnownByExcelsNumbers) {
    EXPECT_EQ(errorNumbered(2042), CellError::na);
    EXPECT_EQ(errorNumbered(2045), CellError::spill);
    EXPECT_EQ(errorNumbered(0), std::nullopt);
}

} // namespace
} // namespace sheet::formula
