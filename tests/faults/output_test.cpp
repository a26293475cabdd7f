// What foreign calls hand over is of the wrong type, shape or length, or not there: the user sees what is
// wrong with it, or nothing where it does not matter, and the next package works.
#include "tests/faults/expect.h"

#include <algorithm>

namespace faults {

namespace {

struct Case {
    const ArrayRow* row;
    const ValueFault* fault;
};

std::string nameOf(const Case& tested) { return tested.row->name() + "_" + tested.fault->name; }

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const ArrayRow& row : outputs()) {
        for (const ValueFault& fault : valueFaults(elementType(row))) {
            // The lists that are sorted for the user take too long.
            if (fault.name != "AMillion" || row.more != "<and zzz>") {
                cases.push_back({&row, &fault});
            }
        }
    }
    return cases;
}

using Replace = std::function<com::variant(const VARIANT& honest)>;

// A list is sorted for the user: what its last element was is told by the package.
std::string withoutLast(const std::string& list, const std::string& last) {
    std::vector<std::string> parts = split(list, " | ");
    std::erase(parts, last);
    return joinedList(parts);
}

class Output : public Stage {
  protected:
    /// The call with this output replaced; remembers the honest last text.
    std::string goWith(const ArrayRow& row, const Replace& replace) {
        const Call& call = callNamed(row.call);
        const std::size_t output = std::stoul(row.place);
        return go(call.way, [&] {
            package->hook(call.method, [=, this](scripted::Call& heard) {
                const HRESULT code = heard.healthy();
                const com::variant honest = scripted::duplicate(heard.out[output].value());
                if (honest.vt == (VT_ARRAY | VT_BSTR)) {
                    last_ = scripted::narrow(scripted::textsOf(honest).back());
                }
                heard.out[output].replace(replace(honest));
                return code;
            });
        });
    }
    void expectOutcome(const ArrayRow& row, const std::string& result, const std::string& outcome,
                       const std::string& check, const ValueFault* fault, const std::string& text) {
        const Call& call = callNamed(row.call);
        const std::string without = healthy(call.way);
        EXPECT_EQ(result, outcome == "<but the last>" ? withoutLast(without, last_)
                                                      : seenOutcome(outcome, check, fault, text, without));
        package->recovers(call.method);
        forgetReferences();
        expectHealthyAgain(call.way, result, Memory::ofResults);
    }

  private:
    std::string last_;
};

class OutputValue : public Output, public ::testing::WithParamInterface<Case> {};

TEST_P(OutputValue, IsChecked) {
    const ArrayRow* const row = GetParam().row;
    const ValueFault* const fault = GetParam().fault;
    const std::string result = goWith(*row, fault->make);
    expectOutcome(*row, result, outcomeOf(*row, fault->effect, false), checkText(*row, fault->effect), fault,
                  "");
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, OutputValue, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

// --- Texts
// ---------------------------------------------------------------------------------------------------------

struct Text {
    const char* name;
    std::wstring text;
};

const std::vector<Text>& texts() {
    static const std::vector<Text> all = {
        {"Null", L""},
        {"Empty", L""},
        {"Long", std::wstring(10000, L'x')},
        {"HighSurrogate", L"a\xD800z"},
        {"LowSurrogate", L"a\xDC00z"},
        {"SwappedSurrogates", L"\xDC00\xD800"},
        {"WithZero", std::wstring(L"one\0two", 7)},
        {"Blank", L" "},
        {"Controls", L"\x1\x1F\x7F\r\n\t"},
    };
    return all;
}

struct TextCase {
    const ArrayRow* row;
    const Text* text;
};

std::string nameOf(const TextCase& tested) { return tested.row->name() + "_" + tested.text->name; }

void PrintTo(const TextCase& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<TextCase> textCases() {
    std::vector<TextCase> cases;
    for (const ArrayRow& row : outputs()) {
        for (const Text& text : texts()) {
            if (row.element == "text") {
                cases.push_back({&row, &text});
            }
        }
    }
    return cases;
}

class OutputText : public Output, public ::testing::WithParamInterface<TextCase> {};

TEST_P(OutputText, IsTakenOrRefused) {
    const ArrayRow* const row = GetParam().row;
    const Text* const text = GetParam().text;
    const bool isNull = std::string_view{text->name} == "Null";
    const std::string& outcome = isNull ? row->null : text->text.empty() ? row->empty : row->odd;
    const std::string result = goWith(*row, [&](const VARIANT& honest) {
        const com::variant replaced = withFirst(honest, isNull ? nullptr : &text->text);
        return row->odd == "<only>" ? resized(replaced, isNull ? 2 : 1) : scripted::duplicate(replaced);
    });
    expectOutcome(*row, result, outcome, "", nullptr, scripted::narrow(text->text));
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, OutputText, ::testing::ValuesIn(textCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

} // namespace

} // namespace faults
