#include "packages/peng_robinson/eos/linear_solver.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {

std::vector<double> solveLinear(std::vector<double> a, std::vector<double> b) {
    const std::size_t n = b.size();
    for (std::size_t column = 0; column < n; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < n; ++row) {
            if (std::abs(a[row * n + column]) > std::abs(a[pivot * n + column])) {
                pivot = row;
            }
        }
        const double divisor = a[pivot * n + column];
        if (!(std::abs(divisor) > 0.0) || !std::isfinite(divisor)) {
            return {};
        }
        if (pivot != column) {
            for (std::size_t k = column; k < n; ++k) {
                std::swap(a[pivot * n + k], a[column * n + k]);
            }
            std::swap(b[pivot], b[column]);
        }
        for (std::size_t row = column + 1; row < n; ++row) {
            const double factor = a[row * n + column] / divisor;
            for (std::size_t k = column; k < n; ++k) {
                a[row * n + k] -= factor * a[column * n + k];
            }
            b[row] -= factor * b[column];
        }
    }
    for (std::size_t row = n; row-- > 0;) {
        for (std::size_t k = row + 1; k < n; ++k) {
            b[row] -= a[row * n + k] * b[k];
        }
        b[row] /= a[row * n + row];
    }
    return std::ranges::all_of(b, [](double value) { return std::isfinite(value); }) ? b
                                                                                     : std::vector<double>{};
}

} // namespace peng_robinson::eos
