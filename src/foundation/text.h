// Text helpers that know neither Automation nor CAPE-OPEN.
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

/// A-Z to a-z; every other character, letters outside ASCII included, stays as it is.
constexpr wchar_t foldAscii(wchar_t c) noexcept {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

std::wstring foldAscii(std::wstring_view text);

/// True when `text`, ASCII capitals folded, is exactly `keyword`, which must be in lower case.
bool matchesKeyword(std::wstring_view text, std::wstring_view keyword) noexcept;

/// Equal when ASCII capitals are folded on both sides.
bool equalsFoldingAscii(std::wstring_view a, std::wstring_view b) noexcept;

/// Equality as the user's locale sees it, capitals or not. A null text and an empty text are equal.
bool equalsNoCase(const wchar_t* a, const wchar_t* b) noexcept;

/// Order of names in lists shown to the user: by the user's locale, capitals or not.
bool precedesInList(const wchar_t* a, const wchar_t* b) noexcept;

/// A narrow UTF-8 text, such as the message of a standard exception, as a wide one. Null gives an empty text.
std::wstring utf8ToWide(const char* text);

/// `before` + `name` + `after` in one text: the form of most composed messages.
std::wstring joined(std::wstring_view before, std::wstring_view name, std::wstring_view after = {});

} // namespace quorvane
