// NameIndexMap: from a compound or phase name of a package to its position. Names match whatever their case,
// by the run-time library's lower-case mapping; a look-up copies nothing (names up to 126 characters are
// folded on the stack).
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorvane {

/// 32-bit FNV-1 (multiply, then exclusive-or) over the units of `text`.
/// Source: Fowler, Noll, Vo; offset basis 0x811C9DC5, prime 0x01000193.
constexpr std::uint32_t fnv1(std::wstring_view text) noexcept {
    std::uint32_t hash = 0x811C9DC5U;
    for (const wchar_t unit : text) {
        hash = (hash * 0x01000193U) ^ static_cast<std::uint32_t>(unit);
    }
    return hash;
}

/// A key of the map: a terminated wide text, owned or referred to.
class StringMapKey {
  public:
    virtual const wchar_t* text() const noexcept = 0;
    virtual ~StringMapKey() = default;

  protected:
    StringMapKey() = default;
    StringMapKey(const StringMapKey&) = default;
    StringMapKey& operator=(const StringMapKey&) = default;
};

/// Owns its text; what the map's entries hold.
class StringMapKeyString final : public StringMapKey {
  public:
    explicit StringMapKeyString(const StringMapKey& other) : text_{other.text()} {}
    const wchar_t* text() const noexcept override { return text_.c_str(); }

  private:
    std::wstring text_;
};

/// Refers to a text that somebody else owns; what a look-up uses.
class StringMapKeyPtr final : public StringMapKey {
  public:
    explicit StringMapKeyPtr(const wchar_t* text) noexcept : text_{text} {}
    const wchar_t* text() const noexcept override { return text_; }

  private:
    const wchar_t* text_;
};

class NameIndexMap {
  public:
    /// Enters `name` with `position`. A name already present keeps its position; the result tells whether it
    /// was entered.
    bool insert(const wchar_t* name, std::int32_t position);
    /// Enters `name`, or moves a name already present to `position`.
    void assign(const wchar_t* name, std::int32_t position);
    std::optional<std::int32_t> find(const wchar_t* name) const;

    bool empty() const noexcept { return entries_.empty(); }
    void clear() noexcept { entries_.clear(); }

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const StringMapKey& key) const noexcept { return fnv1(key.text()); }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(const StringMapKey& a, const StringMapKey& b) const noexcept;
    };

    std::unordered_map<StringMapKeyString, std::int32_t, Hash, Equal> entries_;
};

} // namespace quorvane
