// The numbers along an axis: round, evenly spaced, and so few that they can be read.
#pragma once

#include <string>
#include <vector>

namespace sheet::chart {

struct Scale {
    double first = 0.0; // the axis begins and ends at a tick, or at the largest number that there is
    double last = 1.0;
    std::vector<double> ticks;
    std::vector<std::string> labels; // of the ticks, without the power of ten
    int power = 0;                   // of ten, which the labels leave out; a multiple of 3

    /// From 0 at the first tick to 1 at the last.
    double placeOf(double value) const {
        return (value / 2.0 - first / 2.0) / (last / 2.0 - first / 2.0); // no overflow
    }
};

/// For values from `lowest` to `highest`, both finite.
Scale scaleFor(double lowest, double highest);

} // namespace sheet::chart
