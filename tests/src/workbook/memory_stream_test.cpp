#include "src/workbook/memory_stream.h"
#include "tests/refusing_stream.h"
#include "tests/src/workbook/golden.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

using Access = MemoryStream::Access;

LARGE_INTEGER signedNumber(std::int64_t value) {
    LARGE_INTEGER number{};
    number.QuadPart = value;
    return number;
}
ULARGE_INTEGER number(std::uint64_t value) {
    ULARGE_INTEGER result{};
    result.QuadPart = value;
    return result;
}

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

class Stream : public testing::Test {
  protected:
    com::com_ptr<IStream> open(std::string_view content, Access access = Access::writable) {
        *buffer = bytesOf(content);
        return com::make<MemoryStream>(buffer, access);
    }
    com::com_ptr<IStream> openForReading(std::string_view content) { return open(content, Access::readOnly); }

    std::string content() const { return {buffer->begin(), buffer->end()}; }

    /// Moves, and gives the position that the stream reports.
    static std::uint64_t seek(const com::com_ptr<IStream>& stream, std::int64_t move, DWORD origin,
                              HRESULT expected = S_OK) {
        ULARGE_INTEGER position = number(0xDEADBEEFDEADBEEFU);
        EXPECT_EQ(stream->Seek(signedNumber(move), origin, &position), expected);
        return position.QuadPart;
    }
    static std::uint64_t positionOf(const com::com_ptr<IStream>& stream) {
        return seek(stream, 0, STREAM_SEEK_CUR);
    }
    static std::string read(const com::com_ptr<IStream>& stream, ULONG count, HRESULT expected = S_OK) {
        std::string text(count, '\0');
        ULONG got = 0xDEADBEEF;
        EXPECT_EQ(stream->Read(text.data(), count, &got), expected);
        text.resize(got);
        return text;
    }
    static HRESULT write(const com::com_ptr<IStream>& stream, std::string_view text) {
        return stream->Write(text.data(), static_cast<ULONG>(text.size()), nullptr);
    }

    const long liveBefore = com::liveObjects;
    std::shared_ptr<Bytes> buffer = std::make_shared<Bytes>();
};

TEST_F(Stream, CountsAsALiveObjectWhileItExists) {
    auto stream = open("abc");
    EXPECT_EQ(com::liveObjects, liveBefore + 1);
    stream.reset();
    EXPECT_EQ(com::liveObjects, liveBefore);
}
TEST_F(Stream, IsDestroyedByItsLastRelease) {
    IStream* const stream = open("abc").release();
    EXPECT_EQ(stream->AddRef(), 2U);
    EXPECT_EQ(stream->Release(), 1U);
    EXPECT_EQ(com::liveObjects, liveBefore + 1);
    EXPECT_EQ(stream->Release(), 0U);
    EXPECT_EQ(com::liveObjects, liveBefore);
}
TEST_F(Stream, AnswersTheStreamInterfacesOnly) {
    const auto stream = open("abc");
    EXPECT_EQ(stream.tryAs<IStream>().get(), stream.get());
    EXPECT_TRUE(stream.tryAs<ISequentialStream>());
    EXPECT_TRUE(stream.tryAs<IUnknown>());
    void* out = stream.get();
    EXPECT_EQ(stream->QueryInterface(IID_IStorage, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stream->QueryInterface(IID_IStream, nullptr), E_POINTER);
}

TEST_F(Stream, ReadsFromThePosition) {
    const auto stream = openForReading("abcdef");
    EXPECT_EQ(read(stream, 4), "abcd");
    EXPECT_EQ(read(stream, 2), "ef");
    EXPECT_EQ(read(stream, 0), "");
}
TEST_F(Stream, ReadsWhatIsLeftAndSaysThatItIsLess) {
    const auto stream = openForReading("abc");
    EXPECT_EQ(read(stream, 100, S_FALSE), "abc");
    EXPECT_EQ(read(stream, 100, S_FALSE), "");
    EXPECT_EQ(positionOf(stream), 3U);
}
TEST_F(Stream, ReadsOf4GigabytesGiveWhatIsThere) {
    const auto stream = openForReading("abc");
    char target[3] = {};
    ULONG got = 0;
    EXPECT_EQ(stream->Read(target, 0xFFFFFFFF, &got), S_FALSE);
    EXPECT_EQ(got, 3U);
}
TEST_F(Stream, MayBeReadWithoutACount) {
    char target = 0;
    EXPECT_EQ(openForReading("abc")->Read(&target, 1, nullptr), S_OK);
    EXPECT_EQ(target, 'a');
}
TEST_F(Stream, NeedsATargetToReadInto) {
    const auto stream = openForReading("abc");
    ULONG got = 7;
    EXPECT_EQ(stream->Read(nullptr, 1, &got), STG_E_INVALIDPOINTER);
    EXPECT_EQ(got, 0U);
    EXPECT_EQ(stream->Read(nullptr, 0, &got), S_OK);
}
TEST_F(Stream, HasNothingToReadBeyondItsEnd) {
    const auto stream = open("abc");
    seek(stream, 10, STREAM_SEEK_SET);
    EXPECT_EQ(read(stream, 4, S_FALSE), "");
    EXPECT_EQ(read(stream, 0), "");
    EXPECT_EQ(positionOf(stream), 10U);
    ASSERT_EQ(stream->SetSize(number(0)), S_OK);
    EXPECT_EQ(read(stream, 4, S_FALSE), "");
}

TEST_F(Stream, WritesAndGrows) {
    const auto stream = open("");
    ULONG written = 0;
    EXPECT_EQ(stream->Write("abc", 3, &written), S_OK);
    EXPECT_EQ(written, 3U);
    EXPECT_EQ(write(stream, "def"), S_OK);
    EXPECT_EQ(content(), "abcdef");
}
TEST_F(Stream, WritesOverWhatIsThere) {
    const auto stream = open("abcdef");
    seek(stream, 2, STREAM_SEEK_SET);
    EXPECT_EQ(write(stream, "XY"), S_OK);
    EXPECT_EQ(content(), "abXYef");
    EXPECT_EQ(positionOf(stream), 4U);
}
TEST_F(Stream, WritesBeyondItsEndAfterZeros) {
    const auto stream = open("a");
    seek(stream, 4, STREAM_SEEK_SET);
    EXPECT_EQ(write(stream, "b"), S_OK);
    EXPECT_EQ(content(), std::string("a\0\0\0b", 5));
}
TEST_F(Stream, GrowsToThePositionWhenNothingIsWrittenThere) {
    const auto stream = open("a");
    seek(stream, 4, STREAM_SEEK_SET);
    EXPECT_EQ(stream->Write(nullptr, 0, nullptr), S_OK);
    EXPECT_EQ(content(), std::string("a\0\0\0", 4));
}
TEST_F(Stream, RefusesToWriteWhenReadOnly) {
    const auto stream = openForReading("abc");
    ULONG written = 7;
    EXPECT_EQ(stream->Write("x", 1, &written), STG_E_ACCESSDENIED);
    EXPECT_EQ(written, 0U);
    EXPECT_EQ(content(), "abc");
}
TEST_F(Stream, NeedsASourceToWriteFrom) {
    EXPECT_EQ(open("")->Write(nullptr, 0xFFFFFFFF, nullptr), STG_E_INVALIDPOINTER);
    EXPECT_EQ(content(), "");
}
TEST_F(Stream, DoesNotGrowBeyond4Gigabytes) {
    const auto stream = open("abc");
    seek(stream, 3, STREAM_SEEK_SET);
    ULONG written = 7;
    EXPECT_EQ(stream->Write("x", 0xFFFFFFFF, &written), STG_E_MEDIUMFULL);
    EXPECT_EQ(written, 0U);
    EXPECT_EQ(content(), "abc");
    EXPECT_EQ(positionOf(stream), 3U);
}

TEST_F(Stream, SeeksFromItsStartPositionAndEnd) {
    const auto stream = openForReading("abcdef");
    EXPECT_EQ(seek(stream, 4, STREAM_SEEK_SET), 4U);
    EXPECT_EQ(seek(stream, 1, STREAM_SEEK_CUR), 5U);
    EXPECT_EQ(seek(stream, 0, STREAM_SEEK_END), 6U);
    EXPECT_EQ(stream->Seek(signedNumber(1), STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(read(stream, 1), "b");
}
TEST_F(Stream, RefusesOtherOrigins) {
    const auto stream = openForReading("abc");
    EXPECT_EQ(seek(stream, 0, 3, STG_E_INVALIDFUNCTION), 0xDEADBEEFDEADBEEFU);
    EXPECT_EQ(seek(stream, 0, 0xFFFFFFFF, STG_E_INVALIDFUNCTION), 0xDEADBEEFDEADBEEFU);
}
TEST_F(Stream, SeekingBeyondTheEndGrowsItToOneByteLess) {
    const auto stream = open("");
    EXPECT_EQ(seek(stream, 10, STREAM_SEEK_SET), 10U);
    EXPECT_EQ(content(), std::string(9, '\0'));
    EXPECT_EQ(seek(stream, 1, STREAM_SEEK_CUR), 11U);
    EXPECT_EQ(content().size(), 10U);
    EXPECT_EQ(seek(stream, 1, STREAM_SEEK_END), 11U);
    EXPECT_EQ(content().size(), 10U);
}
TEST_F(Stream, SeekingBeyondTheEndIsRefusedWhenReadOnly) {
    const auto stream = openForReading("abc");
    seek(stream, 1, STREAM_SEEK_SET);
    EXPECT_EQ(seek(stream, 4, STREAM_SEEK_SET, STG_E_INVALIDPOINTER), 0xDEADBEEFDEADBEEFU);
    EXPECT_EQ(positionOf(stream), 1U);
    EXPECT_EQ(seek(stream, 3, STREAM_SEEK_SET), 3U);
}
TEST_F(Stream, SeeksByTheLow32BitsWithoutTheirSign) {
    const auto stream = openForReading("abcdef");
    EXPECT_EQ(seek(stream, 0x700000002, STREAM_SEEK_SET), 2U);
    EXPECT_EQ(seek(stream, 0x100000001, STREAM_SEEK_CUR), 3U);
    // One back is far ahead.
    EXPECT_EQ(seek(stream, -1, STREAM_SEEK_CUR, STG_E_INVALIDPOINTER), 0xDEADBEEFDEADBEEFU);
}
TEST_F(Stream, SeekingBeyond4GigabytesIsRefused) {
    const auto stream = open("abcdef");
    seek(stream, 5, STREAM_SEEK_SET);
    EXPECT_EQ(seek(stream, -1, STREAM_SEEK_CUR, STG_E_MEDIUMFULL), 0xDEADBEEFDEADBEEFU);
    EXPECT_EQ(positionOf(stream), 5U);
    EXPECT_EQ(content(), "abcdef");
}

TEST_F(Stream, TakesASize) {
    const auto stream = open("abcdef");
    EXPECT_EQ(stream->SetSize(number(2)), S_OK);
    EXPECT_EQ(content(), "ab");
    EXPECT_EQ(stream->SetSize(number(4)), S_OK);
    EXPECT_EQ(content(), std::string("ab\0\0", 4));
}
TEST_F(Stream, RefusesASizeWhenReadOnlyOrAbove4Gigabytes) {
    EXPECT_EQ(openForReading("abc")->SetSize(number(1)), E_UNEXPECTED);
    EXPECT_EQ(open("abc")->SetSize(number(0x100000000)), E_UNEXPECTED);
    EXPECT_EQ(content(), "abc");
}

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

TEST_F(Stream, HasNothingToCommitAndNothingToTakeBack) {
    const auto stream = open("abc");
    EXPECT_EQ(stream->Commit(STGC_DEFAULT), S_OK);
    EXPECT_EQ(stream->Revert(), E_FAIL);
}
TEST_F(Stream, LocksNoRegions) {
    const auto stream = open("abc");
    EXPECT_EQ(stream->LockRegion(number(0), number(1), LOCK_WRITE), STG_E_INVALIDFUNCTION);
    EXPECT_EQ(stream->UnlockRegion(number(0), number(1), LOCK_WRITE), STG_E_INVALIDFUNCTION);
}
TEST_F(Stream, OffersNoStatistics) {
    const auto stream = open("abc");
    STATSTG statistics{};
    EXPECT_EQ(stream->Stat(&statistics, STATFLAG_DEFAULT), STG_E_ACCESSDENIED);
    EXPECT_EQ(stream->Stat(nullptr, STATFLAG_DEFAULT), E_POINTER);
}
TEST_F(Stream, IsClonedWithItsPositionAndACopyOfTheContent) {
    const auto stream = open("abc");
    seek(stream, 1, STREAM_SEEK_SET);
    com::com_ptr<IStream> clone;
    ASSERT_EQ(stream->Clone(clone.put()), S_OK);
    ASSERT_EQ(write(clone, "XYZ"), S_OK);
    EXPECT_EQ(content(), "abc");
    EXPECT_EQ(read(stream, 2), "bc");
    seek(clone, 0, STREAM_SEEK_SET);
    EXPECT_EQ(read(clone, 4), "aXYZ");
}
TEST_F(Stream, ACloneOfAReadOnlyOneIsReadOnly) {
    com::com_ptr<IStream> clone;
    ASSERT_EQ(openForReading("abc")->Clone(clone.put()), S_OK);
    EXPECT_EQ(write(clone, "x"), STG_E_ACCESSDENIED);
    EXPECT_EQ(open("abc")->Clone(nullptr), E_POINTER);
}
TEST_F(Stream, MayOutliveTheBuffersOwner) {
    const auto stream = openForReading("abc");
    buffer.reset();
    EXPECT_EQ(read(stream, 3), "abc");
}

} // namespace
} // namespace quorvane
