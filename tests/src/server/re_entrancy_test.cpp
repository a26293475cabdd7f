// Packages and front ends that call back into the add-in in the middle of a call.
#include "tests/src/server/worksheet.h"

#include <functional>

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

// A cell that runs a macro while it is read.
class MacroCell final : public com::implements<com::COMObject, ExcelRange> {
  public:
    MacroCell(double value, std::function<void()> macro) : value_{value}, macro_{std::move(macro)} {}

    void* findInterface(REFIID iid) noexcept override {
        return implements::findInterface(iid == IID_IDispatch ? __uuidof(ExcelRange) : iid);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) noexcept override {
        *ids = DISPID_VALUE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) noexcept override {
        macro_();
        *result = com::variant{value_}.release();
        return S_OK;
    }

  private:
    double value_;
    std::function<void()> macro_;
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
    /// The number of the third compound, or second phase, in a cell whose macro leaves the package one of
    /// each.
    com::variant numberOfTheLast(double number) {
        const auto cell = com::make<MacroCell>(number, [this] {
            package->compounds({{L"A1", L"Alpha", L"", 300.0, 10.0, L""}});
            package->phases({{L"Vapor", L"Vapor"}});
            edit();
        });
        return com::variant::object(static_cast<ExcelRange*>(cell.get()));
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
TEST_F(ReEntrancy, ACompoundThatIsGoneWhenItsCellIsReadFailsTheCall) {
    const std::string changed = "Property package was changed during the calculation";
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P"), omitted(), numberOfTheLast(3)), changed);
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "A1");
}
TEST_F(ReEntrancy, APhaseThatIsGoneWhenItsCellIsReadFailsTheCall) {
    const std::string changed = "Property package was changed during the calculation";
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P"), omitted(), numberOfTheLast(2)), changed);
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P")), "Vapor");
}
TEST_F(ReEntrancy, AConstantOfACompoundThatIsGoneWhenItsCellIsReadFailsTheCall) {
    EXPECT_EQ(show(L"CapeOpenCompoundConstant", text(L"P"), text(L"criticalTemperature"), omitted(),
                   omitted(), numberOfTheLast(3)),
              "Property package was changed during the calculation");
}
TEST_F(ReEntrancy, AFlashWhoseCompositionEditsThePackageIsRefused) {
    EXPECT_EQ(flash({.composition = numberOfTheLast(1.0)}),
              "Unexpected number of values for overall composition");
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
