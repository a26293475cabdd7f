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

// A = L D L', with D in the diagonal.
bool solveDefinite(std::span<double> a, std::span<double> b) {
    const std::size_t n = b.size();
    for (std::size_t column = 0; column < n; ++column) {
        const double pivot = a[column * n + column];
        if (!(pivot > 1e-14) || !std::isfinite(pivot)) {
            return false;
        }
        const double inverse = 1.0 / pivot;
        for (std::size_t row = column + 1; row < n; ++row) {
            const double factor = a[row * n + column] * inverse;
            // The entries of the column stay as they are until all rows have used them.
            for (std::size_t k = column + 1; k <= row; ++k) {
                a[row * n + k] -= factor * a[k * n + column];
            }
            b[row] -= factor * b[column];
        }
        for (std::size_t row = column + 1; row < n; ++row) {
            a[row * n + column] *= inverse;
        }
        b[column] *= inverse;
    }
    for (std::size_t row = n; row-- > 0;) {
        for (std::size_t k = row + 1; k < n; ++k) {
            b[row] -= a[k * n + row] * b[k];
        }
    }
    return std::ranges::all_of(b, [](double value) { return std::isfinite(value); });
}

} // namespace peng_robinson::eos
