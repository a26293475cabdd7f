// Counts of a call in its steady state: after some calls have made whatever is made once.
#pragma once

#include "bench/add_in.h"

#include <functional>

namespace bench {

/// Per call.
struct SteadyCounts {
    double heap;       ///< allocations of the server's module
    double com;        ///< allocations of COM's task allocator
    double interfaces; ///< calls that the bench's objects received, and the package made
};

SteadyCounts steadyCounts(const Server& server, const std::function<void()>& call);

} // namespace bench
