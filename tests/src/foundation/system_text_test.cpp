// Texts that come from the system: its own error texts, its conversion of UTF-8, its locale's comparison.
#include "src/foundation/error_texts.h"
#include "src/foundation/name_index_map.h"
#include "src/foundation/text.h"

#include <gtest/gtest.h>

#include "com/platform.h"

#include <string>

namespace quorvane {
namespace {

// The system's text as it gives it, line ending and all; the words differ between systems.
std::wstring rawSystemText(HRESULT code) {
    wchar_t buffer[1024];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), LOCALE_USER_DEFAULT, buffer, 1024, nullptr);
    return {buffer, length};
}

constexpr HRESULT hresult(unsigned long code) { return static_cast<HRESULT>(code); }

TEST(SystemErrorText, IsTheSystemsOwnWithoutItsLineEnding) {
    for (const HRESULT code : {E_FAIL, E_OUTOFMEMORY, hresult(2), hresult(5)}) {
        const std::wstring raw = rawSystemText(code);
        ASSERT_TRUE(raw.ends_with(L"\r\n")) << std::hex << code;
        EXPECT_EQ(systemErrorText(code), raw.substr(0, raw.size() - 2));
    }
}

TEST(SystemErrorText, LeavesThePlacesForNamesInTheTextsThatHaveThem) {
    std::size_t withPlaces = 0;
    for (unsigned long code = 1; code < 16000; ++code) {
        const std::wstring raw = rawSystemText(hresult(code));
        if (raw.find(L"%1") != std::wstring::npos) {
            ++withPlaces;
            EXPECT_EQ(systemErrorText(hresult(code)), withoutLineEnding(raw)) << code;
        }
    }
    EXPECT_GT(withPlaces, 0U);
}

TEST(WithoutLineEnding, LeavesOutOneLineEndingOnly) {
    EXPECT_EQ(withoutLineEnding(L"Access denied.\r\n"), L"Access denied.");
    EXPECT_EQ(withoutLineEnding(L"Access denied.\n"), L"Access denied.");
    EXPECT_EQ(withoutLineEnding(L"Access denied.\r\n\r\n"), L"Access denied.\r\n");
    EXPECT_EQ(withoutLineEnding(L"Access denied.\n\n"), L"Access denied.\n");
    EXPECT_EQ(withoutLineEnding(L"Access denied.\r"), L"Access denied.\r");
    EXPECT_EQ(withoutLineEnding(L"Access\r\ndenied. "), L"Access\r\ndenied. ");
}

TEST(WithoutLineEnding, OfNoTextIsAnUnknownError) {
    EXPECT_EQ(withoutLineEnding(L""), L"<unknown error>");
    EXPECT_EQ(withoutLineEnding(L"\r\n"), L"<unknown error>");
    EXPECT_EQ(withoutLineEnding(L"\n"), L"<unknown error>");
    EXPECT_EQ(withoutLineEnding(L" "), L" ");
}

TEST(SystemErrorText, OfACodeWithoutATextIsTheCode) {
    for (const HRESULT code : {hresult(0xA0001234), hresult(0xABCDEF09), hresult(0x00ABCDEF)}) {
        ASSERT_EQ(rawSystemText(code), L"");
    }
    EXPECT_EQ(systemErrorText(hresult(0xA0001234)), L"error code 0xA0001234");
    EXPECT_EQ(systemErrorText(hresult(0xABCDEF09)), L"error code 0xABCDEF09");
    EXPECT_EQ(systemErrorText(hresult(0x00ABCDEF)), L"error code 0x00ABCDEF");
}

TEST(Utf8ToWide, WidensTextsThatJustFitAndThatJustDoNot) {
    for (const std::size_t length : {126U, 127U, 128U, 129U, 5000U}) {
        const std::string narrow = std::string(length - 2, 'x') + "\xC3\xA9!";
        EXPECT_EQ(utf8ToWide(narrow.c_str()), std::wstring(length - 2, L'x') + L"\u00e9!") << length;
    }
}

TEST(Utf8ToWide, WidensEveryAlphabet) {
    EXPECT_EQ(utf8ToWide("Gem\xC3\xA4\xC3\x9F \xCE\xB1-Pinen"), L"Gem\u00e4\u00df \u03b1-Pinen");
    EXPECT_EQ(utf8ToWide("\xE6\xB0\xB4"), L"\u6c34");
    EXPECT_EQ(utf8ToWide("\xF0\x9F\x94\xA5"), L"\xD83D\xDD25");
}

TEST(Utf8ToWide, CountsCharactersAndNotBytes) {
    std::string narrow;
    for (int i = 0; i < 127; ++i) {
        narrow += "\xE6\xB0\xB4";
    }
    EXPECT_EQ(utf8ToWide(narrow.c_str()), std::wstring(127, L'\u6c34'));
    narrow += "\xE6\xB0\xB4";
    EXPECT_EQ(utf8ToWide(narrow.c_str()), std::wstring(128, L'\u6c34'));
}

TEST(EqualsNoCase, ComparesLettersOutsideAsciiInAnyCase) {
    EXPECT_TRUE(equalsNoCase(L"\u00c4thanol", L"\u00e4THANOL"));
    EXPECT_FALSE(equalsNoCase(L"\u00c4thanol", L"Ethanol"));
}

TEST(PrecedesInList, PutsLettersOutsideAsciiWhereTheUserLooksForThem) {
    EXPECT_TRUE(precedesInList(L"\u00c4thanol", L"benzene"));
    EXPECT_TRUE(precedesInList(L"\u00e4thanol", L"Benzene"));
    EXPECT_FALSE(precedesInList(L"\u00c4thanol", L"\u00e4THANOL"));
    EXPECT_FALSE(precedesInList(L"\u00e4THANOL", L"\u00c4thanol"));
}

TEST(NameIndexMap, FindsANameOutsideAsciiAsItIsSpelt) {
    NameIndexMap map;
    map.insert(L"\u03b1-Pinene", 1);
    EXPECT_EQ(map.find(L"\u03b1-PINENE"), std::optional<std::int32_t>{1});
    EXPECT_EQ(map.find(L"\u03b2-Pinene"), std::nullopt);
}

} // namespace
} // namespace quorvane
