// The format against tables that another tool wrote.
#include "src/workbook/saved_state/persisted_package.h"
#include "src/workbook/saved_state/state_text.h"
#include "tests/src/workbook/golden.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

void expectRow(const std::vector<std::wstring>& golden, const Bytes& state) {
    const PersistedPackage package{golden[0], golden[1], golden[2], golden[3], golden[4], stateTextOf(state)};
    EXPECT_LE(columnCount(package), golden.size());
    for (std::size_t column = 0; column < golden.size(); ++column) {
        EXPECT_TRUE(cellOf(package, column) == golden[column]) << "column " << column;
    }
    const auto cell = [&](std::size_t column) { return std::wstring_view{golden[column]}; };
    EXPECT_EQ(bytesOfStateText(readPersistedPackage(golden.size(), cell).stateText), state);
}

struct Case {
    const char* name;
    Bytes state;
    std::size_t columns;
};

class GoldenFormat : public testing::TestWithParam<Case> {};

TEST_P(GoldenFormat, IsWrittenAndRead) {
    const auto table = goldenTable(GetParam().name);
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(table[0].size(), GetParam().columns);
    expectRow(table[0], GetParam().state);
}

INSTANTIATE_TEST_SUITE_P(OnePackage, GoldenFormat,
                         testing::Values(Case{"empty", {}, 6}, Case{"bytes_500", repeated(500), 6},
                                         Case{"bytes_501", repeated(501), 6},
                                         Case{"text_32000", noise(24000), 8},
                                         Case{"text_70000", noise(52500), 9},
                                         Case{"compressed_pieces", letters(60000), 8}),
                         [](const auto& one) { return std::string{one.param.name}; });

TEST(GoldenFormatOfTwo, IsAsWideAsTheWiderNeeds) {
    const auto table = goldenTable("two_widths");
    ASSERT_EQ(table.size(), 2U);
    expectRow(table[0], noise(52500));
    expectRow(table[1], repeated(501));
    EXPECT_EQ(table[1].size(), 9U);
}

} // namespace
} // namespace quorvane
