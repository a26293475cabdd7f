// The add-in's own interfaces: the front end is compiled against these slots.
#include "tests/src/com/slot_of.h"

#include <office_idl.h>
#include <quorvane_idl.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>

namespace quorvane {
namespace {

void expectInOrder(std::size_t first, std::initializer_list<std::pair<const char*, std::size_t>> members) {
    std::size_t slot = first;
    for (const auto& [name, compiled] : members) {
        EXPECT_EQ(compiled, slot) << name;
        ++slot;
    }
}

std::wstring text(const GUID& guid) {
    wchar_t buffer[39];
    StringFromGUID2(guid, buffer, 39);
    return buffer;
}

TEST(AddInHeader, HasTheWorksheetFunctionsInTheirSlots) {
    using I = IQuorvaneUDF;
    expectInOrder(7,
                  {{"CapeOpenPackageNames", slotOf(&I::CapeOpenPackageNames)},
                   {"CapeOpenUnitOfMeasure", slotOf(&I::CapeOpenUnitOfMeasure)},
                   {"CapeOpenCompounds", slotOf(&I::CapeOpenCompounds)},
                   {"CapeOpenPhases", slotOf(&I::CapeOpenPhases)},
                   {"CapeOpenCompoundConstant", slotOf(&I::CapeOpenCompoundConstant)},
                   {"CapeOpenTemperatureDependentProperty", slotOf(&I::CapeOpenTemperatureDependentProperty)},
                   {"CapeOpenMixtureProperty", slotOf(&I::CapeOpenMixtureProperty)},
                   {"CapeOpenTwoPhaseProperty", slotOf(&I::CapeOpenTwoPhaseProperty)},
                   {"CapeOpenPhaseEquilibrium", slotOf(&I::CapeOpenPhaseEquilibrium)}});
}

TEST(AddInHeader, HasTheServicesBehindTheWorksheetFunctions) {
    using I = IQuorvaneVSTOServices;
    EXPECT_TRUE((std::is_base_of_v<IQuorvaneUDF, I>));
    expectInOrder(16, {{"CreateWorkbookPP", slotOf(&I::CreateWorkbookPP)},
                       {"EditWorkbookPP", slotOf(&I::EditWorkbookPP)},
                       {"DeleteWorkbookPP", slotOf(&I::DeleteWorkbookPP)},
                       {"CloseWorkbook", slotOf(&I::CloseWorkbook)},
                       {"PackageNames", slotOf(&I::PackageNames)},
                       {"Persist", slotOf(&I::Persist)},
                       {"Depersist", slotOf(&I::Depersist)},
                       {"CompoundNames", slotOf(&I::CompoundNames)},
                       {"CompoundConstantNames", slotOf(&I::CompoundConstantNames)},
                       {"TemperatureDependentPropertyNames", slotOf(&I::TemperatureDependentPropertyNames)},
                       {"PhaseNames", slotOf(&I::PhaseNames)},
                       {"GetPhaseType", slotOf(&I::GetPhaseType)},
                       {"SinglePhasePropertyNames", slotOf(&I::SinglePhasePropertyNames)},
                       {"TwoPhasePropertyNames", slotOf(&I::TwoPhasePropertyNames)},
                       {"CheckSinglePhaseProperty", slotOf(&I::CheckSinglePhaseProperty)},
                       {"CheckTwoPhaseProperty", slotOf(&I::CheckTwoPhaseProperty)},
                       {"GetPropInfo", slotOf(&I::GetPropInfo)},
                       {"ValueFromRange", slotOf(&I::ValueFromRange)},
                       {"PhaseEquilibriumConditionNames", slotOf(&I::PhaseEquilibriumConditionNames)},
                       {"Help", slotOf(&I::Help)},
                       {"GetPackageInfo", slotOf(&I::GetPackageInfo)}});
}

TEST(AddInHeader, HasTheFrontEndsOneMethod) { EXPECT_EQ(slotOf(&IQuorvaneVSTOContext::SetServices), 7U); }

TEST(OfficeHeader, HasTheExtensibilityMethodsInTheirSlots) {
    using I = _IDTExtensibility2;
    expectInOrder(7, {{"OnConnection", slotOf(&I::OnConnection)},
                      {"OnDisconnection", slotOf(&I::OnDisconnection)},
                      {"OnAddInsUpdate", slotOf(&I::OnAddInsUpdate)},
                      {"OnStartupComplete", slotOf(&I::OnStartupComplete)},
                      {"OnBeginShutdown", slotOf(&I::OnBeginShutdown)}});
}

TEST(OfficeHeader, KnowsExcelsInterfacesByTheirIdentifiers) {
    EXPECT_EQ(text(__uuidof(_IDTExtensibility2)), L"{B65AD801-ABAF-11D0-BB8B-00A0C90F2744}");
    EXPECT_EQ(text(__uuidof(ExcelApplication)), L"{000208D5-0000-0000-C000-000000000046}");
    EXPECT_EQ(text(__uuidof(ExcelRange)), L"{00020846-0000-0000-C000-000000000046}");
}

TEST(AddInHeader, KeepsTheIdentifiersThatAreRegisteredOnUsersMachines) {
    EXPECT_EQ(text(__uuidof(IQuorvaneUDF)), L"{ADE9F565-E434-4690-AF1E-6AB24E35DEB2}");
    EXPECT_EQ(text(__uuidof(IQuorvaneVSTOServices)), L"{CA7C86A7-2DCD-4DD9-845E-4617CAA76A3C}");
    EXPECT_EQ(text(__uuidof(IQuorvaneVSTOContext)), L"{46BB5500-E77B-4294-B5E2-9E203EB40593}");
    EXPECT_EQ(text(__uuidof(Excel)), L"{FE0EB015-446C-438E-B5B5-D749DFA8DD88}");
}

} // namespace
} // namespace quorvane
