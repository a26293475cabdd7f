#include "packages/peng_robinson/eos/rachford_rice.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {

double rachfordRice(std::span<const double> z, std::span<const double> K, double beta) {
    double sum = 0.0;
    for (std::size_t i = 0; i < z.size(); ++i) {
        sum += z[i] * (K[i] - 1.0) / (1.0 + beta * (K[i] - 1.0));
    }
    return sum;
}

std::optional<double> solveRachfordRice(std::span<const double> z, std::span<const double> K, double guess) {
    const auto [smallest, largest] = std::ranges::minmax(K);
    if (!(smallest < 1.0) || !(largest > 1.0) || !std::isfinite(largest)) {
        return std::nullopt;
    }
    // The sum falls steadily from +infinity to -infinity between these two.
    double low = 1.0 / (1.0 - largest);
    double high = 1.0 / (1.0 - smallest);
    double beta = guess > low && guess < high ? guess : 0.5;
    for (int i = 0; i < 200; ++i) {
        double value = 0.0, slope = 0.0;
        for (std::size_t k = 0; k < z.size(); ++k) {
            const double term = (K[k] - 1.0) / (1.0 + beta * (K[k] - 1.0));
            value += z[k] * term;
            slope -= z[k] * term * term;
        }
        (value > 0.0 ? low : high) = beta;
        const double next = beta - value / slope;
        if (std::abs(next - beta) <= 2e-16 * std::abs(beta)) {
            break;
        }
        beta = next > low && next < high ? next : 0.5 * (low + high);
    }
    return beta;
}

void compositionsAt(std::span<const double> z, std::span<const double> K, double beta, std::span<double> x,
                    std::span<double> y) {
    for (std::size_t i = 0; i < z.size(); ++i) {
        x[i] = z[i] / (1.0 + beta * (K[i] - 1.0));
        y[i] = K[i] * x[i];
    }
}

PhaseCompositions compositionsAt(std::span<const double> z, std::span<const double> K, double beta) {
    PhaseCompositions result{std::vector<double>(z.size()), std::vector<double>(z.size())};
    compositionsAt(z, K, beta, result.x, result.y);
    return result;
}

} // namespace peng_robinson::eos
