// What Excel's objects answer is of another kind than it should be: the user sees what the argument's reader
// says to it, or the result as if nothing had been asked.
#include "tests/faults/expect.h"

#include "com/safe_array.h"

#include <algorithm>

namespace faults {

namespace {

// One answer of each kind.
struct Answer {
    const char* name;
    com::variant (*make)();
};

com::variant ofType(VARTYPE vt) {
    VARIANT value{};
    value.vt = vt;
    return com::variant::attach(value);
}

com::variant reference(VARTYPE vt) { return ofType(static_cast<VARTYPE>(vt | VT_BYREF)); }

com::variant emptyTable() {
    com::unique_safearray array = com::makeMatrix(VT_VARIANT, 0, 3);
    return com::variant::array(std::move(array), VT_VARIANT);
}

com::variant block(std::size_t rows, std::size_t columns) {
    com::unique_safearray array = com::makeMatrix(VT_VARIANT, rows, columns);
    return com::variant::array(std::move(array), VT_VARIANT);
}

com::variant referenceTo(VARTYPE vt, void* target) {
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(vt | VT_BYREF);
    value.byref = target;
    return com::variant::attach(value);
}

// What references lead to, as it lives in Excel.
double referredNumber = 2.0;
com::variant& referredText() {
    static com::variant text{L"Beta"};
    return text;
}
com::variant& referredAmounts() {
    static com::variant amounts = [] {
        com::variant list = block(1, 3);
        const com::array_lock<VARIANT> lock{list.parray};
        double amount = 0.5;
        for (VARIANT& element : lock.elements()) {
            element = com::variant{amount *= 2.0}.release();
        }
        return list;
    }();
    return amounts;
}
com::variant& referredValue() {
    static com::variant value{2.0};
    return value;
}

const Answer answers[] = {
    {"Empty", [] { return com::variant{}; }},
    {"Null", [] { return ofType(VT_NULL); }},
    {"NullText", [] { return ofType(VT_BSTR); }},
    {"EmptyText", [] { return com::variant{L""}; }},
    {"Text", [] { return com::variant{L"abc"}; }},
    {"Whole", [] { return com::variant{1L}; }},
    {"Long", [] { return com::variant{std::wstring_view{std::wstring(10000, L'x')}}; }},
    {"Surrogate", [] { return com::variant{L"\xD800"}; }},
    {"Error", [] { return ofType(VT_ERROR); }},
    {"Decimal", [] { return ofType(VT_DECIMAL); }},
    {"Record", [] { return ofType(VT_RECORD); }},
    {"Illegal", [] { return ofType(VT_ILLEGALMASKED); }},
    {"NoObject", [] { return com::variant::object(nullptr); }},
    {"NoUnknown", [] { return ofType(VT_UNKNOWN); }},
    {"OtherObject",
     [] { return com::variant::object(com::make<sheet::excel::Workbook>(L"Other")->dispatch()); }},
    {"NoArray", [] { return ofType(VT_ARRAY | VT_VARIANT); }},
    {"NoNumbers", [] { return ofType(VT_ARRAY | VT_R8); }},
    {"Texts",
     [] {
         return scripted::texts({L"1", L"2"});
     }},
    {"NothingInTwoDimensions", emptyTable},
    {"Block", [] { return block(2, 2); }},
    {"ReferenceToNoNumber", [] { return reference(VT_R8); }},
    {"ReferenceToNoObject", [] { return reference(VT_DISPATCH); }},
    {"ReferenceToNoArray", [] { return reference(VT_ARRAY | VT_VARIANT); }},
    {"ReferenceToNoValue", [] { return reference(VT_VARIANT); }},
    {"ReferenceToNumber", [] { return referenceTo(VT_R8, &referredNumber); }},
    {"ReferenceToText", [] { return referenceTo(VT_BSTR, &referredText().bstrVal); }},
    {"ReferenceToAmounts", [] { return referenceTo(VT_ARRAY | VT_VARIANT, &referredAmounts().parray); }},
    {"ReferenceToValue", [] { return referenceTo(VT_VARIANT, &referredValue()); }},
};

struct Reading {
    const char* call = nullptr; ///< of calls.tsv
    /// What is seen with the answer of this name; "-" as without fault.
    const char* (*seen)(std::string_view answer) = nullptr;
    const char* way = nullptr; ///< another than the one of the call
};

const char* workbook(std::string_view answer) {
    // Any object can be a workbook, though not one with packages.
    return answer == "OtherObject" ? "! Invalid package name" : "! No current workbook";
}

const char* callersLayout(std::string_view) { return "A1 | B2 | C3"; }

// A compound: by name, by number, or all.
const char* compound(std::string_view answer) {
    if (answer == "Empty" || answer == "ReferenceToNoNumber" || answer == "ReferenceToNoObject" ||
        answer == "ReferenceToNoArray" || answer == "ReferenceToNoValue") {
        return "A1 | B2 | C3";
    }
    if (answer == "ReferenceToNumber" || answer == "ReferenceToText" || answer == "ReferenceToValue") {
        return "B2";
    }
    if (answer == "NullText") {
        return "! Empty string is invalid for compound name";
    }
    if (answer.ends_with("Text") || answer == "Long" || answer == "Surrogate") {
        return "! Invalid compound name";
    }
    if (answer == "Whole") {
        return "A1";
    }
    if (answer == "Decimal") {
        return "A1 | B2 | C3"; // of zero
    }
    return "! Invalid value for compound - expected compound name or 1-based compound index (\"All\" or 0 "
           "for all "
           "compounds)";
}

const char* composition(std::string_view answer) {
    if (answer == "Block") {
        return "! unexpected dimension; array expected";
    }
    if (answer == "ReferenceToAmounts") {
        return "-";
    }
    const bool isNothing = answer == "Empty" || answer == "ReferenceToNumber" ||
                           answer == "ReferenceToValue" || answer == "NoArray" || answer == "NoNumbers" ||
                           answer == "NothingInTwoDimensions" || answer.starts_with("ReferenceToNo");
    return isNothing ? "! Unexpected number of values for composition" : "! not a real array";
}

// What stands in cells without a number.
const char* filler(std::string_view answer) {
    static constexpr std::string_view refused[] = {
        "Illegal", "NoObject",          "NoUnknown", "OtherObject",
        "NoArray", "NoNumbers",         "Texts",     "NothingInTwoDimensions",
        "Block",   "ReferenceToAmounts"};
    return std::ranges::find(refused, answer) == std::end(refused)
               ? "-"
               : "! Invalid value for noNumber - expected a single value";
}

const char* handOver(std::string_view) { return "not handed over"; }

// The front end gets what Excel said.
const char* asItIs(std::string_view) { return "<as it is>"; }

// Automation turns an element that is an object into the value that the object stands for.
const char* valueOfElement(std::string_view answer) {
    if (answer == "Whole") {
        return "800012.7309"; // with 1:1:2
    }
    if (answer == "Empty" || answer == "Decimal") {
        return "660010.503"; // with 0:1:2
    }
    if (answer == "ReferenceToNumber" || answer == "ReferenceToValue") {
        return "916681.2542"; // with 2:1:2
    }
    static const std::string longText =
        "! Failed to convert \"" + std::string(10000, 'x') + "\" to real value";
    static constexpr std::pair<std::string_view, const char*> texts[] = {
        {"NullText", "! Failed to convert \"\" to real value"},
        {"EmptyText", "! Failed to convert \"\" to real value"},
        {"Text", "! Failed to convert \"abc\" to real value"},
        {"Surrogate", "! Failed to convert \"\xEF\xBF\xBD\" to real value"},
        {"ReferenceToText", "! Failed to convert \"Beta\" to real value"},
    };
    const auto* const text = std::ranges::find(texts, answer, [](const auto& row) { return row.first; });
    return answer == "Long"          ? longText.c_str()
           : text != std::end(texts) ? text->second
                                     : "! Array contains values that are not numbers";
}

const Reading readings[] = {
    {"ActiveWorkbook", workbook},
    {"Caller", callersLayout},
    {"CallersRows", callersLayout},
    {"CallersColumns", callersLayout},
    {"CallersRowCount", callersLayout},
    {"ValueOfACell", compound},
    {"ValueOfCells", composition},
    {"AddIns", handOver},
    {"AddInsItem", handOver},
    {"AddInsObject", handOver},
    {"ValueForTheFrontEnd", asItIs},
    {"DefaultValue", valueOfElement},
    {"ValueOfACell", filler, "CapeOpenPhaseEquilibrium with a filler"},
};

struct Case {
    const Reading* reading;
    const Answer* answer;
};

std::string nameOf(const Case& tested) {
    const char* const way = tested.reading->way;
    return std::string{tested.reading->call} + (way == nullptr ? "" : inNames(way)) + "_" +
           tested.answer->name;
}

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const Reading& reading : readings) {
        for (const Answer& answer : answers) {
            cases.push_back({&reading, &answer});
        }
    }
    return cases;
}

class ExcelsAnswer : public Stage, public ::testing::WithParamInterface<Case> {};

TEST_P(ExcelsAnswer, IsJudged) {
    const Reading* const reading = GetParam().reading;
    const Answer* const answer = GetParam().answer;
    const Call& call = callNamed(reading->call);
    const std::string way = reading->way == nullptr ? call.way : reading->way;
    const com::com_ptr<FaultyObject> object = objectNamed(call.object);
    const std::wstring member = scripted::wide(call.method);
    const std::string result =
        go(way, [&] { object->instead(member, [make = answer->make] { return make(); }); });
    const std::string outcome = reading->seen(answer->name);
    EXPECT_EQ(result, outcome == "-"            ? healthy(way)
                      : outcome == "<as it is>" ? seen(answer->make())
                                                : outcome);
    object->readsAgain();
    expectHealthyAgain(way, result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, ExcelsAnswer, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

// --- Counts
// --------------------------------------------------------------------------------------------------------

struct Count {
    const char* name;
    com::variant (*make)();
    bool rows;    ///< a column, when there are so many rows
    bool columns; ///< a column, when there are so many columns
};

const Count counts[] = {
    {"One", [] { return com::variant{1L}; }, false, true},
    {"Two", [] { return com::variant{2L}; }, true, false},
    {"Zero", [] { return com::variant{0L}; }, false, false},
    {"Negative", [] { return com::variant{-3L}; }, false, false},
    {"Highest", [] { return com::variant{2147483647L}; }, true, false},
    {"Lowest", [] { return com::variant{-2147483647L - 1}; }, false, false},
    {"Real", [] { return com::variant{3.0}; }, false, false},
    {"Text", [] { return com::variant{L"3"}; }, false, false},
};

void PrintTo(const Count& tested, std::ostream* out) { *out << tested.name; }

class ExcelsCount : public Stage, public ::testing::WithParamInterface<Count> {};

TEST_P(ExcelsCount, OfRowsDecidesTheLayout) {
    const std::string way = "CapeOpenCompounds in a column";
    const std::string column = healthy(way);
    EXPECT_EQ(go(way, [&] { objectNamed("rows")->instead(L"Count", GetParam().make); }),
              GetParam().rows ? column : "A1 | B2 | C3");
}

TEST_P(ExcelsCount, OfColumnsDecidesTheLayout) {
    const std::string way = "CapeOpenCompounds in a column";
    const std::string column = healthy(way);
    EXPECT_EQ(go(way, [&] { objectNamed("columns")->instead(L"Count", GetParam().make); }),
              GetParam().columns ? column : "A1 | B2 | C3");
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, ExcelsCount, ::testing::ValuesIn(counts),
                         [](const auto& tested) { return tested.param.name; });

// --- The words of a failure
// ----------------------------------------------------------------------------------------

struct Words {
    const char* name;
    HRESULT code;
    std::wstring words;
    bool isNull;
};

void PrintTo(const Words& tested, std::ostream* out) { *out << tested.name; }

const Words allWords[] = {
    {"Given", S_OK, L"the cells are busy", false},
    {"GivenOtherwise", S_FALSE, L"the cells are busy", false},
    {"Empty", S_OK, L"", false},
    {"Null", S_OK, L"", true},
    {"Failing", E_FAIL, L"", true},
    {"FailsLeavingRubbish", E_FAIL, L"rubbish", false},
    {"Long", S_OK, std::wstring(10000, L'x'), false},
    {"HighSurrogate", S_OK, L"a\xD800z", false},
    {"LowSurrogate", S_OK, L"a\xDC00z", false},
    {"OfSeveralLines", S_OK, L"one\r\ntwo", false},
    {"WithZero", S_OK, std::wstring(L"one\0two", 7), false},
};

class ExcelsWords : public Stage, public ::testing::WithParamInterface<Words> {};

TEST_P(ExcelsWords, AreShown) {
    const Words& words = GetParam();
    for (const char* const name : {"ValueOfCells", "ValueForTheFrontEnd"}) {
        const std::string& way = callNamed(name).way;
        const std::string& object = callNamed(name).object;
        const std::string result = go(way, [&] {
            objectNamed(object)->failsToRead(L"Value", DISP_E_EXCEPTION);
            objectNamed(object)->describes(words.code,
                                           words.isNull ? std::nullopt : std::optional{words.words});
        });
        // Excel shows a text up to a zero, so that something else stands there.
        std::wstring shown = words.words;
        std::ranges::replace(shown, L'\0', L'\xFFFD');
        EXPECT_EQ(result,
                  "! Call to \"Value\" failed: " + (SUCCEEDED(words.code) ? scripted::narrow(shown) : ""));
        objectNamed(object)->readsAgain();
        expectHealthyAgain(way, result);
    }
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, ExcelsWords, ::testing::ValuesIn(allWords),
                         [](const auto& tested) { return tested.param.name; });

} // namespace

} // namespace faults
