#include "src/udf/layout.h"

#include "src/foundation/late_binding.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"
#include "src/workbook/session.h"

#include <algorithm>

namespace quorvane::udf {

namespace {

long readCount(IDispatch* range, const wchar_t* dimension) {
    const auto part = readObject(range, dimension);
    const com::variant count = readProperty(part.get(), L"Count");
    return count.vt == VT_I4 ? count.lVal : 0;
}

PropertyOrientation orientationOfCaller() {
    try {
        const com::com_ptr<IDispatch> application = Session::application();
        if (!application) {
            return Orientation_Horizontal;
        }
        const com::variant caller = readProperty(application.get(), L"Caller");
        // A call from a macro has a text or an error for a caller.
        const auto range = caller.vt == VT_DISPATCH ? asRange(caller) : com::com_ptr<IDispatch>{};
        if (range && readCount(range.get(), L"Rows") >= 2 && readCount(range.get(), L"Columns") == 1) {
            return Orientation_Vertical;
        }
    } catch (const WException&) {
        // A calling range that cannot be inspected is no reason to refuse the result.
    }
    return Orientation_Horizontal;
}

struct Word {
    const wchar_t* text;
    PropertyOrientation orientation;
};

constexpr Word words[] = {{L"horizontal", Orientation_Horizontal},
                          {L"vertical", Orientation_Vertical},
                          {L"matrix", Orientation_Matrix}};

[[noreturn]] void throwInvalid(bool allowMatrix) {
    std::wstring text = L"Invalid value for orientation - expected \"Auto\" (default,0), \"Horizontal\" (1)";
    text += allowMatrix ? L"," : L" or";
    text += L" \"Vertical\" (2)";
    if (allowMatrix) {
        text += L" or \"Matrix\" (3)";
    }
    throw WStrException{std::move(text)};
}

} // namespace

PropertyOrientation readOrientation(const VARIANT& argument, bool allowMatrix) {
    const VARIANT given = withoutReference(argument);
    if (isOmitted(given)) {
        return orientationOfCaller();
    }
    const ArrayVariant resolved = resolveRangeValue(given);
    const VARIANT& value = resolved.value;
    if (value.vt == VT_EMPTY) {
        return orientationOfCaller();
    }
    if (value.vt == VT_BSTR) {
        for (const Word& word : words) {
            if (matchesKeyword(com::viewOf(value.bstrVal), word.text)) {
                return word.orientation;
            }
        }
        return orientationOfCaller();
    }
    const auto number = com::convert(value, VT_I4);
    if (!number || number->lVal < Orientation_Auto || number->lVal > Orientation_Matrix ||
        (number->lVal == Orientation_Matrix && !allowMatrix)) {
        throwInvalid(allowMatrix);
    }
    return number->lVal == Orientation_Auto ? orientationOfCaller()
                                            : static_cast<PropertyOrientation>(number->lVal);
}

ArrayVariant shapeVector(std::span<const double> values, PropertyOrientation orientation) {
    ArrayVariant result;
    result.createRowOrColumn(static_cast<std::int32_t>(values.size()), orientation == Orientation_Vertical,
                             VT_R8);
    std::ranges::copy(values, result.elements<double>().begin());
    result.unlock();
    return result;
}

ArrayVariant shapeTexts(std::span<const BSTR> texts, PropertyOrientation orientation) {
    ArrayVariant result;
    result.createRowOrColumn(static_cast<std::int32_t>(texts.size()), orientation == Orientation_Vertical,
                             VT_BSTR);
    auto element = result.elements<BSTR>().begin();
    for (const BSTR text : texts) {
        *element++ = com::makeBstr(com::viewOf(text)).release();
    }
    result.unlock();
    return result;
}

void toColumn(ArrayVariant& holder) {
    requireVector(holder, VT_VARIANT, L"Invalid values from Property Package: ");
    ArrayVariant column;
    column.createRowOrColumn(holder.count, true, VT_VARIANT);
    std::ranges::swap_ranges(holder.elements<VARIANT>(), column.elements<VARIANT>());
    column.unlock();
    holder = std::move(column);
}

} // namespace quorvane::udf
