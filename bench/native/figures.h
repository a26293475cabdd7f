// The figures of the plain C++ parts.
#pragma once

#include "bench/report.h"

#include <stdexcept>
#include <string_view>

namespace bench {

void base64(Report& report);
void thermodynamics(Report& report);

/// Does one of the works of thermodynamics() so many times, for a program that counts instructions. Throws
/// std::invalid_argument for a name that is none of them.
void repeat(std::string_view work, std::size_t times);

/// Allocations of this program so far.
long allocationCount() noexcept;

} // namespace bench
