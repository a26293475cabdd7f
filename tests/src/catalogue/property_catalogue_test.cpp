// Every entry of the catalogue, one by one, against the list of what users' workbooks know.
#include "tests/src/catalogue/expected_properties.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace quorvane {
namespace {

std::optional<std::wstring> textOf(const wchar_t* text) {
    return text == nullptr ? std::nullopt : std::optional<std::wstring>{text};
}

std::string printable(std::wstring_view text) {
    std::string narrow;
    for (const wchar_t c : text) {
        narrow.push_back(static_cast<char>(c));
    }
    return narrow;
}

std::wstring inCapitals(std::wstring_view text) {
    std::wstring capitals;
    for (const wchar_t c : text) {
        capitals.push_back(c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c);
    }
    return capitals;
}

TEST(Catalogue, GivesEveryPropertyItsUnitsItsKindAndItsShape) {
    for (const PropertyInfo& expected : expectedProperties) {
        SCOPED_TRACE(printable(expected.propName));
        const PropertyInfo* const entry = catalogue().find(expected.propName);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(textOf(entry->propName), textOf(expected.propName));
        EXPECT_EQ(textOf(entry->unitMole), textOf(expected.unitMole));
        EXPECT_EQ(textOf(entry->unitMass), textOf(expected.unitMass));
        EXPECT_EQ(entry->derivType, expected.derivType);
        EXPECT_EQ(entry->propType, expected.propType);
        EXPECT_EQ(entry->moleConversion, expected.moleConversion);
        EXPECT_EQ(entry->rank, expected.rank);
        EXPECT_EQ(entry->extensive, expected.extensive);
        EXPECT_EQ(entry->overall, expected.overall);
    }
}

TEST(Catalogue, FindsEveryPropertyInCapitals) {
    for (const PropertyInfo& expected : expectedProperties) {
        SCOPED_TRACE(printable(expected.propName));
        EXPECT_EQ(&lookupProperty(inCapitals(expected.propName).c_str()), &lookupProperty(expected.propName));
    }
}

TEST(Catalogue, HoldsTheseNamesAndNoOthers) {
    EXPECT_EQ(std::size(expectedProperties), 368U);
    EXPECT_EQ(catalogue().size(), 368U);
}

TEST(Catalogue, HasNoTwoNamesThatDifferInCaseOnly) {
    std::set<std::wstring> names;
    for (const PropertyInfo& expected : expectedProperties) {
        EXPECT_TRUE(names.insert(inCapitals(expected.propName)).second) << printable(expected.propName);
    }
}

} // namespace
} // namespace quorvane
