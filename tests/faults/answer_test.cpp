// What foreign calls hand over besides arrays: objects and truth values.
#include "tests/faults/inject.h"

namespace faults {

namespace {

// --- The package of a manager
// --------------------------------------------------------------------------------------

constexpr const char* fromManager = "CreateWorkbookPP from the manager";

struct Given {
    std::string name;
    HRESULT code;
    bool isRubbish; ///< a pointer to what is no object; none otherwise
    std::string failure;
};

void PrintTo(const Given& tested, std::ostream* out) { *out << tested.name; }

std::vector<Given> allGiven() {
    const std::string bare = "Package does not implement ICapeThermoCommpounds";
    std::vector<Given> all = {{"Nothing_S_OK", S_OK, false, bare}, {"Nothing_S_FALSE", S_FALSE, false, bare}};
    for (const Code& code : codes()) {
        if (FAILED(code.value)) {
            const std::string reason = code.words != nullptr ? code.words : systemText(code.value);
            all.push_back({std::string{"Rubbish_"} + code.name, code.value, true,
                           "Failed to create property package: " + reason});
        }
    }
    return all;
}

class PackageOfAManager : public Stage, public ::testing::WithParamInterface<Given> {};

TEST_P(PackageOfAManager, IsUsedOnlyWhereThereIsOne) {
    const Given& given = GetParam();
    static std::uintptr_t rubbish[4] = {};
    const std::string result = go(fromManager, [&] {
        manager->hook("GetPropertyPackage", [&](scripted::Call& call) {
            VARIANT object{};
            object.vt = VT_DISPATCH;
            object.byref = given.isRubbish ? static_cast<void*>(rubbish) : nullptr;
            call.out[0].give(com::variant::attach(object));
            return given.code;
        });
    });
    EXPECT_EQ(result, "! " + given.failure);
    manager->recovers("GetPropertyPackage");
    expectHealthyAgain(fromManager, result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, PackageOfAManager, ::testing::ValuesIn(allGiven()),
                         [](const auto& tested) { return tested.param.name; });

// --- Truth
// ---------------------------------------------------------------------------------------------------------

struct Truth {
    const char* name;
    VARIANT_BOOL value;
    HRESULT code;
    const char* shown;
};

constexpr Truth truths[] = {
    {"False", 0, S_OK, "false"},
    {"True", -1, S_OK, "true"},
    {"One", 1, S_OK, "true"},
    {"Two", 2, S_OK, "true"},
    {"Highest", 32767, S_OK, "true"},
    {"TrueOtherwise", -1, S_FALSE, "true"},
    {"FalseOtherwise", 0, S_FALSE, "false"},
    {"TrueOfAFailure", -1, E_FAIL, "false"},
};

void PrintTo(const Truth& tested, std::ostream* out) { *out << tested.name; }

class TruthOf : public Stage, public ::testing::WithParamInterface<Truth> {
  protected:
    void expectShown(const std::string& name) {
        const Call& call = callNamed(name);
        const std::string result = go(call.way, [&] {
            package->hook(call.method, [](scripted::Call& heard) {
                VARIANT value{};
                value.vt = VT_BOOL;
                value.boolVal = GetParam().value;
                heard.out[0].give(com::variant::attach(value));
                return GetParam().code;
            });
        });
        EXPECT_EQ(result, GetParam().shown);
        package->recovers(call.method);
        expectHealthyAgain(call.way, result);
    }
};

TEST_P(TruthOf, ASinglePhasePropertyIsAnyButZero) { expectShown("CheckSinglePhasePropSpec"); }
TEST_P(TruthOf, ATwoPhasePropertyIsAnyButZero) { expectShown("CheckTwoPhasePropSpec"); }

INSTANTIATE_TEST_SUITE_P(FaultMatrix, TruthOf, ::testing::ValuesIn(truths),
                         [](const auto& tested) { return tested.param.name; });

} // namespace

} // namespace faults
