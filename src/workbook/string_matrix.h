// StringMatrix: a two-dimensional array of texts as the front end passes it, any lower bounds, read only. The
// array stays locked while this lives, so that nobody can destroy or resize it.
#pragma once

#include "com/safe_array.h"

#include <string_view>

namespace quorvane {

class StringMatrix {
  public:
    /// Throws CWStrException when `value` is something else.
    explicit StringMatrix(const VARIANT& value);

    std::size_t rows() const noexcept { return rows_; }
    std::size_t columns() const noexcept { return columns_; }
    /// Counted from 0; a null text is an empty one.
    std::wstring_view at(std::size_t row, std::size_t column) const noexcept;

  private:
    struct Checked {
        SAFEARRAY* array;
    };
    explicit StringMatrix(Checked checked);

    std::size_t rows_;
    std::size_t columns_;
    com::array_lock<BSTR> lock_;
};

using BoundQuery = decltype(&SafeArrayGetLBound);

/// Elements along one dimension, from 1; 0 when there are none. Throws CWStrException when a query fails.
std::size_t extentOf(SAFEARRAY* array, UINT dimension, BoundQuery lower = SafeArrayGetLBound,
                     BoundQuery upper = SafeArrayGetUBound);

} // namespace quorvane
