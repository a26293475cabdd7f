// The services through IDispatch, as a script calls them: what it finds in its error object when one fails.
#include "com/safe_array.h"
#include "tests/src/server/worksheet.h"

#include <algorithm>
#include <gmock/gmock.h>

using namespace tests;

namespace {

class LateServices : public Worksheet {
  protected:
    /// Calls a service with arguments in their order.
    template <typename... Arguments>
    HRESULT invoke(std::wstring name, com::variant* result, EXCEPINFO* exception, Arguments&&... arguments) {
        std::vector<com::variant> given;
        (given.push_back(std::forward<Arguments>(arguments)), ...);
        std::ranges::reverse(given);
        wchar_t* names[] = {name.data()};
        DISPID member = DISPID_UNKNOWN;
        EXPECT_EQ(addIn->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member), S_OK);
        DISPPARAMS parameters{given.data(), nullptr, static_cast<UINT>(given.size()), 0};
        return addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result,
                             exception, nullptr);
    }
    /// "source: description" of a service that raises an error.
    template <typename... Arguments>
    std::string raised(const wchar_t* name, Arguments&&... arguments) {
        SetErrorInfo(0, nullptr);
        EXCEPINFO exception{};
        com::variant result;
        EXPECT_EQ(invoke(name, &result, &exception, std::forward<Arguments>(arguments)...), DISP_E_EXCEPTION);
        EXPECT_EQ(exception.scode, E_FAIL);
        const com::unique_bstr source{exception.bstrSource};
        const com::unique_bstr description{exception.bstrDescription};
        const com::unique_bstr helpFile{exception.bstrHelpFile};
        return scripted::narrow(com::viewOf(source)) + ": " + scripted::narrow(com::viewOf(description));
    }

    com::variant workbookArgument() { return com::variant::object(workbook->dispatch()); }
    static com::variant noWorkbook() { return com::variant::object(nullptr); }
};

TEST_F(LateServices, AreToldThatAPackageHasNothingToEdit) {
    attach();
    package->fails("Edit", E_NOTIMPL);
    EXPECT_EQ(raised(L"EditWorkbookPP", workbookArgument(), text(L"P")),
              "Quorvane.Excel: Property package does not support editing");
}
TEST_F(LateServices, AreToldInThePackagesWordsThatAnEditFailed) {
    attach();
    package->fails("Edit", static_cast<HRESULT>(ECapeUnknownHR), L"the data base is locked");
    EXPECT_EQ(raised(L"EditWorkbookPP", workbookArgument(), text(L"P")),
              "Quorvane.Excel: the data base is locked");
}
TEST_F(LateServices, AreToldThatATableHasTheWrongShape) {
    EXPECT_EQ(raised(L"Depersist", workbookArgument(), number(1.0)),
              "Quorvane.Excel: Expected an matrix of type string");
    EXPECT_EQ(raised(L"Depersist", workbookArgument(), com::textArray(std::vector<std::wstring>{L"P"})),
              "Quorvane.Excel: unexpected dimension; 2-dimensional array expected");
}
TEST_F(LateServices, AreToldThatAWorkbookIsMissing) {
    for (const wchar_t* name : {L"Persist", L"PackageNames", L"CloseWorkbook"}) {
        EXPECT_EQ(raised(name, noWorkbook()), "Quorvane.Excel: Workbook not specified");
    }
    EXPECT_EQ(raised(L"Depersist", noWorkbook(), com::variant{}), "Quorvane.Excel: Workbook not specified");
}
TEST_F(LateServices, AreToldThatThereIsNoSuchPackage) {
    for (const wchar_t* name :
         {L"CompoundNames", L"CompoundConstantNames", L"TemperatureDependentPropertyNames", L"PhaseNames",
          L"SinglePhasePropertyNames", L"TwoPhasePropertyNames"}) {
        EXPECT_EQ(raised(name, workbookArgument(), text(L"Nobody")), "Quorvane.Excel: No such package");
    }
    EXPECT_EQ(raised(L"GetPhaseType", workbookArgument(), text(L"Nobody"), text(L"Vapor")),
              "Quorvane.Excel: No such package");
}
TEST_F(LateServices, GetTheTableOfAPackageThatCannotBeSavedAllTheSame) {
    attach();
    package->fails("Save", static_cast<HRESULT>(0x87654321));
    com::variant table;
    EXCEPINFO exception{};
    EXPECT_EQ(invoke(L"Persist", &table, &exception, workbookArgument()), S_OK);
    EXPECT_EQ(exception.bstrDescription, nullptr);
    EXPECT_EQ(table.vt, VT_ARRAY | VT_BSTR);
}
// Automation has no VARIANT for a class identifier: packages are created through the vtable only. Wine says
// that it is not implemented, Windows that the type does not match.
TEST_F(LateServices, CannotCreateAPackage) {
    EXCEPINFO exception{};
    com::variant result;
    const HRESULT code =
        invoke(L"CreateWorkbookPP", &result, &exception, workbookArgument(), text(L"Scripted"),
               text(L"{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A1}"), com::variant{0L}, text(L""), text(L"P"));
    EXPECT_THAT(code, testing::AnyOf(E_NOTIMPL, DISP_E_TYPEMISMATCH));
    EXPECT_EQ(exception.bstrDescription, nullptr);
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No CAPE-OPEN packages are loaded");
}

} // namespace
