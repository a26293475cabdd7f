// Everything that Excel, a macro or a script may pass for an argument, and what each role makes of it.
#pragma once

#include "tests/conformance/functions.h"

#include <span>

namespace conformance {

struct Kind {
    const char* name;
    com::variant (*make)();
};

std::span<const Kind> kinds();
const Kind& kindNamed(std::string_view name);

/// What an argument of this kind leads to: "as NAME", the result of the kind of that name; "fills with NAME",
/// a table in which every cell of the absent phase holds what the kind of that name holds; "! MESSAGE", in
/// which <...> stands for what varies and % for the parameter's name; "a result" or "a failure".
std::string_view outcome(Role role, std::string_view kind);

} // namespace conformance
