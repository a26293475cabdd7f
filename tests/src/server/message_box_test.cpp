// The message boxes of saving and restoring, as they stand on the screen. script/checks/message_boxes gives
// this program a screen; the other tests have none.
#include "com/safe_array.h"
#include "tests/src/server/worksheet.h"

#include <functional>
#include <gmock/gmock.h>

using namespace tests;

namespace {

struct Box {
    std::wstring caption;
    std::wstring text;
    bool hasErrorIcon = false;
    bool hasOwner = true;
    std::vector<std::wstring> buttons;
};

// Looks at every message box of this thread, and presses its button.
class Watcher {
  public:
    Watcher() : hook_{SetWindowsHookExW(WH_CBT, seen, nullptr, GetCurrentThreadId())} { watcher = this; }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    ~Watcher() {
        UnhookWindowsHookEx(hook_);
        watcher = nullptr;
    }

    std::vector<Box> boxes;
    std::function<void()> meanwhile = [] {};

  private:
    static std::wstring textOfWindow(HWND window) {
        std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
        text.resize(
            static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
        return text;
    }
    static bool isOfClass(HWND window, const wchar_t* expected) {
        wchar_t name[64] = {};
        GetClassNameW(window, name, static_cast<int>(std::size(name)));
        return lstrcmpiW(name, expected) == 0;
    }

    static BOOL CALLBACK readControl(HWND control, LPARAM box) {
        Box& result = *reinterpret_cast<Box*>(box);
        if (isOfClass(control, L"Button") && (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0) {
            result.buttons.push_back(textOfWindow(control));
        } else if (isOfClass(control, L"Static")) {
            if ((GetWindowLongW(control, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
                const LRESULT icon = SendMessageW(control, STM_GETICON, 0, 0);
                result.hasErrorIcon = icon == reinterpret_cast<LRESULT>(LoadIconW(nullptr, IDI_ERROR));
            } else {
                result.text = textOfWindow(control);
            }
        }
        return TRUE;
    }

    void look(HWND window) {
        if (window == last_ || !isOfClass(window, L"#32770")) {
            return;
        }
        last_ = window;
        Box box;
        box.caption = textOfWindow(window);
        box.hasOwner = GetWindow(window, GW_OWNER) != nullptr;
        EnumChildWindows(window, readControl, reinterpret_cast<LPARAM>(&box));
        boxes.push_back(std::move(box));
        meanwhile();
        PostMessageW(window, WM_COMMAND, IDOK, 0);
    }

    static LRESULT CALLBACK seen(int code, WPARAM window, LPARAM details) {
        if (code == HCBT_ACTIVATE) {
            watcher->look(reinterpret_cast<HWND>(window));
        }
        return CallNextHookEx(nullptr, code, window, details);
    }

    static inline Watcher* watcher = nullptr;
    HHOOK hook_;
    HWND last_ = nullptr;
};

class MessageBoxes : public Worksheet {
  protected:
    /// Restores rows of these names, all with a GUID that is none.
    void restoreBadRows(const std::vector<std::wstring>& managers) {
        com::unique_safearray array = com::makeMatrix(VT_BSTR, managers.size(), 6);
        {
            const com::array_lock<BSTR> lock{array.get()};
            for (std::size_t i = 0; i < managers.size(); ++i) {
                const std::wstring cells[] = {L"P", managers[i], L"StandAlonePackage11", L"?"};
                for (std::size_t column = 0; column < std::size(cells); ++column) {
                    lock.elements()[i + column * managers.size()] = com::makeBstr(cells[column]).release();
                }
            }
        }
        EXPECT_EQ(addIn->Depersist(book(), com::variant::array(std::move(array), VT_BSTR)), S_OK);
    }
    static void expectErrorBox(const Box& box, const std::wstring& expectedText) {
        EXPECT_EQ(box.caption, L"Quorvane:");
        EXPECT_EQ(box.text, expectedText);
        EXPECT_TRUE(box.hasErrorIcon);
        EXPECT_FALSE(box.hasOwner);
        EXPECT_EQ(box.buttons.size(), 1U);
    }

    Watcher watcher;
};

TEST_F(MessageBoxes, TellsThatAPackageCannotBeRestored) {
    restoreBadRows({L"Scripted"});
    ASSERT_EQ(watcher.boxes.size(), 1U);
    expectErrorBox(watcher.boxes[0], L"Cannot restore property package from Scripted: invalid GUID string");
}
TEST_F(MessageBoxes, TellsOfEachRow) {
    restoreBadRows({L"First", L""});
    ASSERT_EQ(watcher.boxes.size(), 2U);
    expectErrorBox(watcher.boxes[0], L"Cannot restore property package from First: invalid GUID string");
    expectErrorBox(watcher.boxes[1],
                   L"Cannot restore property package from <Unknown manager>: invalid GUID string");
}
TEST_F(MessageBoxes, TellsThatAPackageCannotBeSaved) {
    attach(L"My gas");
    package->fails("Save", static_cast<HRESULT>(0x87654321));
    com::variant table;
    EXPECT_EQ(addIn->Persist(book(), &table), S_OK);
    ASSERT_EQ(watcher.boxes.size(), 1U);
    expectErrorBox(watcher.boxes[0], L"Failed to save package My gas: error code 0x87654321");
    EXPECT_EQ(table.vt, VT_ARRAY | VT_BSTR);
}
TEST_F(MessageBoxes, SaysNothingWhenAllIsWell) {
    attach();
    com::variant table;
    EXPECT_EQ(addIn->Persist(book(), &table), S_OK);
    EXPECT_EQ(addIn->Depersist(book(), table), S_OK);
    EXPECT_TRUE(watcher.boxes.empty());
}
TEST_F(MessageBoxes, TheWorkbookMayBeClosedWhileOneIsShown) {
    attach();
    watcher.meanwhile = [this] { EXPECT_EQ(addIn->CloseWorkbook(book()), S_OK); };
    restoreBadRows({L"Scripted", L"Scripted"});
    EXPECT_EQ(scripted::liveObjects(), 0);
    EXPECT_EQ(show(L"CapeOpenPackageNames"), "No CAPE-OPEN packages are loaded");
}
TEST_F(MessageBoxes, ALongTextStillFindsItsEnd) {
    restoreBadRows({std::wstring(1'000'000, L'x')});
    ASSERT_EQ(watcher.boxes.size(), 1U);
    EXPECT_EQ(watcher.boxes[0].text.size(), 4000U);
}

} // namespace
