// Reading Excel's objects by name, and what is said when that fails.
#include "src/foundation/error_texts.h"
#include "src/foundation/late_binding.h"
#include "tests/src/foundation/fake_range.h"
#include "tests/src/foundation/messages.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace quorvane {
namespace {

std::optional<std::wstring> failureOf(FakeRange& object) {
    return composedMessageOf([&] { readProperty(object.dispatch(), L"Rows"); });
}

TEST(ReadProperty, AsksByNameForAPropertyOnly) {
    const auto object = rangeOf(com::variant{12L});
    const com::variant rows = readProperty(object->dispatch(), L"Rows");
    ASSERT_EQ(rows.vt, VT_I4);
    EXPECT_EQ(rows.lVal, 12);
    ASSERT_EQ(object->reads.size(), 1U);
    const FakeRange::Read& read = object->reads[0];
    EXPECT_EQ(read.name, L"Rows");
    EXPECT_EQ(read.namesLocale, 0x400U);
    EXPECT_EQ(read.invokeLocale, 0x800U);
    EXPECT_EQ(read.flags, DISPATCH_PROPERTYGET);
    EXPECT_EQ(read.namedArguments, 0U);
    EXPECT_TRUE(read.arguments.empty());
}

TEST(ReadProperty, PassesItsArgumentsByPosition) {
    const auto object = rangeOf(com::variant{1L});
    com::variant arguments[] = {com::variant{2L}, com::variant{1L}};
    com::variant result;
    readProperty(result, object->dispatch(), L"Item", 2, arguments);
    EXPECT_EQ(object->reads[0].arguments, (std::vector<long>{2, 1}));
    EXPECT_EQ(object->reads[0].namedArguments, 0U);
}

TEST(ReadProperty, OfNoObjectIsRefused) {
    EXPECT_EQ(fixedMessageOf([] { readProperty(nullptr, L"Value"); }),
              L"NULL IDispatch passed to AutoWrap()");
}

TEST(ReadProperty, NamesAPropertyThatTheObjectDoesNotHave) {
    const auto object = rangeOf({});
    object->namesResult = DISP_E_UNKNOWNNAME;
    EXPECT_EQ(failureOf(*object), L"IDispatch::GetIDsOfNames failed for \"Rows\"");
    EXPECT_EQ(object->reads[0].flags, 0); // nothing was invoked
}

TEST(ReadProperty, QuotesTheObjectsOwnDescription) {
    const auto object = rangeOf({});
    object->invokeResult = DISP_E_EXCEPTION;
    object->description = L"The sheet is hidden.\r\n";
    EXPECT_EQ(failureOf(*object), L"Call to \"Rows\" failed: The sheet is hidden.\r\n");
}

TEST(ReadProperty, SaysNoMoreWhenTheObjectWouldDescribeButCannot) {
    const auto object = rangeOf({});
    object->invokeResult = E_FAIL;
    object->description = L"";
    EXPECT_EQ(failureOf(*object), L"Call to \"Rows\" failed: ");
    object->descriptionResult = E_FAIL;
    EXPECT_EQ(failureOf(*object), L"Call to \"Rows\" failed: ");
}

TEST(ReadProperty, LeavesAloneWhatAFailingObjectLeft) {
    const auto object = rangeOf({});
    object->invokeResult = E_FAIL;
    object->leavesRubbish = true;
    EXPECT_EQ(failureOf(*object), L"Call to \"Rows\" failed: " + systemErrorText(E_FAIL));
    object->description = L"unheard";
    object->descriptionResult = E_FAIL;
    EXPECT_EQ(failureOf(*object), L"Call to \"Rows\" failed: ");
}

TEST(ReadProperty, GivesTheSystemsTextWhenTheObjectDescribesNothing) {
    const auto object = rangeOf({});
    for (const HRESULT code : {E_FAIL, E_OUTOFMEMORY, DISP_E_MEMBERNOTFOUND, HRESULT{-0x5FFF0123}}) {
        object->invokeResult = code;
        EXPECT_EQ(failureOf(*object), L"Call to \"Rows\" failed: " + systemErrorText(code));
    }
}

TEST(ReadObject, GivesTheObjectBehindAProperty) {
    const auto inner = rangeOf({});
    const auto outer = rangeOf(com::variant::object(inner->dispatch()));
    EXPECT_EQ(readObject(outer->dispatch(), L"ActiveWorkbook").get(), inner->dispatch());
}

TEST(ReadObject, GivesTheObjectBehindAPropertyThatIsAPlainObject) {
    const auto inner = rangeOf({});
    com::variant plain;
    plain.vt = VT_UNKNOWN;
    plain.punkVal = inner->dispatch();
    plain.punkVal->AddRef();
    const auto outer = rangeOf(std::move(plain));
    EXPECT_EQ(readObject(outer->dispatch(), L"ActiveWorkbook").get(), inner->dispatch());
}

TEST(ReadObject, GivesNothingForAPropertyWithoutAnObject) {
    EXPECT_FALSE(readObject(rangeOf({})->dispatch(), L"ActiveWorkbook"));
    EXPECT_FALSE(readObject(rangeOf(com::variant{1.0})->dispatch(), L"ActiveWorkbook"));
    EXPECT_FALSE(readObject(rangeOf(com::variant::object(nullptr))->dispatch(), L"ActiveWorkbook"));
}

TEST(ReadItem, AsksForAnItemAsAMethodOrAProperty) {
    const auto inner = rangeOf({});
    const auto outer = rangeOf(com::variant::object(inner->dispatch()));
    EXPECT_EQ(readItem(outer->dispatch(), L"Quorvane").get(), inner->dispatch());
    EXPECT_EQ(outer->reads[0].name, L"Item");
    EXPECT_EQ(outer->reads[0].flags, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
    EXPECT_EQ(outer->reads[0].arguments.size(), 1U);
}

TEST(AsRange, KnowsARangeFromOtherThings) {
    const auto object = rangeOf({});
    EXPECT_TRUE(asRange(com::variant::object(object->dispatch())));
    object->isRange = false;
    EXPECT_FALSE(asRange(com::variant::object(object->dispatch())));
    EXPECT_FALSE(asRange(com::variant::object(nullptr)));
    EXPECT_FALSE(asRange(com::variant{1.0}));
    EXPECT_FALSE(asRange(com::variant{}));
}

TEST(LateBinding, LetsEveryObjectGo) {
    const long before = com::liveObjects;
    {
        const auto object = rangeOf({});
        object->invokeResult = E_FAIL;
        object->description = L"failed";
        static_cast<void>(failureOf(*object));
        object->invokeResult = S_OK;
        readObject(object->dispatch(), L"Caller");
    }
    EXPECT_EQ(com::liveObjects, before);
}

} // namespace
} // namespace quorvane
