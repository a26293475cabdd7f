#include "sheet/chart/scale.h"

#include <gmock/gmock.h>

namespace sheet::chart {
namespace {

using testing::ElementsAre;

TEST(Scale, BeginsAndEndsAtRoundNumbers) {
    const Scale scale = scaleFor(353.4, 383.1);
    EXPECT_THAT(scale.labels, ElementsAre("350", "355", "360", "365", "370", "375", "380", "385"));
    EXPECT_EQ(scale.first, 350.0);
    EXPECT_EQ(scale.last, 385.0);
    EXPECT_EQ(scale.power, 0);
}

TEST(Scale, FractionsHaveTheDecimalsOfTheirStep) {
    EXPECT_THAT(scaleFor(0.0, 1.0).labels, ElementsAre("0.0", "0.2", "0.4", "0.6", "0.8", "1.0"));
    EXPECT_THAT(scaleFor(0.25, 1.5).labels, ElementsAre("0.25", "0.50", "0.75", "1.00", "1.25", "1.50"));
}

TEST(Scale, LargeNumbersShareAPowerOfTen) {
    const Scale scale = scaleFor(101'325.0, 5'600'000.0);
    EXPECT_EQ(scale.power, 6);
    EXPECT_THAT(scale.labels, ElementsAre("0", "1", "2", "3", "4", "5", "6"));
}

TEST(Scale, SmallNumbersShareAPowerOfTen) {
    const Scale scale = scaleFor(1.1e-5, 1.9e-5);
    EXPECT_EQ(scale.power, -6);
    EXPECT_THAT(scale.labels, ElementsAre("10", "12", "14", "16", "18", "20"));
}

TEST(Scale, NegativeNumbersCrossZeroAtATick) {
    EXPECT_THAT(scaleFor(-450.0, 250.0).labels, ElementsAre("-600", "-400", "-200", "0", "200", "400"));
}

TEST(Scale, ASingleValueStandsInTheMiddle) {
    const Scale scale = scaleFor(300.0, 300.0);
    EXPECT_LT(scale.first, 300.0);
    EXPECT_GT(scale.last, 300.0);
    EXPECT_DOUBLE_EQ(scaleFor(0.0, 0.0).placeOf(0.0), 0.5);
}

TEST(Scale, LargeNumbersThatHardlyDifferHaveAFewTicks) {
    EXPECT_THAT(scaleFor(1e17, 1e17 + 16.0).ticks, testing::SizeIs(testing::Le(8U)));
}

} // namespace
} // namespace sheet::chart
