// Self-registration: what regsvr32 leaves in the user's registry and takes out again.
#include "tests/src/server/add_in.h"

#include <array>
#include <cstddef>
#include <gtest/gtest.h>

using namespace tests;

namespace {

const std::wstring classes = L"Software\\Classes\\";
const std::wstring office = L"Software\\Microsoft\\Office\\";
constexpr const wchar_t* openCommand = L"/A \"Quorvane.Excel.1\"";

// Stands for the full file name of the DLL.
constexpr const wchar_t* modulePath = nullptr;

struct Value {
    const wchar_t* key;
    const wchar_t* name;
    const wchar_t* data;
};

// Typed from the identifiers that installed copies use: they may never change.
constexpr Value values[] = {
    {L"AppID\\{4E70880D-2F57-4046-B5EC-71AF54203723}", nullptr, L"Tarnwick Quorvane Add-in"},
    {L"AppID\\Quorvane", L"AppID", L"{4E70880D-2F57-4046-B5EC-71AF54203723}"},
    {L"TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}", nullptr, L"Tarnwick Quorvane AddIn Library"},
    {L"TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\1.0", nullptr, L"Tarnwick Quorvane AddIn Library"},
    {L"TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\1.0\\0\\win64", nullptr, modulePath},
    {L"TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\FLAGS", nullptr, L"0"},
    {L"Interface\\{ADE9F565-E434-4690-AF1E-6AB24E35DEB2}", nullptr, L"IQuorvaneUDF"},
    {L"Interface\\{ADE9F565-E434-4690-AF1E-6AB24E35DEB2}\\TypeLib", nullptr,
     L"{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}"},
    {L"Interface\\{CA7C86A7-2DCD-4DD9-845E-4617CAA76A3C}", nullptr, L"IQuorvaneVSTOServices"},
    {L"Interface\\{CA7C86A7-2DCD-4DD9-845E-4617CAA76A3C}\\TypeLib", nullptr,
     L"{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}"},
    {L"Quorvane.Excel", nullptr, L"Quorvane for Excel"},
    {L"Quorvane.Excel\\CLSID", nullptr, L"{FE0EB015-446C-438E-B5B5-D749DFA8DD88}"},
    {L"Quorvane.Excel\\CurVer", nullptr, L"Quorvane.Excel.1"},
    {L"Quorvane.Excel.1", nullptr, L"Quorvane for Excel"},
    {L"Quorvane.Excel.1\\CLSID", nullptr, L"{FE0EB015-446C-438E-B5B5-D749DFA8DD88}"},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}", nullptr, L"Quorvane for Excel"},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\ProgID", nullptr, L"Quorvane.Excel.1"},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\AppID", nullptr,
     L"{4E70880D-2F57-4046-B5EC-71AF54203723}"},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\TypeLib", nullptr,
     L"{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}"},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\VersionIndependentProgID", nullptr, L"Quorvane.Excel"},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\InprocServer32", nullptr, modulePath},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\InprocServer32", L"ThreadingModel", L"Apartment"},
    {L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\InprocServer32", L"AppID", L"Quorvane"},
};

constexpr const wchar_t* keysWithoutValues[] = {
    L"TypeLib\\{8C7B55AB-33EB-4C0D-99C1-8F6285CD0C2C}\\1.0\\0",
    L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\Programmable",
};

std::wstring options(const wchar_t* version) { return office + version + L"\\Excel\\Options"; }

// Leaves everybody these rights to a key, as an administrator's policy may.
class Restricted {
  public:
    Restricted(const std::wstring& key, REGSAM rights) {
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, WRITE_DAC, key_.put()), ERROR_SUCCESS);
        SID everybody{SID_REVISION, 1, {SECURITY_WORLD_SID_AUTHORITY}, {SECURITY_WORLD_RID}};
        alignas(ACL) std::array<std::byte, 64> buffer{};
        ACL* const list = reinterpret_cast<ACL*>(buffer.data());
        EXPECT_TRUE(InitializeAcl(list, buffer.size(), ACL_REVISION));
        EXPECT_TRUE(AddAccessAllowedAce(list, ACL_REVISION, rights, &everybody));
        give(list);
    }
    Restricted(const Restricted&) = delete;
    Restricted& operator=(const Restricted&) = delete;
    ~Restricted() { give(nullptr); }

  private:
    void give(ACL* rights) const { // null: everybody may do everything
        SECURITY_DESCRIPTOR descriptor{};
        InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&descriptor, TRUE, rights, FALSE);
        EXPECT_EQ(RegSetKeySecurity(key_.get(), DACL_SECURITY_INFORMATION, &descriptor), ERROR_SUCCESS);
    }

    com::unique_registry_key key_;
};

// Each test finds a user with no Office settings and the add-in registered, and leaves the same behind.
class Registration : public ::testing::Test {
  protected:
    void SetUp() override {
        deleteUserKey(office.substr(0, office.size() - 1));
        ASSERT_EQ(addIn.registerServer(), S_OK);
    }
    void TearDown() override {
        deleteUserKey(office.substr(0, office.size() - 1));
        EXPECT_EQ(addIn.registerServer(), S_OK);
    }

    AddIn& addIn = AddIn::instance();
};

TEST_F(Registration, WritesEveryValueOfTheClassTheTypeLibraryAndTheInterfaces) {
    for (const Value& value : values) {
        const auto found = userValue(classes + value.key, value.name);
        ASSERT_TRUE(found) << "no value in " << std::string(value.key, value.key + std::wcslen(value.key));
        EXPECT_EQ(*found, value.data == modulePath ? addIn.path() : value.data);
    }
    for (const wchar_t* key : keysWithoutValues) {
        EXPECT_TRUE(userKeyExists(classes + key));
        EXPECT_FALSE(userValue(classes + key, nullptr));
    }
}

TEST_F(Registration, RegistersNeitherAProxyNorTheFrontEndsInterface) {
    EXPECT_FALSE(
        userKeyExists(classes + L"Interface\\{ADE9F565-E434-4690-AF1E-6AB24E35DEB2}\\ProxyStubClsid32"));
    EXPECT_FALSE(userKeyExists(classes + L"Interface\\{46BB5500-E77B-4294-B5E2-9E203EB40593}"));
}

TEST_F(Registration, MakesExcelOpenTheAddIn) {
    setUserValue(options(L"16.0"), L"Other", L"1");
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN"), openCommand);
}

TEST_F(Registration, ServesEveryInstalledVersionFrom14On) {
    for (const wchar_t* version : {L"14.0", L"15.0", L"16.0"}) {
        setUserValue(options(version), L"Other", L"1");
    }
    ASSERT_EQ(addIn.registerServer(), S_OK);
    for (const wchar_t* version : {L"14.0", L"15.0", L"16.0"}) {
        EXPECT_EQ(userValue(options(version), L"OPEN"), openCommand);
    }
}

TEST_F(Registration, TakesTheFirstFreeOpenName) {
    setUserValue(options(L"16.0"), L"OPEN", L"C:\\Other\\one.xla");
    setUserValue(options(L"16.0"), L"OPEN1", L"C:\\Other\\two.xla");
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN"), L"C:\\Other\\one.xla");
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN1"), L"C:\\Other\\two.xla");
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN2"), openCommand);
}

// Beyond it the settings are damaged, or cannot be read at all.
TEST_F(Registration, LooksForAFreeOpenNameUpToAThousand) {
    const std::wstring key = options(L"16.0");
    setUserValue(key, L"OPEN", L"C:\\Other\\add-in.xla");
    for (int number = 1; number < 1000; ++number) {
        setUserValue(key, (L"OPEN" + std::to_wstring(number)).c_str(), L"C:\\Other\\add-in.xla");
    }
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_FALSE(userValue(key, L"OPEN1000"));
    setUserValue(key, L"OPEN999", openCommand);
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_EQ(userValue(key, L"OPEN999"), openCommand) << "the last one is taken again";
}

TEST_F(Registration, TwiceLeavesOneOpenValue) {
    setUserValue(options(L"16.0"), L"Other", L"1");
    ASSERT_EQ(addIn.registerServer(), S_OK);
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN"), openCommand);
    EXPECT_FALSE(userValue(options(L"16.0"), L"OPEN1"));
}

TEST_F(Registration, LeavesVersionsBelow14Alone) {
    setUserValue(options(L"12.0"), L"OPEN5", openCommand);
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_FALSE(userValue(options(L"12.0"), L"OPEN"));
    EXPECT_EQ(userValue(options(L"12.0"), L"OPEN5"), openCommand);
}

TEST_F(Registration, SkipsAVersionWithoutExcelOptions) {
    setUserValue(office + L"16.0\\Word\\Options", L"Other", L"1");
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_FALSE(userKeyExists(options(L"16.0")));
}

TEST_F(Registration, RemovesEarlierOpenValuesInAnyLetterCase) {
    setUserValue(options(L"16.0"), L"OPEN3", L"/a \"quorvane.excel.1\"");
    setUserValue(options(L"16.0"), L"OPEN4", L"/A \"Quorvane.Excel\"");
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_FALSE(userValue(options(L"16.0"), L"OPEN3"));
    EXPECT_FALSE(userValue(options(L"16.0"), L"OPEN4"));
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN"), openCommand);
}

TEST_F(Registration, LeavesValuesThatDoNotOpenTheAddInAlone) {
    setUserValue(options(L"16.0"), L"Note", L"Quorvane.Excel");
    setUserValue(options(L"16.0"), L"OPEN", L"/A \"Another.AddIn\"");
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_EQ(userValue(options(L"16.0"), L"Note"), L"Quorvane.Excel");
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN"), L"/A \"Another.AddIn\"");
}

TEST_F(Registration, RemovesTheAddInFromTheListOfUncheckedOnes) {
    const std::wstring manager = office + L"16.0\\Excel\\Add-in Manager";
    for (const wchar_t* name : {L"Quorvane.Excel", L"Quorvane.Excel.1", L"Another.AddIn"}) {
        setUserValue(manager, name, L"");
    }
    ASSERT_EQ(addIn.registerServer(), S_OK);
    EXPECT_FALSE(userValue(manager, L"Quorvane.Excel"));
    EXPECT_FALSE(userValue(manager, L"Quorvane.Excel.1"));
    EXPECT_TRUE(userValue(manager, L"Another.AddIn"));
}

TEST_F(Registration, WithoutOfficeSucceeds) { EXPECT_EQ(addIn.registerServer(), S_OK); }

TEST_F(Registration, UnregisteringLeavesNothingBehind) {
    setUserValue(options(L"16.0"), L"OPEN", L"C:\\Other\\one.xla");
    ASSERT_EQ(addIn.registerServer(), S_OK);
    setUserValue(classes + L"CLSID\\{FE0EB015-446C-438E-B5B5-D749DFA8DD88}\\Deep\\Deeper", L"Left",
                 L"by someone");
    ASSERT_EQ(addIn.unregisterServer(), S_OK);
    for (const Value& value : values) {
        EXPECT_FALSE(userKeyExists(classes + value.key));
    }
    for (const wchar_t* key : keysWithoutValues) {
        EXPECT_FALSE(userKeyExists(classes + key));
    }
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN"), L"C:\\Other\\one.xla");
    EXPECT_FALSE(userValue(options(L"16.0"), L"OPEN1"));
}

TEST_F(Registration, AKeyThatMayNotBeWrittenIsReported) {
    const Restricted restricted{classes + L"Quorvane.Excel", KEY_READ};
    EXPECT_EQ(addIn.registerServer(), E_ACCESSDENIED);
    EXPECT_EQ(addIn.unregisterServer(), E_ACCESSDENIED);
    EXPECT_FALSE(userKeyExists(classes + L"Quorvane.Excel.1")) << "the others are removed all the same";
}

TEST_F(Registration, OptionsOfExcelThatMayNotBeWrittenAreReported) {
    setUserValue(options(L"16.0"), L"OPEN", openCommand);
    const Restricted restricted{options(L"16.0"), KEY_READ};
    EXPECT_EQ(addIn.registerServer(), E_ACCESSDENIED);
    EXPECT_EQ(addIn.unregisterServer(), E_ACCESSDENIED);
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN"), openCommand);
}

TEST_F(Registration, OptionsOfExcelThatMayNotBeReadAreLeftAlone) {
    setUserValue(options(L"16.0"), L"OPEN3", openCommand);
    {
        const Restricted restricted{options(L"16.0"), KEY_SET_VALUE};
        EXPECT_EQ(addIn.registerServer(), S_OK);
    }
    EXPECT_EQ(userValue(options(L"16.0"), L"OPEN3"), openCommand);
    EXPECT_FALSE(userValue(options(L"16.0"), L"OPEN"));
}

TEST_F(Registration, UnregisteringTwiceSucceeds) {
    EXPECT_EQ(addIn.unregisterServer(), S_OK);
    EXPECT_EQ(addIn.unregisterServer(), S_OK);
}

} // namespace
