// The services that are about a property name, a range or the current workbook.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

class PropertyInformation : public Worksheet {
  protected:
    std::string ask(BSTR name) {
        BSTR mole = unset;
        BSTR mass = unset;
        EnumPropertyType type = PropType_Fraction;
        EnumDerivativeType derivative = Derivative_Pressure;
        LONG conversion = 99;
        LONG rank = 99;
        VARIANT_BOOL extensive = 99;
        VARIANT_BOOL overall = 99;
        SetErrorInfo(0, nullptr);
        const HRESULT code = addIn->GetPropInfo(name, &mole, &mass, &type, &derivative, &conversion, &rank,
                                                &extensive, &overall);
        if (code != S_OK) {
            EXPECT_EQ(code, E_FAIL);
            EXPECT_TRUE(mole == unset && mass == unset && type == PropType_Fraction &&
                        derivative == Derivative_Pressure && conversion == 99 && rank == 99 &&
                        extensive == 99 && overall == 99)
                << "a failure leaves every result as it was";
            return errorInfo();
        }
        const com::unique_bstr ownedMole{mole};
        const com::unique_bstr ownedMass{mass};
        const auto unit = [](BSTR text) {
            return text == nullptr ? "null" : scripted::narrow(com::viewOf(text));
        };
        return unit(mole) + " " + unit(mass) + " type " + std::to_string(type) + " derivative " +
               std::to_string(derivative) + " conversion " + std::to_string(conversion) + " rank " +
               std::to_string(rank) + " extensive " + std::to_string(extensive) + " overall " +
               std::to_string(overall);
    }
    std::string ask(const wchar_t* name) { return ask(com::makeBstr(name).get()); }

    wchar_t untouched[1] = {};
    BSTR unset = untouched;
};

TEST_F(PropertyInformation, IsTheCataloguesInAnyLetterCase) {
    const std::string enthalpy = "J/mol J/kg type 8 derivative 0 conversion 1 rank 0 extensive -1 overall -1";
    EXPECT_EQ(ask(L"enthalpy"), enthalpy);
    EXPECT_EQ(ask(L"ENTHALPY"), enthalpy);
    EXPECT_EQ(ask(L"temperature"), "K K type 0 derivative 0 conversion 0 rank 1 extensive 0 overall 0");
    EXPECT_EQ(ask(L"density"), "mol/m3 kg/m3 type 8 derivative 0 conversion -1 rank 0 extensive 0 overall 0");
    EXPECT_EQ(ask(L"surfaceTension"),
              "N*m N*m type 9 derivative 0 conversion 0 rank 0 extensive 0 overall 0");
}
TEST_F(PropertyInformation, OfATextHasNoUnits) {
    EXPECT_EQ(ask(L"casRegistryNumber"),
              "null null type 5 derivative 0 conversion 0 rank 1 extensive 0 overall 0");
}
TEST_F(PropertyInformation, OfADerivativeHasItsUnitsAndRank) {
    EXPECT_EQ(ask(L"enthalpy.Dtemperature"),
              "J/mol/K J/kg/K type 8 derivative 1 conversion 1 rank 0 extensive -1 overall 0");
    EXPECT_EQ(ask(L"logFugacityCoefficient.Dmoles"),
              "/mol /mol type 8 derivative 4 conversion 0 rank 2 extensive 0 overall 0");
}
TEST_F(PropertyInformation, OfAnUnknownNameIsAFailure) {
    EXPECT_EQ(ask(L"colour"), "Quorvane.Excel: Invalid/unknown property \"colour\"");
    EXPECT_EQ(ask(L""), "Quorvane.Excel: Invalid/unknown property \"\"");
    EXPECT_EQ(ask(L"enthalpy.Dcolour"), "Quorvane.Excel: Invalid/unknown property \"enthalpy.Dcolour\"");
}
TEST_F(PropertyInformation, NeedsAName) {
    EXPECT_EQ(ask(BSTR{nullptr}), "Quorvane.Excel: Property name not specified");
}
TEST_F(PropertyInformation, NeedsEveryOutPointer) {
    BSTR mole = unset;
    EXPECT_EQ(addIn->GetPropInfo(com::makeBstr(L"enthalpy").get(), &mole, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, nullptr),
              E_POINTER);
    EXPECT_EQ(mole, unset);
}

class RangeValue : public Worksheet {
  protected:
    std::string valueOf(IUnknown* object) {
        com::variant value{99L};
        SetErrorInfo(0, nullptr);
        const HRESULT code = addIn->ValueFromRange(object, &value);
        if (code != S_OK) {
            EXPECT_EQ(code, E_FAIL);
            EXPECT_EQ(shown(value), "99");
            return errorInfo();
        }
        return shown(value);
    }
};

TEST_F(RangeValue, OfACellIsItsValue) {
    EXPECT_EQ(valueOf(sheet::excel::Range::cell(1.5)->dispatch()), "1.5");
    EXPECT_EQ(valueOf(sheet::excel::Range::cell(L"text")->dispatch()), "text");
}
TEST_F(RangeValue, OfACellMayBeEmpty) {
    EXPECT_EQ(valueOf(sheet::excel::Range::empty(1, 1)->dispatch()), "empty");
}
TEST_F(RangeValue, OfSeveralCellsIsATable) {
    EXPECT_EQ(valueOf(sheet::excel::Range::row(1.0, L"x")->dispatch()), "1 | x");
    EXPECT_EQ(valueOf(sheet::excel::Range::column(1.0, 2.0)->dispatch()), "1 / 2");
}
TEST_F(RangeValue, IsReadWithoutArguments) {
    const auto range = sheet::excel::Range::cell(1.5);
    valueOf(range->dispatch());
    EXPECT_EQ(range->heard(), std::vector<std::wstring>{L"Value"});
}
TEST_F(RangeValue, OfSomethingElseIsAFailure) {
    EXPECT_EQ(valueOf(book()), "Quorvane.Excel: not a range");
    EXPECT_EQ(valueOf(nullptr), "Quorvane.Excel: not a range");
}
TEST_F(RangeValue, ThatCannotBeReadIsAFailure) {
    const auto range = sheet::excel::Range::cell(1.5);
    range->fail(L"Value", E_FAIL, L"Excel is busy");
    EXPECT_EQ(valueOf(range->dispatch()), "Quorvane.Excel: Call to \"Value\" failed: Excel is busy");
}
TEST_F(RangeValue, NeedsAnOutPointer) { EXPECT_EQ(addIn->ValueFromRange(book(), nullptr), E_POINTER); }

class PackageInformation : public Worksheet {
  protected:
    std::string ask(const wchar_t* name) {
        BSTR info = unset;
        SetErrorInfo(0, nullptr);
        const HRESULT code = addIn->GetPackageInfo(com::makeBstr(name).get(), &info);
        if (code != S_OK) {
            EXPECT_EQ(code, E_FAIL);
            EXPECT_EQ(info, unset);
            return errorInfo();
        }
        const com::unique_bstr owned{info};
        return scripted::narrow(com::viewOf(owned));
    }

    wchar_t untouched[1] = {};
    BSTR unset = untouched;
};

TEST_F(PackageInformation, IsTheDescriptionOfAPackageOfTheActiveWorkbook) {
    attach();
    EXPECT_EQ(ask(L"P"), "Stand-alone CAPE-OPEN 1.1 Property Package\r\n"
                         "Package name: Scripted\r\n"
                         "CLSID: {7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A1}\r\n");
}
TEST_F(PackageInformation, OfAPackageInAnotherWorkbookIsAFailure) {
    const auto other = com::make<sheet::excel::Workbook>(L"Book2");
    ASSERT_EQ(create(other->dispatch(), L"Q"), S_OK);
    EXPECT_EQ(ask(L"Q"), "Quorvane.Excel: Invalid package name");
}
TEST_F(PackageInformation, NeedsAName) {
    EXPECT_EQ(ask(L""), "Quorvane.Excel: Empty string is not valid for package name");
}
TEST_F(PackageInformation, NeedsAnOpenWorkbook) {
    excel->setActiveWorkbook({});
    EXPECT_EQ(ask(L"P"), "Quorvane.Excel: No current workbook");
    events->OnDisconnection(ext_dm_UserClosed, nullptr);
    EXPECT_EQ(ask(L"P"), "Quorvane.Excel: Cannot determine current workbook");
}
TEST_F(PackageInformation, NeedsAnOutPointer) {
    EXPECT_EQ(addIn->GetPackageInfo(nullptr, nullptr), E_POINTER);
}

} // namespace
