#include "tests/packages/peng_robinson/dialog/driven_dialog.h"

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace peng_robinson::test {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 60s; // for a machine that stands still, not for a slow one

// The dialog of that thread, once it is shown.
HWND findDialog(DWORD thread) {
    HWND found = nullptr;
    EnumThreadWindows(
        thread,
        [](HWND window, LPARAM result) {
            wchar_t name[16] = {};
            GetClassNameW(window, name, 16);
            if (std::wstring_view{name} == L"#32770" && IsWindowVisible(window)) {
                *reinterpret_cast<HWND*>(result) = window;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

HWND waitForDialog(DWORD thread, const std::atomic<bool>& isOver) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!isOver && std::chrono::steady_clock::now() < end) {
        if (HWND const window = findDialog(thread)) {
            return window;
        }
        std::this_thread::sleep_for(5ms);
    }
    return nullptr;
}

} // namespace

std::wstring DrivenDialog::textOf(HWND window) {
    std::wstring text(512, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

// The list may change meanwhile: what is gone is left out.
std::vector<std::wstring> DrivenDialog::lines(int list) const {
    std::vector<std::wstring> result;
    const LRESULT count = SendMessageW(item(list), LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        std::wstring line(512, L'\0');
        const LRESULT size = SendMessageW(item(list), LB_GETTEXT, static_cast<WPARAM>(i),
                                          reinterpret_cast<LPARAM>(line.data()));
        if (size >= 0) {
            line.resize(static_cast<std::size_t>(size));
            result.push_back(std::move(line));
        }
    }
    return result;
}

std::wstring DrivenDialog::selectedLine(int list) const {
    const LRESULT index = SendMessageW(item(list), LB_GETCURSEL, 0, 0);
    return index < 0 ? std::wstring{} : lines(list).at(static_cast<std::size_t>(index));
}

HWND DrivenDialog::focus() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info) != 0 ? info.hwndFocus
                                                                                    : nullptr;
}

bool DrivenDialog::hasFocus(int control) const { return focus() == item(control); }

bool DrivenDialog::closes() const {
    return eventually([this] { return !isOpen(); });
}

void DrivenDialog::press(int button) const { SendMessageW(item(button), BM_CLICK, 0, 0); }

void DrivenDialog::select(int list, const std::wstring& line) const {
    const LRESULT index = SendMessageW(item(list), LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                       reinterpret_cast<LPARAM>(line.c_str()));
    SendMessageW(item(list), LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    notify(list, LBN_SELCHANGE);
}

void DrivenDialog::doubleClick(int list, const std::wstring& line) const {
    select(list, line);
    notify(list, LBN_DBLCLK);
}

void DrivenDialog::type(int field, const std::wstring& text) const {
    SendMessageW(item(field), EM_SETSEL, 0, -1);
    SendMessageW(item(field), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
}

void DrivenDialog::key(WORD virtualKey) const {
    PostMessageW(focus(), WM_KEYDOWN, virtualKey, 0);
    PostMessageW(focus(), WM_KEYUP, virtualKey, 0);
}

void DrivenDialog::alt(wchar_t letter) const {
    constexpr LPARAM altIsDown = 1 << 29;
    PostMessageW(focus(), WM_SYSCHAR, static_cast<WPARAM>(letter), altIsDown);
}

bool DrivenDialog::eventually(const std::function<bool()>& isSo) const {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

void DrivenDialog::notify(int control, int notification) const {
    SendMessageW(window_, WM_COMMAND, MAKEWPARAM(control, notification),
                 reinterpret_cast<LPARAM>(item(control)));
}

HRESULT drive(const std::function<HRESULT()>& open, const std::function<void(const DrivenDialog&)>& operate) {
    const DWORD thread = GetCurrentThreadId();
    std::atomic<bool> isOver = false, wasSeen = false;
    std::thread operating{[&] {
        HWND const window = waitForDialog(thread, isOver);
        if (window == nullptr) {
            return;
        }
        wasSeen = true;
        operate(DrivenDialog{window});
        if (IsWindow(window)) {
            PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        }
    }};
    const HRESULT result = open();
    isOver = true;
    operating.join();
    if (!wasSeen) {
        throw std::runtime_error{"no window has appeared"};
    }
    return result;
}

} // namespace peng_robinson::test
