// The stream of a saved package when memory runs out: each call that needs memory says so and leaves the
// stream as it was.
#include "src/workbook/memory_stream.h"
#include "tests/leak_gate/allocations.h"

#include <array>
#include <gtest/gtest.h>

namespace quorvane {
namespace {

using leak_gate::Refusal;
using leak_gate::testProgram;

struct Case {
    const char* name;
    HRESULT (*call)(IStream& stream, IStream& other);
};

void PrintTo(const Case& tested, std::ostream* out) { *out << tested.name; }

ULARGE_INTEGER number(std::uint64_t value) {
    ULARGE_INTEGER result{};
    result.QuadPart = value;
    return result;
}

const Case cases[] = {
    {"Write",
     [](IStream& stream, IStream&) {
         static const std::array<std::uint8_t, 10000> more{};
         return stream.Write(more.data(), static_cast<ULONG>(more.size()), nullptr);
     }},
    {"Seek",
     [](IStream& stream, IStream&) {
         LARGE_INTEGER move{};
         move.QuadPart = 10000;
         return stream.Seek(move, STREAM_SEEK_SET, nullptr);
     }},
    {"SetSize", [](IStream& stream, IStream&) { return stream.SetSize(number(10000)); }},
    {"CopyTo",
     [](IStream& stream, IStream& other) { return stream.CopyTo(&other, number(100), nullptr, nullptr); }},
    {"Clone",
     [](IStream& stream, IStream&) {
         com::com_ptr<IStream> clone;
         return stream.Clone(clone.put());
     }},
};

class ShortMemory : public testing::TestWithParam<Case> {
  protected:
    static std::uint64_t positionOf(IStream& stream) {
        ULARGE_INTEGER position{};
        EXPECT_EQ(stream.Seek({}, STREAM_SEEK_CUR, &position), S_OK);
        return position.QuadPart;
    }

    /// Whether there was an allocation of that number to refuse.
    static bool fails(long long position) {
        const auto buffer = std::make_shared<Bytes>(50, std::uint8_t{7});
        const auto stream = com::make<MemoryStream>(buffer, MemoryStream::Access::writable);
        const auto otherBuffer = std::make_shared<Bytes>();
        otherBuffer->reserve(100); // the other stream needs none
        const auto other = com::make<MemoryStream>(otherBuffer, MemoryStream::Access::writable);
        std::array<std::uint8_t, 3> read{};
        EXPECT_EQ(stream->Read(read.data(), read.size(), nullptr), S_OK);
        HRESULT code = S_OK;
        bool happened = false;
        {
            const Refusal refusal{testProgram, position, Refusal::Extent::One};
            code = GetParam().call(*stream, *other);
            happened = refusal.happened();
        }
        if (happened) {
            EXPECT_EQ(code, E_OUTOFMEMORY);
            EXPECT_EQ(*buffer, Bytes(50, std::uint8_t{7}));
            EXPECT_EQ(*otherBuffer, Bytes{});
            EXPECT_EQ(positionOf(*stream), read.size());
        }
        EXPECT_EQ(GetParam().call(*stream, *other), S_OK);
        return happened;
    }
};

TEST_P(ShortMemory, IsReportedAndLeavesTheStreamAsItWas) {
    fails(1); // makes once what the C++ run time keeps for exceptions
    const leak_gate::AllocationUse use;
    long long position = 1;
    while (fails(position) && !HasFailure()) {
        ++position;
    }
    EXPECT_GT(position, 1);
    EXPECT_EQ(use.blocks(), 0);
}

INSTANTIATE_TEST_SUITE_P(Call, ShortMemory, testing::ValuesIn(cases),
                         [](const auto& tested) { return std::string{tested.param.name}; });

} // namespace
} // namespace quorvane
