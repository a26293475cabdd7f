// LentTexts: the caller's texts in an array that a package may read while a call into it runs.
#pragma once

#include "com/safe_array.h"
#include "src/foundation/array_variant.h"

#include <algorithm>
#include <initializer_list>

namespace quorvane {

/// Lends the caller's texts to an array that the package may read while a calculation runs; the array owns
/// none of them.
class LentTexts {
  public:
    LentTexts(const ArrayVariant& array, std::initializer_list<BSTR> texts)
        : array_{array}, lock_{array.value.parray} {
        std::ranges::copy(texts, lock_.elements().begin());
    }
    LentTexts(const LentTexts&) = delete;
    LentTexts& operator=(const LentTexts&) = delete;
    ~LentTexts() { std::ranges::fill(lock_.elements(), nullptr); }

    const VARIANT& value() const noexcept { return array_.value; }

  private:
    const ArrayVariant& array_;
    com::array_lock<BSTR>
        lock_; // a locked array cannot be destroyed, not even by a package that thinks it owns it
};

} // namespace quorvane
