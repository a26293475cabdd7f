// The help button, with copies of the built DLL and a stand-in for the viewer of Windows, registered as that
// is. A copy in its own folder has its own memory of the viewer, like a new process.
#include "tests/leak_gate/state.h"
#include "tests/src/server/add_in.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

using namespace tests;

namespace {

const std::wstring viewerClass = L"Software\\Classes\\CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}";
const std::wstring viewerKey = viewerClass + L"\\InprocServer32";

template <typename Function>
Function exported(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

class Help : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { leak_gate::leaveOutWhatUnloadedDllsKeep(); }
    void SetUp() override {
        static int number = 0;
        folder = std::filesystem::temp_directory_path() /
                 ("quorvane_help_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++number));
        std::filesystem::remove_all(folder); // of a run that was killed
        std::filesystem::create_directories(folder);
        server = loadServer(L"server.dll");
    }
    void TearDown() override {
        FreeLibrary(server);
        // The add-in keeps its viewer loaded, and a loaded file cannot be deleted.
        for (const std::wstring& name : {std::wstring{systemViewer}, (folder / L"viewer.dll").wstring(),
                                         (folder / L"second.dll").wstring()}) {
            while (const HMODULE loaded = GetModuleHandleW(name.c_str())) {
                FreeLibrary(loaded);
            }
        }
        if (before) {
            setUserValue(viewerKey, nullptr, *before);
        } else {
            deleteUserKey(viewerClass);
        }
        std::filesystem::remove_all(folder);
    }

    static std::filesystem::path besideTheProgram(const wchar_t* name) {
        return std::filesystem::path{AddIn::instance().path()}.parent_path() / name;
    }
    HMODULE loadServer(const wchar_t* name) {
        const std::filesystem::path path = folder / name;
        std::filesystem::copy_file(AddIn::instance().path(), path);
        const HMODULE module = LoadLibraryW(path.c_str());
        EXPECT_NE(module, nullptr);
        return module;
    }
    std::wstring viewerFile(const wchar_t* name = L"viewer.dll") {
        std::filesystem::copy_file(besideTheProgram(L"HelpViewer.dll"), folder / name);
        return (folder / name).wstring();
    }
    /// A module that is no viewer.
    std::wstring otherFile() {
        std::filesystem::copy_file(AddIn::instance().path(), folder / L"other.dll");
        return (folder / L"other.dll").wstring();
    }
    /// Puts the stand-in where the system's own viewer is found: a module of that name that is loaded
    /// already. Wine loads its own in place of any file of that name; that is as good, as long as it was not
    /// loaded.
    void standInForTheSystemsViewer() {
        const HMODULE loaded = LoadLibraryW(viewerFile(systemViewer).c_str());
        if (exported<int (*)()>(loaded, "shownTimes") == nullptr) {
            FreeLibrary(loaded);
            ASSERT_EQ(GetModuleHandleW(systemViewer), nullptr);
        }
    }
    static bool systemsViewerWasAsked() {
        const HMODULE loaded = GetModuleHandleW(systemViewer);
        return loaded != nullptr &&
               (exported<int (*)()>(loaded, "shownTimes") == nullptr || shownTimes(loaded) == 1);
    }

    static void registered(const std::wstring& path, DWORD type = REG_SZ) {
        com::unique_registry_key key;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, viewerKey.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                                  key.put(), nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExW(key.get(), nullptr, 0, type, reinterpret_cast<const BYTE*>(path.c_str()),
                                 static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
    }

    static com::com_ptr<IQuorvaneVSTOServices> addInOf(HMODULE module) {
        const auto getClassObject =
            exported<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>(module, "DllGetClassObject");
        com::com_ptr<IClassFactory> factory;
        com::com_ptr<IQuorvaneVSTOServices> object;
        EXPECT_EQ(getClassObject(__uuidof(Excel), IID_IClassFactory, factory.putVoid()), S_OK);
        EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IQuorvaneVSTOServices), object.putVoid()), S_OK);
        return object;
    }
    /// The message of a failing call, or nothing.
    std::wstring help() const {
        SetErrorInfo(0, nullptr);
        const HRESULT code = addInOf(server)->Help();
        com::com_ptr<IErrorInfo> info;
        if (code == S_OK || GetErrorInfo(0, info.put()) != S_OK) {
            EXPECT_EQ(code, S_OK);
            return {};
        }
        EXPECT_EQ(code, E_FAIL);
        com::unique_bstr source;
        com::unique_bstr description;
        GUID iid{};
        info->GetSource(source.put());
        info->GetDescription(description.put());
        info->GetGUID(&iid);
        EXPECT_EQ(com::viewOf(source), L"Quorvane.Excel");
        EXPECT_TRUE(iid == __uuidof(IQuorvaneVSTOServices));
        return std::wstring{com::viewOf(description)};
    }

    /// The stand-in once it is loaded; it stays loaded.
    HMODULE viewer(const wchar_t* name = L"viewer.dll") const {
        return GetModuleHandleW((folder / name).c_str());
    }
    static int shownTimes(HMODULE module) { return exported<int (*)()>(module, "shownTimes")(); }
    static std::wstring shownFile(HMODULE module) {
        return exported<const wchar_t* (*)()>(module, "shownFile")();
    }
    static bool shownOtherwise(HMODULE module) {
        return exported<int (*)()>(module, "shownOtherwise")() != 0;
    }
    static void answer(HMODULE module) { exported<void (*)(HWND)>(module, "answerWith")(GetDesktopWindow()); }

    static constexpr const wchar_t* systemViewer = L"hhctrl.ocx";
    static constexpr const wchar_t* failure = L"Failed to load help file";

    std::filesystem::path folder;
    HMODULE server = nullptr;
    const std::optional<std::wstring> before = userValue(viewerKey, nullptr);
};

TEST_F(Help, OpensTheFileBesideTheAddIn) {
    const std::wstring path = viewerFile();
    registered(path);
    const HMODULE loaded = LoadLibraryW(path.c_str());
    answer(loaded);
    EXPECT_EQ(help(), L"");
    EXPECT_EQ(shownTimes(loaded), 1);
    EXPECT_EQ(shownFile(loaded), (folder / L"Quorvane.chm").wstring());
    EXPECT_FALSE(shownOtherwise(loaded)) << "no owner window, the first topic, no data";
}
TEST_F(Help, WithoutAWindowFails) {
    registered(viewerFile());
    EXPECT_EQ(help(), failure);
    ASSERT_NE(viewer(), nullptr);
    EXPECT_EQ(shownTimes(viewer()), 1);
}
TEST_F(Help, ThatShowedNoWindowIsTriedAgain) {
    registered(viewerFile());
    EXPECT_EQ(help(), failure);
    answer(viewer());
    EXPECT_EQ(help(), L"");
    EXPECT_EQ(shownTimes(viewer()), 2);
}
TEST_F(Help, KeepsTheViewerThatItFound) {
    registered(viewerFile());
    help();
    registered(viewerFile(L"second.dll"));
    help();
    EXPECT_EQ(shownTimes(viewer()), 2);
    EXPECT_EQ(viewer(L"second.dll"), nullptr) << "the registry is read once";
}
TEST_F(Help, ThatFailsIsRaisedInScripts) {
    registered(otherFile());
    const com::com_ptr<IQuorvaneVSTOServices> addIn = addInOf(server);
    wchar_t name[] = L"Help";
    wchar_t* names[] = {name};
    DISPID member = DISPID_UNKNOWN;
    ASSERT_EQ(addIn->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member), S_OK);
    DISPPARAMS none{};
    EXCEPINFO exception{};
    EXPECT_EQ(addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr,
                            &exception, nullptr),
              DISP_E_EXCEPTION);
    const com::unique_bstr source{exception.bstrSource};
    const com::unique_bstr description{exception.bstrDescription};
    const com::unique_bstr helpFile{exception.bstrHelpFile};
    EXPECT_EQ(com::viewOf(source), L"Quorvane.Excel");
    EXPECT_EQ(com::viewOf(description), failure);
}
TEST_F(Help, WithoutAViewerFailsAtOnceFromThenOn) {
    registered(otherFile());
    EXPECT_EQ(help(), failure);
    registered(viewerFile());
    EXPECT_EQ(help(), failure);
    EXPECT_EQ(viewer(), nullptr) << "the registry is not looked at again";
}
TEST_F(Help, LetsGoOfAModuleThatIsNoViewer) {
    registered(otherFile());
    help();
    EXPECT_EQ(viewer(L"other.dll"), nullptr);
}
TEST_F(Help, ExpandsVariablesInAnExpandableValue) {
    viewerFile();
    SetEnvironmentVariableW(L"QUORVANE_HELP_TEST", folder.c_str());
    registered(L"%QUORVANE_HELP_TEST%\\viewer.dll", REG_EXPAND_SZ);
    EXPECT_EQ(help(), failure);
    ASSERT_NE(viewer(), nullptr);
    EXPECT_EQ(shownTimes(viewer()), 1);
}
TEST_F(Help, TakesAPlainValueAsItIs) {
    viewerFile();
    standInForTheSystemsViewer();
    SetEnvironmentVariableW(L"QUORVANE_HELP_TEST", folder.c_str());
    registered(L"%QUORVANE_HELP_TEST%\\viewer.dll");
    help();
    EXPECT_EQ(viewer(), nullptr);
    EXPECT_TRUE(systemsViewerWasAsked());
}
TEST_F(Help, FallsBackToTheSystemsViewerWhenTheRegisteredOneDoesNotLoad) {
    standInForTheSystemsViewer();
    registered((folder / L"missing.dll").wstring());
    help();
    EXPECT_TRUE(systemsViewerWasAsked());
}
TEST_F(Help, FallsBackToTheSystemsViewerWhenNoneIsRegistered) {
    standInForTheSystemsViewer();
    deleteUserKey(viewerClass);
    help();
    EXPECT_TRUE(systemsViewerWasAsked());
}
TEST_F(Help, FallsBackToTheSystemsViewerWhenThePathIsTooLong) {
    standInForTheSystemsViewer();
    std::wstring path = folder.wstring();
    while (path.size() < MAX_PATH) {
        path += L"\\.";
    }
    viewerFile();
    registered(path + L"\\viewer.dll");
    help();
    EXPECT_EQ(viewer(), nullptr);
    EXPECT_TRUE(systemsViewerWasAsked());
}
TEST_F(Help, IgnoresAValueThatIsNoText) {
    standInForTheSystemsViewer();
    registered(viewerFile(), REG_BINARY);
    help();
    EXPECT_EQ(viewer(), nullptr);
    EXPECT_TRUE(systemsViewerWasAsked());
}

} // namespace
