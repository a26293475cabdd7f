// The material while a package calculates an equilibrium: it hands out the conditions and the overall
// composition, and takes the phases.
#include "src/material/material_values.h"

namespace quorvane {

HRESULT STDMETHODCALLTYPE MaterialObject11::GetOverallProp(BSTR name, BSTR basis, VARIANT* results) noexcept {
    if (results == nullptr) {
        return E_POINTER;
    }
    return capeCall(L"MaterialObject11::GetOverallProp", materialInterface, [&] {
        if (mode != CalculationMode::Equilibrium) {
            throwNoValue();
        }
        for (const EquilibriumSpecification& specification : specifications) {
            if (isSameName(name, specification.name)) {
                const double value = specificationValue(specification, parseBasis(com::viewOf(basis)));
                com::assign(results, com::realArray({&value, 1}));
                return;
            }
        }
        if (!equalsFoldingAscii(com::viewOf(name), L"fraction")) {
            throwNoValue();
        }
        com::assign(results, com::realArray(convertComposition(composition1_.values, composition1_.basis,
                                                               parseBasis(com::viewOf(basis)))));
    });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetOverallTPFraction(double* T, double* P,
                                                                 VARIANT* fractions) noexcept {
    if (T == nullptr || P == nullptr || fractions == nullptr) {
        return E_POINTER;
    }
    if (mode != CalculationMode::Equilibrium) {
        // Recorded under the other method's name: log readers of existing packages look for that.
        return notImplemented(L"GetOverallProp", materialInterface);
    }
    return capeCall(L"MaterialObject11::GetOverallTPFraction", materialInterface, [&] {
        const bool inOrder =
            specifications[0].name == L"temperature" && specifications[1].name == L"pressure";
        const bool reversed =
            specifications[0].name == L"pressure" && specifications[1].name == L"temperature";
        if (!inOrder && !reversed) {
            throwNoValue();
        }
        com::variant composition =
            com::realArray(convertComposition(composition1_.values, composition1_.basis, Basis_Mole));
        *T = specifications[inOrder ? 0 : 1].value;
        *P = specifications[inOrder ? 1 : 0].value;
        com::assign(fractions, std::move(composition));
    });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetPresentPhases(VARIANT* labels, VARIANT* status) noexcept {
    if (labels == nullptr || status == nullptr) {
        return E_POINTER;
    }
    return capeCall(L"MaterialObject11::GetPresentPhases", materialInterface, [&] {
        if (phaseStatus_.isEmpty()) {
            phaseStatus_.createVector(owner().phaseCount(), VT_I4);
        }
        com::variant labelsCopy = com::variant::copyOf(owner().phaseLabels().value);
        com::variant statusCopy = com::variant::copyOf(phaseStatus_.value);
        com::assign(labels, std::move(labelsCopy));
        com::assign(status, std::move(statusCopy));
    });
}

com::variant MaterialObject11::equilibriumPhaseValue(const PropertyInfo& info, BSTR label,
                                                     Basis requested) const {
    if (info.propType == PropType_PhaseFraction && owner().isVapor(label == nullptr ? L"" : label)) {
        for (const EquilibriumSpecification& specification : specifications) {
            if (equalsFoldingAscii(specification.name, L"vaporfraction")) {
                if (requested != specification.basis) {
                    throw CWStrException{L"invalid basis"};
                }
                return com::realArray({&specification.value, 1});
            }
        }
    }
    throwNoValue();
}

HRESULT STDMETHODCALLTYPE MaterialObject11::SetOverallProp(BSTR name, BSTR basis, VARIANT values) noexcept {
    if (mode != CalculationMode::Equilibrium) {
        return S_OK;
    }
    return capeCall(L"MaterialObject11::SetOverallProp", materialInterface, [&] {
        const PropertyInfo& info = lookupProperty(name);
        static_cast<void>(parseBasis(com::viewOf(basis)));
        ArrayVariant reals = readValues(values);
        if (info.propType != PropType_Temperature && info.propType != PropType_Pressure) {
            return;
        }
        if (reals.count != 1) {
            throw CWStrException{L"Invalid number of values: scalar expected"};
        }
        (info.propType == PropType_Temperature ? temperature : pressure) = reals.elements<double>()[0];
    });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::SetPresentPhases(VARIANT labels, VARIANT) noexcept {
    if (mode != CalculationMode::Equilibrium) {
        return S_OK;
    }
    return capeCall(L"MaterialObject11::SetPresentPhases", materialInterface, [&] {
        for (PhaseResult& phase : phases) {
            phase.present = false;
        }
        ArrayVariant names = readLabels(labels);
        for (const BSTR label : names.elements<BSTR>()) {
            if (com::viewOf(label).empty()) {
                throw CWStrException{L"Invalid phase labels: one or more empty strings"};
            }
            const auto index = owner().phaseIndex(label);
            if (!index) {
                throw WStrException{
                    joined(L"Invalid phase labels: undefined phase \"", com::viewOf(label), L"\"")};
            }
            phases.at(static_cast<std::size_t>(*index)).present = true;
        }
    });
}

void MaterialObject11::storePhaseResult(const PropertyInfo* info, BSTR label, BSTR basis,
                                        ArrayVariant& values) {
    const auto index = label == nullptr ? std::nullopt : owner().phaseIndex(label);
    if (!index) {
        throw CWStrException{L"Invalid phase"};
    }
    if (info == nullptr) {
        return; // a property of the package's own, of no interest here
    }
    PhaseResult& phase = phases.at(static_cast<std::size_t>(*index));
    switch (info->propType) {
    case PropType_Temperature:
    case PropType_Pressure:
        requireCount(values, 1);
        requireBasis(basis, false);
        (info->propType == PropType_Temperature ? phase.temperature : phase.pressure) =
            values.elements<double>()[0];
        break;
    case PropType_Fraction: {
        requireCount(values, static_cast<std::size_t>(owner().compoundCount()));
        const Basis given = requireBasis(basis, true);
        copyTo(phase.composition.values, values);
        phase.composition.basis = given;
        break;
    }
    case PropType_PhaseFraction:
        requireCount(values, 1);
        phase.fractionBasis = requireBasis(basis, true);
        phase.fraction = values.elements<double>()[0];
        break;
    default:
        break;
    }
}

} // namespace quorvane
