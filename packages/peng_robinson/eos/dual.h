// Numbers that carry a derivative along: forward-mode automatic differentiation in one direction. A formula
// that is a template over its number type gives its value with double, and with Dual the same value together
// with the derivative, exact to rounding. Mixed arithmetic takes a double for a constant.
#pragma once

#include <cmath>

namespace peng_robinson::eos {

struct Dual {
    double value = 0.0;
    double slope = 0.0; ///< derivative of the value in the direction of interest

    constexpr Dual() = default;
    constexpr Dual(double constant) : value{constant} {}
    constexpr Dual(double v, double s) : value{v}, slope{s} {}

    constexpr Dual& operator+=(const Dual& b) {
        value += b.value;
        slope += b.slope;
        return *this;
    }
    friend constexpr Dual operator-(const Dual& a) { return {-a.value, -a.slope}; }
    friend constexpr Dual operator+(const Dual& a, const Dual& b) {
        return {a.value + b.value, a.slope + b.slope};
    }
    friend constexpr Dual operator-(const Dual& a, const Dual& b) {
        return {a.value - b.value, a.slope - b.slope};
    }
    friend constexpr Dual operator*(const Dual& a, const Dual& b) {
        return {a.value * b.value, a.slope * b.value + a.value * b.slope};
    }
    friend constexpr Dual operator/(const Dual& a, const Dual& b) {
        const double quotient = a.value / b.value;
        return {quotient, (a.slope - quotient * b.slope) / b.value};
    }
};

/// A function of x whose value and derivative at x are known.
constexpr Dual chain(const Dual& x, double value, double derivative) { return {value, derivative * x.slope}; }

inline Dual exp(const Dual& x) {
    const double value = std::exp(x.value);
    return chain(x, value, value);
}
inline Dual expm1(const Dual& x) { return chain(x, std::expm1(x.value), std::exp(x.value)); }
inline Dual log(const Dual& x) { return chain(x, std::log(x.value), 1.0 / x.value); }
inline Dual log1p(const Dual& x) { return chain(x, std::log1p(x.value), 1.0 / (1.0 + x.value)); }
inline Dual sqrt(const Dual& x) {
    const double value = std::sqrt(x.value);
    return chain(x, value, 0.5 / value);
}
inline Dual pow(const Dual& x, double exponent) {
    const double value = std::pow(x.value, exponent);
    return chain(x, value, exponent * value / x.value);
}

/// Neither a value nor a slope: what is multiplied by it may as well be left out.
constexpr bool isNothing(double x) { return x == 0.0; }
constexpr bool isNothing(const Dual& x) { return x.value == 0.0 && x.slope == 0.0; }

/// An amount times a constant of its compound. Without an amount that is zero, even when the constant is not
/// known (NaN); only the derivative by that amount is unknown then.
constexpr double share(double amount, double constant) { return amount == 0.0 ? 0.0 : amount * constant; }
constexpr Dual share(const Dual& amount, double constant) {
    return {share(amount.value, constant), share(amount.slope, constant)};
}

constexpr double valueOf(double x) { return x; }
constexpr double valueOf(const Dual& x) { return x.value; }

} // namespace peng_robinson::eos
