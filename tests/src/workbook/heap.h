// Counts what is allocated: blocks of the C++ heap in this program, and blocks of COM's task allocator, which
// hold BSTRs and safe arrays.
#pragma once

#include <cstddef>

namespace quorvane {

/// The C++ heap since the object was made.
class HeapUse {
  public:
    HeapUse() noexcept;

    long long blocks() const noexcept;      ///< still allocated
    std::size_t peakBytes() const noexcept; ///< the most that was allocated at a time

  private:
    long long blocks_;
    long long bytes_;
};

/// COM's allocator since the object was made. COM must be initialised.
class AutomationBlocks {
  public:
    AutomationBlocks();
    AutomationBlocks(const AutomationBlocks&) = delete;
    AutomationBlocks& operator=(const AutomationBlocks&) = delete;
    ~AutomationBlocks();

    long left() const noexcept; ///< allocated and not freed
};

} // namespace quorvane
