// Damaged tables through the service of the built add-in, as the front end hands them over. The function
// behind the service takes ten thousand of them in workbook_memory_test. This program has no screen, so that
// message boxes end at once.
#include "tests/leak_gate/allocations.h"
#include "tests/src/server/worksheet.h"
#include "tests/src/workbook/mutator.h"

#include <functional>

using namespace tests;

namespace {

class DamagedTables : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        package->hook("Load", [](scripted::Call& call) { return call.healthy(); });
    }

    /// What the call left, which must be the add-in's own words, or nothing.
    static std::string wordsAfter(const std::function<HRESULT()>& call, HRESULT& code) {
        SetErrorInfo(0, nullptr);
        code = call();
        const std::string words = errorInfo();
        EXPECT_TRUE(words.empty() || words.starts_with(own)) << words;
        return words.empty() ? words : words.substr(own.size());
    }
    void survive(const VARIANT& table) {
        HRESULT code = S_OK;
        const std::string words = wordsAfter([&] { return addIn->Depersist(book(), table); }, code);
        if (code == E_FAIL) {
            ++refused;
            EXPECT_TRUE(words == "Expected an matrix of type string" ||
                        words == "unexpected dimension; 2-dimensional array expected")
                << words;
            return;
        }
        EXPECT_EQ(code, S_OK);
        told += words.empty() ? 0 : 1;
        EXPECT_TRUE(words.empty() || words.starts_with("Cannot restore property package from ")) << words;

        com::variant saved;
        wordsAfter([&] { return addIn->Persist(book(), &saved); }, code);
        EXPECT_EQ(code, S_OK);
        restored += saved.vt == VT_EMPTY ? 0 : 1;
        wordsAfter([&] { return addIn->Depersist(other->dispatch(), saved); }, code);
        EXPECT_EQ(code, S_OK);
        addIn->CloseWorkbook(book());
        addIn->CloseWorkbook(other->dispatch());
        SetErrorInfo(0, nullptr);
        package->forgetCalls();
        package->model.state = {};
    }

    static constexpr std::string_view own = "Quorvane.Excel: ";

    com::com_ptr<sheet::excel::Workbook> other = com::make<sheet::excel::Workbook>(L"Book2");
    int refused = 0;
    int told = 0;
    int restored = 0;
};

TEST_F(DamagedTables, EndInPackagesOrMessagesAndLeakNothing) {
    quorvane::Mutator mutator;
    for (int i = 0; i < 100; ++i) { // what is made once is made here
        survive(mutator.next());
    }
    const leak_gate::AllocationUse automation{leak_gate::comAllocator};
    for (int i = 0; i < 500; ++i) {
        survive(mutator.next());
        ASSERT_EQ(scripted::liveObjects(), 0) << "after table " << i;
    }
    EXPECT_EQ(automation.blocks(), 0);
    // The damage was neither too small nor too large to tell anything.
    EXPECT_GT(refused, 3);
    EXPECT_GT(told, 30);
    EXPECT_GT(restored, 100);
}

} // namespace
