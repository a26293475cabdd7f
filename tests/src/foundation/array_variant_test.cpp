// The owner of a value that may hold an array, and the makers of arrays.
#include "src/foundation/array_variant.h"
#include "tests/src/foundation/safe_arrays.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace quorvane {
namespace {

using Dimensions = std::vector<Dimension>;

TEST(CreateVector, MakesOneDimensionFromZero) {
    ArrayVariant holder;
    holder.createVector(3, VT_R8);
    EXPECT_EQ(holder.value.vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(dimensionsOf(holder.value.parray), (Dimensions{{0, 2}}));
    EXPECT_EQ(holder.count, 3);
    EXPECT_EQ(holder.lowerBound, 0);
    EXPECT_TRUE(holder.owned);
    EXPECT_FALSE(holder.locked);
}

TEST(ArrayVariantOwner, KeepsItsArrayWhenItIsMovedIntoItself) {
    ArrayVariant holder;
    holder.createVector(3, VT_R8);
    ArrayVariant& same = holder;
    holder = std::move(same);
    EXPECT_EQ(holder.value.vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(holder.count, 3);
    EXPECT_TRUE(holder.owned);
}

TEST(CreateVector, HoldsTheElementTypeAskedFor) {
    for (const VARTYPE vt :
         {VARTYPE{VT_I2}, VARTYPE{VT_I4}, VARTYPE{VT_R8}, VARTYPE{VT_BSTR}, VARTYPE{VT_VARIANT}}) {
        ArrayVariant holder;
        holder.createVector(2, vt);
        VARTYPE actual = VT_EMPTY;
        ASSERT_EQ(SafeArrayGetVartype(holder.value.parray, &actual), S_OK);
        EXPECT_EQ(actual, vt);
        EXPECT_EQ(holder.value.vt, VT_ARRAY | vt);
    }
}

TEST(CreateRowOrColumn, MakesAColumnOrARowFromOne) {
    ArrayVariant holder;
    holder.createRowOrColumn(4, true, VT_BSTR);
    EXPECT_EQ(dimensionsOf(holder.value.parray), (Dimensions{{1, 4}, {1, 1}}));
    EXPECT_EQ(holder.count, 4);
    holder.createRowOrColumn(4, false, VT_BSTR);
    EXPECT_EQ(dimensionsOf(holder.value.parray), (Dimensions{{1, 1}, {1, 4}}));
    EXPECT_EQ(holder.count, 4);
    EXPECT_EQ(holder.value.vt, VT_ARRAY | VT_BSTR);
    EXPECT_TRUE(holder.owned);
}

TEST(CreateMatrix, MakesRowsAndColumnsFromOne) {
    ArrayVariant holder;
    holder.createMatrix(2, 3, VT_VARIANT);
    EXPECT_EQ(dimensionsOf(holder.value.parray), (Dimensions{{1, 2}, {1, 3}}));
    EXPECT_EQ(holder.count, 6);
    EXPECT_EQ(holder.value.vt, VT_ARRAY | VT_VARIANT);
    EXPECT_TRUE(holder.owned);
}

TEST(CreateMatrix, RunsDownTheRowsFirst) {
    ArrayVariant holder;
    holder.createMatrix(2, 3, VT_R8);
    auto elements = holder.elements<double>();
    elements[1 + 2 * 2] = 23.0;
    holder.unlock();
    LONG rowAndColumn[] = {2, 3};
    double value = 0.0;
    ASSERT_EQ(SafeArrayGetElement(holder.value.parray, rowAndColumn, &value), S_OK);
    EXPECT_EQ(value, 23.0);
}

TEST(Makers, OfNoElementsMakeAnEmptyValueAndNoArray) {
    ArrayVariant holder;
    const auto expectEmpty = [&holder] {
        EXPECT_EQ(holder.value.vt, VT_EMPTY);
        EXPECT_EQ(holder.count, 0);
        EXPECT_TRUE(holder.isEmpty());
        EXPECT_TRUE(holder.elements<double>().empty());
    };
    holder.createVector(0, VT_R8);
    expectEmpty();
    holder.createRowOrColumn(0, true, VT_R8);
    expectEmpty();
    holder.createRowOrColumn(0, false, VT_R8);
    expectEmpty();
    holder.createMatrix(0, 5, VT_R8);
    expectEmpty();
    holder.createMatrix(5, 0, VT_R8);
    expectEmpty();
}

TEST(Makers, ReleaseWhatWasHeld) {
    com::unique_safearray array = arrayOf(VT_R8, {{2, 0}});
    SAFEARRAY* const lent = array.get();
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = lent;
    ArrayVariant holder = ArrayVariant::borrow(value);
    holder.count = 2;
    holder.elements<double>();
    EXPECT_FALSE(isUnlocked(lent));
    holder.createVector(0, VT_R8);
    EXPECT_TRUE(isUnlocked(lent));
    EXPECT_TRUE(holder.isEmpty());
}

TEST(Makers, RefuseMoreElementsThanCanBeCounted) {
    ArrayVariant holder;
    EXPECT_THROW(holder.createMatrix(1 << 16, 1 << 16, VT_R8), std::bad_alloc);
    EXPECT_TRUE(holder.isEmpty());
}

TEST(StringVectorToArray, MakesOneElementAText) {
    const std::vector<std::wstring> strings = {L"Nitrogen", L"", L"n-Butane"};
    ArrayVariant holder = stringVectorToArray(strings);
    EXPECT_EQ(holder.value.vt, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(dimensionsOf(holder.value.parray), (Dimensions{{0, 2}}));
    EXPECT_TRUE(isUnlocked(holder.value.parray));
    const auto texts = holder.elements<BSTR>();
    EXPECT_EQ(com::viewOf(texts[0]), L"Nitrogen");
    EXPECT_EQ(texts[1], nullptr);
    EXPECT_EQ(com::viewOf(texts[2]), L"n-Butane");
}

TEST(StringVectorToArray, OfNoTextsIsAnEmptyValue) { EXPECT_TRUE(stringVectorToArray({}).isEmpty()); }

TEST(ArrayVariant, LeavesABorrowedValueToItsOwner) {
    com::variant original = reals({{2, 0}}, {1.0, 2.0});
    {
        ArrayVariant holder = ArrayVariant::borrow(original);
        EXPECT_FALSE(holder.owned);
        holder.count = 2;
        EXPECT_EQ(holder.elements<double>()[1], 2.0);
        EXPECT_TRUE(holder.locked);
        EXPECT_FALSE(isUnlocked(original.parray));
    }
    EXPECT_TRUE(isUnlocked(original.parray));
    const com::array_lock<double> lock{original.parray};
    EXPECT_EQ(lock.elements()[0], 1.0);
}

TEST(ArrayVariant, HandsItsValueOverUnlockedAndIsEmptyAfterwards) {
    ArrayVariant holder;
    holder.createVector(2, VT_R8);
    holder.elements<double>()[1] = 5.0;
    com::variant result;
    holder.handOver(&result);
    EXPECT_TRUE(holder.isEmpty());
    EXPECT_FALSE(holder.owned);
    ASSERT_EQ(result.vt, VT_ARRAY | VT_R8);
    EXPECT_TRUE(isUnlocked(result.parray));
    const com::array_lock<double> lock{result.parray};
    EXPECT_EQ(lock.elements()[1], 5.0);
}

TEST(ArrayVariant, MovesWithItsLock) {
    ArrayVariant first;
    first.createMatrix(1, 2, VT_R8);
    first.elements<double>()[0] = 4.0;
    ArrayVariant second = std::move(first);
    EXPECT_TRUE(first.isEmpty());
    EXPECT_FALSE(first.locked);
    EXPECT_TRUE(second.locked);
    EXPECT_TRUE(second.owned);
    EXPECT_EQ(second.count, 2);
    EXPECT_EQ(second.lowerBound, 1);
    EXPECT_EQ(second.elements<double>()[0], 4.0);
}

TEST(ArrayVariant, CopiesDeeply) {
    ArrayVariant first;
    first.createVector(1, VT_R8);
    first.elements<double>()[0] = 4.0;
    first.unlock();
    ArrayVariant second = first.copy();
    first.elements<double>()[0] = 8.0;
    EXPECT_NE(second.value.parray, first.value.parray);
    EXPECT_EQ(second.elements<double>()[0], 4.0);
}

TEST(ArrayVariant, OwnsWhatAnOutParameterReceives) {
    ArrayVariant holder;
    holder.createVector(1, VT_R8);
    *holder.put() = com::variant{L"text"}.release();
    EXPECT_TRUE(holder.owned);
    EXPECT_EQ(holder.count, 0);
    EXPECT_EQ(com::viewOf(holder.value.bstrVal), L"text");
}

} // namespace
} // namespace quorvane
