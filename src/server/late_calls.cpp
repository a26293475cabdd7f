#include "src/server/late_calls.h"

#include "com/type_library.h"
#include "src/foundation/missing.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"
#include "src/server/direct_functions.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <optional>
#include <quorvane_idl.h>
#include <vector>

namespace quorvane {

namespace {

constexpr DISPID firstFunction = 0x60020000;
constexpr std::size_t functionCount = directFunctions.size();
constexpr std::size_t mostParameters = 13;

// GetPropInfo: the types of its results, which follow the name of the property.
constexpr DISPID propertyInformation = 0x60030010;
constexpr std::array<VARTYPE, 8> resultTypes = {VT_BSTR, VT_BSTR, VT_I4,   VT_I4,
                                                VT_I4,   VT_I4,   VT_BOOL, VT_BOOL};

bool isVariable(const VARIANT& argument) noexcept {
    return argument.vt == (VT_BYREF | VT_VARIANT) && argument.pvarVal != nullptr;
}

struct Parameter {
    std::wstring name;
    VARTYPE type;
};

using Signature = std::vector<Parameter>; // the result is not among them

// A signature that is half read or missing would be kept for good, so that a failure, which is want of
// memory, is thrown.
Signature readSignature(ITypeInfo* info, UINT index) {
    FUNCDESC* given = nullptr;
    if (FAILED(info->GetFuncDesc(index, &given))) {
        throw std::bad_alloc{};
    }
    const auto release = [info](FUNCDESC* owned) { info->ReleaseFuncDesc(owned); };
    const std::unique_ptr<FUNCDESC, decltype(release)> description{given, release};
    // The function's own name, the parameters' and the result's.
    std::array<com::unique_bstr, mostParameters + 2> names;
    BSTR readNames[mostParameters + 2] = {};
    UINT nameCount = 0;
    const HRESULT code =
        info->GetNames(description->memid, readNames, static_cast<UINT>(names.size()), &nameCount);
    if (FAILED(code)) {
        throw std::bad_alloc{};
    }
    for (UINT i = 0; i < nameCount; ++i) {
        names[i].reset(readNames[i]);
    }
    Signature signature;
    for (SHORT i = 0; i + 1 < description->cParams; ++i) {
        signature.push_back({std::wstring{com::viewOf(names[static_cast<std::size_t>(i) + 1])},
                             description->lprgelemdescParam[i].tdesc.vt});
    }
    return signature;
}

// Read once from the type library, which is where the parameters are declared.
const std::array<Signature, functionCount>& signatures() {
    static const auto all = [] {
        ITypeInfo* const info = com::typeInfoOf(__uuidof(IQuorvaneUDF));
        if (info == nullptr) {
            throw std::bad_alloc{};
        }
        std::array<Signature, functionCount> read;
        for (std::size_t i = 0; i < functionCount; ++i) {
            read[i] = readSignature(info, static_cast<UINT>(i));
        }
        return read;
    }();
    return all;
}

[[noreturn]] void throwWrongType(const Parameter& parameter, const wchar_t* expected) {
    throw WStrException{
        joined(joined(L"Invalid value for ", parameter.name, L" - expected "), expected, L" value")};
}

com::variant converted(const VARIANT& given, const Parameter& parameter, const wchar_t* expected) {
    const ArrayVariant value = resolveRangeValue(given);
    if (value.isEmpty()) {
        return {};
    }
    auto result = com::convert(value.value, parameter.type);
    if (!result) {
        throwWrongType(parameter, expected);
    }
    return std::move(*result);
}

// The argument as the parameter wants it. What had to be made for it is kept in `owned`.
VARIANT shaped(const VARIANT& argument, const Parameter& parameter, com::variant& owned) {
    const VARIANT given = withoutReference(argument);
    if (parameter.type == VT_VARIANT || given.vt == parameter.type) {
        return given;
    }
    const bool isNumber = parameter.type == VT_R8;
    const bool isLeftOut =
        given.vt == VT_EMPTY || (given.vt == VT_ERROR && given.scode == DISP_E_PARAMNOTFOUND);
    owned = isLeftOut ? com::variant{} : converted(given, parameter, isNumber ? L"real" : L"string");
    if (owned.vt == VT_EMPTY) {
        owned = isNumber ? com::variant{omittedNumber} : com::variant{com::unique_bstr{}};
    }
    return owned;
}

class Arguments {
  public:
    Arguments(const Signature& signature, const DISPPARAMS& given) : count_{signature.size()} {
        for (std::size_t i = 0; i < count_; ++i) {
            // Automation wants the last argument first.
            values_[count_ - 1 - i] = shaped(argumentAt(given, i), signature[i], owned_[i]);
        }
    }

    DISPPARAMS parameters() noexcept { return {values_.data(), nullptr, static_cast<UINT>(count_), 0}; }

  private:
    static VARIANT argumentAt(const DISPPARAMS& given, std::size_t position) noexcept {
        for (UINT i = 0; i < given.cNamedArgs; ++i) {
            if (given.rgdispidNamedArgs[i] == static_cast<DISPID>(position)) {
                return given.rgvarg[i];
            }
        }
        const std::size_t positional = given.cArgs - given.cNamedArgs;
        if (position < positional) {
            return given.rgvarg[given.cArgs - 1 - position];
        }
        return com::variant::missing().release();
    }

    std::size_t count_;
    std::array<VARIANT, mostParameters> values_{};
    std::array<com::variant, mostParameters> owned_;
};

// What a variable holds may change while the function works, which a copy by the dispatcher does not.
bool hasVariables(const DISPPARAMS& given) noexcept {
    return std::any_of(given.rgvarg, given.rgvarg + given.cArgs,
                       [](const VARIANT& argument) { return (argument.vt & VT_BYREF) != 0; });
}

} // namespace

bool isWorksheetFunction(DISPID member) noexcept {
    return member >= firstFunction && member < firstFunction + static_cast<DISPID>(functionCount);
}

HRESULT invokeWorksheetFunction(IQuorvaneVSTOServices* object, ITypeInfo* info, SpareMessage& spare,
                                DISPID member, WORD flags, const DISPPARAMS& given, VARIANT* result,
                                EXCEPINFO* exception, UINT* argument) noexcept {
    HRESULT code = S_OK;
    const auto fail = [&](com::unique_bstr message) {
        if (result != nullptr) {
            *result = com::variant{std::move(message)}.release();
        }
    };
    const HRESULT framed = worksheetCall(
        __uuidof(IQuorvaneUDF), spare,
        [&] {
            const auto position = static_cast<std::size_t>(member - firstFunction);
            const Signature& signature = signatures()[position];
            if (given.cArgs > signature.size() || given.cNamedArgs > given.cArgs) {
                code = DISP_E_BADPARAMCOUNT;
                return;
            }
            Arguments arguments{signature, given};
            DISPPARAMS parameters = arguments.parameters();
            std::optional<HRESULT> called;
            if (!hasVariables(given)) {
                called = com::invokeDirectly<IQuorvaneUDF>(directFunctions[position], *object, flags,
                                                           parameters, result, exception);
            }
            const HRESULT invoked =
                called ? *called
                       : DispInvoke(object, info, member, flags, &parameters, result, exception, argument);
            if (invoked == E_OUTOFMEMORY) {
                throw std::bad_alloc{};
            }
            code = invoked;
        },
        fail);
    return FAILED(framed) ? framed : code;
}

HRESULT invokeService(void* object, ITypeInfo* info, DISPID member, WORD flags, const DISPPARAMS& given,
                      VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept {
    DISPPARAMS parameters = given;
    std::array<VARIANT, resultTypes.size() + 1> values{};
    if (member != propertyInformation || given.cArgs != values.size() || given.cNamedArgs != 0) {
        return DispInvoke(object, info, member, flags, &parameters, result, exception, argument);
    }
    // Automation does not make typed results out of a VARIANT by reference by itself.
    std::copy_n(given.rgvarg, values.size(), values.begin());
    std::array<com::variant, resultTypes.size()> results;
    for (std::size_t i = 0; i < results.size(); ++i) {
        // The last argument comes first.
        VARIANT& value = values[results.size() - 1 - i];
        if (isVariable(value)) {
            results[i].llVal = 0;
            results[i].vt = resultTypes[i];
            value.byref = &results[i].llVal;
            value.vt = static_cast<VARTYPE>(VT_BYREF | resultTypes[i]);
        }
    }
    parameters.rgvarg = values.data();
    const HRESULT code = DispInvoke(object, info, member, flags, &parameters, result, exception, argument);
    for (std::size_t i = 0; i < results.size() && SUCCEEDED(code); ++i) {
        if (const VARIANT& variable = given.rgvarg[results.size() - 1 - i]; isVariable(variable)) {
            com::assign(variable.pvarVal, std::move(results[i]));
        }
    }
    return code;
}

} // namespace quorvane
