#include "tests/scripted_package/variants.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace scripted {

namespace {

std::string numberText(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", number);
    return text;
}

template <typename T, typename Write>
std::string listText(SAFEARRAY* array, Write&& write) {
    const com::array_lock<T> lock{array};
    std::string text = "[";
    for (const T& element : lock.elements()) {
        if (text.size() > 1) {
            text += ", ";
        }
        text += write(element);
    }
    return text + "]";
}

std::string bstrText(BSTR text) { return text == nullptr ? "null" : narrow(com::viewOf(text)); }

std::string arrayText(const VARIANT& value) {
    if (value.parray == nullptr) {
        return "[no array]";
    }
    switch (value.vt & VT_TYPEMASK) {
    case VT_R8:
        return listText<double>(value.parray, numberText);
    case VT_BSTR:
        return listText<BSTR>(value.parray, bstrText);
    case VT_I4:
        return listText<LONG>(value.parray, [](LONG number) { return std::to_string(number); });
    case VT_VARIANT:
        return listText<VARIANT>(value.parray, textOf);
    default:
        return "[array of type " + std::to_string(value.vt & VT_TYPEMASK) + "]";
    }
}

void requireArrayOf(const VARIANT& value, VARTYPE element) {
    if (value.vt != (VT_ARRAY | element)) {
        throw std::runtime_error("The value is " + textOf(value) + " of type " + std::to_string(value.vt));
    }
}

template <typename T, typename U, typename Convert>
com::variant arrayFrom(LONG lower, VARTYPE element, std::initializer_list<U> values, Convert&& convert) {
    com::unique_safearray array{SafeArrayCreateVector(element, lower, static_cast<ULONG>(values.size()))};
    if (!array) {
        throw std::bad_alloc{};
    }
    {
        const com::array_lock<T> lock{array.get()};
        std::transform(values.begin(), values.end(), lock.elements().begin(), convert);
    }
    return com::variant::array(std::move(array), element);
}

BSTR bstrOf(const wchar_t* text) { return text == nullptr ? nullptr : com::makeBstr(text).release(); }

template <typename T>
T same(T value) {
    return value;
}

} // namespace

std::string textOf(const VARIANT& value) {
    if ((value.vt & VT_ARRAY) != 0) {
        return arrayText(value);
    }
    switch (value.vt) {
    case VT_EMPTY:
        return "empty";
    case VT_BSTR:
        return bstrText(value.bstrVal);
    case VT_R8:
        return numberText(value.dblVal);
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_BOOL:
        return value.boolVal == VARIANT_FALSE ? "false" : "true";
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return "object";
    default:
        return "type " + std::to_string(value.vt);
    }
}

std::string narrow(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), needed, nullptr, nullptr);
    return result;
}

std::wstring wide(std::string_view text) {
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, result.data(), needed);
    return result;
}

std::vector<double> realsOf(const VARIANT& value) {
    requireArrayOf(value, VT_R8);
    const com::array_lock<double> lock{value.parray};
    return {lock.elements().begin(), lock.elements().end()};
}

std::vector<std::wstring> textsOf(const VARIANT& value) {
    requireArrayOf(value, VT_BSTR);
    const com::array_lock<BSTR> lock{value.parray};
    std::vector<std::wstring> result;
    for (const BSTR element : lock.elements()) {
        result.emplace_back(com::viewOf(element));
    }
    return result;
}

com::variant reals(std::initializer_list<double> values) { return realsFrom(0, values); }

com::variant texts(std::initializer_list<const wchar_t*> values) { return textsFrom(0, values); }

com::variant longs(std::initializer_list<LONG> values) {
    return arrayFrom<LONG>(0, VT_I4, values, same<LONG>);
}

com::variant realsFrom(LONG lower, std::initializer_list<double> values) {
    return arrayFrom<double>(lower, VT_R8, values, same<double>);
}

com::variant textsFrom(LONG lower, std::initializer_list<const wchar_t*> values) {
    return arrayFrom<BSTR>(lower, VT_BSTR, values, bstrOf);
}

com::variant realBlock(std::size_t rows) {
    return com::variant::array(com::makeMatrix(VT_R8, rows, 2), VT_R8);
}

com::variant textBlock(std::size_t rows) {
    com::unique_safearray array = com::makeMatrix(VT_BSTR, rows, 2);
    {
        const com::array_lock<BSTR> lock{array.get()};
        for (BSTR& element : lock.elements()) {
            element = bstrOf(L"x");
        }
    }
    return com::variant::array(std::move(array), VT_BSTR);
}

} // namespace scripted
