#include "src/foundation/exceptions.h"
#include "src/workbook/saved_state/compression.h"
#include "tests/src/workbook/golden.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

std::span<const std::uint8_t> firstOf(const Bytes& bytes, std::size_t count) {
    return std::span{bytes}.first(count);
}

Bytes inflated(std::span<const std::uint8_t> stream, std::size_t limit = std::size_t{1} << 20U) {
    InflationAllowance allowance{limit};
    return inflated(stream, allowance);
}

std::wstring refusal(std::span<const std::uint8_t> stream, InflationAllowance& allowance) {
    try {
        inflated(stream, allowance);
    } catch (const WException& failure) {
        return failure.message();
    }
    return L"(accepted)";
}

TEST(Compression, RoundTrips) {
    for (const std::size_t count : {1U, 500U, 1023U, 1024U, 1025U, 2048U, 100000U}) {
        EXPECT_EQ(inflated(deflated(letters(count + 1000))), letters(count + 1000));
    }
}
TEST(Compression, NeverGivesMoreThanGoesIn) {
    EXPECT_EQ(deflated(noise(5000)).size(), 5000U);
    EXPECT_LT(deflated(letters(5000)).size(), 5000U);
}

TEST(Decompression, OfACutStreamGivesWhatCameBefore) {
    const Bytes bytes = letters(20000);
    const Bytes stream = deflated(bytes);
    std::size_t most = 0;
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, std::size_t{100}, stream.size() / 2, stream.size() - 1}) {
        const Bytes part = inflated(firstOf(stream, length));
        ASSERT_LE(part.size(), bytes.size());
        EXPECT_TRUE(std::equal(part.begin(), part.end(), bytes.begin()));
        EXPECT_GE(part.size(), most);
        most = part.size();
    }
    EXPECT_EQ(most, bytes.size()); // without its check sum
}
TEST(Decompression, OfADamagedStreamGivesWhatCameBefore) {
    const Bytes bytes = letters(20000);
    Bytes stream = deflated(bytes);
    stream.back() ^= 1U; // the check sum
    EXPECT_EQ(inflated(stream), bytes);
    stream[0] ^= 0xFFU; // the header
    EXPECT_TRUE(inflated(stream).empty());
}
TEST(Decompression, IgnoresWhatFollowsTheStream) {
    Bytes stream = deflated(repeated(3000));
    stream.insert(stream.end(), {1, 2, 3});
    EXPECT_EQ(inflated(stream), repeated(3000));
}
TEST(Decompression, OfSomethingElseGivesNothing) {
    EXPECT_TRUE(inflated(bytesOf("this is no zlib stream")).empty());
    EXPECT_TRUE(inflated({}).empty());
}
TEST(Decompression, StopsAtItsLimit) {
    constexpr const wchar_t* message = L"the saved state is too large; at most 256 MB can be restored";
    const Bytes stream = deflated(repeated(5000));
    EXPECT_EQ(inflated(stream, 5000).size(), 5000U);
    for (const std::size_t limit : {4999U, 0U}) {
        InflationAllowance allowance{limit};
        EXPECT_EQ(refusal(stream, allowance), message);
    }
}
TEST(Decompression, StopsWhereTheTablesStatesTogetherHaveTheirLimit) {
    constexpr const wchar_t* message =
        L"the saved states of this workbook are too large; at most 1 GB can be restored together";
    const Bytes stream = deflated(repeated(5000));
    InflationAllowance allowance{6000, 12000};
    EXPECT_EQ(inflated(stream, allowance).size(), 5000U);
    EXPECT_EQ(inflated(stream, allowance).size(), 5000U);
    EXPECT_EQ(allowance.next(), 2000U);
    EXPECT_EQ(refusal(stream, allowance), message);
    EXPECT_EQ(allowance.next(), 0U); // reading so far took its time
    EXPECT_EQ(refusal(deflated(repeated(1000)), allowance), message);
    EXPECT_TRUE(inflated({}, allowance).empty());
}
TEST(Decompression, OfAStateThatIsTooLargeCountsAsFarAsItWent) {
    const Bytes stream = deflated(repeated(5000));
    InflationAllowance allowance{4000, 10000};
    for (const std::size_t left : {4000U, 2000U, 0U}) {
        EXPECT_NE(refusal(stream, allowance), L"(accepted)");
        EXPECT_EQ(allowance.next(), left);
    }
}
TEST(Decompression, SurvivesEveryOneByteDamage) {
    const Bytes good = deflated(letters(600));
    for (std::size_t i = 0; i < good.size(); ++i) {
        for (const unsigned flip : {0x01U, 0x80U, 0xFFU}) {
            Bytes bad = good;
            bad[i] ^= static_cast<std::uint8_t>(flip);
            EXPECT_LE(inflated(bad, 1U << 20U).size(), 1U << 20U);
        }
    }
}

} // namespace
} // namespace quorvane
