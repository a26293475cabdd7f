// Missing numbers: NaN, or the lowest finite double, which is CAPE-OPEN's marker for an undefined real and
// what an omitted number argument arrives as.
#pragma once

#include <cmath>
#include <limits>

namespace quorvane {

inline constexpr double missingNumber = std::numeric_limits<double>::quiet_NaN();
inline constexpr double omittedNumber = std::numeric_limits<double>::lowest();

inline bool isMissing(double value) noexcept { return std::isnan(value) || value == omittedNumber; }

} // namespace quorvane
