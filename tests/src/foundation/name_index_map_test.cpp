// Compound and phase names are found however they are typed.
#include "src/foundation/name_index_map.h"
#include "tests/src/com/slot_of.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <type_traits>

namespace quorvane {
namespace {

using Position = std::optional<std::int32_t>;

NameIndexMap naturalGas() {
    NameIndexMap map;
    map.insert(L"Nitrogen", 0);
    map.insert(L"Carbon dioxide", 1);
    map.insert(L"n-Butane", 2);
    return map;
}

// A name of `length` characters, in capitals or not, that differs from others at its end only.
std::wstring longName(std::size_t length, wchar_t body, wchar_t last) {
    std::wstring name(length, body);
    name.back() = last;
    return name;
}

TEST(NameIndexMap, FindsAnEntryInAnyLetterCase) {
    const NameIndexMap map = naturalGas();
    EXPECT_EQ(map.find(L"Nitrogen"), Position{0});
    EXPECT_EQ(map.find(L"CARBON DIOXIDE"), Position{1});
    EXPECT_EQ(map.find(L"N-bUTANE"), Position{2});
}

TEST(NameIndexMap, FindsNothingForOtherNames) {
    const NameIndexMap map = naturalGas();
    for (const wchar_t* name : {L"", L"Nitroge", L"Nitrogens", L" Nitrogen", L"Carbondioxide"}) {
        EXPECT_EQ(map.find(name), std::nullopt);
    }
    EXPECT_EQ(NameIndexMap{}.find(L"Nitrogen"), std::nullopt);
}

TEST(NameIndexMap, FindsNamesOfEveryLength) {
    for (std::size_t length = 1; length <= 300; ++length) {
        NameIndexMap map;
        EXPECT_TRUE(map.insert(longName(length, L'm', L'A').c_str(), 7));
        EXPECT_EQ(map.find(longName(length, L'M', L'a').c_str()), Position{7}) << length;
        EXPECT_EQ(map.find(longName(length, L'M', L'b').c_str()), std::nullopt) << length;
        EXPECT_EQ(map.find(longName(length + 1, L'm', L'm').c_str()), std::nullopt) << length;
    }
}

TEST(NameIndexMap, FindsANameOf200CharactersLikeAShortOne) {
    NameIndexMap map = naturalGas();
    map.insert(longName(200, L'E', L'n').c_str(), 3);
    map.insert(longName(200, L'E', L'm').c_str(), 4);
    EXPECT_EQ(map.find(longName(200, L'e', L'N').c_str()), Position{3});
    EXPECT_EQ(map.find(longName(200, L'e', L'M').c_str()), Position{4});
    EXPECT_EQ(map.find(longName(199, L'e', L'N').c_str()), std::nullopt);
}

TEST(NameIndexMap, FindsAnEmptyNameThatWasEntered) {
    NameIndexMap map;
    EXPECT_TRUE(map.insert(L"", 5));
    EXPECT_EQ(map.find(L""), Position{5});
}

TEST(NameIndexMap, InsertKeepsTheFirstOfTwoNamesThatDifferInCaseOnly) {
    NameIndexMap map = naturalGas();
    EXPECT_FALSE(map.insert(L"NITROGEN", 9));
    EXPECT_EQ(map.find(L"nitrogen"), Position{0});
}

TEST(NameIndexMap, AssignMovesANameThatIsThereAndEntersOneThatIsNot) {
    NameIndexMap map = naturalGas();
    map.assign(L"NITROGEN", 9);
    map.assign(L"Water", 10);
    EXPECT_EQ(map.find(L"nitrogen"), Position{9});
    EXPECT_EQ(map.find(L"water"), Position{10});
}

TEST(NameIndexMap, OwnsTheNamesThatItHolds) {
    NameIndexMap map;
    {
        std::wstring name = L"Methane";
        map.insert(name.c_str(), 1);
        name = L"xxxxxxx";
    }
    EXPECT_EQ(map.find(L"methane"), Position{1});
}

TEST(NameIndexMap, IsEmptyAgainWhenCleared) {
    NameIndexMap map;
    EXPECT_TRUE(map.empty());
    map = naturalGas();
    EXPECT_FALSE(map.empty());
    map.clear();
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find(L"Nitrogen"), std::nullopt);
}

TEST(NameIndexMap, HoldsThousandsOfNames) {
    NameIndexMap map;
    for (std::int32_t i = 0; i < 5000; ++i) {
        ASSERT_TRUE(map.insert((L"Compound " + std::to_wstring(i)).c_str(), i));
    }
    for (std::int32_t i = 0; i < 5000; ++i) {
        ASSERT_EQ(map.find((L"COMPOUND " + std::to_wstring(i)).c_str()), Position{i});
    }
}

// Source of the values: the test vectors published with the algorithm by its authors (Fowler, Noll, Vo).
TEST(Fnv1, HashesThePublishedTextsToThePublishedValues) {
    EXPECT_EQ(fnv1(L""), 0x811C9DC5U);
    EXPECT_EQ(fnv1(L"a"), 0x050C5D7EU);
    EXPECT_EQ(fnv1(L"foobar"), 0x31F0B262U);
}

TEST(Fnv1, TakesACharacterOutsideAsciiAsOneUnit) {
    EXPECT_EQ(fnv1(L"\u00e9"), 0x811C9DC5U * 0x01000193U ^ 0xE9U);
}

TEST(StringMapKey, AnEntryCopiesTheTextALookUpRefersToIt) {
    std::wstring text = L"water";
    const StringMapKeyPtr borrowed{text.c_str()};
    const StringMapKeyString owned{borrowed};
    EXPECT_EQ(borrowed.text(), text.c_str());
    text[0] = L'W';
    EXPECT_EQ(std::wstring{owned.text()}, L"water");
}

#ifndef _MSC_VER
TEST(StringMapKey, HasItsTextBeforeItsDestructor) {
    EXPECT_EQ(slotOf(&StringMapKey::text), 0U);
    EXPECT_TRUE(std::has_virtual_destructor_v<StringMapKey>);
    EXPECT_TRUE(std::is_abstract_v<StringMapKey>);
}
#endif

} // namespace
} // namespace quorvane
