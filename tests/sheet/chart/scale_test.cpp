#include "sheet/chart/scale.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <set>

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

struct Span {
    double lowest;
    double highest;
};
class NarrowOrHugeSpan : public testing::TestWithParam<Span> {};

TEST_P(NarrowOrHugeSpan, HasAFewTicksWithDifferentLabels) {
    const auto [lowest, highest] = GetParam();
    const Scale scale = scaleFor(lowest, highest);
    ASSERT_THAT(scale.ticks.size(), testing::AllOf(testing::Ge(2U), testing::Le(13U)));
    EXPECT_EQ(std::set<std::string>(scale.labels.begin(), scale.labels.end()).size(), scale.labels.size());
    for (std::size_t i = 1; i < scale.ticks.size(); ++i) {
        EXPECT_LT(scale.ticks[i - 1], scale.ticks[i]);
    }
    for (const double value : {lowest, highest}) {
        EXPECT_GE(scale.placeOf(value), -1e-6);
        EXPECT_LE(scale.placeOf(value), 1.0 + 1e-6);
    }
}

constexpr double most = std::numeric_limits<double>::max();
INSTANTIATE_TEST_SUITE_P(
    Scale, NarrowOrHugeSpan,
    testing::Values(Span{0.9999999999999999, 1.0}, Span{363.15, std::nextafter(363.15, 400.0)},
                    Span{std::nextafter(101'325.0, 0.0), 101'325.0},
                    Span{-363.15, std::nextafter(-363.15, 0.0)}, Span{363.15, 363.15 * (1.0 + 2e-9)},
                    Span{1e6, 1e6 + 2e-3}, Span{99'999.0, 99'999.0 + 2e-4}, Span{0.0011, 0.0011 + 2e-12},
                    Span{1.0, 1.0 + 1e-9}, Span{-1e308, 1e308}, Span{-most, most}, Span{most, most},
                    Span{0.0, most}, Span{0.0, 5e-324}, Span{-5e-324, 1e-300}, Span{1e-289, 2e-289}));

} // namespace
} // namespace sheet::chart
