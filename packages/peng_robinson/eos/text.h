// Numbers in messages.
#pragma once

#include <cstdio>
#include <string>

namespace peng_robinson::eos {

inline std::string numberText(double value) {
    char buffer[32];
    const int length = std::snprintf(buffer, sizeof buffer, "%g", value);
    return {buffer, static_cast<std::size_t>(length)};
}

} // namespace peng_robinson::eos
