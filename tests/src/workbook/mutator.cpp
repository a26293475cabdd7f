#include "tests/src/workbook/mutator.h"

#include "com/safe_array.h"

#include <algorithm>

namespace quorvane {

Mutator::Mutator() {
    for (const char* name :
         {"empty", "bytes_500", "bytes_501", "text_32000", "compressed_pieces", "two_widths"}) {
        good_.push_back(goldenTable(name));
    }
}

com::variant Mutator::next() {
    Table table = good_[below(good_.size())];
    for (std::size_t i = 1 + below(4); i > 0; --i) {
        mutate(table);
    }
    com::variant array = arrayOf(table, below(2) == 0 ? 1 : static_cast<LONG>(random_()));
    if (below(50) == 0) {
        return wrongShape();
    }
    return array;
}

void Mutator::mutate(Table& table) {
    Row& row = table[below(table.size())];
    std::wstring& cell = row[below(8) == 0 ? below(row.size()) : std::min(5 + below(4), row.size() - 1)];
    switch (below(9)) {
    case 0:
        cell.clear();
        break;
    case 1:
        cell.resize(below(cell.size() + 1));
        break;
    case 2: // a few characters, of which most are base64
        for (std::size_t i = below(8); i > 0 && !cell.empty(); --i) {
            cell[below(cell.size())] = static_cast<wchar_t>(1 + below(below(4) == 0 ? 0xFFFF : 127));
        }
        break;
    case 3:
        cell = std::to_wstring(below(12));
        break;
    case 4:
        cell.insert(0, L"#");
        break;
    case 5:
        cell.erase(0, 1 + below(3));
        break;
    case 6:
        cell.append(below(6), L'=');
        break;
    case 7:
        std::swap(cell, row[below(row.size())]);
        break;
    default:
        table.push_back(table[below(table.size())]);
        break;
    }
}

com::variant Mutator::wrongShape() {
    SAFEARRAYBOUND bounds[3] = {{1, 1}, {6, 1}, {2, 1}};
    if (below(2) == 0) {
        return com::variant::array(com::unique_safearray{SafeArrayCreate(VT_BSTR, 3, bounds)}, VT_BSTR);
    }
    return com::variant::array(com::makeMatrix(VT_VARIANT, 2, 6), VT_VARIANT);
}

} // namespace quorvane
