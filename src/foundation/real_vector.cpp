#include "src/foundation/real_vector.h"

#include "src/foundation/array_variant.h"
#include "src/foundation/late_binding.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace quorvane {

namespace {

// What an object stands for; empty when it does not say.
std::optional<com::variant> defaultValue(IDispatch* object) {
    DISPPARAMS none{};
    com::variant value;
    const HRESULT code = object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none,
                                        value.put(), nullptr, nullptr);
    if (FAILED(code)) {
        static_cast<void>(value.release()); // must be empty then; not ours to free otherwise
        return std::nullopt;
    }
    return value;
}

double elementToReal(const VARIANT& element) {
    if (element.vt == VT_R8) {
        return element.dblVal;
    }
    // Automation itself would ask an object that stands for itself without end.
    constexpr int mostObjects = 8;
    com::variant held;
    const VARIANT* given = &element;
    for (int i = 0; i < mostObjects; ++i) {
        const VARIANT object = withoutReference(*given);
        if (object.vt != VT_DISPATCH || object.pdispVal == nullptr) {
            break;
        }
        held = com::variant::object(object.pdispVal);
        auto value = defaultValue(held.pdispVal);
        if (!value) {
            break;
        }
        held = std::move(*value);
        given = &held;
    }
    if (const auto number = com::convert(*given, VT_R8, VARIANT_NOVALUEPROP, LOCALE_NEUTRAL)) {
        return number->dblVal;
    }
    if (const auto text = com::convert(*given, VT_BSTR, VARIANT_NOVALUEPROP, LOCALE_NEUTRAL)) {
        throw WStrException{joined(L"Failed to convert \"", com::viewOf(text->bstrVal), L"\" to real value")};
    }
    throw CWStrException{L"Array contains values that are not numbers"};
}

// The extent of the only dimension that is longer than 1; 1 when none is, 0 when one has no extent.
std::int32_t vectorLength(SAFEARRAY* array) {
    std::int64_t length = 1;
    bool found = false;
    const UINT dimensions = SafeArrayGetDim(array);
    for (UINT dimension = 1; dimension <= dimensions; ++dimension) {
        LONG lower = 0;
        LONG upper = 0;
        if (FAILED(SafeArrayGetLBound(array, dimension, &lower)) ||
            FAILED(SafeArrayGetUBound(array, dimension, &upper))) {
            throw CWStrException{L"not a real array"};
        }
        const std::int64_t extent = std::int64_t{upper} - lower + 1;
        if (extent == 1) {
            continue;
        }
        if (extent < 0 || extent > INT32_MAX) {
            throw CWStrException{L"not a real array"};
        }
        if (found) {
            throw CWStrException{L"unexpected dimension; array expected"};
        }
        if (extent == 0) {
            return 0;
        }
        found = true;
        length = extent;
    }
    return static_cast<std::int32_t>(length);
}

std::vector<double> readArray(const VARIANT& value, std::vector<double> reals) {
    reals.clear();
    if (value.parray == nullptr) {
        return reals;
    }
    if (!holdsElements(value.parray, value.vt & VT_TYPEMASK)) {
        throw CWStrException{L"not a real array"};
    }
    ArrayVariant holder = ArrayVariant::borrow(value);
    holder.count = vectorLength(value.parray);
    reals.resize(static_cast<std::size_t>(holder.count));
    if (value.vt == (VT_ARRAY | VT_R8)) {
        std::ranges::copy(holder.elements<double>(), reals.begin());
    } else {
        std::ranges::transform(holder.elements<VARIANT>(), reals.begin(), elementToReal);
    }
    return reals;
}

} // namespace

std::vector<double> readRealVector(const VARIANT& argument, std::vector<double> reuse) {
    const VARIANT value = withoutReference(argument);
    if (isOmitted(value)) {
        throw CWStrException{L"value not specified"};
    }
    if (const com::com_ptr<IDispatch> range = asRange(value)) {
        const com::variant contents = readRangeValue(range.get());
        const VARIANT read = withoutReference(contents);
        if (read.vt == VT_DISPATCH || read.vt == VT_UNKNOWN || isOmitted(read)) {
            // A cell cannot hold an object, and an error cell holds no number.
            throw CWStrException{L"not a real array"};
        }
        return readRealVector(read, std::move(reuse));
    }
    switch (value.vt) {
    case VT_EMPTY:
        return {};
    case VT_R8:
        reuse.assign(1, value.dblVal);
        return reuse;
    case VT_ARRAY | VT_R8:
    case VT_ARRAY | VT_VARIANT:
        return readArray(value, std::move(reuse));
    default:
        throw CWStrException{L"not a real array"};
    }
}

} // namespace quorvane
