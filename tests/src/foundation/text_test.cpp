// Texts compared as users type them.
#include "src/foundation/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace quorvane {
namespace {

TEST(FoldAscii, MakesAsciiCapitalsSmallAndLeavesTheRest) {
    EXPECT_EQ(foldAscii(L"AZaz"), L"azaz");
    EXPECT_EQ(foldAscii(L"@[`{09 -"), L"@[`{09 -");
    EXPECT_EQ(foldAscii(L"\u00c4\u0130\u212a"), L"\u00c4\u0130\u212a");
    EXPECT_EQ(foldAscii(L""), L"");
}

TEST(Keyword, MatchesInAnyLetterCase) {
    EXPECT_TRUE(matchesKeyword(L"mass", L"mass"));
    EXPECT_TRUE(matchesKeyword(L"MaSS", L"mass"));
    EXPECT_TRUE(matchesKeyword(L"", L""));
}

TEST(Keyword, MatchesAsAWholeOnly) {
    for (const wchar_t* text : {L"", L"mas", L"masss", L" mass", L"mass ", L"mole"}) {
        EXPECT_FALSE(matchesKeyword(text, L"mass"));
    }
}

TEST(Keyword, LettersOutsideAsciiAreNotFolded) {
    EXPECT_FALSE(matchesKeyword(L"ma\u017fs", L"mass")); // long s
    EXPECT_FALSE(matchesKeyword(L"\u00c4", L"\u00e4"));
    EXPECT_TRUE(matchesKeyword(L"\u00e4", L"\u00e4"));
}

TEST(EqualsFoldingAscii, FoldsBothSides) {
    EXPECT_TRUE(equalsFoldingAscii(L"pH", L"Ph"));
    EXPECT_TRUE(equalsFoldingAscii(L"", L""));
    EXPECT_FALSE(equalsFoldingAscii(L"pH", L"pOH"));
    EXPECT_FALSE(equalsFoldingAscii(L"\u00c4", L"\u00e4"));
}

TEST(EqualsNoCase, TakesNoTextForAnEmptyOne) {
    EXPECT_TRUE(equalsNoCase(nullptr, L""));
    EXPECT_TRUE(equalsNoCase(L"", nullptr));
    EXPECT_TRUE(equalsNoCase(nullptr, nullptr));
    EXPECT_TRUE(equalsNoCase(L"", L""));
}

TEST(EqualsNoCase, TellsNoTextFromAnyOther) {
    EXPECT_FALSE(equalsNoCase(nullptr, L"a"));
    EXPECT_FALSE(equalsNoCase(L"a", nullptr));
    EXPECT_FALSE(equalsNoCase(L"", L" "));
}

TEST(EqualsNoCase, ComparesWholeTextsInAnyLetterCase) {
    EXPECT_TRUE(equalsNoCase(L"Liquid", L"LIQUID"));
    EXPECT_FALSE(equalsNoCase(L"Liquid", L"Liqui"));
    EXPECT_FALSE(equalsNoCase(L"Liquid", L"Liquid2"));
    EXPECT_FALSE(equalsNoCase(L"Liquid", L"Vapor"));
}

TEST(PrecedesInList, SortsNamesWhateverTheirCase) {
    std::vector<std::wstring> names = {L"beta", L"Alpha", L"gamma", L"Delta"};
    std::sort(names.begin(), names.end(), [](const std::wstring& a, const std::wstring& b) {
        return precedesInList(a.c_str(), b.c_str());
    });
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Alpha", L"beta", L"Delta", L"gamma"}));
}

TEST(PrecedesInList, PutsNoTextFirstAndEqualNamesNowhere) {
    EXPECT_TRUE(precedesInList(nullptr, L"a"));
    EXPECT_FALSE(precedesInList(L"a", nullptr));
    EXPECT_FALSE(precedesInList(nullptr, nullptr));
    EXPECT_FALSE(precedesInList(nullptr, L""));
    EXPECT_FALSE(precedesInList(L"Gas", L"GAS"));
    EXPECT_FALSE(precedesInList(L"GAS", L"Gas"));
}

TEST(Utf8ToWide, WidensAscii) {
    EXPECT_EQ(utf8ToWide("bad allocation"), L"bad allocation");
    EXPECT_EQ(utf8ToWide(""), L"");
    EXPECT_EQ(utf8ToWide(nullptr), L"");
}

TEST(Utf8ToWide, WidensTextsOfEveryLength) {
    for (std::size_t length = 0; length <= 300; ++length) {
        std::string narrow(length, 'x');
        std::wstring wide(length, L'x');
        if (length > 0) {
            narrow.back() = '.';
            wide.back() = L'.';
        }
        EXPECT_EQ(utf8ToWide(narrow.c_str()), wide) << length;
    }
}

TEST(Joined, PutsTextsInARow) {
    EXPECT_EQ(joined(L"Property \"", L"pH", L"\" is known"), L"Property \"pH\" is known");
    EXPECT_EQ(joined(L"a", L"b"), L"ab");
    EXPECT_EQ(joined(L"", L"", L""), L"");
}

} // namespace
} // namespace quorvane
