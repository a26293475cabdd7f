// Arrays as packages and Excel make them, of any shape and with any lower bounds.
#pragma once

#include "com/safe_array.h"

#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

namespace quorvane {

using Bounds = std::vector<SAFEARRAYBOUND>; ///< {extent, lower bound}, first dimension first

inline com::unique_safearray arrayOf(VARTYPE element, Bounds bounds) {
    com::unique_safearray array{SafeArrayCreate(element, static_cast<UINT>(bounds.size()), bounds.data())};
    if (!array) {
        throw std::bad_alloc{};
    }
    return array;
}

/// Numbers in storage order.
inline com::variant reals(Bounds bounds, std::span<const double> values) {
    com::unique_safearray array = arrayOf(VT_R8, std::move(bounds));
    {
        const com::array_lock<double> lock{array.get()};
        std::copy(values.begin(), values.end(), lock.elements().begin());
    }
    return com::variant::array(std::move(array), VT_R8);
}
inline com::variant reals(Bounds bounds, std::initializer_list<double> values) {
    return reals(std::move(bounds), std::span{values.begin(), values.size()});
}

/// Cells in storage order.
template <typename... Cells>
com::variant cells(Bounds bounds, Cells&&... values) {
    com::unique_safearray array = arrayOf(VT_VARIANT, std::move(bounds));
    {
        const com::array_lock<VARIANT> lock{array.get()};
        auto cell = lock.elements().begin();
        ((*cell++ = com::variant{std::forward<Cells>(values)}.release()), ...);
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

struct Dimension {
    LONG lower;
    LONG upper;
    friend bool operator==(const Dimension&, const Dimension&) = default;
};

inline std::vector<Dimension> dimensionsOf(SAFEARRAY* array) {
    std::vector<Dimension> dimensions(SafeArrayGetDim(array));
    for (UINT i = 0; i < dimensions.size(); ++i) {
        SafeArrayGetLBound(array, i + 1, &dimensions[i].lower);
        SafeArrayGetUBound(array, i + 1, &dimensions[i].upper);
    }
    return dimensions;
}

/// True while nobody holds the array locked.
inline bool isUnlocked(SAFEARRAY* array) noexcept { return array->cLocks == 0; }

} // namespace quorvane
