#include "sheet/formula/value.h"

#include "sheet/formula/ascii.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

namespace sheet::formula {

namespace {

struct ErrorName {
    CellError error;
    std::string_view text;
};

constexpr std::array errorNames{
    ErrorName{CellError::null, "#NULL!"},   ErrorName{CellError::div0, "#DIV/0!"},
    ErrorName{CellError::value, "#VALUE!"}, ErrorName{CellError::ref, "#REF!"},
    ErrorName{CellError::name, "#NAME?"},   ErrorName{CellError::num, "#NUM!"},
    ErrorName{CellError::na, "#N/A"},       ErrorName{CellError::gettingData, "#GETTING_DATA"},
    ErrorName{CellError::spill, "#SPILL!"}, ErrorName{CellError::calc, "#CALC!"},
};

constexpr int displayedDigits = 8;
// Doubles hold every whole number of fifteen digits, and Excel shows that many.
constexpr double largestPlainWhole = 1e15;

template <typename... Format>
std::string printed(double number, Format... format) {
    std::array<char, 64> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, format...);
    return error == std::errc{} ? std::string{buffer.data(), end} : std::string{};
}

std::string displayedNumber(double number) {
    if (number == 0.0) {
        return "0";
    }
    if (number == std::trunc(number) && std::abs(number) < largestPlainWhole) {
        return printed(number, std::chars_format::fixed);
    }
    return printed(number, std::chars_format::general, displayedDigits);
}

/// Of a decimal number without sign that is not zero.
bool isBelowOne(std::string_view text) {
    const std::size_t mark = std::min(text.find_first_of("eE"), text.size());
    const std::string_view mantissa = text.substr(0, mark);
    const auto point = static_cast<std::ptrdiff_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<std::ptrdiff_t>(mantissa.find_first_of("123456789"));
    const std::ptrdiff_t wholeDigits = first < point ? point - first : point + 1 - first;

    std::string_view exponentText = text.substr(std::min(mark + 1, text.size()));
    if (exponentText.starts_with('+')) {
        exponentText.remove_prefix(1);
    }
    std::ptrdiff_t exponent = 0;
    const char* const end = exponentText.data() + exponentText.size();
    if (std::from_chars(exponentText.data(), end, exponent).ec == std::errc::result_out_of_range) {
        return exponentText.starts_with('-');
    }
    return exponent <= -wholeDigits;
}

template <typename NumberText>
std::string textOf(const Value& value, NumberText numberText) {
    struct Visitor {
        NumberText numberText;
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(double number) const { return numberText(number); }
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(bool truth) const { return truth ? "TRUE" : "FALSE"; }
        std::string operator()(CellError error) const { return std::string{formula::textOf(error)}; }
    };
    return std::visit(Visitor{numberText}, value);
}

} // namespace

std::string_view textOf(CellError error) {
    const auto found = std::ranges::find(errorNames, error, &ErrorName::error);
    return found == errorNames.end() ? "#VALUE!" : found->text;
}

std::optional<CellError> errorNumbered(int number) {
    const auto found = std::ranges::find(errorNames, static_cast<CellError>(number), &ErrorName::error);
    return found == errorNames.end() ? std::nullopt : std::optional{found->error};
}

std::optional<double> readNumber(std::string_view text) {
    // from_chars knows no plus sign, and does know "inf" and "nan", which no cell may hold.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    const std::string_view unsignedText = text.starts_with('-') ? text.substr(1) : text;
    if (unsignedText.empty() || !(isDigit(unsignedText.front()) || unsignedText.front() == '.')) {
        return std::nullopt;
    }
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || (error != std::errc{} && error != std::errc::result_out_of_range)) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        // Too small is zero, as in Excel; too large is no number.
        return isBelowOne(unsignedText) ? std::optional{0.0} : std::nullopt;
    }
    return number;
}

Value readCell(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const std::string_view core = trimmed(text);
    if (const std::optional<double> number = readNumber(core)) {
        return *number;
    }
    if (equalsNoCase(core, "TRUE")) {
        return true;
    }
    if (equalsNoCase(core, "FALSE")) {
        return false;
    }
    for (const ErrorName& name : errorNames) {
        if (equalsNoCase(core, name.text)) {
            return name.error;
        }
    }
    return std::string{text};
}

std::string exactText(const Value& value) {
    return textOf(value, [](double number) { return printed(number); });
}

std::string displayText(const Value& value) { return textOf(value, displayedNumber); }

double numberIn(const Value& value) {
    const double* const number = std::get_if<double>(&value);
    return number == nullptr ? std::numeric_limits<double>::quiet_NaN() : *number;
}

} // namespace sheet::formula
