#include "sheet/cli/options.h"

#include <gtest/gtest.h>

namespace sheet::cli {
namespace {

using Words = std::vector<std::string>;

Recalc recalcOf(const Words& words) { return std::get<Recalc>(readCommandLine(words)); }

std::string problemOf(const Words& words) {
    try {
        readCommandLine(words);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "(accepted)";
}

TEST(Options, CommandsAreTold) {
    EXPECT_TRUE(std::holds_alternative<Help>(readCommandLine(Words{"--help"})));
    EXPECT_TRUE(std::holds_alternative<Help>(readCommandLine(Words{"recalc", "--help"})));
    EXPECT_TRUE(std::holds_alternative<Version>(readCommandLine(Words{"--version"})));
    EXPECT_TRUE(std::holds_alternative<List>(readCommandLine(Words{"list"})));
}

TEST(Options, RecalcTakesAFileAndOptionsInAnyOrder) {
    const Recalc recalc =
        recalcOf({"recalc", "--package", "Gas=Tarnwick.PengRobinson.1", "a b.csv", "--array", "B2:B9",
                  "--package=Oil=Some.Manager!heavy oil", "--out", "c.csv", "--array=D1",
                  "--packages=old.csv", "--save-packages", "new.csv"});
    EXPECT_EQ(recalc.packages.file, "old.csv");
    EXPECT_EQ(recalc.savePackages, "new.csv");
    EXPECT_EQ(recalc.file, "a b.csv");
    EXPECT_EQ(recalc.out, "c.csv");
    EXPECT_EQ(recalc.packages.named,
              (std::vector<PackageOption>{{"Gas", "Tarnwick.PengRobinson.1", std::nullopt},
                                          {"Oil", "Some.Manager", "heavy oil"}}));
    EXPECT_EQ(recalc.arrays, (std::vector<formula::Block>{{{1, 1}, 8, 1}, {{0, 3}}}));
}

TEST(Options, InfoTakesPackages) {
    const Command command =
        readCommandLine(Words{"info", "--packages", "old.csv", "--package=Gas=Tarnwick.PengRobinson.1"});
    const Info& info = std::get<Info>(command);
    EXPECT_EQ(info.packages.file, "old.csv");
    EXPECT_EQ(info.packages.named,
              (std::vector<PackageOption>{{"Gas", "Tarnwick.PengRobinson.1", std::nullopt}}));
    EXPECT_TRUE(std::holds_alternative<Help>(readCommandLine(Words{"info", "--help"})));
}

TEST(Options, AfterTwoDashesAFileNameMayBeginWithOne) {
    EXPECT_EQ(recalcOf({"recalc", "--", "-a.csv"}).file, "-a.csv");
}

TEST(Options, APackageNameMayHoldExclamationMarks) {
    EXPECT_EQ(recalcOf({"recalc", "a.csv", "--package", "Gas=M!a!b"}).packages.named[0],
              (PackageOption{"Gas", "M", "a!b"}));
}

TEST(Options, WhatIsWrongIsNamed) {
    struct Case {
        Words words;
        const char* problem;
    };
    const Case cases[] = {
        {{}, "a command is missing; see quorvane-sheet --help"},
        {{"calc"}, "\"calc\" is no command; see quorvane-sheet --help"},
        {{"list", "x"}, "list takes no arguments, but \"x\" is given; see quorvane-sheet --help"},
        {{"recalc"}, "recalc wants the name of a worksheet; see quorvane-sheet --help"},
        {{"recalc", "a", "b"},
         "one worksheet at a time: \"a\" and \"b\" are given; see quorvane-sheet --help"},
        {{"recalc", "a", "--speed", "9"}, "the option --speed is unknown; see quorvane-sheet --help"},
        {{"recalc", "a", "--package"}, "--package wants a value; see quorvane-sheet --help"},
        {{"recalc", "a", "--package", "Gas"},
         "--package wants NAME=PROGID, not \"Gas\"; see quorvane-sheet --help"},
        {{"recalc", "a", "--package", "=P"},
         "--package wants NAME=PROGID, not \"=P\"; see quorvane-sheet --help"},
        {{"recalc", "a", "--package", "Gas=P!"},
         "--package wants NAME=MANAGERPROGID!PACKAGENAME, not \"Gas=P!\"; see quorvane-sheet --help"},
        {{"recalc", "a", "--package", "G=P", "--package", "G=Q"},
         "two packages are named G; see quorvane-sheet --help"},
        {{"recalc", "a", "--array", "B"},
         "--array wants a range such as B2:B9, not \"B\"; see quorvane-sheet --help"},
        {{"recalc", "a", "--array", "A1:XFD1048576"},
         "--array takes at most 1,048,576 cells, and A1:XFD1048576 has more; see quorvane-sheet --help"},
        {{"recalc", "a", "--out", "b", "--out", "c"}, "--out is given twice; see quorvane-sheet --help"},
        {{"recalc", "a", "--out="}, "--out wants the name of a file; see quorvane-sheet --help"},
        {{"recalc", "a", "--packages"}, "--packages wants a value; see quorvane-sheet --help"},
        {{"recalc", "a", "--packages=b", "--packages=c"},
         "--packages is given twice; see quorvane-sheet --help"},
        {{"recalc", "a", "--save-packages="},
         "--save-packages wants the name of a file; see quorvane-sheet --help"},
        {{"info", "a.csv"}, "info takes options only, but \"a.csv\" is given; see quorvane-sheet --help"},
        {{"info", "--out", "a.csv"}, "info does not have the option --out; see quorvane-sheet --help"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(problemOf(one.words), one.problem);
    }
}

TEST(Options, AnArrayMayFillAWholeColumn) {
    EXPECT_EQ(recalcOf({"recalc", "a", "--array", "C1:C1048576"}).arrays.at(0).cellCount(), 1'048'576U);
}

TEST(Options, PackagesMayDifferInCaseOnly) {
    EXPECT_EQ(recalcOf({"recalc", "a", "--package", "G=P", "--package", "g=P"}).packages.named.size(), 2U);
}

} // namespace
} // namespace sheet::cli
