// Dense linear equations of the size of a mixture.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace peng_robinson::eos {

/// Solves A x = b for a row-major n x n matrix by elimination with row pivoting. An empty result means that
/// the matrix is singular to working precision or not finite.
std::vector<double> solveLinear(std::vector<double> matrix, std::vector<double> rightHandSide);

/// Solves A x = b for a symmetric positive definite matrix, of which only the lower triangle is read, in
/// place: the matrix is used up, and b becomes x. False when the matrix is not positive definite.
bool solveDefinite(std::span<double> matrix, std::span<double> rightHandSide);

} // namespace peng_robinson::eos
