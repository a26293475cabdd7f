// press_button CAPTION ID [to the end]: waits until there is a message box or page of setup whose caption
// begins so and whose button ID may be pressed, prints its text as UTF-8 and presses the button. With a third
// argument it presses the button of each page that follows, until there are no more. Exit code 1 when there
// is none within a minute, or when the pages have no end.
#include <windows.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr DWORD longest = 60'000;
constexpr DWORD afterTheLast = 3'000; // without a window that long, there were all of them

struct Search {
    std::wstring_view caption;
    HWND found = nullptr;
};

std::wstring nameOfClass(HWND window) {
    wchar_t name[64]{};
    GetClassNameW(window, name, 64);
    return name;
}

std::wstring textOf(HWND window) {
    wchar_t text[2048]{};
    GetWindowTextW(window, text, 2048);
    return text;
}

BOOL CALLBACK look(HWND window, LPARAM search) {
    auto& wanted = *reinterpret_cast<Search*>(search);
    if (IsWindowVisible(window) == 0 || nameOfClass(window) != L"#32770" ||
        !textOf(window).starts_with(wanted.caption)) {
        return TRUE;
    }
    wanted.found = window;
    return FALSE;
}

HWND find(std::wstring_view caption) {
    Search search{caption};
    EnumWindows(look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool mayBePressed(HWND window, int button) {
    HWND const control = GetDlgItem(window, button);
    return control != nullptr && IsWindowEnabled(control) != 0;
}

// The text of a message box is the one static control that is not empty; the other is the icon.
BOOL CALLBACK takeText(HWND child, LPARAM text) {
    if (nameOfClass(child) == L"Static" && !textOf(child).empty()) {
        *reinterpret_cast<std::wstring*>(text) = textOf(child);
    }
    return TRUE;
}

void print(const std::wstring& text) {
    std::string bytes(3 * text.size() + 1, '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()),
                                           bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(length));
    std::puts(bytes.c_str());
}

void press(HWND window, int button) {
    std::wstring text;
    EnumChildWindows(window, takeText, reinterpret_cast<LPARAM>(&text));
    print(text);
    PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(button), 0);
}

} // namespace

int wmain(int count, wchar_t** words) {
    if (count < 3) {
        return 2;
    }
    const int button = _wtoi(words[2]);
    const bool toTheEnd = count > 3;
    int pressed = 0;
    const ULONGLONG start = GetTickCount64();
    for (ULONGLONG lastSeen = start; GetTickCount64() < start + longest; Sleep(toTheEnd ? 500 : 50)) {
        HWND const window = find(words[1]);
        if (window != nullptr) {
            lastSeen = GetTickCount64();
            if (mayBePressed(window, button)) {
                press(window, button);
                ++pressed;
                if (!toTheEnd) {
                    return 0;
                }
            }
        } else if (pressed > 0 && GetTickCount64() > lastSeen + afterTheLast) {
            return 0;
        }
    }
    return 1;
}
