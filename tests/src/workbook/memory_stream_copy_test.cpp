// What a MemoryStream copies into another stream.
#include "tests/refusing_stream.h"
#include "tests/src/workbook/stream_fixture.h"

#include <functional>
#include <optional>

namespace quorvane {
namespace {

// Hears one write, and answers it as told.
class Listener final : public test::RefusingStream {
  public:
    HRESULT STDMETHODCALLTYPE Write(const void* source, ULONG count, ULONG* written) noexcept override {
        const auto* const bytes = static_cast<const char*>(source);
        heard.assign(bytes, bytes + count);
        ++calls;
        if (meanwhile) {
            meanwhile();
        }
        if (counts) {
            *written = claimed.value_or(count);
        }
        return answer;
    }

    std::string heard;
    int calls = 0;
    HRESULT answer = S_OK;
    bool counts = true; ///< tells how much was written
    std::optional<ULONG> claimed;
    std::function<void()> meanwhile;
};

class Copying : public Stream {
  protected:
    HRESULT copy(const com::com_ptr<IStream>& stream, std::uint64_t count) {
        readCount = writtenCount = number(0xDEADBEEFDEADBEEFU);
        return stream->CopyTo(target.get(), number(count), &readCount, &writtenCount);
    }

    com::com_ptr<Listener> target = com::make<Listener>();
    ULARGE_INTEGER readCount{};
    ULARGE_INTEGER writtenCount{};
};

TEST_F(Copying, WritesFromThePositionOn) {
    const auto stream = openForReading("abcdef");
    seek(stream, 1, STREAM_SEEK_SET);
    EXPECT_EQ(copy(stream, 5), S_OK);
    EXPECT_EQ(target->heard, "bcdef");
    EXPECT_EQ(readCount.QuadPart, 5U);
    EXPECT_EQ(writtenCount.QuadPart, 5U);
    EXPECT_EQ(positionOf(stream), 6U);
}
TEST_F(Copying, SaysWhenMoreWasThere) {
    const auto stream = openForReading("abcdef");
    EXPECT_EQ(copy(stream, 4), S_FALSE);
    EXPECT_EQ(target->heard, "abcd");
    EXPECT_EQ(positionOf(stream), 4U);
}
TEST_F(Copying, OfMoreThanThereIsWritesAll) {
    EXPECT_EQ(copy(openForReading("abc"), 0xFFFFFFFFFFFFFFFFU), S_OK);
    EXPECT_EQ(target->heard, "abc");
    EXPECT_EQ(readCount.QuadPart, 3U);
}
TEST_F(Copying, CountsIn32Bits) {
    EXPECT_EQ(copy(openForReading("abc"), 0x100000002), S_FALSE);
    EXPECT_EQ(target->heard, "ab");
}
TEST_F(Copying, ReportsWhatTheTargetSays) {
    target->claimed = 1;
    EXPECT_EQ(copy(openForReading("abc"), 3), S_OK);
    EXPECT_EQ(readCount.QuadPart, 3U);
    EXPECT_EQ(writtenCount.QuadPart, 1U);
}
TEST_F(Copying, TellsOfAllOrNothingWhenTheTargetDoesNotCount) {
    const auto countAfter = [&](HRESULT answer) {
        target->answer = answer;
        EXPECT_EQ(copy(openForReading("abc"), 3), answer);
        return writtenCount.QuadPart;
    };
    target->counts = false;
    EXPECT_EQ(countAfter(S_OK), 3U);
    EXPECT_EQ(countAfter(STG_E_MEDIUMFULL), 0U);
    target->counts = true;
    target->claimed = 4; // more than it was given
    EXPECT_EQ(countAfter(S_OK), 3U);
    EXPECT_EQ(countAfter(STG_E_MEDIUMFULL), 0U);
    target->claimed = 0;
    EXPECT_EQ(countAfter(S_OK), 0U);
    target->claimed = 2;
    EXPECT_EQ(countAfter(STG_E_MEDIUMFULL), 2U);
}
TEST_F(Copying, GivesTheTargetsResult) {
    target->answer = S_FALSE;
    EXPECT_EQ(copy(openForReading("abc"), 3), S_FALSE);
    target->answer = STG_E_MEDIUMFULL;
    const auto stream = openForReading("abc");
    EXPECT_EQ(copy(stream, 2), STG_E_MEDIUMFULL);
    EXPECT_EQ(readCount.QuadPart, 2U);
    EXPECT_EQ(positionOf(stream), 2U);
}
TEST_F(Copying, BeyondTheEndWritesNothing) {
    const auto stream = open("abc");
    seek(stream, 10, STREAM_SEEK_SET);
    EXPECT_EQ(copy(stream, 5), S_OK);
    EXPECT_EQ(target->calls, 1);
    EXPECT_EQ(target->heard, "");
    EXPECT_EQ(readCount.QuadPart, 0U);
}
TEST_F(Copying, NeedsATarget) {
    const auto stream = openForReading("abc");
    EXPECT_EQ(stream->CopyTo(nullptr, number(1), nullptr, nullptr), E_POINTER);
    EXPECT_EQ(stream->CopyTo(target.get(), number(1), nullptr, nullptr), S_FALSE);
}
TEST_F(Copying, SurvivesATargetThatChangesTheSource) {
    const auto stream = open("abcdef");
    target->meanwhile = [&] { stream->SetSize(number(1)); };
    EXPECT_EQ(copy(stream, 6), S_OK);
    EXPECT_EQ(read(stream, 1, S_FALSE), "");
}
TEST_F(Copying, SurvivesATargetThatLetsGoOfTheSource) {
    auto stream = openForReading("abc");
    IStream* const source = stream.get();
    const long whole = com::liveObjects;
    long meanwhile = 0;
    target->meanwhile = [&] {
        stream.reset();
        meanwhile = com::liveObjects;
    };
    EXPECT_EQ(source->CopyTo(target.get(), number(3), &readCount, nullptr), S_OK);
    EXPECT_EQ(readCount.QuadPart, 3U);
    EXPECT_EQ(meanwhile, whole);
    EXPECT_EQ(com::liveObjects, whole - 1);
}
TEST_F(Copying, IntoItselfLeavesTheContent) {
    const auto stream = open("abcdef");
    EXPECT_EQ(stream->CopyTo(stream.get(), number(6), nullptr, nullptr), S_OK);
    EXPECT_EQ(content(), "abcdef");
}

} // namespace
} // namespace quorvane
