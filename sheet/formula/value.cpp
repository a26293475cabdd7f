#include "sheet/formula/value.h"

#include "sheet/formula/ascii.h"

#include <array>
#include <charconv>
#include <cmath>
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
    std::array<char, 64> buffer;
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
        const std::size_t exponent = text.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-');
        return tiny ? std::optional{0.0} : std::nullopt;
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

} // namespace sheet::formula
