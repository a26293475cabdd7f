// The material balance of two phases: Rachford, Rice, J. Pet. Technol. 4 (1952) 19. All mole fractions of z
// are positive; K is y/x.
#pragma once

#include <optional>
#include <span>
#include <vector>

namespace peng_robinson::eos {

/// sum_i z_i (K_i - 1) / (1 + beta (K_i - 1)), which is sum y - sum x.
double rachfordRice(std::span<const double> z, std::span<const double> K, double beta);

/// The vapour fraction that makes it zero. It may lie outside 0 to 1 as long as all mole fractions of both
/// phases stay positive (a "negative flash", Whitson, Michelsen, Fluid Phase Equilib. 53 (1989) 51); empty
/// when all K lie on one side of 1, so that no such fraction exists.
/// The search begins at `guess`.
std::optional<double> solveRachfordRice(std::span<const double> z, std::span<const double> K,
                                        double guess = 0.5);

struct PhaseCompositions {
    std::vector<double> x, y;
};
/// The compositions that satisfy the balance of each compound; their sums are one when beta solves
/// rachfordRice().
PhaseCompositions compositionsAt(std::span<const double> z, std::span<const double> K, double beta);
/// The same, into x and y.
void compositionsAt(std::span<const double> z, std::span<const double> K, double beta, std::span<double> x,
                    std::span<double> y);

} // namespace peng_robinson::eos
