#include "sheet/formula/address.h"

#include "sheet/formula/ascii.h"

#include <algorithm>

namespace sheet::formula {

bool Block::contains(Address cell) const {
    return cell.row >= first.row && cell.row < endRow() && cell.column >= first.column &&
           cell.column < endColumn();
}

bool Block::contains(const Block& other) const {
    return contains(other.first) && other.endRow() <= endRow() && other.endColumn() <= endColumn();
}

bool Block::intersects(const Block& other) const {
    return first.row < other.endRow() && other.first.row < endRow() && first.column < other.endColumn() &&
           other.first.column < endColumn();
}

Block spanning(Address one, Address other) {
    const auto [top, bottom] = std::minmax(one.row, other.row);
    const auto [left, right] = std::minmax(one.column, other.column);
    return {{top, left}, bottom - top + 1, right - left + 1};
}

std::string columnName(std::size_t column) {
    std::string name;
    for (std::size_t left = column + 1; left > 0; left = (left - 1) / 26) {
        name.insert(name.begin(), static_cast<char>('A' + (left - 1) % 26));
    }
    return name;
}

std::string nameOf(Address cell) { return columnName(cell.column) + std::to_string(cell.row + 1); }

std::string nameOf(const Block& block) {
    const std::string first = nameOf(block.first);
    return block.cellCount() == 1 ? first
                                  : first + ':' + nameOf(Address{block.endRow() - 1, block.endColumn() - 1});
}

std::optional<Address> takeAddress(std::string_view& text) {
    std::size_t at = 0;
    const auto dollar = [&] { at += at < text.size() && text[at] == '$'; };

    dollar();
    std::size_t column = 0;
    const std::size_t letters = at;
    for (; at < text.size() && isLetter(text[at]) && column <= maximumColumns; ++at) {
        column = column * 26 + static_cast<std::size_t>(upper(text[at]) - 'A') + 1;
    }
    if (at == letters || column > maximumColumns) {
        return std::nullopt;
    }
    dollar();
    std::size_t row = 0;
    const std::size_t digits = at;
    for (; at < text.size() && isDigit(text[at]) && row <= maximumRows; ++at) {
        row = row * 10 + static_cast<std::size_t>(text[at] - '0');
    }
    if (at == digits || row == 0 || row > maximumRows) {
        return std::nullopt;
    }
    text.remove_prefix(at);
    return Address{row - 1, column - 1};
}

std::optional<Block> readBlock(std::string_view text) {
    const std::optional<Address> first = takeAddress(text);
    if (!first || text.empty()) {
        return first ? std::optional{Block{*first}} : std::nullopt;
    }
    if (text.front() != ':') {
        return std::nullopt;
    }
    text.remove_prefix(1);
    const std::optional<Address> last = takeAddress(text);
    return last && text.empty() ? std::optional{spanning(*first, *last)} : std::nullopt;
}

} // namespace sheet::formula
