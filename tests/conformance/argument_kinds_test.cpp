// Each argument of each function, of every kind that anything can pass: the call succeeds, and the cell shows
// a value or one of the known messages, the same through IDispatch and through the vtable.
#include "tests/conformance/argument_kinds.h"
#include "tests/conformance/table_file.h"

#include "com/safe_array.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>

using namespace tests;

namespace conformance {

namespace {

struct Case {
    const Function* function;
    std::size_t position;
    const Kind* kind;

    const Parameter& parameter() const { return function->parameters[position]; }
};

std::string nameOf(const Case& tested) {
    std::string parameter = tested.parameter().name;
    parameter.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(parameter.front())));
    return tested.function->name + parameter + tested.kind->name;
}

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const Function& function : functions()) {
        for (std::size_t position = 0; position < function.parameters.size(); ++position) {
            for (const Kind& kind : kinds()) {
                cases.push_back({&function, position, &kind});
            }
        }
    }
    return cases;
}

// A call as C++ makes it: the types of the arguments are those of the parameters.
class DirectCall {
  public:
    DirectCall(IQuorvaneUDF& functions, std::span<const com::variant> arguments)
        : functions_{functions}, arguments_{arguments} {}

    HRESULT make(std::string_view name, VARIANT* result) const {
        if (name == "PackageNames") {
            return functions_.CapeOpenPackageNames(value(0), result);
        }
        if (name == "UnitOfMeasure") {
            result->vt = VT_BSTR;
            return functions_.CapeOpenUnitOfMeasure(text(0), value(1), &result->bstrVal);
        }
        if (name == "Compounds") {
            return functions_.CapeOpenCompounds(text(0), value(1), value(2), result);
        }
        if (name == "Phases") {
            return functions_.CapeOpenPhases(text(0), value(1), value(2), result);
        }
        if (name == "CompoundConstant") {
            return functions_.CapeOpenCompoundConstant(text(0), text(1), value(2), value(3), value(4),
                                                       result);
        }
        if (name == "TemperatureDependentProperty") {
            return functions_.CapeOpenTemperatureDependentProperty(text(0), text(1), real(2), value(3),
                                                                   value(4), value(5), result);
        }
        if (name == "MixtureProperty") {
            return functions_.CapeOpenMixtureProperty(text(0), text(1), text(2), real(3), real(4), value(5),
                                                      value(6), value(7), value(8), value(9), value(10),
                                                      result);
        }
        if (name == "TwoPhaseProperty") {
            return functions_.CapeOpenTwoPhaseProperty(text(0), text(1), text(2), text(3), real(4), real(5),
                                                       value(6), value(7), value(8), value(9), value(10),
                                                       value(11), value(12), result);
        }
        return functions_.CapeOpenPhaseEquilibrium(text(0), value(1), text(2), real(3), text(4), real(5),
                                                   value(6), value(7), value(8), value(9), value(10), result);
    }

  private:
    BSTR text(std::size_t position) const { return arguments_[position].bstrVal; }
    double real(std::size_t position) const { return arguments_[position].dblVal; }
    const VARIANT& value(std::size_t position) const { return arguments_[position]; }

    IQuorvaneUDF& functions_;
    std::span<const com::variant> arguments_;
};

// Excel shows a number that is none, or that is infinite, as #NUM!.
bool isAnError(const VARIANT& value) {
    return value.vt == VT_ERROR || (value.vt == VT_R8 && !std::isfinite(value.dblVal));
}

bool holdsAnError(const VARIANT& value) {
    if (value.vt == (VT_ARRAY | VT_VARIANT)) {
        const com::array_lock<VARIANT> lock{value.parray};
        return std::ranges::any_of(lock.elements(), isAnError);
    }
    if (value.vt == (VT_ARRAY | VT_R8)) {
        const com::array_lock<double> lock{value.parray};
        return !std::ranges::all_of(lock.elements(), [](double number) { return std::isfinite(number); });
    }
    return isAnError(value);
}

bool isSame(const VARIANT& one, const VARIANT& other) {
    if (one.vt != other.vt || one.vt == VT_BSTR) {
        return one.vt == other.vt && com::viewOf(one.bstrVal) == com::viewOf(other.bstrVal);
    }
    switch (one.vt) {
    case VT_NULL:
        return true;
    case VT_I2:
    case VT_BOOL:
        return one.iVal == other.iVal;
    case VT_I4:
    case VT_R4:
    case VT_ERROR:
        return one.lVal == other.lVal;
    default:
        return std::memcmp(&one.llVal, &other.llVal, sizeof one.llVal) == 0;
    }
}

// A worksheet passes no null text, a program may.
constexpr std::string_view messagesForPrograms[] = {"Empty string is invalid for compound name",
                                                    "Empty string is invalid for phase name"};

bool isKnownMessage(const std::string& message) {
    return std::ranges::find(messagesForPrograms, message) != std::end(messagesForPrograms) ||
           std::ranges::any_of(table().messages,
                               [&](const auto& entry) { return matches(message, entry.second); });
}

class ArgumentKinds : public Worksheet, public ::testing::WithParamInterface<Case> {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        teach(*package);
        if (tested().parameter().role == Role::filler) {
            package->flashes({{{L"Liquid", 1.0, L"Mole", {{0.25, 0.25, 0.5}}, L"Mole", 300.0, 100000.0}},
                              300.0,
                              100000.0});
        }
        attach();
    }

    static const Case& tested() { return GetParam(); }

    static std::vector<com::variant> arguments(const Kind& kind) {
        std::vector<com::variant> given = workingArguments(*tested().function);
        given[tested().position] = kind.make();
        return given;
    }

    // No function shows an error of Excel, with one exception: the user may ask for it to stand where there
    // is no number. What a program passes as an infinite condition comes back as the flash's temperature or
    // pressure.
    static bool mayShowAnError(const Kind& kind) {
        const Role role = tested().parameter().role;
        const std::string_view name = kind.name;
        const bool isBoundless = name == "Infinity";
        return role == Role::filler
                   ? isBoundless || name == "NotANumber" || name == "CellWithNotAvailable" ||
                         name == "CellWithValueError"
                   : isBoundless && (role == Role::conditionValue1 || role == Role::conditionValue2);
    }

    // "! message", or what the cells show.
    std::string told(const VARIANT& result, const Kind& kind) {
        const std::string failure = errorInfo();
        EXPECT_EQ(holdsAnError(result), mayShowAnError(kind));
        EXPECT_TRUE(result.vt == VT_BSTR || result.vt == VT_R8 || (result.vt & VT_ARRAY) != 0)
            << "the result has the type " << result.vt;
        if (failure.empty()) {
            return shown(result);
        }
        EXPECT_TRUE(isKnownMessage(shown(result))) << shown(result);
        return "! " + shown(result);
    }

    std::string showsFor(const Kind& kind) {
        return told(call(tested().function->method, arguments(kind)), kind);
    }

    // Of a table with a row for the vapor, which is absent, and one for the liquid.
    static void expectFilled(const VARIANT& result, const VARIANT& filler) {
        ASSERT_EQ(result.vt, VT_ARRAY | VT_VARIANT);
        const com::array_lock<VARIANT> lock{result.parray};
        const auto cells = lock.elements();
        ASSERT_EQ(cells.size(), 14U);
        for (std::size_t i = 0; i < cells.size(); i += 2) {
            EXPECT_TRUE(isSame(cells[i], filler)) << shown(cells[i]) << " of type " << cells[i].vt;
            EXPECT_TRUE(cells[i + 1].vt == VT_R8 && !isAnError(cells[i + 1])) << shown(cells[i + 1]);
        }
    }

    void expect(const VARIANT& result, const std::string& found, std::string expected) {
        constexpr std::string_view same = "as ";
        constexpr std::string_view fills = "fills with ";
        if (expected.starts_with(fills)) {
            expectFilled(result, kindNamed(expected.substr(fills.size())).make());
        } else if (expected.starts_with('!')) {
            if (const std::size_t at = expected.find('%'); at != std::string::npos) {
                expected.replace(at, 1, tested().parameter().name);
            }
            EXPECT_TRUE(matches(found, expected)) << "shows " << found << "\nexpected " << expected;
        } else if (expected == "a failure") {
            EXPECT_EQ(found.substr(0, 2), "! ");
        } else if (expected == "a result") {
            EXPECT_NE(found.substr(0, 2), "! ") << found;
        } else {
            ASSERT_EQ(expected.substr(0, same.size()), same);
            EXPECT_EQ(found, showsFor(kindNamed(expected.substr(same.size()))));
        }
    }
};

TEST_P(ArgumentKinds, Shows) {
    const com::variant result = call(tested().function->method, arguments(*tested().kind));
    expect(result, told(result, *tested().kind),
           std::string{outcome(tested().parameter().role, tested().kind->name)});
}

TEST_P(ArgumentKinds, ShowsTheSameThroughAutomationsDispatcher) {
    const std::string found = showsFor(*tested().kind);
    asVariables = true;
    EXPECT_EQ(showsFor(*tested().kind), found);
}

INSTANTIATE_TEST_SUITE_P(Late, ArgumentKinds, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

// Of the arguments that the types of the vtable permit. A null text can be told from an empty one here, while
// Automation hands it over as one without characters.
class DirectArgumentKinds : public ArgumentKinds {};

TEST_P(DirectArgumentKinds, Shows) {
    const std::vector<com::variant> given = arguments(*tested().kind);
    com::variant result;
    SetErrorInfo(0, nullptr);
    ASSERT_EQ(DirectCall(*addIn, given).make(tested().function->name, &result), S_OK);
    const std::string found = told(result, *tested().kind);
    const Role role = tested().parameter().role;
    if (role == Role::filler) {
        expect(result, found, std::string{outcome(role, tested().kind->name)});
    } else if (tested().kind->name != std::string_view{"NullText"}) {
        EXPECT_EQ(found, showsFor(*tested().kind));
    } else if (role == Role::compound) {
        EXPECT_EQ(found, "! Empty string is invalid for compound name");
    } else if (role == Role::phaseSelection) {
        EXPECT_EQ(found, "! Empty string is invalid for phase name");
    } else if (role == Role::unit) {
        EXPECT_EQ(found, "! Property name not specified");
    } else {
        expect(result, found, std::string{outcome(role, "NullText")});
    }
}

std::vector<Case> directCases() {
    std::vector<Case> cases = allCases();
    std::erase_if(cases, [](const Case& tested) {
        const VARTYPE type = tested.parameter().type;
        return type != VT_VARIANT && type != tested.kind->make().vt;
    });
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Direct, DirectArgumentKinds, ::testing::ValuesIn(directCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

} // namespace

} // namespace conformance
