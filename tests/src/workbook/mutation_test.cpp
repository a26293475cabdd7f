// Ten thousand damaged tables: each is restored or refused, nothing is leaked, and little memory is used.
#include "tests/leak_gate/allocations.h"
#include "tests/src/workbook/mutator.h"
#include "tests/src/workbook/persistence_fixture.h"

namespace quorvane {
namespace {

constexpr int mutationCount = 10'000;
constexpr std::size_t memoryBound = std::size_t{16} << 20U; // bytes; the tables themselves have some 100 kB

class Mutations : public PersistenceTest {
  protected:
    void SetUp() override {
        script.hook("Load", [](scripted::Call& call) { return call.healthy(); });
    }

    /// One damaged table through both services; false when it was refused as a whole.
    bool survive(const VARIANT& array) {
        const std::string failure = failureOf([&] {
            restore(array);
            restore(persist(store, book, report).value, otherBook);
        });
        const bool refused = failure != "no failure";
        EXPECT_TRUE(!refused || failure == "Expected an matrix of type string" ||
                    failure == "unexpected dimension; 2-dimensional array expected")
            << failure;
        told += messages.size();
        for (const std::string& message : messages) {
            EXPECT_TRUE(message.starts_with("Cannot restore property package from ")) << message;
        }
        messages.clear();
        restoredCount += store.packagesOf(book).size();
        store.clear();
        script.forgetCalls();
        script.model.state = {};
        return !refused;
    }

    std::size_t told = 0;
    std::size_t restoredCount = 0;
};

TEST_F(Mutations, LeaksWouldBeSeen) {
    const leak_gate::AllocationUse automation{leak_gate::comAllocator};
    const leak_gate::AllocationUse heap;
    com::unique_bstr text = com::makeBstr(L"a text");
    auto bytes = std::make_unique<Bytes>(1000);
    EXPECT_GT(automation.blocks(), 0);
    EXPECT_EQ(heap.blocks(), 2);
    EXPECT_GE(heap.peakBytes(), 1000U);
    text.reset();
    bytes.reset();
    EXPECT_EQ(automation.blocks(), 0);
    EXPECT_EQ(heap.blocks(), 0);
}
TEST_F(Mutations, EndInPackagesOrMessagesAndLeakNothing) {
    Mutator mutator;
    for (int i = 0; i < 200; ++i) { // what is made once is made here
        survive(mutator.next());
    }
    const leak_gate::AllocationUse automation{leak_gate::comAllocator};
    const leak_gate::AllocationUse heap;
    int refused = 0;
    for (int i = 0; i < mutationCount; ++i) {
        refused += survive(mutator.next()) ? 0 : 1;
        ASSERT_EQ(scripted::liveObjects(), 0) << "after table " << i;
    }
    EXPECT_EQ(heap.blocks(), 0);
    EXPECT_LT(heap.peakBytes(), memoryBound);
    EXPECT_EQ(automation.blocks(), 0);
    // The damage was neither too small nor too large to tell anything.
    EXPECT_GT(refused, 50);
    EXPECT_GT(told, 500U);
    EXPECT_GT(restoredCount, 2000U);
}

} // namespace
} // namespace quorvane
