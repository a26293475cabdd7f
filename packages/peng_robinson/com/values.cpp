#include "packages/peng_robinson/com/values.h"

#include "com/safe_array.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace peng_robinson {
namespace {

wchar_t lower(wchar_t c) noexcept {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

const VARIANT& withoutReference(const VARIANT& value) noexcept {
    return value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr ? *value.pvarVal : value;
}

// The array that a value holds or refers to, when its elements are of that type; else null.
SAFEARRAY* arrayOf(const VARIANT& value, VARTYPE element) noexcept {
    SAFEARRAY* array = nullptr;
    if (value.vt == (VT_ARRAY | element)) {
        array = value.parray;
    } else if (value.vt == (VT_ARRAY | VT_BYREF | element) && value.pparray != nullptr) {
        array = *value.pparray;
    }
    return array != nullptr && SafeArrayGetDim(array) == 1 ? array : nullptr;
}

[[noreturn]] void refuse(const wchar_t* what, short position, const wchar_t* expected) {
    throw ArgumentError{position, std::wstring{L"The "} + what + L" must be " + expected};
}

} // namespace

bool isSameName(std::wstring_view a, std::wstring_view b) noexcept {
    return std::ranges::equal(a, b, {}, lower, lower);
}

bool isUndefined(std::wstring_view text) noexcept { return text.empty() || isSameName(text, L"UNDEFINED"); }

bool isUndefined(const VARIANT& given) noexcept {
    const VARIANT& value = withoutReference(given);
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
        return true;
    case VT_BSTR:
        return isUndefined(com::viewOf(value.bstrVal));
    default:
        return (value.vt & VT_ARRAY) != 0 && (value.vt & VT_BYREF) == 0 && value.parray == nullptr;
    }
}

Basis readBasis(std::wstring_view text, short position) {
    if (isUndefined(text)) {
        return Basis::undefined;
    }
    if (isSameName(text, L"mole")) {
        return Basis::mole;
    }
    if (isSameName(text, L"mass")) {
        return Basis::mass;
    }
    throw ArgumentError{position, L"A basis is Mole or Mass, not \"" + std::wstring{text} + L"\""};
}

std::vector<std::wstring> readTexts(const VARIANT& given, const wchar_t* what, short position) {
    const VARIANT& value = withoutReference(given);
    std::vector<std::wstring> texts;
    if (value.vt == VT_BSTR) {
        texts.emplace_back(com::viewOf(value.bstrVal));
    } else if (SAFEARRAY* const plain = arrayOf(value, VT_BSTR)) {
        const com::array_lock<BSTR> lock{plain};
        for (const BSTR text : lock.elements()) {
            texts.emplace_back(com::viewOf(text));
        }
    } else if (SAFEARRAY* const mixed = arrayOf(value, VT_VARIANT)) {
        const com::array_lock<VARIANT> lock{mixed};
        for (const VARIANT& element : lock.elements()) {
            if (element.vt != VT_BSTR && !isUndefined(element)) {
                refuse(what, position, L"a list of texts");
            }
            texts.emplace_back(element.vt == VT_BSTR ? com::viewOf(element.bstrVal) : std::wstring_view{});
        }
    } else {
        refuse(what, position, L"a list of texts");
    }
    return texts;
}

std::vector<double> readReals(const VARIANT& given, const wchar_t* what, short position) {
    const VARIANT& value = withoutReference(given);
    const auto number = [&](const VARIANT& element) {
        const auto converted =
            element.vt == VT_BSTR || isUndefined(element) ? std::nullopt : com::convert(element, VT_R8);
        if (!converted) {
            refuse(what, position, L"a list of numbers");
        }
        return converted->dblVal;
    };
    std::vector<double> numbers;
    if (SAFEARRAY* const plain = arrayOf(value, VT_R8)) {
        const com::array_lock<double> lock{plain};
        numbers.assign(lock.elements().begin(), lock.elements().end());
    } else if (SAFEARRAY* const mixed = arrayOf(value, VT_VARIANT)) {
        const com::array_lock<VARIANT> lock{mixed};
        std::ranges::transform(lock.elements(), std::back_inserter(numbers), number);
    } else {
        numbers.push_back(number(value));
    }
    return numbers;
}

void replaceValue(VARIANT* inOut, com::variant value) {
    requirePointer(inOut);
    com::assign(inOut, std::move(value));
}

void returnValue(VARIANT* out, com::variant value) {
    requirePointer(out);
    *out = value.release();
}

void requirePointer(const void* out) {
    if (out == nullptr) {
        throw CapeError{E_POINTER, L"The call gives no place for its result"};
    }
}

} // namespace peng_robinson
