// Automation values that clear themselves.
#include "com/com_ptr.h"
#include "com/owned.h"
#include "com/safe_array.h"
#include "tests/src/com/counted.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace com {
namespace {

// A value that holds a reference to an object, so that the object tells what becomes of the value.
variant holding(Counted& object) {
    variant value;
    value.vt = VT_UNKNOWN;
    value.punkVal = object.errorFace();
    value.punkVal->AddRef();
    return value;
}

TEST(Variant, IsMadeOfPlainValues) {
    EXPECT_EQ(variant{}.vt, VT_EMPTY);
    EXPECT_EQ(variant{0.5}.vt, VT_R8);
    EXPECT_EQ(variant{0.5}.dblVal, 0.5);
    EXPECT_EQ(variant{7L}.vt, VT_I4);
    EXPECT_EQ(variant{7L}.lVal, 7);
    EXPECT_EQ(variant{true}.vt, VT_BOOL);
    EXPECT_EQ(variant{true}.boolVal, VARIANT_TRUE);
    EXPECT_EQ(variant{false}.boolVal, VARIANT_FALSE);
    EXPECT_EQ(variant{L"text"}.vt, VT_BSTR);
    EXPECT_EQ(viewOf(variant{L"text"}.bstrVal), L"text");
}

TEST(Variant, SaysThatAnArgumentWasLeftOut) {
    EXPECT_EQ(variant::missing().vt, VT_ERROR);
    EXPECT_EQ(variant::missing().scode, DISP_E_PARAMNOTFOUND);
}

TEST(Variant, ClearsWhatItHoldsAtItsEnd) {
    const auto object = make<Counted>();
    {
        const variant value = holding(*object);
        EXPECT_EQ(object->references(), 2U);
    }
    EXPECT_EQ(object->references(), 1U);
}

TEST(Variant, MovesWithoutAReference) {
    const auto object = make<Counted>();
    variant first = holding(*object);
    variant second = std::move(first);
    EXPECT_EQ(first.vt, VT_EMPTY);
    EXPECT_EQ(object->references(), 2U);
    first = std::move(second);
    EXPECT_EQ(second.vt, VT_EMPTY);
    EXPECT_EQ(object->references(), 2U);
    auto& same = first;
    first = std::move(same);
    EXPECT_EQ(object->references(), 2U);
    first = variant{1.0};
    EXPECT_EQ(object->references(), 1U);
}

TEST(Variant, PutClearsFirst) {
    const auto object = make<Counted>();
    variant value = holding(*object);
    EXPECT_EQ(value.put()->vt, VT_EMPTY);
    EXPECT_EQ(object->references(), 1U);
}

TEST(Variant, GivesItsContentAwayAndTakesOver) {
    const auto object = make<Counted>();
    {
        variant value = holding(*object);
        const VARIANT plain = value.release();
        EXPECT_EQ(value.vt, VT_EMPTY);
        EXPECT_EQ(object->references(), 2U);
        const variant taken = variant::attach(plain);
        EXPECT_EQ(object->references(), 2U);
    }
    EXPECT_EQ(object->references(), 1U);
}

TEST(Variant, CopiesDeeplyAndThroughReferences) {
    const variant text{L"text"};
    const variant copy = variant::copyOf(text);
    EXPECT_NE(copy.bstrVal, text.bstrVal);
    EXPECT_EQ(viewOf(copy.bstrVal), L"text");
    double number = 0.5;
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_R8;
    reference.pdblVal = &number;
    EXPECT_EQ(variant::copyOf(reference).vt, VT_R8);
    EXPECT_EQ(variant::copyOf(reference).dblVal, 0.5);
}

TEST(Variant, OwnsAnArray) {
    const std::array<double, 2> numbers{1.0, 2.0};
    const variant value = realArray(numbers);
    EXPECT_EQ(value.vt, VT_ARRAY | VT_R8);
    const array_lock<double> lock{value.parray};
    EXPECT_EQ(lock.elements()[1], 2.0);
}

TEST(Assign, ClearsTheOldContentOfAnInOutArgument) {
    const auto object = make<Counted>();
    VARIANT target = holding(*object).release();
    assign(&target, variant{L"new"});
    EXPECT_EQ(object->references(), 1U);
    const variant owner = variant::attach(target);
    EXPECT_EQ(viewOf(owner.bstrVal), L"new");
}

TEST(Convert, FollowsTheRulesOfAutomation) {
    EXPECT_EQ(convert(variant{L"12"}, VT_I4)->lVal, 12);
    EXPECT_EQ(convert(variant{2L}, VT_R8)->dblVal, 2.0);
    EXPECT_EQ(convert(variant{}, VT_R8)->dblVal, 0.0);
    EXPECT_FALSE(convert(variant{L"abc"}, VT_R8));
    EXPECT_FALSE(convert(variant::missing(), VT_R8));
}

TEST(Convert, LeavesTheOriginalAsItIs) {
    const variant text{L"12"};
    EXPECT_TRUE(convert(text, VT_R8));
    EXPECT_EQ(text.vt, VT_BSTR);
    EXPECT_EQ(viewOf(text.bstrVal), L"12");
}

} // namespace
} // namespace com
