// Worksheet values as they arrive: ranges and references.
#include "src/foundation/range_value.h"
#include "tests/src/foundation/fake_range.h"
#include "tests/src/foundation/safe_arrays.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

template <typename T>
VARIANT referenceTo(VARTYPE vt, T& target) {
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(VT_BYREF | vt);
    value.byref = &target;
    return value;
}

TEST(ResolveRangeValue, LeavesAPlainValueWithItsOwner) {
    const com::variant text{L"abc"};
    const ArrayVariant resolved = resolveRangeValue(text);
    EXPECT_FALSE(resolved.owned);
    EXPECT_EQ(resolved.value.vt, VT_BSTR);
    EXPECT_EQ(resolved.value.bstrVal, text.bstrVal);
}

TEST(ResolveRangeValue, OwnsTheContentsOfARange) {
    const auto range = rangeOf(cells({{2, 1}, {1, 1}}, 1.0, L"x"));
    const ArrayVariant resolved = resolveRangeValue(com::variant::object(range->dispatch()));
    EXPECT_TRUE(resolved.owned);
    EXPECT_EQ(resolved.value.vt, VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(dimensionsOf(resolved.value.parray), (std::vector<Dimension>{{1, 2}, {1, 1}}));
    ASSERT_EQ(range->reads.size(), 1U);
    EXPECT_EQ(range->reads[0].name, L"Value");
    EXPECT_EQ(range->reads[0].arguments, std::vector<long>{10});
    EXPECT_EQ(range->reads[0].flags, DISPATCH_PROPERTYGET);
}

TEST(ResolveRangeValue, OfASingleCellIsItsScalar) {
    const auto range = rangeOf(com::variant{L"Vapor"});
    const ArrayVariant resolved = resolveRangeValue(com::variant::object(range->dispatch()));
    EXPECT_TRUE(resolved.owned);
    ASSERT_EQ(resolved.value.vt, VT_BSTR);
    EXPECT_EQ(com::viewOf(resolved.value.bstrVal), L"Vapor");
}

TEST(ResolveRangeValue, FollowsTheReferenceThatARangeYields) {
    double number = 0.5;
    com::variant contents;
    contents.vt = VT_BYREF | VT_R8;
    contents.pdblVal = &number;
    const auto range = rangeOf(std::move(contents));
    const ArrayVariant resolved = resolveRangeValue(com::variant::object(range->dispatch()));
    EXPECT_FALSE(resolved.owned);
    ASSERT_EQ(resolved.value.vt, VT_R8);
    EXPECT_EQ(resolved.value.dblVal, 0.5);
}

TEST(ResolveRangeValue, KeepsARangeThatCannotBeReadAsTheObjectThatItIs) {
    const auto range = rangeOf(com::variant{1.0});
    range->invokeResult = E_FAIL;
    const com::variant value = com::variant::object(range->dispatch());
    const ArrayVariant resolved = resolveRangeValue(value);
    EXPECT_FALSE(resolved.owned);
    EXPECT_EQ(resolved.value.vt, VT_DISPATCH);
    EXPECT_EQ(resolved.value.pdispVal, range->dispatch());
}

TEST(ResolveRangeValue, KeepsARangeWithoutAValueAsTheObjectThatItIs) {
    const auto range = rangeOf(com::variant{1.0});
    range->namesResult = DISP_E_UNKNOWNNAME;
    const com::variant value = com::variant::object(range->dispatch());
    const ArrayVariant resolved = resolveRangeValue(value);
    EXPECT_FALSE(resolved.owned);
    EXPECT_EQ(resolved.value.pdispVal, range->dispatch());
}

TEST(ResolveRangeValue, OfAnEmptyCellIsNothingAndOfAnErrorCellTheError) {
    EXPECT_EQ(resolveRangeValue(com::variant::object(rangeOf({})->dispatch())).value.vt, VT_EMPTY);
    com::variant error;
    error.vt = VT_ERROR;
    error.scode = static_cast<SCODE>(0x800A07D7); // #DIV/0!
    const auto range = rangeOf(std::move(error));
    const ArrayVariant resolved = resolveRangeValue(com::variant::object(range->dispatch()));
    EXPECT_EQ(resolved.value.vt, VT_ERROR);
    EXPECT_EQ(resolved.value.scode, static_cast<SCODE>(0x800A07D7));
}

TEST(ResolveRangeValue, DoesNotReadOtherObjects) {
    const auto object = rangeOf(com::variant{1.0});
    object->isRange = false;
    const com::variant value = com::variant::object(object->dispatch());
    const ArrayVariant resolved = resolveRangeValue(value);
    EXPECT_FALSE(resolved.owned);
    EXPECT_EQ(resolved.value.pdispVal, object->dispatch());
    EXPECT_TRUE(object->reads.empty());
}

TEST(ResolveRangeValue, OfNoObjectIsNoObject) {
    const ArrayVariant resolved = resolveRangeValue(com::variant::object(nullptr));
    EXPECT_EQ(resolved.value.vt, VT_DISPATCH);
    EXPECT_EQ(resolved.value.pdispVal, nullptr);
}

TEST(ResolveRangeValue, LetsTheRangeGo) {
    const long before = com::liveObjects;
    {
        const auto range = rangeOf(com::variant{1.0});
        resolveRangeValue(com::variant::object(range->dispatch()));
    }
    EXPECT_EQ(com::liveObjects, before);
}

TEST(WithoutReference, LeavesAPlainValueAsItStands) {
    const com::variant value{0.5};
    EXPECT_EQ(withoutReference(value).vt, VT_R8);
    EXPECT_EQ(withoutReference(value).dblVal, 0.5);
}

TEST(WithoutReference, FollowsReferencesToNumbers) {
    char i1 = -1;
    unsigned char ui1 = 200;
    short i2 = -2;
    unsigned short ui2 = 60000;
    long i4 = -4;
    unsigned long ui4 = 4000000000UL;
    int integer = -5;
    unsigned int unsignedInteger = 4000000001U;
    long long i8 = -8'000'000'000;
    unsigned long long ui8 = 18'000'000'000'000'000'000ULL;
    float r4 = 0.5F;
    double r8 = 0.25;
    EXPECT_EQ(withoutReference(referenceTo(VT_I1, i1)).cVal, -1);
    EXPECT_EQ(withoutReference(referenceTo(VT_UI1, ui1)).bVal, 200);
    EXPECT_EQ(withoutReference(referenceTo(VT_I2, i2)).iVal, -2);
    EXPECT_EQ(withoutReference(referenceTo(VT_UI2, ui2)).uiVal, 60000);
    EXPECT_EQ(withoutReference(referenceTo(VT_I4, i4)).lVal, -4);
    EXPECT_EQ(withoutReference(referenceTo(VT_UI4, ui4)).ulVal, 4000000000UL);
    EXPECT_EQ(withoutReference(referenceTo(VT_INT, integer)).intVal, -5);
    EXPECT_EQ(withoutReference(referenceTo(VT_UINT, unsignedInteger)).uintVal, 4000000001U);
    EXPECT_EQ(withoutReference(referenceTo(VT_I8, i8)).llVal, -8'000'000'000);
    EXPECT_EQ(withoutReference(referenceTo(VT_UI8, ui8)).ullVal, 18'000'000'000'000'000'000ULL);
    EXPECT_EQ(withoutReference(referenceTo(VT_R4, r4)).fltVal, 0.5F);
    EXPECT_EQ(withoutReference(referenceTo(VT_R8, r8)).dblVal, 0.25);
    EXPECT_EQ(withoutReference(referenceTo(VT_I4, i4)).vt, VT_I4);
    EXPECT_EQ(withoutReference(referenceTo(VT_R8, r8)).vt, VT_R8);
}

TEST(WithoutReference, FollowsReferencesToOtherScalars) {
    VARIANT_BOOL truth = VARIANT_TRUE;
    SCODE code = DISP_E_PARAMNOTFOUND;
    DATE date = 36526.0;
    CY money{};
    money.int64 = 12345;
    EXPECT_EQ(withoutReference(referenceTo(VT_BOOL, truth)).boolVal, VARIANT_TRUE);
    EXPECT_EQ(withoutReference(referenceTo(VT_ERROR, code)).scode, DISP_E_PARAMNOTFOUND);
    EXPECT_TRUE(isOmitted(withoutReference(referenceTo(VT_ERROR, code))));
    EXPECT_EQ(withoutReference(referenceTo(VT_DATE, date)).date, 36526.0);
    EXPECT_EQ(withoutReference(referenceTo(VT_CY, money)).cyVal.int64, 12345);
}

TEST(WithoutReference, SharesTextsObjectsAndArraysWithTheOriginal) {
    const com::unique_bstr owner = com::makeBstr(L"text");
    BSTR text = owner.get();
    const auto range = rangeOf({});
    IDispatch* object = range->dispatch();
    IUnknown* plain = range->dispatch();
    com::variant array = reals({{2, 0}}, {1.0, 2.0});
    EXPECT_EQ(withoutReference(referenceTo(VT_BSTR, text)).bstrVal, text);
    EXPECT_EQ(withoutReference(referenceTo(VT_DISPATCH, object)).pdispVal, object);
    EXPECT_EQ(withoutReference(referenceTo(VT_UNKNOWN, plain)).punkVal, plain);
    const VARIANT follow = withoutReference(referenceTo(VT_ARRAY | VT_R8, array.parray));
    EXPECT_EQ(follow.vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(follow.parray, array.parray);
}

TEST(WithoutReference, FollowsAReferenceToAValue) {
    com::variant value{L"text"};
    const VARIANT follow = withoutReference(referenceTo(VT_VARIANT, value));
    EXPECT_EQ(follow.vt, VT_BSTR);
    EXPECT_EQ(follow.bstrVal, value.bstrVal);
}

TEST(WithoutReference, StopsAtAReferenceToAReference) {
    double number = 0.5;
    VARIANT inner = referenceTo(VT_R8, number);
    EXPECT_EQ(withoutReference(referenceTo(VT_VARIANT, inner)).vt, VT_EMPTY);
}

TEST(WithoutReference, TakesAReferenceToNothingForNothing) {
    VARIANT value{};
    for (const VARTYPE vt : {VARTYPE{VT_R8}, VARTYPE{VT_VARIANT}, VARTYPE{VT_ARRAY | VT_R8}}) {
        value.vt = static_cast<VARTYPE>(VT_BYREF | vt);
        EXPECT_EQ(withoutReference(value).vt, VT_EMPTY);
    }
}

TEST(WithoutReference, LeavesAKindThatItDoesNotKnowToTheReader) {
    DECIMAL decimal{};
    EXPECT_EQ(withoutReference(referenceTo(VT_DECIMAL, decimal)).vt, VT_BYREF | VT_DECIMAL);
}

} // namespace
} // namespace quorvane
