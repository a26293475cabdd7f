// What does not depend on the machine: allocations and calls across interfaces of a steady worksheet call.
#include "bench/figures.h"
#include "bench/mixture_scene.h"
#include "bench/steady_counts.h"

namespace bench {

void allocations(Report& report, const Server& server) {
    if (!report.wants("per call")) {
        return;
    }
    MixtureScene scene{server, {}};
    const SteadyCounts client = steadyCounts([&] { scene.client(); });
    const SteadyCounts byVtable = steadyCounts([&] { scene.addInByVtable(); });
    const SteadyCounts byInvoke = steadyCounts([&] { scene.addInByInvoke(); });
    constexpr const char* handWritten = "hand-written client";
    constexpr double moreInterfaces = 6.0; // docs/performance.md tells which
    report.count("own heap allocations per call, vtable", byVtable.heap, 0.0);
    report.count("own heap allocations per call, Invoke", byInvoke.heap, 0.0);
    report.equal("COM allocations per call, vtable", handWritten, byVtable.com, client.com);
    report.equal("COM allocations per call, Invoke", handWritten, byInvoke.com, client.com);
    report.note("calls across interfaces per call, hand-written client", client.interfaces);
    report.count("calls across interfaces per call, vtable", byVtable.interfaces,
                 client.interfaces + moreInterfaces);
}

} // namespace bench
