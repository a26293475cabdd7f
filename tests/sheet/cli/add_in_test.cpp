// Worksheets calculated by the built add-in, with the scripted package in the place of a real one. The DLLs
// stand beside the test program and register themselves for the user.
#include "sheet/cli/text.h"
#include "tests/sheet/cli/program.h"

#include <gmock/gmock.h>

namespace sheet::cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class AddInTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        ASSERT_EQ(callExport(L"Quorvane.dll", "DllRegisterServer"), S_OK);
        ASSERT_EQ(callExport(L"PengRobinson.dll", "DllRegisterServer"), S_OK);
    }
    static void TearDownTestSuite() {
        EXPECT_EQ(callExport(L"ScriptedPackage.dll", "DllUnregisterServer"), S_OK);
    }
    // For each test: one that the leak gate runs in a process of its own takes the registration back at its
    // end.
    void SetUp() override { ASSERT_EQ(callExport(L"ScriptedPackage.dll", "DllRegisterServer"), S_OK); }
    void TearDown() override { SetEnvironmentVariableW(L"SCRIPTED_PACKAGE", nullptr); }

    // The package that the program will use behaves so.
    static void script(const wchar_t* settings) { SetEnvironmentVariableW(L"SCRIPTED_PACKAGE", settings); }

    Outcome recalc(std::string_view csv, std::vector<std::wstring> more = {}) {
        program_.write(L"sheet.csv", csv);
        more.insert(more.begin(), {L"recalc", L"sheet.csv"});
        return program_.run(more);
    }
    Outcome recalcWithPackage(std::string_view csv, std::vector<std::wstring> more = {}) {
        more.insert(more.end(), {L"--package", L"Gas=Tarnwick.ScriptedPackage.1"});
        return recalc(csv, std::move(more));
    }

    Program program_;
};

TEST_F(AddInTest, InstalledPackagesAndManagersAreListed) {
    const Outcome outcome = program_.run({L"list"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("kind "));
    EXPECT_THAT(outcome.output,
                testing::ContainsRegex("package +Scripted package +1.0 +Tarnwick.ScriptedPackage.1 "
                                       "+https://tarnwick.example/quorvane\n"));
    EXPECT_THAT(outcome.output, testing::ContainsRegex("manager +.* +1.0 +Tarnwick.ScriptedManager.1 "));
}

TEST_F(AddInTest, FunctionsAnswerIntoTheirCells) {
    const Outcome outcome = recalcWithPackage("packages,=CapeOpenPackageNames()\n"
                                              "phases,\"=CapeOpenPhases(\"\"Gas\"\")\"\n"
                                              "unit,=CapeOpenUnitOfMeasure(C4)\n"
                                              ",,enthalpy\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "   A         B      C\n"
                              "1  packages  Gas\n"
                              "2  phases    Vapor  Liquid\n"
                              "3  unit      J/mol\n"
                              "4                   enthalpy\n");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(AddInTest, APackageOfAManagerIsAttached) {
    const Outcome outcome = recalc("=CapeOpenPackageNames()\n\"=CapeOpenCompounds(\"\"Oil 2\"\")\"\n",
                                   {L"--package", L"Oil 2=Tarnwick.ScriptedManager.1!Second"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, HasSubstr("1  Oil 2\n"));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(AddInTest, SeveralPackagesAreToldApartByName) {
    const Outcome outcome = recalcWithPackage(
        "names,=CapeOpenPackageNames()\n"
        "Gas,\"=CapeOpenCompounds(\"\"Gas\"\")\"\n"
        "Pure,\"=CapeOpenCompounds(\"\"Pure\"\")\"\n",
        {L"--package", L"Pure=Tarnwick.PengRobinson.1", L"--array", L"B2", L"--array", L"B3"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "   A      B    C\n"
                              "1  names  Gas  Pure\n"
                              "2  Gas    A1\n"
                              "3  Pure   nitrogen\n");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(AddInTest, TheOrientationFollowsTheRangeOfAnArrayFormula) {
    EXPECT_EQ(recalcWithPackage("\"=CapeOpenPhases(\"\"Gas\"\")\"\n", {L"--array", L"A1:A3"}).output,
              "   A\n1  Vapor\n2  Liquid\n3  #N/A\n");
    EXPECT_EQ(recalcWithPackage("\"=CapeOpenPhases(\"\"Gas\"\")\"\n").output,
              "   A      B\n1  Vapor  Liquid\n");
}

TEST_F(AddInTest, AFlashIsATableBesideItsLabels) {
    const Outcome outcome = recalcWithPackage("0.5,,overall,\"=CapeOpenPhaseEquilibrium(\"\"Gas\"\",A1:A3,"
                                              "\"\"temperature\"\",B2,\"\"pressure\"\",B3,,"
                                              "\"\"overallResults,noComposition\"\",,\"\"matrix\"\")\"\n"
                                              "0.3,350,\"=CapeOpenPhases(\"\"Gas\"\",\"\"vertical\"\")\"\n"
                                              "0.2,100000\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, HasSubstr("overall  350  100000  1\n"));
    EXPECT_THAT(outcome.output, HasSubstr("Vapor    350  100000  "));
}

TEST_F(AddInTest, AFailureIsShownAndListedAndEndsWithOne) {
    const Outcome outcome = recalcWithPackage("Invalid package name,\"=CapeOpenPhases(\"\"Nope\"\")\"\n"
                                              ",=B1\n");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.output, HasSubstr("1  Invalid package name  Invalid package name\n"));
    EXPECT_EQ(outcome.errors, "1 formula failed:\n  B1: Invalid package name\n");
}

TEST_F(AddInTest, APackageThatFailsToFlashPutsItsWordsIntoTheCell) {
    script(L"CalcEquilibrium=0x8004050B:Flash did not converge");
    const Outcome outcome = recalcWithPackage("1,\"=CapeOpenPhaseEquilibrium(\"\"Gas\"\",A1:A3,"
                                              "\"\"temperature\"\",350,\"\"pressure\"\",100000)\"\n1\n1\n");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "   A  B\n1  1  Flash did not converge\n2  1\n3  1\n");
    EXPECT_EQ(outcome.errors, "1 formula failed:\n  B1: Flash did not converge\n");
}

TEST_F(AddInTest, ACallThatCannotBeMadeSaysWhy) {
    const Outcome outcome = recalc("\"=CapeOpenUnitOfMeasure(\"\"enthalpy\"\",\"\"mole\"\",3)\"\n");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "   A\n1  #VALUE!\n");
    EXPECT_EQ(outcome.errors,
              "1 formula failed:\n  A1: #VALUE! (" + systemText(DISP_E_BADPARAMCOUNT) + ")\n");
}

TEST_F(AddInTest, AChartOfTheCalculatedCellsIsDrawn) {
    const Outcome outcome = recalc("Squares\nx,y\n1,1\n2,4\n=A4,=B4\n",
                                   {L"--svg", L"squares.svg", L"--x", L"A3:A5", L"--y", L"B3:B5"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(program_.read(L"squares.svg"), StartsWith("<svg xmlns="));
    EXPECT_THAT(program_.read(L"squares.svg"), HasSubstr(">Squares</text>"));
}

TEST_F(AddInTest, AChartWithoutNumbersIsRefused) {
    const Outcome outcome = recalc("x,y\na,b\n", {L"--svg", L"none.svg", L"--x", L"A2", L"--y", L"B2"});
    EXPECT_EQ(outcome.errors,
              "sheet.csv: row 2, column 2 (B2): there are no pairs of numbers in the ranges of "
              "--x and --y to be drawn\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_FALSE(program_.exists(L"none.svg"));
}

TEST_F(AddInTest, FailedCellsAreToldBeforeTheChartThatTheyLeaveEmpty) {
    const std::string formula = "\"=CapeOpenUnitOfMeasure(\"\"enthalpy\"\",\"\"mole\"\",3)\"";
    const Outcome outcome =
        recalc("x,y\n1," + formula + '\n', {L"--svg", L"none.svg", L"--x", L"A2", L"--y", L"B2"});
    EXPECT_EQ(outcome.output, "   A  B\n1  x  y\n2  1  #VALUE!\n");
    EXPECT_EQ(outcome.errors, "1 formula failed:\n  B2: #VALUE! (" + systemText(DISP_E_BADPARAMCOUNT) +
                                  ")\nsheet.csv: row 2, column 2 (B2): there are no pairs of numbers in the "
                                  "ranges of --x and --y to be drawn\n");
    EXPECT_EQ(outcome.exitCode, 2);
}

TEST_F(AddInTest, AChartNeverReplacesTheWorksheet) {
    const Outcome outcome = recalc("1,2\n", {L"--svg", L"SHEET.csv", L"--x", L"A1", L"--y", L"B1"});
    EXPECT_EQ(outcome.errors, "quorvane-sheet: SHEET.csv: --svg would replace the worksheet by a chart; name "
                              "another file\n");
    EXPECT_EQ(outcome.exitCode, 2);
}

TEST_F(AddInTest, CalculatedValuesAreWrittenWithoutLoss) {
    const Outcome outcome =
        recalcWithPackage("0.30000000000000004,\"a,b\",\"=CapeOpenPhases(\"\"Gas\"\")\"\n\u00B0C,TRUE\n",
                          {L"--out", L"values.csv"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(program_.read(L"values.csv"), "\xEF\xBB\xBF"
                                            "0.30000000000000004,\"a,b\",Vapor,Liquid\r\n\u00B0C,TRUE,,\r\n");
}

TEST_F(AddInTest, WritingLeavesOtherFilesAlone) {
    program_.write(L"values.csv.tmp", "mine");
    EXPECT_EQ(recalc("1\n", {L"--out", L"values.csv"}).exitCode, 0);
    EXPECT_EQ(program_.read(L"values.csv.tmp"), "mine");
    EXPECT_THAT(program_.files(), testing::ElementsAre("sheet.csv", "standard error 1", "standard output 1",
                                                       "values.csv", "values.csv.tmp"));
}

TEST_F(AddInTest, AResultThatCannotBeWrittenLeavesNothingBehind) {
    program_.makeFolder(L"values.csv");
    const Outcome outcome = recalc("1\n", {L"--out", L"values.csv"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "quorvane-sheet: values.csv: the file cannot be written: " +
                                  systemText(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)) +
                                  "; check its folder, and whether another program uses it\n");
    EXPECT_THAT(program_.files(),
                testing::ElementsAre("sheet.csv", "standard error 1", "standard output 1", "values.csv"));
}

TEST_F(AddInTest, AFailedCellEndsWithOneAlsoWhenStandardErrorCannotBeWritten) {
    program_.write(L"sheet.csv", "\"=CapeOpenPhases(\"\"Nope\"\")\"\n");
    const Outcome outcome = program_.run({L"recalc", L"sheet.csv"}, ErrorStream::broken);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "   A\n1  Invalid package name\n");
}

TEST_F(AddInTest, AnUnknownFunctionIsRefusedWithItsPlace) {
    const Outcome outcome = recalc("1\n2,=CapeOpenPhasess(A1)\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors,
              "sheet.csv: row 2, column 2 (B2): the add-in has no worksheet function CapeOpenPhasess; "
              "check its spelling\n");
}

TEST_F(AddInTest, APackageThatCannotBeAttachedSaysWhy) {
    script(L"ICapeThermoPhases=none");
    const Outcome outcome = recalcWithPackage("1\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(
        outcome.errors,
        "quorvane-sheet: the package Gas cannot be attached: Package does not implement ICapeThermoPhases\n");
}

TEST_F(AddInTest, APackageManagerWantsTheNameOfAPackage) {
    const Outcome outcome = recalc("1\n", {L"--package", L"Gas=Tarnwick.ScriptedManager.1"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors,
              "quorvane-sheet: the package Gas cannot be attached: Tarnwick.ScriptedManager.1 is a package "
              "manager; write Gas=Tarnwick.ScriptedManager.1!PACKAGENAME\n");
}

TEST_F(AddInTest, PackagesAreTerminatedAtTheEnd) {
    script(L"log=calls.txt");
    EXPECT_EQ(recalcWithPackage("1\n").exitCode, 0);
    EXPECT_THAT(program_.read(L"calls.txt"), HasSubstr("Terminate"));
}

} // namespace
} // namespace sheet::cli
