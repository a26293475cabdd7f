// Dense linear equations of the size of a mixture.
#pragma once

#include <cstddef>
#include <vector>

namespace peng_robinson::eos {

/// Solves A x = b for a row-major n x n matrix by elimination with row pivoting. An empty result means that
/// the matrix is singular to working precision or not finite.
std::vector<double> solveLinear(std::vector<double> matrix, std::vector<double> rightHandSide);

} // namespace peng_robinson::eos
