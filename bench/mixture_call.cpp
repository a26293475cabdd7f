#include "bench/mixture_call.h"

#include "com/safe_array.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace bench {

namespace {

com::variant textOrNothing(const std::wstring& text) {
    return text.empty() ? com::variant::missing() : com::variant{std::wstring_view{text}};
}

VARIANT lent(const com::unique_bstr& text) noexcept {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text.get();
    return value;
}

VARIANT lent(double number) noexcept { return com::variant{number}.release(); }

std::vector<double> amounts(std::size_t compounds) {
    std::vector<double> values;
    for (std::size_t i = 0; i < compounds; ++i) {
        values.push_back(1.0 + static_cast<double>(i % 7));
    }
    return values;
}

std::vector<double> numbersOf(const VARIANT& value) {
    if (value.vt == VT_R8) {
        return {value.dblVal};
    }
    if (value.vt != (VT_ARRAY | VT_R8)) {
        throw std::runtime_error("A worksheet function gives no numbers");
    }
    const com::array_lock<double> lock{value.parray};
    return {lock.elements().begin(), lock.elements().end()};
}

} // namespace

MixtureCall::MixtureCall(const MixtureArguments& given)
    : package_{com::makeBstr(given.package)}, property_{com::makeBstr(given.property)}, phase_{com::makeBstr(
                                                                                            L"Vapor")},
      composition_{com::realArray(amounts(given.compounds))}, basis_{textOrNothing(given.propertyBasis)},
      orientation_{textOrNothing(given.orientation)} {
    const VARIANT inOrder[count] = {lent(package_), lent(property_), lent(phase_), lent(temperature),
                                    lent(pressure), composition_,    leftOut_,     basis_,
                                    orientation_,   leftOut_,        leftOut_};
    std::reverse_copy(std::begin(inOrder), std::end(inOrder), lastFirst_);
}

HRESULT MixtureCall::byVtable(IQuorvaneUDF* functions, VARIANT* result) const {
    return functions->CapeOpenMixtureProperty(package_.get(), property_.get(), phase_.get(), temperature,
                                              pressure, composition_, leftOut_, basis_, orientation_,
                                              leftOut_, leftOut_, result);
}

HRESULT MixtureCall::byInvoke(IDispatch* functions, VARIANT* result) {
    return invoke(functions, lastFirst_, result);
}

HRESULT MixtureCall::byInvokeOfVariables(IDispatch* functions, VARIANT* result) {
    VARIANT references[count] = {};
    for (UINT i = 0; i < count; ++i) {
        references[i].vt = VT_BYREF | VT_VARIANT;
        references[i].pvarVal = &lastFirst_[i];
    }
    return invoke(functions, references, result);
}

HRESULT MixtureCall::invoke(IDispatch* functions, VARIANT* lastFirst, VARIANT* result) {
    DISPPARAMS parameters{lastFirst, nullptr, count, 0};
    return functions->Invoke(memberMixtureProperty, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                             &parameters, result, nullptr, nullptr);
}

void requireSame(const VARIANT& ours, const VARIANT& expected) {
    const std::vector<double> a = numbersOf(ours);
    const std::vector<double> b = numbersOf(expected);
    const bool same =
        ours.vt == expected.vt &&
        (ours.vt == VT_R8 || SafeArrayGetDim(ours.parray) == SafeArrayGetDim(expected.parray)) &&
        std::ranges::equal(a, b, [](double x, double y) { return std::abs(x - y) <= 1e-12 * std::abs(y); });
    if (!same) {
        throw std::runtime_error("The add-in and the hand-written client have different results");
    }
}

} // namespace bench
