#include "packages/peng_robinson/eos/heat_capacity.h"

#include "packages/peng_robinson/eos/constants.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

// Everything is written with exp(-2x), which cannot overflow at low temperatures.
double squareOverSinh(double x) {
    const double ratio = 2.0 * x * std::exp(-x) / -std::expm1(-2.0 * x);
    return ratio * ratio;
}
double squareOverCosh(double x) {
    const double ratio = 2.0 * x * std::exp(-x) / (1.0 + std::exp(-2.0 * x));
    return ratio * ratio;
}
double coth(double x) { return (1.0 + std::exp(-2.0 * x)) / -std::expm1(-2.0 * x); }
double logSinh(double x) { return x + std::log(-std::expm1(-2.0 * x)) - std::log(2.0); }
double logCosh(double x) { return x + std::log1p(std::exp(-2.0 * x)) - std::log(2.0); }

double withinRange(const HeatCapacity& c, double T) {
    return c.Tmax > 0.0 ? std::clamp(T, c.Tmin, c.Tmax) : T;
}

double polynomial(const HeatCapacity& c, double T) {
    const auto& [p1, p2, p3, p4] = c.powers;
    return T * (p1 + T * (p2 + T * (p3 + T * p4)));
}

double enthalpyIntegral(const HeatCapacity& c, double T) {
    const auto& [p1, p2, p3, p4] = c.powers;
    const double t = withinRange(c, T);
    double h = c.constant * T + t * t * (p1 / 2.0 + t * (p2 / 3.0 + t * (p3 / 4.0 + t * p4 / 5.0))) +
               polynomial(c, t) * (T - t);
    for (const auto& [factor, theta] : c.sinh) {
        h += factor * theta * coth(theta / T);
    }
    return h - c.cosh.factor * c.cosh.temperature * std::tanh(c.cosh.temperature / T);
}

double entropyIntegral(const HeatCapacity& c, double T) {
    const auto& [p1, p2, p3, p4] = c.powers;
    const double t = withinRange(c, T);
    double s = c.constant * std::log(T) + t * (p1 + t * (p2 / 2.0 + t * (p3 / 3.0 + t * p4 / 4.0))) +
               polynomial(c, t) * std::log(T / t);
    for (const auto& [factor, theta] : c.sinh) {
        const double x = theta / T;
        s += factor * (x * coth(x) - logSinh(x));
    }
    const double x = c.cosh.temperature / T;
    return s - c.cosh.factor * (x * std::tanh(x) - logCosh(x));
}

} // namespace

double HeatCapacity::cp(double T) const {
    double value = constant + polynomial(*this, withinRange(*this, T));
    for (const auto& [factor, theta] : sinh) {
        value += factor * squareOverSinh(theta / T);
    }
    return value + cosh.factor * squareOverCosh(cosh.temperature / T);
}

double HeatCapacity::dCp_dT(double T) const {
    double value = 0.0;
    for (const auto& [factor, theta] : sinh) {
        const double x = theta / T;
        value += factor * squareOverSinh(x) * (x * coth(x) - 1.0);
    }
    const double x = cosh.temperature / T;
    value += cosh.factor * squareOverCosh(x) * (x * std::tanh(x) - 1.0);
    double slope = 2.0 * value / T;
    if (withinRange(*this, T) == T) {
        const auto& [p1, p2, p3, p4] = powers;
        slope += p1 + T * (2.0 * p2 + T * (3.0 * p3 + T * 4.0 * p4));
    }
    return slope;
}

double HeatCapacity::enthalpy(double T) const {
    return enthalpyIntegral(*this, T) - enthalpyIntegral(*this, referenceTemperature);
}

double HeatCapacity::entropy(double T) const {
    return entropyIntegral(*this, T) - entropyIntegral(*this, referenceTemperature);
}

} // namespace peng_robinson::eos
