#include "packages/peng_robinson/definition/rows.h"

#include <algorithm>
#include <cstdint>

namespace peng_robinson {
namespace {

constexpr std::string_view blanks = " \t", separators = ",;\t";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The length of the UTF-8 sequence at the beginning; 0 when there is none (overlong forms and surrogates are
// none).
std::size_t sequenceLength(std::string_view text) {
    const auto at = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t first = at(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    const bool isOverlong = (first == 0xE0 && at(1) < 0xA0) || (first == 0xF0 && at(1) < 0x90);
    const bool isSurrogate = first == 0xED && at(1) >= 0xA0, isBeyond = first == 0xF4 && at(1) >= 0x90;
    return isOverlong || isSurrogate || isBeyond ? 0 : length;
}

// Takes the first line from `text`, whose lines end with LF, CR LF or CR.
std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(text.size(), 1));
    return line;
}

void requireText(std::string_view line, std::size_t number) {
    while (!line.empty()) {
        const std::size_t length = sequenceLength(line);
        const bool isControl = static_cast<std::uint8_t>(line[0]) < 0x20 && line[0] != '\t';
        if (length == 0 || isControl) {
            throw DefinitionError{number, "the line is not UTF-8 text; save the file as UTF-8"};
        }
        line.remove_prefix(length);
    }
}

char findSeparator(std::string_view line) {
    bool isQuoted = false;
    for (const char c : line) {
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && separators.find(c) != std::string_view::npos) {
            return c;
        }
    }
    return '\0';
}

// Takes a cell in quotes from the beginning of `line`, up to the next separator.
std::string takeQuoted(std::string_view& line, char separator, std::size_t number) {
    std::string cell;
    std::size_t i = 1;
    for (;; ++i) {
        if (i >= line.size()) {
            throw DefinitionError{number, "the quote that opens a cell is never closed in this line"};
        }
        if (line[i] != '"') {
            cell += line[i];
        } else if (i + 1 < line.size() && line[i + 1] == '"') {
            cell += line[++i];
        } else {
            break;
        }
    }
    line.remove_prefix(i + 1);
    const std::string_view rest = line.substr(0, line.find(separator));
    if (!trimmed(rest).empty()) {
        throw DefinitionError{number, "a cell goes on after its closing quote"};
    }
    line.remove_prefix(rest.size());
    return cell;
}

std::vector<std::string> readCells(std::string_view line, char separator, std::size_t number) {
    const std::string_view skipped = separator == '\t' ? " " : blanks;
    std::vector<std::string> cells;
    for (;;) {
        line.remove_prefix(std::min(line.find_first_not_of(skipped), line.size()));
        if (line.starts_with('"')) {
            cells.emplace_back(trimmed(takeQuoted(line, separator, number)));
        } else {
            const std::string_view cell = line.substr(0, line.find(separator));
            cells.emplace_back(trimmed(cell));
            line.remove_prefix(cell.size());
        }
        if (line.empty()) {
            break;
        }
        line.remove_prefix(1);
    }
    while (!cells.empty() && cells.back().empty()) {
        cells.pop_back();
    }
    return cells;
}

std::string_view withoutMark(std::string_view text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        throw DefinitionError{1, "the file is UTF-16 text; save it as UTF-8"};
    }
    return text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text;
}

} // namespace

std::vector<Row> readRows(std::string_view given) {
    std::vector<Row> rows;
    std::string_view text = withoutMark(given);
    char separator = '\0';
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::string_view line = takeLine(text);
        requireText(line, number);
        if (trimmed(line).empty() || trimmed(line).starts_with('#')) {
            continue;
        }
        if (separator == '\0') {
            separator = findSeparator(line);
        }
        Row row{number, readCells(line, separator, number)};
        if (!row.cells.empty()) {
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

} // namespace peng_robinson
