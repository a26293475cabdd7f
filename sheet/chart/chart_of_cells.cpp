#include "sheet/chart/chart_of_cells.h"

namespace sheet::chart {

namespace {

using formula::Address;
using formula::Block;
using formula::Grid;

// The text of a cell; empty for anything else.
std::string textIn(const Grid& grid, Address cell) {
    const std::string* const text = std::get_if<std::string>(&grid.at(cell));
    return text == nullptr ? std::string{} : *text;
}

struct Heading {
    std::string series;
    std::string axis;
};

// Of a row it stands to the left, where the last text is the nearest as well.
Heading headingOf(const Grid& grid, const Block& range) {
    const bool isRow = range.rows == 1 && range.columns > 1;
    const auto before = [&](std::size_t distance) {
        const std::size_t room = isRow ? range.first.column : range.first.row;
        if (room < distance) {
            return std::string{};
        }
        return textIn(grid, isRow ? Address{range.first.row, range.first.column - distance}
                                  : Address{range.first.row - distance, range.first.column});
    };
    const std::string nearest = before(1);
    const std::string further = nearest.empty() ? std::string{} : before(2);
    return {further.empty() ? nearest : further, nearest};
}

} // namespace

Chart chartOf(const Grid& grid, std::span<const Block> x, std::span<const Block> y) {
    Chart chart{textIn(grid, {0, 0}), headingOf(grid, x.front()).axis, headingOf(grid, y.front()).axis, {}};
    for (std::size_t i = 0; i < y.size(); ++i) {
        const formula::Matrix xs = grid.values(x.size() == 1 ? x.front() : x[i]);
        const formula::Matrix ys = grid.values(y[i]);
        const Heading heading = headingOf(grid, y[i]);
        if (heading.axis != chart.yTitle) {
            chart.yTitle.clear(); // the legend tells them apart
        }
        Series series{heading.series, {}};
        for (std::size_t k = 0; k < ys.values.size(); ++k) {
            series.points.push_back({formula::numberIn(xs.values[k]), formula::numberIn(ys.values[k])});
        }
        chart.series.push_back(std::move(series));
    }
    return chart;
}

} // namespace sheet::chart
