// Packages that are saved into a file and attached from it in another run, and their descriptions.
#include "sheet/cli/text.h"
#include "tests/sheet/cli/program.h"

#include <gmock/gmock.h>

namespace sheet::cli {
namespace {

using testing::HasSubstr;

constexpr const char* guid = "{A9C1F0C4-7C55-4B0B-8F5A-6B1F4D3E2C01}"; // of nothing

class PackagesTest : public testing::Test {
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
    void TearDown() override { script(nullptr); }

    /// The scripted package behaves so in the runs that follow.
    static void script(const wchar_t* settings) { SetEnvironmentVariableW(L"SCRIPTED_PACKAGE", settings); }

    Outcome recalc(std::string_view csv, std::vector<std::wstring> more) {
        program_.write(L"sheet.csv", csv);
        more.insert(more.begin(), {L"recalc", L"sheet.csv"});
        return program_.run(more);
    }
    /// What a run that must fail says.
    std::string complaint(std::vector<std::wstring> more, std::string_view csv = "1\r\n") {
        const Outcome outcome = recalc(csv, std::move(more));
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.output, "");
        return outcome.errors;
    }
    /// Saves a scripted package Gas whose state is this text.
    std::string save(const wchar_t* state) {
        script((std::wstring{L"state="} + state).c_str());
        const Outcome outcome = recalc(
            "1\r\n", {L"--package", L"Gas=Tarnwick.ScriptedPackage.1", L"--save-packages", L"packages.csv"});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        return program_.read(L"packages.csv");
    }

    Program program_;
};

constexpr const char* compoundSheet = "\"=CapeOpenCompounds(\"\"Gas\"\")\"\r\n";

TEST_F(PackagesTest, AreSavedAsATable) {
    EXPECT_EQ(save(L"abc"),
              "Gas,Scripted package,StandAlonePackage11,{5D1B6C5B-0C5C-4C4E-9C55-3C0C4A6B7101},,YWJj\r\n");
}
TEST_F(PackagesTest, AreAttachedFromTheTable) {
    save(L"abc");
    script(nullptr);
    const Outcome outcome =
        recalc(compoundSheet, {L"--packages", L"packages.csv", L"--save-packages=again.csv"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, HasSubstr("A1"));
    EXPECT_EQ(program_.read(L"again.csv"), program_.read(L"packages.csv")); // the state was loaded
}
TEST_F(PackagesTest, MayBeSavedOverTheTableTheyCameFrom) {
    const std::string table = save(L"abc");
    const Outcome outcome =
        recalc("1\r\n", {L"--packages", L"packages.csv", L"--package", L"Oil=Tarnwick.PengRobinson.1",
                         L"--save-packages", L"packages.csv"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(program_.read(L"packages.csv"), HasSubstr("Oil,"));
    EXPECT_THAT(program_.read(L"packages.csv"), HasSubstr(table.substr(0, table.size() - 2)));
}
TEST_F(PackagesTest, WithLongStatesTakeMoreColumns) {
    save(std::wstring(400, L'x')
             .c_str()); // an environment variable takes no 24,000 bytes that do not compress
    std::string row = program_.read(L"packages.csv");
    row.replace(row.rfind(',') + 1, std::string::npos, "6," + std::string(32000, 'A') + ",BBBB\r\n");
    program_.write(L"long.csv", row);
    script(L"IPersistStream=none;IPersistStreamInit=none"); // nothing but the text is kept
    EXPECT_EQ(recalc("1\r\n", {L"--packages=long.csv", L"--save-packages=again.csv"}).exitCode, 0);
    EXPECT_TRUE(program_.read(L"again.csv") == row);
}
TEST_F(PackagesTest, WithForeignNamesAreWrittenForExcel) {
    const Outcome outcome =
        recalc("1\r\n", {L"--package", L"\u00D6l \"1\", hei\u00DF=Tarnwick.PengRobinson.1",
                         L"--save-packages=packages.csv"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(program_.read(L"packages.csv"),
                testing::StartsWith("\xEF\xBB\xBF\"\u00D6l \"\"1\"\", hei\u00DF\","));
    EXPECT_EQ(recalc("1\r\n", {L"--packages=packages.csv"}).exitCode, 0);
}
TEST_F(PackagesTest, NoneMakeAnEmptyTable) {
    EXPECT_EQ(recalc("1\r\n", {L"--save-packages=packages.csv"}).exitCode, 0);
    EXPECT_TRUE(program_.exists(L"packages.csv"));
    EXPECT_EQ(program_.read(L"packages.csv"), "");
    EXPECT_EQ(recalc("1\r\n", {L"--packages=packages.csv"}).exitCode, 0);
}

TEST_F(PackagesTest, CalculateTheSameFromTheirTableAlone) {
    const std::string sheet = "0.3,0.7\r\n"
                              "\"=CapeOpenCompounds(\"\"Gas\"\")\"\r\n"
                              ",,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,\r\n"
                              "\"=CapeOpenCompoundConstant(\"\"Gas\"\",\"\"criticalTemperature\"\")\"\r\n";
    const Outcome first = recalc(sheet, {L"--package", L"Gas=Tarnwick.PengRobinson.1", L"--out=first.csv",
                                         L"--save-packages=packages.csv"});
    EXPECT_EQ(first.errors, "");
    const Outcome second = recalc(sheet, {L"--packages=packages.csv", L"--out=second.csv"});
    EXPECT_EQ(second.errors, "");
    EXPECT_EQ(second.output, first.output);
    EXPECT_EQ(program_.read(L"second.csv"), program_.read(L"first.csv"));
    EXPECT_THAT(first.output, HasSubstr("methane"));
}

TEST_F(PackagesTest, AreNotReadFromAMissingFile) {
    EXPECT_EQ(complaint({L"--packages=none.csv"}),
              "quorvane-sheet: none.csv: the file cannot be read: " +
                  systemText(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) +
                  "; check its name, and whether another program uses it\n");
}
TEST_F(PackagesTest, AreNotReadFromABrokenFile) {
    program_.write(L"packages.csv", "Gas,\"Scripted\r\n");
    EXPECT_EQ(complaint({L"--packages=packages.csv"}),
              "quorvane-sheet: packages.csv: row 1, column 2 (B1): the quote that opens this cell is never "
              "closed; add the closing quote\n");
}
TEST_F(PackagesTest, ThatCannotBeRestoredAreNamedWithTheirRows) {
    const std::string good = save(L"abc");
    program_.write(L"packages.csv", "Gas,Nobody,StandAlonePackage11," + std::string{guid} + "\r\n" + good +
                                        "Oil,Nobody,StandAlonePackage20," + guid + "\r\n,Nobody\r\n");
    EXPECT_EQ(
        complaint({L"--packages=packages.csv"}),
        "quorvane-sheet: packages.csv: row 1: Cannot restore property package from Nobody: Failed to create "
        "property package: " +
            systemText(REGDB_E_CLASSNOTREG) +
            "\n"
            "packages.csv: row 3: Cannot restore property package from Nobody: unknown/unsupported CAPE-OPEN "
            "package manager type. Perhaps this document was stored with a newer version of Quorvane.\n"
            "packages.csv: row 4: Cannot restore property package from Nobody: Excel package name unknown\n");
}
TEST_F(PackagesTest, MayLeaveErrorInformationOfTheirOwn) {
    save(L"abc");
    script(L"state=abc;Initialize=leaves foreign words;Save=leaves foreign words");
    const Outcome outcome = recalc(compoundSheet, {L"--packages=packages.csv", L"--save-packages=again.csv"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(program_.read(L"again.csv"), program_.read(L"packages.csv"));
}
TEST_F(PackagesTest, ThatAreRestoredTakeTheirNames) {
    save(L"abc");
    EXPECT_EQ(
        complaint({L"--packages=packages.csv", L"--package", L"Gas=Tarnwick.PengRobinson.1"}),
        "quorvane-sheet: the package Gas cannot be attached: A package with the given name already exists in "
        "this workbook\n");
}
TEST_F(PackagesTest, ThatCannotBeSavedLeaveTheOldTable) {
    const std::string old = save(L"abc");
    script(L"Save=0x87654321");
    EXPECT_EQ(
        complaint({L"--packages=packages.csv", L"--save-packages=packages.csv", L"--out=values.csv"}),
        "quorvane-sheet: the packages cannot be saved: Failed to save package Gas: error code 0x87654321\n");
    EXPECT_EQ(program_.read(L"packages.csv"), old);
    EXPECT_FALSE(program_.exists(L"values.csv"));
}
TEST_F(PackagesTest, AreSavedAlsoWhenCellsFail) {
    const Outcome outcome =
        recalc("\"=CapeOpenCompounds(\"\"Oil\"\")\"\r\n",
               {L"--package", L"Gas=Tarnwick.ScriptedPackage.1", L"--save-packages=packages.csv"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(program_.read(L"packages.csv"), HasSubstr("Gas,"));
}
TEST_F(PackagesTest, AreNotWrittenOverOtherFiles) {
    save(L"abc");
    EXPECT_EQ(
        complaint({L"--save-packages=.\\SHEET.csv"}),
        "quorvane-sheet: .\\SHEET.csv: --save-packages would replace the worksheet by its packages; name "
        "another file\n");
    EXPECT_EQ(complaint({L"--save-packages=a.csv", L"--out=a.csv"}),
              "quorvane-sheet: a.csv: --out and --save-packages name the same file; name two\n");
    EXPECT_EQ(complaint({L"--packages=packages.csv", L"--out=packages.csv"}),
              "quorvane-sheet: packages.csv: --out would replace the saved packages by values; name another "
              "file\n");
}

TEST_F(PackagesTest, AreDescribed) {
    save(L"abc");
    const Outcome outcome =
        program_.run({L"info", L"--packages=packages.csv", L"--package", L"A=Tarnwick.PengRobinson.1"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output,
                testing::StartsWith("A\n  Stand-alone CAPE-OPEN 1.1 Property Package\n  Package name: "));
    EXPECT_THAT(outcome.output, HasSubstr("\n\nGas\n  Stand-alone CAPE-OPEN 1.1 Property Package\n"
                                          "  Package name: Scripted package\n"));
    EXPECT_THAT(outcome.output, HasSubstr("  ProdID: Tarnwick.ScriptedPackage.1\n"));
}
TEST_F(PackagesTest, NoneAreDescribedAsNone) {
    const Outcome outcome = program_.run({L"info"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "No packages are attached.\n");
}

} // namespace
} // namespace sheet::cli
