#include "sheet/cli/cell_values.h"

#include "com/safe_array.h"

#include <gtest/gtest.h>
#include <limits>

namespace sheet::cli {
namespace {

using formula::CellError;
using formula::Matrix;
using formula::Value;

com::variant error(unsigned code) {
    com::variant value;
    value.vt = VT_ERROR;
    value.scode = static_cast<SCODE>(code);
    return value;
}

TEST(CellValues, ScalarsAreSingleCells) {
    EXPECT_EQ(fromResult(com::variant{2.5}), Matrix::of(2.5));
    EXPECT_EQ(fromResult(com::variant{7L}), Matrix::of(7.0));
    EXPECT_EQ(fromResult(com::variant{L"\u00B0C"}), Matrix::of("\u00B0C"));
    EXPECT_EQ(fromResult(com::variant{true}), Matrix::of(true));
}

TEST(CellValues, NothingShowsZeroAndANullTextNothing) {
    EXPECT_EQ(fromResult(com::variant{}), Matrix::of(0.0));
    EXPECT_EQ(fromResult(com::variant{com::unique_bstr{}}), Matrix::of(""));
}

TEST(CellValues, ErrorsAreExcels) {
    EXPECT_EQ(fromResult(error(0x800A07FA)), Matrix::of(CellError::na));
    EXPECT_EQ(fromResult(error(0x80020004)), Matrix::of(CellError::value));
    EXPECT_EQ(toVariant(CellError::na).scode, static_cast<SCODE>(0x800A07FA));
}

TEST(CellValues, WhatIsNoNumberShowsNum) {
    EXPECT_EQ(fromResult(com::variant{std::numeric_limits<double>::quiet_NaN()}), Matrix::of(CellError::num));
    EXPECT_EQ(fromResult(com::variant{std::numeric_limits<double>::infinity()}), Matrix::of(CellError::num));
}

TEST(CellValues, OneDimensionIsARow) {
    EXPECT_EQ(fromResult(com::realArray(std::array{1.0, 2.0, 3.0})), (Matrix{1, 3, {1.0, 2.0, 3.0}}));
    EXPECT_EQ(fromResult(com::textArray(std::vector<std::wstring>{L"a", L""})), (Matrix{1, 2, {"a", ""}}));
}

TEST(CellValues, TwoDimensionsAreRowsAndColumns) {
    com::unique_safearray array = com::makeMatrix(VT_VARIANT, 2, 3);
    for (LONG row = 1; row <= 2; ++row) {
        for (LONG column = 1; column <= 3; ++column) {
            LONG position[] = {row, column};
            com::variant number{static_cast<double>(10 * row + column)};
            ASSERT_EQ(SafeArrayPutElement(array.get(), position, &number), S_OK);
        }
    }
    EXPECT_EQ(fromResult(com::variant::array(std::move(array), VT_VARIANT)),
              (Matrix{2, 3, {11.0, 12.0, 13.0, 21.0, 22.0, 23.0}}));
}

TEST(CellValues, MoreDimensionsAreNoResult) {
    SAFEARRAYBOUND bounds[3] = {{1, 0}, {1, 0}, {1, 0}};
    com::unique_safearray array{SafeArrayCreate(VT_R8, 3, bounds)};
    EXPECT_EQ(fromResult(com::variant::array(std::move(array), VT_R8)), Matrix::of(CellError::value));
}

TEST(CellValues, AnEmptyArrayShowsZero) {
    EXPECT_EQ(fromResult(com::variant::array(com::makeVector(VT_R8, 0), VT_R8)), Matrix::of(0.0));
}

TEST(CellValues, ARangeCarriesTheCellsAsExcelDoes) {
    const formula::Grid grid{formula::readWorksheet({{"1", "text"}, {"TRUE", "#N/A"}, {"", "2"}}, {})};
    const auto range = rangeOf(grid, {{0, 0}, 3, 2});
    DISPPARAMS none{};
    com::variant value;
    ASSERT_EQ(range->Invoke(6, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr), S_OK);
    const com::array_lock<com::variant> lock{value.parray};
    const std::span<com::variant> columnwise = lock.elements();
    ASSERT_EQ(columnwise.size(), 6U);
    EXPECT_EQ(columnwise[0].dblVal, 1.0);
    EXPECT_EQ(columnwise[1].boolVal, VARIANT_TRUE);
    EXPECT_EQ(columnwise[2].vt, VT_EMPTY);
    EXPECT_EQ(com::viewOf(columnwise[3].bstrVal), L"text");
    EXPECT_EQ(columnwise[4].vt, VT_ERROR);
    EXPECT_EQ(columnwise[5].dblVal, 2.0);
}

} // namespace
} // namespace sheet::cli
