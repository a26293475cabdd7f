// Streams over memory, opened with a content.
#pragma once

#include "src/workbook/memory_stream.h"
#include "tests/src/workbook/golden.h"

#include <gtest/gtest.h>

namespace quorvane {

using Access = MemoryStream::Access;

inline LARGE_INTEGER signedNumber(std::int64_t value) {
    LARGE_INTEGER number{};
    number.QuadPart = value;
    return number;
}
inline ULARGE_INTEGER number(std::uint64_t value) {
    ULARGE_INTEGER result{};
    result.QuadPart = value;
    return result;
}

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

} // namespace quorvane
