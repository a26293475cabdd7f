// The codes with which foreign calls fail here, and what a user is told about each when the one who failed
// says nothing. The texts are written down once more on purpose: these are the words that users know.
#pragma once

#include "com/platform.h"

#include <span>
#include <string>
#include <string_view>

namespace faults {

struct Code {
    const char* name;
    HRESULT value;
    const char* words; ///< of CAPE-OPEN's own codes; null for the others
};

/// All of them; the last is S_FALSE, which is success where S_OK is expected.
std::span<const Code> codes();
const Code& codeNamed(std::string_view name);

/// What Windows says about a code, without its line ending.
std::string systemText(HRESULT code);

} // namespace faults
