#include "tests/conformance/argument_kinds.h"

#include "com/safe_array.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

namespace conformance {

namespace {

using namespace tests;
using sheet::excel::Range;
using Limits = std::numeric_limits<double>;

com::variant typed(VARTYPE type) {
    const com::variant two{2.0};
    return std::move(*com::convert(two, type));
}

com::variant error(SCODE code) {
    com::variant value;
    value.vt = VT_ERROR;
    value.scode = code;
    return value;
}
com::variant notAvailable() { return error(static_cast<SCODE>(0x800A07FAU)); }
com::variant valueError() { return error(static_cast<SCODE>(0x800A07DFU)); }

// 2, 1, 1 in one dimension, along a row or down a column.
com::variant arrayOf(com::unique_safearray array) {
    {
        const com::array_lock<VARIANT> lock{array.get()};
        double value = 2.0;
        for (VARIANT& element : lock.elements()) {
            element = number(value).release();
            value = 1.0;
        }
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

com::com_ptr<Range> block() {
    std::vector<com::variant> values;
    for (const double value : {2.0, 1.0, 1.0, 2.0}) {
        values.push_back(number(value));
    }
    return com::make<Range>(2U, 2U, std::move(values));
}

com::variant nullOf(VARTYPE type) {
    com::variant value;
    value.vt = type;
    value.punkVal = nullptr;
    return value;
}

constexpr auto all = std::to_array<Kind>({
    {"LeftOut", [] { return omitted(); }},
    {"Empty", [] { return com::variant{}; }},
    {"EmptyCell", [] { return emptyCell(); }},
    {"Number", [] { return number(2.0); }},
    {"WholeNumber", [] { return typed(VT_I4); }},
    {"ShortNumber", [] { return typed(VT_I2); }},
    {"SinglePrecision", [] { return typed(VT_R4); }},
    {"CellWithNumber", [] { return cell(number(2.0)); }},
    {"Date", [] { return typed(VT_DATE); }},
    {"CellWithDate", [] { return cell(typed(VT_DATE)); }},
    {"Currency", [] { return typed(VT_CY); }},
    {"CellWithCurrency", [] { return cell(typed(VT_CY)); }},
    {"Word", [] { return text(L"sideways"); }},
    {"CellWithWord", [] { return cell(text(L"sideways")); }},
    {"NumberAsText", [] { return text(L"2"); }},
    {"EmptyText", [] { return text(L""); }},
    {"CellWithEmptyText", [] { return cell(text(L"")); }},
    {"NullText", [] { return com::variant{com::unique_bstr{}}; }},
    {"True", [] { return truth(true); }},
    {"False", [] { return truth(false); }},
    {"CellWithTrue", [] { return cell(truth(true)); }},
    {"CellWithFalse", [] { return cell(truth(false)); }},
    {"Row", [] { return range(Range::row(number(2.0), number(1.0), number(1.0))); }},
    {"Column", [] { return range(Range::column(number(2.0), number(1.0), number(1.0))); }},
    {"Block", [] { return range(block()); }},
    {"BlockConstant", [] { return arrayOf(com::makeMatrix(VT_VARIANT, 2, 2)); }},
    {"RowConstant", [] { return arrayOf(com::makeMatrix(VT_VARIANT, 1, 3)); }},
    {"ColumnConstant", [] { return arrayOf(com::makeMatrix(VT_VARIANT, 3, 1)); }},
    {"ListConstant", [] { return arrayOf(com::makeVector(VT_VARIANT, 3)); }},
    {"ConstantOfOne", [] { return arrayOf(com::makeMatrix(VT_VARIANT, 1, 1)); }},
    {"Reals",
     [] {
         return scripted::reals({2.0, 1.0, 1.0});
     }},
    {"Texts",
     [] {
         return scripted::texts({L"a", L"b", L"c"});
     }},
    {"NoArray", [] { return com::variant::array({}, VT_VARIANT); }},
    {"NotAvailable", [] { return notAvailable(); }},
    {"ValueError", [] { return valueError(); }},
    {"CellWithNotAvailable", [] { return cell(notAvailable()); }},
    {"CellWithValueError", [] { return cell(valueError()); }},
    {"NullObject", [] { return nullOf(VT_DISPATCH); }},
    {"NullUnknown", [] { return nullOf(VT_UNKNOWN); }},
    {"ForeignObject",
     [] { return com::variant::object(com::make<sheet::excel::Workbook>(L"Book2")->dispatch()); }},
    {"NullValue", [] { return nullOf(VT_NULL); }},
    {"NotANumber", [] { return number(Limits::quiet_NaN()); }},
    {"Infinity", [] { return number(Limits::infinity()); }},
    {"Huge", [] { return number(1e300); }},
    {"Lowest", [] { return number(Limits::lowest()); }},
});

// The first rule that lists the kind decides; a rule without kinds decides for the rest.
struct Rule {
    std::string_view kinds;
    std::string_view outcome;
};
using Rules = std::vector<Rule>;

constexpr std::string_view two = "Number WholeNumber ShortNumber SinglePrecision CellWithNumber Date "
                                 "CellWithDate Currency CellWithCurrency";
constexpr std::string_view anyText = "Word CellWithWord NumberAsText EmptyText CellWithEmptyText";
constexpr std::string_view leftOut = "LeftOut Empty EmptyCell NotAvailable ValueError";
constexpr std::string_view boundless = "NotANumber Infinity Huge Lowest";

// A required text: a text, or what Automation makes a text of.
Rules requiredText(std::string_view empty, std::string_view unknown) {
    return {{"LeftOut Empty EmptyCell EmptyText CellWithEmptyText NullText", empty},
            {"Word CellWithWord NumberAsText True False CellWithTrue CellWithFalse", unknown},
            {two, unknown},
            {boundless, unknown},
            {{}, "! Invalid value for % - expected string value"}};
}

// A required number; TRUE is -1 to Automation.
Rules requiredNumber(std::string_view missing, std::string_view zero, std::string_view negative) {
    return {{"LeftOut Empty EmptyCell Lowest", missing},
            {"NotANumber", missing == "as LeftOut" ? "a result" : missing},
            {two, "as Number"},
            {"NumberAsText", "as Number"},
            {"False CellWithFalse", zero},
            {"True CellWithTrue", negative},
            {"Infinity Huge", "a result"},
            {{}, "! Invalid value for % - expected real value"}};
}

Rules orientation(std::string_view invalid) {
    return {{leftOut, "as LeftOut"},
            {anyText, "as LeftOut"},
            {"NullText False CellWithFalse", "as LeftOut"},
            {two, "as Number"},
            {{}, invalid}};
}

Rules selection(std::string_view unknown, std::string_view invalid) {
    return {{leftOut, "as LeftOut"}, {"False CellWithFalse", "as LeftOut"},
            {two, "as Number"},      {anyText, unknown},
            {"NullText", unknown},   {{}, invalid}};
}

Rules rulesFor(Role role) {
    constexpr std::string_view unknownProperty = "! Invalid/unknown property \"<name>\"";
    switch (role) {
    case Role::package:
        return requiredText("! Empty string is not valid for package name", "! Invalid package name");
    case Role::property:
        return requiredText("! Empty string is not valid for property name", unknownProperty);
    case Role::constant:
        return requiredText("! Empty string is not valid for constant name", unknownProperty);
    case Role::phase:
        return requiredText("! Empty string is not valid for phase name", "! There is no phase <name>");
    case Role::condition1:
        return requiredText("! Empty string is not valid for condition 1 name", unknownProperty);
    case Role::condition2:
        return requiredText("! Empty string is not valid for condition 2 name", unknownProperty);
    case Role::unit: {
        // A text without characters is a name that nobody knows.
        Rules rules = requiredText("! Property name not specified", unknownProperty);
        rules.insert(rules.begin(), {"EmptyText CellWithEmptyText", "! Invalid/unknown property \"\""});
        rules.insert(rules.begin(), {"NullText", "a failure"});
        return rules;
    }
    case Role::freeReal:
        return requiredNumber("as LeftOut", "a result", "a result");
    case Role::temperature:
        return requiredNumber("! Temperature not specified", "! Temperature must be positive",
                              "! Temperature must be positive");
    case Role::pressure:
        return requiredNumber("! Pressure not specified", "! Pressure must be positive",
                              "! Pressure must be positive");
    case Role::conditionValue1:
        return requiredNumber("! Condition 1 not specified", "a result", "a result");
    case Role::conditionValue2:
        return requiredNumber("! Condition 2 not specified", "a result", "a result");
    case Role::basis:
        return {{"LeftOut Empty EmptyText NullText NotAvailable ValueError", "as LeftOut"},
                {"Word NumberAsText", "! Invalid basis \"<text>\""},
                {{}, "! Invalid value for basis - expected string value"}};
    case Role::listOrientation:
        return orientation("! Invalid value for orientation - expected \"Auto\" (default,0), \"Horizontal\" "
                           "(1) or \"Vertical\" (2)");
    case Role::matrixOrientation:
        return orientation("! Invalid value for orientation - expected \"Auto\" (default,0), \"Horizontal\" "
                           "(1), \"Vertical\" (2) or \"Matrix\" (3)");
    case Role::unreadOrientation:
        return {{{}, "as LeftOut"}};
    case Role::compound:
        return selection("! Invalid compound name",
                         "! Invalid value for compound - expected compound name or 1-based compound index "
                         "(\"All\" or 0 for all compounds)");
    case Role::phaseSelection:
        return selection("! Invalid phase name", "! Invalid value for phase - expected phase name or 1-based "
                                                 "phase index (\"All\" or 0 for all phases)");
    case Role::derivativePhase: {
        constexpr std::string_view invalid = "! Invalid value for compositionDerivativePhase - expected "
                                             "\"Both\" (default,0), \"Phase 1\" (1), "
                                             "\"Phase 2\" (1) or one of the two specified phase names";
        return selection(invalid, invalid);
    }
    case Role::flag:
        return {{leftOut, "as LeftOut"},
                {two, "as True"},
                {"NumberAsText True CellWithTrue Infinity Huge Lowest NotANumber", "as True"},
                {"CellWithFalse", "as False"},
                {"False", "a result"},
                {{}, "! Invalid value for % - expected bool value"}};
    case Role::composition:
        return {{"LeftOut NotAvailable ValueError", "! value not specified"},
                {"Empty EmptyCell Number CellWithNumber ConstantOfOne NoArray",
                 "! Unexpected number of values for <composition>"},
                {boundless, "! Unexpected number of values for <composition>"},
                {"Row", "a result"},
                {"Column RowConstant ColumnConstant ListConstant Reals", "as Row"},
                {"Block BlockConstant", "! unexpected dimension; array expected"},
                {{}, "! not a real array"}};
    case Role::options:
        return {
            {leftOut, "as LeftOut"},
            {"EmptyText CellWithEmptyText NullText", "as LeftOut"},
            {"Word CellWithWord NumberAsText", unknownProperty},
            {{},
             "! Unexpected value for options; expected a string consisting of comma separated values of "
             "zero or more 'overallResults', 'noPhaseResults', 'noTemperature', 'noPressure', "
             "'noPhaseFraction', 'noComposition', 'normal', 'retrograde', or one or more property names"}};
    case Role::filler:
        // An error in a formula cannot be told from an argument that is left out; one in a cell can, and who
        // refers to it wants the absent phase to show it: charts skip #N/A.
        return {{"Row Column Block BlockConstant RowConstant ColumnConstant ListConstant ConstantOfOne Reals "
                 "Texts NoArray "
                 "NullObject NullUnknown ForeignObject",
                 "! Invalid value for noNumber - expected a single value"},
                {leftOut, "fills with EmptyText"},
                {"EmptyText CellWithEmptyText NullText", "fills with EmptyText"},
                {"CellWithNotAvailable", "fills with NotAvailable"},
                {"CellWithValueError", "fills with ValueError"},
                {"Number CellWithNumber", "fills with Number"},
                {"WholeNumber", "fills with WholeNumber"},
                {"ShortNumber", "fills with ShortNumber"},
                {"SinglePrecision", "fills with SinglePrecision"},
                {"Date CellWithDate", "fills with Date"},
                {"Currency CellWithCurrency", "fills with Currency"},
                {"Word CellWithWord", "fills with Word"},
                {"NumberAsText", "fills with NumberAsText"},
                {"True CellWithTrue", "fills with True"},
                {"False CellWithFalse", "fills with False"},
                {"NullValue", "fills with NullValue"},
                {"NotANumber", "fills with NotANumber"},
                {"Infinity", "fills with Infinity"},
                {"Huge", "fills with Huge"},
                {"Lowest", "fills with Lowest"}};
    }
    throw std::logic_error{"a role without rules"};
}

bool lists(std::string_view names, std::string_view name) {
    for (std::size_t at = 0; (at = names.find(name, at)) != std::string_view::npos; ++at) {
        const std::size_t end = at + name.size();
        if ((at == 0 || names[at - 1] == ' ') && (end == names.size() || names[end] == ' ')) {
            return true;
        }
    }
    return false;
}

} // namespace

std::span<const Kind> kinds() { return all; }

const Kind& kindNamed(std::string_view name) { return *std::ranges::find(all, name, &Kind::name); }

std::string_view outcome(Role role, std::string_view kind) {
    for (const Rule& rule : rulesFor(role)) {
        if (rule.kinds.empty() || lists(rule.kinds, kind)) {
            return rule.outcome;
        }
    }
    throw std::logic_error{"a kind without a rule"};
}

} // namespace conformance
