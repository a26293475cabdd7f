// InflationAllowance: how many bytes the compressed states of one table may have when they are decompressed.
// A few kilobytes of a hostile workbook must neither fill the memory nor keep the user waiting without end.
// What is saved keeps to the same bounds, so that whatever is saved can be restored.
#pragma once

#include <algorithm>
#include <cstddef>

namespace quorvane {

class InflationAllowance {
  public:
    /// What one state may have and what all states of the table may have together, in bytes.
    explicit InflationAllowance(std::size_t each = std::size_t{256} << 20U,
                                std::size_t together = std::size_t{1} << 30U) noexcept
        : each_{each}, left_{together} {}

    /// What the next state may have.
    std::size_t next() const noexcept { return std::min(each_, left_); }
    /// True when the states before leave the next one less than it could have alone.
    bool isNearlySpent() const noexcept { return left_ < each_; }
    /// At most next() bytes were decompressed, or are to be when the table is restored.
    void spend(std::size_t bytes) noexcept { left_ -= bytes; }

  private:
    std::size_t each_;
    std::size_t left_;
};

} // namespace quorvane
