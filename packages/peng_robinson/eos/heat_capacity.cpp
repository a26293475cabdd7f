#include "packages/peng_robinson/eos/heat_capacity.h"

#include "packages/peng_robinson/eos/constants.h"

#include <algorithm>
#include <cmath>
#include <span>

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

// Compounds have fewer terms than there is room for; the others are not worth their exponentials.
template <typename Of>
double sumOf(std::span<const HeatCapacity::Term> terms, Of of) {
    double sum = 0.0;
    for (const auto& [factor, theta] : terms) {
        sum += factor == 0.0 ? 0.0 : factor * of(theta);
    }
    return sum;
}

double enthalpyIntegral(const HeatCapacity& c, double T) {
    const auto& [p1, p2, p3, p4] = c.powers;
    const double t = withinRange(c, T);
    const double h = c.constant * T + t * t * (p1 / 2.0 + t * (p2 / 3.0 + t * (p3 / 4.0 + t * p4 / 5.0))) +
                     polynomial(c, t) * (T - t);
    return h + sumOf(c.sinh, [T](double theta) { return theta * coth(theta / T); }) -
           sumOf({&c.cosh, 1}, [T](double theta) { return theta * std::tanh(theta / T); });
}

double entropyIntegral(const HeatCapacity& c, double T) {
    const auto& [p1, p2, p3, p4] = c.powers;
    const double t = withinRange(c, T);
    const double s = c.constant * std::log(T) + t * (p1 + t * (p2 / 2.0 + t * (p3 / 3.0 + t * p4 / 4.0))) +
                     polynomial(c, t) * std::log(T / t);
    return s + sumOf(c.sinh, [T](double theta) { return theta / T * coth(theta / T) - logSinh(theta / T); }) -
           sumOf({&c.cosh, 1},
                 [T](double theta) { return theta / T * std::tanh(theta / T) - logCosh(theta / T); });
}

} // namespace

double HeatCapacity::cp(double T) const {
    return constant + polynomial(*this, withinRange(*this, T)) +
           sumOf(sinh, [T](double theta) { return squareOverSinh(theta / T); }) +
           sumOf({&cosh, 1}, [T](double theta) { return squareOverCosh(theta / T); });
}

double HeatCapacity::dCp_dT(double T) const {
    const auto ofSinh = [T](double theta) {
        const double x = theta / T;
        return squareOverSinh(x) * (x * coth(x) - 1.0);
    };
    const auto ofCosh = [T](double theta) {
        const double x = theta / T;
        return squareOverCosh(x) * (x * std::tanh(x) - 1.0);
    };
    double slope = 2.0 * (sumOf(sinh, ofSinh) + sumOf({&cosh, 1}, ofCosh)) / T;
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
