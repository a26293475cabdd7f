#include "sheet/formula/block_index.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace sheet::formula {
namespace {

std::vector<std::size_t> foundBy(const BlockIndex& index, std::string_view block) {
    std::vector<std::size_t> found;
    index.find(readBlock(block).value(), found);
    std::ranges::sort(found);
    return found;
}

using Numbers = std::vector<std::size_t>;

TEST(BlockIndex, BlocksThatShareACellAreFound) {
    BlockIndex index;
    index.add(1, readBlock("A1:C3").value());
    index.add(2, readBlock("C3").value());
    index.add(3, readBlock("D4:D400").value());
    index.add(4, readBlock("A1:XFD1").value());
    EXPECT_EQ(foundBy(index, "C3"), (Numbers{1, 2}));
    EXPECT_EQ(foundBy(index, "C3:D4"), (Numbers{1, 2, 3}));
    EXPECT_EQ(foundBy(index, "D5:E1048576"), (Numbers{3}));
    EXPECT_EQ(foundBy(index, "XFD1"), (Numbers{4}));
    EXPECT_EQ(foundBy(index, "E2"), Numbers{});
}

TEST(BlockIndex, ABlockIsFoundByItsLastCellBeyondATilesEdge) {
    BlockIndex index;
    index.add(7, readBlock("D8:F10").value());
    EXPECT_EQ(foundBy(index, "F10"), Numbers{7});
    EXPECT_EQ(foundBy(index, "G10"), Numbers{});
}

TEST(BlockIndex, ItFindsWhatAComparisonOfAllBlocksFinds) {
    std::mt19937 random{20'251'121};
    const auto upTo = [&](std::size_t limit) { return random() % limit; };
    const auto any = [&] {
        return Block{{upTo(300), upTo(60)}, 1 + upTo(1 + upTo(90)), 1 + upTo(1 + upTo(30))};
    };
    BlockIndex index;
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < 2'000; ++i) {
        blocks.push_back(any());
        index.add(i, blocks.back());
    }
    for (int round = 0; round < 500; ++round) {
        const Block wanted = any();
        Numbers expected;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            if (blocks[i].intersects(wanted)) {
                expected.push_back(i);
            }
        }
        EXPECT_EQ(foundBy(index, nameOf(wanted)), expected) << nameOf(wanted);
    }
}

TEST(BlockIndex, ASearchAmongAHundredThousandBlocksLooksAtTheNearestOnly) {
    BlockIndex index;
    for (std::size_t row = 0; row < 100'000; ++row) {
        index.add(row, {{row, 1}, 1, 5});
    }
    std::vector<std::size_t> found;
    const std::size_t looked = index.find(readBlock("C50000").value(), found);
    EXPECT_EQ(found, Numbers{49'999});
    EXPECT_LE(looked, 4U);
}

} // namespace
} // namespace sheet::formula
