#include "sheet/excel/range.h"
#include "tests/sheet/excel/late_client.h"

#include "com/safe_array.h"

#include <stdexcept>

namespace sheet::excel {
namespace {

using RangeTest = NothingLeft;

TEST_F(RangeTest, OneCellAnswersItsValue) {
    const auto range = Range::cell(2.5);
    const Answer answer = get(range->dispatch(), L"Value", 10L);
    ASSERT_EQ(answer.code, S_OK);
    ASSERT_EQ(answer.value.vt, VT_R8);
    EXPECT_EQ(answer.value.dblVal, 2.5);
}

TEST_F(RangeTest, AnEmptyCellAnswersNothing) {
    EXPECT_EQ(get(Range::empty(1, 1)->dispatch(), L"Value").value.vt, VT_EMPTY);
}

TEST_F(RangeTest, SeveralCellsAnswerAnArrayWhoseBoundsBeginWithOne) {
    std::vector<com::variant> cells;
    for (const double number : {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}) {
        cells.emplace_back(number);
    }
    const auto range = com::make<Range>(2U, 3U, std::move(cells));
    const Answer answer = get(range->dispatch(), L"Value");
    ASSERT_EQ(answer.value.vt, VT_ARRAY | VT_VARIANT);
    SAFEARRAY* const array = answer.value.parray;
    ASSERT_EQ(SafeArrayGetDim(array), 2U);
    for (UINT dimension = 1; dimension <= 2; ++dimension) {
        long lower = 0;
        long upper = 0;
        SafeArrayGetLBound(array, dimension, &lower);
        SafeArrayGetUBound(array, dimension, &upper);
        EXPECT_EQ(lower, 1);
        EXPECT_EQ(upper, dimension == 1 ? 2 : 3);
    }
    for (long row = 1; row <= 2; ++row) {
        for (long column = 1; column <= 3; ++column) {
            long position[] = {row, column};
            com::variant element;
            ASSERT_EQ(SafeArrayGetElement(array, position, &element), S_OK);
            ASSERT_EQ(element.vt, VT_R8);
            EXPECT_EQ(element.dblVal, static_cast<double>((row - 1) * 3 + column));
        }
    }
}

TEST_F(RangeTest, CellsHoldAnyKindOfValue) {
    const auto range = Range::column(1.0, L"text", true, com::variant{});
    const Answer answer = get(range->dispatch(), L"Value", 10L);
    const com::array_lock<com::variant> lock{answer.value.parray};
    ASSERT_EQ(lock.elements().size(), 4U);
    EXPECT_EQ(com::viewOf(lock.elements()[1].bstrVal), L"text");
    EXPECT_EQ(lock.elements()[2].vt, VT_BOOL);
    EXPECT_EQ(lock.elements()[3].vt, VT_EMPTY);
}

TEST_F(RangeTest, ValueIsAlsoTheDefaultMember) {
    EXPECT_EQ(invoke(Range::cell(7.0)->dispatch(), DISPID_VALUE).value.dblVal, 7.0);
    EXPECT_EQ(invoke(Range::cell(7.0)->dispatch(), 6).value.dblVal, 7.0);
    EXPECT_EQ(get(Range::cell(7.0)->dispatch(), L"Value2").value.dblVal, 7.0);
}

TEST_F(RangeTest, TheKindOfValueMayComeByReference) {
    const auto range = Range::cell(7.0);
    com::variant kind{10L};
    VARIANT byReference;
    byReference.vt = VT_BYREF | VT_VARIANT;
    byReference.pvarVal = &kind;
    EXPECT_EQ(invoke(range->dispatch(), 6, {&byReference, 1}).value.dblVal, 7.0);
    EXPECT_EQ(range->heard(), (std::vector<std::wstring>{L"Value(10)"}));
}

TEST_F(RangeTest, OtherKindsOfValueAreRefused) {
    const auto range = Range::cell(7.0);
    EXPECT_EQ(get(range->dispatch(), L"Value", 11L).code, E_INVALIDARG);
    EXPECT_EQ(get(range->dispatch(), L"Value", L"x").code, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(get(range->dispatch(), L"Value", 10L, 10L).code, DISP_E_BADPARAMCOUNT);
}

TEST_F(RangeTest, RowsAndColumnsAreCounted) {
    const auto range = Range::empty(5, 2);
    EXPECT_EQ(getNumber(range->dispatch(), L"Count"), 10);
    EXPECT_EQ(getNumber(getObject(range->dispatch(), L"Rows").get(), L"Count"), 5);
    EXPECT_EQ(getNumber(getObject(range->dispatch(), L"Columns").get(), L"Count"), 2);
}

TEST_F(RangeTest, ItIsARangeAndLateBound) {
    const auto range = Range::cell(1.0);
    EXPECT_TRUE(com::queryFor<ExcelRange>(range->dispatch()));
    EXPECT_TRUE(com::queryFor<IDispatch>(range->dispatch()));
    EXPECT_FALSE(com::queryFor<ExcelApplication>(range->dispatch()));
    EXPECT_FALSE(com::queryFor<IErrorInfo>(range->dispatch()));
    EXPECT_EQ(com::queryFor<IDispatch>(range->dispatch()).tryAs<IUnknown>().get(),
              com::queryFor<IUnknown>(range->dispatch()).get());
}

TEST_F(RangeTest, NamesMatchInAnyCase) { EXPECT_EQ(idOf(Range::cell(1.0)->dispatch(), L"vALUE"), 6); }

TEST_F(RangeTest, UnknownMembersAreRefused) {
    const auto range = Range::cell(1.0);
    EXPECT_EQ(idOf(range->dispatch(), L"Formula"), DISPID_UNKNOWN);
    EXPECT_EQ(invoke(range->dispatch(), 4711).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(RangeTest, AMemberFailsWithTheCodeItIsTold) {
    const auto range = Range::cell(1.0);
    range->fail(L"Value", E_ACCESSDENIED);
    EXPECT_EQ(get(range->dispatch(), L"Value").code, E_ACCESSDENIED);
    EXPECT_FALSE(com::queryFor<IErrorInfo>(range->dispatch()));
    range->behave(L"Value");
    EXPECT_EQ(get(range->dispatch(), L"Value").code, S_OK);
}

TEST_F(RangeTest, ADescribedFailureIsAnException) {
    const auto range = Range::cell(1.0);
    range->fail(L"value", static_cast<HRESULT>(0x800A03EC), L"The cell is busy");
    EXCEPINFO exception{};
    EXPECT_EQ(invoke(range->dispatch(), 6, {}, &exception).code, DISP_E_EXCEPTION);
    const com::unique_bstr source{exception.bstrSource};
    const com::unique_bstr description{exception.bstrDescription};
    EXPECT_EQ(exception.scode, static_cast<SCODE>(0x800A03EC));
    EXPECT_EQ(com::viewOf(source), L"Microsoft Excel");
    EXPECT_EQ(com::viewOf(description), L"The cell is busy");
}

TEST_F(RangeTest, TheObjectTellsTheWordsOfItsLastFailure) {
    const auto range = Range::cell(1.0);
    range->fail(L"Count", E_FAIL, L"too many cells");
    EXPECT_EQ(get(range->dispatch(), L"Count").code, DISP_E_EXCEPTION);
    const auto info = com::queryFor<IErrorInfo>(range->dispatch());
    ASSERT_TRUE(info);
    com::unique_bstr description;
    EXPECT_EQ(info->GetDescription(description.put()), S_OK);
    EXPECT_EQ(com::viewOf(description), L"too many cells");
}

TEST_F(RangeTest, RowsCanMisbehaveToo) {
    const auto range = Range::empty(2, 1);
    range->rowLines().answer(L"Count", com::variant{2.0});
    EXPECT_EQ(get(getObject(range->dispatch(), L"Rows").get(), L"Count").value.vt, VT_R8);
}

TEST_F(RangeTest, AHiddenNameIsNotFound) {
    const auto range = Range::cell(1.0);
    range->hide(L"Value");
    EXPECT_EQ(idOf(range->dispatch(), L"Value"), DISPID_UNKNOWN);
}

TEST_F(RangeTest, WhatIsNoMemberCannotBeScripted) {
    EXPECT_THROW(Range::cell(1.0)->fail(L"Valu", E_FAIL), std::invalid_argument);
}

TEST_F(RangeTest, ARangeIsNeverEmptyOrUneven) {
    EXPECT_THROW(Range::empty(0, 3), std::invalid_argument);
    EXPECT_THROW(com::make<Range>(2U, 2U, std::vector<com::variant>(3)), std::invalid_argument);
}

} // namespace
} // namespace sheet::excel
