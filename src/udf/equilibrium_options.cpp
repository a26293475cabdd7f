#include "src/udf/equilibrium_options.h"

#include "src/foundation/exceptions.h"
#include "src/foundation/text.h"

namespace quorvane::udf {

namespace {

struct Switch {
    const wchar_t* word;
    bool EquilibriumOptions::*option;
    bool value;
};

constexpr Switch switches[] = {
    {L"overallresults", &EquilibriumOptions::overallResults, true},
    {L"nophaseresults", &EquilibriumOptions::phaseResults, false},
    {L"notemperature", &EquilibriumOptions::temperature, false},
    {L"nopressure", &EquilibriumOptions::pressure, false},
    {L"nophasefraction", &EquilibriumOptions::phaseFraction, false},
    {L"nocomposition", &EquilibriumOptions::composition, false},
    {L"transpose", &EquilibriumOptions::transpose, true},
};

constexpr const wchar_t* solutionTypes[] = {L"normal", L"retrograde"};

bool readSwitch(std::wstring_view token, EquilibriumOptions& options) {
    for (const Switch& known : switches) {
        if (matchesKeyword(token, known.word)) {
            options.*known.option = known.value;
            return true;
        }
    }
    return false;
}

bool readSolutionType(std::wstring_view token, EquilibriumOptions& options) {
    for (const wchar_t* known : solutionTypes) {
        if (matchesKeyword(token, known)) {
            if (!options.solutionType.empty()) {
                throw CWStrException{L"Multiple solution type specifications"};
            }
            options.solutionType = known;
            return true;
        }
    }
    return false;
}

ExtraProperty readExtraProperty(std::wstring_view token) {
    ExtraProperty extra{std::wstring{token}, nullptr};
    const PropertyInfo& info = lookupProperty(extra.name.c_str());
    if (info.propType != PropType_SinglePhase || info.derivType != Derivative_None) {
        throw WStrException{
            joined(L"Property \"", token, L"\" is not supported as phase equilibrium calculation output")};
    }
    extra.info = &info;
    return extra;
}

} // namespace

EquilibriumOptions parseEquilibriumOptions(std::wstring_view text) {
    EquilibriumOptions options;
    for (bool more = !text.empty(); more;) {
        const std::size_t comma = text.find(L',');
        const std::wstring_view token = text.substr(0, comma);
        if (!readSwitch(token, options) && !readSolutionType(token, options)) {
            options.extraProperties.push_back(readExtraProperty(token));
        }
        more = comma != std::wstring_view::npos;
        text.remove_prefix(more ? comma + 1 : text.size());
    }
    return options;
}

} // namespace quorvane::udf
