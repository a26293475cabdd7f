// Counts what does not depend on the machine: allocations on the C heap of one module, counted where the
// module imports the functions, and allocations of COM's task allocator, which hold BSTRs and safe arrays.
#pragma once

#include "com/platform.h"

#include <cstddef>

namespace bench {

/// Allocations that a module makes itself, its run-time library included, while one of these lives; one at a
/// time. Throws std::runtime_error when the module does not import what is to be counted.
class HeapCount {
  public:
    explicit HeapCount(HMODULE module);
    HeapCount(const HeapCount&) = delete;
    HeapCount& operator=(const HeapCount&) = delete;
    ~HeapCount();

    long allocations() const noexcept;
    void restart() noexcept;

  private:
    HMODULE module_;
};

/// COM's allocations while one of these lives; one at a time. From the first on, Automation no longer keeps
/// freed BSTRs for the rest of the program: to be used when all times have been taken.
class ComCount {
  public:
    ComCount();
    ComCount(const ComCount&) = delete;
    ComCount& operator=(const ComCount&) = delete;
    ~ComCount();

    long allocations() const noexcept;
    void restart() noexcept;
};

/// Bytes in use now and at most, in both kinds of memory together, while a HeapCount and a ComCount live.
struct Bytes {
    std::size_t now;
    std::size_t most;
};
Bytes countedBytes() noexcept;
/// The most is what is in use now.
void forgetMostBytes() noexcept;

} // namespace bench
