#include "tests/faults/expect.h"

namespace faults {

namespace {

std::string replaced(std::string text, const std::string& part, const std::string& by) {
    if (const auto at = text.find(part); at != std::string::npos) {
        text.replace(at, part.size(), by);
    }
    return text;
}

} // namespace

std::string joinedList(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += (&part == &parts.front() ? "" : " | ") + part;
    }
    return text;
}

VARTYPE elementType(const ArrayRow& row) {
    return row.element == "text" ? VT_BSTR : row.element == "number" ? VT_R8 : VT_VARIANT;
}

std::string outcomeOf(const ArrayRow& row, Effect effect, bool followsReferences) {
    switch (effect) {
    case Effect::same:
        return "-";
    case Effect::none:
        return row.none;
    case Effect::fewer:
        return row.fewer;
    case Effect::more:
        return row.more;
    case Effect::reference:
        return followsReferences ? "-" : row.wrong;
    case Effect::nullReference:
        return followsReferences ? row.none : row.wrong;
    default:
        return row.wrong;
    }
}

std::string checkText(const ArrayRow& row, Effect effect) {
    if (effect == Effect::shape) {
        return "unexpected dimension; 1-dimensional array expected";
    }
    if (effect == Effect::unreadable) {
        return "failed to access array data";
    }
    return std::string{"Expected an array of type "} + (row.element == "text"     ? "string"
                                                        : row.element == "number" ? "double precision"
                                                                                  : "VARIANT");
}

std::string seenOutcome(std::string outcome, const std::string& check, const ValueFault* fault,
                        const std::string& text, const std::string& without) {
    const std::string name = fault == nullptr ? "" : fault->name;
    std::vector<std::string> parts = split(without, " | ");
    if (outcome == "-") {
        return without;
    }
    if (outcome.starts_with("= ")) {
        return outcome.substr(2);
    }
    if (outcome == "<as it is>") {
        return name == "Empty" ? "empty" : "";
    }
    if (outcome == "<only>") {
        return text;
    }
    if (outcome == "<with the first>") {
        parts.front() = text;
        return joinedList(parts);
    }
    if (outcome == "<and zzz>" && name == "AHundredThousand") {
        parts.resize(40, "zzz");
        return joinedList(parts) + " ... of 100000";
    }
    if (outcome == "<and zzz>") {
        return without + " | zzz";
    }
    // A name ends at a zero.
    outcome = replaced(outcome, "<text>", text.substr(0, text.find('\0')));
    return "! " + replaced(outcome, "<check>", check);
}

} // namespace faults
