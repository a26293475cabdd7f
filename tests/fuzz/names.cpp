// Keywords are found as a plain comparison finds them, the order of lists is an order, and a map of names
// behaves like a list of pairs.
#include "src/foundation/name_index_map.h"
#include "src/foundation/text.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cwctype>
#include <utility>

namespace fuzz {

namespace {

/// With each unit mapped; a text ends at a null character.
template <typename Fold>
std::wstring folded(const std::wstring& text, Fold fold) {
    std::wstring result = text.substr(0, text.find(L'\0'));
    std::ranges::transform(result, result.begin(), fold);
    return result;
}

wchar_t asciiLower(wchar_t unit) {
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
}
wchar_t lower(wchar_t unit) { return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(unit))); }

void requireOrder(const std::vector<std::wstring>& names) {
    const auto before = [](const std::wstring& a, const std::wstring& b) {
        return quorvane::precedesInList(a.c_str(), b.c_str());
    };
    std::vector<std::wstring> sorted = names;
    std::ranges::stable_sort(sorted, before);
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        require(!before(sorted[i], sorted[i - 1]), "a sorted list is in order");
        require(quorvane::equalsNoCase(sorted[i - 1].c_str(), sorted[i].c_str()) !=
                    before(sorted[i - 1], sorted[i]),
                "names are equal or one precedes the other");
    }
}

void requireKeywords(const std::wstring& text, const std::wstring& other) {
    std::wstring a = text, b = other;
    std::ranges::transform(a, a.begin(), asciiLower);
    std::ranges::transform(b, b.begin(), asciiLower);
    require(quorvane::foldAscii(text) == a, "ASCII capitals become small");
    require(quorvane::matchesKeyword(text, a), "a text matches its own small letters");
    require(quorvane::matchesKeyword(text, b) == (a == b), "a keyword is matched as folded text");
    require(quorvane::equalsFoldingAscii(text, other) == (a == b), "texts are compared as folded texts");
}

class NaiveMap {
  public:
    const std::int32_t* find(const std::wstring& key) const {
        const auto found = std::ranges::find(entries_, key, &Entry::first);
        return found == entries_.end() ? nullptr : &found->second;
    }
    bool put(const std::wstring& key, std::int32_t position, bool replaces) {
        const auto found = std::ranges::find(entries_, key, &Entry::first);
        if (found == entries_.end()) {
            entries_.emplace_back(key, position);
            return true;
        }
        found->second = replaces ? position : found->second;
        return false;
    }
    void clear() { entries_.clear(); }
    bool empty() const { return entries_.empty(); }

  private:
    using Entry = std::pair<std::wstring, std::int32_t>;
    std::vector<Entry> entries_;
};

/// Lines beginning with + enter a name, with = move it, with ! empty the map; every other is looked up. A
/// digit behind the sign makes the name long.
void requireMap(const std::vector<std::wstring>& lines) {
    quorvane::NameIndexMap map;
    NaiveMap expected;
    std::int32_t position = 0;
    for (const std::wstring& line : lines) {
        const wchar_t sign = line.empty() ? L' ' : line[0];
        std::wstring name = line.substr(std::min<std::size_t>(line.size(), 1));
        if (!name.empty() && name[0] >= L'1' && name[0] <= L'9') {
            name = repeated(name, 120 + static_cast<std::size_t>(name[0] - L'0'));
        }
        const std::wstring key = folded(name, lower);
        ++position;
        if (sign == L'+') {
            require(map.insert(name.c_str(), position) == expected.put(key, position, false),
                    "a name is entered once");
        } else if (sign == L'=') {
            map.assign(name.c_str(), position);
            expected.put(key, position, true);
        } else if (sign == L'!') {
            map.clear();
            expected.clear();
        }
        const auto found = map.find(name.c_str());
        const std::int32_t* const there = expected.find(key);
        require(found.has_value() == (there != nullptr) && (!found || *found == *there),
                "a name is found as in a list");
        require(map.empty() == expected.empty(), "the map is empty when the list is");
    }
}

} // namespace

void run(Input input) {
    constexpr std::size_t most = 60;
    std::vector<std::wstring> lines = parts(wide(input.text()), L'\n');
    lines.resize(std::min(lines.size(), most));
    requireMap(lines);
    requireOrder(lines);
    requireKeywords(lines.front(), lines.back());
}

} // namespace fuzz
