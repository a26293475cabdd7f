#include "src/foundation/range_value.h"

#include "src/foundation/late_binding.h"

namespace quorvane {

VARIANT withoutReference(const VARIANT& value) noexcept {
    if ((value.vt & VT_BYREF) == 0) {
        return value;
    }
    VARIANT target{};
    if (value.byref == nullptr) {
        return target;
    }
    if (value.vt == (VT_BYREF | VT_VARIANT)) {
        // Automation forbids a reference to a reference; what a rogue caller nests deeper stays unread.
        return (value.pvarVal->vt & VT_BYREF) == 0 ? *value.pvarVal : target;
    }
    target.vt = static_cast<VARTYPE>(value.vt & ~VT_BYREF);
    if ((target.vt & VT_ARRAY) != 0) {
        target.parray = *value.pparray;
        return target;
    }
    switch (target.vt) {
    case VT_I1:
    case VT_UI1:
        target.bVal = *value.pbVal;
        break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        target.iVal = *value.piVal;
        break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        target.lVal = *value.plVal;
        break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        target.llVal = *value.pllVal;
        break;
    default:
        return value; // left to the reader, which refuses it
    }
    return target;
}

ArrayVariant resolveRangeValue(const VARIANT& value) {
    if (const com::com_ptr<IDispatch> range = asRange(value)) {
        try {
            com::variant contents = readRangeValue(range.get());
            return (contents.vt & VT_BYREF) != 0 ? ArrayVariant::borrow(withoutReference(contents))
                                                 : ArrayVariant::adopt(std::move(contents));
        } catch (const WException&) {
            // An unreadable range is judged by the reader that asked for it, as the object that it is.
        }
    }
    return ArrayVariant::borrow(value);
}

} // namespace quorvane
