#include "src/workbook/saved_state/base64.h"
#include "tests/src/workbook/golden.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

std::string decoded(std::wstring_view text) {
    const Bytes bytes = fromBase64(text);
    return {bytes.begin(), bytes.end()};
}

// Source of the texts: RFC 4648, section 10.
TEST(Base64, EncodesWithPadding) {
    EXPECT_EQ(toBase64({}), L"");
    EXPECT_EQ(toBase64(bytesOf("f")), L"Zg==");
    EXPECT_EQ(toBase64(bytesOf("fo")), L"Zm8=");
    EXPECT_EQ(toBase64(bytesOf("foo")), L"Zm9v");
    EXPECT_EQ(toBase64(bytesOf("foob")), L"Zm9vYg==");
    EXPECT_EQ(toBase64(bytesOf("fooba")), L"Zm9vYmE=");
    EXPECT_EQ(toBase64(bytesOf("foobar")), L"Zm9vYmFy");
}
TEST(Base64, UsesTheWholeAlphabet) {
    Bytes bytes;
    for (unsigned group = 0; group < 64; group += 4) {
        bytes.push_back(static_cast<std::uint8_t>(group << 2U | (group + 1) >> 4U));
        bytes.push_back(static_cast<std::uint8_t>((group + 1) << 4U | (group + 2) >> 2U));
        bytes.push_back(static_cast<std::uint8_t>((group + 2) << 6U | (group + 3)));
    }
    EXPECT_EQ(toBase64(bytes), L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}
TEST(Base64, TellsTheLengthOfATextBeforehand) {
    for (std::size_t count = 0; count < 10; ++count) {
        EXPECT_EQ(base64Length(count), toBase64(repeated(count)).size());
    }
}
TEST(Base64, RoundTripsBytesOfEveryLength) {
    const Bytes all = noise(300);
    for (std::size_t count = 0; count <= all.size(); ++count) {
        const Bytes bytes{all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count)};
        EXPECT_EQ(fromBase64(toBase64(bytes)), bytes);
    }
}

TEST(Base64Reader, SkipsWhatIsNotBase64) {
    EXPECT_EQ(decoded(L" Zm9v\r\n-Y_m.F y\t"), "foobar");
    EXPECT_EQ(decoded(L"#~\u00e4"), "");
}
TEST(Base64Reader, LooksAtTheLowByteOfACharacterOnly) {
    EXPECT_EQ(decoded(L"\u015a\u016d9v"), "foo"); // Z and m with a high byte of 1
    EXPECT_EQ(decoded(L"Zg=\u013d"), "f");
}
TEST(Base64Reader, DropsAnIncompleteGroup) {
    EXPECT_EQ(decoded(L"Zm9vY"), "foo");
    EXPECT_EQ(decoded(L"Zm9vYm"), "foo");
    EXPECT_EQ(decoded(L"Zm9vYmF"), "foo");
    EXPECT_EQ(decoded(L"Z"), "");
}
TEST(Base64Reader, FindsThePaddingAlsoBeforeSkippedCharacters) {
    EXPECT_EQ(decoded(L"Zg=.=\r\n"), "f");
    EXPECT_EQ(decoded(L"Zm8= "), "fo");
}
TEST(Base64Reader, PaddingInTheMiddleCountsAsZero) {
    EXPECT_EQ(decoded(L"Zg==Zm9v"), std::string("f\0\0foo", 6));
}
TEST(Base64Reader, CutsWhatThePaddingStandsFor) {
    EXPECT_EQ(decoded(L"Zm9vZ==="), std::string("food\0\0", 6)); // three: nothing is cut
    EXPECT_EQ(decoded(L"Zm9v===="), "foo");
    EXPECT_EQ(decoded(L"Zm9vZg======"), "foof"); // two, and a whole group
}
TEST(Base64Reader, PaddingOfADroppedGroupIsCutAllTheSame) {
    EXPECT_EQ(decoded(L"Zm9v="), "fo");
    EXPECT_EQ(decoded(L"Zm9v=="), "f");
    EXPECT_EQ(decoded(L"=="), "");
    EXPECT_EQ(decoded(L"A=="), "");
}

} // namespace
} // namespace quorvane
