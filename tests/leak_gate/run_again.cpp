#include "tests/leak_gate/run_again.h"

#include "com/platform.h"

#include <array>
#include <utility>

namespace leak_gate {

namespace {

constexpr const char* marker = "LEAK_GATE_RUNS_AGAIN";
constexpr DWORD longestRun = 300000; // ms

class Handle {
  public:
    explicit Handle(HANDLE handle) noexcept : handle_{handle} {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (isValid()) {
            CloseHandle(handle_);
        }
    }
    bool isValid() const noexcept { return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE; }
    HANDLE get() const noexcept { return handle_; }

  private:
    HANDLE handle_;
};

// A file and not a pipe: the system may start a service meanwhile that keeps the pipe open for ever.
class Output {
  public:
    Output() : path_{freshPath()}, file_{create(path_)} {}

    HANDLE handle() const noexcept { return file_.get(); }

    std::string text() const {
        std::string said;
        std::array<char, 4096> piece{};
        SetFilePointer(file_.get(), 0, nullptr, FILE_BEGIN);
        for (DWORD read = 0; ReadFile(file_.get(), piece.data(), piece.size(), &read, nullptr) && read > 0;) {
            said.append(piece.data(), read);
        }
        return said;
    }

  private:
    static std::wstring freshPath() {
        std::array<wchar_t, MAX_PATH> folder{};
        std::array<wchar_t, MAX_PATH> file{};
        GetTempPathW(folder.size(), folder.data());
        GetTempFileNameW(folder.data(), L"gate", 0, file.data());
        return file.data();
    }
    // The system deletes it when the last handle is closed.
    static HANDLE create(const std::wstring& path) {
        SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        return CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inheritable,
                           CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    }

    std::wstring path_;
    Handle file_;
};

std::string program() {
    std::array<char, 1024> path{};
    GetModuleFileNameA(nullptr, path.data(), path.size());
    return path.data();
}

} // namespace

bool isRunAgain() {
    static const bool marked = GetEnvironmentVariableA(marker, nullptr, 0) > 0;
    return marked;
}

Outcome runAgain(const std::string& test) {
    const Output output;
    std::string command = "\"";
    command += program() + "\" --gtest_filter=" + test + " --gtest_repeat=" + std::to_string(timesRunAgain);
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = output.handle();
    start.hStdError = output.handle();
    PROCESS_INFORMATION started{};
    isRunAgain(); // is decided before the mark is for another process
    SetEnvironmentVariableA(marker, "1");
    const BOOL runs = CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                     &start, &started);
    SetEnvironmentVariableA(marker, isRunAgain() ? "1" : nullptr);
    if (!runs) {
        return {false, "the program cannot be started again\n"};
    }
    const Handle process{started.hProcess};
    const Handle thread{started.hThread};
    DWORD code = 1;
    if (WaitForSingleObject(process.get(), longestRun) != WAIT_OBJECT_0) {
        TerminateProcess(process.get(), 1);
        return {false, output.text() + "the program does not end\n"};
    }
    GetExitCodeProcess(process.get(), &code);
    const std::string said = output.text();
    if (code == 0 && said.find("[       OK ] " + test) == std::string::npos) {
        return {false, said + "the test is not found again\n"};
    }
    return {code == 0, said};
}

} // namespace leak_gate
