// The operations that the material does not support, and the two of ICapeThermoCompounds that it does.
#include "src/material/material_object.h"

namespace quorvane {

namespace {

constexpr const wchar_t* material = L"ICapeThermoMaterial";
constexpr const wchar_t* compounds = L"ICapeThermoCompounds";
constexpr const wchar_t* equilibriumRoutine = L"ICapeThermoEquilibriumRoutine";
constexpr const wchar_t* phaseList = L"ICapeThermoPhases";
constexpr const wchar_t* universalConstant = L"ICapeThermoUniversalConstant";
constexpr const wchar_t* propertyRoutine = L"ICapeThermoPropertyRoutine";

} // namespace

HRESULT STDMETHODCALLTYPE MaterialObject11::GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                                            VARIANT* boilingPoints, VARIANT* molecularWeights,
                                                            VARIANT* casNumbers) noexcept {
    VARIANT* const outputs[CompoundList_Count] = {ids,           formulae,         names,
                                                  boilingPoints, molecularWeights, casNumbers};
    for (const VARIANT* output : outputs) {
        if (output == nullptr) {
            return E_POINTER;
        }
    }
    return capeCall(L"MaterialObject11::GetCompoundList", compounds, [&] {
        std::array<com::variant, CompoundList_Count> copies;
        for (std::size_t i = 0; i < CompoundList_Count; ++i) {
            // What the package gave as a list that nobody else looks at may be anything.
            if (auto copy = com::copyIfPossible(owner().compoundList(static_cast<CompoundList>(i)).value)) {
                copies[i] = std::move(*copy);
            }
        }
        for (std::size_t i = 0; i < CompoundList_Count; ++i) {
            com::assign(outputs[i], std::move(copies[i]));
        }
    });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetNumCompounds(LONG* count) noexcept {
    if (count == nullptr) {
        return E_POINTER;
    }
    return capeCall(L"MaterialObject11::GetNumCompounds", compounds,
                    [&] { *count = owner().compoundCount(); });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CopyFromMaterial(IDispatch** source) noexcept {
    return notImplemented(L"CopyFromMaterial", material, source);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CreateMaterial(IDispatch** newMaterial) noexcept {
    return notImplementedResult(L"CreateMaterial", material, newMaterial);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetTwoPhaseProp(BSTR, VARIANT, BSTR, VARIANT* results) noexcept {
    return notImplemented(L"GetTwoPhaseProp", material, results);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetCompoundConstant(VARIANT, VARIANT, VARIANT* values) noexcept {
    return notImplementedResult(L"GetCompoundConstant", compounds, values);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetConstPropList(VARIANT* names) noexcept {
    return notImplementedResult(L"GetConstPropList", compounds, names);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetPDependentProperty(VARIANT, double, VARIANT,
                                                                  VARIANT* values) noexcept {
    return notImplemented(L"GetPDependentProperty", compounds, values);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetPDependentPropList(VARIANT* names) noexcept {
    return notImplementedResult(L"GetPDependentPropList", compounds, names);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetTDependentProperty(VARIANT, double, VARIANT,
                                                                  VARIANT* values) noexcept {
    return notImplemented(L"GetTDependentProperty", compounds, values);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetTDependentPropList(VARIANT* names) noexcept {
    return notImplementedResult(L"GetTDependentPropList", compounds, names);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CalcEquilibrium(VARIANT, VARIANT, BSTR) noexcept {
    return notImplemented(L"CalcEquilibrium", equilibriumRoutine);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CheckEquilibriumSpec(VARIANT, VARIANT, BSTR,
                                                                 VARIANT_BOOL* supported) noexcept {
    return notImplementedResult(L"CheckEquilibriumSpec", equilibriumRoutine, supported);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetNumPhases(LONG* count) noexcept {
    return notImplementedResult(L"GetNumPhases", phaseList, count);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetPhaseInfo(BSTR, BSTR, VARIANT* value) noexcept {
    return notImplementedResult(L"GetPhaseInfo", phaseList, value);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetPhaseList(VARIANT* labels, VARIANT*, VARIANT*) noexcept {
    return notImplemented(L"GetPhaseList", phaseList, labels);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetUniversalConstant(BSTR, VARIANT* value) noexcept {
    return notImplementedResult(L"GetUniversalConstant", universalConstant, value);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetUniversalConstantList(VARIANT* names) noexcept {
    return notImplementedResult(L"GetUniversalConstantList", universalConstant, names);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CalcAndGetLnPhi(BSTR, double, double, VARIANT, INT,
                                                            VARIANT* lnPhi, VARIANT*, VARIANT*,
                                                            VARIANT*) noexcept {
    return notImplemented(L"CalcAndGetLnPhi", propertyRoutine, lnPhi);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CalcSinglePhaseProp(VARIANT, BSTR) noexcept {
    return notImplemented(L"CalcSinglePhaseProp", propertyRoutine);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CalcTwoPhaseProp(VARIANT, VARIANT) noexcept {
    return notImplemented(L"CalcTwoPhaseProp", propertyRoutine);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CheckSinglePhasePropSpec(BSTR, BSTR,
                                                                     VARIANT_BOOL* valid) noexcept {
    return notImplementedResult(L"CheckSinglePhasePropSpec", propertyRoutine, valid);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::CheckTwoPhasePropSpec(BSTR, VARIANT,
                                                                  VARIANT_BOOL* valid) noexcept {
    return notImplementedResult(L"CheckTwoPhasePropSpec", propertyRoutine, valid);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetSinglePhasePropList(VARIANT* names) noexcept {
    return notImplementedResult(L"GetSinglePhasePropList", propertyRoutine, names);
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetTwoPhasePropList(VARIANT* names) noexcept {
    return notImplementedResult(L"GetTwoPhasePropList", propertyRoutine, names);
}

} // namespace quorvane
