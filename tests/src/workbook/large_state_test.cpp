// States of a size that packages really have, and of one that only a hostile workbook has.
#include "tests/leak_gate/allocations.h"
#include "tests/src/workbook/persistence_fixture.h"

#include "src/workbook/saved_state/state_text.h"

namespace quorvane {
namespace {

constexpr std::size_t megabyte = std::size_t{1} << 20U;

class LargeState : public PersistenceTest {
  protected:
    /// The row of a package with this state text, in as many pieces as it needs.
    static Row rowOf(const std::wstring& text) {
        Row cells = row(L"Gas", L"6");
        for (std::size_t begin = 0; begin < text.size(); begin += 32000) {
            cells.push_back(text.substr(begin, 32000));
        }
        return cells;
    }
    /// Compressed zeros.
    static std::wstring zeros(std::size_t megabytes) {
        return L"#" + toBase64(deflated(Bytes(megabytes * megabyte)));
    }
    /// One package each.
    static com::variant tableOfZeros(std::initializer_list<std::size_t> megabytes) {
        Table table;
        std::size_t columns = 0;
        for (const std::size_t count : megabytes) {
            table.push_back(rowOf(zeros(count)));
            columns = std::max(columns, table.back().size());
        }
        for (Row& cells : table) {
            cells.resize(columns);
        }
        return arrayOf(table);
    }
};

TEST_F(LargeState, Of64MegabytesRoundTrips) {
    attach(L"Gas");
    Bytes bytes = repeated(64 * megabyte);
    bytes.back() = 'E';
    setState(bytes);
    const ArrayVariant table = persist(store, book, report);
    script.model.state = {};
    restore(table.value, otherBook);
    EXPECT_TRUE(state() == bytes);
    EXPECT_THAT(messages, testing::IsEmpty());
}
TEST_F(LargeState, Of8MegabytesThatDoNotCompressRoundTrips) {
    attach(L"Gas");
    setState(noise(8 * megabyte));
    const ArrayVariant table = persist(store, book, report);
    script.model.state = {};
    restore(table.value, otherBook);
    EXPECT_TRUE(state() == noise(8 * megabyte));
    EXPECT_THAT(messages, testing::IsEmpty());
}
TEST_F(LargeState, Of256MegabytesIsRestored) {
    script.hook("Load", [](scripted::Call&) { return S_OK; }); // nobody needs a copy
    restore({rowOf(zeros(256))});
    EXPECT_EQ(script.count("Load"), 1U);
    EXPECT_THAT(messages, testing::IsEmpty());
}
TEST_F(LargeState, BeyondThatIsToldAndUsesNoMoreMemory) {
    const com::variant table = tableOfZeros({300, 257});
    const leak_gate::AllocationUse heap;
    restore(table);
    EXPECT_THAT(messages, testing::ElementsAre(
                              "Cannot restore property package from Scripted: the saved state is too large; "
                              "at most 256 MB can be restored",
                              "Cannot restore property package from Scripted: the saved state is too large; "
                              "at most 256 MB can be restored"));
    EXPECT_EQ(script.count("Load"), 0U);
    EXPECT_LT(heap.peakBytes(), 400 * megabyte); // the buffer is doubled as it grows
}
TEST_F(LargeState, BeyondThatUsesNoMoreMemoryWhenItsBeginningPromisesLess) {
    Bytes bytes(300 * megabyte);
    const Bytes other = noise(1000); // makes the beginning half as short as the rest
    for (std::size_t i = 0; i < other.size(); ++i) {
        bytes[2000 * i] = other[i];
    }
    const Row cells = rowOf(L"#" + toBase64(deflated(bytes)));
    bytes = {};
    const leak_gate::AllocationUse heap;
    restore({cells});
    EXPECT_THAT(messages, testing::ElementsAre(
                              "Cannot restore property package from Scripted: the saved state is too large; "
                              "at most 256 MB can be restored"));
    EXPECT_LT(heap.peakBytes(), 400 * megabyte);
}
TEST_F(LargeState, BeyondThatIsSavedUncompressed) {
    const Bytes bytes(256 * megabyte + 1);
    const std::wstring text = stateTextOf(bytes);
    EXPECT_EQ(text.size(), base64Length(bytes.size()));
    EXPECT_EQ(text.front(), L'A');
}

} // namespace
} // namespace quorvane
