#include "src/foundation/exceptions.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace quorvane {

// Whoever shows a text ends it at a null character, which a user's or a package's own words may contain; what
// follows them is to be seen as well.
WStrException::WStrException(std::wstring message) : message_{std::move(message)} {
    std::ranges::replace(message_, L'\0', L'\xFFFD');
}

const wchar_t* WStrException::message() const noexcept { return message_.c_str(); }

std::size_t WStrException::length() const noexcept { return message_.size(); }

CWStrException::CWStrException(const wchar_t* message) noexcept : message_{message} {}

const wchar_t* CWStrException::message() const noexcept { return message_; }

std::size_t CWStrException::length() const noexcept {
    return message_ == nullptr ? 0 : std::wcslen(message_);
}

} // namespace quorvane
