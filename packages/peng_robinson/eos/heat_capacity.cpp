#include "packages/peng_robinson/eos/heat_capacity.h"

#include "packages/peng_robinson/eos/constants.h"

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

double enthalpyIntegral(const HeatCapacity& c, double T) {
    double h = c.constant * T;
    for (const auto& [factor, theta] : c.sinh) {
        h += factor * theta * coth(theta / T);
    }
    return h - c.cosh.factor * c.cosh.temperature * std::tanh(c.cosh.temperature / T);
}

double entropyIntegral(const HeatCapacity& c, double T) {
    double s = c.constant * std::log(T);
    for (const auto& [factor, theta] : c.sinh) {
        const double x = theta / T;
        s += factor * (x * coth(x) - logSinh(x));
    }
    const double x = c.cosh.temperature / T;
    return s - c.cosh.factor * (x * std::tanh(x) - logCosh(x));
}

} // namespace

double HeatCapacity::cp(double T) const {
    double value = constant;
    for (const auto& [factor, theta] : sinh) {
        value += factor * squareOverSinh(theta / T);
    }
    return value + cosh.factor * squareOverCosh(cosh.temperature / T);
}

double HeatCapacity::enthalpy(double T) const {
    return enthalpyIntegral(*this, T) - enthalpyIntegral(*this, referenceTemperature);
}

double HeatCapacity::entropy(double T) const {
    return entropyIntegral(*this, T) - entropyIntegral(*this, referenceTemperature);
}

} // namespace peng_robinson::eos
