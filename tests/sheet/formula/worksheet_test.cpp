#include "sheet/formula/worksheet.h"

#include <gtest/gtest.h>

namespace sheet::formula {
namespace {

std::vector<std::string> problemsOf(const CsvTable& table, std::vector<Block> arrays = {}) {
    std::vector<std::string> result;
    try {
        readWorksheet(table, arrays);
    } catch (const InputError& error) {
        for (const Problem& problem : error.problems()) {
            result.push_back(problem.inFile("t.csv"));
        }
    }
    return result;
}

TEST(Worksheet, CellsAreConstantsOrFormulas) {
    const Worksheet sheet = readWorksheet({{"T", "300"}, {"", "=CapeOpenX(B1)"}}, {});
    ASSERT_EQ(sheet.constants.size(), 2U);
    EXPECT_EQ(sheet.constants[1].cell, (Address{0, 1}));
    EXPECT_EQ(sheet.constants[1].value, Value{300.0});
    ASSERT_EQ(sheet.formulas.size(), 1U);
    EXPECT_EQ(sheet.formulas[0].block, (Block{{1, 1}}));
    EXPECT_FALSE(sheet.formulas[0].array);
}

TEST(Worksheet, AFormulaCanBeEnteredOverARange) {
    const Worksheet sheet = readWorksheet({{"=CapeOpenX()"}}, std::vector{Block{{0, 0}, 4, 1}});
    EXPECT_TRUE(sheet.formulas[0].array);
    EXPECT_EQ(sheet.formulas[0].block, (Block{{0, 0}, 4, 1}));
}

TEST(Worksheet, EveryUnreadableFormulaIsReported) {
    EXPECT_EQ(problemsOf({{"=SUM(A2)"}, {"ok", "=B1+1"}}),
              (std::vector<std::string>{"t.csv: row 1, column 1 (A1): the formula cannot be read at "
                                        "character 2: the function SUM is not one "
                                        "of the add-in's; write its result into a cell as a number or text",
                                        "t.csv: row 2, column 2 (B2): the formula cannot be read at "
                                        "character 4: formulas cannot calculate; "
                                        "write the result of the calculation into a cell and refer to it"}));
}

TEST(Worksheet, AnArrayRangeBeginsWithItsFormula) {
    const std::vector<std::string> expected{"t.csv: row 2, column 1 (A2): no formula stands here to be "
                                            "entered over A2:A5; an array range begins with the "
                                            "cell that holds its formula"};
    EXPECT_EQ(problemsOf({{"x"}}, {Block{{1, 0}, 4, 1}}), expected);
    EXPECT_EQ(problemsOf({{"x"}, {"y"}}, {Block{{1, 0}, 4, 1}}), expected);
}

TEST(Worksheet, TheOtherCellsOfAnArrayRangeAreEmpty) {
    EXPECT_EQ(problemsOf({{"=CapeOpenX()"}, {"x"}}, {Block{{0, 0}, 2, 1}}),
              (std::vector<std::string>{
                  "t.csv: row 2, column 1 (A2): this cell belongs to the array range A1:A2 and "
                  "must be empty; clear it or make the range smaller"}));
}

TEST(Worksheet, ArrayRangesDoNotOverlap) {
    EXPECT_EQ(problemsOf({{"=CapeOpenX()"}}, {Block{{0, 0}, 2, 1}, Block{{0, 0}, 1, 2}}),
              (std::vector<std::string>{
                  "t.csv: row 1, column 1 (A1): the array range A1:B1 overlaps A1:A2; give each "
                  "array formula cells of its own"}));
}

} // namespace
} // namespace sheet::formula
