#include "tests/faults/values.h"

#include "com/safe_array.h"
#include "tests/scripted_package/script.h"

#include <limits>

namespace faults {

namespace {

struct Type {
    const char* name;
    VARTYPE vt;
};

constexpr Type scalars[] = {
    {"Null", VT_NULL},
    {"I1", VT_I1},
    {"I2", VT_I2},
    {"I4", VT_I4},
    {"I8", VT_I8},
    {"UI1", VT_UI1},
    {"UI2", VT_UI2},
    {"UI4", VT_UI4},
    {"UI8", VT_UI8},
    {"Int", VT_INT},
    {"UInt", VT_UINT},
    {"R4", VT_R4},
    {"R8", VT_R8},
    {"Currency", VT_CY},
    {"Date", VT_DATE},
    {"Bool", VT_BOOL},
    {"Error", VT_ERROR},
    {"Decimal", VT_DECIMAL},
    {"NullText", VT_BSTR},
    {"NullDispatch", VT_DISPATCH},
    {"NullUnknown", VT_UNKNOWN},
    {"NullRecord", VT_RECORD},
    {"Void", VT_VOID},
    {"Result", VT_HRESULT},
    {"Pointer", VT_PTR},
    {"NarrowText", VT_LPSTR},
    {"FileTime", VT_FILETIME},
    {"Blob", VT_BLOB},
    {"Illegal", VT_ILLEGALMASKED},
};

constexpr Type elements[] = {
    {"I1", VT_I1},
    {"I2", VT_I2},
    {"I4", VT_I4},
    {"I8", VT_I8},
    {"UI1", VT_UI1},
    {"UI2", VT_UI2},
    {"UI4", VT_UI4},
    {"UI8", VT_UI8},
    {"Int", VT_INT},
    {"UInt", VT_UINT},
    {"R4", VT_R4},
    {"R8", VT_R8},
    {"Currency", VT_CY},
    {"Date", VT_DATE},
    {"Text", VT_BSTR},
    {"Bool", VT_BOOL},
    {"Error", VT_ERROR},
    {"Decimal", VT_DECIMAL},
    {"Dispatch", VT_DISPATCH},
    {"Unknown", VT_UNKNOWN},
    {"Variant", VT_VARIANT},
};

// What references lead to.
com::variant& kept() {
    static com::variant value;
    return value;
}

com::variant scalar(VARTYPE vt) {
    VARIANT value{};
    value.vt = vt;
    return com::variant::attach(value);
}

com::variant arrayOf(SAFEARRAY* array, VARTYPE vt) {
    return com::variant::array(com::unique_safearray{array}, vt);
}

com::variant shaped(VARTYPE vt, std::initializer_list<ULONG> extents) {
    std::vector<SAFEARRAYBOUND> bounds;
    for (const ULONG extent : extents) {
        bounds.push_back({extent, 0});
    }
    return arrayOf(SafeArrayCreate(vt, static_cast<UINT>(bounds.size()), bounds.data()), vt);
}

com::variant withoutDimension(VARTYPE vt) {
    SAFEARRAY* array = nullptr;
    SafeArrayAllocDescriptorEx(vt, 1, &array);
    array->cDims = 0;
    return arrayOf(array, vt);
}

com::variant withoutData(const VARIANT& honest, VARTYPE vt) {
    SAFEARRAY* array = nullptr;
    SafeArrayAllocDescriptorEx(vt, 1, &array);
    array->rgsabound[0] = honest.parray->rgsabound[0];
    return arrayOf(array, vt);
}

com::variant falselyLabelled(VARTYPE actual, VARTYPE label) {
    return arrayOf(com::makeVector(actual, 3).release(), label);
}

com::variant movedTo(const VARIANT& honest, LONG lower) {
    com::variant result = scripted::duplicate(honest);
    result.parray->rgsabound[0].lLbound = lower;
    return result;
}

// To the honest array itself, of which `kept` is a copy, or to nothing.
com::variant reference(const VARIANT& honest, VARTYPE vt, bool toNothing) {
    kept() = scripted::duplicate(honest);
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(vt | VT_BYREF);
    value.byref = vt == VT_VARIANT ? static_cast<void*>(&kept()) : static_cast<void*>(&kept().parray);
    if (toNothing) {
        value.byref = nullptr;
    }
    return com::variant::attach(value);
}

std::vector<ValueFault> faultsOf(VARTYPE wanted) {
    std::vector<ValueFault> faults;
    const auto add = [&](std::string name, Effect effect, auto make) {
        faults.push_back({std::move(name), effect, std::move(make)});
    };
    const auto array = static_cast<VARTYPE>(VT_ARRAY | wanted);
    add("Empty", Effect::none, [](const VARIANT&) { return com::variant{}; });
    for (const Type& type : scalars) {
        add(type.name, Effect::wrong, [vt = type.vt](const VARIANT&) { return scalar(vt); });
    }
    add("Text", Effect::wrong, [](const VARIANT&) { return com::variant{L"text"}; });
    add("Omitted", Effect::wrong, [](const VARIANT&) { return com::variant::missing(); });
    for (const Type& type : elements) {
        if (type.vt == wanted) {
            continue;
        }
        const std::string name = type.name;
        add("ArrayOf" + name, Effect::wrong,
            [vt = type.vt](const VARIANT&) { return arrayOf(com::makeVector(vt, 3).release(), vt); });
        add("ReferenceToArrayOf" + name, Effect::wrong, [vt = type.vt](const VARIANT&) {
            return reference(arrayOf(com::makeVector(vt, 3).release(), vt),
                             static_cast<VARTYPE>(VT_ARRAY | vt), false);
        });
        if (type.vt != VT_VARIANT && type.vt != VT_DECIMAL) {
            add("FalseLabelOn" + name, Effect::wrong,
                [vt = type.vt, wanted](const VARIANT&) { return falselyLabelled(vt, wanted); });
        }
    }
    add("ReferenceToNumber", Effect::wrong, [](const VARIANT&) {
        kept() = com::variant{1.0};
        VARIANT value{};
        value.vt = VT_BYREF | VT_R8;
        value.pdblVal = &kept().dblVal;
        return com::variant::attach(value);
    });
    add("Reference", Effect::reference,
        [=](const VARIANT& honest) { return reference(honest, array, false); });
    add("ReferenceToValue", Effect::reference,
        [](const VARIANT& honest) { return reference(honest, VT_VARIANT, false); });
    add("ReferenceToNothing", Effect::nullReference,
        [=](const VARIANT& honest) { return reference(honest, array, true); });
    add("ReferenceToNoValue", Effect::nullReference,
        [](const VARIANT& honest) { return reference(honest, VT_VARIANT, true); });
    add("NoArray", Effect::shape, [=](const VARIANT&) { return scalar(array); });
    add("NoDimension", Effect::shape, [=](const VARIANT&) { return withoutDimension(wanted); });
    add("OneRow", Effect::shape, [=](const VARIANT&) { return shaped(wanted, {1, 3}); });
    add("OneColumn", Effect::shape, [=](const VARIANT&) { return shaped(wanted, {3, 1}); });
    add("NothingInTwoDimensions", Effect::shape, [=](const VARIANT&) { return shaped(wanted, {0, 3}); });
    add("ThreeDimensions", Effect::shape, [=](const VARIANT&) { return shaped(wanted, {1, 1, 3}); });
    add("SixtyDimensions", Effect::shape, [=](const VARIANT&) {
        std::vector<SAFEARRAYBOUND> bounds(60, SAFEARRAYBOUND{1, 0});
        return arrayOf(SafeArrayCreate(wanted, 60, bounds.data()), wanted);
    });
    for (const LONG lower : {-3L, 1L, 7L}) {
        add(std::string{"FromIndex"} + (lower < 0 ? "Minus3" : std::to_string(lower)), Effect::same,
            [lower](const VARIANT& honest) { return movedTo(honest, lower); });
    }
    add("FromLowestIndex", Effect::same,
        [](const VARIANT& honest) { return movedTo(honest, std::numeric_limits<LONG>::min()); });
    add("ToHighestIndex", Effect::same, [](const VARIANT& honest) {
        const auto count = static_cast<LONG>(honest.parray->rgsabound[0].cElements);
        return movedTo(honest, std::numeric_limits<LONG>::max() - count + 1);
    });
    add("NoElements", Effect::none, [](const VARIANT& honest) { return resized(honest, 0); });
    add("OneLess", Effect::fewer,
        [](const VARIANT& honest) { return resized(honest, honest.parray->rgsabound[0].cElements - 1); });
    add("OneMore", Effect::more,
        [](const VARIANT& honest) { return resized(honest, honest.parray->rgsabound[0].cElements + 1); });
    add("AHundredThousand", Effect::more, [](const VARIANT& honest) { return resized(honest, 100000); });
    add("AMillion", Effect::more, [](const VARIANT& honest) { return resized(honest, 1000000); });
    add("NoData", Effect::unreadable, [=](const VARIANT& honest) { return withoutData(honest, wanted); });
    return faults;
}

void copyElement(SAFEARRAY* from, SAFEARRAY* to, std::size_t at, VARTYPE vt) {
    const bool there = at < from->rgsabound[0].cElements;
    if (vt == VT_R8) {
        static_cast<double*>(to->pvData)[at] = there ? static_cast<double*>(from->pvData)[at] : 7.0;
    } else if (vt == VT_BSTR) {
        const BSTR text = there ? static_cast<BSTR*>(from->pvData)[at] : nullptr;
        const bool isNull = there && text == nullptr;
        static_cast<BSTR*>(to->pvData)[at] =
            isNull ? nullptr : com::makeBstr(there ? com::viewOf(text) : L"zzz").release();
    } else {
        static_cast<VARIANT*>(to->pvData)[at] =
            (there ? scripted::duplicate(static_cast<VARIANT*>(from->pvData)[at]) : com::variant{7.0})
                .release();
    }
}

} // namespace

const std::vector<ValueFault>& valueFaults(VARTYPE element) {
    static const std::vector<ValueFault> texts = faultsOf(VT_BSTR);
    static const std::vector<ValueFault> numbers = faultsOf(VT_R8);
    static const std::vector<ValueFault> values = faultsOf(VT_VARIANT);
    return element == VT_BSTR ? texts : element == VT_R8 ? numbers : values;
}

com::variant resized(const VARIANT& array, std::size_t length) {
    const auto vt = static_cast<VARTYPE>(array.vt & VT_TYPEMASK);
    com::unique_safearray result = com::makeVector(vt, length);
    for (std::size_t at = 0; at < length; ++at) {
        copyElement(array.parray, result.get(), at, vt);
    }
    return com::variant::array(std::move(result), vt);
}

com::variant withFirst(const VARIANT& array, const std::wstring* text) {
    com::variant result = scripted::duplicate(array);
    BSTR& first = *static_cast<BSTR*>(result.parray->pvData);
    const com::unique_bstr old{first};
    first = text == nullptr ? nullptr : com::makeBstr(*text).release();
    return result;
}

void forgetReferences() { kept().clear(); }

} // namespace faults
