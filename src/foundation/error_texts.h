// Texts of failure codes, for people.
#pragma once

#include "com/owned.h"

#include <string>
#include <string_view>

namespace quorvane {

/// A text of the system without the one line ending that it comes with; "<unknown error>" when nothing is
/// left.
std::wstring withoutLineEnding(std::wstring_view text);

/// The system's own text of `code` without its line ending; "error code 0x........" when it has none.
std::wstring systemErrorText(HRESULT code);

/// Whether a call that ended with `result` gave words. What a failing one left in `text` is let go without
/// being freed: it must be null then, but a careless component leaves anything.
bool gaveText(HRESULT result, com::unique_bstr& text) noexcept;

/// What `object`, whose call failed with `code`, says about it: for a CAPE-OPEN code the description of its
/// ECapeUser, else the name of its ECapeRoot, else the code's own text. Other codes are the system's, and the
/// object is not asked.
std::wstring capeErrorText(IUnknown* object, HRESULT code);

/// Throws WStrException with `context` before capeErrorText when `code` is a failure.
void requireSuccess(HRESULT code, IUnknown* object, std::wstring_view context);

} // namespace quorvane
