// What packages hand to the material, checked: names, bases, arrays of numbers and of labels. Internal to the
// material.
#pragma once

#include "src/material/material_object.h"

#include "com/safe_array.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"

namespace quorvane {

inline constexpr const wchar_t* materialInterface = L"ICapeThermoMaterial";

[[noreturn]] inline void throwNoValue() { throw CWStrException{L"No value available"}; }

inline void requireCount(const ArrayVariant& values, std::size_t expected) {
    if (static_cast<std::size_t>(values.count) != expected) {
        throw CWStrException{L"Unexpected number of values"};
    }
}

// `needed`: the value depends on the basis, so one must be given; otherwise none may be.
inline Basis requireBasis(BSTR text, bool needed) {
    const Basis basis = parseBasis(com::viewOf(text));
    if ((basis != Basis_Undefined) != needed) {
        throw CWStrException{L"Invalid basis"};
    }
    return basis;
}

inline ArrayVariant readValues(const VARIANT& values) {
    ArrayVariant holder = ArrayVariant::borrow(withoutReference(values));
    requireVector(holder, VT_R8, L"Invalid values: ");
    return holder;
}

inline ArrayVariant readLabels(const VARIANT& labels) {
    ArrayVariant holder = ArrayVariant::borrow(withoutReference(labels));
    requireVector(holder, VT_BSTR, L"Invalid phase labels: ");
    return holder;
}

inline void copyTo(std::vector<double>& target, ArrayVariant& values) {
    const auto elements = values.elements<double>();
    target.assign(elements.begin(), elements.end());
}

// Requests are stored in lower case, so that ASCII names, which nearly all are, need no more than a
// comparison.
inline bool isSameName(BSTR given, const std::wstring& lowerCase) noexcept {
    return equalsFoldingAscii(com::viewOf(given), lowerCase) || equalsNoCase(given, lowerCase.c_str());
}

} // namespace quorvane
