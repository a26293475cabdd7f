#include "sheet/chart/chart.h"

#include <gmock/gmock.h>
#include <limits>

namespace sheet::chart {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

std::size_t countOf(const std::string& text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(Chart, ALineGoesThroughItsPoints) {
    // The axes go from 0 to 10; the chart's area from 90 to 696 and from 416 up to 52.
    const std::string svg = svgOf({"", "time", "length", {{"a", {{0, 0}, {5, 10}, {10, 5}}}}});
    EXPECT_THAT(svg, HasSubstr("<polyline points=\"90.0,416.0 393.0,24.0 696.0,220.0\""));
    EXPECT_EQ(countOf(svg, "<circle"), 3U);
}

TEST(Chart, AMissingPointInterruptsTheLine) {
    const std::string svg = svgOf({"", "", "", {{"a", {{0, 0}, {1, 1}, {2, missing}, {3, 3}, {4, 4}}}}});
    EXPECT_EQ(countOf(svg, "<polyline"), 2U);
    EXPECT_EQ(countOf(svg, "<circle"), 4U);
    EXPECT_THAT(svg, Not(HasSubstr("nan")));
}

TEST(Chart, SeveralSeriesHaveALegend) {
    const std::string svg = svgOf({"", "", "", {{"boiling", {{0, 0}, {1, 1}}}, {"dew", {{0, 1}, {1, 2}}}}});
    EXPECT_THAT(svg, HasSubstr(">boiling</text>"));
    EXPECT_THAT(svg, HasSubstr(">dew</text>"));
    EXPECT_THAT(svg, HasSubstr("stroke=\"#0072b2\""));
    EXPECT_THAT(svg, HasSubstr("stroke=\"#d55e00\""));
}

TEST(Chart, ASingleSeriesHasNoLegend) {
    EXPECT_THAT(svgOf({"", "", "", {{"alone", {{0, 0}, {1, 1}}}}}), Not(HasSubstr("alone")));
}

TEST(Chart, TitlesAreEscaped) {
    const std::string svg = svgOf({"a < b & \"c\"\n", "x > 0", "y", {{"", {{0, 0}, {1, 1}}}}});
    EXPECT_THAT(svg, HasSubstr(">a &lt; b &amp; &quot;c&quot; </text>"));
    EXPECT_THAT(svg, HasSubstr(">x &gt; 0</text>"));
}

TEST(Chart, ThePowerOfTenStandsAtTheAxis) {
    const std::string svg = svgOf({"", "T / K", "P / Pa", {{"", {{200, 1e6}, {300, 5e6}}}}});
    EXPECT_THAT(svg, HasSubstr(">T / K</text>"));
    EXPECT_THAT(svg, HasSubstr(">P / Pa  (× 10⁶)</text>"));
}

TEST(Chart, ManyPointsAreALineWithoutMarks) {
    Series series{"", {}};
    for (int i = 0; i < 100; ++i) {
        series.points.push_back({double(i), double(i * i)});
    }
    EXPECT_EQ(countOf(svgOf({"", "", "", {series}}), "<circle"), 0U);
}

TEST(Chart, AnIsolatedPointIsMarkedAmongManyPoints) {
    Series series{"", {}};
    for (int i = 0; i < 100; ++i) {
        series.points.push_back({double(i), i > 50 && i % 50 != 5 ? missing : double(i)});
    }
    EXPECT_EQ(countOf(svgOf({"", "", "", {series}}), "<circle"), 1U);
}

TEST(Chart, LongTitlesAndNamesAreShortened) {
    const std::string name(45, 'n');
    const std::string title = std::string(71, 't') + "äöü";
    const std::string svg =
        svgOf({title, std::string(81, 'x'), std::string(45, 'y'), {{name, {{0, 0}}}, {"b", {{1, 1}}}}});
    EXPECT_THAT(svg, HasSubstr('>' + std::string(71, 't') + "…</text>"));
    EXPECT_THAT(svg, HasSubstr('>' + std::string(79, 'x') + "…</text>"));
    EXPECT_THAT(svg, HasSubstr('>' + std::string(43, 'y') + "…</text>"));
    EXPECT_THAT(svg, HasSubstr('>' + std::string(39, 'n') + "…</text>"));
}

TEST(Chart, ALegendThatIsTooWideForOneRowGoesOn) {
    const std::vector<Point> points{{0, 0}, {1, 1}};
    const std::string svg = svgOf(
        {"", "", "", {{std::string(40, 'a'), points}, {std::string(40, 'b'), points}, {"last", points}}});
    // 334 + 334 units fill the first row.
    EXPECT_THAT(svg, HasSubstr("y=\"32.5\" text-anchor=\"start\">" + std::string(40, 'b')));
    EXPECT_THAT(svg, HasSubstr("y=\"52.5\" text-anchor=\"start\">last"));
}

TEST(Chart, SeriesOfTheSameColourAreDashedDifferently) {
    const Series series{"s", {{0, 0}, {1, 1}}};
    const std::string svg = svgOf({"", "", "", std::vector<Series>(15, series)});
    EXPECT_EQ(countOf(svg, "stroke-dasharray=\"8 4\""), 14U); // of the line and in the legend
    EXPECT_EQ(countOf(svg, "stroke-dasharray=\"2 3\""), 2U);
}

TEST(Chart, WithoutNumbersThereIsNothingToDraw) {
    EXPECT_FALSE(hasPoints({"", "", "", {{"a", {{missing, 1.0}}}}}));
    EXPECT_TRUE(hasPoints({"", "", "", {{"a", {{missing, 1.0}, {0.0, 0.0}}}}}));
}

} // namespace
} // namespace sheet::chart
