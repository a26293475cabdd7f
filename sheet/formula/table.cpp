#include "sheet/formula/table.h"

#include "sheet/formula/utf8.h"

#include <algorithm>

namespace sheet::formula {

namespace {

constexpr std::string_view gap = "  ";

// Line breaks and other control characters would break the table, or steer the terminal.
std::string onOneLine(std::string text) {
    for (char& c : text) {
        const auto byte = static_cast<unsigned char>(c);
        c = byte < 0x20 || byte == 0x7F ? ' ' : c;
    }
    return text;
}

std::string padded(std::string text, std::size_t width) {
    text.append(width - std::min(width, characterCount(text)), ' ');
    return text;
}

std::string flushRight(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

struct ColumnWidth {
    std::size_t beforePoint = 0;
    std::size_t fromPoint = 0;
    std::size_t text = 0;

    std::size_t total() const { return std::max(text, beforePoint + fromPoint); }
};

std::size_t pointOf(const std::string& number) { return std::min(number.find_first_of(".e"), number.size()); }

class Table {
  public:
    explicit Table(const Matrix& cells) : cells_{cells}, widths_(cells.columns) {
        for (std::size_t row = 0; row < cells.rows; ++row) {
            for (std::size_t column = 0; column < cells.columns; ++column) {
                texts_.push_back(onOneLine(displayText(cells.at(row, column))));
                widen(row, column, texts_.back());
            }
        }
    }

    void widen(std::size_t column, std::size_t width) {
        widths_[column].text = std::max(widths_[column].text, width);
    }

    std::size_t width(std::size_t column) const { return widths_[column].total(); }

    std::string line(std::size_t row) const {
        std::string result;
        std::size_t end = 0; // where the columns so far end
        for (std::size_t column = 0; column < cells_.columns; ++column) {
            result = padded(std::move(result), end);
            result += column > 0 ? gap : "";
            result += aligned(row, column);
            end += width(column) + (column > 0 ? gap.size() : 0);
        }
        result.erase(result.find_last_not_of(' ') + 1);
        return result;
    }

  private:
    bool isNumber(std::size_t row, std::size_t column) const {
        return std::holds_alternative<double>(cells_.at(row, column));
    }

    bool isLastInRow(std::size_t row, std::size_t column) const {
        for (++column; column < cells_.columns; ++column) {
            if (!isEmpty(cells_.at(row, column))) {
                return false;
            }
        }
        return true;
    }

    void widen(std::size_t row, std::size_t column, const std::string& text) {
        ColumnWidth& width = widths_[column];
        if (isNumber(row, column)) {
            const std::size_t point = pointOf(text);
            width.beforePoint = std::max(width.beforePoint, point);
            width.fromPoint = std::max(width.fromPoint, text.size() - point);
        } else if (!isLastInRow(row, column)) {
            widen(column, characterCount(text));
        }
    }

    std::string aligned(std::size_t row, std::size_t column) const {
        const std::string& text = texts_[row * cells_.columns + column];
        if (!isNumber(row, column)) {
            return text;
        }
        const ColumnWidth& width = widths_[column];
        return flushRight(text, width.total() - width.fromPoint + text.size() - pointOf(text));
    }

    const Matrix& cells_;
    std::vector<ColumnWidth> widths_;
    std::vector<std::string> texts_;
};

} // namespace

std::string printedTable(const Grid& grid) {
    if (grid.rows() == 0) {
        return "(the worksheet is empty)\n";
    }
    const Matrix cells = grid.values({{0, 0}, grid.rows(), grid.columns()});
    Table table{cells};
    std::string header;
    const std::size_t margin = std::to_string(cells.rows).size();
    std::size_t end = margin;
    for (std::size_t column = 0; column < cells.columns; ++column) {
        const std::string name = columnName(column);
        table.widen(column, name.size());
        header = padded(std::move(header), end);
        header.append(gap).append(name);
        end += gap.size() + table.width(column);
    }
    std::string text = header + '\n';
    for (std::size_t row = 0; row < cells.rows; ++row) {
        std::string line = flushRight(std::to_string(row + 1), margin).append(gap).append(table.line(row));
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

std::string printedRows(const Matrix& rows) {
    const Table table{rows};
    std::string text;
    for (std::size_t row = 0; row < rows.rows; ++row) {
        text += table.line(row) + '\n';
    }
    return text;
}

} // namespace sheet::formula
