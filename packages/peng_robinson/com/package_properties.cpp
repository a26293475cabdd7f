// ICapeThermoPropertyRoutine: conditions come from the material, results go back to it.
#include "com/safe_array.h"
#include "packages/peng_robinson/com/phases.h"
#include "packages/peng_robinson/com/property_package.h"
#include "packages/peng_robinson/com/single_phase_table.h"
#include "packages/peng_robinson/com/two_phase_table.h"
#include "packages/peng_robinson/eos/flash.h"

#include <cmath>
#include <numeric>
#include <span>

namespace peng_robinson {
namespace {

constexpr const wchar_t* routine = L"ICapeThermoPropertyRoutine";
constexpr int allFlags =
    CAPE_LOG_FUGACITY_COEFFICIENTS | CAPE_T_DERIVATIVE | CAPE_P_DERIVATIVE | CAPE_MOLE_NUMBERS_DERIVATIVES;

std::vector<std::wstring> readProperties(const VARIANT& props) {
    std::vector<std::wstring> properties = readTexts(props, L"property names", 1);
    if (properties.empty()) {
        throw ArgumentError{1, L"No property is asked for"};
    }
    return properties;
}

eos::DifferentiablePhase evaluate(const Material& material, const std::wstring& label,
                                  const PhaseKind& phase) {
    const Material::PhaseConditions at = material.conditionsOf(label);
    return eos::DifferentiablePhase{material.fluid().properties(at.T, at.P, at.x, phase.root)};
}

std::vector<std::wstring> readTwoLabels(const VARIANT& phaseLabels) {
    std::vector<std::wstring> labels = readTexts(phaseLabels, L"phase labels", 2);
    if (labels.size() != 2) {
        throw ArgumentError{2, L"A two-phase property needs two phase labels"};
    }
    if (&requirePhase(labels[0], 2) == &requirePhase(labels[1], 2)) {
        throw ArgumentError{2, L"A two-phase property needs two different phases"};
    }
    return labels;
}

// Only derivatives by a compound that is not there may lack a value: when the compound lacks a constant.
void requireNumbers(const std::wstring& name, eos::Derivative derivative, std::span<const double> values,
                    std::span<const double> x) {
    const bool byCompound =
        derivative == eos::Derivative::moleFraction || derivative == eos::Derivative::moleNumber;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isnan(values[i]) && !(byCompound && x[i % x.size()] == 0.0)) {
            throw CapeError{ECapeThrmPropertyNotAvailableHR,
                            L"No value for " + name + L": the equation gives none at these conditions"};
        }
    }
}

void emptyOut(VARIANT* inOut) {
    if (inOut != nullptr) {
        replaceValue(inOut, com::variant{});
    }
}

} // namespace

HRESULT STDMETHODCALLTYPE PropertyPackage::CalcAndGetLnPhi(BSTR phaseLabel, double temperature,
                                                           double pressure, VARIANT moleNumbers, int fFlags,
                                                           VARIANT* lnPhi, VARIANT* lnPhiDT, VARIANT* lnPhiDP,
                                                           VARIANT* lnPhiDn) noexcept {
    return call(routine, L"CalcAndGetLnPhi", [&] {
        for (VARIANT* out : {lnPhi, lnPhiDT, lnPhiDP, lnPhiDn}) {
            emptyOut(out);
        }
        const auto material = requireMaterial();
        const PhaseKind& phase = requirePhase(com::viewOf(phaseLabel), 1);
        const std::vector<double> amounts = readReals(moleNumbers, L"mole numbers", 4);
        if (amounts.size() != material->fluid().size()) {
            throw ArgumentError{4, L"The mole numbers must be one for each compound of the material"};
        }
        if (fFlags < CAPE_NO_CALCULATION || fFlags > allFlags) {
            throw ArgumentError{5, L"The flags are a sum of 1, 2, 4 and 8"};
        }
        const auto asksFor = [fFlags](eCapeCalculationCode code) { return (fFlags & code) != 0; };
        const std::vector<double> x = eos::normalisedComposition(amounts, amounts.size());
        eos::PhaseState state = material->fluid()
                                    .model()
                                    .at(temperature)
                                    .phase(pressure, x, phase.root,
                                           {.thermal = asksFor(CAPE_T_DERIVATIVE),
                                            .moles = asksFor(CAPE_MOLE_NUMBERS_DERIVATIVES)});
        // The state holds the derivatives for one mole in all.
        const double total = std::accumulate(amounts.begin(), amounts.end(), 0.0);
        for (double& value : state.dlnPhi_dn) {
            value /= total;
        }
        const struct {
            eCapeCalculationCode code;
            VARIANT* out;
            const std::vector<double>& values;
        } results[] = {
            {CAPE_LOG_FUGACITY_COEFFICIENTS, lnPhi, state.lnPhi},
            {CAPE_T_DERIVATIVE, lnPhiDT, state.dlnPhi_dT},
            {CAPE_P_DERIVATIVE, lnPhiDP, state.dlnPhi_dP},
            {CAPE_MOLE_NUMBERS_DERIVATIVES, lnPhiDn, state.dlnPhi_dn},
        };
        for (const auto& [code, out, values] : results) {
            if (asksFor(code)) {
                replaceValue(out, com::realArray(values));
            }
        }
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::CalcSinglePhaseProp(VARIANT props, BSTR phaseLabel) noexcept {
    return call(routine, L"CalcSinglePhaseProp", [&] {
        const auto material = requireMaterial();
        const std::vector<std::wstring> names = readProperties(props);
        const std::wstring label{com::viewOf(phaseLabel)};
        const PhaseKind& phase = requirePhase(label, 2);
        std::vector<SinglePhaseProperty> properties;
        for (const std::wstring& name : names) {
            properties.push_back(findSinglePhaseProperty(name));
            if (!properties.back().isKnown()) {
                throw CapeError{ECapeLimitedImplHR,
                                L"\"" + name + L"\" is not a single-phase property of this package"};
            }
        }
        eos::DifferentiablePhase evaluated = evaluate(*material, label, phase);
        // All or nothing: every property is calculated before the first is handed over.
        std::vector<std::vector<double>> values;
        values.reserve(properties.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            values.push_back(properties[i].valuesOf(evaluated));
            requireNumbers(names[i], properties[i].derivative, values[i], evaluated.values().x);
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            material->setPhaseValues(names[i], label, properties[i].hasBasis() ? L"Mole" : L"", values[i]);
        }
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::CalcTwoPhaseProp(VARIANT props, VARIANT phaseLabels) noexcept {
    return call(routine, L"CalcTwoPhaseProp", [&] {
        const auto material = requireMaterial();
        const std::vector<std::wstring> names = readProperties(props);
        const std::vector<std::wstring> labels = readTwoLabels(phaseLabels);
        std::vector<TwoPhaseName> properties;
        for (const std::wstring& name : names) {
            const auto found = findTwoPhaseProperty(name);
            if (!found) {
                throw CapeError{ECapeLimitedImplHR,
                                L"\"" + name + L"\" is not a two-phase property of this package"};
            }
            properties.push_back(*found);
        }
        eos::DifferentiablePhase first = evaluate(*material, labels[0], requirePhase(labels[0], 2));
        eos::DifferentiablePhase second = evaluate(*material, labels[1], requirePhase(labels[1], 2));
        std::vector<std::vector<double>> values;
        values.reserve(properties.size());
        for (const auto& [property, derivative] : properties) {
            values.push_back(eos::twoPhaseValues(property, derivative, first, second));
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            material->setTwoPhaseValues(names[i], labels, values[i]);
        }
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::CheckSinglePhasePropSpec(BSTR property, BSTR phaseLabel,
                                                                    VARIANT_BOOL* valid) noexcept {
    return call(routine, L"CheckSinglePhasePropSpec", [&] {
        requirePointer(valid);
        const bool supported = findSinglePhaseProperty(com::viewOf(property)).isKnown() &&
                               findPhase(com::viewOf(phaseLabel)) != nullptr;
        *valid = supported ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::CheckTwoPhasePropSpec(BSTR property, VARIANT phaseLabels,
                                                                 VARIANT_BOOL* valid) noexcept {
    return call(routine, L"CheckTwoPhasePropSpec", [&] {
        requirePointer(valid);
        *valid = VARIANT_FALSE;
        try {
            readTwoLabels(phaseLabels);
        } catch (const ArgumentError&) {
            return; // the question was whether these labels will do, and they will not
        }
        *valid = findTwoPhaseProperty(com::viewOf(property)) ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetSinglePhasePropList(VARIANT* props) noexcept {
    return call(routine, L"GetSinglePhasePropList",
                [&] { returnValue(props, com::textArray(singlePhasePropertyNames())); });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetTwoPhasePropList(VARIANT* props) noexcept {
    return call(routine, L"GetTwoPhasePropList",
                [&] { returnValue(props, com::textArray(twoPhasePropertyNames())); });
}

} // namespace peng_robinson
