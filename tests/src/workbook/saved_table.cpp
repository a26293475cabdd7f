#include "tests/src/workbook/saved_table.h"

#include "com/safe_array.h"

namespace quorvane {

com::variant arrayOf(const Table& table, LONG lowerBound) {
    const std::size_t columns = table.empty() ? 0 : table.front().size();
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(table.size()), lowerBound},
                                {static_cast<ULONG>(columns), lowerBound}};
    com::unique_safearray array{SafeArrayCreate(VT_BSTR, 2, bounds)};
    {
        const com::array_lock<BSTR> lock{array.get()};
        const std::span<BSTR> cells = lock.elements();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::wstring& text = table[i % table.size()].at(i / table.size());
            cells[i] = text.empty() ? nullptr : com::makeBstr(text).release();
        }
    }
    return com::variant::array(std::move(array), VT_BSTR);
}

} // namespace quorvane
