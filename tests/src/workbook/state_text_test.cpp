#include "src/workbook/saved_state/state_text.h"
#include "tests/src/workbook/golden.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

bool isCompressed(const Bytes& bytes) { return stateTextOf(bytes).starts_with(L'#'); }

/// `noiseCount` bytes that do not compress, then zeros.
Bytes mixed(std::size_t noiseCount, std::size_t zeros) {
    Bytes bytes = noise(noiseCount);
    bytes.resize(noiseCount + zeros);
    return bytes;
}

TEST(StateText, OfNoBytesIsEmpty) {
    EXPECT_EQ(stateTextOf({}), L"");
    EXPECT_TRUE(bytesOfStateText(L"").empty());
}
TEST(StateText, IsCompressedFrom501BytesOn) {
    EXPECT_EQ(stateTextOf(repeated(500)), toBase64(repeated(500)));
    EXPECT_EQ(stateTextOf(repeated(501)), L"#" + toBase64(deflated(repeated(501))));
}
TEST(StateText, OfBytesThatDoNotCompressIsPlain) {
    EXPECT_EQ(stateTextOf(noise(5000)), toBase64(noise(5000)));
}
TEST(StateText, IsCompressedWhenThatSavesMoreThan100Characters) {
    std::size_t plain = 0;
    std::size_t compressed = 0;
    for (std::size_t zeros = 60; zeros < 140; ++zeros) {
        const Bytes bytes = mixed(600, zeros);
        const std::size_t saving = base64Length(bytes.size()) - base64Length(deflated(bytes).size());
        EXPECT_EQ(isCompressed(bytes), saving > 100) << saving;
        ++(isCompressed(bytes) ? compressed : plain);
        if (saving == 100) {
            plain += 1000; // the case that matters was among them
        }
    }
    EXPECT_GT(plain, 1000U);
    EXPECT_GT(compressed, 0U);
}
TEST(StateText, IsPlainWhereItCouldNotBeRestoredOtherwise) {
    const std::wstring plain = toBase64(repeated(5000));
    InflationAllowance tooSmall{4999};
    EXPECT_EQ(stateTextOf(repeated(5000), tooSmall), plain);
    InflationAllowance forOne{5000, 9999};
    EXPECT_NE(stateTextOf(repeated(5000), forOne), plain);
    EXPECT_EQ(stateTextOf(repeated(5000), forOne), plain);
    EXPECT_EQ(forOne.next(), 4999U);
}
TEST(StateText, ThatIsPlainSpendsNothing) {
    InflationAllowance allowance{5000, 5000};
    EXPECT_EQ(bytesOfStateText(stateTextOf(noise(5000), allowance), allowance), noise(5000));
    EXPECT_EQ(allowance.next(), 5000U);
}
TEST(StateText, RoundTrips) {
    for (const Bytes& bytes : {noise(1), noise(499), repeated(501), letters(60000), mixed(2000, 2000)}) {
        EXPECT_EQ(bytesOfStateText(stateTextOf(bytes)), bytes);
    }
}
TEST(StateText, ThatIsDamagedGivesWhatIsLeft) {
    const std::wstring text = stateTextOf(letters(60000));
    const Bytes part = bytesOfStateText(std::wstring_view{text}.substr(0, text.size() / 2));
    const Bytes whole = letters(60000);
    ASSERT_GT(part.size(), 20000U);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin()));
    EXPECT_TRUE(bytesOfStateText(L"#").empty());
    EXPECT_TRUE(bytesOfStateText(L"#AAAA").empty());
    EXPECT_TRUE(bytesOfStateText(L"##").empty());
}

} // namespace
} // namespace quorvane
