// The type library inside Quorvane.dll. Excel shows its help texts, scripts find members in it by name, and
// workbooks that have been saved rely on its numbers.
#include "com/type_library.h"
#include "tests/src/com/type_information.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorvane {
namespace {

std::wstring text(const GUID& guid) {
    wchar_t buffer[39];
    StringFromGUID2(guid, buffer, 39);
    return buffer;
}

struct ExpectedMember {
    const wchar_t* name;
    const wchar_t* arguments;
    const wchar_t* help;
};

constexpr ExpectedMember worksheetFunctions[] = {
    {L"CapeOpenPackageNames", L"[orientation VARIANT], -> PackageNames VARIANT*",
     L"Get a list of all packages in the current workbook. Orientation can be 'auto'=0 (default), "
     L"'horizontal'=1, "
     L"'vertical'=2."},
    {L"CapeOpenUnitOfMeasure", L"propertyName BSTR, [basis VARIANT], -> unit BSTR*",
     L"Get unit of measure for specified property. Basis can be 'mole' (default) or 'mass'."},
    {L"CapeOpenCompounds",
     L"packageName BSTR, [orientation VARIANT], [compound VARIANT], -> compounds VARIANT*",
     L"Get names of all compounds or specific compound in the package. Orientation can be 'auto'=0 "
     L"(default), "
     L"'horizontal'=1, 'vertical'=2. Compound can be name, 'all' (default) or index."},
    {L"CapeOpenPhases", L"packageName BSTR, [orientation VARIANT], [phase VARIANT], -> phases VARIANT*",
     L"Get names of all phases or specific phase in the package. Orientation can be 'auto'=0 (default), "
     L"'horizontal'=1, 'vertical'=2. Phase can be name, 'all' (default) or index."},
    {L"CapeOpenCompoundConstant",
     L"packageName BSTR, constantName BSTR, [basis VARIANT], [orientation VARIANT], [compound VARIANT], "
     L"-> values VARIANT*",
     L"Get constant string or real value for one or all compounds in a package. Basis can be 'mole' "
     L"(default) or "
     L"'mass'. Orientation can be 'auto'=0 (default), 'horizontal'=1, 'vertical'=2. Compound can be name, "
     L"'all' "
     L"(default) or index."},
    {L"CapeOpenTemperatureDependentProperty",
     L"packageName BSTR, propertyName BSTR, T double, [basis VARIANT], [orientation VARIANT], [compound "
     L"VARIANT], "
     L"-> values VARIANT*",
     L"Get temperature dependent property value for one or all compounds in a package. Basis can be 'mole' "
     L"(default) or 'mass'. Orientation can be 'auto'=0 (default), 'horizontal'=1, 'vertical'=2. Compound "
     L"can be "
     L"name, 'all' (default) or index."},
    {L"CapeOpenMixtureProperty",
     L"packageName BSTR, propertyName BSTR, phaseName BSTR, T double, P double, composition VARIANT, "
     L"[compositionBasis VARIANT], [propertyBasis VARIANT], [orientation VARIANT], [transposed VARIANT], "
     L"[normalizeComposition VARIANT], -> values VARIANT*",
     L"Get mixture property for a phase. Basis can be 'mole' (default) or 'mass'. Composition basis can be "
     L"'mole' "
     L"(default) or 'mass'. Composition is normalized by default. Orientation can be 'auto'=0 (default), "
     L"'horizontal'=1, 'vertical'=2, 'matrix'=3."},
    // The last two texts end in the middle of a sentence: Excel showed them like that from the beginning.
    {L"CapeOpenTwoPhaseProperty",
     L"packageName BSTR, propertyName BSTR, phase1Name BSTR, phase2Name BSTR, T double, P double, "
     L"phase1Composition VARIANT, phase2Composition VARIANT, [compositionBasis VARIANT], [orientation "
     L"VARIANT], "
     L"[compositionDerivativePhase VARIANT], [transposed VARIANT], [normalizeComposition VARIANT], "
     L"-> values VARIANT*",
     L"Get two-phase property. Composition basis can be 'mole' (default) or 'mass'. Composition is "
     L"normalized by "
     L"default. Orientation can be 'auto'=0 (default), 'horizontal'=1, 'vertical'=2, 'matrix'=3. "
     L"CompositionDerivativePhase can be 'both'=0 (default), 'phase 1'="},
    {L"CapeOpenPhaseEquilibrium",
     L"packageName BSTR, overallComposition VARIANT, condition1 BSTR, condition1Value double, condition2 "
     L"BSTR, "
     L"condition2Value double, [basis VARIANT], [options VARIANT], [noNumber VARIANT], [orientation "
     L"VARIANT], "
     L"[normalizeComposition VARIANT], -> values VARIANT*",
     L"Calculate a phase equilibrium given overall composition and two equilibrium conditions. Basis applies "
     L"to "
     L"all inputs and outputs and can be 'mole' (default) or 'mass'. Orientation can be 'auto'=0 (default), "
     L"'horizontal'=1, 'vertical'=2, 'matrix'=3. Composition "},
};

struct ExpectedService {
    const wchar_t* name;
    const wchar_t* arguments;
};

constexpr ExpectedService services[] = {
    {L"CreateWorkbookPP",
     L"wb IUnknown*, managerName BSTR, managerGUID GUID, type CAPEOPENPackageManagerType, "
     L"packageName BSTR, ppName BSTR"},
    {L"EditWorkbookPP", L"wb IUnknown*, ppName BSTR, -> changed VARIANT_BOOL*"},
    {L"DeleteWorkbookPP", L"wb IUnknown*, ppName BSTR"},
    {L"CloseWorkbook", L"wb IUnknown*"},
    {L"PackageNames", L"wb IUnknown*, -> PackageNames VARIANT*"},
    {L"Persist", L"wb IUnknown*, -> persistenceData VARIANT*"},
    {L"Depersist", L"wb IUnknown*, persistenceData VARIANT"},
    {L"CompoundNames", L"wb IUnknown*, ppName BSTR, -> CompoundNames VARIANT*"},
    {L"CompoundConstantNames", L"wb IUnknown*, ppName BSTR, -> CompoundConstantNames VARIANT*"},
    {L"TemperatureDependentPropertyNames",
     L"wb IUnknown*, ppName BSTR, -> TemperatureDependentPropertyNames VARIANT*"},
    {L"PhaseNames", L"wb IUnknown*, ppName BSTR, -> PhaseNames VARIANT*"},
    {L"GetPhaseType", L"wb IUnknown*, ppName BSTR, phaseName BSTR, -> phaseType EnumPhaseType*"},
    {L"SinglePhasePropertyNames", L"wb IUnknown*, ppName BSTR, -> SinglePhasePropertyNames VARIANT*"},
    {L"TwoPhasePropertyNames", L"wb IUnknown*, ppName BSTR, -> TwoPhasePropertyNames VARIANT*"},
    {L"CheckSinglePhaseProperty",
     L"wb IUnknown*, ppName BSTR, propertyName BSTR, phaseName BSTR, -> supported VARIANT_BOOL*"},
    {L"CheckTwoPhaseProperty",
     L"wb IUnknown*, ppName BSTR, propertyName BSTR, phase1Name BSTR, phase2Name BSTR, "
     L"-> supported VARIANT_BOOL*"},
    {L"GetPropInfo",
     L"propName BSTR, out unitMole BSTR*, out unitMass BSTR*, out propType EnumPropertyType*, "
     L"out derivType EnumDerivativeType*, out moleConversion long*, out rank long*, "
     L"out extensive VARIANT_BOOL*, out overall VARIANT_BOOL*"},
    {L"ValueFromRange", L"range IUnknown*, -> value VARIANT*"},
    {L"PhaseEquilibriumConditionNames", L"wb IUnknown*, ppName BSTR, -> propertyNames VARIANT*"},
    {L"Help", L""},
    {L"GetPackageInfo", L"packageName BSTR, -> packageInfo BSTR*"},
};

struct ExpectedEnumeration {
    const wchar_t* name;
    std::vector<std::wstring> words; ///< for 0, 1, 2, ...
};

const ExpectedEnumeration enumerations[] = {
    {L"CAPEOPENPackageManagerType", {L"StandAlonePackage11", L"PropertyPackageManager11"}},
    {L"PropertyOrientation",
     {L"Orientation_Auto", L"Orientation_Horizontal", L"Orientation_Vertical", L"Orientation_Matrix"}},
    {L"TwoPhaseDerivatives",
     {L"TwoPhaseDerivatives_Both", L"TwoPhaseDerivatives_Phase1", L"TwoPhaseDerivatives_Phase2"}},
    {L"EnumPropertyType",
     {L"PropType_Temperature", L"PropType_Pressure", L"PropType_Fraction", L"PropType_PhaseFraction",
      L"PropType_VaporFraction", L"PropType_StringConstant", L"PropType_RealConstant",
      L"PropType_TemperatureDependent", L"PropType_SinglePhase", L"PropType_TwoPhase"}},
    {L"EnumDerivativeType",
     {L"Derivative_None", L"Derivative_Temperature", L"Derivative_Pressure", L"Derivative_MolFraction",
      L"Derivative_MoleNumber"}},
    {L"EnumPhaseType", {L"VaporPhase", L"LiquidPhase", L"SolidPhase", L"UnknownPhase"}},
};

class AddInLibrary : public testing::Test {
  protected:
    void SetUp() override {
        std::wstring path = com::thisModulePath();
        path.replace(path.find_last_of(L'\\') + 1, std::wstring::npos, L"Quorvane.dll");
        ASSERT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()), S_OK);
    }

    std::vector<LibraryMember> members(const wchar_t* name) const {
        const auto info = typeNamed(library.get(), name);
        return info ? membersOf(info.get()) : std::vector<LibraryMember>{};
    }

    com::com_ptr<ITypeLib> library;
};

TEST_F(AddInLibrary, IsTheOneThatIsRegistered) {
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_EQ(text(attributes->guid), L"{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}");
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    library->ReleaseTLibAttr(attributes);
}

TEST_F(AddInLibrary, NumbersTheWorksheetFunctionsInTheirOrder) {
    const auto functions = members(L"IQuorvaneUDF");
    ASSERT_EQ(functions.size(), std::size(worksheetFunctions));
    for (std::size_t i = 0; i < functions.size(); ++i) {
        EXPECT_EQ(functions[i].name, worksheetFunctions[i].name);
        EXPECT_EQ(functions[i].id, static_cast<MEMBERID>(0x60020000 + i));
        EXPECT_EQ(functions[i].slot, 7 + i);
    }
}

TEST_F(AddInLibrary, DescribesTheWorksheetFunctionsToTheFunctionWizard) {
    const auto functions = members(L"IQuorvaneUDF");
    ASSERT_EQ(functions.size(), std::size(worksheetFunctions));
    for (std::size_t i = 0; i < functions.size(); ++i) {
        EXPECT_EQ(functions[i].help, worksheetFunctions[i].help);
    }
}

TEST_F(AddInLibrary, TellsWhichArgumentsMayBeLeftOut) {
    const auto functions = members(L"IQuorvaneUDF");
    ASSERT_EQ(functions.size(), std::size(worksheetFunctions));
    for (std::size_t i = 0; i < functions.size(); ++i) {
        EXPECT_EQ(functions[i].arguments, worksheetFunctions[i].arguments);
    }
}

TEST_F(AddInLibrary, NumbersTheServicesInTheirOrder) {
    const auto functions = members(L"IQuorvaneVSTOServices");
    ASSERT_EQ(functions.size(), std::size(services));
    for (std::size_t i = 0; i < functions.size(); ++i) {
        EXPECT_EQ(functions[i].name, services[i].name);
        EXPECT_EQ(functions[i].arguments, services[i].arguments);
        EXPECT_EQ(functions[i].id, static_cast<MEMBERID>(0x60030000 + i));
        EXPECT_EQ(functions[i].slot, 16 + i);
    }
}

TEST_F(AddInLibrary, LetsTheServicesExtendTheWorksheetFunctions) {
    const auto info = typeNamed(library.get(), L"IQuorvaneVSTOServices");
    ASSERT_TRUE(info);
    HREFTYPE reference = 0;
    com::com_ptr<ITypeInfo> base;
    ASSERT_EQ(info->GetRefTypeOfImplType(0, &reference), S_OK);
    ASSERT_EQ(info->GetRefTypeInfo(reference, base.put()), S_OK);
    EXPECT_EQ(nameOf(base.get()), L"IQuorvaneUDF");
}

TEST_F(AddInLibrary, HasTheFrontEndsOneMethod) {
    const auto functions = members(L"IQuorvaneVSTOContext");
    ASSERT_EQ(functions.size(), 1U);
    EXPECT_EQ(functions[0].name, L"SetServices");
    EXPECT_EQ(functions[0].arguments, L"services IQuorvaneVSTOServices*");
    EXPECT_EQ(functions[0].slot, 7U);
}

TEST_F(AddInLibrary, HasTheInterfacesAsDualOnes) {
    for (const wchar_t* name : {L"IQuorvaneUDF", L"IQuorvaneVSTOServices", L"IQuorvaneVSTOContext"}) {
        const auto info = typeNamed(library.get(), name);
        ASSERT_TRUE(info);
        EXPECT_NE(attributesOf(info.get()).wTypeFlags & TYPEFLAG_FDUAL, 0);
    }
}

TEST_F(AddInLibrary, OffersOneClassWithTheWorksheetFunctionsAsItsDefault) {
    const auto info = typeNamed(library.get(), L"Excel");
    ASSERT_TRUE(info);
    const TYPEATTR attributes = attributesOf(info.get());
    EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
    EXPECT_EQ(text(attributes.guid), L"{FE0EB015-446C-438E-B5B5-D749DFA8DD88}");
    EXPECT_NE(attributes.wTypeFlags & TYPEFLAG_FCANCREATE, 0);
    std::wstring interfaces;
    for (UINT i = 0; i < attributes.cImplTypes; ++i) {
        INT flags = 0;
        HREFTYPE reference = 0;
        com::com_ptr<ITypeInfo> implemented;
        ASSERT_EQ(info->GetImplTypeFlags(i, &flags), S_OK);
        ASSERT_EQ(info->GetRefTypeOfImplType(i, &reference), S_OK);
        ASSERT_EQ(info->GetRefTypeInfo(reference, implemented.put()), S_OK);
        interfaces += nameOf(implemented.get()) + ((flags & IMPLTYPEFLAG_FDEFAULT) != 0 ? L"! " : L" ");
    }
    EXPECT_EQ(interfaces, L"IQuorvaneUDF! IQuorvaneVSTOServices ");
}

TEST_F(AddInLibrary, CountsItsEnumerationsFromZero) {
    for (const ExpectedEnumeration& expected : enumerations) {
        const auto info = typeNamed(library.get(), expected.name);
        ASSERT_TRUE(info);
        ASSERT_EQ(attributesOf(info.get()).cVars, expected.words.size());
        for (UINT i = 0; i < expected.words.size(); ++i) {
            VARDESC* word = nullptr;
            com::unique_bstr name;
            ASSERT_EQ(info->GetVarDesc(i, &word), S_OK);
            info->GetDocumentation(word->memid, name.put(), nullptr, nullptr, nullptr);
            EXPECT_EQ(com::viewOf(name), expected.words[i]);
            EXPECT_EQ(word->lpvarValue->lVal, static_cast<LONG>(i));
            info->ReleaseVarDesc(word);
        }
    }
}

} // namespace
} // namespace quorvane
