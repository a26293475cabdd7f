// What a cell shows: nothing, a number, a text (UTF-8), a truth value or one of the worksheet's error values.
// Also what the text of a CSV cell means, which is what Excel makes of it when it opens the file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sheet::formula {

/// Excel's numbers of the error values.
enum class CellError : int {
    null = 2000,
    div0 = 2007,
    value = 2015,
    ref = 2023,
    name = 2029,
    num = 2036,
    na = 2042,
    gettingData = 2043,
    spill = 2045,
    calc = 2050,
};

/// "#N/A" and the like.
std::string_view textOf(CellError error);
std::optional<CellError> errorNumbered(int number);

using Value = std::variant<std::monostate, double, std::string, bool, CellError>;

inline bool isEmpty(const Value& value) { return std::holds_alternative<std::monostate>(value); }

/// A rectangle of values in row order.
struct Matrix {
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::vector<Value> values;

    bool operator==(const Matrix&) const = default;

    static Matrix of(Value single) { return {1, 1, {std::move(single)}}; }
    const Value& at(std::size_t row, std::size_t column) const { return values[row * columns + column]; }
};

/// Number, TRUE or FALSE, error value, or else the text as it stands. Blanks around a number do not count.
/// Dates, percentages, currency and grouped digits stay texts: they depend on Excel's language.
Value readCell(std::string_view text);

/// The number, or NaN for anything else.
double numberIn(const Value& value);

/// A plain decimal number such as 12, -3.5 or 6.02e23, whole and finite; empty otherwise.
std::optional<double> readNumber(std::string_view text);

/// The text without loss: numbers have as many digits as it takes to read the same number again.
std::string exactText(const Value& value);

/// The text for people: numbers have at most eight significant digits, whole numbers all of theirs.
std::string displayText(const Value& value);

} // namespace sheet::formula
