// Every foreign call fails with every code: the user sees the message that the table of calls has for it, and
// what failed once works the next time.
#include "tests/faults/inject.h"

namespace faults {

namespace {

struct Case {
    const Call* call;
    const Code* code;
    Manner manner;
};

std::string nameOf(const Case& tested) {
    static constexpr const char* manners[] = {"", "_Spoken", "_Unnamed", "_Rubbish", "_Nothing", "_Late"};
    return tested.call->name + "_" + (tested.manner == Manner::nothing ? "S_OK" : tested.code->name) +
           manners[static_cast<std::size_t>(tested.manner)];
}

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const Call& call : calls()) {
        for (const Code& code : codes()) {
            cases.push_back({&call, &code, Manner::silent});
            if (call.tellsReason() && code.words != nullptr) {
                cases.push_back({&call, &code, Manner::spoken});
            }
            if (call.isProperty()) {
                cases.push_back({&call, &code, Manner::unnamed});
            }
            if ((call.isQuery() || call.isCreation()) && FAILED(code.value)) {
                cases.push_back({&call, &code, Manner::rubbish});
            }
        }
        if (call.isQuery() || call.isCreation()) {
            cases.push_back({&call, &codeNamed("S_FALSE"), Manner::nothing});
        } else if (isScripted(call) && call.object != "stream" && call.method != "GetPropertyPackage") {
            cases.push_back({&call, &codeNamed("E_FAIL"), Manner::late});
        }
    }
    return cases;
}

class FailureCode : public Stage, public ::testing::WithParamInterface<Case> {
  protected:
    static std::string outcome() {
        const Call* const call = GetParam().call;
        const Code* const code = GetParam().code;
        const Manner manner = GetParam().manner;
        if (manner == Manner::nothing) {
            return call->failure;
        }
        if (manner == Manner::unnamed && FAILED(code->value)) {
            const std::string unnamed = call->outcome("unnamed");
            return unnamed.empty() ? call->failure : unnamed;
        }
        return call->outcome(code->name);
    }
    static std::string reason() {
        const Code* const code = GetParam().code;
        const Manner manner = GetParam().manner;
        return manner == Manner::spoken ? spokenWords
               : code->words != nullptr ? code->words
                                        : systemText(code->value);
    }
};

TEST_P(FailureCode, IsTold) {
    const Call* const call = GetParam().call;
    const Code* const code = GetParam().code;
    const Manner manner = GetParam().manner;
    const std::string& way = call->way;
    const HRESULT value = manner == Manner::nothing ? S_OK : code->value;
    const std::size_t touched = scripted::touchesOfRubbish();
    const std::string result = go(way, [&] { inject(*this, *call, value, manner); });
    // A success without an object is the lack of the interface.
    const HRESULT told = manner == Manner::nothing ? E_NOINTERFACE : value;
    EXPECT_EQ(result, expected(outcome(), way, told, reason()));
    EXPECT_EQ(scripted::touchesOfRubbish(), touched) << "what a failing call leaves is not ours to free";
    takeBack(*this, *call);
    expectHealthyAgain(way, result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, FailureCode, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

} // namespace

} // namespace faults
