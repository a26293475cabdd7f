#include "sheet/cli/cell_values.h"

#include "sheet/cli/text.h"

#include <cmath>

namespace sheet::cli {

namespace {

using formula::CellError;
using formula::Matrix;
using formula::Value;

// Excel's error values as Automation codes: this plus the error's number.
constexpr auto errorBase = static_cast<SCODE>(0x800A0000U);

Value number(double value) { return std::isfinite(value) ? Value{value} : Value{CellError::num}; }

Value fromScalar(const VARIANT& value) {
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return 0.0;
    case VT_R8:
        return number(value.dblVal);
    case VT_BSTR:
        return toUtf8(com::viewOf(value.bstrVal));
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE;
    case VT_ERROR: {
        const auto offset = static_cast<int>(static_cast<long long>(value.scode) - errorBase);
        return formula::errorNumbered(offset).value_or(CellError::value);
    }
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return CellError::value;
    default: {
        com::variant source = com::variant::copyOf(value);
        com::variant real;
        return SUCCEEDED(VariantChangeType(&real, &source, VARIANT_NOVALUEPROP, VT_R8))
                   ? number(real.dblVal)
                   : Value{CellError::value};
    }
    }
}

Value elementAt(SAFEARRAY* array, VARTYPE type, LONG* position) {
    com::variant element;
    // The array copies its element into the place where a VARIANT of that type keeps its value.
    void* const place =
        type == VT_VARIANT ? static_cast<void*>(&element) : static_cast<void*>(&element.llVal);
    if (FAILED(SafeArrayGetElement(array, position, place))) {
        return CellError::value;
    }
    if (type != VT_VARIANT) {
        element.vt = type;
    }
    return fromScalar(element);
}

bool fitsAVariant(VARTYPE type) { return type != VT_DECIMAL && type != VT_RECORD; }

Matrix fromArray(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    const UINT dimensions = array == nullptr ? 0 : SafeArrayGetDim(array);
    if ((dimensions != 1 && dimensions != 2) || FAILED(SafeArrayGetVartype(array, &type)) ||
        !fitsAVariant(type)) {
        return Matrix::of(CellError::value);
    }
    LONG lower[2] = {};
    std::size_t extent[2] = {1, 1};
    for (UINT dimension = 1; dimension <= dimensions; ++dimension) {
        LONG upper = 0;
        if (FAILED(SafeArrayGetLBound(array, dimension, &lower[dimension - 1])) ||
            FAILED(SafeArrayGetUBound(array, dimension, &upper))) {
            return Matrix::of(CellError::value);
        }
        extent[dimension - 1] =
            static_cast<std::size_t>(static_cast<long long>(upper) - lower[dimension - 1] + 1);
    }
    const bool isRow = dimensions == 1;
    Matrix result{isRow ? 1 : extent[0], isRow ? extent[0] : extent[1], {}};
    for (std::size_t row = 0; row < result.rows; ++row) {
        for (std::size_t column = 0; column < result.columns; ++column) {
            LONG position[2] = {lower[0] + static_cast<LONG>(isRow ? column : row),
                                lower[1] + static_cast<LONG>(column)};
            result.values.push_back(elementAt(array, type, position));
        }
    }
    return result.values.empty() ? Matrix::of(0.0) : result;
}

} // namespace

com::variant toVariant(const Value& value) {
    struct Visitor {
        com::variant operator()(std::monostate) const { return {}; }
        com::variant operator()(double number) const { return com::variant{number}; }
        com::variant operator()(const std::string& text) const { return com::variant{toWide(text)}; }
        com::variant operator()(bool truth) const { return com::variant{truth}; }
        com::variant operator()(CellError error) const {
            com::variant result;
            result.vt = VT_ERROR;
            result.scode = errorBase + static_cast<SCODE>(error);
            return result;
        }
    };
    return std::visit(Visitor{}, value);
}

com::com_ptr<excel::Range> rangeOf(const formula::Grid& grid, const formula::Block& block) {
    std::vector<com::variant> cells;
    cells.reserve(block.cellCount());
    for (const Value& value : grid.values(block).values) {
        cells.push_back(toVariant(value));
    }
    return com::make<excel::Range>(block.rows, block.columns, std::move(cells));
}

Matrix fromResult(const VARIANT& result) {
    return (result.vt & VT_ARRAY) != 0 ? fromArray(result.parray) : Matrix::of(fromScalar(result));
}

} // namespace sheet::cli
