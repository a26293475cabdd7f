#include "src/foundation/exceptions.h"

#include <cwchar>
#include <utility>

namespace quorvane {

WStrException::WStrException(std::wstring message) : message_{std::move(message)} {}

const wchar_t* WStrException::message() const noexcept { return message_.c_str(); }

std::size_t WStrException::length() const noexcept { return message_.size(); }

CWStrException::CWStrException(const wchar_t* message) noexcept : message_{message} {}

const wchar_t* CWStrException::message() const noexcept { return message_; }

std::size_t CWStrException::length() const noexcept {
    return message_ == nullptr ? 0 : std::wcslen(message_);
}

} // namespace quorvane
