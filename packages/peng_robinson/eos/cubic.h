// Real roots of Z^3 + c2 Z^2 + c1 Z + c0, in increasing order, each accurate to rounding also when the roots
// differ by many orders of magnitude (a liquid at a very low pressure has Z = 1e-30 beside a vapour at 1).
#pragma once

#include <array>
#include <cstddef>

namespace peng_robinson::eos {

struct CubicRoots {
    std::array<double, 3> value{};
    std::size_t count = 0;

    const double* begin() const { return value.data(); }
    const double* end() const { return value.data() + count; }
};

CubicRoots realRoots(double c2, double c1, double c0);

} // namespace peng_robinson::eos
