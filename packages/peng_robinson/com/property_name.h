// Names of properties as clients write them: a base name and perhaps the suffix of a derivative
// ("enthalpy.Dtemperature"). Names are compared without case.
#pragma once

#include "packages/peng_robinson/eos/phase_slopes.h"

#include <array>
#include <optional>
#include <string_view>

namespace peng_robinson {

struct DerivativeName {
    std::wstring_view suffix;
    eos::Derivative derivative;
};
inline constexpr std::array derivativeNames{
    DerivativeName{L"", eos::Derivative::none},
    DerivativeName{L".Dtemperature", eos::Derivative::temperature},
    DerivativeName{L".Dpressure", eos::Derivative::pressure},
    DerivativeName{L".DmolFraction", eos::Derivative::moleFraction},
    DerivativeName{L".Dmoles", eos::Derivative::moleNumber},
};

struct PropertyName {
    std::wstring_view base;
    eos::Derivative derivative;
};

/// Empty when the suffix is no derivative's. The base refers to `name`.
std::optional<PropertyName> readPropertyName(std::wstring_view name) noexcept;

} // namespace peng_robinson
