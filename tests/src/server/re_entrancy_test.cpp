// Packages and front ends that call back into the add-in in the middle of a call.
#include "tests/src/server/worksheet.h"

#include <functional>
#include <utility>

using namespace tests;

namespace {

constexpr const char* changedMeanwhile = "Property package was changed during the calculation";

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
    MacroCell(com::variant value, std::function<void()> macro)
        : value_{std::move(value)}, macro_{std::move(macro)} {}

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
        *result = com::variant::copyOf(value_).release();
        return S_OK;
    }

  private:
    com::variant value_;
    std::function<void()> macro_;
};

class ReEntrancy : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
        package->model.twoPhase.push_back({L"kvalue.DmolFraction", 2, false});
    }
    void edit() {
        VARIANT_BOOL changed = VARIANT_FALSE;
        addIn->EditWorkbookPP(book(), com::makeBstr(L"P").get(), &changed);
    }
    /// The number of the third compound, or second phase, in a cell whose macro leaves the package one of
    /// each.
    com::variant numberOfTheLast(double number) {
        return macroCell(com::variant{number}, [this] { leaveOneOfEach(); });
    }
    static com::variant macroCell(com::variant value, std::function<void()> macro) {
        const auto cell = com::make<MacroCell>(std::move(value), std::move(macro));
        return com::variant::object(static_cast<ExcelRange*>(cell.get()));
    }
    std::string mixture(const wchar_t* property, double T, com::variant orientation,
                        com::variant transposed = omitted(), com::variant basis = omitted()) {
        return show(L"CapeOpenMixtureProperty", text(L"P"), text(property), text(L"Vapor"), number(T),
                    number(1e5), cells({1.0, 1.0, 2.0}), omitted(), std::move(basis), std::move(orientation),
                    std::move(transposed));
    }
    std::string twoPhase(const wchar_t* property, double T, com::variant orientation,
                         com::variant derivativePhase = omitted()) {
        return show(L"CapeOpenTwoPhaseProperty", text(L"P"), text(property), text(L"Vapor"), text(L"Liquid"),
                    number(T), number(1e5), cells({1.0, 1.0, 2.0}), cells({2.0, 1.0, 1.0}), omitted(),
                    std::move(orientation), std::move(derivativePhase));
    }
    /// The number 1 in a cell whose macro has the package calculate other values, more and fewer of them,
    /// with another material if it edits the package.
    com::variant calculating(bool edits) {
        const auto cell = com::make<MacroCell>(number(1.0), [this, edits] {
            if (edits) {
                edit();
            }
            for (const wchar_t* property :
                 {L"fugacityCoefficient", L"diffusionCoefficient", L"enthalpy", L"fugacityCoefficient"}) {
                EXPECT_NE(mixture(property, 500.0, number(1)), "");
            }
            EXPECT_NE(mixture(L"enthalpy.DmolFraction", 500.0, number(1), omitted(), text(L"mass")), "");
            EXPECT_NE(twoPhase(L"kvalue.DmolFraction", 500.0, number(1)), "");
            EXPECT_NE(twoPhase(L"kvalue", 500.0, number(1)), "");
        });
        return com::variant::object(static_cast<ExcelRange*>(cell.get()));
    }
    /// `calculate` is given the number 1 for two arguments, then each as such a cell.
    template <typename Calculate>
    void expectSame(Calculate calculate) {
        const std::string expected = calculate(number(1), number(1));
        for (const bool edits : {false, true}) {
            EXPECT_EQ(calculate(calculating(edits), calculating(edits)), expected) << edits;
        }
    }
    void leaveOneOfEach() {
        package->compounds({{L"A1", L"Alpha", L"", 300.0, 10.0, L""}});
        package->phases({{L"Vapor", L"Vapor"}});
        edit();
    }
    std::string twoPhaseOf(com::variant composition1, com::variant composition2) {
        return show(L"CapeOpenTwoPhaseProperty", text(L"P"), text(L"kvalue"), text(L"Vapor"), text(L"Liquid"),
                    number(300.0), number(1e5), std::move(composition1), std::move(composition2));
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
    EXPECT_EQ(flash({}), changedMeanwhile);
    package->recovers("CalcEquilibrium");
    EXPECT_NE(flash({}), changedMeanwhile);
}
TEST_F(ReEntrancy, APackageEditedWhileItTakesTheMaterialFailsTheCall) {
    package->hook("SetMaterial", [&](scripted::Call& call) {
        edit();
        return call.healthy();
    });
    EXPECT_EQ(flash({}), changedMeanwhile);
}
TEST_F(ReEntrancy, ACompoundThatIsGoneWhenItsCellIsReadFailsTheCall) {
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P"), omitted(), numberOfTheLast(3)), changedMeanwhile);
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "A1");
}
TEST_F(ReEntrancy, APhaseThatIsGoneWhenItsCellIsReadFailsTheCall) {
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P"), omitted(), numberOfTheLast(2)), changedMeanwhile);
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P")), "Vapor");
}
TEST_F(ReEntrancy, AConstantOfACompoundThatIsGoneWhenItsCellIsReadFailsTheCall) {
    EXPECT_EQ(show(L"CapeOpenCompoundConstant", text(L"P"), text(L"criticalTemperature"), omitted(),
                   omitted(), numberOfTheLast(3)),
              changedMeanwhile);
}
TEST_F(ReEntrancy, AFlashWhoseCompositionEditsThePackageIsRefused) {
    EXPECT_EQ(flash({.composition = numberOfTheLast(1.0)}),
              "Unexpected number of values for overall composition");
}
TEST_F(ReEntrancy, AListIsThatOfItsOwnCellWhateverTheCellOfTheOrientationCalculates) {
    expectSame([&](com::variant orientation, const com::variant&) {
        return mixture(L"fugacityCoefficient", 300.0, std::move(orientation));
    });
}
TEST_F(ReEntrancy, AMatrixIsThatOfItsOwnCellWhateverTheCellOfTheTranspositionCalculates) {
    expectSame([&](com::variant, com::variant transposed) {
        return mixture(L"diffusionCoefficient", 300.0, number(Orientation_Matrix), std::move(transposed));
    });
}
TEST_F(ReEntrancy, AConvertedListIsThatOfItsOwnCellWhateverTheCellOfTheOrientationCalculates) {
    const auto converted = [&](com::variant orientation) {
        // Only the first such conversion of a package succeeds.
        addIn->DeleteWorkbookPP(book(), com::makeBstr(L"P").get());
        attach();
        return mixture(L"enthalpy.DmolFraction", 300.0, std::move(orientation), omitted(), text(L"mass"));
    };
    const std::string expected = converted(number(1));
    for (const bool edits : {false, true}) {
        EXPECT_EQ(converted(calculating(edits)), expected) << edits;
    }
}
TEST_F(ReEntrancy, ATwoPhaseListIsThatOfItsOwnCellWhateverTheCellOfTheOrientationCalculates) {
    expectSame([&](com::variant orientation, const com::variant&) {
        return twoPhase(L"kvalue", 300.0, std::move(orientation));
    });
}
TEST_F(ReEntrancy, ATwoPhaseDerivativeIsThatOfItsOwnCellWhateverTheCellOfThePhaseCalculates) {
    expectSame([&](com::variant derivativePhase, const com::variant&) {
        return twoPhase(L"kvalue.DmolFraction", 300.0, number(Orientation_Horizontal),
                        std::move(derivativePhase));
    });
}
TEST_F(ReEntrancy, AFlashWhoseOptionsEditThePackageFailsTheCall) {
    // The composition has been counted by then; on mass basis every value needs a molecular weight.
    EXPECT_EQ(flash({.basis = text(L"mass"),
                     .options = macroCell(text(L"noPressure"), [this] { leaveOneOfEach(); })}),
              changedMeanwhile);
}
TEST_F(ReEntrancy, ATwoPhasePropertyWhoseSecondCompositionEditsThePackageFailsTheCall) {
    const auto editAndRead = [this] {
        leaveOneOfEach();
        show(L"CapeOpenCompounds", text(L"P"));
    };
    EXPECT_EQ(twoPhaseOf(cells({1.0, 1.0, 2.0}), macroCell(number(1.0), editAndRead)), changedMeanwhile);
}
TEST_F(ReEntrancy, APackageEditedWhileItListsItsPhasesFailsTheCallOnly) {
    const std::string undisturbed = flash({});
    edit();
    bool edited = false;
    package->hook("GetPhaseList", [&](scripted::Call& call) {
        if (!std::exchange(edited, true)) {
            edit();
        }
        return call.healthy();
    });
    EXPECT_EQ(flash({}), changedMeanwhile);
    EXPECT_EQ(flash({}), undisturbed) << "with all compounds and phases";
}
TEST_F(ReEntrancy, APackageEditedWhenAskedWhetherItTakesAMaterialFailsTheCallOnly) {
    const std::string undisturbed = flash({});
    edit();
    bool edited = false;
    package->whenAsked(__uuidof(ICapeThermoMaterialContext), [&] {
        if (!std::exchange(edited, true)) {
            edit();
        }
    });
    EXPECT_EQ(flash({}), changedMeanwhile);
    EXPECT_EQ(flash({}), undisturbed);
}
TEST_F(ReEntrancy, AConstantOfOneCompoundOfAPackageThatIsEditedMeanwhileFailsTheCall) {
    package->hook("GetCompoundConstant", [&](scripted::Call& call) {
        edit();
        return call.healthy();
    });
    EXPECT_EQ(show(L"CapeOpenCompoundConstant", text(L"P"), text(L"idealGasGibbsFreeEnergyOfFormationAt25C"),
                   text(L"mass"), omitted(), number(1)),
              changedMeanwhile);
}
TEST_F(ReEntrancy, ATemperatureDependentPropertyOfOneCompoundOfAPackageThatIsEditedMeanwhileFailsTheCall) {
    package->hook("GetTDependentProperty", [&](scripted::Call& call) {
        edit();
        return call.healthy();
    });
    EXPECT_EQ(show(L"CapeOpenTemperatureDependentProperty", text(L"P"), text(L"idealGasEnthalpy"),
                   number(300.0), text(L"mass"), omitted(), number(1)),
              changedMeanwhile);
}

// A package that asks for a list whenever it gives that list would never come to an end.
struct AskedFor {
    const char* method;
    HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*list)(IUnknown*, BSTR, VARIANT*);
};
void PrintTo(const AskedFor& asked, std::ostream* out) { *out << asked.method; }

class ListInsideTheList : public ReEntrancy, public testing::WithParamInterface<AskedFor> {};

TEST_P(ListInsideTheList, IsRefused) {
    const auto& [method, list] = GetParam();
    const auto ask = [&, list = list] {
        com::variant names;
        SetErrorInfo(0, nullptr);
        return (addIn.get()->*list)(book(), com::makeBstr(L"P").get(), &names);
    };
    std::string innermost;
    package->hook(method, [&](scripted::Call& call) {
        if (FAILED(ask())) {
            innermost = errorInfo();
        }
        return call.healthy();
    });
    EXPECT_EQ(ask(), S_OK);
    EXPECT_EQ(innermost, "Quorvane.Excel: Property package is already calculating");
    EXPECT_EQ(package->count(method), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ListInsideTheList,
    testing::Values(
        AskedFor{"GetCompoundList", &IQuorvaneVSTOServices::CompoundNames},
        AskedFor{"GetPhaseList", &IQuorvaneVSTOServices::PhaseNames},
        AskedFor{"GetConstPropList", &IQuorvaneVSTOServices::CompoundConstantNames},
        AskedFor{"GetTDependentPropList", &IQuorvaneVSTOServices::TemperatureDependentPropertyNames},
        AskedFor{"GetSinglePhasePropList", &IQuorvaneVSTOServices::SinglePhasePropertyNames},
        AskedFor{"GetTwoPhasePropList", &IQuorvaneVSTOServices::TwoPhasePropertyNames},
        AskedFor{"GetSinglePhasePropList", &IQuorvaneVSTOServices::PhaseEquilibriumConditionNames}),
    [](const auto& tested) { return std::string{tested.param.method} + std::to_string(tested.index); });

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
