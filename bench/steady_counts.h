// Counts of a call in its steady state: after some calls have made whatever is made once. Counting slows all
// later allocations of the process down: to be used when all times have been taken.
#pragma once

#include <functional>

namespace bench {

/// Per call.
struct SteadyCounts {
    double heap;       ///< allocations of the add-in's module
    double com;        ///< allocations of COM's task allocator
    double interfaces; ///< calls that the bench's objects received, and the package made
};

SteadyCounts steadyCounts(const std::function<void()>& call);

} // namespace bench
