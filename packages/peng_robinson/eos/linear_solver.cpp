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

// Cholesky's method, row by row; the diagonal of the factor is kept as its inverse.
bool solveDefinite(std::span<double> matrix, std::span<double> rightHandSide) {
    const std::size_t n = rightHandSide.size();
    double* const b = rightHandSide.data();
    for (std::size_t i = 0; i < n; ++i) {
        double* const row = &matrix[i * n];
        double pivot = row[i], right = b[i];
        for (std::size_t j = 0; j < i; ++j) {
            const double* const above = &matrix[j * n];
            double sum = row[j];
            for (std::size_t k = 0; k < j; ++k) {
                sum -= row[k] * above[k];
            }
            const double entry = sum * above[j];
            row[j] = entry;
            pivot -= entry * entry;
            right -= entry * b[j];
        }
        if (!(pivot > 1e-14) || !std::isfinite(pivot)) {
            return false;
        }
        row[i] = 1.0 / std::sqrt(pivot);
        b[i] = right * row[i];
    }
    for (std::size_t i = n; i-- > 0;) {
        const double* const row = &matrix[i * n];
        b[i] *= row[i];
        for (std::size_t k = 0; k < i; ++k) {
            b[k] -= row[k] * b[i];
        }
    }
    return std::ranges::all_of(rightHandSide, [](double value) { return std::isfinite(value); });
}

} // namespace peng_robinson::eos
