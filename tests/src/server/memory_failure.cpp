#include "tests/src/server/memory_failure.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace tests {

using leak_gate::Refusal;

struct MemoryFailure::Means {
    const char* name;
    bool isCom;
    Refusal::Extent extent;
};

namespace {

// A failure of a service, in the words of the front end's error dialog.
std::string failed(HRESULT code) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "failed 0x%08lX ", static_cast<unsigned long>(code));
    return text.data();
}

// The system's words for want of memory.
std::string outOfMemory() {
    std::array<char, 200> text{};
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(E_OUTOFMEMORY), 0, text.data(),
                                        static_cast<DWORD>(text.size()), nullptr);
    const std::string_view words{text.data(), length};
    return std::string{words.substr(0, words.find_last_not_of("\r\n") + 1)};
}

bool isReport(const std::string& shown) {
    const std::string service = failed(E_FAIL);
    const std::string source = service + "Quorvane.Excel: ";
    const std::string reports[] = {
        "std::bad_alloc",
        failed(E_OUTOFMEMORY),                    // Automation found no memory for the late call itself
        "The material says: Unhandled exception", // the package's own words for what it is told
        source + "std::bad_alloc",
        source + "Failed to create property package: " + outOfMemory(),
        source + "Failed to create property package manager: " + outOfMemory(),
        source,  // no memory for the words
        service, // nor for what they come in
    };
    // Of one package among others, in a message box.
    const std::string told[] = {
        "(told Quorvane.Excel: Failed to save package ",
        "(told Quorvane.Excel: Cannot restore property package from Scripted: Failed to "
        "create property package: " +
            outOfMemory()};
    return std::ranges::find(reports, shown) != std::end(reports) ||
           std::ranges::any_of(told,
                               [&](const std::string& one) { return shown.find(one) != std::string::npos; });
}

} // namespace

void PrintTo(const MemoryFailureCase& tested, std::ostream* out) { *out << tested.name; }

void MemoryFailure::SetUp() {
    Worksheet::SetUp();
    GetParam().prepare(*package);
    attachBoth();
    ASSERT_EQ(addIn->Persist(book(), savedTable.put()), S_OK);
    // What is made once and kept: the add-in's own, and what the C++ run time needs for the first exception
    // for which there is no memory, which nothing but want of memory makes it make.
    healthy_ = call();
    deleteCreated();
    ASSERT_EQ(call(), healthy_);
    deleteCreated();
    {
        const Refusal refusal{dll_, 1, Refusal::Extent::Two};
        service([&](com::variant& names) { return addIn->PackageNames(book(), &names); });
    }
    ASSERT_EQ(addIn->CloseWorkbook(book()), S_OK);
    attachBoth();
    contents();
    ASSERT_EQ(addIn->CloseWorkbook(book()), S_OK);
    SetErrorInfo(0, nullptr);
    package->forgetCalls();
    manager->forgetCalls();
}

std::string MemoryFailure::call() { return GetParam().call(*this); }

std::string Caller::function(const wchar_t* name, std::vector<com::variant> arguments) {
    SetErrorInfo(0, nullptr);
    std::wstring spelling{name};
    wchar_t* names[] = {spelling.data()};
    DISPID member = 0;
    if (const HRESULT code = addIn->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member);
        FAILED(code)) {
        return failed(code);
    }
    std::ranges::reverse(arguments);
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    com::variant result;
    EXCEPINFO exception{};
    const HRESULT code = addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                       &result, &exception, nullptr);
    const com::unique_bstr source{exception.bstrSource};
    const com::unique_bstr description{exception.bstrDescription};
    const com::unique_bstr help{exception.bstrHelpFile};
    return SUCCEEDED(code) ? shown(result) : failed(code == DISP_E_EXCEPTION ? exception.scode : code);
}

std::string Caller::service(const std::function<HRESULT(com::variant& out)>& call) {
    SetErrorInfo(0, nullptr);
    com::variant out;
    const HRESULT code = call(out);
    if (FAILED(code)) {
        return failed(code) + errorInfo();
    }
    const std::string told = errorInfo(); // what a message box has said
    return told.empty() ? shown(out) : shown(out) + " (told " + told + ")";
}

void MemoryFailure::attachBoth() {
    attach();
    attach(L"Q");
}

// All that a user can see of the workbook's packages.
std::string MemoryFailure::contents() {
    const std::string table = service([&](com::variant& out) { return addIn->Persist(book(), &out); });
    const auto flashOf = [&](const wchar_t* name) {
        Flash given;
        given.package = text(name);
        return flash(std::move(given));
    };
    return table + "\n" + flashOf(L"P") + "\n" + flashOf(L"Q");
}

void MemoryFailure::deleteCreated() { addIn->DeleteWorkbookPP(book(), com::makeBstr(L"Another").get()); }

void MemoryFailure::failOne(const Means& means, long long position, bool& happened) {
    const leak_gate::AllocationUse heap{dll_};
    const leak_gate::AllocationUse automation{leak_gate::comAllocator};
    attachBoth();
    const std::string before = contents();
    std::string shown;
    {
        const Refusal refusal = means.isCom ? Refusal::ofCom(dll_, position, means.extent)
                                            : Refusal{dll_, position, means.extent};
        shown = call();
        happened = refusal.happened();
    }
    if (shown == healthy_) {
        deleteCreated();
    }
    if (!happened || shown == healthy_) {
        EXPECT_EQ(shown, healthy_);
    } else {
        EXPECT_TRUE(isReport(shown)) << shown;
        EXPECT_EQ(contents(), before);
    }
    EXPECT_EQ(call(), healthy_) << "the same call afterwards";
    ASSERT_EQ(addIn->CloseWorkbook(book()), S_OK);
    SetErrorInfo(0, nullptr);
    package->forgetCalls();
    manager->forgetCalls();
    EXPECT_EQ(heap.blocks(), 0);
    EXPECT_EQ(automation.blocks(), 0);
}

void MemoryFailure::failEachAllocation(const Means& means) {
    bool happened = true;
    long long position = 0;
    while (happened && !HasFailure()) {
        SCOPED_TRACE(testing::Message() << means.name << ", from number " << ++position << " on");
        failOne(means, position, happened);
    }
    std::printf("refused %s: %lld times\n", means.name, position - 1);
    std::fflush(stdout);
}

TEST_P(MemoryFailure, IsReportedAndLosesNothing) {
    constexpr Means allMeans[] = {{"one block of the heap", false, Refusal::Extent::One},
                                  {"two blocks of the heap", false, Refusal::Extent::Two},
                                  {"all blocks of the heap", false, Refusal::Extent::AllFromThereOn},
                                  {"one block of COM", true, Refusal::Extent::One},
                                  {"all blocks of COM", true, Refusal::Extent::AllFromThereOn}};
    for (const Means& means : allMeans) {
        failEachAllocation(means);
    }
}

} // namespace tests
