// Typed access to the elements of arrays.
#include "com/safe_array.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace com {
namespace {

TEST(MakeVector, StartsAtZeroWithZeroes) {
    const unique_safearray array = makeVector(VT_R8, 3);
    LONG lower = -1;
    LONG upper = -1;
    SafeArrayGetLBound(array.get(), 1, &lower);
    SafeArrayGetUBound(array.get(), 1, &upper);
    EXPECT_EQ(SafeArrayGetDim(array.get()), 1U);
    EXPECT_EQ(lower, 0);
    EXPECT_EQ(upper, 2);
    const array_lock<double> lock{array.get()};
    EXPECT_EQ(lock.elements()[2], 0.0);
}

TEST(MakeMatrix, StartsAtOneAndRunsDownTheRowsFirst) {
    const unique_safearray array = makeMatrix(VT_I4, 2, 3);
    {
        const array_lock<LONG> lock{array.get()};
        ASSERT_EQ(lock.elements().size(), 6U);
        lock.elements()[1 + 2 * 2] = 23;
    }
    LONG rowAndColumn[] = {2, 3};
    LONG value = 0;
    EXPECT_EQ(SafeArrayGetElement(array.get(), rowAndColumn, &value), S_OK);
    EXPECT_EQ(value, 23);
}

TEST(ArrayLock, HoldsTheLockForItsLifetime) {
    const unique_safearray array = makeVector(VT_R8, 1);
    {
        const array_lock<double> lock{array.get()};
        EXPECT_EQ(array.get()->cLocks, 1U);
    }
    EXPECT_EQ(array.get()->cLocks, 0U);
}

TEST(ArrayLock, RefusesNoArray) { EXPECT_THROW(array_lock<double>{nullptr}, array_not_locked); }

TEST(ArrayLock, OfAnArrayWithoutElementsHasNone) {
    const unique_safearray array = makeVector(VT_R8, 0);
    const array_lock<double> lock{array.get()};
    EXPECT_TRUE(lock.elements().empty());
}

TEST(RealArray, HoldsItsNumbers) {
    const variant value = realArray(std::array{0.25, 0.75});
    ASSERT_EQ(value.vt, VT_ARRAY | VT_R8);
    const array_lock<double> lock{value.parray};
    EXPECT_EQ(std::vector<double>(lock.elements().begin(), lock.elements().end()), (std::vector{0.25, 0.75}));
}

TEST(TextArray, HoldsItsTextsWithNullForAnEmptyOne) {
    const variant value = textArray(std::vector<std::wstring>{L"Vapor", L"", L"Liquid"});
    ASSERT_EQ(value.vt, VT_ARRAY | VT_BSTR);
    const array_lock<BSTR> lock{value.parray};
    ASSERT_EQ(lock.elements().size(), 3U);
    EXPECT_EQ(viewOf(lock.elements()[0]), L"Vapor");
    EXPECT_EQ(lock.elements()[1], nullptr);
    EXPECT_EQ(viewOf(lock.elements()[2]), L"Liquid");
}

} // namespace
} // namespace com
