// The built add-in under calls by chance: whatever it is asked, its answers keep the judge's promises, it
// leaves nothing behind, and it answers the same questions in the same way. Each run is told by its seed; to
// repeat one put it into QUORVANE_RANDOM_SEED, and QUORVANE_RANDOM_CALLS for another number of calls than
// usual.
#include "tests/random/crash_report.h"
#include "tests/random/resources.h"
#include "tests/random/world.h"

#include <gtest/gtest.h>

namespace chance {
namespace {

constexpr std::uint64_t firstSeed = 20261121;
constexpr std::size_t runs = 10;
constexpr long usualCalls = 10000; // in each run

std::optional<std::uint64_t> setting(const char* name) {
    const char* const text = std::getenv(name);
    return text == nullptr ? std::nullopt : std::optional{std::strtoull(text, nullptr, 10)};
}

long callsOfRun() { return static_cast<long>(setting("QUORVANE_RANDOM_CALLS").value_or(usualCalls)); }

constexpr int mostComplaints = 5;

/// What is wrong with the first answers that are; empty when all are right.
std::string complaintsOf(World& world, std::uint64_t seed, long calls) {
    std::string all;
    int count = 0;
    for (long step = 0; world.tally().calls < calls && count < mostComplaints; ++step) {
        nowRunning(seed, step);
        if (const std::string wrong = world.step(); !wrong.empty()) {
            all += "seed " + std::to_string(seed) + ", step " + std::to_string(step) + ": " + wrong + "\n";
            ++count;
        }
    }
    return all;
}

class RandomCalls : public ::testing::TestWithParam<std::uint64_t> {
  protected:
    static std::uint64_t seed() { return setting("QUORVANE_RANDOM_SEED").value_or(firstSeed) + GetParam(); }
};

TEST_P(RandomCalls, KeepTheirPromisesAndLeaveNothingBehind) {
    {
        World world{seed()};
        ASSERT_EQ(complaintsOf(world, seed(), callsOfRun()), "");
    }
    EXPECT_EQ(tests::AddIn::instance().canUnloadNow(), S_OK) << "an object of the add-in is still alive";
    EXPECT_EQ(scripted::liveObjects(), 0) << "a package is still alive";
}

INSTANTIATE_TEST_SUITE_P(Of, RandomCalls, ::testing::Range<std::uint64_t>(0, runs));

TEST(RandomCallsOfOneSeed, GetTheSameAnswers) {
    const auto digestOfRun = [] {
        World world{firstSeed};
        EXPECT_EQ(complaintsOf(world, firstSeed, 2000), "");
        return world.digest();
    };
    const std::uint64_t once = digestOfRun();
    EXPECT_EQ(digestOfRun(), once);
}

// Calls that are refused at once would prove little.
TEST(RandomCallsOfOneSeed, ReachEveryFunctionAndManyMessages) {
    World world{firstSeed};
    ASSERT_EQ(complaintsOf(world, firstSeed, 5000), "");
    const Tally& tally = world.tally();
    for (const conformance::Function& function : conformance::functions()) {
        EXPECT_GT(tally.succeeded.at(function.name), 50) << function.name;
        EXPECT_GT(tally.failed.at(function.name), 50) << function.name;
    }
    EXPECT_GT(tally.messages.size(), 80U);
    EXPECT_GT(tally.services, 300);
}

TEST(RandomCallsOfOneSeed, LeaveMemoryAsItWas) {
    keepNoTexts();
    World world{firstSeed, Reach::withoutLeaksOfThePlatform};
    ASSERT_EQ(complaintsOf(world, firstSeed, 3000), "");
    world.closeWorkbooks();
    const HeapContent before = heapContent();
    ASSERT_EQ(complaintsOf(world, firstSeed, 13000), "");
    world.closeWorkbooks();
    const HeapContent after = heapContent();
    EXPECT_LT(after.blocks, before.blocks + 50);
    EXPECT_LT(after.bytes, before.bytes + 20000);
}

} // namespace
} // namespace chance
