// Flashes and fugacities of one mixture after another take no memory. Counted in a program of its own,
// because its operator new counts for all that runs.
#include "packages/peng_robinson/eos/tp_flash.h"
#include "tests/packages/peng_robinson/eos/support.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> allocations{0};

} // namespace

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what the counting operators are made of
void* operator new(std::size_t size) {
    ++allocations;
    void* const block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc{};
    }
    return block;
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
// NOLINTEND(cppcoreguidelines-no-malloc)

namespace peng_robinson::eos::test {
namespace {

struct Allocations : testing::Test {
    Fluid gas = fluidOf({"nitrogen", "carbon dioxide", "hydrogen sulfide", "methane", "ethane", "propane",
                         "isobutane", "n-butane", "isopentane", "n-pentane"});
    std::vector<double> z{0.012, 0.018, 0.001, 0.84, 0.066, 0.032, 0.007, 0.01, 0.004, 0.01};

    template <typename Work>
    static long countOf(Work work) {
        const long before = allocations;
        work();
        return allocations - before;
    }
};

TEST_F(Allocations, AreCounted) {
    EXPECT_GT(countOf([this] { TPFlash{gas.model()}; }), 0);
}

TEST_F(Allocations, AFlashOfTheSameCompoundsNeedsNone) {
    TPFlash flash{gas.model()};
    Equilibrium result;
    const auto flashAt = [&](double T, double P) { flash.calculate(T, P, z, PhasesAllowed::both, result); };
    for (int i = 0; i < 5; ++i) {
        flashAt(230.0, 4e6);
    }
    ASSERT_TRUE(result.vapor && result.liquid);
    EXPECT_EQ(countOf([&] { flashAt(230.0, 4e6); }), 0);
    EXPECT_EQ(countOf([&] { flashAt(215.0, 1e6); }), 0);
    ASSERT_TRUE(result.vapor && result.liquid);
    flashAt(400.0, 1e5);
    ASSERT_FALSE(result.liquid);
    EXPECT_EQ(countOf([&] { flashAt(450.0, 2e5); }), 0);
}

TEST_F(Allocations, FugacitiesAtAnyTemperatureNeedNone) {
    Isotherm isotherm = gas.model().at(300.0);
    PhaseState state;
    const auto evaluateAt = [&](double T, double P) {
        isotherm.assign(gas.model(), T);
        isotherm.phase(P, z, Root::stable, {.thermal = true, .moles = true}, state);
    };
    evaluateAt(300.0, 1e5);
    EXPECT_EQ(countOf([&] { evaluateAt(230.0, 4e6); }), 0);
}

} // namespace
} // namespace peng_robinson::eos::test
