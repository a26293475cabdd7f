#include "sheet/formula/address.h"

#include <gtest/gtest.h>

namespace sheet::formula {
namespace {

TEST(Address, ColumnsAreCountedInLetters) {
    EXPECT_EQ(columnName(0), "A");
    EXPECT_EQ(columnName(25), "Z");
    EXPECT_EQ(columnName(26), "AA");
    EXPECT_EQ(columnName(701), "ZZ");
    EXPECT_EQ(columnName(702), "AAA");
    EXPECT_EQ(columnName(maximumColumns - 1), "XFD");
}

TEST(Address, NamesReadBackAsTheSameBlock) {
    for (const Block& block :
         {Block{{0, 0}}, Block{{2, 1}, 4, 3}, Block{{1'048'575, 16'383}}, Block{{9, 27}, 1, 2}}) {
        EXPECT_EQ(readBlock(nameOf(block)), block) << nameOf(block);
    }
}

TEST(Address, DollarSignsAndLowerCaseMakeNoDifference) {
    EXPECT_EQ(readBlock("$b$3"), (Block{{2, 1}}));
    EXPECT_EQ(readBlock("B$3:$c4"), (Block{{2, 1}, 2, 2}));
}

TEST(Address, ARangeMayBeWrittenFromAnyCorner) {
    EXPECT_EQ(readBlock("B7:A1"), (Block{{0, 0}, 7, 2}));
    EXPECT_EQ(readBlock("A7:B1"), (Block{{0, 0}, 7, 2}));
}

TEST(Address, WhatIsNoCellOfAWorksheetIsRefused) {
    for (const char* text :
         {"", "A", "1", "A0", "$", "A1:", ":A1", "A1:B", "XFE1", "A1048577", "A1B", "1A", "A-1",
          "AAAAAAAAAAAAAAAAAAAAAAAA1", "A99999999999999999999999", "A1 ", "A1:B2:C3"}) {
        EXPECT_FALSE(readBlock(text)) << text;
    }
}

TEST(Address, BlocksThatShareACellIntersect) {
    const Block block{{2, 2}, 3, 3};
    EXPECT_TRUE(block.intersects({{4, 4}}));
    EXPECT_TRUE(block.intersects({{0, 0}, 3, 3}));
    EXPECT_FALSE(block.intersects({{5, 2}}));
    EXPECT_FALSE(block.intersects({{2, 5}}));
    EXPECT_FALSE(block.intersects({{0, 0}, 2, 9}));
}

} // namespace
} // namespace sheet::formula
