// The notation of the conformance table.
#include "tests/conformance/table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace conformance {

namespace {

using ::testing::ElementsAre;

constexpr std::string_view rowOf = "[CapeOpenPhases]\n";

Row onlyRow(const std::string& line) {
    Table table = readTable(std::string{rowOf} + line);
    EXPECT_THAT(table.problems, ElementsAre());
    EXPECT_EQ(table.rows.size(), 1U);
    return table.rows.empty() ? Row{} : std::move(table.rows.front());
}

std::string shownBy(const std::string& cells) {
    return written(onlyRow("some | =CapeOpenPhases(\"P\") | A1 | " + cells).shown);
}

TEST(ConformanceTableReader, ReadsWhatIsShownWhereAndHow) {
    const Row row = onlyRow("all, over a column | =CapeOpenPhases(\"P\",2) | A1:A3, no workbook | Vapor");
    EXPECT_EQ(row.name, "PhasesAllOverAColumn");
    EXPECT_EQ(row.line, 2U);
    EXPECT_EQ(row.text, "=CapeOpenPhases(\"P\",2)");
    EXPECT_EQ(row.formula.function, "CapeOpenPhases");
    EXPECT_EQ(row.range, (sheet::formula::Block{{0, 0}, 3, 1}));
    EXPECT_EQ(row.workbook, "no workbook");
    EXPECT_FALSE(row.isMacro);
    EXPECT_EQ(written(row.shown), "\"Vapor\"");
}

TEST(ConformanceTableReader, KnowsCallsFromMacros) {
    EXPECT_TRUE(onlyRow("some | =CapeOpenPhases(\"P\") | macro | Vapor").isMacro);
}

TEST(ConformanceTableReader, ReadsValues) {
    EXPECT_EQ(shownBy("1.5"), "1.5");
    EXPECT_EQ(shownBy("TRUE"), "TRUE");
    EXPECT_EQ(shownBy("#N/A"), "#N/A");
    EXPECT_EQ(shownBy("J/mol"), "\"J/mol\"");
    EXPECT_EQ(shownBy("\"\""), "\"\"");
    EXPECT_EQ(shownBy("\"300\""), "\"300\"");
    EXPECT_EQ(shownBy("{1,\"a,b\";TRUE,#NUM!}"), "{1,\"a,b\";TRUE,#NUM!}");
}

TEST(ConformanceTableReader, ReadsMessagesInFullAndByName) {
    EXPECT_EQ(shownBy("! Invalid basis \"kg\""), "! Invalid basis \"kg\"");
    const Table table = readTable("[messages]\nlong | A long text\n[CapeOpenPhases]\n"
                                  "some | =CapeOpenPhases(\"P\") | A1 | ! @long\n");
    EXPECT_EQ(written(table.rows.at(0).shown), "! A long text");
}

TEST(ConformanceTableReader, KeepsArrayConstants) {
    const Table table = readTable("[CapeOpenPhases]\nsome | =CapeOpenPhases({1;2},\"{3}\") | A1 | Vapor\n");
    const auto& arguments = table.rows.at(0).formula.arguments;
    const Matrix* const array = table.arrayAt(std::get<sheet::formula::Block>(arguments.at(0)));
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(written({false, {}, *array}), "{1;2}");
    EXPECT_EQ(std::get<std::string>(arguments.at(1)), "{3}");
    EXPECT_EQ(table.arrayAt({}), nullptr);
}

TEST(ConformanceTableReader, ReadsInputsPackagesCommentsAndLongLines) {
    const Table table = readTable("# A comment\n[inputs]\nB2 | \"300\" | a text\r\n[packages]\n"
                                  "P\n    | one;\n      two\nFails<code> | x=0x<code>;y=0x<code>\n");
    EXPECT_THAT(table.problems, ElementsAre());
    ASSERT_EQ(table.inputs.size(), 1U);
    EXPECT_EQ(table.inputs[0].cell, (sheet::formula::Address{1, 1}));
    EXPECT_EQ(table.inputs[0].value, Value{std::string{"300"}});
    std::string made;
    EXPECT_EQ(*table.script("P", made), "one; two");
    EXPECT_EQ(*table.script("Fails80040501", made), "x=0x80040501;y=0x80040501");
    EXPECT_EQ(table.script("Nowhere", made), nullptr);
}

TEST(ConformanceTableReader, TellsTheLinesThatItCannotUnderstand) {
    const Table table = readTable("[inputs]\nA0 | 1 | a cell\n[messages]\na | b\na | c\n[CapeOpenPhases]\n"
                                  "some | =CapeOpenPhases() | A1\n"
                                  "some | =A1 | A1 | 1\n"
                                  "some | =CapeOpenPhases() | here | 1\n"
                                  "some | =CapeOpenPhases({1) | A1 | 1\n"
                                  "some | =CapeOpenPhases() | A1 | {1,2;3}\n"
                                  "some | =CapeOpenPhases() | A1 | ! @unknown\n");
    EXPECT_THAT(table.problems,
                ElementsAre("line 2: a cell, its value and its meaning are needed",
                            "line 5: the name is there twice",
                            "line 7: what is shown, formula, range and cells are needed",
                            "line 8: the formula calls no worksheet function",
                            "line 9: the range cannot be understood", "line 10: an array is not closed",
                            "line 11: the rows of an array have different lengths",
                            "line 12: there is no message of that name"));
    EXPECT_TRUE(table.rows.empty());
}

TEST(ConformanceTableReader, TellsResultsApart) {
    const Shown number{false, {}, Matrix::of(1000.0)};
    EXPECT_TRUE(isSame(number, {false, {}, Matrix::of(1000.00000001)}));
    EXPECT_FALSE(isSame(number, {false, {}, Matrix::of(1000.000001)}));
    EXPECT_FALSE(isSame(number, {false, {}, Matrix::of(std::string{"1000"})}));
    EXPECT_FALSE(isSame({false, {}, {1, 2, {1.0, 2.0}}}, {false, {}, {2, 1, {1.0, 2.0}}}));
    EXPECT_FALSE(isSame({true, "1000", {}}, {false, {}, Matrix::of(std::string{"1000"})}));
    EXPECT_TRUE(isSame({true, "No results", {}}, {true, "No results", {}}));
}

TEST(ConformanceTableReader, MatchesMessagesWithVaryingParts) {
    EXPECT_TRUE(matches("Invalid basis \"kg\"", "Invalid basis \"<text>\""));
    EXPECT_TRUE(matches("Invalid basis \"\"", "Invalid basis \"<text>\""));
    EXPECT_FALSE(matches("Invalid basis \"kg\".", "Invalid basis \"<text>\""));
    EXPECT_FALSE(matches("Invalid base \"kg\"", "Invalid basis \"<text>\""));
    EXPECT_TRUE(matches("a b c d", "a <x> c <y>"));
    EXPECT_FALSE(matches("a b d", "a <x> c <y>"));
}

} // namespace

} // namespace conformance
