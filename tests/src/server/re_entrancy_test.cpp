// Packages and front ends that call back into the add-in in the middle of a call.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

// Looks at the add-in as soon as it has the services.
class EagerFrontEnd final : public com::implements<com::COMObject, com::RefusedDual<IQuorvaneVSTOContext>> {
  public:
    void* findInterface(REFIID iid) noexcept override {
        return implements::findInterface(iid == IID_IDispatch ? __uuidof(IQuorvaneVSTOContext) : iid);
    }
    HRESULT STDMETHODCALLTYPE SetServices(IQuorvaneVSTOServices* services) noexcept override {
        ++calls;
        com::variant names;
        return services->CapeOpenPackageNames(com::variant::missing(), &names);
    }

    int calls = 0;
};

class ReEntrancy : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
    }
    void edit() {
        VARIANT_BOOL changed = VARIANT_FALSE;
        addIn->EditWorkbookPP(book(), com::makeBstr(L"P").get(), &changed);
    }
};

TEST_F(ReEntrancy, ACalculationInsideACalculationIsRefused) {
    std::string inner;
    package->hook("CalcEquilibrium", [&](scripted::Call& call) {
        inner = flash({});
        return call.healthy();
    });
    const std::string outer = flash({});
    EXPECT_EQ(inner, "Property package is already calculating");
    package->recovers("CalcEquilibrium");
    EXPECT_EQ(outer, flash({})) << "the outer calculation is not disturbed";
}
TEST_F(ReEntrancy, APackageEditedDuringItsCalculationFailsIt) {
    package->hook("CalcEquilibrium", [&](scripted::Call& call) {
        edit();
        return call.healthy();
    });
    EXPECT_EQ(flash({}), "Property package was changed during the calculation");
    package->recovers("CalcEquilibrium");
    EXPECT_NE(flash({}), "Property package was changed during the calculation");
}
TEST_F(ReEntrancy, APackageEditedWhileItTakesTheMaterialFailsTheCall) {
    package->hook("SetMaterial", [&](scripted::Call& call) {
        edit();
        return call.healthy();
    });
    EXPECT_EQ(flash({}), "Property package was changed during the calculation");
}
TEST_F(ReEntrancy, AShutdownDuringACalculationEndsInAResult) {
    package->hook("CalcEquilibrium", [&](scripted::Call& call) {
        events->OnBeginShutdown(nullptr);
        return call.healthy();
    });
    EXPECT_NE(flash({}), "");
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(ReEntrancy, ANameThatIsTakenWhileItsPackageStartsStaysWithWhoTookIt) {
    bool isInside = false;
    HRESULT inner = E_UNEXPECTED;
    package->hook("Initialize", [&](scripted::Call& call) {
        if (!isInside) {
            isInside = true;
            inner = create(book(), L"Q");
        }
        return call.healthy();
    });
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(create(book(), L"Q"), E_FAIL);
    EXPECT_EQ(inner, S_OK);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: A package with the given name already exists in this workbook");
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "P | Q");
}
TEST_F(ReEntrancy, APackageMayLookAroundInItsWorkbookWhileItIsReleased) {
    std::string names;
    package->hook("Terminate", [&](scripted::Call&) {
        names = show(L"CapeOpenPackageNames");
        return S_OK;
    });
    EXPECT_EQ(addIn->CloseWorkbook(book()), S_OK);
    EXPECT_EQ(names, "No CAPE-OPEN packages are loaded");
}

TEST_F(ReEntrancy, AFrontEndMayCallTheAddInWhileItReceivesTheServices) {
    const auto eager = com::make<EagerFrontEnd>();
    excel->addIns().clear();
    excel->addIns().add(sheet::excel::frontEndName, com::com_ptr<IDispatch>::share(eager.get()));
    events->OnDisconnection(ext_dm_UserClosed, nullptr);
    addIn = AddIn::instance().create();
    events = addIn.tryAs<_IDTExtensibility2>();
    frontEnd->letGo();
    EXPECT_EQ(events->OnConnection(excel->dispatch(), ext_cm_Startup, nullptr, nullptr), S_OK);
    EXPECT_EQ(eager->calls, 1);
}

} // namespace
