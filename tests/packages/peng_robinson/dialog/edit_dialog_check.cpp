// The window that edits a package, on a screen: a second thread operates its controls while Edit waits.
#include "packages/peng_robinson/dialog/controls.h"
#include "packages/peng_robinson/state/state.h"
#include "tests/packages/peng_robinson/com/byte_stream.h"
#include "tests/packages/peng_robinson/com/support.h"
#include "tests/packages/peng_robinson/com/test_material.h"
#include "tests/packages/peng_robinson/dialog/driven_dialog.h"

#include <filesystem>
#include <fstream>

namespace peng_robinson::test {
namespace {

struct EditWindow : Package {
    HRESULT edit(const std::function<void(const DrivenDialog&)>& operate) {
        return drive([this] { return utilities->Edit(); }, operate);
    }
    com::com_ptr<IPersistStreamInit> persistence() { return object.tryAs<IPersistStreamInit>(); }
    Bytes saved() {
        const auto stream = com::make<ByteStream>();
        EXPECT_EQ(persistence()->Save(stream.get(), FALSE), S_OK);
        return stream->bytes;
    }
    Selection selection() { return readState(saved(), *builtInCatalogue()); }
    static CompoundPair pair(const char* first, const char* second) {
        return pairOf(builtInCatalogue()->find(first).value(), builtInCatalogue()->find(second).value());
    }
    /// Logarithms of the fugacity coefficients of methane and ethane.
    Reals lnPhi() {
        const auto material = com::make<TestMaterial>(Texts{L"methane", L"ethane"});
        EXPECT_EQ(context->SetMaterial(material->self()), S_OK);
        const com::unique_bstr liquid = com::makeBstr(L"Liquid");
        com::variant values, dT, dP, dn;
        EXPECT_EQ(properties->CalcAndGetLnPhi(liquid.get(), 200.0, 5e6, reals({0.5, 0.5}), 1, &values, &dT,
                                              &dP, &dn),
                  S_OK);
        return realsOf(values);
    }
};

TEST_F(EditWindow, ShowsCompoundsAndParameters) {
    edit([](const DrivenDialog& window) {
        EXPECT_EQ(window.title(), L"Edit Peng-Robinson");
        EXPECT_EQ(window.lines(CONTROL_AVAILABLE), Texts{});
        const Texts chosen = window.lines(CONTROL_CHOSEN);
        ASSERT_EQ(chosen.size(), 25u);
        EXPECT_EQ(chosen.front(), L"nitrogen");
        EXPECT_EQ(window.selectedLine(CONTROL_CHOSEN), L"nitrogen");
        EXPECT_EQ(window.lines(CONTROL_PAIRS).size(), 300u);
        EXPECT_EQ(window.selectedLine(CONTROL_PAIRS), L"nitrogen - carbon dioxide\t-0.017");
        EXPECT_EQ(window.text(CONTROL_PARAMETER), L"-0.017");
        EXPECT_EQ(window.text(CONTROL_TABULATED), L"Table value: -0.017");
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"");
        EXPECT_FALSE(window.isEnabled(CONTROL_ADD));
        EXPECT_TRUE(window.isEnabled(CONTROL_REMOVE));
        EXPECT_FALSE(window.isEnabled(CONTROL_UP));
        EXPECT_TRUE(window.isEnabled(CONTROL_DOWN));
    });
}

TEST_F(EditWindow, ChangedParameterIsTakenOver) {
    const Reals before = lnPhi();
    const HRESULT result = edit([](const DrivenDialog& window) {
        const Texts pairs = window.lines(CONTROL_PAIRS);
        const auto found = std::ranges::find_if(
            pairs, [](const std::wstring& line) { return line.starts_with(L"methane - ethane\t"); });
        ASSERT_NE(found, pairs.end());
        window.select(CONTROL_PAIRS, *found);
        window.type(CONTROL_PARAMETER, L"0.05");
        EXPECT_EQ(window.selectedLine(CONTROL_PAIRS), L"methane - ethane\t0.05 *");
        window.press(IDOK);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(selection().changed, (std::map<CompoundPair, double>{{pair("methane", "ethane"), 0.05}}));
    EXPECT_EQ(persistence()->IsDirty(), S_OK);
    EXPECT_NE(lnPhi(), before);
    EXPECT_EQ(persistence()->Save(com::make<ByteStream>().get(), TRUE), S_OK);
    EXPECT_EQ(persistence()->IsDirty(), S_FALSE);
}

TEST_F(EditWindow, CancelLeavesThePackage) {
    const Bytes before = saved();
    const HRESULT result = edit([](const DrivenDialog& window) {
        window.type(CONTROL_PARAMETER, L"0.5");
        window.press(CONTROL_REMOVE);
        window.press(IDCANCEL);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_FALSE);
    EXPECT_EQ(saved(), before);
    EXPECT_EQ(persistence()->IsDirty(), S_FALSE);
}

TEST_F(EditWindow, OkWithoutAChangeIsAcceptedAndLeavesThePackage) {
    const Bytes before = saved();
    const HRESULT result = edit([](const DrivenDialog& window) {
        window.type(CONTROL_PARAMETER, L"0.5");
        window.press(CONTROL_USE_TABULATED);
        EXPECT_EQ(window.text(CONTROL_PARAMETER), L"-0.017");
        EXPECT_EQ(window.selectedLine(CONTROL_PAIRS), L"nitrogen - carbon dioxide\t-0.017");
        window.press(IDOK);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(saved(), before);
    EXPECT_EQ(persistence()->IsDirty(), S_FALSE);
}

TEST_F(EditWindow, TableValueReplacesAMistakeInTheListToo) {
    const HRESULT result = edit([](const DrivenDialog& window) {
        window.type(CONTROL_PARAMETER, L"0.5");
        window.type(CONTROL_PARAMETER, L"");
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"Enter a number");
        EXPECT_EQ(window.selectedLine(CONTROL_PAIRS), L"nitrogen - carbon dioxide\t0.5 *");
        window.press(CONTROL_USE_TABULATED);
        EXPECT_EQ(window.text(CONTROL_PARAMETER), L"-0.017");
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"");
        EXPECT_EQ(window.selectedLine(CONTROL_PAIRS), L"nitrogen - carbon dioxide\t-0.017");
        window.press(IDOK);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(selection().changed.empty());
}

TEST_F(EditWindow, CompoundsAreRemovedAddedAndMoved) {
    EXPECT_EQ(
        edit([](const DrivenDialog& window) {
            for (int i = 0; i < 22; ++i) {
                window.press(CONTROL_REMOVE);
            }
            EXPECT_EQ(window.lines(CONTROL_CHOSEN), (Texts{L"oxygen", L"carbon monoxide", L"argon"}));
            EXPECT_EQ(window.lines(CONTROL_PAIRS).size(), 3u);
            window.doubleClick(CONTROL_CHOSEN, L"carbon monoxide");
            window.doubleClick(CONTROL_AVAILABLE, L"nitrogen");
            window.select(CONTROL_AVAILABLE, L"propane");
            window.press(CONTROL_ADD);
            EXPECT_EQ(window.lines(CONTROL_CHOSEN), (Texts{L"oxygen", L"argon", L"nitrogen", L"propane"}));
            EXPECT_EQ(window.selectedLine(CONTROL_CHOSEN), L"propane");
            window.press(CONTROL_UP);
            window.select(CONTROL_CHOSEN, L"oxygen");
            window.press(CONTROL_DOWN);
            EXPECT_EQ(window.lines(CONTROL_CHOSEN), (Texts{L"argon", L"oxygen", L"propane", L"nitrogen"}));
            EXPECT_EQ(window.lines(CONTROL_AVAILABLE).size(), 21u);
            window.press(IDOK);
        }),
        S_OK);
    EXPECT_EQ(compoundIdsOf(*compounds), (Texts{L"argon", L"oxygen", L"propane", L"nitrogen"}));
}

TEST_F(EditWindow, BadNumberIsToldAndKeepsTheWindowOpen) {
    const HRESULT result = edit([](const DrivenDialog& window) {
        window.type(CONTROL_PARAMETER, L"0,1");
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"\"0,1\" is not a number; write it with a decimal point");
        window.press(IDOK);
        EXPECT_TRUE(window.isOpen());
        EXPECT_TRUE(window.hasFocus(CONTROL_PARAMETER));
        window.select(CONTROL_PAIRS, window.lines(CONTROL_PAIRS)[5]);
        EXPECT_EQ(window.selectedLine(CONTROL_PAIRS), L"nitrogen - carbon dioxide\t-0.017");
        window.press(CONTROL_REMOVE);
        EXPECT_EQ(window.lines(CONTROL_CHOSEN).size(), 25u);
        window.type(CONTROL_PARAMETER, L"7");
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"A binary parameter is between -2 and 1");
        window.type(CONTROL_PARAMETER, L"");
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"Enter a number");
        window.type(CONTROL_PARAMETER, L"0.1");
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"");
        window.press(IDOK);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(selection().changed,
              (std::map<CompoundPair, double>{{pair("nitrogen", "carbon dioxide"), 0.1}}));
}

TEST_F(EditWindow, PackageWithoutCompoundsIsRefused) {
    const HRESULT result = edit([](const DrivenDialog& window) {
        for (int i = 0; i < 25; ++i) {
            window.press(CONTROL_REMOVE);
        }
        EXPECT_EQ(window.lines(CONTROL_PAIRS), Texts{});
        EXPECT_FALSE(window.isEnabled(CONTROL_PARAMETER));
        EXPECT_FALSE(window.isEnabled(CONTROL_REMOVE));
        window.press(IDOK);
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"A package needs at least one compound");
        EXPECT_TRUE(window.hasFocus(CONTROL_AVAILABLE));
        window.press(CONTROL_ADD);
        EXPECT_EQ(window.text(CONTROL_MESSAGE), L"");
        window.press(IDOK);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(compoundIdsOf(*compounds).size(), 1u);
}

TEST_F(EditWindow, EscapeCancels) {
    const HRESULT result = edit([](const DrivenDialog& window) {
        window.type(CONTROL_PARAMETER, L"0.5");
        window.key(VK_ESCAPE);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_FALSE);
    EXPECT_TRUE(selection().changed.empty());
}

TEST_F(EditWindow, KeyboardDoesIt) {
    const HRESULT result = edit([](const DrivenDialog& window) {
        window.alt(L'r');
        EXPECT_TRUE(window.eventually([&] { return window.lines(CONTROL_CHOSEN).size() == 24; }));
        window.alt(L'p');
        EXPECT_TRUE(window.eventually([&] { return window.hasFocus(CONTROL_PARAMETER); }));
        window.key(VK_TAB);
        EXPECT_TRUE(window.eventually([&] { return window.hasFocus(CONTROL_USE_TABULATED); }));
        window.alt(L'c');
        EXPECT_TRUE(window.eventually([&] { return window.hasFocus(CONTROL_CHOSEN); }));
        window.key(VK_RETURN);
        EXPECT_TRUE(window.closes());
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(compoundIdsOf(*compounds).size(), 24u);
}

TEST_F(EditWindow, OpensOnceAtATime) {
    static ICapeUtilities* edited = nullptr;
    static HRESULT second = S_OK;
    edited = utilities.get();
    // The timer calls on the thread that waits for the window, as a client does that is called back
    // meanwhile.
    const UINT_PTR timer = SetTimer(nullptr, 0, 1, [](HWND, UINT, UINT_PTR, DWORD) {
        if (second == S_OK) {
            second = edited->Edit();
        }
    });
    edit([](const DrivenDialog& window) { EXPECT_TRUE(window.eventually([] { return second != S_OK; })); });
    KillTimer(nullptr, timer);
    expectFailure(second, ECapeBadInvOrderHR, L"The package is being edited already", L"ICapeUtilities",
                  L"Edit");
}

TEST_F(EditWindow, RestoredPackageShowsItsChanges) {
    const HRESULT result = edit([](const DrivenDialog& window) {
        window.type(CONTROL_PARAMETER, L"0.25");
        window.press(IDOK);
    });
    EXPECT_EQ(result, S_OK);
    const auto stream = com::make<ByteStream>();
    stream->bytes = saved();
    const auto restored = PackageDll::instance().createPackage();
    ASSERT_EQ(restored.tryAs<IPersistStreamInit>()->Load(stream.get()), S_OK);
    const auto again = restored.tryAs<ICapeUtilities>();
    EXPECT_EQ(drive([&] { return again->Edit(); },
                    [](const DrivenDialog& window) {
                        EXPECT_EQ(window.selectedLine(CONTROL_PAIRS), L"nitrogen - carbon dioxide\t0.25 *");
                        window.press(IDOK);
                    }),
              S_OK);
}

TEST_F(EditWindow, PackageOfADefinitionIsEditedAndRestored) {
    const auto folder = std::filesystem::temp_directory_path() / L"Peng-Robinson window test";
    std::filesystem::create_directories(folder);
    std::ofstream{folder / L"mine.txt"}
        << "[compounds]\nname,formula,CAS number,molecular weight,critical temperature,critical "
           "pressure,acentric "
           "factor,normal boiling point,cp0\n\xC3\xA9thane,C2H6,,30,305.3,4872200,0.0995,184.6,53\n"
           "heavy,,,110,580,2600000,0.36,,180\n";
    SetEnvironmentVariableW(L"PENGROBINSON_PACKAGES", folder.c_str());
    const auto manager = PackageDll::instance().createManager().tryAs<ICapeThermoPropertyPackageManager>();
    const auto open = [&] {
        const com::unique_bstr name = com::makeBstr(L"mine");
        com::com_ptr<IDispatch> package;
        EXPECT_EQ(manager->GetPropertyPackage(name.get(), package.put()), S_OK);
        return package;
    };
    const auto package = open();
    const auto editor = package.tryAs<ICapeUtilities>();
    EXPECT_EQ(drive([&] { return editor->Edit(); },
                    [](const DrivenDialog& window) {
                        EXPECT_EQ(window.title(), L"Edit mine");
                        EXPECT_EQ(window.lines(CONTROL_PAIRS), Texts{L"\x00E9thane - heavy\t0"});
                        window.type(CONTROL_PARAMETER, L"-0.125");
                        window.press(CONTROL_DOWN);
                        window.press(IDOK);
                    }),
              S_OK);
    const auto stream = com::make<ByteStream>();
    ASSERT_EQ(package.tryAs<IPersistStreamInit>()->Save(stream.get(), TRUE), S_OK);
    const auto restored = open();
    ASSERT_EQ(restored.tryAs<IPersistStreamInit>()->Load(stream.get()), S_OK);
    EXPECT_EQ(compoundIdsOf(*restored.tryAs<ICapeThermoCompounds>()), (Texts{L"heavy", L"\x00E9thane"}));
    const auto restoredEditor = restored.tryAs<ICapeUtilities>();
    EXPECT_EQ(drive([&] { return restoredEditor->Edit(); },
                    [](const DrivenDialog& window) { EXPECT_EQ(window.text(CONTROL_PARAMETER), L"-0.125"); }),
              S_FALSE);
    SetEnvironmentVariableW(L"PENGROBINSON_PACKAGES", nullptr);
    std::filesystem::remove_all(folder);
}

struct WithoutScreen : Package {};

TEST_F(WithoutScreen, EditFailsAtOnce) {
    expectFailure(utilities->Edit(), ECapeFailedInitialisationHR,
                  L"The package cannot be edited: there is no screen to show its window", L"ICapeUtilities",
                  L"Edit");
}

} // namespace
} // namespace peng_robinson::test
