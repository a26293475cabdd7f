// A row of saved packages is read as it was written, its cells fit a worksheet, and any row can be read.
#include "src/workbook/saved_state/persisted_package.h"

#include "tests/fuzz/fuzz.h"

namespace fuzz {

namespace {

using quorvane::PersistedPackage;

PersistedPackage readRow(const std::vector<std::wstring>& cells) {
    return quorvane::readPersistedPackage(
        cells.size(), [&cells](std::size_t column) { return std::wstring_view{cells[column]}; });
}

std::vector<std::wstring> rowOf(const PersistedPackage& package) {
    std::vector<std::wstring> cells;
    for (std::size_t column = 0; column < quorvane::columnCount(package); ++column) {
        cells.emplace_back(quorvane::cellOf(package, column));
    }
    require(quorvane::cellOf(package, cells.size()).empty(), "nothing stands beyond the row");
    return cells;
}

bool isSame(const PersistedPackage& a, const PersistedPackage& b) {
    return a.ppName == b.ppName && a.managerName == b.managerName && a.kind == b.kind &&
           a.managerGUID == b.managerGUID && a.packageName == b.packageName && a.stateText == b.stateText;
}

// A short state text of digits alone is read as the number of a column. Base64 of saved bytes is none in
// practice.
bool looksLikeColumn(const std::wstring& text) {
    return !text.empty() && text.size() < quorvane::cellLength &&
           text.find_first_not_of(L"0123456789") == std::wstring::npos;
}

void requireRoundTrip(const PersistedPackage& package) {
    const std::vector<std::wstring> cells = rowOf(package);
    require(cells.size() >= quorvane::fixedColumns, "the fixed columns are always there");
    for (std::size_t column = quorvane::fixedColumns - 1; column < cells.size(); ++column) {
        require(cells[column].size() <= quorvane::cellLength, "a piece of the state fits a cell");
    }
    require(looksLikeColumn(package.stateText) || isSame(readRow(cells), package), "read as written");
}

} // namespace

void run(Input input) {
    const std::size_t stateLength = std::size_t{input.word()} * 4;
    const std::vector<std::wstring> cells = parts(wide(input.text()), L'\n');
    const PersistedPackage read = readRow(cells);
    std::size_t given = 0;
    for (const std::wstring& cell : cells) {
        given += cell.size();
    }
    require(read.stateText.size() <= given, "a state is made of the row's own texts");
    requireRoundTrip(read);

    PersistedPackage package = read;
    package.stateText = repeated(read.stateText, stateLength);
    requireRoundTrip(package);

    const auto kind = quorvane::kindOf(read.kind);
    require(!kind || quorvane::kindText(*kind) == read.kind, "a kind has one text");
}

} // namespace fuzz
