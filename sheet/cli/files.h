// Whole files, and the two streams of a console program.
#pragma once

#include "sheet/cli/text.h"

#include <stdexcept>

namespace sheet::cli {

/// A file cannot be used; the message begins with its name.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

std::string readFile(const std::string& name);
/// Replaces the file at once: a failure leaves the old one, and nothing else.
void writeFile(const std::string& name, std::string_view bytes);
/// Whether both names mean one file, which need not exist.
bool isSameFile(const std::string& one, const std::string& other);

enum class Stream : DWORD { output = STD_OUTPUT_HANDLE, error = STD_ERROR_HANDLE };

bool isTerminal(Stream stream);
/// UTF-8, or the terminal's own characters; each "\n" becomes a line end of Windows. Throws for standard
/// output only: when standard error is broken nobody can be told, and the exit code must still say what
/// happened.
void print(Stream stream, std::string_view text);

} // namespace sheet::cli
