// The properties of two phases together: K-values, which are the fraction in the first phase over that in the
// second when both are at equilibrium.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

using TwoPhaseValues = std::vector<double> (*)(const eos::PhaseState& first, const eos::PhaseState& second);

/// Null when the package does not calculate it. Names are compared without case.
TwoPhaseValues findTwoPhaseProperty(std::wstring_view name);

/// Standard spellings of all of them.
std::vector<std::wstring> twoPhasePropertyNames();

} // namespace peng_robinson
