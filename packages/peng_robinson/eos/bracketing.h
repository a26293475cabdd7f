// Solves f(x) = 0 where f rises from a negative to a positive value.
#pragma once

#include <functional>

namespace peng_robinson::eos {

/// Regula falsi with the Illinois weights, and bisection when that is slow. Ends when |f| is within the
/// tolerance, or at the last pair of neighbouring numbers; returns the argument of the smallest modulus met.
double solveRising(const std::function<double(double)>& f, double low, double fLow, double high, double fHigh,
                   double tolerance);

} // namespace peng_robinson::eos
