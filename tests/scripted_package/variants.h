// Automation values for tests: odd arrays that com/safe_array.h does not make, values read back as C++ ones,
// and values as a person would write them.
#pragma once

#include "com/safe_array.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace scripted {

/// What a person would write: 1.5, water, null, empty, [1, 2], [water, null], object. UTF-8.
std::string textOf(const VARIANT& value);
std::string narrow(std::wstring_view text);
std::wstring wide(std::string_view text);

/// The elements of a VT_R8 array with any bounds; throws std::runtime_error for anything else.
std::vector<double> realsOf(const VARIANT& value);
/// The elements of a VT_BSTR array with any bounds; throws std::runtime_error for anything else.
std::vector<std::wstring> textsOf(const VARIANT& value);

com::variant reals(std::initializer_list<double> values);
/// A null pointer becomes a null BSTR, an empty text an empty BSTR.
com::variant texts(std::initializer_list<const wchar_t*> values);
com::variant longs(std::initializer_list<LONG> values);

/// One-dimensional arrays whose first index is `lower`.
com::variant realsFrom(LONG lower, std::initializer_list<double> values);
com::variant textsFrom(LONG lower, std::initializer_list<const wchar_t*> values);

/// Two-dimensional arrays, `rows` by 2, of zeroes or of the text "x".
com::variant realBlock(std::size_t rows);
com::variant textBlock(std::size_t rows);

} // namespace scripted
