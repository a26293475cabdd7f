#include "packages/peng_robinson/catalogue/decimal.h"

#include <array>
#include <charconv>
#include <cmath>

namespace peng_robinson {

std::optional<double> readDecimal(std::string_view text) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    const char* const end = text.data() + text.size();
    double value = 0.0;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc{} && stop == end && std::isfinite(value) ? std::optional{value} : std::nullopt;
}

std::string decimalText(double value) {
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

} // namespace peng_robinson
