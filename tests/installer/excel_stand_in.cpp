// excel_stand_in SIGN [window | FILE]: what a setup program can see of a running Excel. The name of the
// process is that of the copy that is run; with "window" it also has a window of Excel's class. With FILE it
// keeps that file open for itself alone, as a program keeps a DLL that it uses. It makes the file SIGN when
// it is ready and ends when SIGN is gone, after two minutes at the latest.
#include <windows.h>

#include <string_view>

namespace {

constexpr const wchar_t* excelsClass = L"XLMAIN";
constexpr DWORD longest = 120'000;

void showWindow() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = excelsClass;
    RegisterClassW(&windowClass);
    CreateWindowW(excelsClass, L"Stand-in", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr, nullptr,
                  windowClass.hInstance, nullptr);
}

void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        DispatchMessageW(&message);
    }
}

HANDLE open(const wchar_t* file, DWORD disposition) {
    return CreateFileW(file, GENERIC_READ, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

int wmain(int count, wchar_t** words) {
    if (count < 2) {
        return 2;
    }
    const std::wstring_view what = count > 2 ? words[2] : L"";
    if (what == L"window") {
        showWindow();
    } else if (!what.empty() && open(words[2], OPEN_EXISTING) == INVALID_HANDLE_VALUE) {
        return 1;
    }
    const HANDLE sign = open(words[1], CREATE_ALWAYS);
    if (sign == INVALID_HANDLE_VALUE) {
        return 1;
    }
    CloseHandle(sign);
    const ULONGLONG end = GetTickCount64() + longest;
    while (GetFileAttributesW(words[1]) != INVALID_FILE_ATTRIBUTES && GetTickCount64() < end) {
        pump();
        Sleep(50);
    }
    return 0;
}
