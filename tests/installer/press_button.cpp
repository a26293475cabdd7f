// press_button CAPTION ID: waits until a message box with this caption is shown, prints its text as UTF-8 and
// presses its button ID. Exit code 1 when there is none within a minute.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

constexpr DWORD longest = 60'000;

HWND waitForBox(const wchar_t* caption) {
    for (const ULONGLONG end = GetTickCount64() + longest; GetTickCount64() < end; Sleep(50)) {
        HWND const box = FindWindowW(L"#32770", caption);
        if (box != nullptr && IsWindowVisible(box) != 0) {
            return box;
        }
    }
    return nullptr;
}

// The text is the one static control that is not empty; the other is the icon.
BOOL CALLBACK takeText(HWND child, LPARAM text) {
    wchar_t name[16]{};
    wchar_t content[2048]{};
    GetClassNameW(child, name, 16);
    GetWindowTextW(child, content, 2048);
    if (std::wcscmp(name, L"Static") == 0 && content[0] != L'\0') {
        *reinterpret_cast<std::wstring*>(text) = content;
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

} // namespace

int wmain(int count, wchar_t** words) {
    if (count != 3) {
        return 2;
    }
    HWND const box = waitForBox(words[1]);
    if (box == nullptr) {
        return 1;
    }
    std::wstring text;
    EnumChildWindows(box, takeText, reinterpret_cast<LPARAM>(&text));
    print(text);
    PostMessageW(box, WM_COMMAND, std::wcstoul(words[2], nullptr, 10), 0);
    return 0;
}
