// ScriptedPackage.dll, which lies beside the test program: registration, and scripts from the environment.
#include "com/com_ptr.h"
#include "com/type_library.h"
#include "tests/scripted_package/variants.h"

#include <capeopen_idl.h>
#include <cstdio>
#include <gtest/gtest.h>

namespace {

using scripted::narrow;

class ScriptedDllTest : public testing::Test {
  protected:
    // The apartment and the library stay for the whole program: what they make once would be made anew each
    // time that the leak gate repeats a test.
    static void SetUpTestSuite() {
        if (module_ == nullptr) {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            std::wstring path = com::thisModulePath();
            path.replace(path.find_last_of(L'\\') + 1, std::wstring::npos, L"ScriptedPackage.dll");
            module_ = LoadLibraryW(path.c_str());
        }
        ASSERT_NE(module_, nullptr);
    }
    static void TearDownTestSuite() { EXPECT_EQ(call("DllUnregisterServer"), S_OK); }
    // For each test: one that the leak gate runs in a process of its own takes the registration back at its
    // end.
    void SetUp() override { ASSERT_EQ(call("DllRegisterServer"), S_OK); }
    void TearDown() override {
        SetEnvironmentVariableW(L"SCRIPTED_PACKAGE", nullptr);
        EXPECT_EQ(call("DllCanUnloadNow"), S_OK) << "objects were not released";
    }

    static HRESULT call(const char* name) {
        const auto function = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(
            reinterpret_cast<void*>(GetProcAddress(module_, name)));
        return function == nullptr ? E_NOINTERFACE : function();
    }
    static CLSID classOf(const wchar_t* progId) {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(progId, &clsid), S_OK) << narrow(progId);
        return clsid;
    }
    template <typename I>
    static com::com_ptr<I> create(const wchar_t* progId, HRESULT expected = S_OK) {
        com::com_ptr<IDispatch> object;
        EXPECT_EQ(CoCreateInstance(classOf(progId), nullptr, CLSCTX_ALL, IID_IDispatch, object.putVoid()),
                  expected);
        return object.tryAs<I>();
    }
    static std::string registered(const std::wstring& key, const wchar_t* value) {
        wchar_t text[300];
        DWORD size = sizeof text;
        const LSTATUS status =
            RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), value, RRF_RT_REG_SZ, nullptr, text, &size);
        return status == ERROR_SUCCESS ? narrow(text) : "error " + std::to_string(status);
    }

    static HMODULE module_;
};

HMODULE ScriptedDllTest::module_ = nullptr;

constexpr const wchar_t* package = L"Tarnwick.ScriptedPackage.1";
constexpr const wchar_t* manager = L"Tarnwick.ScriptedManager.1";

TEST_F(ScriptedDllTest, IsFoundByItsProgIdsAndBehavesHealthily) {
    const auto compounds = create<ICapeThermoCompounds>(package);
    ASSERT_TRUE(compounds);
    LONG count = 0;
    EXPECT_EQ(compounds->GetNumCompounds(&count), S_OK);
    EXPECT_EQ(count, 3);
    EXPECT_TRUE(create<ICapeThermoPropertyPackageManager>(manager));
    EXPECT_TRUE(create<ICapeThermoPhases>(L"Tarnwick.ScriptedPackage"));
}

TEST_F(ScriptedDllTest, IsDescribedAsCapeOpenComponentsAre) {
    const std::wstring key = L"CLSID\\{5D1B6C5B-0C5C-4C4E-9C55-3C0C4A6B7101}";
    EXPECT_EQ(registered(key + L"\\CapeDescription", L"Name"), "Scripted package");
    EXPECT_EQ(registered(key + L"\\CapeDescription", L"Description"),
              "A CAPE-OPEN property package whose every answer a test sets");
    EXPECT_EQ(registered(key + L"\\CapeDescription", L"CapeVersion"), "1.1");
    EXPECT_EQ(registered(key + L"\\CapeDescription", L"ComponentVersion"), "1.0");
    EXPECT_EQ(registered(key + L"\\CapeDescription", L"VendorURL"), "https://tarnwick.example/quorvane");
    EXPECT_EQ(registered(key + L"\\CapeDescription", L"About"), "For tests only");
    EXPECT_EQ(registered(key + L"\\InprocServer32", L"ThreadingModel"), "Apartment");
    EXPECT_EQ(registered(key + L"\\Implemented Categories\\{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}", nullptr),
              "");
    EXPECT_EQ(registered(L"CLSID\\{5D1B6C5B-0C5C-4C4E-9C55-3C0C4A6B7102}\\Implemented Categories\\"
                         L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}",
                         nullptr),
              "");
}

TEST_F(ScriptedDllTest, TakesItsScriptFromTheEnvironment) {
    SetEnvironmentVariableW(L"SCRIPTED_PACKAGE",
                            L"compounds=Water:18.015;GetPhaseList=0x8004050B:No phases today");
    const auto compounds = create<ICapeThermoCompounds>(package);
    LONG count = 0;
    EXPECT_EQ(compounds->GetNumCompounds(&count), S_OK);
    EXPECT_EQ(count, 1);
    com::variant labels, states, keys;
    EXPECT_EQ(compounds.tryAs<ICapeThermoPhases>()->GetPhaseList(&labels, &states, &keys),
              static_cast<HRESULT>(ECapeComputationHR));
    com::unique_bstr text;
    EXPECT_EQ(compounds.tryAs<ECapeUser>()->get_description(text.put()), S_OK);
    EXPECT_EQ(narrow(com::viewOf(text)), "No phases today");
}

TEST_F(ScriptedDllTest, AScriptThatCannotBeUnderstoodIsNoPackage) {
    SetEnvironmentVariableW(L"SCRIPTED_PACKAGE", L"nonsense");
    EXPECT_FALSE(create<ICapeThermoCompounds>(package, E_INVALIDARG));
}

TEST_F(ScriptedDllTest, LogsTheCallsThatItHears) {
    wchar_t folder[MAX_PATH];
    wchar_t file[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    ASSERT_NE(GetTempFileNameW(folder, L"log", 0, file), 0U);
    SetEnvironmentVariableW(L"SCRIPTED_PACKAGE", (std::wstring{L"log="} + file).c_str());
    const auto phases = create<ICapeThermoPhases>(package);
    LONG count = 0;
    EXPECT_EQ(phases->GetNumPhases(&count), S_OK);
    const com::unique_bstr label = com::makeBstr(L"Vapor");
    com::variant value;
    phases->GetPhaseInfo(label.get(), nullptr, &value);
    std::FILE* stream = _wfopen(file, L"rb");
    ASSERT_NE(stream, nullptr);
    char content[100] = {};
    static_cast<void>(std::fread(content, 1, sizeof content - 1, stream));
    std::fclose(stream);
    DeleteFileW(file);
    EXPECT_STREQ(content, "GetNumPhases()\nGetPhaseInfo(Vapor, null)\n");
}

TEST_F(ScriptedDllTest, LeavesNothingBehindWhenUnregistered) {
    ASSERT_EQ(call("DllUnregisterServer"), S_OK);
    HKEY key = nullptr;
    for (const wchar_t* name :
         {L"Software\\Classes\\Tarnwick.ScriptedPackage", L"Software\\Classes\\Tarnwick.ScriptedPackage.1",
          L"Software\\Classes\\Tarnwick.ScriptedManager", L"Software\\Classes\\Tarnwick.ScriptedManager.1",
          L"Software\\Classes\\CLSID\\{5D1B6C5B-0C5C-4C4E-9C55-3C0C4A6B7101}",
          L"Software\\Classes\\CLSID\\{5D1B6C5B-0C5C-4C4E-9C55-3C0C4A6B7102}"}) {
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND)
            << narrow(name);
    }
    EXPECT_EQ(call("DllUnregisterServer"), S_OK) << "a second time";
    EXPECT_EQ(call("DllRegisterServer"), S_OK);
}

} // namespace
