#include "packages/peng_robinson/eos/cubic.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

struct Cubic {
    double c2, c1, c0;
    double operator()(double z) const { return ((z + c2) * z + c1) * z + c0; }
    double slope(double z) const { return (3.0 * z + 2.0 * c2) * z + c1; }
};

// Newton's method, kept only while it reduces the residual: the last step ends at rounding error.
double polish(const Cubic& f, double z) {
    double residual = std::abs(f(z));
    for (int i = 0; i < 60 && residual > 0.0; ++i) {
        const double slope = f.slope(z);
        if (slope == 0.0) {
            break;
        }
        const double next = z - f(z) / slope;
        const double nextResidual = std::abs(f(next));
        if (!(nextResidual < residual)) {
            break;
        }
        z = next;
        residual = nextResidual;
    }
    return z;
}

// From outside all roots, Newton's method runs monotonically into the outermost one.
double outermostRoot(const Cubic& f, double start) {
    double z = start;
    for (int i = 0; i < 200; ++i) {
        const double step = f(z) / f.slope(z);
        const double next = z - step;
        if (next == z || !std::isfinite(next) || std::abs(step) <= 1e-15 * std::abs(next)) {
            break;
        }
        z = next;
    }
    return polish(f, z);
}

} // namespace

CubicRoots realRoots(double c2, double c1, double c0) {
    const Cubic f{c2, c1, c0};
    // Cauchy's bound: no root lies farther out.
    const double bound = 1.0 + std::max({std::abs(c2), std::abs(c1), std::abs(c0)});
    const double inflection = -c2 / 3.0;
    const bool rootOnTheRight = f(inflection) <= 0.0;
    const double first = outermostRoot(f, rootOnTheRight ? bound : -bound);

    CubicRoots roots;
    roots.value[0] = first;
    roots.count = 1;
    if (first != 0.0) {
        // Division from the constant term upwards keeps the small roots exact when `first` is the large one,
        // and from the leading term downwards when it is the small one.
        const double d0 = -c0 / first;
        const double d1 = rootOnTheRight ? (d0 - c1) / first : c2 + first;
        const double product = rootOnTheRight ? d0 : c1 + first * d1;
        const double discriminant = d1 * d1 - 4.0 * product;
        if (discriminant >= 0.0) {
            const double q = -0.5 * (d1 + std::copysign(std::sqrt(discriminant), d1));
            const auto [low, high] = std::minmax({polish(f, q), polish(f, q == 0.0 ? 0.0 : product / q)});
            roots.count = 3;
            roots.value = rootOnTheRight ? std::array{low, high, first} : std::array{first, low, high};
        }
    }
    return roots;
}

} // namespace peng_robinson::eos
