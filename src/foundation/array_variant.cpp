#include "src/foundation/array_variant.h"

#include "com/safe_array.h"
#include "src/foundation/text.h"

#include <new>
#include <utility>

namespace quorvane {

namespace {

// Of an array that is in use, or that has a size and no elements, as careless components make it.
constexpr const wchar_t* unreadable = L"failed to access array data";

} // namespace

ArrayVariant::ArrayVariant(ArrayVariant&& other) noexcept : ArrayVariant{} { *this = std::move(other); }

ArrayVariant& ArrayVariant::operator=(ArrayVariant&& other) noexcept {
    if (this != &other) {
        release();
        value = other.value;
        lowerBound = other.lowerBound;
        count = other.count;
        locked = std::exchange(other.locked, false);
        owned = std::exchange(other.owned, false);
        other.release();
    }
    return *this;
}

ArrayVariant ArrayVariant::borrow(const VARIANT& value) noexcept {
    ArrayVariant holder;
    holder.value = value;
    return holder;
}

ArrayVariant ArrayVariant::adopt(com::variant value) noexcept {
    ArrayVariant holder;
    holder.value = value.release();
    holder.owned = true;
    return holder;
}

void ArrayVariant::release() noexcept {
    unlock();
    if (owned) {
        com::variant::attach(value).clear();
    }
    value = {};
    owned = false;
    lowerBound = 0;
    count = 0;
}

VARIANT* ArrayVariant::put() noexcept {
    release();
    owned = true;
    return &value;
}

void ArrayVariant::handOver(VARIANT* result) noexcept {
    unlock();
    *result = value;
    owned = false;
    release();
}

ArrayVariant ArrayVariant::copy() const {
    ArrayVariant result = adopt(com::variant::copyOf(value));
    result.lowerBound = lowerBound;
    result.count = count;
    return result;
}

void* ArrayVariant::lockedData() {
    if ((value.vt & VT_ARRAY) == 0 || count == 0) {
        return nullptr;
    }
    if (!locked) {
        if (FAILED(SafeArrayLock(value.parray))) {
            throw CWStrException{unreadable};
        }
        locked = true;
    }
    if (value.parray->pvData == nullptr) {
        throw CWStrException{unreadable};
    }
    return value.parray->pvData;
}

void ArrayVariant::unlock() noexcept {
    if (locked) {
        SafeArrayUnlock(value.parray);
        locked = false;
    }
}

void ArrayVariant::adoptArray(com::unique_safearray array, std::int32_t elementCount, VARTYPE vt) noexcept {
    value = com::variant::array(std::move(array), vt).release();
    owned = true;
    count = elementCount;
}

void ArrayVariant::createVector(std::int32_t n, VARTYPE vt) {
    release();
    if (n > 0) {
        adoptArray(com::makeVector(vt, static_cast<std::size_t>(n)), n, vt);
    }
}

void ArrayVariant::createRowOrColumn(std::int32_t n, bool vertical, VARTYPE vt) {
    createMatrix(vertical ? n : 1, vertical ? 1 : n, vt);
}

void ArrayVariant::createMatrix(std::int32_t rows, std::int32_t columns, VARTYPE vt) {
    release();
    const std::int64_t elementCount = std::int64_t{rows} * columns;
    if (elementCount > INT32_MAX) {
        throw std::bad_alloc{};
    }
    if (rows > 0 && columns > 0) {
        adoptArray(com::makeMatrix(vt, static_cast<std::size_t>(rows), static_cast<std::size_t>(columns)),
                   static_cast<std::int32_t>(elementCount), vt);
        lowerBound = 1;
    }
}

ArrayVariant stringVectorToArray(std::span<const std::wstring> strings) {
    if (strings.empty()) {
        return {};
    }
    ArrayVariant result = ArrayVariant::adopt(com::textArray(strings));
    result.count = static_cast<std::int32_t>(strings.size());
    return result;
}

namespace {

struct ElementType {
    VARTYPE vt;
    const wchar_t* word;
    UINT size;
};

constexpr ElementType elementTypes[] = {
    {VT_I2, L"short", sizeof(SHORT)},
    {VT_I4, L"long", sizeof(LONG)},
    {VT_R8, L"double precision", sizeof(double)},
    {VT_BSTR, L"string", sizeof(BSTR)},
    {VT_VARIANT, L"VARIANT", sizeof(VARIANT)},
};

const ElementType* elementType(VARTYPE vt) noexcept {
    for (const ElementType& type : elementTypes) {
        if (type.vt == vt) {
            return &type;
        }
    }
    return nullptr;
}

} // namespace

bool holdsElements(SAFEARRAY* array, VARTYPE vt) noexcept {
    VARTYPE actual = VT_EMPTY;
    if (SUCCEEDED(SafeArrayGetVartype(array, &actual)) && actual != vt) {
        return false;
    }
    const ElementType* type = elementType(vt);
    return type == nullptr || SafeArrayGetElemsize(array) == type->size;
}

bool inspectVector(ArrayVariant& holder, VARTYPE vt, std::wstring& message) {
    holder.lowerBound = 0;
    holder.count = 0;
    if (holder.value.vt == VT_EMPTY) {
        return true;
    }
    SAFEARRAY* const array = holder.value.parray;
    if (holder.value.vt != (vt | VT_ARRAY) || (array != nullptr && !holdsElements(array, vt))) {
        const ElementType* type = elementType(vt);
        message = joined(L"Expected an array of type ", type == nullptr ? L"<unknown>" : type->word);
        return false;
    }
    if (SafeArrayGetDim(array) != 1) {
        message = L"unexpected dimension; 1-dimensional array expected";
        return false;
    }
    LONG lower = 0;
    LONG upper = 0;
    if (FAILED(SafeArrayGetLBound(array, 1, &lower))) {
        message = L"failed to get lower bound";
        return false;
    }
    if (FAILED(SafeArrayGetUBound(array, 1, &upper))) {
        message = L"failed to get upper bound";
        return false;
    }
    const std::int64_t count = std::int64_t{upper} - lower + 1;
    if (count < 0 || count > INT32_MAX || (count != 0 && array->pvData == nullptr)) {
        message = unreadable;
        return false;
    }
    holder.lowerBound = lower;
    holder.count = static_cast<std::int32_t>(count);
    return true;
}

void requireVector(ArrayVariant& holder, VARTYPE vt, std::wstring_view context) {
    std::wstring detail;
    if (!inspectVector(holder, vt, detail)) {
        throw WStrException{joined(context, detail)};
    }
}

} // namespace quorvane
