// The leak gate. It is linked into every test program for Windows and fails a test that leaves behind what it
// did not find: memory of the C++ heap (of the program and of each of our DLLs), memory of COM (BSTRs, safe
// arrays), live COM objects, kernel handles, windows and their kin.
//
// What is made once and kept is no leak: type libraries, tables, what the system keeps of its own. No list of
// such things is needed, because they do not grow: a test that leaves something is run alone, in a process of
// its own, several times over, and has leaked when each of the last times leaves something as well. One time
// would not do: the system's own threads open a handle now and then while the test runs. Memory that the next
// run frees is not left either: it was kept for that, as a text that each run replaces.
//
// Lost references need no second look: nothing but a release too many ends an object from before the test.
//
// A test that fails or is skipped is not judged: googletest keeps what it says about it.
#include "tests/leak_gate/hooks.h"
#include "tests/leak_gate/run_again.h"
#include "tests/leak_gate/state.h"

#include <gtest/gtest.h>

namespace leak_gate {

namespace {

class Gate final : public testing::EmptyTestEventListener {
  public:
    Gate() { watchLoadedModules(); }

    void OnTestIterationStart(const testing::UnitTest&, int iteration) override {
        isJudged_ = iteration + timesJudged >= timesRunAgain;
    }

    void OnTestStart(const testing::TestInfo&) override {
        watchLoadedModules();
        before_ = State::now();
    }

    void OnTestEnd(const testing::TestInfo& test) override {
        if (!test.result()->Passed()) {
            return;
        }
        const State now = State::now();
        if (now.hasLostObjectsSince(before_)) {
            ADD_FAILURE() << opening << now.changeSince(before_);
        } else if (isRunAgain()) {
            judgeRun(lastRun_.after.memoryLeftSince(lastRun_.before) + now.changeSince(before_));
            lastRun_ = {before_, now};
        } else {
            judge(test, now.memoryLeftSince(before_) + now.changeSince(before_));
        }
    }

  private:
    static constexpr const char* opening = "The test leaves behind:\n";

    static void judge(const testing::TestInfo& test, const std::string& left) {
        if (left.empty()) {
            return;
        }
        const Outcome again = runAgain(std::string{test.test_suite_name()} + "." + test.name());
        if (!again.passed) {
            ADD_FAILURE() << opening << left << "and alone, run several times:\n" << again.said;
        }
    }

    void judgeRun(const std::string& left) {
        timesLeft_ += isJudged_ && !left.empty() ? 1 : 0;
        if (timesLeft_ == timesJudged) {
            ADD_FAILURE() << opening << left;
        }
    }

    State before_;
    struct {
        State before;
        State after;
    } lastRun_;
    bool isJudged_ = false;
    int timesLeft_ = 0;
};

// Before main: whatever the program's own main does, it cannot forget the gate.
const bool installed = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new Gate);
    return true;
}();

} // namespace

} // namespace leak_gate
