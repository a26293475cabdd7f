// A name is found when, and as, a look along the whole vocabulary finds it; units change as letter by letter.
#include "src/catalogue/property_catalogue.h"

#include "src/foundation/exceptions.h"
#include "tests/fuzz/fuzz.h"
#include "tests/src/catalogue/expected_properties.h"

#include <algorithm>

namespace fuzz {

namespace {

using quorvane::PropertyInfo;

bool sameButForCapitals(std::wstring_view a, std::wstring_view b) {
    const auto fold = [](wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; };
    return std::ranges::equal(a, b, {}, fold, fold);
}

const PropertyInfo* naivelyFound(std::wstring_view name) {
    const auto found = std::ranges::find_if(quorvane::expectedProperties, [name](const PropertyInfo& info) {
        return sameButForCapitals(info.propName, name);
    });
    return found == std::end(quorvane::expectedProperties) ? nullptr : found;
}

/// A name ends at a null character.
void requireFound(const std::wstring& text) {
    const std::wstring name = text.substr(0, text.find(L'\0'));
    const PropertyInfo* const expected = naivelyFound(name);
    const PropertyInfo* const found = quorvane::catalogue().find(name);
    require((found == nullptr) == (expected == nullptr), "found as in the vocabulary");
    if (found != nullptr) {
        require(std::wstring_view{found->propName} == expected->propName, "the entry has its own name");
        require(found->propType == expected->propType && found->derivType == expected->derivType &&
                    found->rank == expected->rank,
                "the entry is that of the vocabulary");
        require(&quorvane::lookupProperty(name.c_str()) == found, "both look-ups find the same");
        return;
    }
    try {
        quorvane::lookupProperty(name.c_str());
        require(false, "an unknown name is refused");
    } catch (const quorvane::WStrException& refusal) {
        require(refusal.message() == L"Invalid/unknown property \"" + name + L"\"",
                "a refusal names the name");
    }
}

std::wstring naiveMassUnit(std::wstring_view unit) {
    std::wstring result;
    while (!unit.empty()) {
        const bool isMole = unit.starts_with(L"mol");
        result += isMole ? std::wstring_view{L"kg"} : unit.substr(0, 1);
        unit.remove_prefix(isMole ? 3 : 1);
    }
    return result;
}

void requireDerivativeUnit(const std::wstring& unit) {
    const std::wstring_view whole{unit.c_str()};
    for (const std::wstring suffix : {L"/K", L"/Pa", L"/mol"}) {
        const std::wstring result = quorvane::derivativeUnit(unit.c_str(), suffix);
        const bool divided = whole.find(suffix) != std::wstring_view::npos;
        require(result.size() == whole.size() + (divided ? 1 : suffix.size()),
                "a unit grows by an exponent or by the suffix");
        require(result.find(divided ? suffix + L"2" : suffix) != std::wstring::npos, "and holds it");
    }
}

} // namespace

/// The first line chooses a known name (by two bytes) that is looked up too, with some letters' case changed.
void run(Input input) {
    const std::size_t known = input.word();
    const std::size_t capital = input.byte();
    const std::wstring text = wide(input.text());
    for (const std::wstring& name : parts(text, L'\n')) {
        requireFound(name);
    }
    std::wstring name =
        quorvane::expectedProperties[known % std::size(quorvane::expectedProperties)].propName;
    wchar_t& letter = name[capital % name.size()];
    letter = letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - 32) : letter;
    require(quorvane::catalogue().find(name) != nullptr, "capitals do not count");
    requireFound(name);
    requireFound(name + text);
    require(quorvane::massUnitOf(text) == naiveMassUnit(text), "moles become kilograms from the left");
    requireDerivativeUnit(text);
}

} // namespace fuzz
