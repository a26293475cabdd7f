// A chart of numbers over numbers as an SVG picture (Scalable Vector Graphics 1.1, UTF-8). The same chart is
// the same text on every machine.
#pragma once

#include <string>
#include <vector>

namespace sheet::chart {

struct Point {
    double x; // a point that is not finite interrupts the line
    double y;
};

struct Series {
    std::string name; // a legend shows the names when there are several series
    std::vector<Point> points;
};

struct Chart {
    std::string title;
    std::string xTitle;
    std::string yTitle;
    std::vector<Series> series;
};

/// Whether there is any point to draw.
bool hasPoints(const Chart& chart);

/// hasPoints() must be true.
std::string svgOf(const Chart& chart);

} // namespace sheet::chart
