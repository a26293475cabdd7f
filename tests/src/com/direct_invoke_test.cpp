// Late calls without Automation's dispatcher beside the same calls with it: what the method receives, and
// what the caller gets back.
#include "com/direct_invoke.h"
#include "com/dual.h"
#include "com/implements.h"
#include "com/safe_array.h"
#include "tests/leak_gate/allocations.h"

#include <quorvane_idl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace com {
namespace {

std::string hex(unsigned long long number) {
    char text[20];
    std::snprintf(text, sizeof text, "%llX", number);
    return text;
}

std::string written(BSTR text) {
    std::string result = text == nullptr ? "null" : "\"";
    for (const wchar_t c : viewOf(text)) {
        result += static_cast<char>(c);
    }
    return text == nullptr ? result : result + '"';
}
std::string written(double number) { return std::to_string(number); }
template <typename Element>
std::string writtenElements(SAFEARRAY* array);

std::string written(const VARIANT& value) {
    const std::string type = hex(value.vt) + ":";
    switch (value.vt) {
    case VT_EMPTY:
        return hex(VT_EMPTY) + ":";
    case VT_BSTR:
        return type + written(value.bstrVal);
    case VT_ARRAY | VT_R8:
        return type + writtenElements<double>(value.parray);
    case VT_ARRAY | VT_BSTR:
        return type + writtenElements<BSTR>(value.parray);
    case VT_ARRAY | VT_VARIANT:
        return type + writtenElements<VARIANT>(value.parray);
    default:
        return type + hex(static_cast<unsigned long long>(value.llVal));
    }
}

template <typename Element>
std::string writtenElements(SAFEARRAY* array) {
    std::string text;
    for (const Element& element : array_lock<Element>{array}.elements()) {
        text += written(element) + " ";
    }
    return text;
}

void installErrorInfo() {
    com_ptr<ICreateErrorInfo> creator;
    CreateErrorInfo(creator.put());
    wchar_t description[] = L"It does not work";
    wchar_t source[] = L"Recorder";
    wchar_t help[] = L"recorder.chm";
    creator->SetDescription(description);
    creator->SetSource(source);
    creator->SetHelpFile(help);
    creator->SetHelpContext(7);
    SetErrorInfo(0, creator.tryAs<IErrorInfo>().get());
}

// Notes what it receives and answers as told.
class Recorder final : public implements<COMObject, ServedDual<IQuorvaneUDF>> {
  public:
    std::string received;
    HRESULT code = S_OK;
    bool explains = false;
    std::function<variant()> gives = [] { return variant{2.5}; };

    // NOLINTBEGIN(performance-unnecessary-value-param): as the interface declares them
    HRESULT STDMETHODCALLTYPE CapeOpenPackageNames(VARIANT a, VARIANT* result) noexcept override {
        return note(result, a);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenUnitOfMeasure(BSTR a, VARIANT b, BSTR* unit) noexcept override {
        *unit = makeBstr(L"J/mol").release();
        variant unused;
        return note(&unused, a, b);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenCompounds(BSTR a, VARIANT b, VARIANT c,
                                                VARIANT* result) noexcept override {
        return note(result, a, b, c);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenPhases(BSTR a, VARIANT b, VARIANT c,
                                             VARIANT* result) noexcept override {
        return note(result, a, b, c);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenCompoundConstant(BSTR a, BSTR b, VARIANT c, VARIANT d, VARIANT e,
                                                       VARIANT* result) noexcept override {
        return note(result, a, b, c, d, e);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenTemperatureDependentProperty(BSTR a, BSTR b, double c, VARIANT d,
                                                                   VARIANT e, VARIANT f,
                                                                   VARIANT* result) noexcept override {
        return note(result, a, b, c, d, e, f);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenMixtureProperty(BSTR a, BSTR b, BSTR c, double d, double e, VARIANT f,
                                                      VARIANT g, VARIANT h, VARIANT i, VARIANT j, VARIANT k,
                                                      VARIANT* result) noexcept override {
        return note(result, a, b, c, d, e, f, g, h, i, j, k);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenTwoPhaseProperty(BSTR a, BSTR b, BSTR c, BSTR d, double e, double f,
                                                       VARIANT g, VARIANT h, VARIANT i, VARIANT j, VARIANT k,
                                                       VARIANT l, VARIANT m,
                                                       VARIANT* result) noexcept override {
        return note(result, a, b, c, d, e, f, g, h, i, j, k, l, m);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenPhaseEquilibrium(BSTR a, VARIANT b, BSTR c, double d, BSTR e, double f,
                                                       VARIANT g, VARIANT h, VARIANT i, VARIANT j, VARIANT k,
                                                       VARIANT* result) noexcept override {
        return note(result, a, b, c, d, e, f, g, h, i, j, k);
    }
    // NOLINTEND(performance-unnecessary-value-param)

    IDispatch* dispatch() noexcept { return static_cast<ServedDual<IQuorvaneUDF>*>(this); }

  private:
    HRESULT note(VARIANT* result, const auto&... arguments) {
        received.clear();
        ((received += written(arguments) + ", "), ...);
        VariantInit(result);
        if (explains) {
            installErrorInfo();
        }
        if (SUCCEEDED(code)) {
            *result = gives().release();
        }
        return code;
    }
};

constexpr auto compounds = directMethod<&IQuorvaneUDF::CapeOpenCompounds>(0x60020002, 1);
constexpr auto equilibrium = directMethod<&IQuorvaneUDF::CapeOpenPhaseEquilibrium>(0x60020008, 6);
constexpr auto unitOfMeasure = directMethod<&IQuorvaneUDF::CapeOpenUnitOfMeasure>(0x60020001, 1);

using Method = DirectMethod<IQuorvaneUDF>;

variant numbers() { return realArray(std::vector<double>{1.0, 2.0}); }

struct Answer {
    std::optional<HRESULT> code;
    std::string received;
    std::string result;
    std::string exception;
    UINT argument;

    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out) {
    *out << hex(static_cast<unsigned long>(answer.code.value_or(1))) << "; receives " << answer.received
         << " gives " << answer.result << " raises " << answer.exception << " argument " << answer.argument;
}

class DirectInvoke : public ::testing::Test {
  protected:
    using Invoke =
        std::function<std::optional<HRESULT>(DISPPARAMS&, VARIANT* result, EXCEPINFO*, UINT* argument)>;

    Answer ask(const std::vector<VARIANT>& inOrder, const Invoke& invoke) {
        std::vector<VARIANT> lastFirst{inOrder.rbegin(), inOrder.rend()};
        DISPPARAMS parameters{lastFirst.data(), nullptr, static_cast<UINT>(lastFirst.size()), 0};
        recorder->received.clear();
        SetErrorInfo(0, nullptr);
        VARIANT result{};
        result.vt = VT_I4; // what the place for the result held before
        result.lVal = 77;
        EXCEPINFO raised{};
        UINT argument = 97;
        Answer answer{};
        answer.code = invoke(parameters, hasPlace ? &result : nullptr, &raised, &argument);
        const variant owned = variant::attach(result);
        const unique_bstr source{raised.bstrSource};
        const unique_bstr description{raised.bstrDescription};
        const unique_bstr help{raised.bstrHelpFile};
        answer.received = recorder->received;
        answer.result = written(owned);
        answer.exception = std::to_string(raised.wCode) + " " +
                           hex(static_cast<unsigned long>(raised.scode)) + " " + written(raised.bstrSource) +
                           " " + written(raised.bstrDescription) + " " + written(raised.bstrHelpFile) + " " +
                           std::to_string(raised.dwHelpContext);
        answer.argument = argument;
        return answer;
    }

    Answer direct(const Method& method, const std::vector<VARIANT>& inOrder, WORD flags = DISPATCH_METHOD) {
        return ask(inOrder, [&](DISPPARAMS& parameters, VARIANT* result, EXCEPINFO* raised, UINT*) {
            return invokeDirectly<IQuorvaneUDF>(method, *recorder, flags, parameters, result, raised);
        });
    }
    Answer dispatched(const Method& method, const std::vector<VARIANT>& inOrder,
                      WORD flags = DISPATCH_METHOD) {
        return ask(inOrder, [&](DISPPARAMS& parameters, VARIANT* result, EXCEPINFO* raised, UINT* argument) {
            return recorder->Invoke(method.member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                                    raised, argument);
        });
    }
    void expectSame(const Method& method, const std::vector<VARIANT>& inOrder, WORD flags = DISPATCH_METHOD) {
        EXPECT_EQ(direct(method, inOrder, flags), dispatched(method, inOrder, flags));
    }

    // Lent to the caller.
    std::vector<VARIANT> argumentsOf(const Method& method) const {
        std::vector<VARIANT> inOrder;
        for (const VARTYPE type : method.types) {
            inOrder.push_back(type == VT_BSTR ? text : type == VT_R8 ? number : list);
        }
        return inOrder;
    }

    com_ptr<Recorder> recorder = make<Recorder>();
    bool hasPlace = true;
    const variant text{L"text"};
    const variant number{1.5};
    const variant list = numbers();
};

TEST_F(DirectInvoke, HandsOverWhatTheDispatcherHandsOver) {
    for (const Method& method : {compounds, equilibrium, unitOfMeasure}) {
        const std::vector<VARIANT> inOrder = argumentsOf(method);
        EXPECT_EQ(direct(method, inOrder).code, S_OK);
        expectSame(method, inOrder);
    }
}

variant mixed() {
    variant list = variant::array(makeVector(VT_VARIANT, 2), VT_VARIANT);
    const array_lock<VARIANT> lock{list.parray};
    lock.elements()[0] = variant{unique_bstr{}}.release();
    return list;
}

TEST_F(DirectInvoke, GivesTheResultsThatTheDispatcherGives) {
    const std::vector<VARIANT> inOrder = argumentsOf(compounds);
    const std::function<variant()> results[] = {
        [] { return variant{}; },
        [] { return variant{true}; },
        [] {
            return variant{std::wstring_view{L"a\0b", 3}};
        },
        [] { return variant{unique_bstr{}}; },
        [] { return variant::missing(); },
        [] { return variant::object(nullptr); },
        [] {
            return textArray(std::vector<std::wstring>{L"a", L""});
        },
        numbers,
        mixed,
    };
    for (const auto& result : results) {
        recorder->gives = result;
        expectSame(compounds, inOrder);
    }
}

TEST_F(DirectInvoke, IsMadeForAMethodAsScriptsAskForIt) {
    const std::vector<VARIANT> inOrder = argumentsOf(compounds);
    expectSame(compounds, inOrder, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
    for (const int flags : {0, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT,
                            DISPATCH_METHOD | DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF}) {
        const Answer answer = direct(compounds, inOrder, static_cast<WORD>(flags));
        EXPECT_EQ(answer.code, std::nullopt) << flags;
        EXPECT_EQ(answer.received, "") << flags;
    }
}

TEST_F(DirectInvoke, IsMadeForOneArgumentForEachParameterAlone) {
    std::vector<VARIANT> inOrder = argumentsOf(compounds);
    inOrder.push_back(number);
    EXPECT_EQ(direct(compounds, inOrder).code, std::nullopt);
    inOrder.resize(2);
    EXPECT_EQ(direct(compounds, inOrder).code, std::nullopt);
}

TEST_F(DirectInvoke, IsNotMadeForArgumentsByName) {
    DISPID name = 2;
    const Answer answer =
        ask(argumentsOf(compounds), [&](DISPPARAMS& parameters, VARIANT* result, EXCEPINFO* raised, UINT*) {
            parameters.rgdispidNamedArgs = &name;
            parameters.cNamedArgs = 1;
            return invokeDirectly<IQuorvaneUDF>(compounds, *recorder, DISPATCH_METHOD, parameters, result,
                                                raised);
        });
    EXPECT_EQ(answer.code, std::nullopt);
    EXPECT_EQ(answer.received, "");
}

TEST_F(DirectInvoke, GivesASuccessThatIsNotPlain) {
    recorder->code = S_FALSE;
    expectSame(compounds, argumentsOf(compounds));
}

TEST_F(DirectInvoke, NeedsNoPlaceForTheResult) {
    hasPlace = false;
    expectSame(compounds, argumentsOf(compounds));
    expectSame(unitOfMeasure, argumentsOf(unitOfMeasure));
}

TEST_F(DirectInvoke, RaisesWhatAFailingMethodExplains) {
    recorder->code = E_FAIL;
    recorder->explains = true;
    const std::vector<VARIANT> inOrder = argumentsOf(compounds);
    EXPECT_EQ(direct(compounds, inOrder).exception,
              "0 80004005 \"Recorder\" \"It does not work\" \"recorder.chm\" 7");
    expectSame(compounds, inOrder);
}

TEST_F(DirectInvoke, RaisesWhatAFailingMethodDoesNotExplain) {
    recorder->code = E_OUTOFMEMORY;
    const std::vector<VARIANT> inOrder = argumentsOf(unitOfMeasure);
    EXPECT_EQ(direct(unitOfMeasure, inOrder).code, DISP_E_EXCEPTION);
    expectSame(unitOfMeasure, inOrder);
}

TEST_F(DirectInvoke, LosesWhatThePlaceForTheResultOwned) {
    const auto blocksAfter = [&](auto&& invoke) {
        const std::vector<VARIANT> inOrder = argumentsOf(compounds);
        std::vector<VARIANT> lastFirst{inOrder.rbegin(), inOrder.rend()};
        DISPPARAMS parameters{lastFirst.data(), nullptr, static_cast<UINT>(lastFirst.size()), 0};
        const leak_gate::AllocationUse use{leak_gate::comAllocator};
        VARIANT result = variant{L"owned by the caller"}.release();
        const unique_bstr former{result.bstrVal};
        invoke(parameters, &result);
        return use.blocks();
    };
    EXPECT_EQ(blocksAfter([&](DISPPARAMS& parameters, VARIANT* result) {
                  invokeDirectly<IQuorvaneUDF>(compounds, *recorder, DISPATCH_METHOD, parameters, result,
                                               nullptr);
              }),
              blocksAfter([&](DISPPARAMS& parameters, VARIANT* result) {
                  recorder->Invoke(compounds.member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                   &parameters, result, nullptr, nullptr);
              }));
}

// --- Arguments of every kind

struct Kind {
    std::string name;
    variant value;
};

// Of every type that an argument may have, also by reference and as an array; what it refers to is there.
std::vector<Kind> everyKind(IDispatch* object) {
    static unsigned long long target[4] = {};
    std::vector<Kind> kinds;
    for (VARTYPE type = VT_EMPTY; type <= VT_UINT; ++type) {
        variant value;
        value.vt = type; // zero, a null text or a null object
        kinds.push_back({hex(type), std::move(value)});
        variant reference;
        reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
        reference.byref = target;
        kinds.push_back({hex(reference.vt), std::move(reference)});
        variant list;
        list.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        kinds.push_back({hex(list.vt) + " without an array", std::move(list)});
    }
    kinds.push_back({"number", variant{2.0}});
    kinds.push_back({"text", variant{L"other"}});
    kinds.push_back({"text without characters", variant{L""}});
    kinds.push_back({"left out", variant::missing()});
    kinds.push_back({"object", variant::object(object)});
    kinds.push_back({"numbers", numbers()});
    kinds.push_back({"texts", variant::array(makeVector(VT_BSTR, 2), VT_BSTR)});
    kinds.push_back({"values", variant::array(makeVector(VT_VARIANT, 2), VT_VARIANT)});
    return kinds;
}

constexpr const char* kindsForTexts = "8, text, text without characters";
constexpr const char* kindsForNumbers = "5, number";
constexpr const char* kindsForRequired =
    "0, 2, 3, 5, 9, A, B, number, text, text without characters, object, numbers";
constexpr const char* kindsForOptional =
    "0, 2, 3, 5, 9, A, B, number, text, text without characters, left out, object, numbers";

TEST_F(DirectInvoke, IsMadeForArgumentsThatTheDispatcherLeavesAsTheyAre) {
    const std::vector<Kind> kinds = everyKind(recorder->dispatch());
    for (std::size_t position = 0; position < equilibrium.types.size(); ++position) {
        std::string made;
        for (const Kind& kind : kinds) {
            std::vector<VARIANT> inOrder = argumentsOf(equilibrium);
            inOrder[position] = kind.value;
            if (const Answer answer = direct(equilibrium, inOrder); answer.code) {
                made += made.empty() ? kind.name : ", " + kind.name;
                EXPECT_EQ(answer, dispatched(equilibrium, inOrder)) << kind.name << " at " << position;
            } else {
                EXPECT_EQ(answer.received, "") << kind.name << " at " << position;
            }
        }
        const VARTYPE type = equilibrium.types[position];
        EXPECT_EQ(made, type == VT_BSTR                   ? kindsForTexts
                        : type == VT_R8                   ? kindsForNumbers
                        : position < equilibrium.required ? kindsForRequired
                                                          : kindsForOptional);
    }
}

} // namespace
} // namespace com
