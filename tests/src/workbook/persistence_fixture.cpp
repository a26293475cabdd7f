#include "tests/src/workbook/persistence_fixture.h"

#include "com/safe_array.h"

namespace quorvane {

Table tableIn(const VARIANT& array) {
    if (array.vt == VT_EMPTY) {
        return {};
    }
    EXPECT_EQ(array.vt, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(SafeArrayGetDim(array.parray), 2U);
    LONG upper[2] = {};
    for (UINT dimension = 1; dimension <= 2; ++dimension) {
        LONG lower = 0;
        SafeArrayGetLBound(array.parray, dimension, &lower);
        SafeArrayGetUBound(array.parray, dimension, &upper[dimension - 1]);
        EXPECT_EQ(lower, 1);
    }
    const com::array_lock<BSTR> lock{array.parray};
    const auto rows = static_cast<std::size_t>(upper[0]);
    Table table(rows);
    for (std::size_t i = 0; i < lock.elements().size(); ++i) {
        const BSTR text = lock.elements()[i];
        EXPECT_TRUE(text == nullptr || SysStringLen(text) > 0) << "an empty text must be null";
        table[i % rows].emplace_back(com::viewOf(text));
    }
    for (const Row& row : table) {
        EXPECT_EQ(row.size(), static_cast<std::size_t>(upper[1]));
    }
    return table;
}

Table PersistenceTest::save(WorkbookKey workbook) { return tableIn(persist(store, workbook, report).value); }

std::vector<std::wstring> PersistenceTest::namesIn(WorkbookKey workbook) const {
    std::vector<std::wstring> names;
    for (const NamedPackage& entry : store.packagesOf(workbook)) {
        names.push_back(entry.ppName);
    }
    std::ranges::sort(names);
    return names;
}

} // namespace quorvane
