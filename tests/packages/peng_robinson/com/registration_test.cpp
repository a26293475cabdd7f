// Registration, in a corner of the registry of its own: the person's real registrations stay as they are.
#include "packages/peng_robinson/com/identity.h"
#include "tests/packages/peng_robinson/com/support.h"

namespace peng_robinson::test {
namespace {

class Registration : public testing::Test {
  protected:
    Registration() {
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, corner, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                  key_.put(), nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, key_.get()), ERROR_SUCCESS);
    }
    ~Registration() override {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        key_.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, corner);
    }

    static std::wstring read(const std::wstring& key, const wchar_t* value = nullptr) {
        wchar_t data[1024];
        DWORD size = sizeof data;
        const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, (L"Software\\Classes\\" + key).c_str(), value,
                                            RRF_RT_REG_SZ, nullptr, data, &size);
        return status == ERROR_SUCCESS ? std::wstring{data} : L"(absent)";
    }
    static bool exists(const std::wstring& key) {
        com::unique_registry_key opened;
        return RegOpenKeyExW(HKEY_CURRENT_USER, (L"Software\\Classes\\" + key).c_str(), 0, KEY_READ,
                             opened.put()) == ERROR_SUCCESS;
    }
    static DWORD numberOfClasses(const std::wstring& key) {
        com::unique_registry_key opened;
        DWORD count = 0;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, opened.put()) == ERROR_SUCCESS) {
            RegQueryInfoKeyW(opened.get(), nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr);
        }
        return count;
    }

    const std::wstring clsid = L"{481616A8-47AD-4A42-BE09-E48AFDFC9868}";
    const std::wstring cls = L"CLSID\\" + clsid;

  private:
    static constexpr const wchar_t* corner = L"Software\\Tarnwick test of the Peng-Robinson package";
    com::unique_registry_key key_;
};

TEST_F(Registration, WritesClassNamesDescriptionAndCategories) {
    ASSERT_EQ(PackageDll::instance().registerServer(), S_OK);
    EXPECT_EQ(read(L"Tarnwick.PengRobinson.1\\CLSID"), clsid);
    EXPECT_EQ(read(L"Tarnwick.PengRobinson\\CLSID"), clsid);
    EXPECT_EQ(read(L"Tarnwick.PengRobinson\\CurVer"), L"Tarnwick.PengRobinson.1");
    EXPECT_EQ(read(cls + L"\\ProgID"), L"Tarnwick.PengRobinson.1");
    EXPECT_EQ(read(cls + L"\\VersionIndependentProgID"), L"Tarnwick.PengRobinson");
    EXPECT_TRUE(read(cls + L"\\InprocServer32").ends_with(L"PengRobinson.dll"));
    EXPECT_EQ(read(cls + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(read(cls + L"\\CapeDescription", L"Name"), L"Peng-Robinson");
    EXPECT_EQ(read(cls + L"\\CapeDescription", L"CapeVersion"), L"1.1");
    for (const wchar_t* value : {L"Description", L"ComponentVersion", L"VendorURL", L"About"}) {
        EXPECT_NE(read(cls + L"\\CapeDescription", value), L"(absent)");
    }
    EXPECT_TRUE(exists(cls + L"\\Implemented Categories\\{678C09A1-7D66-11D2-A67D-00105A42887F}"));
    EXPECT_TRUE(exists(cls + L"\\Implemented Categories\\{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}"));
}

TEST_F(Registration, WritesTheManagerAmongTheManagers) {
    const std::wstring manager = L"{BEB0F1DE-6F53-44A9-B382-F371CEA70202}", managerKey = L"CLSID\\" + manager;
    ASSERT_EQ(PackageDll::instance().registerServer(), S_OK);
    EXPECT_EQ(read(L"Tarnwick.PengRobinsonManager.1\\CLSID"), manager);
    EXPECT_EQ(read(L"Tarnwick.PengRobinsonManager\\CLSID"), manager);
    EXPECT_EQ(read(L"Tarnwick.PengRobinsonManager\\CurVer"), L"Tarnwick.PengRobinsonManager.1");
    EXPECT_EQ(read(managerKey + L"\\ProgID"), L"Tarnwick.PengRobinsonManager.1");
    EXPECT_EQ(read(managerKey + L"\\VersionIndependentProgID"), L"Tarnwick.PengRobinsonManager");
    EXPECT_TRUE(read(managerKey + L"\\InprocServer32").ends_with(L"PengRobinson.dll"));
    EXPECT_EQ(read(managerKey + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(read(managerKey + L"\\CapeDescription", L"Name"), L"Peng-Robinson packages");
    EXPECT_EQ(read(managerKey + L"\\CapeDescription", L"CapeVersion"), L"1.1");
    EXPECT_TRUE(exists(managerKey + L"\\Implemented Categories\\{678C09A1-7D66-11D2-A67D-00105A42887F}"));
    EXPECT_TRUE(exists(managerKey + L"\\Implemented Categories\\{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}"));
    EXPECT_FALSE(exists(managerKey + L"\\Implemented Categories\\{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}"));
}

TEST_F(Registration, LeavesNothingBehind) {
    ASSERT_EQ(PackageDll::instance().registerServer(), S_OK);
    ASSERT_EQ(PackageDll::instance().unregisterServer(), S_OK);
    EXPECT_FALSE(exists(cls));
    EXPECT_EQ(numberOfClasses(L"Software\\Classes\\CLSID"), 0u);
    EXPECT_FALSE(exists(L"Tarnwick.PengRobinson"));
    EXPECT_FALSE(exists(L"Tarnwick.PengRobinson.1"));
    EXPECT_FALSE(exists(L"Tarnwick.PengRobinsonManager"));
    EXPECT_FALSE(exists(L"Tarnwick.PengRobinsonManager.1"));
}

TEST_F(Registration, UnregisteringTwiceIsNoFailure) {
    EXPECT_EQ(PackageDll::instance().unregisterServer(), S_OK);
    EXPECT_EQ(PackageDll::instance().unregisterServer(), S_OK);
}

} // namespace
} // namespace peng_robinson::test
