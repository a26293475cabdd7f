// A worksheet keeps its values when its packages travel in a file, edited parameters and all.
#include "packages/peng_robinson/state/state.h"
#include "src/workbook/saved_state/state_text.h"
#include "tests/sheet/cli/program.h"

#include <gmock/gmock.h>

namespace sheet::cli {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::size_t nitrogen = 0, methane = 3, ethane = 4; // in the built-in catalogue

constexpr const char* gasSheet =
    "0.7\r\n0.1\r\n0.2\r\n"
    "\"=CapeOpenCompounds(\"\"Gas\"\",\"\"horizontal\"\")\"\r\n"
    "\"=CapeOpenMixtureProperty(\"\"Gas\"\",\"\"enthalpy\"\",\"\"Vapor\"\",200,3000000,A1:A3)\"\r\n"
    "\"=CapeOpenPhaseEquilibrium(\"\"Gas\"\",A1:A3,\"\"temperature\"\",180,\"\"pressure\"\",3000000)\"\r\n";

class EditedPackageTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        ASSERT_EQ(callExport(L"Quorvane.dll", "DllRegisterServer"), S_OK);
        ASSERT_EQ(callExport(L"PengRobinson.dll", "DllRegisterServer"), S_OK);
    }

    /// The row of a package of methane, nitrogen and ethane with these binary parameters.
    static std::string rowOf(std::map<peng_robinson::CompoundPair, double> changed) {
        const peng_robinson::Configuration gas{peng_robinson::builtInCatalogue(),
                                               {{methane, nitrogen, ethane}, std::move(changed)}};
        quorvane::InflationAllowance allowance;
        const std::wstring state = quorvane::stateTextOf(peng_robinson::writeState(gas), allowance);
        return "Gas,Peng-Robinson,StandAlonePackage11,{481616A8-47AD-4A42-BE09-E48AFDFC9868},," +
               std::string{state.begin(), state.end()} + "\r\n";
    }
    /// The calculated cells; the packages are written again.
    std::string calculate(const wchar_t* packages, const wchar_t* savedPackages) {
        const Outcome outcome = program_.run({L"recalc", L"sheet.csv", L"--packages", packages,
                                              L"--save-packages", savedPackages, L"--out", L"values.csv"});
        EXPECT_EQ(outcome.errors, "");
        EXPECT_EQ(outcome.exitCode, 0);
        return program_.read(L"values.csv");
    }

    Program program_;
};

TEST_F(EditedPackageTest, GivesTheSameCellsInTheNextRun) {
    const std::string edited = rowOf({{{nitrogen, methane}, 0.2}, {{methane, ethane}, -0.1}});
    program_.write(L"sheet.csv", gasSheet);
    program_.write(L"edited.csv", edited);
    program_.write(L"plain.csv", rowOf({}));

    const std::string cells = calculate(L"edited.csv", L"saved.csv");
    EXPECT_THAT(cells, HasSubstr("methane,nitrogen,ethane"));
    EXPECT_THAT(cells, Not(HasSubstr("oxygen")));
    EXPECT_EQ(program_.read(L"saved.csv"), edited);
    program_.write(L"edited.csv", {}); // the saved file alone is left
    EXPECT_EQ(calculate(L"saved.csv", L"again.csv"), cells);
    EXPECT_EQ(program_.read(L"again.csv"), edited);
    EXPECT_NE(calculate(L"plain.csv", L"again.csv"), cells) << "the edited parameters must matter";
}

} // namespace
} // namespace sheet::cli
