#include "sheet/formula/csv.h"

#include "sheet/formula/input_error.h"
#include "sheet/formula/utf8.h"

namespace sheet::formula {

namespace {

class Reader {
  public:
    explicit Reader(std::string_view text) : text_{text} {}

    CsvTable table() {
        CsvTable result;
        while (!atEnd()) {
            result.emplace_back();
            readRow(result.back());
            ++here_.row;
            here_.column = 0;
        }
        return result;
    }

  private:
    bool atEnd() const { return position_ == text_.size(); }
    bool at(char c) const { return !atEnd() && text_[position_] == c; }

    bool take(char c) {
        const bool found = at(c);
        position_ += found;
        return found;
    }

    // A carriage return alone ends no line: programs disagree about it.
    bool takeLineEnd() {
        if (take('\n')) {
            return true;
        }
        if (!at('\r')) {
            return false;
        }
        if (position_ + 1 == text_.size() || text_[position_ + 1] != '\n') {
            fail(
                "a carriage return stands here without a line feed; save the file with CRLF or LF line ends");
        }
        position_ += 2;
        return true;
    }

    void readRow(std::vector<std::string>& row) {
        if (here_.row == maximumRows) {
            fail("a worksheet has at most 1048576 rows; split the file");
        }
        while (true) {
            if (here_.column == maximumColumns) {
                fail("a worksheet has at most 16384 columns; split the file");
            }
            row.push_back(take('"') ? quotedCell() : plainCell());
            if (const std::size_t bad = firstInvalidUtf8(row.back()); bad != std::string_view::npos) {
                fail("this cell is not valid UTF-8 text; save the file as \"CSV UTF-8\"");
            }
            if (row.back().find('\0') != std::string::npos) {
                fail("this cell contains a null character; remove it");
            }
            if (atEnd() || takeLineEnd()) {
                return;
            }
            take(',');
            ++here_.column;
        }
    }

    std::string plainCell() {
        const std::size_t begin = position_;
        while (!atEnd() && !at(',') && !at('\n') && !at('\r')) {
            if (at('"')) {
                fail("a quote stands inside a cell that is not in quotes; put the whole cell in quotes and "
                     "double the "
                     "quotes inside it");
            }
            ++position_;
        }
        return std::string{text_.substr(begin, position_ - begin)};
    }

    std::string quotedCell() {
        std::string cell;
        while (true) {
            const std::size_t quote = text_.find('"', position_);
            if (quote == std::string_view::npos) {
                fail("the quote that opens this cell is never closed; add the closing quote");
            }
            cell += text_.substr(position_, quote - position_);
            position_ = quote + 1;
            if (!take('"')) {
                break;
            }
            cell += '"';
        }
        if (!atEnd() && !at(',') && !at('\n') && !at('\r')) {
            fail("text follows the closing quote of this cell; double the quotes inside a cell that is in "
                 "quotes");
        }
        return cell;
    }

    [[noreturn]] void fail(const char* message) const { throw InputError{here_, message}; }

    std::string_view text_;
    std::size_t position_ = 0;
    Address here_;
};

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

// A mark that begins the text says nothing but that it is UTF-8.
bool needsQuotes(std::string_view cell, bool beginsText) {
    return cell.find_first_of("\",\r\n") != std::string_view::npos ||
           (beginsText && cell.starts_with(utf8Mark));
}

void append(std::string& text, std::string_view cell) {
    if (!needsQuotes(cell, text.empty())) {
        text += cell;
        return;
    }
    text += '"';
    for (const char c : cell) {
        text.append(c == '"' ? 2 : 1, c);
    }
    text += '"';
}

} // namespace

CsvTable readCsv(std::string_view text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        throw InputError{std::nullopt, "the file is UTF-16 text; save it as \"CSV UTF-8\""};
    }
    if (text.starts_with(utf8Mark)) {
        text.remove_prefix(utf8Mark.size());
    }
    return Reader{text}.table();
}

std::string writeCsv(const CsvTable& table) {
    std::string text;
    for (const std::vector<std::string>& row : table) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (column > 0) {
                text += ',';
            }
            append(text, row[column]);
        }
        text += "\r\n";
    }
    return text;
}

} // namespace sheet::formula
