#include "tests/conformance/table.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <utility>

namespace conformance {

namespace {

using namespace sheet::formula;

// Array constants, which the worksheet runner does not know, are kept beside the formula: a reference to a
// cell of the last column stands for each.
constexpr std::size_t arrayColumn = maximumColumns - 1;

std::string trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos
               ? std::string{}
               : std::string{text.substr(first, text.find_last_not_of(' ') - first + 1)};
}

std::vector<std::string> split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + separator.size());
    }
}

// "a text", a number, TRUE, #N/A, or a text as it stands.
Value readValue(const std::string& text) {
    if (text.size() < 2 || text.front() != '"' || text.back() != '"') {
        return readCell(text);
    }
    std::string plain;
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        plain += text[i];
        i += text[i] == '"'; // quotes inside are doubled
    }
    return plain;
}

// Position of the first of `wanted` that stands outside quotes.
std::size_t findUnquoted(std::string_view text, std::string_view wanted, std::size_t from) {
    bool quoted = false;
    for (std::size_t i = from; i < text.size(); ++i) {
        if (text[i] == '"') {
            quoted = !quoted;
        } else if (!quoted && wanted.find(text[i]) != std::string_view::npos) {
            return i;
        }
    }
    return std::string_view::npos;
}

// {1,2;3,4} without the braces.
Matrix readArray(std::string_view text) {
    Matrix array;
    std::size_t columns = 0;
    for (std::size_t begin = 0;;) {
        const std::size_t end = findUnquoted(text, ",;", begin);
        array.values.push_back(readValue(trimmed(text.substr(begin, end - begin))));
        ++columns;
        if (end == std::string_view::npos || text[end] == ';') {
            ++array.rows;
            if (array.columns != 0 && array.columns != columns) {
                throw std::runtime_error{"the rows of an array have different lengths"};
            }
            array.columns = std::exchange(columns, 0);
        }
        if (end == std::string_view::npos) {
            return array;
        }
        begin = end + 1;
    }
}

std::string capitalized(std::string_view label) {
    std::string name;
    bool isFirst = true;
    for (const char c : label) {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) {
            isFirst = true;
            continue;
        }
        name += isFirst ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        isFirst = false;
    }
    return name;
}

class Reader {
  public:
    explicit Reader(std::string_view text) : text_{text} {}

    Table table() {
        std::string section;
        for (std::string line = nextLine(); !atEnd_; line = nextLine()) {
            try {
                if (line.starts_with('[')) {
                    section = line.substr(1, line.find(']') - 1);
                } else if (!line.empty()) {
                    read(section, split(line, " | "));
                }
            } catch (const std::exception& problem) {
                table_.problems.push_back("line " + std::to_string(line_) + ": " + problem.what());
            }
        }
        return std::move(table_);
    }

  private:
    // Without comments; a line that begins with a blank continues the one before.
    std::string nextLine() {
        std::string line = rawLine();
        while (!text_.empty() && text_.front() == ' ') {
            line += ' ' + trimmed(rawLine());
        }
        return line.starts_with('#') ? std::string{} : trimmed(line);
    }
    std::string rawLine() {
        atEnd_ = text_.empty();
        ++line_;
        const std::size_t end = std::min(text_.find('\n'), text_.size());
        std::string line{text_.substr(0, end)};
        text_.remove_prefix(std::min(end + 1, text_.size()));
        return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
    }

    void read(const std::string& section, const std::vector<std::string>& fields) {
        if (section == "inputs") {
            readInput(fields);
        } else if (section == "packages" || section == "messages") {
            require(fields.size() == 2, "a name and what it stands for are needed");
            auto& target = section == "packages" ? table_.packages : table_.messages;
            require(target.emplace(fields[0], fields[1]).second, "the name is there twice");
        } else {
            readRow(fields);
        }
    }

    static void require(bool holds, const char* otherwise) {
        if (!holds) {
            throw std::runtime_error{otherwise};
        }
    }

    void readInput(const std::vector<std::string>& fields) {
        const std::optional<Block> cell = readBlock(fields[0]);
        require(fields.size() == 3 && cell.has_value(), "a cell, its value and its meaning are needed");
        table_.inputs.push_back({cell->first, readValue(fields[1])});
    }

    void readRow(const std::vector<std::string>& fields) {
        require(fields.size() == 4, "what is shown, formula, range and cells are needed");
        Row row{line_, {}, fields[1], formula(fields[1]), {}, false, {}, expected(fields[3])};
        constexpr std::string_view prefix = "CapeOpen";
        require(row.formula.function.starts_with(prefix), "the formula calls no worksheet function");
        row.name = row.formula.function.substr(prefix.size()) + capitalized(fields[0]);
        const std::size_t comma = fields[2].find(',');
        const std::string range = fields[2].substr(0, comma);
        row.isMacro = range == "macro";
        const std::optional<Block> block = readBlock(row.isMacro ? "A1" : range);
        require(block.has_value(), "the range cannot be understood");
        row.range = *block;
        row.workbook = comma == std::string::npos ? std::string{} : trimmed(fields[2].substr(comma + 1));
        table_.rows.push_back(std::move(row));
    }

    Formula formula(std::string text) {
        for (std::size_t begin = 0; (begin = findUnquoted(text, "{", begin)) != std::string::npos;) {
            const std::size_t end = findUnquoted(text, "}", begin);
            require(end != std::string::npos, "an array is not closed");
            table_.arrays.push_back(readArray(std::string_view{text}.substr(begin + 1, end - begin - 1)));
            text.replace(begin, end + 1 - begin,
                         columnName(arrayColumn) + std::to_string(table_.arrays.size()));
        }
        return readFormula(text);
    }

    Shown expected(const std::string& text) const {
        constexpr std::string_view failure = "! ";
        if (text.starts_with(failure)) {
            const std::string message = text.substr(failure.size());
            if (!message.starts_with('@')) {
                return {true, message, {}};
            }
            const auto named = table_.messages.find(message.substr(1));
            require(named != table_.messages.end(), "there is no message of that name");
            return {true, named->second, {}};
        }
        if (text.starts_with('{') && text.ends_with('}')) {
            return {false, {}, readArray(std::string_view{text}.substr(1, text.size() - 2))};
        }
        return {false, {}, Matrix::of(readValue(text))};
    }

    std::string_view text_;
    std::size_t line_ = 0;
    bool atEnd_ = false;
    Table table_;
};

bool isSame(const Value& one, const Value& other) {
    const double* const a = std::get_if<double>(&one);
    const double* const b = std::get_if<double>(&other);
    return a != nullptr && b != nullptr ? std::abs(*a - *b) <= 1e-10 * std::abs(*b) : one == other;
}

std::string written(const Value& value) {
    const std::string* const text = std::get_if<std::string>(&value);
    return text != nullptr ? '"' + *text + '"' : exactText(value);
}

} // namespace

const Matrix* Table::arrayAt(const Block& argument) const {
    return argument.first.column == arrayColumn ? &arrays.at(argument.first.row) : nullptr;
}

const std::string* Table::script(const std::string& package, std::string& made) const {
    if (const auto found = packages.find(package); found != packages.end()) {
        return &found->second;
    }
    constexpr std::string_view placeholder = "<code>";
    for (const auto& [name, settings] : packages) {
        const std::size_t at = name.find(placeholder);
        if (at != std::string::npos && package.starts_with(name.substr(0, at))) {
            made = settings;
            for (std::size_t i = 0; (i = made.find(placeholder)) != std::string::npos;) {
                made.replace(i, placeholder.size(), package.substr(at));
            }
            return &made;
        }
    }
    return nullptr;
}

Table readTable(std::string_view text) { return Reader{text}.table(); }

bool matches(std::string_view text, std::string_view pattern) {
    const std::size_t open = pattern.find('<');
    const std::size_t close = pattern.find('>', open == std::string_view::npos ? 0 : open);
    if (open == std::string_view::npos || close == std::string_view::npos) {
        return text == pattern;
    }
    if (!text.starts_with(pattern.substr(0, open))) {
        return false;
    }
    const std::string_view rest = pattern.substr(close + 1);
    for (std::size_t end = open; end <= text.size(); ++end) {
        if (matches(text.substr(end), rest)) {
            return true;
        }
    }
    return false;
}

std::string written(const Shown& shown) {
    if (shown.failed) {
        return "! " + shown.message;
    }
    const Matrix& cells = shown.cells;
    if (cells.values.size() == 1) {
        return written(cells.values.front());
    }
    std::string text = "{";
    for (std::size_t i = 0; i < cells.values.size(); ++i) {
        if (i > 0) {
            text += i % cells.columns == 0 ? ';' : ',';
        }
        text += written(cells.values[i]);
    }
    return text + '}';
}

bool isSame(const Shown& one, const Shown& other) {
    if (one.failed || other.failed) {
        return one.failed == other.failed && one.message == other.message;
    }
    return one.cells.rows == other.cells.rows && one.cells.columns == other.cells.columns &&
           std::ranges::equal(one.cells.values, other.cells.values,
                              [](const Value& a, const Value& b) { return isSame(a, b); });
}

} // namespace conformance
