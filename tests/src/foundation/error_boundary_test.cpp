// Where failures leave the system: nothing is thrown any further, everything becomes a text.
#include "com/com_ptr.h"
#include "src/foundation/error_boundary.h"
#include "src/foundation/exceptions.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace quorvane {
namespace {

const IID someInterface = {0x5A3D8F6E, 0x1C24, 0x4B7A, {0x9E, 0x61, 0x0F, 0x2B, 0x3C, 0x4D, 0x5E, 0x6F}};

// The error information that the last call left for the thread; taking it clears it.
struct ErrorInfo {
    std::wstring description;
    std::wstring source;
    GUID interfaceId{};
};

std::optional<ErrorInfo> takeErrorInfo() {
    com::com_ptr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) != S_OK) {
        return std::nullopt;
    }
    com::unique_bstr description;
    com::unique_bstr source;
    ErrorInfo result;
    info->GetDescription(description.put());
    info->GetSource(source.put());
    info->GetGUID(&result.interfaceId);
    result.description = com::viewOf(description);
    result.source = com::viewOf(source);
    return result;
}

// A failing worksheet call: its code, and what the cell shows.
struct Cell {
    HRESULT code;
    std::optional<std::wstring> text;
    bool isNull = false;
};

template <typename Body>
Cell call(Body&& body) {
    SetErrorInfo(0, nullptr);
    Cell cell{};
    SpareMessage spare;
    cell.code =
        worksheetCall(someInterface, spare, std::forward<Body>(body), [&cell](com::unique_bstr message) {
            cell.text = com::viewOf(message);
            cell.isNull = !message;
        });
    return cell;
}

class Both : public std::runtime_error, public WException {
  public:
    Both() : std::runtime_error{"the standard part"} {}
    const wchar_t* message() const noexcept override { return L"the other part"; }
    std::size_t length() const noexcept override { return 14; }
};

TEST(WorksheetCall, ThatSucceedsShowsNoMessage) {
    bool ran = false;
    const Cell cell = call([&ran] { ran = true; });
    EXPECT_TRUE(ran);
    EXPECT_EQ(cell.code, S_OK);
    EXPECT_EQ(cell.text, std::nullopt);
    EXPECT_FALSE(takeErrorInfo());
}

TEST(WorksheetCall, ThatFailsSucceedsWithTheMessage) {
    const Cell cell = call([] { throw CWStrException{L"Invalid package name"}; });
    EXPECT_EQ(cell.code, S_OK);
    EXPECT_EQ(cell.text, L"Invalid package name");
    EXPECT_EQ(call([] { throw WStrException{L"Unknown phase \"x\""}; }).text, L"Unknown phase \"x\"");
}

TEST(WorksheetCall, ThatFailsLeavesErrorInformation) {
    call([] { throw CWStrException{L"Invalid package name"}; });
    const auto info = takeErrorInfo();
    ASSERT_TRUE(info);
    EXPECT_EQ(info->description, L"Invalid package name");
    EXPECT_EQ(info->source, L"Quorvane.Excel");
    EXPECT_TRUE(IsEqualGUID(info->interfaceId, someInterface));
}

TEST(WorksheetCall, WidensTheMessageOfAStandardException) {
    EXPECT_EQ(call([] {
                  throw std::runtime_error{"d\xC3\xA9"
                                           "bit"};
              }).text,
              L"d\u00e9bit");
    EXPECT_EQ(takeErrorInfo()->description, L"d\u00e9bit");
    EXPECT_EQ(call([] { throw std::bad_alloc{}; }).text, L"std::bad_alloc");
    EXPECT_EQ(call([] { throw std::length_error{std::string(300, 'x')}; }).text, std::wstring(300, L'x'));
}

TEST(WorksheetCall, TakesAnExceptionOfBothKindsForAStandardOne) {
    EXPECT_EQ(call([] { throw Both{}; }).text, L"the standard part");
}

TEST(WorksheetCall, SaysUnknownExceptionForAnythingElse) {
    EXPECT_EQ(call([] { throw 42; }).text, L"Unknown exception");
    EXPECT_EQ(call([] { throw L"text"; }).text, L"Unknown exception");
    EXPECT_EQ(takeErrorInfo()->description, L"Unknown exception");
}

TEST(WorksheetCall, ShowsANullTextForAnExceptionWithoutAMessage) {
    const Cell cell = call([] { throw CWStrException{nullptr}; });
    EXPECT_EQ(cell.code, S_OK);
    EXPECT_TRUE(cell.isNull);
    const auto info = takeErrorInfo();
    ASSERT_TRUE(info);
    EXPECT_EQ(info->description, L"");
    EXPECT_EQ(info->source, L"Quorvane.Excel");
}

TEST(SpareMessage, IsTheMessageOfAFailureForWantOfMemory) {
    SpareMessage spare;
    EXPECT_EQ(com::viewOf(spare.take()), L"std::bad_alloc");
    EXPECT_FALSE(spare.take());
    spare.refill();
    EXPECT_EQ(com::viewOf(spare.take()), L"std::bad_alloc");
}

TEST(SpareMessage, IsMadeAnewByTheNextWorksheetCall) {
    SpareMessage spare;
    static_cast<void>(spare.take());
    EXPECT_EQ(worksheetCall(
                  someInterface, spare, [] {}, [](com::unique_bstr) {}),
              S_OK);
    EXPECT_TRUE(spare.take());
}

TEST(ServiceCall, ThatSucceedsAnswersSuccess) {
    SetErrorInfo(0, nullptr);
    bool ran = false;
    EXPECT_EQ(serviceCall(someInterface, [&ran] { ran = true; }), S_OK);
    EXPECT_TRUE(ran);
    EXPECT_FALSE(takeErrorInfo());
}

TEST(ServiceCall, ThatFailsAnswersFailureWithErrorInformation) {
    EXPECT_EQ(serviceCall(someInterface, [] { throw WStrException{L"Package \"x\" exists"}; }), E_FAIL);
    const auto info = takeErrorInfo();
    ASSERT_TRUE(info);
    EXPECT_EQ(info->description, L"Package \"x\" exists");
    EXPECT_EQ(info->source, L"Quorvane.Excel");
    EXPECT_TRUE(IsEqualGUID(info->interfaceId, someInterface));
}

TEST(ServiceCall, LetsNoExceptionThrough) {
    EXPECT_EQ(serviceCall(someInterface, [] { throw std::runtime_error{"plain"}; }), E_FAIL);
    EXPECT_EQ(takeErrorInfo()->description, L"plain");
    EXPECT_EQ(serviceCall(someInterface, [] { throw 42; }), E_FAIL);
    EXPECT_EQ(takeErrorInfo()->description, L"Unknown exception");
}

} // namespace
} // namespace quorvane
