#include "src/foundation/exceptions.h"
#include "src/workbook/saved_state/persisted_package.h"

#include <gtest/gtest.h>
#include <vector>

namespace quorvane {
namespace {

using Row = std::vector<std::wstring>;

PersistedPackage withState(std::wstring text) { return {L"P", L"M", L"K", L"G", L"N", std::move(text)}; }

PersistedPackage read(const Row& row) {
    return readPersistedPackage(row.size(),
                                [&](std::size_t column) { return std::wstring_view{row.at(column)}; });
}
std::wstring stateOf(const Row& row) { return read(row).stateText; }

TEST(PersistedPackage, HasItsFieldsInSixColumns) {
    const PersistedPackage package = withState(L"S");
    EXPECT_EQ(columnCount(package), 6U);
    const wchar_t* cells[] = {L"P", L"M", L"K", L"G", L"N", L"S", L"", L""};
    for (std::size_t column = 0; column < std::size(cells); ++column) {
        EXPECT_EQ(cellOf(package, column), cells[column]);
    }
}
TEST(PersistedPackage, KeepsAStateOf31999CharactersWhole) {
    const PersistedPackage package = withState(std::wstring(31999, L'x'));
    EXPECT_EQ(columnCount(package), 6U);
    EXPECT_EQ(cellOf(package, 5).size(), 31999U);
}
TEST(PersistedPackage, CutsAStateOf32000CharactersAndLeavesAColumnEmpty) {
    const PersistedPackage package = withState(std::wstring(32000, L'x'));
    EXPECT_EQ(columnCount(package), 8U);
    EXPECT_EQ(cellOf(package, 5), L"6");
    EXPECT_EQ(cellOf(package, 6).size(), 32000U);
    EXPECT_EQ(cellOf(package, 7), L"");
}
TEST(PersistedPackage, CutsALongStateIntoPieces) {
    const std::wstring text =
        std::wstring(32000, L'a') + std::wstring(32000, L'b') + std::wstring(6000, L'c');
    const PersistedPackage package = withState(text);
    EXPECT_EQ(columnCount(package), 9U);
    EXPECT_EQ(cellOf(package, 6), std::wstring(32000, L'a'));
    EXPECT_EQ(cellOf(package, 7), std::wstring(32000, L'b'));
    EXPECT_EQ(cellOf(package, 8), std::wstring(6000, L'c'));
    EXPECT_EQ(cellOf(package, 9), L"");
}

TEST(PersistedRow, IsReadBack) {
    const PersistedPackage package = read({L"P", L"M", L"K", L"G", L"N", L"S"});
    for (std::size_t column = 0; column < 6; ++column) {
        EXPECT_EQ(cellOf(package, column), cellOf(withState(L"S"), column));
    }
}
TEST(PersistedRow, MayEndEarly) {
    EXPECT_EQ(read({}).ppName, L"");
    EXPECT_EQ(read({L"P"}).ppName, L"P");
    EXPECT_EQ(read({L"P", L"M", L"K"}).kind, L"K");
    EXPECT_EQ(read({L"P", L"M", L"K", L"G", L"N"}).stateText, L"");
}
TEST(PersistedRow, JoinsThePiecesUpToTheFirstEmptyCell) {
    EXPECT_EQ(stateOf({L"", L"", L"", L"", L"", L"6", L"a", L"b", L"c"}), L"abc");
    EXPECT_EQ(stateOf({L"", L"", L"", L"", L"", L"6", L"a", L"", L"c"}), L"a");
    EXPECT_EQ(stateOf({L"", L"", L"", L"", L"", L"6", L"", L"b"}), L"");
}
TEST(PersistedRow, TakesAnyColumnForTheFirstPiece) {
    EXPECT_EQ(stateOf({L"", L"", L"", L"", L"", L"007", L"a", L"b"}), L"b");
    EXPECT_EQ(stateOf({L"p", L"m", L"", L"", L"", L"0"}), L"pm");
    EXPECT_EQ(stateOf({L"", L"", L"", L"", L"", L"5", L"a"}), L"5a");
}
TEST(PersistedRow, HasNoStateWhenTheFirstPieceLiesBeyondTheTable) {
    for (const wchar_t* number : {L"6", L"7", L"4294967296", L"18446744073709551616",
                                  L"99999999999999999999999999999999999999999999"}) {
        EXPECT_EQ(stateOf({L"p", L"m", L"k", L"g", L"n", number}), L"");
    }
}
TEST(PersistedRow, TakesEverythingElseForTheStateItself) {
    for (const wchar_t* text : {L"-6", L"6 ", L" 6", L"+6", L"6.", L"0x6", L"\uff16", L"#6"}) {
        EXPECT_EQ(stateOf({L"", L"", L"", L"", L"", text, L"a"}), text);
    }
}

TEST(PackageKind, IsATextInTheTable) {
    EXPECT_STREQ(kindText(0), L"StandAlonePackage11");
    EXPECT_STREQ(kindText(1), L"PropertyPackageManager11");
    EXPECT_EQ(kindOf(L"StandAlonePackage11"), 0);
    EXPECT_EQ(kindOf(L"PropertyPackageManager11"), 1);
}
TEST(PackageKind, IsReadToTheLetter) {
    for (const wchar_t* text :
         {L"", L"StandAlonePackage11 ", L"standalonepackage11", L"StandAlonePackage1", L"0"}) {
        EXPECT_EQ(kindOf(text), std::nullopt);
    }
    EXPECT_EQ(kindOf(std::wstring_view{L"StandAlonePackage11\0", 20}), std::nullopt);
}
TEST(PackageKind, ThatIsUnknownCannotBeWritten) {
    for (const std::int32_t kind : {-1, 2}) {
        try {
            kindText(kind);
            FAIL() << "accepted";
        } catch (const CWStrException& failure) {
            EXPECT_STREQ(failure.message(), L"Internal error: unsupported manager type");
        }
    }
}

} // namespace
} // namespace quorvane
