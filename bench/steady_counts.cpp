#include "bench/steady_counts.h"

#include "bench/counted.h"
#include "bench/counts.h"

namespace bench {

SteadyCounts steadyCounts(const Server& server, const std::function<void()>& call) {
    constexpr int calls = 100;
    for (int i = 0; i < calls; ++i) {
        call();
    }
    const HeapCount heap{server.module()};
    const ComCount com;
    const long before = interfaceCalls;
    for (int i = 0; i < calls; ++i) {
        call();
    }
    const auto each = [](long count) { return static_cast<double>(count) / calls; };
    return {each(heap.allocations()), each(com.allocations()), each(interfaceCalls - before)};
}

} // namespace bench
