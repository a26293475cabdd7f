// The shapes that results are given before they go to the sheet.
#include "src/udf/layout.h"

#include "com/safe_array.h"

#include <gtest/gtest.h>

using namespace quorvane;
using namespace quorvane::udf;

namespace {

struct Shape {
    UINT dimensions;
    LONG lower, rows, columns;
    bool operator==(const Shape&) const = default;
};

Shape shapeOf(const ArrayVariant& holder) {
    SAFEARRAY* const array = holder.value.parray;
    Shape shape{SafeArrayGetDim(array), 0, 0, 0};
    SafeArrayGetLBound(array, 1, &shape.lower);
    SafeArrayGetUBound(array, 1, &shape.rows);
    SafeArrayGetUBound(array, 2, &shape.columns);
    return shape;
}

std::wstring refusalOf(ArrayVariant& holder) {
    try {
        toColumn(holder);
    } catch (const WException& failure) {
        return failure.message();
    }
    return L"(accepted)";
}

ArrayVariant listOfTwo() {
    ArrayVariant list;
    list.createVector(2, VT_VARIANT);
    list.elements<VARIANT>()[0] = com::variant{1.5}.release();
    list.elements<VARIANT>()[1] = com::variant{L"text"}.release();
    list.unlock();
    return list;
}

TEST(ShapeVector, ValuesStandInARowOrAColumnWithBoundsFromOne) {
    const double values[] = {1.0, 2.0, 3.0};
    EXPECT_EQ(shapeOf(shapeVector(values, Orientation_Horizontal)), (Shape{2, 1, 1, 3}));
    EXPECT_EQ(shapeOf(shapeVector(values, Orientation_Vertical)), (Shape{2, 1, 3, 1}));
}
TEST(ShapeVector, NoValuesAreNoArray) { EXPECT_TRUE(shapeVector({}, Orientation_Vertical).isEmpty()); }

TEST(ToColumn, AListBecomesAColumnOfTheSameValues) {
    ArrayVariant list = listOfTwo();
    toColumn(list);
    EXPECT_EQ(shapeOf(list), (Shape{2, 1, 2, 1}));
    const com::array_lock<VARIANT> cells{list.value.parray};
    EXPECT_EQ(cells.elements()[0].dblVal, 1.5);
    EXPECT_EQ(com::viewOf(cells.elements()[1].bstrVal), L"text");
}
TEST(ToColumn, NothingStaysNothing) {
    ArrayVariant nothing;
    toColumn(nothing);
    EXPECT_TRUE(nothing.isEmpty());
}
TEST(ToColumn, AListOfNumbersIsRefused) {
    ArrayVariant reals;
    reals.createVector(2, VT_R8);
    EXPECT_EQ(refusalOf(reals), L"Invalid values from Property Package: Expected an array of type VARIANT");
}
TEST(ToColumn, ABlockIsRefused) {
    ArrayVariant block;
    block.createMatrix(2, 2, VT_VARIANT);
    EXPECT_EQ(refusalOf(block),
              L"Invalid values from Property Package: unexpected dimension; 1-dimensional array expected");
}
TEST(ToColumn, AListWithoutDataIsRefused) {
    SAFEARRAY* descriptor = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptorEx(VT_VARIANT, 1, &descriptor), S_OK);
    descriptor->rgsabound[0] = {2, 0};
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_ARRAY | VT_VARIANT;
    value.parray = descriptor;
    {
        ArrayVariant holder = ArrayVariant::borrow(value);
        EXPECT_EQ(refusalOf(holder), L"Invalid values from Property Package: failed to access array data");
    }
    SafeArrayDestroyDescriptor(descriptor);
}

} // namespace
