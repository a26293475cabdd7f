// LentTexts: the caller's texts in an array that a package may read while a call into it runs.
#pragma once

#include "com/safe_array.h"
#include "src/foundation/array_variant.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace quorvane {

/// Lends the caller's texts, two at most, to an array that the package may read while a call into it runs;
/// the array owns none of them. A package may ask about itself in the middle of its own call: what was lent
/// before is there again afterwards, which is nothing after the outermost call.
class LentTexts {
  public:
    LentTexts(const ArrayVariant& array, std::initializer_list<BSTR> texts)
        : array_{array}, lock_{array.value.parray} {
        std::ranges::copy(lock_.elements().first(texts.size()), before_.begin());
        std::ranges::copy(texts, lock_.elements().begin());
    }
    LentTexts(const LentTexts&) = delete;
    LentTexts& operator=(const LentTexts&) = delete;
    ~LentTexts() {
        const std::span<BSTR> elements = lock_.elements();
        std::copy_n(before_.begin(), elements.size(), elements.begin());
    }

    const VARIANT& value() const noexcept { return array_.value; }

  private:
    const ArrayVariant& array_;
    com::array_lock<BSTR>
        lock_; // a locked array cannot be destroyed, not even by a package that thinks it owns it
    std::array<BSTR, 2> before_{};
};

} // namespace quorvane
