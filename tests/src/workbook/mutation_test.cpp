// Ten thousand damaged tables: each is restored or refused, nothing is leaked, and little memory is used.
#include "tests/src/workbook/heap.h"
#include "tests/src/workbook/persistence_fixture.h"

#include "com/safe_array.h"

#include <random>

namespace quorvane {
namespace {

constexpr int mutationCount = 10'000;
constexpr std::size_t memoryBound = std::size_t{16} << 20U; // bytes; the tables themselves have some 100 kB

class Mutator {
  public:
    explicit Mutator(std::vector<Table> good) : good_{std::move(good)} {}

    com::variant next() {
        Table table = good_[below(good_.size())];
        for (std::size_t i = 1 + below(4); i > 0; --i) {
            mutate(table);
        }
        com::variant array = arrayOf(table, below(2) == 0 ? 1 : static_cast<LONG>(random_()));
        if (below(50) == 0) {
            return wrongShape();
        }
        return array;
    }

  private:
    std::size_t below(std::size_t count) { return random_() % count; }

    void mutate(Table& table) {
        Row& row = table[below(table.size())];
        std::wstring& cell = row[below(8) == 0 ? below(row.size()) : std::min(5 + below(4), row.size() - 1)];
        switch (below(9)) {
        case 0:
            cell.clear();
            break;
        case 1:
            cell.resize(below(cell.size() + 1));
            break;
        case 2: // a few characters, of which most are base64
            for (std::size_t i = below(8); i > 0 && !cell.empty(); --i) {
                cell[below(cell.size())] = static_cast<wchar_t>(1 + below(below(4) == 0 ? 0xFFFF : 127));
            }
            break;
        case 3:
            cell = std::to_wstring(below(12));
            break;
        case 4:
            cell.insert(0, L"#");
            break;
        case 5:
            cell.erase(0, 1 + below(3));
            break;
        case 6:
            cell.append(below(6), L'=');
            break;
        case 7:
            std::swap(cell, row[below(row.size())]);
            break;
        default:
            table.push_back(table[below(table.size())]);
            break;
        }
    }

    com::variant wrongShape() {
        SAFEARRAYBOUND bounds[3] = {{1, 1}, {6, 1}, {2, 1}};
        if (below(2) == 0) {
            return com::variant::array(com::unique_safearray{SafeArrayCreate(VT_BSTR, 3, bounds)}, VT_BSTR);
        }
        return com::variant::array(com::makeMatrix(VT_VARIANT, 2, 6), VT_VARIANT);
    }

    std::vector<Table> good_;
    std::mt19937 random_{20260401};
};

class Mutations : public PersistenceTest {
  protected:
    void SetUp() override {
        script.hook("Load", [](scripted::Call& call) { return call.healthy(); });
        for (const char* name :
             {"empty", "bytes_500", "bytes_501", "text_32000", "compressed_pieces", "two_widths"}) {
            good.push_back(goldenTable(name));
        }
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

    std::vector<Table> good;
    std::size_t told = 0;
    std::size_t restoredCount = 0;
};

TEST_F(Mutations, LeaksWouldBeSeen) {
    const AutomationBlocks automation;
    const HeapUse heap;
    com::unique_bstr text = com::makeBstr(L"a text");
    auto bytes = std::make_unique<Bytes>(1000);
    EXPECT_GT(automation.left(), 0);
    EXPECT_EQ(heap.blocks(), 2);
    EXPECT_GE(heap.peakBytes(), 1000U);
    text.reset();
    bytes.reset();
    EXPECT_EQ(automation.left(), 0);
    EXPECT_EQ(heap.blocks(), 0);
}
TEST_F(Mutations, EndInPackagesOrMessagesAndLeakNothing) {
    Mutator mutator{good};
    for (int i = 0; i < 200; ++i) { // what is made once is made here
        survive(mutator.next());
    }
    const AutomationBlocks automation;
    const HeapUse heap;
    int refused = 0;
    for (int i = 0; i < mutationCount; ++i) {
        refused += survive(mutator.next()) ? 0 : 1;
        ASSERT_EQ(scripted::liveObjects(), 0) << "after table " << i;
    }
    EXPECT_EQ(heap.blocks(), 0);
    EXPECT_LT(heap.peakBytes(), memoryBound);
    EXPECT_EQ(automation.left(), 0);
    // The damage was neither too small nor too large to tell anything.
    EXPECT_GT(refused, 50);
    EXPECT_GT(told, 500U);
    EXPECT_GT(restoredCount, 2000U);
}

} // namespace
} // namespace quorvane
