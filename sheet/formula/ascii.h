// Letters, digits and blanks of worksheet syntax. The standard's own predicates follow the locale of the
// process; a formula means the same everywhere.
#pragma once

#include <algorithm>
#include <string_view>

namespace sheet::formula {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

constexpr bool equalsNoCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return upper(x) == upper(y); });
}

constexpr bool startsWithNoCase(std::string_view text, std::string_view beginning) {
    return equalsNoCase(text.substr(0, beginning.size()), beginning);
}

constexpr std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace sheet::formula
