// Of two mistakes in one call the earlier check speaks: users mend the first and then see the next. Every two
// mistakes of a function (mistakes.h) that can be made at once are.
#include "tests/conformance/mistakes.h"

using namespace tests;

namespace conformance {

namespace {

struct Pair {
    const Function* function;
    const Mistake* first;  ///< null: none is made
    const Mistake* second; ///< null: the first alone
};

std::string nameOf(const Pair& pair) {
    if (pair.first == nullptr) {
        return pair.function->name;
    }
    const std::string name = std::string{pair.function->name} + pair.first->name;
    return pair.second == nullptr ? name + "IsReported" : name + "Beats" + pair.second->name;
}

void PrintTo(const Pair& pair, std::ostream* out) { *out << nameOf(pair); }

std::vector<Pair> allPairs() {
    std::vector<Pair> pairs;
    for (const Function& function : functions()) {
        const Mistakes& mistakes = mistakesOf(function);
        for (auto first = mistakes.begin(); first != mistakes.end(); ++first) {
            pairs.push_back({&function, &*first, nullptr});
            for (auto second = first + 1; second != mistakes.end(); ++second) {
                if (first->subject != second->subject) {
                    pairs.push_back({&function, &*first, &*second});
                }
            }
        }
    }
    return pairs;
}

class CheckOrder : public Worksheet, public ::testing::WithParamInterface<Pair> {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        teach(*package);
        attach();
    }
};

TEST_P(CheckOrder, Of) {
    const Pair& pair = GetParam();
    Scene scene{*pair.function, workingArguments(*pair.function), *package, *excel, *addIn, *events, book()};
    pair.first->make(scene);
    if (pair.second != nullptr) {
        pair.second->make(scene);
    }
    EXPECT_EQ(shown(call(pair.function->method, std::move(scene.arguments))), pair.first->message);
    EXPECT_EQ(errorInfo(), std::string{"Quorvane.Excel: "} + pair.first->message);
}

INSTANTIATE_TEST_SUITE_P(Mistakes, CheckOrder, ::testing::ValuesIn(allPairs()),
                         [](const auto& pair) { return nameOf(pair.param); });

class WithoutMistakes : public CheckOrder {};

TEST_P(WithoutMistakes, TheCallGivesAResult) {
    call(GetParam().function->method, workingArguments(*GetParam().function));
    EXPECT_EQ(errorInfo(), "");
}

std::vector<Pair> allFunctions() {
    std::vector<Pair> calls;
    for (const Function& function : functions()) {
        calls.push_back({&function, nullptr, nullptr});
    }
    return calls;
}

INSTANTIATE_TEST_SUITE_P(Mistakes, WithoutMistakes, ::testing::ValuesIn(allFunctions()),
                         [](const auto& call) { return nameOf(call.param); });

} // namespace

} // namespace conformance
