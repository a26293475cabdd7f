#include "src/foundation/name_index_map.h"

#include <cwchar>
#include <cwctype>

#ifdef _WIN32
#include <windows.h>
#endif

namespace quorvane {

namespace {

// The lower-case form of a name: on the stack for ordinary names, on the heap for those of 127 units or more.
class FoldedName {
  public:
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): only what is written is read, at every look-up
    explicit FoldedName(const wchar_t* name) {
        const std::size_t length = std::wcslen(name);
        wchar_t* out = inline_.data();
        if (length + 1 >= inline_.size()) {
            heap_.resize(length + inline_.size());
            out = heap_.data();
        }
        for (std::size_t i = 0; i < length; ++i) {
            out[i] = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(name[i])));
        }
        out[length] = L'\0';
        key_ = out;
    }
    FoldedName(const FoldedName&) = delete;
    FoldedName& operator=(const FoldedName&) = delete;

    StringMapKeyPtr key() const noexcept { return StringMapKeyPtr{key_}; }

  private:
    std::array<wchar_t, 128> inline_;
    std::vector<wchar_t> heap_;
    const wchar_t* key_ = nullptr;
};

} // namespace

bool NameIndexMap::Equal::operator()(const StringMapKey& a, const StringMapKey& b) const noexcept {
    if (std::wcscmp(a.text(), b.text()) == 0) {
        return true;
    }
#ifdef _WIN32
    // What Windows takes for equal besides, for instance with and without a soft hyphen; it takes its time.
    return lstrcmpW(a.text(), b.text()) == 0;
#else
    return false;
#endif
}

bool NameIndexMap::insert(const wchar_t* name, std::int32_t position) {
    const FoldedName folded{name};
    return entries_.try_emplace(StringMapKeyString{folded.key()}, position).second;
}

void NameIndexMap::assign(const wchar_t* name, std::int32_t position) {
    const FoldedName folded{name};
    entries_.insert_or_assign(StringMapKeyString{folded.key()}, position);
}

std::optional<std::int32_t> NameIndexMap::find(const wchar_t* name) const {
    const FoldedName folded{name};
    const auto entry = entries_.find(static_cast<const StringMapKey&>(StringMapKeyPtr{folded.key()}));
    if (entry == entries_.end()) {
        return std::nullopt;
    }
    return entry->second;
}

} // namespace quorvane
