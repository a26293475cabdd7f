// Options are what a look at one word after the other finds, and options written again are the same.
#include "src/udf/equilibrium_options.h"

#include "src/foundation/exceptions.h"
#include "tests/fuzz/fuzz.h"

#include <optional>

namespace fuzz {

namespace {

using quorvane::udf::EquilibriumOptions;

std::wstring lower(std::wstring text) {
    for (wchar_t& unit : text) {
        unit = unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
    }
    return text;
}

// A text from Excel may hold a null character, and names of properties end there.
const quorvane::PropertyInfo* propertyOf(const std::wstring& token) {
    const quorvane::PropertyInfo* const info = quorvane::catalogue().find(token.c_str());
    return info != nullptr && info->propType == quorvane::PropType_SinglePhase &&
                   info->derivType == quorvane::Derivative_None
               ? info
               : nullptr;
}

/// Nothing when a word is refused.
std::optional<EquilibriumOptions> naivelyParsed(const std::wstring& text) {
    EquilibriumOptions options;
    for (const std::wstring& token : text.empty() ? std::vector<std::wstring>{} : parts(text, L',')) {
        const std::wstring word = lower(token);
        if (word == L"overallresults") {
            options.overallResults = true;
        } else if (word == L"nophaseresults") {
            options.phaseResults = false;
        } else if (word == L"notemperature") {
            options.temperature = false;
        } else if (word == L"nopressure") {
            options.pressure = false;
        } else if (word == L"nophasefraction") {
            options.phaseFraction = false;
        } else if (word == L"nocomposition") {
            options.composition = false;
        } else if (word == L"transpose") {
            options.transpose = true;
        } else if ((word == L"normal" || word == L"retrograde") && options.solutionType.empty()) {
            options.solutionType = word;
        } else if (const quorvane::PropertyInfo* const info = propertyOf(token)) {
            options.extraProperties.push_back({token, info});
        } else {
            return std::nullopt;
        }
    }
    return options;
}

std::optional<EquilibriumOptions> parsed(const std::wstring& text) {
    try {
        return quorvane::udf::parseEquilibriumOptions(text);
    } catch (const quorvane::WException& refusal) {
        require(refusal.length() > 0, "a refusal says why");
        return std::nullopt;
    }
}

std::wstring written(const EquilibriumOptions& options) {
    std::wstring text;
    const auto add = [&text](bool wanted, const std::wstring& word) {
        text += wanted ? (text.empty() ? word : L"," + word) : L"";
    };
    for (const auto& extra : options.extraProperties) {
        add(true, extra.name);
    }
    add(!options.solutionType.empty(), options.solutionType);
    add(options.overallResults, L"OverallResults");
    add(!options.phaseResults, L"noPhaseResults");
    add(!options.temperature, L"NOTEMPERATURE");
    add(!options.pressure, L"nopressure");
    add(!options.phaseFraction, L"noPhaseFraction");
    add(!options.composition, L"noComposition");
    add(options.transpose, L"transpose");
    return text;
}

bool isSame(const EquilibriumOptions& a, const EquilibriumOptions& b) {
    const auto sameExtra = [](const auto& x, const auto& y) { return x.name == y.name && x.info == y.info; };
    return a.overallResults == b.overallResults && a.phaseResults == b.phaseResults &&
           a.temperature == b.temperature && a.pressure == b.pressure && a.phaseFraction == b.phaseFraction &&
           a.composition == b.composition && a.transpose == b.transpose && a.solutionType == b.solutionType &&
           std::equal(a.extraProperties.begin(), a.extraProperties.end(), b.extraProperties.begin(),
                      b.extraProperties.end(), sameExtra);
}

} // namespace

void run(Input input) {
    const std::wstring text = wide(input.text());
    const auto options = parsed(text), expected = naivelyParsed(text);
    require(options.has_value() == expected.has_value(), "refused as word by word");
    if (options) {
        require(isSame(*options, *expected), "read as word by word");
        const auto again = parsed(written(*options));
        require(again && isSame(*options, *again), "written again it is the same");
    }
}

} // namespace fuzz
