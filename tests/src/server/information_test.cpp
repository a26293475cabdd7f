// The functions that tell what the packages of a workbook contain.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

class Information : public Worksheet {};

TEST_F(Information, AWorkbookWithoutPackagesSaysSo) {
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No CAPE-OPEN packages are loaded");
}
TEST_F(Information, PackageNamesAreSorted) {
    for (const wchar_t* name : {L"beta", L"Alpha", L"gamma"}) {
        attach(name);
    }
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "Alpha | beta | gamma");
    EXPECT_EQ(show(L"CapeOpenPackageNames", number(2)), "Alpha / beta / gamma");
}
TEST_F(Information, MissingPackagesAreReportedBeforeAWrongOrientation) {
    EXPECT_EQ(show(L"CapeOpenPackageNames", number(7)), "No CAPE-OPEN packages are loaded");
}
TEST_F(Information, WithoutExcelThereIsNoWorkbook) {
    events->OnDisconnection(ext_dm_UserClosed, nullptr);
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "Cannot determine current workbook");
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "Cannot determine current workbook");
}

TEST_F(Information, UnitsNeedNoPackageAndNoWorkbook) {
    excel->setActiveWorkbook({});
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", text(L"density")), "mol/m3");
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", text(L"DENSITY"), text(L"mass")), "kg/m3");
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", text(L"enthalpy.Dmoles"), text(L"mass")), "J/mol");
}
TEST_F(Information, APropertyWithoutAUnitShowsAnEmptyCell) {
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", text(L"acentricFactor")), "\"\"");
}
TEST_F(Information, AnUnknownPropertyIsQuotedAsTyped) {
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", text(L"Enthalpie")), "Invalid/unknown property \"Enthalpie\"");
}
TEST_F(Information, AnOmittedPropertyNameIsReported) {
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure"), "Property name not specified");
}
TEST_F(Information, AnUnknownPropertyIsReportedBeforeAWrongBasis) {
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", text(L"nonsense"), text(L"kg")),
              "Invalid/unknown property \"nonsense\"");
}

TEST_F(Information, CompoundsAreTheIdentifiersInThePackagesOrder) {
    attach();
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "A1 | B2 | C3");
}
TEST_F(Information, ASelectedCompoundIgnoresAWrongOrientation) {
    attach();
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P"), number(9), number(2)), "list: B2");
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P"), number(9), number(2)), "list: Liquid");
}
TEST_F(Information, AllCompoundsInAColumn) {
    attach();
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P"), number(2), number(0)), "A1 / B2 / C3");
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P"), number(2), number(0)), "Vapor / Liquid");
}
TEST_F(Information, AnUnknownPackageIsReportedBeforeAnythingElse) {
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"Q"), number(9), number(9)), "Invalid package name");
}
TEST_F(Information, AWrongCompoundIsReportedBeforeAWrongOrientation) {
    attach();
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P"), number(9), text(L"X")), "Invalid compound name");
}
TEST_F(Information, APackageThatCannotListItsCompoundsIsQuoted) {
    attach();
    package->fails("GetCompoundList", static_cast<HRESULT>(ECapeComputationHR), L"licence server is down");
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")),
              "Failed to obtain compound data: licence server is down");
    package->recovers("GetCompoundList");
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P")), "A1 | B2 | C3");
}
TEST_F(Information, APackageWithoutPhasesShowsNothing) {
    package->phases({});
    attach();
    EXPECT_EQ(call(L"CapeOpenPhases",
                   [] {
                       std::vector<com::variant> arguments;
                       arguments.push_back(text(L"P"));
                       return arguments;
                   }())
                  .vt,
              VT_EMPTY);
}
TEST_F(Information, PhaseListsOfUnequalLengthShowAnUnknownException) {
    attach();
    package->answers("GetPhaseList", scripted::texts({L"Vapor", L"Liquid"}), scripted::texts({L"Vapor"}),
                     scripted::texts({L"", L""}));
    EXPECT_EQ(show(L"CapeOpenPhases", text(L"P")), "Unknown exception");
}
TEST_F(Information, AFailureLeavesErrorInformation) {
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"Q")), "Invalid package name");
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Invalid package name");
    com::com_ptr<IErrorInfo> info;
    show(L"CapeOpenCompounds", text(L"Q"));
    ASSERT_EQ(GetErrorInfo(0, info.put()), S_OK);
    GUID interfaceId{};
    info->GetGUID(&interfaceId);
    EXPECT_TRUE(interfaceId == __uuidof(IQuorvaneUDF));
}
TEST_F(Information, ATextResultFailsLikeAnyOther) {
    EXPECT_EQ(show(L"CapeOpenUnitOfMeasure", text(L"enthalpy"), text(L"kg")), "Invalid basis \"kg\"");
    EXPECT_EQ(errorInfo(), "Quorvane.Excel: Invalid basis \"kg\"");
}
TEST_F(Information, SuccessLeavesNoErrorInformation) {
    attach();
    show(L"CapeOpenCompounds", text(L"P"));
    EXPECT_EQ(errorInfo(), "");
}

} // namespace
