// Reading what clients and materials pass: texts, lists and numbers in VARIANTs of every form met in
// practice. Names are compared without case. UNDEFINED has three forms, and all mean the same: nothing at
// all, an empty text, the word itself.
#pragma once

#include "com/owned.h"
#include "packages/peng_robinson/com/cape_error.h"
#include "packages/peng_robinson/dialog/utf8.h"

#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

enum class Basis { undefined, mole, mass };

bool isSameName(std::wstring_view a, std::wstring_view b) noexcept;
bool isUndefined(std::wstring_view text) noexcept;
bool isUndefined(const VARIANT& value) noexcept;

/// `position` is that of the argument, for the error. Throws ArgumentError for a word that names no basis.
Basis readBasis(std::wstring_view text, short position);

/// The texts of a one-dimensional array, or one text. Null texts become empty ones. Throws ArgumentError for
/// anything else; `what` names the argument in its message ("property names").
std::vector<std::wstring> readTexts(const VARIANT& value, const wchar_t* what, short position);

/// The numbers of a one-dimensional array, or one number. Throws ArgumentError for anything else.
std::vector<double> readReals(const VARIANT& value, const wchar_t* what, short position);

/// Replaces what an [in, out] argument held. Throws CapeError for a null pointer.
void replaceValue(VARIANT* inOut, com::variant value);

/// Fills an [out, retval] argument, which the caller need not have initialised. Throws CapeError for a null
/// pointer.
void returnValue(VARIANT* out, com::variant value);

/// Throws CapeError with E_POINTER when the caller gave no place for the result.
void requirePointer(const void* out);

} // namespace peng_robinson
