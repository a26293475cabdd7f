// Mixed calls over several workbooks and packages for a long time, in one session of Excel: memory, objects
// and handles must come back to what they were after the first part, when all packages are gone but those of
// the workbook that stays open. QUORVANE_SOAK_CALLS says how many calls.
#include "tests/random/crash_report.h"
#include "tests/random/resources.h"
#include "tests/random/world.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace chance {
namespace {

constexpr std::uint64_t seed = 1;
constexpr long reports = 20;
// In the first tenth what is made once is made, and what is kept for reuse is kept.
constexpr long reportsOfWarmUp = 2;

// What may come on top of the warm-up. One byte lost in each call would be nine times that.
constexpr std::size_t moreBlocks = 100;
constexpr std::size_t moreHeapBytes = 100'000;
constexpr std::size_t moreProcessBytes = 8'000'000; // pages that the system has not taken back
constexpr unsigned long moreHandles = 5;

struct Usage {
    HeapContent heap;
    ProcessContent process;
    long objects = 0; ///< of scripted packages

    Usage greatest(const Usage& other) const {
        return {{std::max(heap.blocks, other.heap.blocks), std::max(heap.bytes, other.heap.bytes)},
                {std::max(process.workingSet, other.process.workingSet),
                 std::max(process.privateBytes, other.process.privateBytes),
                 std::max(process.handles, other.process.handles)},
                std::max(objects, other.objects)};
    }
};

Usage usageNow() { return {heapContent(), processContent(), scripted::liveObjects()}; }

void report(const World& world, const Usage& usage) {
    std::printf("%10ld %9ld %12zu %12zu %9zu %12zu %8ld %8lu\n", world.tally().calls, world.tally().services,
                usage.process.workingSet / 1024, usage.process.privateBytes / 1024, usage.heap.blocks,
                usage.heap.bytes, usage.objects, usage.process.handles);
    std::fflush(stdout);
}

long callsWanted() {
    const char* const text = std::getenv("QUORVANE_SOAK_CALLS");
    return text == nullptr ? 1'000'000 : std::max(std::strtol(text, nullptr, 10), reports);
}

TEST(Soak, LeavesMemoryFlat) {
    keepNoTexts();
    const long calls = callsWanted();
    std::printf("%10s %9s %12s %12s %9s %12s %8s %8s\n", "calls", "services", "working KiB", "private KiB",
                "blocks", "heap bytes", "objects", "handles");
    {
        World world{seed, Reach::withoutLeaksOfThePlatform};
        Usage start{};
        long step = 0; // told after a crash: counted on from part to part
        for (long part = 1; part <= reports; ++part) {
            for (; world.tally().calls < calls / reports * part; ++step) {
                nowRunning(seed, step);
                ASSERT_EQ(world.step(), "") << "after " << world.tally().calls << " calls";
            }
            world.closeWorkbooks();
            const Usage now = usageNow();
            report(world, now);
            EXPECT_EQ(now.objects, world.lastingObjects()) << "a package outlives its workbook";
            if (part <= reportsOfWarmUp) {
                start = start.greatest(now);
                continue;
            }
            EXPECT_LE(now.heap.blocks, start.heap.blocks + moreBlocks);
            EXPECT_LE(now.heap.bytes, start.heap.bytes + moreHeapBytes);
            EXPECT_LE(now.process.workingSet, start.process.workingSet + moreProcessBytes);
            EXPECT_LE(now.process.privateBytes, start.process.privateBytes + moreProcessBytes);
            EXPECT_LE(now.process.handles, start.process.handles + moreHandles);
        }
    }
    EXPECT_EQ(tests::AddIn::instance().canUnloadNow(), S_OK) << "an object of the add-in is still alive";
}

} // namespace
} // namespace chance
