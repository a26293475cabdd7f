#include "sheet/formula/csv.h"
#include "sheet/formula/input_error.h"

#include <gtest/gtest.h>

namespace sheet::formula {
namespace {

using namespace std::string_literals;

std::string problemOf(std::string_view text) {
    try {
        readCsv(text);
    } catch (const InputError& error) {
        return error.problems().at(0).inFile("t.csv");
    }
    return "(accepted)";
}

TEST(Csv, CellsAreSeparatedByCommasAndRowsByLineEnds) {
    EXPECT_EQ(readCsv("a,b\r\n1,2\nx,\r\n"), (CsvTable{{"a", "b"}, {"1", "2"}, {"x", ""}}));
}

TEST(Csv, TheLastLineNeedsNoEnd) { EXPECT_EQ(readCsv("a\nb"), (CsvTable{{"a"}, {"b"}})); }

TEST(Csv, AnEmptyFileHasNoRows) {
    EXPECT_EQ(readCsv(""), CsvTable{});
    EXPECT_EQ(readCsv("\xEF\xBB\xBF"), CsvTable{});
}

TEST(Csv, AnEmptyLineIsARow) { EXPECT_EQ(readCsv("a\n\nb\n"), (CsvTable{{"a"}, {""}, {"b"}})); }

TEST(Csv, AByteOrderMarkIsNoPartOfTheFirstCell) {
    EXPECT_EQ(readCsv("\xEF\xBB\xBF"
                      "a"),
              (CsvTable{{"a"}}));
}

TEST(Csv, QuotedCellsHoldCommasQuotesAndLineBreaks) {
    EXPECT_EQ(readCsv("\"=f(\"\"a\"\",1)\",\"two\r\nlines\n\"\r\n\"\",z"),
              (CsvTable{{"=f(\"a\",1)", "two\r\nlines\n"}, {"", "z"}}));
}

TEST(Csv, BlanksBelongToTheCell) { EXPECT_EQ(readCsv(" a , b"), (CsvTable{{" a ", " b"}})); }

TEST(Csv, TextBeyondAsciiIsKept) {
    EXPECT_EQ(readCsv("\u00B0C,\u6C34,\U0001F600"), (CsvTable{{"\u00B0C", "\u6C34", "\U0001F600"}}));
}

TEST(Csv, AnUnclosedQuoteIsReportedWhereItOpens) {
    EXPECT_EQ(
        problemOf("a,b\nc,\"d\ne,f\n"),
        "t.csv: row 2, column 2 (B2): the quote that opens this cell is never closed; add the closing quote");
}

TEST(Csv, TextAfterAClosingQuoteIsRefused) {
    EXPECT_EQ(problemOf("\"a\"b,c"),
              "t.csv: row 1, column 1 (A1): text follows the closing quote of this cell; double "
              "the quotes inside a cell that is in quotes");
}

TEST(Csv, AQuoteInsideAnUnquotedCellIsRefused) {
    EXPECT_EQ(problemOf("x\n1,2,=f(\"a\")\n"), "t.csv: row 2, column 3 (C2): a quote stands inside a cell "
                                               "that is not in quotes; put the whole cell in "
                                               "quotes and double the quotes inside it");
}

TEST(Csv, ALoneCarriageReturnIsRefused) {
    EXPECT_EQ(problemOf("a\rb"),
              "t.csv: row 1, column 1 (A1): a carriage return stands here without a line feed; save "
              "the file with CRLF or LF line ends");
    EXPECT_NE(problemOf("a\r"), "(accepted)");
}

TEST(Csv, OtherEncodingsAreRefused) {
    EXPECT_EQ(problemOf("a,\xE9"),
              "t.csv: row 1, column 2 (B1): this cell is not valid UTF-8 text; save the file as "
              "\"CSV UTF-8\"");
    EXPECT_EQ(problemOf("\xFF\xFE"
                        "a\0"s),
              "t.csv: the file is UTF-16 text; save it as \"CSV UTF-8\"");
    EXPECT_EQ(problemOf("a\0b"s),
              "t.csv: row 1, column 1 (A1): this cell contains a null character; remove it");
}

TEST(Csv, MalformedUtf8IsNotLetThrough) {
    for (const char* text : {"\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
                             "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\xC3("}) {
        EXPECT_NE(problemOf(text), "(accepted)") << text;
    }
}

TEST(Csv, MoreColumnsThanAWorksheetHasAreRefused) {
    EXPECT_EQ(problemOf(std::string(16'384, ',')),
              "t.csv: row 1, column 16385 (XFE1): a worksheet has at most 16384 columns; split the file");
    EXPECT_EQ(readCsv(std::string(16'383, ','))[0].size(), 16'384U);
}

TEST(Csv, MoreRowsThanAWorksheetHasAreRefused) {
    EXPECT_EQ(
        problemOf(std::string(1'048'576, '\n') + "x"),
        "t.csv: row 1048577, column 1 (A1048577): a worksheet has at most 1048576 rows; split the file");
}

TEST(Csv, WhatIsWrittenReadsBackTheSame) {
    const CsvTable table{{"a,b", "c\"d", ""}, {""}, {"two\r\nlines", "\u00B0C"}, {"1", "2", "3", "4"}};
    EXPECT_EQ(readCsv(writeCsv(table)), table);
}

TEST(Csv, AByteOrderMarkThatIsPartOfTheFirstCellIsKept) {
    const CsvTable table{{"\uFEFFa", "\uFEFF"}, {"\uFEFFb"}};
    EXPECT_EQ(writeCsv(table), "\"\uFEFFa\",\uFEFF\r\n\uFEFFb\r\n");
    EXPECT_EQ(readCsv(writeCsv(table)), table);
}

TEST(Csv, QuotesAreWrittenOnlyWhereTheyAreNeeded) {
    EXPECT_EQ(writeCsv({{"a b", "1.5", "x,y", "\""}}), "a b,1.5,\"x,y\",\"\"\"\"\r\n");
}

} // namespace
} // namespace sheet::formula
