// A mistake in a package definition: where, and what to change.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace peng_robinson {

class DefinitionError : public std::runtime_error {
  public:
    /// Lines count from 1; 0 is the file as a whole.
    DefinitionError(std::size_t line, const std::string& reason) : std::runtime_error{reason}, line_{line} {}
    std::size_t line() const noexcept { return line_; }

  private:
    std::size_t line_;
};

} // namespace peng_robinson
