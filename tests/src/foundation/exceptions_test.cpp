// The two carriers of a text for a person.
#include "src/foundation/exceptions.h"
#include "tests/src/com/slot_of.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

namespace quorvane {
namespace {

TEST(WStrException, OwnsTheTextThatItWasMadeFrom) {
    std::wstring text = L"Call to \"";
    text += L"Value";
    const WStrException failure{text};
    text = L"something else entirely, long enough to live in another place";
    EXPECT_EQ(std::wstring{failure.message()}, L"Call to \"Value");
    EXPECT_EQ(failure.length(), 14U);
}

TEST(WStrException, TakesOverAComposedText) {
    std::wstring text(300, L'x');
    const wchar_t* const characters = text.data();
    const WStrException failure{std::move(text)};
    EXPECT_EQ(failure.message(), characters);
    EXPECT_EQ(failure.length(), 300U);
}

TEST(WStrException, KeepsItsTextWhenCopied) {
    const WStrException failure{std::wstring(300, L'x')};
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is tested
    const WStrException copy{failure};
    EXPECT_NE(copy.message(), failure.message());
    EXPECT_EQ(std::wstring{copy.message()}, std::wstring(300, L'x'));
}

TEST(WStrException, ShowsWhatFollowsANullCharacter) {
    const WStrException failure{std::wstring{L"Invalid basis \"m\0\"", 18}};
    EXPECT_EQ(std::wstring{failure.message()}, L"Invalid basis \"m\xFFFD\"");
    EXPECT_EQ(failure.length(), 18U);
}

TEST(CWStrException, RefersToItsLiteral) {
    static constexpr wchar_t text[] = L"Invalid package name";
    const CWStrException failure{text};
    EXPECT_EQ(failure.message(), text);
    EXPECT_EQ(failure.length(), 20U);
}

TEST(CWStrException, OfAnEmptyTextOrOfNoneHasNoCharacters) {
    EXPECT_EQ(CWStrException{L""}.length(), 0U);
    EXPECT_EQ(CWStrException{nullptr}.length(), 0U);
    EXPECT_EQ(CWStrException{nullptr}.message(), nullptr);
}

TEST(CWStrException, IsNoMoreThanAPointerToItsText) {
    EXPECT_EQ(sizeof(CWStrException), 2 * sizeof(void*));
    EXPECT_TRUE((std::is_nothrow_constructible_v<CWStrException, const wchar_t*>));
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<CWStrException>);
}

TEST(WException, CatchesBothKinds) {
    const auto caught = [](auto failure) -> std::wstring {
        try {
            throw failure; // NOLINT(cert-err60-cpp): what is short of memory here ends the test
        } catch (const WException& any) {
            return any.message() + std::to_wstring(any.length());
        }
    };
    EXPECT_EQ(caught(WStrException{L"abc"}), L"abc3");
    EXPECT_EQ(caught(CWStrException{L"four"}), L"four4");
}

#ifndef _MSC_VER
TEST(WException, HasItsMessageBeforeItsLength) {
    EXPECT_EQ(slotOf(&WException::message), 0U);
    EXPECT_EQ(slotOf(&WException::length), 1U);
    EXPECT_FALSE(std::has_virtual_destructor_v<WException>);
}
#endif

} // namespace
} // namespace quorvane
