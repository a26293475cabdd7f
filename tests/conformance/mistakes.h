// What can be wrong in a call of each worksheet function, in the order in which the function looks at it.
#pragma once

#include "tests/conformance/functions.h"

#include <functional>

namespace conformance {

/// Where a call takes place.
struct Scene {
    const Function& function;
    std::vector<com::variant> arguments;
    scripted::Script& package;
    sheet::excel::Application& excel;
    IQuorvaneVSTOServices& services;
    _IDTExtensibility2& events;
    IUnknown* book;
};

struct Mistake {
    const char* name;
    std::string subject; ///< what is wrong: one thing cannot be wrong in two ways at once
    std::function<void(Scene&)> make;
    const char* message; ///< what the cell then shows
};

using Mistakes = std::vector<Mistake>;

/// For a call with workingArguments() and a package that has been taught.
const Mistakes& mistakesOf(const Function& function);

} // namespace conformance
