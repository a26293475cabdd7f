// Binary interaction parameters k_ij of the van der Waals one-fluid mixing rule. Symmetric, k_ii = 0; a pair
// that no table knows has 0.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace peng_robinson::eos {

class InteractionMatrix {
  public:
    explicit InteractionMatrix(std::size_t size = 0) : size_{size}, values_(size * size, 0.0) {}

    std::size_t size() const noexcept { return size_; }
    double operator()(std::size_t i, std::size_t j) const { return values_[i * size_ + j]; }
    void set(std::size_t i, std::size_t j, double k) {
        values_[i * size_ + j] = k;
        values_[j * size_ + i] = k;
    }

  private:
    std::size_t size_;
    std::vector<double> values_;
};

/// The tabulated parameter of two compounds, named as in compounds(); 0 when the pair is not tabulated.
double interactionParameter(std::string_view first, std::string_view second) noexcept;

} // namespace peng_robinson::eos
