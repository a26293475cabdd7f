#include "src/workbook/string_matrix.h"

#include "src/foundation/exceptions.h"

#include <algorithm>
#include <cstdint>

namespace quorvane {

namespace {

SAFEARRAY* checkedMatrix(const VARIANT& value) {
    // Front ends show these texts as they are, the article included.
    constexpr const wchar_t* notTexts = L"Expected an matrix of type string";
    if (value.vt != (VT_ARRAY | VT_BSTR)) {
        throw CWStrException{notTexts};
    }
    SAFEARRAY* const array = value.parray;
    // Elements that are something else than the label says would be followed as pointers.
    VARTYPE element = VT_EMPTY;
    if (array != nullptr && (SafeArrayGetElemsize(array) != sizeof(BSTR) ||
                             (SUCCEEDED(SafeArrayGetVartype(array, &element)) && element != VT_BSTR))) {
        throw CWStrException{notTexts};
    }
    if (SafeArrayGetDim(array) != 2) {
        throw CWStrException{L"unexpected dimension; 2-dimensional array expected"};
    }
    return array;
}

} // namespace

std::size_t extentOf(SAFEARRAY* array, UINT dimension, BoundQuery lower, BoundQuery upper) {
    LONG first = 0;
    LONG last = 0;
    if (FAILED(lower(array, dimension, &first))) {
        throw CWStrException{L"failed to get lower bound"};
    }
    if (FAILED(upper(array, dimension, &last))) {
        throw CWStrException{L"failed to get upper bound"};
    }
    return static_cast<std::size_t>(std::max<std::int64_t>(std::int64_t{last} - first + 1, 0));
}

StringMatrix::StringMatrix(const VARIANT& value) : StringMatrix{Checked{checkedMatrix(value)}} {}

StringMatrix::StringMatrix(Checked checked)
    : rows_{extentOf(checked.array, 1)}, columns_{extentOf(checked.array, 2)}, lock_{checked.array} {}

std::wstring_view StringMatrix::at(std::size_t row, std::size_t column) const noexcept {
    const std::size_t index = row + column * rows_;
    const std::span<BSTR> elements = lock_.elements();
    return index < elements.size() ? com::viewOf(elements[index]) : std::wstring_view{};
}

} // namespace quorvane
