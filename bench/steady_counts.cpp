#include "bench/steady_counts.h"

#include "bench/counted.h"
#include "tests/leak_gate/allocations.h"
#include "tests/leak_gate/hooks.h"

namespace bench {

SteadyCounts steadyCounts(const std::function<void()>& call) {
    constexpr int calls = 100;
    leak_gate::watchLoadedModules();
    for (int i = 0; i < calls; ++i) {
        call();
    }
    const leak_gate::AllocationUse heap{leak_gate::ownerOf("Quorvane.dll")};
    const leak_gate::AllocationUse com{leak_gate::comAllocator};
    const long before = interfaceCalls;
    for (int i = 0; i < calls; ++i) {
        call();
    }
    const auto each = [](auto count) { return static_cast<double>(count) / calls; };
    return {each(heap.allocations()), each(com.allocations()), each(interfaceCalls - before)};
}

} // namespace bench
