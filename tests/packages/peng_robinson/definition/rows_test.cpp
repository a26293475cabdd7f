#include "packages/peng_robinson/definition/rows.h"

#include <gtest/gtest.h>

namespace peng_robinson::test {
namespace {

/// Rows as "line: cell|cell".
std::vector<std::string> rowsOf(std::string_view text) {
    std::vector<std::string> result;
    for (const Row& row : readRows(text)) {
        std::string shown = std::to_string(row.line) + ":";
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            shown += (i == 0 ? " " : "|") + row.cells[i];
        }
        result.push_back(std::move(shown));
    }
    return result;
}

std::string mistake(std::string_view text) {
    try {
        readRows(text);
    } catch (const DefinitionError& error) {
        return std::to_string(error.line()) + ": " + error.what();
    }
    return {};
}

using Rows = std::vector<std::string>;

TEST(Rows, CellsStandBetweenCommas) { EXPECT_EQ(rowsOf("a, b ,c\n1,2,3"), (Rows{"1: a|b|c", "2: 1|2|3"})); }

TEST(Rows, EmptyLinesAndCommentsSayNothing) {
    EXPECT_EQ(rowsOf("\n# one; two\na,b\n   \n  # more\n,,\nc"), (Rows{"3: a|b", "7: c"}));
}

TEST(Rows, LinesEndAsOnAnySystem) {
    EXPECT_EQ(rowsOf("a,b\n\nc\n"), (Rows{"1: a|b", "3: c"}));
    EXPECT_EQ(rowsOf("a,b\r\n\r\nc\r\n"), (Rows{"1: a|b", "3: c"}));
    EXPECT_EQ(rowsOf("a,b\r\rc\r"), (Rows{"1: a|b", "3: c"}));
    EXPECT_EQ(rowsOf("a,b\r"), (Rows{"1: a|b"}));
}

TEST(Rows, ByteOrderMarkIsSkipped) { EXPECT_EQ(rowsOf("\xEF\xBB\xBF[a]\n"), (Rows{"1: [a]"})); }

TEST(Rows, FirstSeparatorOfTheFileHolds) {
    EXPECT_EQ(rowsOf("x\na;b\nc,d;e"), (Rows{"1: x", "2: a|b", "3: c,d|e"}));
    EXPECT_EQ(rowsOf("a\tb c\n\td"), (Rows{"1: a|b c", "2: |d"}));
    EXPECT_EQ(rowsOf("\"p;q\",r\ns;t,u"), (Rows{"1: p;q|r", "2: s;t|u"}));
}

TEST(Rows, QuotesHoldSeparatorsAndQuotes) {
    EXPECT_EQ(rowsOf("\"2,2-dimethylpropane\" , \"say \"\"x\"\"\",\"\",b"),
              (Rows{"1: 2,2-dimethylpropane|say \"x\"||b"}));
}

TEST(Rows, EmptyCellsAtTheEndAreDropped) { EXPECT_EQ(rowsOf("[a],,,\n1,,3,,"), (Rows{"1: [a]", "2: 1||3"})); }

TEST(Rows, TextsOfAllLanguagesAreRead) {
    EXPECT_EQ(rowsOf("\xC3\xA4thane,\xE4\xB8\x99\xE7\x83\xB7"),
              (Rows{"1: \xC3\xA4thane|\xE4\xB8\x99\xE7\x83\xB7"}));
}

TEST(Rows, EmptyTextHasNoRows) {
    EXPECT_EQ(rowsOf(""), Rows{});
    EXPECT_EQ(rowsOf("\xEF\xBB\xBF"), Rows{});
}

TEST(Rows, OpenQuoteIsAMistake) {
    EXPECT_EQ(mistake("a\nb,\"c"), "2: the quote that opens a cell is never closed in this line");
    EXPECT_EQ(mistake("a\rb,\"c\r"), "2: the quote that opens a cell is never closed in this line");
}

TEST(Rows, TextAfterAQuoteIsAMistake) {
    EXPECT_EQ(mistake("\"a\" b,c"), "1: a cell goes on after its closing quote");
}

TEST(Rows, OtherEncodingsAreAMistake) {
    const std::string notText = "1: the line is not UTF-8 text; save the file as UTF-8";
    EXPECT_EQ(mistake("\xFF\xFE"
                      "a"),
              "1: the file is UTF-16 text; save it as UTF-8");
    EXPECT_EQ(mistake("\xFE\xFF"
                      "a"),
              "1: the file is UTF-16 text; save it as UTF-8");
    EXPECT_EQ(mistake("\xE4thane"), notText) << "Latin 1";
    EXPECT_EQ(mistake("\xC0\xAF"), notText) << "an overlong form";
    EXPECT_EQ(mistake("\xED\xA0\x80"), notText) << "a surrogate";
    EXPECT_EQ(mistake("\xF4\x90\x80\x80"), notText) << "beyond Unicode";
    EXPECT_EQ(mistake("a\xE2\x82"), notText) << "a cut sequence";
    EXPECT_EQ(mistake(std::string_view{"a\0b", 3}), notText) << "a null character";
}

} // namespace
} // namespace peng_robinson::test
