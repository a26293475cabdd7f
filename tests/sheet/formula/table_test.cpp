#include "sheet/formula/table.h"

#include <gtest/gtest.h>

namespace sheet::formula {
namespace {

std::string printed(const CsvTable& table) { return printedTable(Grid{readWorksheet(table, {})}); }

TEST(Table, ColumnsAndRowsAreNamed) { EXPECT_EQ(printed({{"x", "y"}, {"z"}}), "   A  B\n1  x  y\n2  z\n"); }

TEST(Table, NumbersAreAlignedAtTheDecimalPoint) {
    EXPECT_EQ(printed({{"12.5", "a"}, {"-3", "b"}, {"0.125", "c"}, {"1.5e-9", "d"}}), "   A         B\n"
                                                                                      "1  12.5      a\n"
                                                                                      "2  -3        b\n"
                                                                                      "3   0.125    c\n"
                                                                                      "4   1.5e-09  d\n");
}

TEST(Table, ATextRunsOnOverEmptyCells) {
    EXPECT_EQ(printed({{"a long heading"}, {"1", "2"}}), "   A  B\n1  a long heading\n2  1  2\n");
}

TEST(Table, ATextBeforeAnotherCellMakesTheColumnWider) {
    EXPECT_EQ(printed({{"long text", "2"}, {"1", "3"}}),
              "   A          B\n1  long text  2\n2          1  3\n");
}

TEST(Table, CharactersAreCountedNotBytes) {
    EXPECT_EQ(printed({{"\u00B5m", "1"}, {"ab", "2"}}), "   A   B\n1  \u00B5m  1\n2  ab  2\n");
}

TEST(Table, LineBreaksInACellBecomeBlanks) { EXPECT_EQ(printed({{"a\r\nb\x1B[1m"}}), "   A\n1  a  b [1m\n"); }

TEST(Table, TrailingEmptyCellsAreNotPrinted) {
    EXPECT_EQ(printed({{"x", "", ""}, {"", ""}, {}}), "   A\n1  x\n");
}

TEST(Table, AnEmptyWorksheetSaysSo) { EXPECT_EQ(printed({}), "(the worksheet is empty)\n"); }

TEST(Table, RowsAloneCarryNoNames) {
    EXPECT_EQ(printedRows({2, 2, {"name", "version", "Peng-Robinson", "1.0"}}), "name           version\n"
                                                                                "Peng-Robinson  1.0\n");
}

} // namespace
} // namespace sheet::formula
