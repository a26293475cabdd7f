// Editing a package of a workbook, from the front end's service to the package's own window and back into
// the cells: a second thread operates the window while the service waits. The bundled package must be
// registered.
#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/dialog/controls.h"
#include "tests/packages/peng_robinson/dialog/driven_dialog.h"
#include "tests/src/server/worksheet.h"

#include "com/safe_array.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

using namespace tests;
using peng_robinson::test::drive;
using peng_robinson::test::DrivenDialog;

namespace {

struct Kind {
    const char* name;
    GUID clsid;
    CAPEOPENPackageManagerType type;
    const wchar_t* package; ///< its name within the manager; empty: none
};

const Kind kinds[] = {
    {"StandAlone", peng_robinson::packageClsid, StandAlonePackage11, L""},
    {"OfTheManager", peng_robinson::managerClsid, PropertyPackageManager11, L"Refinery light ends"},
    {"OfADefinition", peng_robinson::managerClsid, PropertyPackageManager11, L"my gas"},
};

class WorkbookEditing : public Worksheet, public ::testing::WithParamInterface<Kind> {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(folder);
        std::ofstream{folder / L"my gas.txt"}
            << "[compounds]\nname,formula,CAS number,molecular weight,critical temperature,critical pressure,"
               "acentric factor,normal boiling point,cp0\n"
               "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36\n"
               "ethane,C2H6,74-84-0,30.06904,305.322,4872200,0.0995,184.569,53\n"
               "propane,C3H8,74-98-6,44.09562,369.89,4251200,0.1521,231.036,74\n";
        SetEnvironmentVariableW(L"PENGROBINSON_PACKAGES", folder.c_str());
        Worksheet::SetUp();
        const com::unique_bstr nobody = com::makeBstr(L""), name = com::makeBstr(L"Gas"),
                               managed = com::makeBstr(GetParam().package);
        ASSERT_EQ(addIn->CreateWorkbookPP(book(), nobody.get(), GetParam().clsid, GetParam().type,
                                          managed.get(), name.get()),
                  S_OK)
            << errorInfo();
    }
    void TearDown() override {
        Worksheet::TearDown();
        SetEnvironmentVariableW(L"PENGROBINSON_PACKAGES", nullptr);
        std::filesystem::remove_all(folder);
    }

    /// Has the front end edit the package, and tells what the service says of it.
    bool edit(const std::function<void(const DrivenDialog&)>& operate) {
        const com::unique_bstr name = com::makeBstr(L"Gas");
        VARIANT_BOOL changed = 7;
        EXPECT_EQ(drive([&] { return addIn->EditWorkbookPP(book(), name.get(), &changed); }, operate), S_OK);
        EXPECT_TRUE(changed == VARIANT_TRUE || changed == VARIANT_FALSE);
        return changed == VARIANT_TRUE;
    }
    static void typeParameter(const DrivenDialog& window, const wchar_t* k) {
        const std::vector<std::wstring> pairs = window.lines(CONTROL_PAIRS);
        const auto found = std::ranges::find_if(
            pairs, [](const std::wstring& line) { return line.starts_with(L"methane - ethane\t"); });
        ASSERT_NE(found, pairs.end());
        window.select(CONTROL_PAIRS, *found);
        window.type(CONTROL_PARAMETER, k);
    }
    static void removePropane(const DrivenDialog& window) {
        window.select(CONTROL_CHOSEN, L"propane");
        window.press(CONTROL_REMOVE);
    }
    static void press(const DrivenDialog& window, int button) {
        window.press(button);
        EXPECT_TRUE(window.closes());
    }

    std::vector<std::wstring> compounds() {
        com::variant names;
        const com::unique_bstr gas = com::makeBstr(L"Gas");
        EXPECT_EQ(addIn->CompoundNames(active->dispatch(), gas.get(), &names), S_OK);
        std::vector<std::wstring> result;
        if (names.vt == (VT_ARRAY | VT_BSTR)) {
            for (const BSTR name : com::array_lock<BSTR>{names.parray}.elements()) {
                result.emplace_back(com::viewOf(name));
            }
        }
        return result;
    }
    /// The compounds, and a flash of methane and ethane at which both phases are there.
    std::string cellsNow() {
        const std::vector<std::wstring> names = compounds();
        std::vector<com::variant> amounts;
        amounts.reserve(names.size());
        for (const std::wstring& name : names) {
            amounts.push_back(number(name == L"methane" || name == L"ethane" ? 0.5 : 0.0));
        }
        std::vector<com::variant> arguments;
        arguments.push_back(text(L"Gas"));
        arguments.push_back(range(com::make<sheet::excel::Range>(1U, names.size(), std::move(amounts))));
        arguments.push_back(text(L"temperature"));
        arguments.push_back(number(200.0));
        arguments.push_back(text(L"pressure"));
        arguments.push_back(number(2e6));
        return show(L"CapeOpenCompounds", text(L"Gas")) + "; " +
               exactly(call(L"CapeOpenPhaseEquilibrium", std::move(arguments)));
    }
    /// The numbers with all of their digits.
    static std::string exactly(const com::variant& cells) {
        if (cells.vt != (VT_ARRAY | VT_VARIANT) && cells.vt != (VT_ARRAY | VT_R8)) {
            ADD_FAILURE() << "no numbers: " << shown(cells);
            return {};
        }
        std::ostringstream digits;
        digits << std::setprecision(17);
        if (cells.vt == (VT_ARRAY | VT_R8)) {
            for (const double value : com::array_lock<double>{cells.parray}.elements()) {
                digits << value << ' ';
            }
        } else {
            for (const VARIANT& value : com::array_lock<VARIANT>{cells.parray}.elements()) {
                EXPECT_EQ(value.vt, VT_R8) << shown(value);
                digits << value.dblVal << ' ';
            }
        }
        return digits.str();
    }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / L"Workbook editing packages test";
    com::com_ptr<sheet::excel::Workbook> other = com::make<sheet::excel::Workbook>(L"Book2");
    com::com_ptr<sheet::excel::Workbook> active = workbook;
};

TEST_P(WorkbookEditing, ChangedParameterChangesTheEquilibrium) {
    const std::string before = cellsNow();
    EXPECT_TRUE(edit([](const DrivenDialog& window) {
        typeParameter(window, L"0.05");
        press(window, IDOK);
    }));
    EXPECT_NE(cellsNow(), before);
    EXPECT_TRUE(edit([](const DrivenDialog& window) {
        window.select(CONTROL_PAIRS, L"methane - ethane\t0.05 *");
        window.press(CONTROL_USE_TABULATED);
        press(window, IDOK);
    }));
    EXPECT_EQ(cellsNow(), before);
}

TEST_P(WorkbookEditing, RemovedCompoundIsGone) {
    std::vector<std::wstring> expected = compounds();
    EXPECT_EQ(std::erase(expected, L"propane"), 1U);
    EXPECT_TRUE(edit([](const DrivenDialog& window) {
        removePropane(window);
        press(window, IDOK);
    }));
    EXPECT_EQ(compounds(), expected);
}

TEST_P(WorkbookEditing, EditedPackageIsTheSameInAnotherWorkbook) {
    const std::string before = cellsNow();
    EXPECT_TRUE(edit([](const DrivenDialog& window) {
        typeParameter(window, L"0.05");
        removePropane(window);
        press(window, IDOK);
    }));
    const std::string edited = cellsNow();
    EXPECT_NE(edited, before);
    com::variant saved;
    ASSERT_EQ(addIn->Persist(book(), &saved), S_OK);
    ASSERT_EQ(addIn->CloseWorkbook(book()), S_OK);
    SetErrorInfo(0, nullptr);
    ASSERT_EQ(addIn->Depersist(other->dispatch(), saved), S_OK);
    EXPECT_EQ(errorInfo(), "");
    active = other;
    excel->setActiveWorkbook(active);
    EXPECT_EQ(cellsNow(), edited);
}

TEST_P(WorkbookEditing, CancelledEditLeavesTheCells) {
    const std::string before = cellsNow();
    EXPECT_FALSE(edit([](const DrivenDialog& window) {
        typeParameter(window, L"0.05");
        removePropane(window);
        press(window, IDCANCEL);
    }));
    EXPECT_EQ(cellsNow(), before);
}

TEST_P(WorkbookEditing, OkWithoutAChangeLeavesTheCells) {
    const std::string before = cellsNow();
    EXPECT_TRUE(edit([](const DrivenDialog& window) { press(window, IDOK); }));
    EXPECT_EQ(cellsNow(), before);
}

INSTANTIATE_TEST_SUITE_P(Package, WorkbookEditing, ::testing::ValuesIn(kinds),
                         [](const auto& information) { return std::string{information.param.name}; });

} // namespace
