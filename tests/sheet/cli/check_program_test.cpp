// The command `check` of the program: its output and its exit code.
#include "packages/peng_robinson/state/state.h"
#include "src/workbook/saved_state/state_text.h"
#include "tests/sheet/cli/program.h"

#include <gmock/gmock.h>

namespace sheet::cli {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class CheckProgramTest : public testing::Test {
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

    Outcome check(std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), L"check");
        return program_.run(arguments);
    }

    Program program_;
};

TEST_F(CheckProgramTest, ABundledPackageFits) {
    const Outcome outcome =
        check({L"Air", L"--package", L"Air=Tarnwick.PengRobinsonManager.1!Air separation"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, StartsWith("question "));
    EXPECT_THAT(outcome.output, EndsWith("\nEverything that was checked agrees.\n"));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(CheckProgramTest, TheProgIdCanStandForTheName) {
    const Outcome outcome = check({L"Tarnwick.PengRobinsonManager.1!Air separation", L"--temperature", L"85",
                                   L"--pressure=500000", L"--composition", L"0.78,0.21,0.01"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, HasSubstr("Liquid, 85 K, 500000 Pa, composition 1"));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(CheckProgramTest, ABundledPackageFitsWithoutSomeOfItsCompounds) {
    const Outcome outcome = check({L"Tarnwick.PengRobinsonManager.1!Air separation", L"--composition",
                                   L"0.78,0.22,0", L"--composition", L"0,1,0"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, EndsWith("\nEverything that was checked agrees.\n"));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(CheckProgramTest, APurePackageIsAskedWhereItBoils) {
    const peng_robinson::Configuration propane{peng_robinson::builtInCatalogue(), {{5}, {}}};
    quorvane::InflationAllowance allowance;
    const std::wstring state = quorvane::stateTextOf(peng_robinson::writeState(propane), allowance);
    program_.write(L"packages.csv",
                   "Pure,Peng-Robinson,StandAlonePackage11,{481616A8-47AD-4A42-BE09-E48AFDFC9868},," +
                       std::string{state.begin(), state.end()} + "\r\n");
    const Outcome outcome = check({L"Pure", L"--packages", L"packages.csv"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, testing::ContainsRegex("fugacities agree across phases +Vapor and Liquid "));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
}

TEST_F(CheckProgramTest, APackageThatDoesNotFitEndsWithOne) {
    const Outcome outcome = check({L"Tarnwick.ScriptedPackage.1"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, testing::ContainsRegex("derivatives by temperature +enthalpy +.* DIFFERS"));
    EXPECT_THAT(outcome.output, EndsWith("\nNot everything that was checked agrees.\n"));
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST_F(CheckProgramTest, ACompositionOfAnotherLengthIsRefused) {
    const Outcome outcome = check({L"Tarnwick.ScriptedPackage.1", L"--composition", L"1,1"});
    EXPECT_EQ(outcome.errors, "quorvane-sheet: the package Tarnwick.ScriptedPackage.1 has 3 compounds, and "
                              "--composition has 2 amounts; give one for each compound\n");
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.exitCode, 2);
}

TEST_F(CheckProgramTest, APackageThatIsNotAttachedIsRefused) {
    program_.write(L"packages.csv", "");
    const Outcome outcome = check({L"Gas", L"--packages", L"packages.csv"});
    EXPECT_EQ(outcome.errors,
              "quorvane-sheet: no package Gas is attached; attach it by --package Gas=PROGID\n");
    EXPECT_EQ(outcome.exitCode, 2);
}

} // namespace
} // namespace sheet::cli
