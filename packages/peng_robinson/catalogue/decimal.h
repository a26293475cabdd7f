// Decimal numbers as people type them, whatever the language of their computer: with a decimal point.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace peng_robinson {

/// The finite double nearest to the decimal number; empty when the text is anything else.
std::optional<double> readDecimal(std::string_view text) noexcept;

/// The shortest text that reads back as this number.
std::string decimalText(double value);

} // namespace peng_robinson
