// Compositions and other real vectors, out of whatever a user points at.
#include "src/foundation/real_vector.h"
#include "tests/src/foundation/fake_range.h"
#include "tests/src/foundation/messages.h"
#include "tests/src/foundation/safe_arrays.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using Reals = std::vector<double>;

std::optional<std::wstring> refusal(const VARIANT& value) {
    return fixedMessageOf([&] { readRealVector(value); });
}

com::variant emptyCell() { return {}; }

com::variant errorCell() {
    com::variant cell;
    cell.vt = VT_ERROR;
    cell.scode = static_cast<SCODE>(0x800A07D7); // #DIV/0!
    return cell;
}

// A range reference, as Excel passes it.
com::variant reference(FakeRange& range) { return com::variant::object(range.dispatch()); }

TEST(RealVector, OfANumberIsThatNumber) { EXPECT_EQ(readRealVector(com::variant{0.25}), Reals{0.25}); }

TEST(RealVector, OfAnEmptyValueIsEmpty) { EXPECT_EQ(readRealVector(emptyCell()), Reals{}); }

TEST(RealVector, OfAnArgumentThatWasLeftOutIsNotSpecified) {
    EXPECT_EQ(refusal(com::variant::missing()), L"value not specified");
    EXPECT_EQ(refusal(errorCell()), L"value not specified");
}

TEST(RealVector, IsNotMadeOfOtherScalars) {
    for (const VARTYPE vt : {VARTYPE{VT_I4}, VARTYPE{VT_I2}, VARTYPE{VT_R4}, VARTYPE{VT_BOOL},
                             VARTYPE{VT_DATE}, VARTYPE{VT_CY}, VARTYPE{VT_NULL}}) {
        VARIANT value{};
        value.vt = vt;
        EXPECT_EQ(refusal(value), L"not a real array") << vt;
    }
    EXPECT_EQ(refusal(com::variant{L"0.5"}), L"not a real array");
}

TEST(RealVector, IsNotMadeOfArraysOfOtherTypes) {
    for (const VARTYPE vt : {VARTYPE{VT_I4}, VARTYPE{VT_R4}, VARTYPE{VT_BSTR}, VARTYPE{VT_BOOL}}) {
        EXPECT_EQ(refusal(com::variant::array(arrayOf(vt, {{2, 0}}), vt)), L"not a real array") << vt;
    }
}

TEST(RealVector, TakesARowAColumnASingleCellAndABeamAlike) {
    const Reals expected{0.25, 0.5, 0.125};
    const Bounds shapes[] = {{{3, 0}},
                             {{3, 1}},
                             {{1, 1}, {3, 1}},
                             {{3, 1}, {1, 1}},
                             {{1, 0}, {1, 0}, {3, 0}},
                             {{1, -3}, {3, 7}, {1, 1}}};
    for (const Bounds& shape : shapes) {
        EXPECT_EQ(readRealVector(reals(shape, expected)), expected);
        EXPECT_EQ(readRealVector(cells(shape, 0.25, 0.5, 0.125)), expected);
    }
    EXPECT_EQ(readRealVector(reals({{1, 1}, {1, 1}}, {0.5})), Reals{0.5});
    EXPECT_EQ(readRealVector(reals({{1, 0}}, {0.5})), Reals{0.5});
}

TEST(RealVector, RefusesABlock) {
    const std::wstring message = L"unexpected dimension; array expected";
    EXPECT_EQ(refusal(reals({{2, 1}, {2, 1}}, {1.0, 2.0, 3.0, 4.0})), message);
    EXPECT_EQ(refusal(cells({{2, 1}, {2, 1}}, 1.0, 2.0, 3.0, 4.0)), message);
    EXPECT_EQ(refusal(reals({{2, 0}, {1, 0}, {2, 0}}, {1.0, 2.0, 3.0, 4.0})), message);
}

TEST(RealVector, OfAnArrayWithoutElementsIsEmpty) {
    EXPECT_EQ(readRealVector(com::variant::array(com::makeVector(VT_R8, 0), VT_R8)), Reals{});
    EXPECT_EQ(readRealVector(com::variant::array(arrayOf(VT_VARIANT, {{1, 1}, {0, 1}}), VT_VARIANT)),
              Reals{});
    // The first extent that is not 1 decides.
    EXPECT_EQ(readRealVector(com::variant::array(arrayOf(VT_R8, {{0, 1}, {2, 1}}), VT_R8)), Reals{});
    EXPECT_EQ(refusal(com::variant::array(arrayOf(VT_R8, {{2, 1}, {0, 1}}), VT_R8)),
              L"unexpected dimension; array expected");
}

TEST(RealVector, OfTheLabelOfAnArrayThatIsNotThereIsEmpty) {
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = nullptr;
    EXPECT_EQ(readRealVector(value), Reals{});
}

TEST(RealVector, RefusesAnArrayWhoseLabelLies) {
    const com::variant numbers = reals({{2, 0}}, {1.0, 2.0});
    VARIANT label = numbers;
    label.vt = VT_ARRAY | VT_VARIANT;
    EXPECT_EQ(refusal(label), L"not a real array");
}

// What a careless component may pass: a description of `count` numbers without a word about their type.
com::unique_safearray description(ULONG count) {
    com::unique_safearray array;
    if (FAILED(SafeArrayAllocDescriptor(1, array.put()))) {
        throw std::bad_alloc{};
    }
    array.get()->cbElements = sizeof(double);
    array.get()->rgsabound[0] = {count, 0};
    return array;
}

TEST(RealVector, ReadsAnArrayThatDoesNotTellItsTypeAsItsLabelSays) {
    double numbers[] = {0.25, 0.75};
    const com::unique_safearray array = description(2);
    array.get()->fFeatures = FADF_STATIC;
    array.get()->pvData = numbers;
    VARIANT value{};
    value.vt = VT_ARRAY | VT_R8;
    value.parray = array.get();
    EXPECT_EQ(readRealVector(value), (Reals{0.25, 0.75}));
}

TEST(RealVector, RefusesElementsThatAreNotOfTheSizeThatTheLabelSays) {
    double numbers[] = {0.25, 0.75};
    const com::unique_safearray array = description(2);
    array.get()->fFeatures = FADF_STATIC;
    array.get()->pvData = numbers;
    VARIANT value{};
    value.vt = VT_ARRAY | VT_VARIANT;
    value.parray = array.get();
    EXPECT_EQ(refusal(value), L"not a real array");
    value.vt = VT_ARRAY | VT_R8;
    array.get()->cbElements = sizeof(float);
    EXPECT_EQ(refusal(value), L"not a real array");
}

TEST(RealVector, RefusesMoreElementsThanCanBeCounted) {
    double number = 0.25;
    const com::unique_safearray array = description(1);
    array.get()->fFeatures = FADF_STATIC;
    array.get()->pvData = &number;
    VARIANT value{};
    value.vt = VT_ARRAY | VT_R8;
    value.parray = array.get();
    for (const SAFEARRAYBOUND& bound : Bounds{{0x80000000U, 0}, {0x80000000U, 1}, {0xFFFFFFFFU, 0}}) {
        array.get()->rgsabound[0] = bound;
        EXPECT_EQ(refusal(value), L"not a real array") << bound.lLbound;
    }
    array.get()->rgsabound[0] = {1, 0}; // it is emptied in the end
}

TEST(RealVector, RefusesAnArrayWhoseElementsAreNotThere) {
    const com::unique_safearray array = description(2);
    VARIANT value{};
    value.vt = VT_ARRAY | VT_R8;
    value.parray = array.get();
    EXPECT_EQ(refusal(value), L"failed to access array data");
}

TEST(RealVector, RefusesAnArrayThatIsLockedTooOften) {
    const com::variant numbers = reals({{1, 0}}, {0.5});
    numbers.parray->cLocks = 0xFFFF;
    EXPECT_EQ(refusal(numbers), L"failed to access array data");
    numbers.parray->cLocks = 0;
}

TEST(RealVector, ReadsCellsAsNumbersWhereItCan) {
    EXPECT_EQ(readRealVector(cells({{3, 1}, {1, 1}}, 1.0, L"2", emptyCell())), (Reals{1.0, 2.0, 0.0}));
    EXPECT_EQ(readRealVector(cells({{1, 1}, {4, 1}}, 3L, true, false, L"-1.5e2")),
              (Reals{3.0, -1.0, 0.0, -150.0}));
    com::variant date;
    date.vt = VT_DATE;
    date.date = 36526.5;
    EXPECT_EQ(readRealVector(cells({{1, 0}}, std::move(date))), Reals{36526.5});
}

TEST(RealVector, QuotesTheTextThatIsNoNumber) {
    const auto quoted = [](const wchar_t* text) {
        return composedMessageOf([=] { readRealVector(cells({{2, 1}, {1, 1}}, 1.0, text)); });
    };
    EXPECT_EQ(quoted(L"abc"), L"Failed to convert \"abc\" to real value");
    EXPECT_EQ(quoted(L""), L"Failed to convert \"\" to real value");
    EXPECT_EQ(quoted(L"1,5;"), L"Failed to convert \"1,5;\" to real value");
}

TEST(RealVector, SaysThatACellWithoutATextIsNoNumber) {
    EXPECT_EQ(refusal(cells({{2, 1}, {1, 1}}, 1.0, errorCell())),
              L"Array contains values that are not numbers");
    EXPECT_EQ(refusal(cells({{1, 0}}, com::variant::object(nullptr))),
              L"Array contains values that are not numbers");
}

TEST(RealVector, TakesTheDefaultValueOfAnObjectInAnArray) {
    const auto object = rangeOf(com::variant{0.75});
    EXPECT_EQ(readRealVector(cells({{2, 1}, {1, 1}}, 0.25, com::variant::object(object->dispatch()))),
              (Reals{0.25, 0.75}));
}

TEST(RealVector, TakesTheDefaultValueOfAnObjectThatIsOneItself) {
    const auto inner = rangeOf(com::variant{0.75});
    const auto outer = rangeOf(reference(*inner));
    EXPECT_EQ(readRealVector(cells({{1, 0}}, com::variant::object(outer->dispatch()))), Reals{0.75});
}

TEST(RealVector, DoesNotAskAnObjectThatStandsForItselfWithoutEnd) {
    const auto object = rangeOf({});
    object->answer = reference(*object);
    EXPECT_EQ(refusal(cells({{1, 0}}, com::variant::object(object->dispatch()))),
              L"Array contains values that are not numbers");
    object->answer.clear();
}

TEST(RealVector, LeavesAloneWhatAnObjectWithoutValueLeft) {
    const auto object = rangeOf({});
    object->invokeResult = E_FAIL;
    object->leavesRubbish = true;
    EXPECT_EQ(refusal(cells({{1, 0}}, com::variant::object(object->dispatch()))),
              L"Array contains values that are not numbers");
}

TEST(RealVector, UnlocksTheArrayOnEveryPath) {
    const com::variant good = reals({{2, 0}}, {1.0, 2.0});
    readRealVector(good);
    EXPECT_TRUE(isUnlocked(good.parray));
    const com::variant bad = cells({{2, 0}}, 1.0, L"abc");
    EXPECT_TRUE(composedMessageOf([&] { readRealVector(bad); }).has_value());
    EXPECT_TRUE(isUnlocked(bad.parray));
}

TEST(RealVector, FollowsReferencesAsScriptsPassThem) {
    double number = 0.75;
    VARIANT value{};
    value.vt = VT_BYREF | VT_R8;
    value.pdblVal = &number;
    EXPECT_EQ(readRealVector(value), Reals{0.75});

    com::variant array = cells({{2, 0}}, 1.0, 2.0);
    value.vt = VT_BYREF | VT_VARIANT;
    value.pvarVal = &array;
    EXPECT_EQ(readRealVector(value), (Reals{1.0, 2.0}));

    com::variant plain = reals({{2, 0}}, {3.0, 4.0});
    value.vt = VT_BYREF | VT_ARRAY | VT_R8;
    value.pparray = &plain.parray;
    EXPECT_EQ(readRealVector(value), (Reals{3.0, 4.0}));

    com::variant omitted = com::variant::missing();
    value.vt = VT_BYREF | VT_VARIANT;
    value.pvarVal = &omitted;
    EXPECT_EQ(refusal(value), L"value not specified");
}

TEST(RealVector, OfARangeIsWhatItsCellsHold) {
    const auto column = rangeOf(cells({{3, 1}, {1, 1}}, 1.0, L"2", emptyCell()));
    EXPECT_EQ(readRealVector(reference(*column)), (Reals{1.0, 2.0, 0.0}));
    ASSERT_EQ(column->reads.size(), 1U);
    EXPECT_EQ(column->reads[0].name, L"Value");
    EXPECT_EQ(column->reads[0].arguments, std::vector<long>{10});

    EXPECT_EQ(readRealVector(reference(*rangeOf(com::variant{0.5}))), Reals{0.5});
    EXPECT_EQ(readRealVector(reference(*rangeOf(emptyCell()))), Reals{});
}

TEST(RealVector, OfARangePassedAsAPlainObjectIsTheSame) {
    const auto range = rangeOf(com::variant{0.5});
    com::variant value;
    value.vt = VT_UNKNOWN;
    value.punkVal = range->dispatch();
    value.punkVal->AddRef();
    EXPECT_EQ(readRealVector(value), Reals{0.5});
}

TEST(RealVector, RefusesARangeWithoutNumbers) {
    EXPECT_EQ(refusal(reference(*rangeOf(cells({{2, 1}, {2, 1}}, 1.0, 2.0, 3.0, 4.0)))),
              L"unexpected dimension; array expected");
    EXPECT_EQ(refusal(reference(*rangeOf(com::variant{L"abc"}))), L"not a real array");
    EXPECT_EQ(refusal(reference(*rangeOf(errorCell()))), L"not a real array");
    EXPECT_EQ(refusal(reference(*rangeOf(com::variant{true}))), L"not a real array");
}

TEST(RealVector, ReportsARangeThatCannotBeRead) {
    const auto range = rangeOf({});
    range->invokeResult = DISP_E_EXCEPTION;
    range->description = L"The workbook is protected";
    EXPECT_EQ(composedMessageOf([&] { readRealVector(reference(*range)); }),
              L"Call to \"Value\" failed: The workbook is protected");
}

TEST(RealVector, IsNotMadeOfOtherObjects) {
    const auto object = rangeOf(com::variant{0.5});
    object->isRange = false;
    EXPECT_EQ(refusal(reference(*object)), L"not a real array");
    EXPECT_TRUE(object->reads.empty());
    EXPECT_EQ(refusal(com::variant::object(nullptr)), L"not a real array");
}

TEST(RealVector, DoesNotFollowARangeThatRefersToItself) {
    const auto range = rangeOf({});
    IDispatch* self = range->dispatch();
    range->answer.vt = VT_BYREF | VT_DISPATCH;
    range->answer.ppdispVal = &self;
    EXPECT_EQ(refusal(reference(*range)), L"not a real array");
}

TEST(RealVector, DoesNotFollowARangeThatYieldsRanges) {
    const auto inner = rangeOf(com::variant{0.5});
    const auto outer = rangeOf(reference(*inner));
    EXPECT_EQ(refusal(reference(*outer)), L"not a real array");
    outer->answer.vt = VT_UNKNOWN;
    EXPECT_EQ(refusal(reference(*outer)), L"not a real array");
}

} // namespace
} // namespace quorvane
