// The rows that registration writes, in their order.
#include "src/server/registration.h"

#include <gtest/gtest.h>
#include <set>

using quorvane::RegistrationRow;
using quorvane::registrationTable;

namespace {

constexpr const char* module = "C:\\Add-ins\\Quorvane.dll";

std::string shown(const RegistrationRow& row) {
    const std::string name = row.valueName == nullptr ? "" : std::string{" "} + row.valueName;
    return row.key + name + (row.hasData ? " = " + row.data : "");
}

TEST(RegistrationTable, Has46Rows) { EXPECT_EQ(registrationTable(module).size(), 46U); }

TEST(RegistrationTable, CreatesEveryKeyInARowOfItsOwnBeforeItsFirstValue) {
    std::set<std::string> created;
    for (const RegistrationRow& row : registrationTable(module)) {
        EXPECT_EQ(created.insert(row.key).second, !row.hasData) << shown(row);
    }
    EXPECT_EQ(created.size(), 23U);
}

TEST(RegistrationTable, WritesItsEntriesInTheirOrder) {
    const char* const expected[] = {
        "AppID\\{4E70880D-2F57-4046-B5EC-71AF54203723} = Tarnwick Quorvane Add-in",
        "AppID\\Quorvane AppID = {4E70880D-2F57-4046-B5EC-71AF54203723}",
        "TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C} = Tarnwick Quorvane AddIn Library",
        "TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\1.0 = Tarnwick Quorvane AddIn Library",
        "TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\1.0\\0",
        "TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\1.0\\0\\win64 = C:\\Add-ins\\Quorvane.dll",
        "TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\FLAGS = 0",
        "Interface\\{ADE9F565-E434-4690-AF1E-6AB24E35DEB2} = IQuorvaneUDF",
        "Interface\\{ADE9F565-E434-4690-AF1E-6AB24E35DEB2}\\TypeLib = {8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}",
        "Interface\\{CA7C86A7-2DCD-4DD9-845E-4617CAA76A3C} = IQuorvaneVSTOServices",
        "Interface\\{CA7C86A7-2DCD-4DD9-845E-4617CAA76A3C}\\TypeLib = {8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}",
        "Quorvane.Excel = Quorvane for Excel",
        "Quorvane.Excel\\CLSID = {FE0EB015-446C-438E-B5B5-D749DFA8DD88}",
        "Quorvane.Excel\\CurVer = Quorvane.Excel.1",
        "Quorvane.Excel.1 = Quorvane for Excel",
        "Quorvane.Excel.1\\CLSID = {FE0EB015-446C-438E-B5B5-D749DFA8DD88}",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88} = Quorvane for Excel",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\ProgID = Quorvane.Excel.1",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\AppID = {4E70880D-2F57-4046-B5EC-71AF54203723}",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\TypeLib = {8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\VersionIndependentProgID = Quorvane.Excel",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\InprocServer32 = C:\\Add-ins\\Quorvane.dll",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\InprocServer32 ThreadingModel = Apartment",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\InprocServer32 AppID = Quorvane",
        "CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\Programmable",
    };
    std::vector<std::string> entries;
    const auto table = registrationTable(module);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool onlyCreates =
            !table[i].hasData && i + 1 < table.size() && table[i + 1].key == table[i].key;
        if (!onlyCreates) {
            entries.push_back(shown(table[i]));
        }
    }
    EXPECT_EQ(entries, std::vector<std::string>(std::begin(expected), std::end(expected)));
}

} // namespace
