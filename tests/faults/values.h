// What can stand where an array belongs: every type of value, arrays of every other type, shape and length,
// references, arrays that lie about themselves.
#pragma once

#include "com/owned.h"

#include <functional>
#include <string>
#include <vector>

namespace faults {

enum class Effect {
    same,          ///< it is what was wanted, in another form
    wrong,         ///< not an array of the wanted type
    shape,         ///< an array of the wanted type that has not one dimension
    none,          ///< no elements
    fewer,         ///< one element less
    more,          ///< one element more, or a million
    reference,     ///< what was wanted, by reference
    nullReference, ///< a reference to nothing
    unreadable,    ///< an array whose elements are not there
};

struct ValueFault {
    std::string name;
    Effect effect;
    /// `honest` is a one-dimensional array. A reference leads to what lives until the next call.
    std::function<com::variant(const VARIANT& honest)> make;
};

/// All faults of an array of VT_BSTR, VT_R8 or VT_VARIANT.
const std::vector<ValueFault>& valueFaults(VARTYPE element);

/// A copy of an array with `length` elements; those that are added are alike: the text "zzz" or the number 7.
com::variant resized(const VARIANT& array, std::size_t length);
/// A copy of a VT_BSTR array whose first element is this; a null pointer is a null text.
com::variant withFirst(const VARIANT& array, const std::wstring* text);
/// Lets go of what references lead to.
void forgetReferences();

} // namespace faults
