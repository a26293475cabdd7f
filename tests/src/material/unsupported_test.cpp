// The operations that the material does not support: each says so, under its own name.
#include "tests/src/material/material_fixture.h"

#include <functional>

namespace quorvane {

namespace {

struct Operation {
    const char* interfaceName;
    const char* name;
    std::function<HRESULT(MaterialObject11&)> call;
    /// The call without what it requires; none for an operation that requires nothing.
    std::function<HRESULT(MaterialObject11&)> incompleteCall;
};

VARIANT empty() { return VARIANT{}; }

const std::vector<Operation>& operations() {
    static com::variant v;
    static IDispatch* object = nullptr;
    static LONG number = 0;
    static VARIANT_BOOL truth = VARIANT_FALSE;
    using M = MaterialObject11;
    constexpr const char* material = "ICapeThermoMaterial";
    constexpr const char* compounds = "ICapeThermoCompounds";
    constexpr const char* equilibrium = "ICapeThermoEquilibriumRoutine";
    constexpr const char* phases = "ICapeThermoPhases";
    constexpr const char* constants = "ICapeThermoUniversalConstant";
    constexpr const char* routine = "ICapeThermoPropertyRoutine";
    // clang-format off
    static const std::vector<Operation> list = {
        {material, "CopyFromMaterial", [](M& m) { return m.CopyFromMaterial(&object); }, [](M& m) { return m.CopyFromMaterial(nullptr); }},
        {material, "CreateMaterial", [](M& m) { return m.CreateMaterial(&object); }, [](M& m) { return m.CreateMaterial(nullptr); }},
        {material, "GetTwoPhaseProp", [](M& m) { return m.GetTwoPhaseProp(nullptr, empty(), nullptr, &v); }, [](M& m) { return m.GetTwoPhaseProp(nullptr, empty(), nullptr, nullptr); }},
        {compounds, "GetCompoundConstant", [](M& m) { return m.GetCompoundConstant(empty(), empty(), &v); }, [](M& m) { return m.GetCompoundConstant(empty(), empty(), nullptr); }},
        {compounds, "GetConstPropList", [](M& m) { return m.GetConstPropList(&v); }, [](M& m) { return m.GetConstPropList(nullptr); }},
        {compounds, "GetPDependentProperty", [](M& m) { return m.GetPDependentProperty(empty(), 1e5, empty(), &v); }, [](M& m) { return m.GetPDependentProperty(empty(), 1e5, empty(), nullptr); }},
        {compounds, "GetPDependentPropList", [](M& m) { return m.GetPDependentPropList(&v); }, [](M& m) { return m.GetPDependentPropList(nullptr); }},
        {compounds, "GetTDependentProperty", [](M& m) { return m.GetTDependentProperty(empty(), 300.0, empty(), &v); }, [](M& m) { return m.GetTDependentProperty(empty(), 300.0, empty(), nullptr); }},
        {compounds, "GetTDependentPropList", [](M& m) { return m.GetTDependentPropList(&v); }, [](M& m) { return m.GetTDependentPropList(nullptr); }},
        {equilibrium, "CalcEquilibrium", [](M& m) { return m.CalcEquilibrium(empty(), empty(), nullptr); }, {}},
        {equilibrium, "CheckEquilibriumSpec", [](M& m) { return m.CheckEquilibriumSpec(empty(), empty(), nullptr, &truth); }, [](M& m) { return m.CheckEquilibriumSpec(empty(), empty(), nullptr, nullptr); }},
        {phases, "GetNumPhases", [](M& m) { return m.GetNumPhases(&number); }, [](M& m) { return m.GetNumPhases(nullptr); }},
        {phases, "GetPhaseInfo", [](M& m) { return m.GetPhaseInfo(nullptr, nullptr, &v); }, [](M& m) { return m.GetPhaseInfo(nullptr, nullptr, nullptr); }},
        {phases, "GetPhaseList", [](M& m) { return m.GetPhaseList(&v, &v, &v); }, [](M& m) { return m.GetPhaseList(nullptr, &v, &v); }},
        {constants, "GetUniversalConstant", [](M& m) { return m.GetUniversalConstant(nullptr, &v); }, [](M& m) { return m.GetUniversalConstant(nullptr, nullptr); }},
        {constants, "GetUniversalConstantList", [](M& m) { return m.GetUniversalConstantList(&v); }, [](M& m) { return m.GetUniversalConstantList(nullptr); }},
        {routine, "CalcAndGetLnPhi", [](M& m) { return m.CalcAndGetLnPhi(nullptr, 300.0, 1e5, empty(), 1, &v, &v, &v, &v); }, [](M& m) { return m.CalcAndGetLnPhi(nullptr, 300.0, 1e5, empty(), 1, nullptr, &v, &v, &v); }},
        {routine, "CalcSinglePhaseProp", [](M& m) { return m.CalcSinglePhaseProp(empty(), nullptr); }, {}},
        {routine, "CalcTwoPhaseProp", [](M& m) { return m.CalcTwoPhaseProp(empty(), empty()); }, {}},
        {routine, "CheckSinglePhasePropSpec", [](M& m) { return m.CheckSinglePhasePropSpec(nullptr, nullptr, &truth); }, [](M& m) { return m.CheckSinglePhasePropSpec(nullptr, nullptr, nullptr); }},
        {routine, "CheckTwoPhasePropSpec", [](M& m) { return m.CheckTwoPhasePropSpec(nullptr, empty(), &truth); }, [](M& m) { return m.CheckTwoPhasePropSpec(nullptr, empty(), nullptr); }},
        {routine, "GetSinglePhasePropList", [](M& m) { return m.GetSinglePhasePropList(&v); }, [](M& m) { return m.GetSinglePhasePropList(nullptr); }},
        {routine, "GetTwoPhasePropList", [](M& m) { return m.GetTwoPhasePropList(&v); }, [](M& m) { return m.GetTwoPhasePropList(nullptr); }},
    };
    // clang-format on
    return list;
}

class UnsupportedOperation : public MaterialTest, public testing::WithParamInterface<std::size_t> {
  protected:
    const Operation& operation() const { return operations()[GetParam()]; }
};

TEST_P(UnsupportedOperation, SaysThatItIsNotImplemented) {
    EXPECT_EQ(told(operation().call(*material)), std::string{"80040509 "} + operation().name + " of " +
                                                     operation().interfaceName + ": Not implemented");
    com::unique_bstr text;
    EXPECT_EQ(material->get_operation(text.put()), S_OK);
    EXPECT_EQ(scripted::narrow(com::viewOf(text)), "N/A");
    LONG code = 7;
    EXPECT_EQ(material->get_code(&code), S_OK);
    EXPECT_EQ(code, 0);
}

TEST_P(UnsupportedOperation, RefusesAMissingPointerWithoutARecord) {
    if (!operation().incompleteCall) {
        return; // it requires nothing
    }
    EXPECT_EQ(told(operation().incompleteCall(*material)), "80004003  of : ");
}

INSTANTIATE_TEST_SUITE_P(Operations, UnsupportedOperation, testing::Range(std::size_t{0}, std::size_t{23}),
                         [](const auto& parameter) { return operations()[parameter.param].name; });

TEST(UnsupportedOperations, AreAllTested) { EXPECT_EQ(operations().size(), 23U); }

} // namespace

} // namespace quorvane
