#include "tests/src/server/every_call.h"

#include "com/safe_array.h"
#include "tests/scripted_package/variants.h"

#include <array>

namespace tests {

namespace {

struct Faces {
    explicit Faces(IUnknown* object)
        : material{com::queryFor<ICapeThermoMaterial>(object)},
          compounds{com::queryFor<ICapeThermoCompounds>(object)}, phases{com::queryFor<ICapeThermoPhases>(
                                                                      object)},
          equilibrium{com::queryFor<ICapeThermoEquilibriumRoutine>(object)},
          routine{com::queryFor<ICapeThermoPropertyRoutine>(object)},
          constants{com::queryFor<ICapeThermoUniversalConstant>(object)} {}

    com::com_ptr<ICapeThermoMaterial> material;
    com::com_ptr<ICapeThermoCompounds> compounds;
    com::com_ptr<ICapeThermoPhases> phases;
    com::com_ptr<ICapeThermoEquilibriumRoutine> equilibrium;
    com::com_ptr<ICapeThermoPropertyRoutine> routine;
    com::com_ptr<ICapeThermoUniversalConstant> constants;
};

struct Texts {
    com::unique_bstr enthalpy = com::makeBstr(L"enthalpy");
    com::unique_bstr fraction = com::makeBstr(L"fraction");
    com::unique_bstr kvalue = com::makeBstr(L"kvalue");
    com::unique_bstr liquid = com::makeBstr(L"Liquid");
    com::unique_bstr mole = com::makeBstr(L"Mole");
    com::unique_bstr gasConstant = com::makeBstr(L"molarGasConstant");
    com::unique_bstr state = com::makeBstr(L"StateOfAggregation");
    com::variant labels = com::textArray(std::vector<std::wstring>{L"Vapor", L"Liquid"});
    com::variant properties = com::textArray(std::vector<std::wstring>{L"enthalpy"});
    com::variant one = scripted::reals({1.0});
    com::variant three = scripted::reals({0.2, 0.3, 0.5});
    com::variant nothing;
};

struct Results {
    std::array<com::variant, 6> values;
    double T = 0.0;
    double P = 0.0;
    LONG count = 0;
    VARIANT_BOOL truth = VARIANT_FALSE;
    com::com_ptr<IDispatch> object;
};

struct Method {
    const char* name;
    HRESULT (*call)(Faces& on, Texts& given, Results& out);
};

// clang-format off
constexpr Method methods[] = {
    {"ClearAllProps", [](Faces& on, Texts&, Results&) { return on.material->ClearAllProps(); }},
    {"CopyFromMaterial", [](Faces& on, Texts&, Results& out) { IDispatch* source = nullptr; static_cast<void>(out); return on.material->CopyFromMaterial(&source); }},
    {"CreateMaterial", [](Faces& on, Texts&, Results& out) { return on.material->CreateMaterial(out.object.put()); }},
    {"GetOverallProp", [](Faces& on, Texts& given, Results& out) { return on.material->GetOverallProp(given.fraction.get(), given.mole.get(), &out.values[0]); }},
    {"GetOverallTPFraction", [](Faces& on, Texts&, Results& out) { return on.material->GetOverallTPFraction(&out.T, &out.P, &out.values[0]); }},
    {"GetPresentPhases", [](Faces& on, Texts&, Results& out) { return on.material->GetPresentPhases(&out.values[0], &out.values[1]); }},
    {"GetSinglePhaseProp", [](Faces& on, Texts& given, Results& out) { return on.material->GetSinglePhaseProp(given.fraction.get(), given.liquid.get(), given.mole.get(), &out.values[0]); }},
    {"GetTPFraction", [](Faces& on, Texts& given, Results& out) { return on.material->GetTPFraction(given.liquid.get(), &out.T, &out.P, &out.values[0]); }},
    {"GetTwoPhaseProp", [](Faces& on, Texts& given, Results& out) { return on.material->GetTwoPhaseProp(given.kvalue.get(), given.labels, nullptr, &out.values[0]); }},
    {"SetOverallProp", [](Faces& on, Texts& given, Results&) { return on.material->SetOverallProp(given.fraction.get(), given.mole.get(), given.three); }},
    {"SetPresentPhases", [](Faces& on, Texts& given, Results&) { return on.material->SetPresentPhases(given.labels, given.nothing); }},
    {"SetSinglePhaseProp", [](Faces& on, Texts& given, Results&) { return on.material->SetSinglePhaseProp(given.fraction.get(), given.liquid.get(), given.mole.get(), given.three); }},
    {"SetTwoPhaseProp", [](Faces& on, Texts& given, Results&) { return on.material->SetTwoPhaseProp(given.kvalue.get(), given.labels, nullptr, given.three); }},
    {"GetCompoundConstant", [](Faces& on, Texts& given, Results& out) { return on.compounds->GetCompoundConstant(given.properties, given.nothing, &out.values[0]); }},
    {"GetCompoundList", [](Faces& on, Texts&, Results& out) { auto& v = out.values; return on.compounds->GetCompoundList(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5]); }},
    {"GetConstPropList", [](Faces& on, Texts&, Results& out) { return on.compounds->GetConstPropList(&out.values[0]); }},
    {"GetNumCompounds", [](Faces& on, Texts&, Results& out) { return on.compounds->GetNumCompounds(&out.count); }},
    {"GetPDependentProperty", [](Faces& on, Texts& given, Results& out) { return on.compounds->GetPDependentProperty(given.properties, 1e5, given.nothing, &out.values[0]); }},
    {"GetPDependentPropList", [](Faces& on, Texts&, Results& out) { return on.compounds->GetPDependentPropList(&out.values[0]); }},
    {"GetTDependentProperty", [](Faces& on, Texts& given, Results& out) { return on.compounds->GetTDependentProperty(given.properties, 300.0, given.nothing, &out.values[0]); }},
    {"GetTDependentPropList", [](Faces& on, Texts&, Results& out) { return on.compounds->GetTDependentPropList(&out.values[0]); }},
    {"CalcEquilibrium", [](Faces& on, Texts& given, Results&) { return on.equilibrium->CalcEquilibrium(given.nothing, given.nothing, nullptr); }},
    {"CheckEquilibriumSpec", [](Faces& on, Texts& given, Results& out) { return on.equilibrium->CheckEquilibriumSpec(given.nothing, given.nothing, nullptr, &out.truth); }},
    {"GetNumPhases", [](Faces& on, Texts&, Results& out) { return on.phases->GetNumPhases(&out.count); }},
    {"GetPhaseInfo", [](Faces& on, Texts& given, Results& out) { return on.phases->GetPhaseInfo(given.liquid.get(), given.state.get(), &out.values[0]); }},
    {"GetPhaseList", [](Faces& on, Texts&, Results& out) { return on.phases->GetPhaseList(&out.values[0], &out.values[1], &out.values[2]); }},
    {"GetUniversalConstant", [](Faces& on, Texts& given, Results& out) { return on.constants->GetUniversalConstant(given.gasConstant.get(), &out.values[0]); }},
    {"GetUniversalConstantList", [](Faces& on, Texts&, Results& out) { return on.constants->GetUniversalConstantList(&out.values[0]); }},
    {"CalcAndGetLnPhi", [](Faces& on, Texts& given, Results& out) { return on.routine->CalcAndGetLnPhi(given.liquid.get(), 300.0, 1e5, given.three, 1, &out.values[0], &out.values[1], &out.values[2], &out.values[3]); }},
    {"CalcSinglePhaseProp", [](Faces& on, Texts& given, Results&) { return on.routine->CalcSinglePhaseProp(given.properties, given.liquid.get()); }},
    {"CalcTwoPhaseProp", [](Faces& on, Texts& given, Results&) { return on.routine->CalcTwoPhaseProp(given.properties, given.labels); }},
    {"CheckSinglePhasePropSpec", [](Faces& on, Texts& given, Results& out) { return on.routine->CheckSinglePhasePropSpec(given.enthalpy.get(), given.liquid.get(), &out.truth); }},
    {"CheckTwoPhasePropSpec", [](Faces& on, Texts& given, Results& out) { return on.routine->CheckTwoPhasePropSpec(given.kvalue.get(), given.labels, &out.truth); }},
    {"GetSinglePhasePropList", [](Faces& on, Texts&, Results& out) { return on.routine->GetSinglePhasePropList(&out.values[0]); }},
    {"GetTwoPhasePropList", [](Faces& on, Texts&, Results& out) { return on.routine->GetTwoPhasePropList(&out.values[0]); }},
};
// clang-format on

} // namespace

std::string wordsOf(IUnknown* material, HRESULT code) {
    if (SUCCEEDED(code)) {
        return "done";
    }
    const auto user = com::queryFor<ECapeUser>(material);
    com::unique_bstr text;
    if (!user || FAILED(user->get_description(text.put()))) {
        return "(no words)";
    }
    return scripted::narrow(com::viewOf(text));
}

std::vector<std::string> callEverything(IUnknown* material) {
    Faces faces{material};
    Texts texts;
    std::vector<std::string> said;
    for (const Method& method : methods) {
        Results results;
        const HRESULT code = method.call(faces, texts, results);
        said.push_back(std::string{method.name} + ": " + wordsOf(material, code));
    }
    return said;
}

} // namespace tests
