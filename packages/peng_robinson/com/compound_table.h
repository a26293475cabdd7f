// What the package tells about pure compounds: constants, and properties that depend on temperature or
// pressure alone. One table row a property; a value that a compound does not have (NaN in its constants) is
// missing, not an error. The equation of state is used with the constants that the package uses for mixtures.
#pragma once

#include "packages/peng_robinson/eos/compound.h"
#include "packages/peng_robinson/eos/peng_robinson.h"

#include <optional>
#include <span>
#include <string_view>

namespace peng_robinson {

/// A constant of a compound: a text or a number.
struct ConstantRow {
    std::wstring_view name;
    std::string_view eos::Compound::*text; ///< null for numbers
    std::optional<double> (*number)(const eos::Compound&, const eos::EquationConstants&);
};
std::span<const ConstantRow> constantRows() noexcept;
const ConstantRow* findConstant(std::wstring_view name) noexcept;

/// A property of a compound at a temperature (K) or a pressure (Pa).
struct DependentRow {
    std::wstring_view name;
    std::optional<double> (*value)(const eos::Compound&, const eos::EquationConstants&, double);
};
std::span<const DependentRow> temperatureRows() noexcept;
std::span<const DependentRow> pressureRows() noexcept;
const DependentRow* findRow(std::span<const DependentRow> rows, std::wstring_view name) noexcept;

} // namespace peng_robinson
