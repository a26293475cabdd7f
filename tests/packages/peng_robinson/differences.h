// Derivatives by central differences of sixth order, with steps of 0.2 % of the variable: what exact
// derivatives are held against.
#pragma once

#include <cstddef>
#include <vector>

namespace peng_robinson::test {

/// Of a function of one number with several values.
template <typename Function>
std::vector<double> slopes(const Function& f, double at) {
    const double h = 2e-3 * at;
    const std::vector<double> up = f(at + h), down = f(at - h), up2 = f(at + 2.0 * h),
                              down2 = f(at - 2.0 * h), up3 = f(at + 3.0 * h), down3 = f(at - 3.0 * h);
    std::vector<double> result(up.size());
    for (std::size_t i = 0; i < up.size(); ++i) {
        result[i] = (45.0 * (up[i] - down[i]) - 9.0 * (up2[i] - down2[i]) + (up3[i] - down3[i])) / (60.0 * h);
    }
    return result;
}

/// Of a function of one number with one value.
template <typename Function>
double slope(const Function& f, double at) {
    return slopes([&f](double variable) { return std::vector<double>{f(variable)}; }, at).front();
}

} // namespace peng_robinson::test
