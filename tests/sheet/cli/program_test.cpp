// What the program does before it needs the add-in: command line, files, formulas, circles, packages.
#include "sheet/cli/text.h"
#include "tests/sheet/cli/program.h"

#include <gtest/gtest.h>

namespace sheet::cli {
namespace {

class ProgramTest : public testing::Test {
  protected:
    // Recalculates a worksheet that cannot be used, and returns what the program says.
    std::string complaintAbout(std::string_view csv, std::vector<std::wstring> more = {}) {
        program_.write(L"sheet.csv", csv);
        more.insert(more.begin(), {L"recalc", L"sheet.csv"});
        const Outcome outcome = program_.run(more);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.output, "");
        return outcome.errors;
    }

    Program program_;
};

TEST_F(ProgramTest, HelpIsPrinted) {
    const Outcome outcome = program_.run({L"--help"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.output.starts_with("quorvane-sheet calculates worksheets")) << outcome.output;
    EXPECT_NE(outcome.output.find("--package NAME=PROGID!PACKAGE"), std::string::npos);
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(ProgramTest, VersionIsPrinted) {
    const Outcome outcome = program_.run({L"--version"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "quorvane-sheet " QUORVANE_VERSION "\n");
}

TEST_F(ProgramTest, ABadOptionIsRefused) {
    const Outcome outcome = program_.run({L"recalc", L"sheet.csv", L"--verbose"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "quorvane-sheet: the option --verbose is unknown; see quorvane-sheet --help\n");
}

TEST_F(ProgramTest, NoCommandIsRefused) {
    const Outcome outcome = program_.run({});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors, "quorvane-sheet: a command is missing; see quorvane-sheet --help\n");
}

TEST_F(ProgramTest, TheExitCodeHoldsWhenStandardErrorCannotBeWritten) {
    program_.write(L"sheet.csv", "=A1\r\n");
    EXPECT_EQ(program_.run({L"recalc", L"sheet.csv"}, ErrorStream::broken).exitCode, 2);
}

TEST_F(ProgramTest, AMissingFileIsNamed) {
    const Outcome outcome = program_.run({L"recalc", L"M\u00FCller.csv"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors, "quorvane-sheet: M\u00FCller.csv: the file cannot be read: " +
                                  systemText(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) +
                                  "; check its name, and whether another program uses it\n");
}

TEST_F(ProgramTest, BrokenCsvIsRefusedWithItsPlace) {
    EXPECT_EQ(complaintAbout("a,b\r\nc,\"d\r\n"), "sheet.csv: row 2, column 2 (B2): the quote that opens "
                                                  "this cell is never closed; add the closing quote\n");
}

TEST_F(ProgramTest, EveryUnreadableFormulaIsListedWithItsPlace) {
    EXPECT_EQ(complaintAbout("=A2*2,x\r\n1,=SUM(A2)\r\n"),
              "sheet.csv: row 1, column 1 (A1): the formula cannot be read at character 4: formulas cannot "
              "calculate; "
              "write the result of the calculation into a cell and refer to it\n"
              "sheet.csv: row 2, column 2 (B2): the formula cannot be read at character 2: the function SUM "
              "is not one of "
              "the add-in's; write its result into a cell as a number or text\n");
}

TEST_F(ProgramTest, ACircleNamesItsCells) {
    EXPECT_EQ(complaintAbout("=B1,=CapeOpenPhases(A2)\r\n=A1\r\n"),
              "sheet.csv: row 1, column 1 (A1): the formulas in A1, B1 and A2 refer to each other in a "
              "circle; let one of "
              "them refer to other cells\n");
}

TEST_F(ProgramTest, AnArrayRangeWithoutAFormulaIsRefused) {
    EXPECT_EQ(complaintAbout("1,2\r\n", {L"--array", L"B1:B3"}),
              "sheet.csv: row 1, column 2 (B1): no formula stands here to be entered over B1:B3; an array "
              "range begins "
              "with the cell that holds its formula\n");
}

TEST_F(ProgramTest, CellsTooFarApartAreRefused) {
    std::string csv = std::string(16'383, ',') + "1\r\n";
    for (int row = 2; row <= 2'000; ++row) {
        csv += "1\r\n";
    }
    EXPECT_EQ(
        complaintAbout(csv),
        "sheet.csv: the worksheet reaches to XFD2000, and a table of more than 16,777,216 cells cannot be "
        "shown; move the cells closer together\n");
}

TEST_F(ProgramTest, AnUnknownProgIdIsNamed) {
    EXPECT_EQ(complaintAbout("1\r\n", {L"--package", L"Gas=No.Such.Package"}),
              "quorvane-sheet: the package Gas cannot be attached: nothing is registered as No.Such.Package; "
              "quorvane-sheet list shows what is installed\n");
}

TEST_F(ProgramTest, TheWorksheetItselfIsNeverOverwritten) {
    const std::string csv = "\"=CapeOpenPhases(\"\"Gas\"\")\"\r\n";
    EXPECT_EQ(complaintAbout(csv, {L"--out", L".\\SHEET.CSV"}),
              "quorvane-sheet: .\\SHEET.CSV: --out would replace the worksheet's formulas by values; name "
              "another file\n");
    EXPECT_EQ(program_.read(L"sheet.csv"), csv);
}

TEST_F(ProgramTest, NothingIsWrittenForAnUnusableWorksheet) {
    complaintAbout("=A1\r\n", {L"--out", L"values.csv"});
    EXPECT_FALSE(program_.exists(L"values.csv"));
}

} // namespace
} // namespace sheet::cli
