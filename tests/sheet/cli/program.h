// Runs quorvane-sheet.exe, which stands beside the test program, in a folder of its own.
#pragma once

#include "com/platform.h"

#include <string>
#include <vector>

namespace sheet::cli {

struct Outcome {
    int exitCode = -1;
    std::string output; // UTF-8, lines end with "\n"
    std::string errors;
};

/// Calls DllRegisterServer or the like of a DLL that stands beside the test program.
HRESULT callExport(const wchar_t* dll, const char* name);

enum class ErrorStream { caught, broken };

class Program {
  public:
    /// Makes an empty folder, in which the program runs.
    Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    /// Removes the folder.
    ~Program();

    void write(const std::wstring& file, std::string_view bytes);
    /// Empty when there is no such file.
    std::string read(const std::wstring& file) const;
    bool exists(const std::wstring& file) const;
    void makeFolder(const std::wstring& name);
    /// The names of all files in the folder, in order.
    std::vector<std::string> files() const;

    Outcome run(const std::vector<std::wstring>& arguments, ErrorStream errorStream = ErrorStream::caught);

  private:
    std::wstring pathOf(const std::wstring& file) const { return folder_ + L"\\" + file; }

    std::wstring folder_;
    int runs_ = 0;
};

} // namespace sheet::cli
