// The properties of two phases together that the package calculates, by name. Each has all four derivatives;
// see eos/two_phase.h.
#pragma once

#include "packages/peng_robinson/eos/two_phase.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

/// A property or a derivative of one.
struct TwoPhaseName {
    eos::TwoPhaseProperty property;
    eos::Derivative derivative;
};

/// Empty when the package does not calculate it. Names are compared without case.
std::optional<TwoPhaseName> findTwoPhaseProperty(std::wstring_view name) noexcept;

/// Standard spellings of all of them.
std::vector<std::wstring> twoPhasePropertyNames();

} // namespace peng_robinson
