// A crash takes the test program with it; what is written last is how to repeat it.
#pragma once

#include <cstdint>

namespace chance {

/// Tells which step of which seed comes next.
void nowRunning(std::uint64_t seed, long step) noexcept;

} // namespace chance
