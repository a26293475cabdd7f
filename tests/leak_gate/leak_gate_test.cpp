// Tests that leak on purpose, and how the gate tells of them. They exist only in the process that the gate
// starts.
#include "com/com_object.h"
#include "com/com_ptr.h"
#include "com/implements.h"
#include "com/owned.h"
#include "tests/leak_gate/allocations.h"
#include "tests/leak_gate/run_again.h"
#include "tests/leak_gate/state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace leak_gate {

namespace {

class Leaking final : public testing::Test {
  public:
    explicit Leaking(std::function<void()> body) : body_{std::move(body)} {}
    void TestBody() override { body_(); }

  private:
    std::function<void()> body_;
};

class Nothing final : public com::COMObject {
  public:
    void* findInterface(REFIID) noexcept override { return nullptr; }
};

std::vector<void*> lost;
void lose(void* thing) { lost.push_back(thing); }

// {4F0E7B43-9C37-4E0B-8E6C-7C6E0F0D2A91}
constexpr CLSID unknownClass = {0x4F0E7B43, 0x9C37, 0x4E0B, {0x8E, 0x6C, 0x7C, 0x6E, 0x0F, 0x0D, 0x2A, 0x91}};

void createUnknownClass() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    com::com_ptr<IUnknown> object;
    EXPECT_EQ(CoCreateInstance(unknownClass, nullptr, CLSCTX_ALL, IID_IUnknown, object.putVoid()),
              REGDB_E_CLASSNOTREG);
}

class LosingFactory final : public com::implements<com::COMObject, IClassFactory> {
  public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void**) noexcept override {
        for (int i = 0; i < 3; ++i) {
            lose(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        }
        return REGDB_E_CLASSNOTREG;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }
};

int runs = 0;

// From before any test.
std::vector<std::unique_ptr<int>> stock;

struct Leak {
    const char* test;
    void (*body)();
};

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what is lost here is the heap of C
const Leak leaks[] = {
    {"Nothing", [] { EXPECT_TRUE(com::makeBstr(L"a text").get() != nullptr); }},
    {"ObjectOnTheHeap", [] { lose(new int{1}); }},
    {"BlockOfTheCHeap", [] { lose(std::calloc(2, 50)); }},
    {"GrownBlock", [] { lose(std::realloc(std::malloc(10), 1000)); }},
    {"Text", [] { lose(com::makeBstr(L"a text").release()); }},
    {"Array", [] { lose(SafeArrayCreateVector(VT_R8, 0, 3)); }},
    {"TaskMemory", [] { lose(CoTaskMemAlloc(30)); }},
    {"Reference", [] { com::make<Nothing>()->AddRef(); }},
    {"ReleaseOnceTooOften",
     [] {
         // Of an object that lived before the test, as a caller's does.
         static Nothing* kept = nullptr;
         if (kept == nullptr) {
             kept = com::make<Nothing>().release();
         }
         if (++runs == 2) {
             kept->Release();
         }
     }},
    {"RegistryKey",
     [] {
         HKEY key = nullptr;
         RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &key);
         EXPECT_NE(key, nullptr);
     }},
    {"Event", [] { lose(CreateEventW(nullptr, TRUE, FALSE, nullptr)); }},
    {"ClassThatIsNotThere", [] { createUnknownClass(); }},
    {"EventBesideAClassThatIsNotThere",
     [] {
         createUnknownClass();
         lose(CreateEventW(nullptr, TRUE, FALSE, nullptr));
     }},
    {"EventsOfAClassThatSaysItIsNotThere",
     [] {
         DWORD cookie = 0;
         const auto factory = com::make<LosingFactory>();
         CoRegisterClassObject(unknownClass, static_cast<IClassFactory*>(factory.get()), CLSCTX_INPROC_SERVER,
                               REGCLS_MULTIPLEUSE, &cookie);
         createUnknownClass();
         CoRevokeClassObject(cookie);
     }},
    {"WriteBeyondTheEnd",
     [] {
         const volatile std::size_t length = 10; // so that the compiler does not see through it
         void* const block = std::malloc(length);
         static_cast<volatile char*>(block)[length] = 1;
         std::free(block);
     }},
    {"MadeOnceAndKept",
     [] {
         static const auto* const kept = new std::vector<int>(1000);
         EXPECT_EQ(kept->size(), 1000U);
     }},
    {"MadeWhenNeeded",
     [] {
         if (++runs == 2) {
             lose(new int{1});
         }
     }},
    {"BesideAnOlderOneThatIsFreed",
     [] {
         stock.pop_back();
         lose(new int{1});
     }},
    {"ReplacedEachTime",
     [] {
         static std::unique_ptr<int> kept;
         kept = std::make_unique<int>(1);
     }},
    {"OftenButNotEachTime",
     [] {
         if (++runs != timesRunAgain - 1) {
             lose(new int{1});
         }
     }},
};
// NOLINTEND(cppcoreguidelines-no-malloc)

const bool registered = [] {
    lost.reserve(100);
    while (stock.size() < timesRunAgain) {
        stock.push_back(std::make_unique<int>(1));
    }
    for (const Leak& leak : leaks) {
        if (isRunAgain()) {
            testing::RegisterTest("Leaks", leak.test, nullptr, nullptr, __FILE__, __LINE__,
                                  [&leak]() -> testing::Test* { return new Leaking{leak.body}; });
        }
    }
    return true;
}();

// What the gate says of the test in the end; "passed" when it is content.
std::string verdict(const std::string& test) {
    const Outcome outcome = runAgain("Leaks." + test);
    if (outcome.passed) {
        return "passed";
    }
    const std::string opening = "The test leaves behind:";
    const auto from = outcome.said.find(opening);
    if (from == std::string::npos) {
        return outcome.said;
    }
    std::string lines = outcome.said.substr(from + opening.size());
    lines.resize(lines.find("\n\n") == std::string::npos ? lines.find("\r\n\r\n") : lines.find("\n\n"));
    std::erase(lines, '\r');
    return lines;
}

TEST(LeakGate, LetsATestPassThatLeavesNothing) { EXPECT_EQ(verdict("Nothing"), "passed"); }
TEST(LeakGate, CatchesAnObjectOnTheHeap) {
    EXPECT_EQ(verdict("ObjectOnTheHeap"), "\n  the test program: 1 block, 4 bytes");
}
TEST(LeakGate, CatchesABlockOfTheCHeap) {
    EXPECT_EQ(verdict("BlockOfTheCHeap"), "\n  the test program: 1 block, 100 bytes");
}
TEST(LeakGate, CatchesABlockThatGrew) {
    EXPECT_EQ(verdict("GrownBlock"), "\n  the test program: 1 block, 1000 bytes");
}
TEST(LeakGate, CatchesAText) {
    EXPECT_THAT(verdict("Text"), testing::StartsWith("\n  COM's allocator: 1 block, "));
}
TEST(LeakGate, CatchesAnArray) {
    EXPECT_THAT(verdict("Array"), testing::StartsWith("\n  COM's allocator: "));
}
TEST(LeakGate, CatchesTaskMemory) {
    EXPECT_EQ(verdict("TaskMemory"), "\n  COM's allocator: 1 block, 30 bytes");
}
TEST(LeakGate, CatchesAReference) {
    EXPECT_EQ(verdict("Reference"),
              "\n  the test program: 1 block, 16 bytes\n  1 live COM objects of the test program");
}
TEST(LeakGate, CatchesAReleaseTooManyOfAnObjectFromBefore) {
    EXPECT_EQ(verdict("ReleaseOnceTooOften"), "\n  -1 live COM objects of the test program");
}
TEST(LeakGate, CatchesARegistryKey) { EXPECT_EQ(verdict("RegistryKey"), "\n  1 kernel handles"); }
TEST(LeakGate, CatchesAnEvent) { EXPECT_EQ(verdict("Event"), "\n  1 kernel handles"); }
TEST(LeakGate, ForgivesTheHandlesThatTheSystemLosesForAClassThatIsNotThere) {
    EXPECT_EQ(verdict("ClassThatIsNotThere"), "passed");
    EXPECT_EQ(verdict("EventBesideAClassThatIsNotThere"), "\n  1 kernel handles");
}
TEST(LeakGate, ForgivesAClassNoMoreHandlesThanTheSystemLoses) {
    EXPECT_EQ(verdict("EventsOfAClassThatSaysItIsNotThere"), "\n  1 kernel handles");
}
TEST(LeakGate, CatchesAWriteBeyondTheEndOfABlock) {
    EXPECT_EQ(verdict("WriteBeyondTheEnd"), "\n  1 blocks written beyond their end");
}
TEST(LeakGate, LetsATestPassThatMakesOnceWhatIsKept) { EXPECT_EQ(verdict("MadeOnceAndKept"), "passed"); }
TEST(LeakGate, LetsATestPassThatMakesWhatIsKeptTheSecondTime) {
    EXPECT_EQ(verdict("MadeWhenNeeded"), "passed");
}
TEST(LeakGate, CatchesABlockThoughAnOlderOneIsFreed) {
    EXPECT_EQ(verdict("BesideAnOlderOneThatIsFreed"), "\n  the test program: 1 block, 4 bytes");
}
TEST(LeakGate, LetsATestPassThatReplacesWhatItKeeps) { EXPECT_EQ(verdict("ReplacedEachTime"), "passed"); }
TEST(LeakGate, LetsATestPassThatLeavesNothingOneOfTheLastTimes) {
    EXPECT_EQ(verdict("OftenButNotEachTime"), "passed");
}
TEST(LeakGate, DoesNotTakeATestForPassedThatDidNotRun) {
    EXPECT_THAT(runAgain("Leaks.Unknown").said, testing::EndsWith("the test is not found again\n"));
}
TEST(LeakGate, KnowsOnlyTheModulesBesideTheProgram) {
    EXPECT_THROW(ownerOf("kernel32.dll"), std::invalid_argument);
}

TEST(LeakGate, LooksAtATestAgainThatFreesAnOlderBlockAndLeavesOne) {
    auto older = std::make_unique<int>(1);
    const State before = State::now();
    older.reset();
    const auto left = std::make_unique<int>(1);
    EXPECT_EQ(State::now().memoryLeftSince(before), "  the test program: 1 block, 4 bytes\n");
}

TEST(LeakGate, CountsWhatIsAllocatedAndTheMostAtATime) {
    const AllocationUse use;
    {
        const std::vector<char> first(1000);
        EXPECT_EQ(use.blocks(), 1);
    }
    const std::vector<char> second(500);
    EXPECT_EQ(use.blocks(), 1);
    EXPECT_EQ(use.allocations(), 2);
    EXPECT_EQ(use.peakBytes(), 1000);
}

TEST(LeakGate, RefusesOneAllocation) {
    const Refusal refusal{testProgram, 2, Refusal::Extent::One};
    EXPECT_FALSE(refusal.happened());
    const std::unique_ptr<int> first{new (std::nothrow) int};
    const std::unique_ptr<int> second{new (std::nothrow) int};
    const std::unique_ptr<int> third{new (std::nothrow) int};
    EXPECT_TRUE(first != nullptr && second == nullptr && third != nullptr);
    EXPECT_TRUE(refusal.happened());
}
// NOLINTBEGIN(cppcoreguidelines-no-malloc): refused is the heap of C
TEST(LeakGate, RefusesAllAllocationsFromOneOn) {
    void* blocks[3] = {};
    {
        const Refusal refusal{testProgram, 2, Refusal::Extent::AllFromThereOn};
        for (void*& block : blocks) {
            block = std::malloc(10);
        }
    }
    EXPECT_TRUE(blocks[0] != nullptr && blocks[1] == nullptr && blocks[2] == nullptr);
    std::free(blocks[0]);
    EXPECT_NO_THROW(std::make_unique<int>(1));
}
// NOLINTEND(cppcoreguidelines-no-malloc)
TEST(LeakGate, RefusesFunctionsOfCOMThatAllocateElsewhere) {
    const auto refusal = Refusal::ofCom(testProgram, 1, Refusal::Extent::One);
    com::com_ptr<ICreateErrorInfo> first, second;
    EXPECT_EQ(CreateErrorInfo(first.put()), E_OUTOFMEMORY);
    EXPECT_EQ(CreateErrorInfo(second.put()), S_OK);
}
TEST(LeakGate, RefusesWhatCOMWouldAllocateForAModule) {
    com::unique_bstr first, second, third;
    {
        const auto refusal = Refusal::ofCom(testProgram, 2, Refusal::Extent::One);
        first.reset(SysAllocString(L"first"));
        second.reset(SysAllocString(L"second"));
        third.reset(SysAllocString(L"third"));
    }
    EXPECT_TRUE(first && !second && third);
}

} // namespace

} // namespace leak_gate
