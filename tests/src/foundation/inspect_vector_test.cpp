// What is said about arrays that packages hand over.
#include "src/foundation/array_variant.h"
#include "tests/src/foundation/messages.h"
#include "tests/src/foundation/safe_arrays.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace quorvane {
namespace {

// The complaint about `value`; none when it passes.
std::optional<std::wstring> complaint(const VARIANT& value, VARTYPE vt) {
    ArrayVariant holder = ArrayVariant::borrow(value);
    std::wstring message = L"(untouched)";
    if (inspectVector(holder, vt, message)) {
        EXPECT_EQ(message, L"(untouched)");
        return std::nullopt;
    }
    return message;
}

TEST(InspectVector, TakesAnEmptyValueForNoElements) {
    ArrayVariant holder;
    holder.count = 7;
    std::wstring message;
    EXPECT_TRUE(inspectVector(holder, VT_R8, message));
    EXPECT_EQ(holder.count, 0);
}

TEST(InspectVector, FindsTheBoundsWhereverTheyBegin) {
    for (const LONG lower : {-3, 0, 1, 7}) {
        const com::variant value = reals({{4, lower}}, {1.0, 2.0, 3.0, 4.0});
        ArrayVariant holder = ArrayVariant::borrow(value);
        std::wstring message;
        ASSERT_TRUE(inspectVector(holder, VT_R8, message));
        EXPECT_EQ(holder.lowerBound, lower);
        EXPECT_EQ(holder.count, 4);
        EXPECT_EQ(holder.elements<double>()[3], 4.0);
    }
}

TEST(InspectVector, AcceptsEveryTypeThatPackagesUse) {
    for (const VARTYPE vt : {VARTYPE{VT_I2}, VARTYPE{VT_I4}, VARTYPE{VT_R8}, VARTYPE{VT_BSTR},
                             VARTYPE{VT_VARIANT}, VARTYPE{VT_R4}}) {
        const com::variant value = com::variant::array(arrayOf(vt, {{2, 0}}), vt);
        EXPECT_EQ(complaint(value, vt), std::nullopt);
    }
}

TEST(InspectVector, AnArrayOfLengthZeroHasNoElements) {
    const com::variant value = com::variant::array(com::makeVector(VT_R8, 0), VT_R8);
    ArrayVariant holder = ArrayVariant::borrow(value);
    std::wstring message;
    EXPECT_TRUE(inspectVector(holder, VT_R8, message));
    EXPECT_EQ(holder.count, 0);
    EXPECT_TRUE(holder.elements<double>().empty());
}

TEST(InspectVector, NamesTheTypeThatItExpected) {
    const std::pair<VARTYPE, const wchar_t*> words[] = {
        {VT_I2, L"Expected an array of type short"},
        {VT_I4, L"Expected an array of type long"},
        {VT_R8, L"Expected an array of type double precision"},
        {VT_BSTR, L"Expected an array of type string"},
        {VT_VARIANT, L"Expected an array of type VARIANT"},
        {VT_R4, L"Expected an array of type <unknown>"},
        {VT_BOOL, L"Expected an array of type <unknown>"},
    };
    const com::variant scalar{L"text"};
    for (const auto& [vt, message] : words) {
        EXPECT_EQ(complaint(scalar, vt), message);
    }
}

TEST(InspectVector, RefusesScalarsAndArraysOfOtherTypes) {
    const std::wstring message = L"Expected an array of type double precision";
    EXPECT_EQ(complaint(com::variant{1.0}, VT_R8), message);
    EXPECT_EQ(complaint(com::variant{L"abc"}, VT_R8), message);
    EXPECT_EQ(complaint(com::variant::missing(), VT_R8), message);
    EXPECT_EQ(complaint(cells({{1, 0}}, 1.0), VT_R8), message);
    EXPECT_EQ(complaint(com::variant::array(arrayOf(VT_R4, {{2, 0}}), VT_R4), VT_R8), message);
}

TEST(InspectVector, RefusesAnArrayByReference) {
    com::variant value = reals({{1, 0}}, {1.0});
    VARIANT reference;
    reference.vt = VT_BYREF | VT_ARRAY | VT_R8;
    reference.pparray = &value.parray;
    EXPECT_EQ(complaint(reference, VT_R8), L"Expected an array of type double precision");
}

TEST(InspectVector, RefusesTwoDimensionsEvenWhenOneIsShort) {
    const std::wstring message = L"unexpected dimension; 1-dimensional array expected";
    EXPECT_EQ(complaint(reals({{1, 1}, {3, 1}}, {1.0, 2.0, 3.0}), VT_R8), message);
    EXPECT_EQ(complaint(reals({{1, 1}, {1, 1}}, {1.0}), VT_R8), message);
}

TEST(InspectVector, RefusesTheLabelOfAnArrayThatIsNotThere) {
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = nullptr;
    EXPECT_EQ(complaint(value, VT_R8), L"unexpected dimension; 1-dimensional array expected");
}

TEST(InspectVector, RefusesAnArrayWhoseLabelLies) {
    // Numbers followed as text pointers would end the process.
    com::variant numbers = com::variant::array(arrayOf(VT_R8, {{2, 0}}), VT_R8);
    VARIANT label = numbers;
    label.vt = VT_ARRAY | VT_BSTR;
    EXPECT_EQ(complaint(label, VT_BSTR), L"Expected an array of type string");
    label.vt = VT_ARRAY | VT_VARIANT;
    EXPECT_EQ(complaint(label, VT_VARIANT), L"Expected an array of type VARIANT");
}

TEST(InspectVector, RefusesElementsOfTheWrongSize) {
    // An array without a type of its own, such as old components make field by field.
    SAFEARRAY* raw = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptor(1, &raw), S_OK);
    const com::unique_safearray array{raw};
    raw->cbElements = sizeof(float);
    raw->rgsabound[0] = {2, 0};
    ASSERT_EQ(SafeArrayAllocData(raw), S_OK);
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = raw;
    EXPECT_EQ(complaint(value, VT_R8), L"Expected an array of type double precision");
}

TEST(InspectVector, RefusesAnArrayWhoseElementsAreNotThere) {
    SAFEARRAY* descriptor = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptorEx(VT_R8, 1, &descriptor), S_OK);
    descriptor->rgsabound[0] = {2, 0};
    const com::variant value = com::variant::array(com::unique_safearray{descriptor}, VT_R8);
    EXPECT_EQ(complaint(value, VT_R8), L"failed to access array data");
}

TEST(InspectVector, RefusesMoreElementsThanCanBeCounted) {
    SAFEARRAY* descriptor = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptorEx(VT_R8, 1, &descriptor), S_OK);
    const com::unique_safearray array{descriptor};
    double first = 0.0;
    descriptor->pvData = &first;
    descriptor->rgsabound[0] = {0x80000000U, 0};
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = descriptor;
    EXPECT_EQ(complaint(value, VT_R8), L"failed to access array data");
    // The last index is beyond the numbers that an index can be, and comes out below the first.
    descriptor->rgsabound[0] = {0x80000000U, 1};
    EXPECT_EQ(complaint(value, VT_R8), L"failed to access array data");
    descriptor->rgsabound[0] = {0xFFFFFFFFU, 0};
    EXPECT_EQ(complaint(value, VT_R8), L"failed to access array data");
    descriptor->pvData = nullptr;
}

TEST(RequireVector, PutsItsContextBeforeTheComplaint) {
    ArrayVariant holder = ArrayVariant::adopt(com::variant{1.0});
    EXPECT_EQ(composedMessageOf([&] { requireVector(holder, VT_BSTR, L"Invalid phase list: "); }),
              L"Invalid phase list: Expected an array of type string");
    holder.createVector(1, VT_BSTR);
    EXPECT_EQ(composedMessageOf([&] { requireVector(holder, VT_BSTR, L"Invalid phase list: "); }),
              std::nullopt);
}

} // namespace
} // namespace quorvane
