// ArrayVariant: the owner of one Automation value that may hold a safe array, and the makers and checks of
// such arrays. Nothing outside foundation/ touches a safe array directly.
//
// Elements stand in safe-array order, the first index running fastest: of r rows and c columns, the element
// in 0-based row i and column j stands at position i + j * r. One-dimensional arrays have lower bound 0,
// two-dimensional ones 1.
#pragma once

#include "com/owned.h"
#include "src/foundation/exceptions.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class ArrayVariant {
  public:
    ArrayVariant() noexcept = default;
    ArrayVariant(ArrayVariant&& other) noexcept;
    ArrayVariant& operator=(ArrayVariant&& other) noexcept;
    ArrayVariant(const ArrayVariant&) = delete;
    ArrayVariant& operator=(const ArrayVariant&) = delete;
    ~ArrayVariant() { release(); }

    VARIANT value{};
    std::int32_t lowerBound = 0; ///< of the only dimension; filled in by inspectVector
    std::int32_t count = 0;      ///< elements in all
    bool locked = false;         ///< the data is locked for direct access
    bool owned = false;          ///< this holder clears `value`

    /// Refers to a value that somebody else clears.
    static ArrayVariant borrow(const VARIANT& value) noexcept;
    /// Takes over a value.
    static ArrayVariant adopt(com::variant value) noexcept;

    /// Unlocks and clears what is held; the holder is empty afterwards.
    void release() noexcept;

    /// The address for an out-parameter: what it receives is owned.
    VARIANT* put() noexcept;

    /// Moves the value into `result`, which must not hold anything; the receiver clears it.
    void handOver(VARIANT* result) noexcept;

    /// A deep copy of the value, owned by the result. Throws std::bad_alloc.
    ArrayVariant copy() const;

    bool isEmpty() const noexcept { return value.vt == VT_EMPTY; }

    /// Locks the data if need be and gives the `count` elements. T must match the element type that a maker
    /// or inspectVector has established.
    template <typename T>
    std::span<T> elements() {
        return {static_cast<T*>(lockedData()), static_cast<std::size_t>(count)};
    }
    void unlock() noexcept;

    // The makers release what was held. A shape without elements gives VT_EMPTY, not an array of length zero.

    /// `n` elements in one dimension.
    void createVector(std::int32_t n, VARTYPE vt);
    /// `n` elements in one column (`vertical`) or one row.
    void createRowOrColumn(std::int32_t n, bool vertical, VARTYPE vt);
    void createMatrix(std::int32_t rows, std::int32_t columns, VARTYPE vt);

  private:
    void* lockedData();
    void adoptArray(com::unique_safearray array, std::int32_t elementCount, VARTYPE vt) noexcept;
};

/// A one-dimensional VT_BSTR array; an empty text is left as a null BSTR; an empty list gives VT_EMPTY.
ArrayVariant stringVectorToArray(std::span<const std::wstring> strings);

/// Whether the elements of an array are of the type that its label says, or of that type's size when the
/// array does not tell. A careless component labels an array with another type than it holds; reading that
/// would follow numbers as pointers.
bool holdsElements(SAFEARRAY* array, VARTYPE vt) noexcept;

/// Checks that `holder` holds a one-dimensional array of `vt` and fills in `lowerBound` and `count`; VT_EMPTY
/// counts as no elements. On failure `message` tells what was wrong, without context: callers put their own
/// before it.
bool inspectVector(ArrayVariant& holder, VARTYPE vt, std::wstring& message);

/// inspectVector for callers that fail: throws WStrException with `context` before the check's message.
void requireVector(ArrayVariant& holder, VARTYPE vt, std::wstring_view context);

} // namespace quorvane
