// Each argument of each function, of every kind that anything can pass: the call succeeds, and the cell shows
// a value or one of the known messages, the same through IDispatch and through the vtable.
#include "tests/conformance/argument_kinds.h"
#include "tests/conformance/table_file.h"

#include "com/safe_array.h"

#include <algorithm>
#include <cctype>

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

bool holdsAnError(const VARIANT& value) {
    if (value.vt == (VT_ARRAY | VT_VARIANT)) {
        const com::array_lock<VARIANT> lock{value.parray};
        return std::ranges::any_of(lock.elements(),
                                   [](const VARIANT& element) { return element.vt == VT_ERROR; });
    }
    return value.vt == VT_ERROR;
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
        attach();
    }

    static const Case& tested() { return GetParam(); }

    static std::vector<com::variant> arguments(const Kind& kind) {
        std::vector<com::variant> given = workingArguments(*tested().function);
        given[tested().position] = kind.make();
        return given;
    }

    // "! message", or what the cells show.
    std::string told(const VARIANT& result) {
        const std::string failure = errorInfo();
        EXPECT_FALSE(holdsAnError(result));
        EXPECT_TRUE(result.vt == VT_BSTR || result.vt == VT_R8 || (result.vt & VT_ARRAY) != 0)
            << "the result has the type " << result.vt;
        if (failure.empty()) {
            return shown(result);
        }
        EXPECT_TRUE(isKnownMessage(shown(result))) << shown(result);
        return "! " + shown(result);
    }

    std::string showsFor(const Kind& kind) { return told(call(tested().function->method, arguments(kind))); }

    void expect(const std::string& found, std::string expected) {
        constexpr std::string_view same = "as ";
        if (expected.starts_with('!')) {
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
    expect(showsFor(*tested().kind), std::string{outcome(tested().parameter().role, tested().kind->name)});
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
    const std::string found = told(result);
    const Role role = tested().parameter().role;
    if (tested().kind->name != std::string_view{"NullText"}) {
        EXPECT_EQ(found, showsFor(*tested().kind));
    } else if (role == Role::compound) {
        EXPECT_EQ(found, "! Empty string is invalid for compound name");
    } else if (role == Role::phaseSelection) {
        EXPECT_EQ(found, "! Empty string is invalid for phase name");
    } else if (role == Role::unit) {
        EXPECT_EQ(found, "! Property name not specified");
    } else {
        expect(found, std::string{outcome(role, "NullText")});
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
