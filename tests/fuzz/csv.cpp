// A table that was read, or made of any texts, is written and read again as the same; a cell's value
// likewise; and a number is what the C library reads.
#include "sheet/formula/csv.h"

#include "sheet/formula/input_error.h"
#include "sheet/formula/utf8.h"
#include "sheet/formula/value.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace fuzz {

namespace {

using namespace sheet::formula;

bool isDecimal(std::string_view text) {
    constexpr std::string_view digits = "0123456789";
    const auto skip = [&text](std::string_view characters, std::size_t most) {
        const std::size_t count = std::min({text.find_first_not_of(characters), text.size(), most});
        text.remove_prefix(count);
        return count;
    };
    skip("+-", 1);
    std::size_t count = skip(digits, text.size());
    skip(".", 1);
    count += skip(digits, text.size());
    const bool hasExponent = skip("eE", 1) == 1;
    skip("+-", hasExponent ? 1 : 0);
    return count > 0 && (!hasExponent || skip(digits, text.size()) > 0) && text.empty();
}

void requireValue(const std::string& cell) {
    const Value value = readCell(cell);
    require(readCell(exactText(value)) == value, "the exact text of a value has that value");
    require(isEmpty(value) == displayText(value).empty(), "only an empty cell shows nothing");
    const std::optional<double> number = readNumber(cell);
    const double nearest = std::strtod(cell.c_str(), nullptr);
    require(number.has_value() == (isDecimal(cell) && std::isfinite(nearest)), "finite decimals are numbers");
    require(!number || *number == nearest, "a number is the nearest to its digits");
}

void requireRoundTrip(const CsvTable& table) {
    require(readCsv(writeCsv(table)) == table, "a table is read as it was written");
}

/// Lines of texts with any characters that a cell may hold, the semicolon between them.
CsvTable tableOf(std::string_view text) {
    CsvTable table{{{}}};
    for (const char c : text) {
        if (c == '|') {
            table.emplace_back(1);
        } else if (c == ';') {
            table.back().emplace_back();
        } else if (c != '\0') {
            table.back().back().push_back(c);
        }
    }
    return table;
}

bool isText(const std::vector<std::string>& row) {
    return std::ranges::all_of(
        row, [](const std::string& cell) { return firstInvalidUtf8(cell) == std::string_view::npos; });
}

} // namespace

void run(Input input) {
    const std::string_view text = input.text();
    try {
        const CsvTable table = readCsv(text);
        requireRoundTrip(table);
        for (const std::vector<std::string>& row : table) {
            std::ranges::for_each(row, requireValue);
        }
    } catch (const InputError& error) {
        const Problem& problem = error.problems().front();
        const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n'));
        require(!problem.message.empty(), "a refusal says why");
        require(!problem.cell || problem.cell->row <= lines, "a refusal names a line of the text");
    }
    if (const CsvTable table = tableOf(text); std::ranges::all_of(table, isText)) {
        requireRoundTrip(table);
    }
}

} // namespace fuzz
