#include "tests/src/workbook/stream_fixture.h"

namespace quorvane {
namespace {

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
