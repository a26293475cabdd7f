// The packages of each workbook, as the front end keeps them through the services.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

class Store : public Worksheet {
  protected:
    std::string names(IUnknown* wb) {
        com::variant result;
        EXPECT_EQ(addIn->PackageNames(wb, &result), S_OK);
        return shown(result);
    }
    VARIANT_BOOL edit(const wchar_t* name, HRESULT expected = S_OK) {
        const com::unique_bstr ppName = com::makeBstr(name);
        VARIANT_BOOL changed = VARIANT_TRUE;
        SetErrorInfo(0, nullptr);
        EXPECT_EQ(addIn->EditWorkbookPP(book(), ppName.get(), &changed), expected);
        return changed;
    }
    HRESULT remove(const wchar_t* name) { return addIn->DeleteWorkbookPP(book(), com::makeBstr(name).get()); }

    com::com_ptr<sheet::excel::Workbook> other = com::make<sheet::excel::Workbook>(L"Book2");
};

TEST_F(Store, TheServicesAreHandedToTheFrontEndAtConnection) {
    ASSERT_EQ(frontEnd->handOvers(), 1);
    EXPECT_EQ(frontEnd->services(), addIn.get());
}
TEST_F(Store, TheServicesAreHandedOverOnce) {
    show(L"CapeOpenPackageNames");
    events->OnConnection(excel->dispatch(), ext_cm_Startup, nullptr, nullptr);
    EXPECT_EQ(frontEnd->handOvers(), 1);
}

class LateFrontEnd : public Store {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        // An add-in that was connected before its front end was there.
        events->OnDisconnection(ext_dm_UserClosed, nullptr);
        excel->addIns().clear();
        addIn = AddIn::instance().create();
        events = addIn.tryAs<_IDTExtensibility2>();
        frontEnd->letGo();
        frontEnd = com::make<sheet::excel::FrontEnd>();
        ASSERT_EQ(events->OnConnection(excel->dispatch(), ext_cm_Startup, nullptr, nullptr), S_OK);
    }
};

TEST_F(LateFrontEnd, IsServedByTheNextCallOfPackageNames) {
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No CAPE-OPEN packages are loaded");
    EXPECT_EQ(frontEnd->handOvers(), 0);
    excel->addIns().add(sheet::excel::frontEndName, frontEnd->dispatch());
    show(L"CapeOpenPackageNames");
    EXPECT_EQ(frontEnd->services(), addIn.get());
}
TEST_F(LateFrontEnd, WithoutAnObjectIsPassedOver) {
    excel->addIns().add(sheet::excel::frontEndName);
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No CAPE-OPEN packages are loaded");
}
TEST_F(LateFrontEnd, ThatRefusesIsAskedAgain) {
    frontEnd->refuse(E_FAIL);
    excel->addIns().add(sheet::excel::frontEndName, frontEnd->dispatch());
    show(L"CapeOpenPackageNames");
    EXPECT_EQ(frontEnd->services(), nullptr);
    frontEnd->refuse(S_OK);
    show(L"CapeOpenPackageNames");
    EXPECT_EQ(frontEnd->services(), addIn.get());
}
TEST_F(LateFrontEnd, WhoseObjectIsOfAnotherKindIsAskedAgain) {
    sheet::excel::COMAddIn& entry =
        excel->addIns().add(sheet::excel::frontEndName, com::com_ptr<IDispatch>::share(excel->dispatch()));
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No CAPE-OPEN packages are loaded");
    entry.setObject(frontEnd->dispatch());
    show(L"CapeOpenPackageNames");
    EXPECT_EQ(frontEnd->services(), addIn.get());
    excel->addIns().clear(); // the entry holds Excel, which holds its entries
}

TEST_F(Store, WorkbooksDoNotSeeEachOthersPackages) {
    ASSERT_EQ(create(book(), L"Same"), S_OK);
    ASSERT_EQ(create(other->dispatch(), L"Same"), S_OK);
    ASSERT_EQ(create(other->dispatch(), L"Own"), S_OK);
    EXPECT_EQ(names(book()), "list: Same");
    excel->setActiveWorkbook(other);
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "Own | Same");
}
TEST_F(Store, NamesThatDifferInCaseAreDifferentPackages) {
    ASSERT_EQ(create(book(), L"Pkg"), S_OK);
    ASSERT_EQ(create(book(), L"pkg"), S_OK);
    EXPECT_EQ(scripted::liveObjects(), 2);
}
TEST_F(Store, ATakenNameIsRefusedAndThePackageStays) {
    attach();
    EXPECT_EQ(create(book(), L"P"), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: A package with the given name already exists in this workbook");
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P")), "Vapor | Liquid");
}
TEST_F(Store, APackageThatCannotBeCreatedIsNotEntered) {
    package->fails("Initialize", static_cast<HRESULT>(ECapeLicenceErrorHR), L"no licence");
    EXPECT_EQ(create(book(), L"P"), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Failed to initialized property package: no licence");
    EXPECT_EQ(names(book()), "empty");
}
TEST_F(Store, ServiceFailuresNameTheServicesInterface) {
    package->fails("Initialize", E_FAIL);
    create(book(), L"P");
    com::com_ptr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.put()), S_OK);
    GUID interfaceId{};
    info->GetGUID(&interfaceId);
    EXPECT_TRUE(interfaceId == __uuidof(IQuorvaneVSTOServices));
}
TEST_F(Store, AManagersPackageIsCreatedByItsName) {
    const com::unique_bstr managerName = com::makeBstr(L"Scripted");
    const com::unique_bstr second = com::makeBstr(L"Second");
    const com::unique_bstr name = com::makeBstr(L"P");
    ASSERT_EQ(addIn->CreateWorkbookPP(book(), managerName.get(), scripted::managerInProcess,
                                      PropertyPackageManager11, second.get(), name.get()),
              S_OK);
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P")), "Vapor | Liquid");
}
TEST_F(Store, AWorkbookMustBeGiven) {
    EXPECT_EQ(create(nullptr, L"P"), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Workbook not specified");
}
TEST_F(Store, OutPointersMustBeGiven) {
    EXPECT_EQ(addIn->PackageNames(book(), nullptr), E_POINTER);
    EXPECT_EQ(addIn->EditWorkbookPP(book(), nullptr, nullptr), E_POINTER);
}

TEST_F(Store, APackageThatTheWorkbookDoesNotHaveIsNotEdited) {
    attach();
    EXPECT_EQ(edit(L"Nobody"), VARIANT_FALSE);
    EXPECT_TRUE(package->calls("Edit").empty());
}
TEST_F(Store, AnUnknownPackageIsNotEdited) { EXPECT_EQ(edit(L"Nobody"), VARIANT_FALSE); }
TEST_F(Store, AnEditedPackageIsReadAgain) {
    attach();
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "A1 | B2 | C3");
    package->hook("Edit", [this](scripted::Call&) {
        package->model.compounds[0].id = L"New";
        return S_OK;
    });
    EXPECT_EQ(edit(L"P"), VARIANT_TRUE);
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "New | B2 | C3");
}
TEST_F(Store, AnyOtherSuccessOfAnEditCounts) {
    attach();
    show(L"CapeOpenCompounds", text(L"P"));
    package->hook("Edit", [](scripted::Call&) { return static_cast<HRESULT>(0x00040200); });
    EXPECT_EQ(edit(L"P"), VARIANT_TRUE);
    show(L"CapeOpenCompounds", text(L"P"));
    EXPECT_EQ(package->count("GetCompoundList"), 2U);
}
TEST_F(Store, APackageWithoutAnEditorIsNotReadAgain) {
    attach();
    show(L"CapeOpenCompounds", text(L"P"));
    for (const HRESULT code : {E_NOTIMPL, static_cast<HRESULT>(ECapeNoImplHR)}) {
        package->fails("Edit", code, L"the package's own words");
        edit(L"P", E_FAIL);
        EXPECT_EQ(errorInfo(), "Quorvane.Excel: Property package does not support editing");
    }
    show(L"CapeOpenCompounds", text(L"P"));
    EXPECT_EQ(package->count("GetCompoundList"), 1U);
}
TEST_F(Store, AnEditThatFailsWithASystemCodeShowsTheSystemsText) {
    attach();
    package->fails("Edit", E_ACCESSDENIED, L"not asked for");
    edit(L"P", E_FAIL);
    const std::string shownText = errorInfo();
    wchar_t expected[1024];
    ASSERT_GT(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                             static_cast<DWORD>(E_ACCESSDENIED), LOCALE_USER_DEFAULT, expected, 1024,
                             nullptr),
              0U);
    std::wstring systemText = expected;
    systemText.erase(systemText.find_last_not_of(L"\r\n") + 1);
    EXPECT_EQ(shownText, "Quorvane.Excel: " + scripted::narrow(systemText));
}
TEST_F(Store, APackageMayDeleteItselfWhileItIsEdited) {
    attach();
    package->hook("Edit", [this](scripted::Call&) {
        remove(L"P");
        return S_OK;
    });
    EXPECT_EQ(edit(L"P"), VARIANT_TRUE);
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(Store, WithoutAWorkbookNothingIsEditedDeletedClosedOrListed) {
    EXPECT_EQ(addIn->DeleteWorkbookPP(nullptr, nullptr), E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Workbook not specified");
    EXPECT_EQ(addIn->CloseWorkbook(nullptr), E_FAIL);
    VARIANT_BOOL changed = VARIANT_TRUE;
    EXPECT_EQ(addIn->EditWorkbookPP(nullptr, nullptr, &changed), E_FAIL);
    EXPECT_EQ(changed, VARIANT_FALSE);
}
TEST_F(Store, ACancelledEditChangesNothing) {
    attach();
    show(L"CapeOpenCompounds", text(L"P"));
    package->hook("Edit", [](scripted::Call&) { return S_FALSE; });
    EXPECT_EQ(edit(L"P"), VARIANT_FALSE);
    show(L"CapeOpenCompounds", text(L"P"));
    EXPECT_EQ(package->count("GetCompoundList"), 1U);
}
TEST_F(Store, APackageWithoutAnEditorSaysSo) {
    attach();
    for (const HRESULT code : {E_NOTIMPL, static_cast<HRESULT>(ECapeNoImplHR)}) {
        package->fails("Edit", code);
        EXPECT_EQ(edit(L"P", E_FAIL), VARIANT_FALSE);
        EXPECT_EQ(errorInfo(), "Quorvane.Excel: Property package does not support editing");
    }
    package->omits(__uuidof(ICapeUtilities));
    edit(L"P", E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Property package does not support editing");
}
TEST_F(Store, AnEditThatFailsShowsThePackagesWordsAndReadsAgain) {
    attach();
    show(L"CapeOpenCompounds", text(L"P"));
    package->fails("Edit", static_cast<HRESULT>(ECapeUnknownHR), L"dialog resource missing");
    edit(L"P", E_FAIL);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: dialog resource missing");
    show(L"CapeOpenCompounds", text(L"P"));
    EXPECT_EQ(package->count("GetCompoundList"), 2U);
}

TEST_F(Store, ADeletedPackageIsTerminatedAndGone) {
    attach();
    EXPECT_EQ(remove(L"P"), S_OK);
    EXPECT_EQ(package->count("Terminate"), 1U);
    EXPECT_EQ(scripted::liveObjects(), 0);
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "Invalid package name");
}
TEST_F(Store, DeletingAndClosingTheUnknownSucceeds) {
    EXPECT_EQ(remove(L"Nobody"), S_OK);
    EXPECT_EQ(addIn->CloseWorkbook(other->dispatch()), S_OK);
}
TEST_F(Store, ClosingAWorkbookReleasesItsPackagesOnly) {
    attach();
    ASSERT_EQ(create(other->dispatch(), L"Q"), S_OK);
    EXPECT_EQ(addIn->CloseWorkbook(book()), S_OK);
    EXPECT_EQ(names(book()), "empty");
    EXPECT_EQ(names(other->dispatch()), "list: Q");
    EXPECT_EQ(scripted::liveObjects(), 1);
}
TEST_F(Store, ShutdownReleasesEveryPackage) {
    attach();
    ASSERT_EQ(create(other->dispatch(), L"Q"), S_OK);
    events->OnBeginShutdown(nullptr);
    EXPECT_EQ(scripted::liveObjects(), 0);
    EXPECT_EQ(names(book()), "empty");
    EXPECT_EQ(names(other->dispatch()), "empty");
}
TEST_F(Store, DisconnectionReleasesEveryPackage) {
    attach();
    events->OnDisconnection(ext_dm_UserClosed, nullptr);
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(Store, APackageDeletedDuringItsOwnCalculationLivesUntilTheEnd) {
    attach();
    package->hook("CalcEquilibrium", [this](scripted::Call& c) {
        remove(L"P");
        return c.healthy();
    });
    EXPECT_NE(flash({}), "Invalid package name");
    EXPECT_EQ(scripted::liveObjects(), 0);
}

} // namespace
