// Saving and restoring the packages of a workbook, as the front end does it.
#include "com/safe_array.h"
#include "tests/src/server/worksheet.h"

#include <gmock/gmock.h>

using namespace tests;

namespace {

class Persistence : public Worksheet {
  protected:
    com::variant persist(IUnknown* wb) {
        com::variant table;
        EXPECT_EQ(addIn->Persist(wb, &table), S_OK);
        return table;
    }
    /// A table with one row of these cells.
    static com::variant table(const std::vector<std::wstring>& cells) {
        com::unique_safearray array = com::makeMatrix(VT_BSTR, 1, cells.size());
        {
            const com::array_lock<BSTR> lock{array.get()};
            for (std::size_t i = 0; i < cells.size(); ++i) {
                lock.elements()[i] = com::makeBstr(cells[i]).release();
            }
        }
        return com::variant::array(std::move(array), VT_BSTR);
    }

    com::com_ptr<sheet::excel::Workbook> other = com::make<sheet::excel::Workbook>(L"Book2");
};

TEST_F(Persistence, AWorkbookWithoutPackagesHasNothingToKeep) { EXPECT_EQ(shown(persist(book())), "empty"); }
TEST_F(Persistence, PackagesAreWrittenAsTexts) {
    attach();
    package->model.state = "abc";
    EXPECT_EQ(shown(persist(book())),
              "P | Scripted | StandAlonePackage11 | {7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A1} | \"\" | YWJj");
}
TEST_F(Persistence, PackagesAreRestoredIntoAnotherWorkbook) {
    attach();
    package->model.state = "abc";
    const com::variant saved = persist(book());
    package->model.state.clear();
    ASSERT_EQ(addIn->Depersist(other->dispatch(), saved), S_OK);
    EXPECT_EQ(package->model.state, "abc");
    excel->setActiveWorkbook(other);
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P")), "Vapor | Liquid");
}
TEST_F(Persistence, ScriptsPassTheTableByReference) {
    attach();
    com::variant saved = persist(book());
    addIn->CloseWorkbook(book());
    wchar_t name[] = L"Depersist";
    wchar_t* names[] = {name};
    DISPID member = 0;
    ASSERT_EQ(addIn->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member), S_OK);
    VARIANT given[2] = {};
    given[0].vt = VT_BYREF | VT_VARIANT;
    given[0].pvarVal = &saved;
    given[1].vt = VT_UNKNOWN;
    given[1].punkVal = book();
    DISPPARAMS parameters{given, nullptr, 2, 0};
    EXPECT_EQ(addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                            nullptr, nullptr),
              S_OK);
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "P");
}
TEST_F(Persistence, WhatIsNoTableIsRefused) {
    EXPECT_EQ(addIn->Depersist(book(), number(1.0)), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Expected an matrix of type string");
    const com::variant list = com::textArray(std::vector<std::wstring>{L"P"});
    EXPECT_EQ(addIn->Depersist(book(), list), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: unexpected dimension; 2-dimensional array expected");
}
// No test program has a screen, so that the message box ends at once.
TEST_F(Persistence, ARowThatCannotBeRestoredIsLeftInTheErrorInformation) {
    EXPECT_EQ(addIn->Depersist(book(), table({L"P", L"Scripted", L"StandAlonePackage11", L"?"})), S_OK);
    EXPECT_EQ(errorInfo(),
              "Quorvane.Excel: Cannot restore property package from Scripted: invalid GUID string");
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No CAPE-OPEN packages are loaded");
}
TEST_F(Persistence, APackageThatCannotBeSavedIsLeftInTheErrorInformation) {
    attach();
    package->fails("Save", static_cast<HRESULT>(0x87654321));
    persist(book());
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Failed to save package P: error code 0x87654321");
}
TEST_F(Persistence, WhatOtherPackagesLeaveThereDoesNotHideIt) {
    attach(L"A");
    attach(L"B");
    package->hook("Save", [this](scripted::Call& call) {
        scripted::leaveErrorInformation(L"foreign words");
        return package->count("Save") == 1 ? static_cast<HRESULT>(0x87654321) : call.healthy();
    });
    persist(book());
    EXPECT_THAT(errorInfo(),
                testing::AnyOf("Quorvane.Excel: Failed to save package A: error code 0x87654321",
                               "Quorvane.Excel: Failed to save package B: error code 0x87654321"));
}
TEST_F(Persistence, AWorkbookMustBeGiven) {
    com::variant saved;
    EXPECT_EQ(addIn->Persist(nullptr, &saved), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Workbook not specified");
    EXPECT_EQ(addIn->Depersist(nullptr, com::variant{}), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Workbook not specified");
    EXPECT_EQ(addIn->Persist(book(), nullptr), E_POINTER);
}

} // namespace
