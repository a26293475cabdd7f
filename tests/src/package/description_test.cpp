// What a user is told about a package, from what its component has really registered.
#include "tests/src/package/package_fixture.h"

namespace quorvane {

namespace {

const std::string managerClsid = "{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A2}";
const std::string packageClsid = "{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A1}";

// The registry keys of the scripted package and its manager; taken out again at the end.
class Description : public PackageTest {
  protected:
    ~Description() override {
        for (const std::string& clsid : {packageClsid, managerClsid}) {
            RegDeleteTreeA(HKEY_CURRENT_USER, ("Software\\Classes\\CLSID\\" + clsid).c_str());
        }
    }

    static void registered(const std::string& key, const wchar_t* name, DWORD type, const void* data,
                           std::size_t bytes) {
        com::unique_registry_key opened;
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, ("Software\\Classes\\CLSID\\" + key).c_str(), 0, nullptr,
                                  0, KEY_WRITE, nullptr, opened.put(), nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExW(opened.get(), name, 0, type, static_cast<const BYTE*>(data),
                                 static_cast<DWORD>(bytes)),
                  ERROR_SUCCESS);
    }
    static void registered(const std::string& key, const wchar_t* name, const std::wstring& text) {
        registered(key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    }
    static void described(const wchar_t* name, const std::wstring& text) {
        registered(packageClsid + "\\CapeDescription", name, text);
    }
    std::string text() { return scripted::narrow(bind()->describe()); }

    const std::string plain = "Stand-alone CAPE-OPEN 1.1 Property Package\r\n"
                              "Package name: Scripted\r\n"
                              "CLSID: " +
                              packageClsid + "\r\n";
};

TEST_F(Description, OfAStandAlonePackageHasItsNameAndClass) { EXPECT_EQ(text(), plain); }

TEST_F(Description, OfAManagersPackageHasBothNames) {
    EXPECT_EQ(scripted::narrow(bindThroughManager(L"Second")->describe()),
              "Created from CAPE-OPEN 1.1 Property Package Manager\r\n"
              "Package manager name: Scripted manager\r\n"
              "Package name: Second\r\n"
              "CLSID: " +
                  managerClsid + "\r\n");
}
TEST_F(Description, NamesTheProgIdThatIsRegistered) {
    registered(managerClsid + "\\ProgID", nullptr, L"Scripted.Manager.1");
    EXPECT_EQ(scripted::narrow(bindThroughManager()->describe()),
              "Created from CAPE-OPEN 1.1 Property Package Manager\r\n"
              "Package manager name: Scripted manager\r\n"
              "Package name: First\r\n"
              "CLSID: " +
                  managerClsid +
                  "\r\n"
                  "ProdID: Scripted.Manager.1\r\n");
}
TEST_F(Description, HasALineForEverythingRegistered) {
    registered(packageClsid + "\\ProgID", nullptr, L"Scripted.Package.1");
    described(L"About", L"Made for tests");
    described(L"VendorURL", L"http://example.org");
    described(L"CapeVersion", L"1.1");
    described(L"ComponentVersion", L"2.0");
    described(L"Description", L"Answers what it is told");
    described(L"Name", L"Scripted package");
    described(L"HelpURL", L"not shown");
    EXPECT_EQ(text(), plain + "ProdID: Scripted.Package.1\r\n"
                              "Name: Scripted package\r\n"
                              "Description: Answers what it is told\r\n"
                              "Component version: 2.0\r\n"
                              "CAPE-OPEN version: 1.1\r\n"
                              "Vendor URL: http://example.org\r\n"
                              "Made for tests\r\n");
}
TEST_F(Description, LeavesOutEmptyAndMissingValues) {
    described(L"Description", L"");
    described(L"About", L"Made for tests");
    EXPECT_EQ(text(), plain + "Made for tests\r\n");
}
TEST_F(Description, AnEmptyKeyAddsNothing) {
    registered(packageClsid + "\\CapeDescription", L"Unknown", L"x");
    EXPECT_EQ(text(), plain);
}
TEST_F(Description, ShowsLongValuesWhole) {
    const std::wstring longText(20000, L'x');
    described(L"About", longText);
    EXPECT_EQ(text(), plain + std::string(20000, 'x') + "\r\n");
}
TEST_F(Description, LeavesOutValuesThatAreNoTexts) {
    const DWORD number = 0x00410041;
    registered(packageClsid + "\\CapeDescription", L"Name", REG_DWORD, &number, sizeof number);
    registered(packageClsid + "\\CapeDescription", L"Description", REG_BINARY, L"bytes", 12);
    registered(packageClsid + "\\CapeDescription", L"CapeVersion", REG_MULTI_SZ, L"1.0\0001.1\0", 18);
    described(L"About", L"Made for tests");
    EXPECT_EQ(text(), plain + "Made for tests\r\n");
}
TEST_F(Description, ReadsTextsWithoutTerminator) {
    registered(packageClsid + "\\CapeDescription", L"Name", REG_SZ, L"Unfinished", 20);
    registered(packageClsid + "\\CapeDescription", L"Description", REG_SZ, L"", 0);
    EXPECT_EQ(text(), plain + "Name: Unfinished\r\n");
}
TEST_F(Description, ReadsATextOfAnOddNumberOfBytes) {
    registered(packageClsid + "\\CapeDescription", L"Name", REG_SZ, L"ab", 3);
    EXPECT_TRUE(text().starts_with(plain + "Name: a"));
}
TEST_F(Description, EndsATextAtItsFirstTerminator) {
    registered(packageClsid + "\\CapeDescription", L"Name", REG_SZ, L"Name\0rest", 20);
    EXPECT_EQ(text(), plain + "Name: Name\r\n");
}
TEST_F(Description, AsksThePackageNothing) {
    const auto bound = bind();
    script.forgetCalls();
    bound->describe();
    EXPECT_EQ(script.calls(), std::vector<std::string>{});
}

} // namespace
} // namespace quorvane
