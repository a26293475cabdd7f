// process_list /fi "IMAGENAME eq NAME" ...: prints a line for each process of that name, as Windows' tasklist
// does; Wine's prints nothing.
#include <windows.h>

#include <tlhelp32.h>

#include <cstdio>
#include <cwchar>
#include <string_view>

int wmain(int count, wchar_t** words) {
    constexpr std::wstring_view filter = L"IMAGENAME eq ";
    if (count < 3 || std::wstring_view{words[1]} != L"/fi" ||
        !std::wstring_view{words[2]}.starts_with(filter)) {
        return 1;
    }
    HANDLE const snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more != 0; more = Process32NextW(snapshot, &entry)) {
        if (_wcsicmp(entry.szExeFile, words[2] + filter.size()) == 0) {
            std::printf("%-25ls %8lu Console                    1    100,000 K\n", entry.szExeFile,
                        entry.th32ProcessID);
        }
    }
    CloseHandle(snapshot);
    return 0;
}
