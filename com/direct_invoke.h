// Late calls without Automation's dispatcher (ITypeInfo::Invoke), which takes as long as many a method does.
// A table names the methods of an interface; what their parameters are follows from their declarations.
// Nothing is converted here: a call that the dispatcher would not hand over just as it stands is not made.
#pragma once

#include "com/com_ptr.h"
#include "com/owned.h"

#include <array>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

namespace com {

/// One method whose last parameter is its result.
template <typename Interface>
struct DirectMethod {
    DISPID member = DISPID_UNKNOWN;
    std::size_t required = 0;       ///< parameters; those after them are optional
    std::span<const VARTYPE> types; ///< of the parameters: VT_BSTR, VT_R8 or VT_VARIANT
    HRESULT (*call)(Interface& object, const VARIANT* lastFirst, variant& result) = nullptr;
};

namespace direct {

template <typename Type>
struct parameter;
template <>
struct parameter<BSTR> {
    static constexpr VARTYPE type = VT_BSTR;
    static BSTR of(const VARIANT& given) noexcept { return given.bstrVal; }
    static BSTR* placeIn(variant& result) noexcept {
        result.vt = VT_BSTR;
        return &result.bstrVal;
    }
};
template <>
struct parameter<double> {
    static constexpr VARTYPE type = VT_R8;
    static double of(const VARIANT& given) noexcept { return given.dblVal; }
};
template <>
struct parameter<VARIANT> {
    static constexpr VARTYPE type = VT_VARIANT;
    static const VARIANT& of(const VARIANT& given) noexcept { return given; }
    static VARIANT* placeIn(variant& result) noexcept { return &result; }
};

template <typename Method>
struct declaration;
template <typename Interface, typename... Parameters>
struct declaration<HRESULT (STDMETHODCALLTYPE Interface::*)(Parameters...)> {
    using interface_type = Interface;
    static constexpr std::size_t count = sizeof...(Parameters) - 1;
    template <std::size_t i>
    using at = parameter<std::tuple_element_t<i, std::tuple<Parameters...>>>;
    using result = parameter<std::remove_pointer_t<std::tuple_element_t<count, std::tuple<Parameters...>>>>;
    using order = std::make_index_sequence<count>;
};

template <typename Declaration, std::size_t... i>
constexpr std::array<VARTYPE, sizeof...(i)> typesOf(std::index_sequence<i...>) noexcept {
    return {Declaration::template at<i>::type...};
}
template <typename Declaration>
inline constexpr auto types = typesOf<Declaration>(typename Declaration::order{});

template <auto method, typename Declaration, std::size_t... i>
HRESULT call(typename Declaration::interface_type& object, const VARIANT* lastFirst, variant& result,
             std::index_sequence<i...>) noexcept {
    return (object.*method)(Declaration::template at<i>::of(lastFirst[sizeof...(i) - 1 - i])...,
                            Declaration::result::placeIn(result));
}

// The dispatcher copies every VARIANT, the result as well. The copy equals its original unless a null text is
// in it, which becomes one without characters. What is not known to be without is Automation's to copy.
inline bool equalsItsCopy(const VARIANT& value) noexcept {
    switch (value.vt) {
    case VT_EMPTY:
    case VT_ERROR:
    case VT_BOOL:
    case VT_I2:
    case VT_I4:
    case VT_R8:
    case VT_DISPATCH:
        return true;
    case VT_BSTR:
        return value.bstrVal != nullptr;
    case VT_ARRAY | VT_R8:
        return value.parray != nullptr;
    default:
        return false;
    }
}

inline bool isHandedOver(const VARIANT& given, VARTYPE type, bool isRequired) noexcept {
    if (type != VT_VARIANT) {
        return given.vt == type;
    }
    const bool isLeftOut = given.vt == VT_ERROR && given.scode == DISP_E_PARAMNOTFOUND;
    return equalsItsCopy(given) && !(isRequired && isLeftOut);
}

inline HRESULT giveBack(variant value, VARIANT& result) noexcept {
    if (!equalsItsCopy(value)) {
        VariantInit(&result);
        return VariantCopyInd(&result, &value);
    }
    result = value.release();
    return S_OK;
}

// As the dispatcher tells of a method that fails.
inline HRESULT raise(HRESULT code, EXCEPINFO* exception) noexcept {
    if (exception != nullptr) {
        *exception = {};
        exception->scode = code;
        com_ptr<IErrorInfo> info;
        if (GetErrorInfo(0, info.put()) == S_OK) {
            info->GetSource(&exception->bstrSource);
            info->GetDescription(&exception->bstrDescription);
            info->GetHelpFile(&exception->bstrHelpFile);
            info->GetHelpContext(&exception->dwHelpContext);
        }
    }
    return DISP_E_EXCEPTION;
}

} // namespace direct

template <auto method>
constexpr auto directMethod(DISPID member, std::size_t required) noexcept {
    using Declaration = direct::declaration<decltype(method)>;
    using Interface = typename Declaration::interface_type;
    return DirectMethod<Interface>{member, required, direct::types<Declaration>,
                                   [](Interface& object, const VARIANT* lastFirst, variant& result) {
                                       return direct::call<method, Declaration>(
                                           object, lastFirst, result, typename Declaration::order{});
                                   }};
}

/// Calls the method as IDispatch::Invoke would, with one argument for each parameter, none by name. Empty
/// when the dispatcher would do more than hand the arguments over: the method was not called.
template <typename Interface>
std::optional<HRESULT> invokeDirectly(const DirectMethod<Interface>& method, Interface& object, WORD flags,
                                      const DISPPARAMS& given, VARIANT* result,
                                      EXCEPINFO* exception) noexcept {
    const std::size_t count = method.types.size();
    if ((flags & ~DISPATCH_PROPERTYGET) != DISPATCH_METHOD || given.cNamedArgs != 0 || given.cArgs != count) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (!direct::isHandedOver(given.rgvarg[count - 1 - i], method.types[i], i < method.required)) {
            return std::nullopt;
        }
    }
    variant value;
    const HRESULT code = method.call(object, given.rgvarg, value);
    const HRESULT copied = result == nullptr ? S_OK : direct::giveBack(std::move(value), *result);
    return FAILED(code) ? direct::raise(code, exception) : copied;
}

} // namespace com
