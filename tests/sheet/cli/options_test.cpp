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
        {{"check"}, "check wants the name of a package; see quorvane-sheet --help"},
        {{"check", "a", "b"}, "one package at a time: \"a\" and \"b\" are given; see quorvane-sheet --help"},
        {{"check", "a", "--out", "b"}, "check does not have the option --out; see quorvane-sheet --help"},
        {{"check", "a", "--temperature", "0"},
         "--temperature wants a positive number, not \"0\"; see quorvane-sheet --help"},
        {{"check", "a", "--pressure=1 bar"},
         "--pressure wants a positive number, not \"1 bar\"; see quorvane-sheet --help"},
        {{"check", "a", "--composition", "1,-1"},
         "--composition wants amounts with commas between them, not \"1,-1\"; see quorvane-sheet --help"},
        {{"check", "a", "--composition", "0,0"},
         "--composition wants an amount of something, not \"0,0\"; see quorvane-sheet --help"},
        {{"recalc", "a", "--x", "A1:A2"}, "--x and --y go with --svg; see quorvane-sheet --help"},
        {{"recalc", "a", "--svg", "b", "--x", "A1:A2"},
         "--svg wants --x RANGE and --y RANGE; see quorvane-sheet --help"},
        {{"recalc", "a", "--svg", "b", "--x", "A1:B2"},
         "--x wants a part of a row or column such as B9:B20, not \"A1:B2\"; see quorvane-sheet --help"},
        {{"recalc", "a", "--svg", "b", "--x=A1:A2", "--y=B1:B3"},
         "a chart wants as many cells in B1:B3 as in A1:A2; see quorvane-sheet --help"},
        {{"recalc", "a", "--svg", "b", "--x=A1", "--x=A2", "--y=B1", "--y=B2", "--y=B3"},
         "--x is given once, or as often as --y; see quorvane-sheet --help"},
        {{"info", "--out", "a.csv"}, "info does not have the option --out; see quorvane-sheet --help"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(problemOf(one.words), one.problem);
    }
}

TEST(Options, CheckTakesANameAndConditions) {
    const Command command =
        readCommandLine(Words{"check", "Gas", "--package", "Gas=P", "--temperature", "300",
                              "--temperature=350.5", "--pressure", "1e5", "--composition", "1,0.5,0"});
    const auto& check = std::get<Check>(command);
    EXPECT_EQ(check.name, "Gas");
    EXPECT_EQ(check.packages.named, (std::vector<PackageOption>{{"Gas", "P", std::nullopt}}));
    EXPECT_EQ(check.choices.temperatures, (std::vector{300.0, 350.5}));
    EXPECT_EQ(check.choices.pressures, (std::vector{1e5}));
    EXPECT_EQ(check.choices.compositions, (std::vector<checking::Composition>{{1.0, 0.5, 0.0}}));
}

TEST(Options, CheckTakesAProgIdForTheName) {
    const Command command = readCommandLine(Words{"check", "Some.Manager!heavy oil"});
    const auto& check = std::get<Check>(command);
    EXPECT_EQ(check.packages.named,
              (std::vector<PackageOption>{{"Some.Manager!heavy oil", "Some.Manager", "heavy oil"}}));
}

TEST(Options, AChartHasOneXOrOneForEachY) {
    const Recalc one =
        recalcOf({"recalc", "a", "--svg", "b.svg", "--x", "A1:A2", "--y", "B1:B2", "--y=C1:D1"});
    EXPECT_EQ(one.svg, "b.svg");
    EXPECT_EQ(one.chartX.size(), 1U);
    EXPECT_EQ(one.chartY.size(), 2U);
    EXPECT_EQ(recalcOf({"recalc", "a", "--svg=b", "--x=A1", "--x=A2", "--y=B1", "--y=B2"}).chartX.size(), 2U);
}

TEST(Options, AnArrayMayFillAWholeColumn) {
    EXPECT_EQ(recalcOf({"recalc", "a", "--array", "C1:C1048576"}).arrays.at(0).cellCount(), 1'048'576U);
}

TEST(Options, PackagesMayDifferInCaseOnly) {
    EXPECT_EQ(recalcOf({"recalc", "a", "--package", "G=P", "--package", "g=P"}).packages.named.size(), 2U);
}

} // namespace
} // namespace sheet::cli
