// Numbers that are none, or at the edge of what there is.
#pragma once

#include <limits>
#include <ostream>

namespace faults {

using Limits = std::numeric_limits<double>;

struct Number {
    const char* name;
    double value;
};

inline constexpr Number numbers[] = {
    {"NaN", Limits::quiet_NaN()},
    {"SignallingNaN", Limits::signaling_NaN()},
    {"Infinity", Limits::infinity()},
    {"MinusInfinity", -Limits::infinity()},
    {"Denormal", Limits::denorm_min()},
    {"MinusDenormal", -Limits::denorm_min()},
    {"Smallest", Limits::min()},
    {"Lowest", Limits::lowest()},
    {"Highest", Limits::max()},
    {"MinusZero", -0.0},
    {"Negative", -1.0},
};

inline void PrintTo(const Number& tested, std::ostream* out) { *out << tested.name; }

} // namespace faults
