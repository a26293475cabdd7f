#include "sheet/cli/files.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

namespace sheet::cli {

namespace {

struct CloseHandleOf {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using unique_handle = std::unique_ptr<void, CloseHandleOf>;

[[noreturn]] void fail(const std::string& name, const char* what, const char* remedy) {
    const HRESULT code = HRESULT_FROM_WIN32(GetLastError());
    throw FileError{name + ": the file cannot be " + what + ": " + systemText(code) + "; " + remedy};
}

[[noreturn]] void failToRead(const std::string& name) {
    fail(name, "read", "check its name, and whether another program uses it");
}

[[noreturn]] void failToWrite(const std::string& name) {
    fail(name, "written", "check its folder, and whether another program uses it");
}

unique_handle open(const std::wstring& name, DWORD access, DWORD creation) {
    const HANDLE handle =
        CreateFileW(name.c_str(), access, FILE_SHARE_READ, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    return unique_handle{handle == INVALID_HANDLE_VALUE ? nullptr : handle};
}

bool write(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20U));
        if (!WriteFile(file, bytes.data(), size, &written, nullptr)) {
            return false;
        }
        bytes.remove_prefix(written);
    }
    return true;
}

std::wstring fullName(const std::string& name) {
    const std::wstring wide = toWide(name);
    std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

} // namespace

std::string readFile(const std::string& name) {
    const unique_handle file = open(toWide(name), GENERIC_READ, OPEN_EXISTING);
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size)) {
        failToRead(name);
    }
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        DWORD count = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1U << 20U));
        if (!ReadFile(file.get(), bytes.data() + done, wanted, &count, nullptr)) {
            failToRead(name);
        }
        if (count == 0) {
            bytes.resize(done); // it became shorter meanwhile
        }
        done += count;
    }
    return bytes;
}

void writeFile(const std::string& name, std::string_view bytes) {
    const std::wstring final = toWide(name);
    const std::wstring temporary = final + L'.' + std::to_wstring(GetCurrentProcessId()) + L'-' +
                                   std::to_wstring(GetTickCount64()) + L".tmp";
    unique_handle file = open(temporary, GENERIC_WRITE, CREATE_NEW);
    if (!file) {
        failToWrite(name);
    }
    DWORD code = write(file.get(), bytes) ? ERROR_SUCCESS : GetLastError();
    file.reset();
    if (code == ERROR_SUCCESS && !MoveFileExW(temporary.c_str(), final.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        code = GetLastError();
    }
    if (code != ERROR_SUCCESS) {
        DeleteFileW(temporary.c_str());
        SetLastError(code);
        failToWrite(name);
    }
}

bool isSameFile(const std::string& one, const std::string& other) {
    return lstrcmpiW(fullName(one).c_str(), fullName(other).c_str()) == 0;
}

bool isTerminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(static_cast<DWORD>(stream)), &mode) != 0;
}

void print(Stream stream, std::string_view text) {
    std::string lines;
    for (const char c : text) {
        lines.append(c == '\n' ? "\r" : "").push_back(c);
    }
    const HANDLE handle = GetStdHandle(static_cast<DWORD>(stream));
    if (!isTerminal(stream)) {
        if (!write(handle, lines) && stream == Stream::output) {
            failToWrite("standard output");
        }
        return;
    }
    const std::wstring wide = toWide(lines);
    for (std::wstring_view left{wide}; !left.empty();) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min<std::size_t>(left.size(), 8192));
        if (!WriteConsoleW(handle, left.data(), size, &written, nullptr)) {
            return;
        }
        left.remove_prefix(written);
    }
}

} // namespace sheet::cli
