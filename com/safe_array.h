// Typed access to one-dimensional and two-dimensional safe arrays: makers that return an owner, and a lock
// that gives the elements as a span and unlocks in its destructor. Elements stand with the first index
// running fastest.
#pragma once

#include "com/owned.h"

#include <exception>
#include <span>
#include <string>
#include <vector>

namespace com {

class array_not_locked : public std::exception {
  public:
    const char* what() const noexcept override { return "An array could not be locked"; }
};

/// Elements of an array while it is locked. T must be the C++ type of the array's element type; the caller
/// has checked that (array_lock does not look at the VARTYPE). Throws array_not_locked.
template <typename T>
class array_lock {
  public:
    explicit array_lock(SAFEARRAY* array) : array_{array} {
        if (array == nullptr || FAILED(SafeArrayLock(array))) {
            array_ = nullptr;
            throw array_not_locked{};
        }
    }
    array_lock(const array_lock&) = delete;
    array_lock& operator=(const array_lock&) = delete;
    ~array_lock() {
        if (array_ != nullptr) {
            SafeArrayUnlock(array_);
        }
    }

    std::span<T> elements() const noexcept {
        std::size_t count = 1;
        for (USHORT i = 0; i < array_->cDims; ++i) {
            count *= array_->rgsabound[i].cElements;
        }
        return {static_cast<T*>(array_->pvData), array_->pvData == nullptr ? 0 : count};
    }

  private:
    SAFEARRAY* array_;
};

/// A one-dimensional array of `count` zeroed elements, lower bound 0. Throws std::bad_alloc.
inline unique_safearray makeVector(VARTYPE element, std::size_t count) {
    unique_safearray result{SafeArrayCreateVector(element, 0, static_cast<ULONG>(count))};
    if (!result) {
        throw std::bad_alloc{};
    }
    return result;
}

/// A two-dimensional array (rows, columns) of zeroed elements, both lower bounds 1. Throws std::bad_alloc.
inline unique_safearray makeMatrix(VARTYPE element, std::size_t rows, std::size_t columns) {
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
    unique_safearray result{SafeArrayCreate(element, 2, bounds)};
    if (!result) {
        throw std::bad_alloc{};
    }
    return result;
}

/// A one-dimensional VT_R8 array in a VARIANT.
inline variant realArray(std::span<const double> values) {
    unique_safearray array = makeVector(VT_R8, values.size());
    {
        const array_lock<double> lock{array.get()};
        std::copy(values.begin(), values.end(), lock.elements().begin());
    }
    return variant::array(std::move(array), VT_R8);
}

/// A one-dimensional VT_BSTR array in a VARIANT; an empty text becomes a null BSTR.
template <typename Texts>
variant textArray(const Texts& texts) {
    unique_safearray array = makeVector(VT_BSTR, std::size(texts));
    {
        const array_lock<BSTR> lock{array.get()};
        auto element = lock.elements().begin();
        for (const auto& text : texts) {
            const std::wstring_view view{text};
            *element++ = view.empty() ? nullptr : makeBstr(view).release();
        }
    }
    return variant::array(std::move(array), VT_BSTR);
}

} // namespace com
