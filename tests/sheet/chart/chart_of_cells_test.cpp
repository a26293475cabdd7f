#include "sheet/chart/chart_of_cells.h"

#include <cmath>
#include <gtest/gtest.h>

namespace sheet::chart {
namespace {

formula::Block range(std::string_view name) { return formula::readBlock(name).value(); }

Chart chartOf(const formula::CsvTable& cells, const std::vector<formula::Block>& x,
              const std::vector<formula::Block>& y) {
    return chart::chartOf(formula::Grid{formula::readWorksheet(cells, {})}, x, y);
}

const formula::CsvTable boiling = {{"Boiling"},
                                   {"mixture", "boiling begins at", "boiling ends at"},
                                   {"x", "T / K", "T / K"},
                                   {"0", "380", "380"},
                                   {"0.5", "", "370"},
                                   {"1", "350", "350"}};

TEST(ChartOfCells, TheTextsAboveARangeNameSeriesAndAxes) {
    const Chart chart = chartOf(boiling, {range("A4:A6")}, {range("B4:B6"), range("C4:C6")});
    EXPECT_EQ(chart.title, "Boiling");
    EXPECT_EQ(chart.xTitle, "x");
    EXPECT_EQ(chart.yTitle, "T / K");
    ASSERT_EQ(chart.series.size(), 2U);
    EXPECT_EQ(chart.series[0].name, "boiling begins at");
    EXPECT_EQ(chart.series[1].name, "boiling ends at");
    EXPECT_EQ(chart.series[1].points[1].x, 0.5);
    EXPECT_EQ(chart.series[1].points[1].y, 370.0);
}

TEST(ChartOfCells, ACellWithoutANumberInterruptsTheLine) {
    EXPECT_TRUE(std::isnan(chartOf(boiling, {range("A4:A6")}, {range("B4:B6")}).series[0].points[1].y));
}

TEST(ChartOfCells, EachSeriesMayHaveItsOwnX) {
    const Chart chart = chartOf(boiling, {range("B4:B6"), range("C4:C6")}, {range("A4:A6"), range("A4:A6")});
    EXPECT_EQ(chart.series[0].points[2].x, 350.0);
    EXPECT_EQ(chart.series[1].points[1].x, 370.0);
}

TEST(ChartOfCells, OfARowTheTextAtItsLeftIsTheHeading) {
    const Chart chart = chartOf({{"x", "1", "2"}, {"y", "3", "4"}}, {range("B1:C1")}, {range("B2:C2")});
    EXPECT_EQ(chart.xTitle, "x");
    EXPECT_EQ(chart.yTitle, "y");
    EXPECT_EQ(chart.series[0].points[1].y, 4.0);
}

TEST(ChartOfCells, SeriesWithDifferentHeadingsLeaveTheAxisWithoutTitle) {
    const Chart chart = chartOf({{"", "x", "density", "volume"}, {"", "1", "2", "3"}, {"", "2", "3", "4"}},
                                {range("B2:B3")}, {range("C2:C3"), range("D2:D3")});
    EXPECT_EQ(chart.yTitle, "");
    EXPECT_EQ(chart.series[0].name, "density");
    EXPECT_EQ(chart.series[1].name, "volume");
    EXPECT_EQ(chart.title, "");
}

} // namespace
} // namespace sheet::chart
