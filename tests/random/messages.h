// The messages that the help explains, as patterns: a text that no row of docs/help/messages.tsv describes
// must not reach a user.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace chance {

class Messages {
  public:
    /// Reads the table that lies beside the program. Throws std::runtime_error when it is not there.
    Messages();

    /// `text`, which a package's own words, a text of the system or a name may be part of, is one of them.
    bool describe(const std::wstring& text) const;

  private:
    std::vector<std::wstring> patterns_; ///< '\0' stands for whatever varies
};

/// `pattern` with any text for each '\0' gives `text`.
bool matches(std::wstring_view pattern, std::wstring_view text);

} // namespace chance
