// What a package says about its failures may be missing, empty, malformed, or fail itself.
#include "tests/faults/inject.h"

namespace faults {

namespace {

const std::wstring tenThousand(10000, L'x');

BSTR rubbishText() {
    static wchar_t rubbish[8] = L"rubbish";
    return rubbish; // not made by Automation, which must not free it
}

scripted::Script::Hook rubbishOnFailure() {
    return [](scripted::Call& call) {
        VARIANT text{};
        text.vt = VT_BSTR;
        text.bstrVal = rubbishText();
        call.out[0].give(com::variant::attach(text));
        return E_FAIL;
    };
}

com::variant nullText() { return com::variant{com::unique_bstr{}}; }

struct Words {
    const char* name;
    void (*say)(scripted::Script&);
    std::wstring description;
    std::wstring rootName;
    std::wstring shown;
};

const std::wstring fixed = L"computation error";
const std::wstring root = L"the name";

const std::vector<Words>& allWords() {
    using Script = scripted::Script;
    static const std::vector<Words> all = {
        {"NoErrorInterfaces",
         [](Script& script) {
             script.omits(__uuidof(ECapeUser));
             script.omits(__uuidof(ECapeRoot));
         },
         L"unheard", L"unheard", fixed},
        {"NoUserInterface", [](Script& script) { script.omits(__uuidof(ECapeUser)); }, L"unheard", root,
         root},
        {"NoRootInterface", [](Script& script) { script.omits(__uuidof(ECapeRoot)); }, L"", L"unheard",
         fixed},
        {"NoRootInterfaceNeeded", [](Script& script) { script.omits(__uuidof(ECapeRoot)); }, L"words", L"",
         L"words"},
        {"DescriptionEmpty", [](Script&) {}, L"", root, root},
        {"DescriptionNull", [](Script& script) { script.answers("get_description", nullText()); }, L"", root,
         root},
        {"DescriptionFails", [](Script& script) { script.fails("get_description", E_FAIL); }, L"words", root,
         root},
        {"DescriptionFailsByCapeCode",
         [](Script& script) {
             script.fails("get_description", static_cast<HRESULT>(ECapeUnknownHR), L"no", L"no");
         },
         L"words", root, root},
        {"DescriptionFailsLeavingRubbish",
         [](Script& script) { script.hook("get_description", rubbishOnFailure()); }, L"words", root, root},
        {"DescriptionSucceedsOtherwise", [](Script& script) { script.ends("get_description", S_FALSE); },
         L"words", root, L"words"},
        {"DescriptionLong", [](Script&) {}, tenThousand, root, tenThousand},
        {"DescriptionBlank", [](Script&) {}, L" ", root, L" "},
        {"DescriptionOfSeveralLines", [](Script&) {}, L"one\r\ntwo\r\n", root, L"one\r\ntwo\r\n"},
        {"DescriptionWithUnpairedSurrogate", [](Script&) {}, L"a\xD800z", root, L"a\xD800z"},
        {"DescriptionOfOneSurrogate", [](Script&) {}, L"\xDFFF", root, L"\xDFFF"},
        {"DescriptionWithZero", [](Script&) {}, std::wstring(L"one\0two", 7), root, L"one\xFFFDtwo"},
        {"NameEmpty", [](Script&) {}, L"", L"", fixed},
        {"NameNull", [](Script& script) { script.answers("get_name", nullText()); }, L"", L"", fixed},
        {"NameFails", [](Script& script) { script.fails("get_name", E_FAIL); }, L"", root, fixed},
        {"NameFailsLeavingRubbish", [](Script& script) { script.hook("get_name", rubbishOnFailure()); }, L"",
         root, fixed},
        {"BothFail",
         [](Script& script) {
             script.fails("get_description", E_OUTOFMEMORY);
             script.fails("get_name", E_NOTIMPL);
         },
         L"words", root, fixed},
        {"NameSucceedsOtherwise", [](Script& script) { script.ends("get_name", S_FALSE); }, L"", root, root},
        {"NameLong", [](Script&) {}, L"", tenThousand, tenThousand},
        {"NameWithUnpairedSurrogate", [](Script&) {}, L"", L"a\xDC00z", L"a\xDC00z"},
    };
    return all;
}

struct Case {
    const Call* call;
    const Words* words;
};

std::string nameOf(const Case& tested) { return tested.call->name + "_" + tested.words->name; }

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const Call& call : calls()) {
        for (const Words& words : allWords()) {
            if (call.tellsReason()) {
                cases.push_back({&call, &words});
            }
        }
    }
    return cases;
}

class ErrorText : public Stage, public ::testing::WithParamInterface<Case> {};

TEST_P(ErrorText, IsShownOrReplaced) {
    const Call* const call = GetParam().call;
    const Words* const words = GetParam().words;
    const auto code = static_cast<HRESULT>(ECapeComputationHR);
    scripted::Script& script = scriptOf(call->object);
    const std::string result = go(call->way, [&] {
        const std::size_t number = call->object.ends_with(" call 2") ? 2 : 1;
        script.failsAt(number, call->method, code, words->description, words->rootName);
        words->say(script);
    });
    EXPECT_EQ(result, expected(call->failure, call->way, code, scripted::narrow(words->shown)));
    script.recovers(call->method);
    script.recovers("get_description");
    script.recovers("get_name");
    script.recovers(__uuidof(ECapeUser));
    script.recovers(__uuidof(ECapeRoot));
    expectHealthyAgain(call->way, result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, ErrorText, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

} // namespace

} // namespace faults
