#include "tests/sheet/cli/program.h"

#include "com/owned.h"
#include "com/type_library.h"
#include "sheet/cli/files.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace sheet::cli {

namespace {

// As the C run time takes a command line apart again.
std::wstring quoted(const std::wstring& argument) {
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        if (c == L'"') {
            result.append(backslashes + 1, L'\\');
        }
        result += c;
    }
    return result.append(backslashes, L'\\') + L'"';
}

// A stream of the program, caught in a file. The file is read through the handle that made it, and is
// used once: right after the program's end the system may still have the program's own handle open, and
// nobody else could open the file.
class Capture {
  public:
    Capture(const std::wstring& path, DWORD access) {
        SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, TRUE};
        handle_ = CreateFileW(path.c_str(), access, FILE_SHARE_READ, &attributes, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle_ == INVALID_HANDLE_VALUE) {
            throw std::runtime_error{"a stream cannot be caught in a file"};
        }
    }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    ~Capture() { CloseHandle(handle_); }

    HANDLE handle() const { return handle_; }

    std::string text() const {
        std::string text(GetFileSize(handle_, nullptr), '\0');
        DWORD count = 0;
        SetFilePointer(handle_, 0, nullptr, FILE_BEGIN);
        if (!ReadFile(handle_, text.data(), static_cast<DWORD>(text.size()), &count, nullptr)) {
            throw std::runtime_error{"a caught stream cannot be read"};
        }
        text.resize(count);
        std::erase(text, '\r');
        return text;
    }

  private:
    HANDLE handle_;
};

} // namespace

HRESULT callExport(const wchar_t* dll, const char* name) {
    const auto path = std::filesystem::path{com::thisModulePath()}.parent_path() / dll;
    const com::unique_module module{LoadLibraryW(path.c_str())};
    if (!module) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    const auto function = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(module.get(), name)));
    return function == nullptr ? E_NOINTERFACE : function();
}

Program::Program() {
    static int count = 0;
    const auto name =
        L"quorvane_sheet_test_" + std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(++count);
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / name;
    // A run that was killed may have left one; process numbers come again.
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    folder_ = folder.wstring();
}

Program::~Program() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void Program::write(const std::wstring& file, std::string_view bytes) {
    writeFile(toUtf8(pathOf(file)), bytes);
}

std::string Program::read(const std::wstring& file) const {
    return exists(file) ? readFile(toUtf8(pathOf(file))) : std::string{};
}

bool Program::exists(const std::wstring& file) const { return std::filesystem::exists(pathOf(file)); }

void Program::makeFolder(const std::wstring& name) { std::filesystem::create_directory(pathOf(name)); }

std::vector<std::string> Program::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator{folder_}) {
        names.push_back(toUtf8(entry.path().filename().wstring()));
    }
    std::ranges::sort(names);
    return names;
}

Outcome Program::run(const std::vector<std::wstring>& arguments, ErrorStream errorStream) {
    const std::filesystem::path program =
        std::filesystem::path{com::thisModulePath()}.parent_path() / L"quorvane-sheet.exe";
    std::wstring line = quoted(program.wstring());
    for (const std::wstring& argument : arguments) {
        line += L' ' + quoted(argument);
    }
    const DWORD readAndWrite = GENERIC_READ | GENERIC_WRITE;
    const std::wstring number = std::to_wstring(++runs_);
    const Capture output{pathOf(L"standard output " + number), readAndWrite};
    const Capture errors{pathOf(L"standard error " + number),
                         errorStream == ErrorStream::caught ? readAndWrite : GENERIC_READ};
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.handle();
    startup.hStdError = errors.handle();
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                                        CREATE_NO_WINDOW, nullptr, folder_.c_str(), &startup, &process);
    if (!started) {
        throw std::runtime_error{"quorvane-sheet.exe cannot be started"};
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return {static_cast<int>(code), output.text(), errors.text()};
}

} // namespace sheet::cli
