// The worksheet functions through IDispatch, as Excel and scripts call them, and through the vtable.
#include "tests/src/server/worksheet.h"

#include <array>

using namespace tests;

namespace {

constexpr DISPID unitOfMeasure = 0x60020001;
constexpr DISPID phases = 0x60020003;

class LateBinding : public Worksheet {
  protected:
    HRESULT invoke(DISPID member, std::vector<com::variant> reversed, com::variant* result,
                   std::vector<DISPID> named = {}) {
        DISPPARAMS parameters{reversed.data(), named.data(), static_cast<UINT>(reversed.size()),
                              static_cast<UINT>(named.size())};
        return addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                             &parameters, result, nullptr, nullptr);
    }
    DISPID idOf(std::wstring name) {
        wchar_t* names[] = {name.data()};
        DISPID id = DISPID_UNKNOWN;
        addIn->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
        return id;
    }
    template <typename... Values>
    static std::vector<com::variant> arguments(Values&&... values) {
        std::vector<com::variant> result;
        (result.push_back(std::forward<Values>(values)), ...);
        return result;
    }
};

TEST_F(LateBinding, FunctionsHaveTheirMemberIdentifiersInAnyCase) {
    EXPECT_EQ(idOf(L"CapeOpenPackageNames"), 0x60020000);
    EXPECT_EQ(idOf(L"capeopenunitofmeasure"), unitOfMeasure);
    EXPECT_EQ(idOf(L"CapeOpenPhaseEquilibrium"), 0x60020008);
}
TEST_F(LateBinding, ServicesAreReachedByNameToo) {
    EXPECT_EQ(idOf(L"CreateWorkbookPP"), 0x60030000);
    EXPECT_EQ(idOf(L"GetPackageInfo"), 0x60030014);
    EXPECT_EQ(idOf(L"OnConnection"), DISPID_UNKNOWN);
}
TEST_F(LateBinding, ACallWithoutAPlaceForItsParametersIsRefused) {
    EXPECT_EQ(addIn->Invoke(0x60020000, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, nullptr, nullptr,
                            nullptr, nullptr),
              E_INVALIDARG);
}
TEST_F(LateBinding, TheCountOfTypeDescriptionsNeedsAPlace) {
    EXPECT_EQ(addIn->GetTypeInfoCount(nullptr), E_POINTER);
}
TEST_F(LateBinding, AFunctionIsCalledByItsMemberIdentifier) {
    com::variant result;
    ASSERT_EQ(invoke(unitOfMeasure, arguments(text(L"mass"), text(L"volume")), &result), S_OK);
    EXPECT_EQ(textOf(result), L"m3/kg");
}
TEST_F(LateBinding, ArgumentsMayBeGivenByName) {
    com::variant result;
    ASSERT_EQ(invoke(unitOfMeasure, arguments(text(L"volume"), text(L"mass")), &result, {0, 1}), S_OK);
    EXPECT_EQ(textOf(result), L"m3/kg");
}
TEST_F(LateBinding, ArgumentsMayBeVariables) {
    com::variant name = text(L"volume");
    com::variant basis = text(L"mass");
    VARIANT byReference[2] = {};
    byReference[0].vt = byReference[1].vt = VT_BYREF | VT_VARIANT;
    byReference[0].pvarVal = &basis;
    byReference[1].pvarVal = &name;
    DISPPARAMS parameters{byReference, nullptr, 2, 0};
    com::variant result;
    ASSERT_EQ(addIn->Invoke(unitOfMeasure, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            &result, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(textOf(result), L"m3/kg");
}
TEST_F(LateBinding, ARequiredTextMayStandInACell) {
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", cell(text(L"volume"))), "m3/mol");
}
TEST_F(LateBinding, ARequiredNumberMayStandInACellOrAsText) {
    attach();
    const std::string expected = flash({});
    EXPECT_EQ(flash({.value1 = cell(number(300.0))}), expected);
    EXPECT_EQ(flash({.value1 = text(L"300")}), expected);
    EXPECT_EQ(flash({.value1 = com::variant{300L}}), expected);
}
TEST_F(LateBinding, ATextWhereANumberBelongsIsReported) {
    attach();
    EXPECT_EQ(flash({.value1 = text(L"warm")}), "Invalid value for condition1Value - expected real value");
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Invalid value for condition1Value - expected real value");
    EXPECT_EQ(flash({.value2 = cells({1, 2})}), "Invalid value for condition2Value - expected real value");
    EXPECT_EQ(flash({.value1 = errorCell()}), "Invalid value for condition1Value - expected real value");
}
TEST_F(LateBinding, ABlockWhereATextBelongsIsReported) {
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", cells({1, 2})),
              "Invalid value for propertyName - expected string value");
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", cell(errorCell())),
              "Invalid value for propertyName - expected string value");
}
TEST_F(LateBinding, TooManyArgumentsAreNotACall) {
    com::variant result;
    EXPECT_EQ(invoke(unitOfMeasure, arguments(text(L"a"), text(L"b"), text(L"volume")), &result),
              DISP_E_BADPARAMCOUNT);
}
TEST_F(LateBinding, MoreNamesThanArgumentsAreNotACall) {
    com::variant result;
    EXPECT_EQ(invoke(unitOfMeasure, arguments(text(L"volume")), &result, {5, 6}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(unitOfMeasure, {}, &result, {0}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(result.vt, VT_EMPTY);
}
TEST_F(LateBinding, AnUnknownMemberIsNotFound) {
    com::variant result;
    EXPECT_EQ(invoke(0x60020009, {}, &result), DISP_E_MEMBERNOTFOUND);
}
TEST_F(LateBinding, AMemberBelowTheFirstFunctionIsNotFound) {
    com::variant result;
    EXPECT_EQ(invoke(DISPID_VALUE, {}, &result), DISP_E_MEMBERNOTFOUND);
}
TEST_F(LateBinding, AFailingFunctionNeedsNoPlaceForItsText) {
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(invoke(unitOfMeasure, arguments(text(L"colour")), nullptr), S_OK);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Invalid/unknown property \"colour\"");
}
TEST_F(LateBinding, AWrongArgumentNeedsNoPlaceForItsText) {
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(invoke(unitOfMeasure, arguments(cells({1, 2})), nullptr), S_OK);
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Invalid value for propertyName - expected string value");
}
TEST_F(LateBinding, AFailingServiceRaisesItsMessage) {
    EXCEPINFO exception{};
    com::variant name = text(L"Nobody");
    DISPPARAMS arguments{&name, nullptr, 1, 0};
    com::variant result;
    EXPECT_EQ(addIn->Invoke(idOf(L"GetPackageInfo"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                            &arguments, &result, &exception, nullptr),
              DISP_E_EXCEPTION);
    const com::unique_bstr source{exception.bstrSource};
    const com::unique_bstr description{exception.bstrDescription};
    const com::unique_bstr help{exception.bstrHelpFile};
    EXPECT_EQ(com::viewOf(source), L"Quorvane.Excel");
    EXPECT_EQ(com::viewOf(description), L"Invalid package name");
}
TEST_F(LateBinding, AServiceTakesAWorkbookAndGivesAList) {
    attach();
    com::variant result;
    ASSERT_EQ(invoke(idOf(L"PhaseNames"), arguments(text(L"P"), com::variant::object(workbook->dispatch())),
                     &result),
              S_OK);
    EXPECT_EQ(shown(result), "list: Vapor | Liquid");
    result.clear();
    ASSERT_EQ(invoke(idOf(L"GetPhaseType"),
                     arguments(text(L"Liquid"), text(L"P"), com::variant::object(workbook->dispatch())),
                     &result),
              S_OK);
    EXPECT_EQ(shown(result), "1");
}

class ScriptVariables : public LateBinding {
  protected:
    /// Calls GetPropInfo with variables of a script and tells what they hold afterwards.
    std::string ask(const wchar_t* name, HRESULT expected) {
        com::variant propName = text(name);
        std::array<com::variant, 8> variables;
        for (com::variant& variable : variables) {
            variable = text(L"before");
        }
        std::array<VARIANT, 9> given{};
        for (std::size_t i = 0; i < variables.size(); ++i) {
            given[7 - i].vt = VT_BYREF | VT_VARIANT;
            given[7 - i].pvarVal = &variables[i];
        }
        given[8] = propName;
        DISPPARAMS parameters{given.data(), nullptr, 9, 0};
        EXCEPINFO exception{};
        EXPECT_EQ(addIn->Invoke(idOf(L"GetPropInfo"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                &parameters, nullptr, &exception, nullptr),
                  expected);
        const com::unique_bstr source{exception.bstrSource};
        const com::unique_bstr description{exception.bstrDescription};
        std::string all = scripted::narrow(com::viewOf(description));
        for (const com::variant& variable : variables) {
            all.append(" ").append(shown(variable));
        }
        return all;
    }
};

TEST_F(ScriptVariables, ReceiveEveryResultOfAService) {
    EXPECT_EQ(ask(L"enthalpy", S_OK), " J/mol J/kg 8 0 1 0 true true");
    EXPECT_EQ(ask(L"casRegistryNumber", S_OK), " \"\" \"\" 5 0 0 1 false false");
}
TEST_F(ScriptVariables, KeepWhatTheyHeldWhenTheServiceFails) {
    EXPECT_EQ(ask(L"colour", DISP_E_EXCEPTION),
              "Invalid/unknown property \"colour\" before before before before before before before before");
}

TEST_F(ScriptVariables, MayStandBesideTypedOnes) {
    com::variant variable = text(L"before");
    com::unique_bstr unitMole;
    LONG numbers[4] = {};
    VARIANT_BOOL truths[2] = {VARIANT_FALSE, VARIANT_FALSE};
    const com::variant propName = text(L"enthalpy");
    std::array<VARIANT, 9> given{};
    given[8] = propName;
    given[7].vt = VT_BYREF | VT_BSTR;
    given[7].pbstrVal = unitMole.put();
    given[6].vt = VT_BYREF | VT_VARIANT;
    given[6].pvarVal = &variable;
    for (std::size_t i = 0; i < 4; ++i) {
        given[5 - i].vt = VT_BYREF | VT_I4;
        given[5 - i].plVal = &numbers[i];
    }
    for (std::size_t i = 0; i < 2; ++i) {
        given[1 - i].vt = VT_BYREF | VT_BOOL;
        given[1 - i].pboolVal = &truths[i];
    }
    DISPPARAMS parameters{given.data(), nullptr, 9, 0};
    EXPECT_EQ(addIn->Invoke(idOf(L"GetPropInfo"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(com::viewOf(unitMole), L"J/mol");
    EXPECT_EQ(shown(variable), "J/kg");
    EXPECT_EQ(numbers[0], 8);
    EXPECT_EQ(truths[1], VARIANT_TRUE);
}
TEST_F(ScriptVariables, MustBeThere) {
    std::array<VARIANT, 9> given{};
    const com::variant propName = text(L"enthalpy");
    for (VARIANT& variable : given) {
        variable.vt = VT_BYREF | VT_VARIANT;
        variable.pvarVal = nullptr;
    }
    given[8] = propName;
    DISPPARAMS parameters{given.data(), nullptr, 9, 0};
    EXPECT_EQ(addIn->Invoke(idOf(L"GetPropInfo"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            nullptr, nullptr, nullptr),
              DISP_E_TYPEMISMATCH);
}
TEST_F(ScriptVariables, AreAllNeeded) {
    com::variant result;
    EXPECT_EQ(invoke(idOf(L"GetPropInfo"), arguments(text(L"enthalpy")), &result), DISP_E_BADPARAMCOUNT);
}

TEST_F(ScriptVariables, CannotBeGivenByName) {
    std::array<com::variant, 8> variables;
    std::array<VARIANT, 9> given{};
    std::array<DISPID, 9> names{};
    for (std::size_t i = 0; i < given.size(); ++i) {
        names[i] = static_cast<DISPID>(i);
        given[i].vt = VT_BYREF | VT_VARIANT;
        given[i].pvarVal = &variables[i == 0 ? 0 : i - 1];
    }
    const com::variant propName = text(L"enthalpy");
    given[0] = propName;
    DISPPARAMS parameters{given.data(), names.data(), 9, 9};
    EXPECT_EQ(addIn->Invoke(idOf(L"GetPropInfo"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            nullptr, nullptr, nullptr),
              DISP_E_TYPEMISMATCH);
    for (const com::variant& variable : variables) {
        EXPECT_EQ(variable.vt, VT_EMPTY);
    }
}

TEST_F(LateBinding, TheVtableGivesTheSame) {
    attach();
    const com::unique_bstr name = com::makeBstr(L"P");
    com::variant result;
    ASSERT_EQ(addIn->CapeOpenPhases(name.get(), omitted(), omitted(), &result), S_OK);
    EXPECT_EQ(shown(result), "Vapor | Liquid");
    com::variant late;
    ASSERT_EQ(invoke(phases, arguments(text(L"P")), &late), S_OK);
    EXPECT_EQ(shown(late), shown(result));
}
TEST_F(LateBinding, TheVtableNeedsAResultPointer) {
    EXPECT_EQ(addIn->CapeOpenPackageNames(omitted(), nullptr), E_POINTER);
    EXPECT_EQ(addIn->CapeOpenUnitOfMeasure(nullptr, omitted(), nullptr), E_POINTER);
}

} // namespace
