#include "sheet/chart/scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace sheet::chart {

namespace {

constexpr double wantedSteps = 6.0;
// Steps of at least a sixth of the span, and a part of one at either end.
constexpr int mostSteps = 12;
// Relative to the values: what is closer are rounding errors.
constexpr double leastSpan = 1e-9;
// Of less, steps and powers of ten would vanish.
constexpr double smallest = 1e-290;
constexpr double largest = std::numeric_limits<double>::max();

double atMost(double size, double value) { return std::clamp(value, -size, size); }

// 1, 2, 2.5 or 5 times a power of ten, at least `width`.
double roundStep(double width) {
    const double power = std::pow(10.0, std::floor(std::log10(width)));
    for (const double digits : {1.0, 2.0, 2.5, 5.0}) {
        if (width <= digits * power * (1.0 + 1e-9)) {
            return digits * power;
        }
    }
    return 10.0 * power;
}

// Labels of 100000 and more, or below 0.001, share a power of ten.
int powerFor(double size) {
    if (size == 0.0 || (size >= 1e-3 && size < 99'999.5)) {
        return 0;
    }
    return 3 * static_cast<int>(std::floor(std::log10(size) / 3.0));
}

std::string labelOf(double value, double step) {
    // As many decimals as the step needs.
    int decimals = 0;
    double scaled = step;
    while (decimals < 15 && std::abs(scaled - std::round(scaled)) > 1e-6 * scaled) {
        scaled *= 10.0;
        ++decimals;
    }
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value == 0.0 ? 0.0 : value);
    return text.data();
}

} // namespace

Scale scaleFor(double lowest, double highest) {
    const double size = std::max(std::abs(lowest), std::abs(highest));
    // A single value stands in the middle, and so do values that differ by rounding only.
    if (size < smallest || highest / 2.0 - lowest / 2.0 <= leastSpan * size / 2.0) {
        const double around = size < smallest ? 1.0 : size * 0.1;
        lowest = atMost(largest, lowest - around);
        highest = atMost(largest, highest + around);
    }
    const double step = roundStep(highest / wantedSteps - lowest / wantedSteps);
    const double from = std::floor(lowest / step + 1e-9);
    const double to = std::ceil(highest / step - 1e-9);
    Scale scale{atMost(largest, from * step), atMost(largest, to * step), {}, {}, 0};
    scale.power = powerFor(std::max(std::abs(scale.first), std::abs(scale.last)));
    const double unit = std::pow(10.0, scale.power);
    // Counted, as adding one to a large number may leave it as it is.
    const int steps = std::min(static_cast<int>(to - from), mostSteps);
    for (int i = 0; i <= steps; ++i) {
        const double tick = (from + i) * step;
        if (std::abs(tick) <= largest) {
            scale.ticks.push_back(tick);
            scale.labels.push_back(labelOf(tick / unit, step / unit));
        }
    }
    return scale;
}

} // namespace sheet::chart
