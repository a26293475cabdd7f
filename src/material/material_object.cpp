#include "src/material/material_object.h"

#include "com/safe_array.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"

#include <cmath>
#include <limits>

namespace quorvane {

namespace {

constexpr const wchar_t* interfaceName = L"ICapeThermoMaterial";

[[noreturn]] void throwNoValue() { throw CWStrException{L"No value available"}; }

void requireCount(const ArrayVariant& values, std::size_t expected) {
    if (static_cast<std::size_t>(values.count) != expected) {
        throw CWStrException{L"Unexpected number of values"};
    }
}

// `needed`: the value depends on the basis, so one must be given; otherwise none may be.
Basis requireBasis(BSTR text, bool needed) {
    const Basis basis = parseBasis(com::viewOf(text));
    if ((basis != Basis_Undefined) != needed) {
        throw CWStrException{L"Invalid basis"};
    }
    return basis;
}

ArrayVariant readValues(const VARIANT& values) {
    ArrayVariant holder = ArrayVariant::borrow(withoutReference(values));
    requireVector(holder, VT_R8, L"Invalid values: ");
    return holder;
}

ArrayVariant readLabels(const VARIANT& labels) {
    ArrayVariant holder = ArrayVariant::borrow(withoutReference(labels));
    requireVector(holder, VT_BSTR, L"Invalid phase labels: ");
    return holder;
}

void copyTo(std::vector<double>& target, ArrayVariant& values) {
    const auto elements = values.elements<double>();
    target.assign(elements.begin(), elements.end());
}

// Requests are stored in lower case, so that ASCII names, which nearly all are, need no more than a
// comparison.
bool isSameName(BSTR given, const std::wstring& lowerCase) noexcept {
    return equalsFoldingAscii(com::viewOf(given), lowerCase) || equalsNoCase(given, lowerCase.c_str());
}

} // namespace

MaterialObject11::MaterialObject11(const MaterialOwner& owner)
    : implements{L"Quorvane-MO", true}, owner_{&owner} {
    const auto compounds = static_cast<std::size_t>(owner.compoundCount());
    composition1_.values.resize(compounds);
    composition2.values.resize(compounds);
    phases.resize(static_cast<std::size_t>(owner.phaseCount()));
    for (PhaseResult& phase : phases) {
        phase.composition.values.resize(compounds);
    }
}

const MaterialOwner& MaterialObject11::owner() const {
    if (owner_ == nullptr) {
        throw CWStrException{L"The material object is no longer in use by its property package"};
    }
    return *owner_;
}

void MaterialObject11::resetPhases() noexcept {
    for (PhaseResult& phase : phases) {
        phase.present = false;
        phase.temperature = std::numeric_limits<double>::quiet_NaN();
        phase.pressure = std::numeric_limits<double>::quiet_NaN();
        phase.fractionBasis = Basis_Undefined;
        phase.composition.basis = Basis_Undefined;
    }
}

bool MaterialObject11::isRequested(BSTR name) const noexcept {
    // A package may write before anything was ever requested, for instance inside SetMaterial.
    return property != nullptr && isSameName(name, propertyName);
}

const Composition* MaterialObject11::compositionOf(BSTR label) const noexcept {
    if (isSameName(label, phase1)) {
        return &composition1_;
    }
    return mode == CalculationMode::TwoPhase && isSameName(label, phase2) ? &composition2 : nullptr;
}

HRESULT STDMETHODCALLTYPE MaterialObject11::ClearAllProps() noexcept {
    // The owner resets what matters before every call into the package.
    return S_OK;
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetOverallProp(BSTR name, BSTR basis, VARIANT* results) noexcept {
    if (results == nullptr) {
        return E_POINTER;
    }
    return capeCall(L"MaterialObject11::GetOverallProp", interfaceName, [&] {
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
        return notImplemented(L"GetOverallProp", interfaceName);
    }
    return capeCall(L"MaterialObject11::GetOverallTPFraction", interfaceName, [&] {
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
    return capeCall(L"MaterialObject11::GetPresentPhases", interfaceName, [&] {
        if (phaseStatus_.isEmpty()) {
            phaseStatus_.createVector(owner().phaseCount(), VT_I4);
        }
        com::variant labelsCopy = com::variant::copyOf(owner().phaseLabels().value);
        com::variant statusCopy = com::variant::copyOf(phaseStatus_.value);
        com::assign(labels, std::move(labelsCopy));
        com::assign(status, std::move(statusCopy));
    });
}

com::variant MaterialObject11::singlePhaseValue(const PropertyInfo& info, BSTR label, Basis requested) {
    if (info.propType == PropType_Fraction) {
        const Composition* composition = compositionOf(label);
        if (composition == nullptr) {
            throwNoValue();
        }
        return com::realArray(convertComposition(composition->values, composition->basis, requested));
    }
    if (info.propType != PropType_Temperature && info.propType != PropType_Pressure) {
        throwNoValue();
    }
    if (requested != Basis_Undefined) {
        throw CWStrException{L"invalid basis"};
    }
    return com::realArray({info.propType == PropType_Temperature ? &temperature : &pressure, 1});
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

HRESULT STDMETHODCALLTYPE MaterialObject11::GetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                               VARIANT* results) noexcept {
    if (results == nullptr) {
        return E_POINTER;
    }
    return capeCall(L"MaterialObject11::GetSinglePhaseProp", interfaceName, [&] {
        const PropertyInfo& info = lookupProperty(name);
        const Basis requested = parseBasis(com::viewOf(basis));
        com::assign(results, mode == CalculationMode::Equilibrium
                                 ? equilibriumPhaseValue(info, label, requested)
                                 : singlePhaseValue(info, label, requested));
    });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::GetTPFraction(BSTR label, double* T, double* P,
                                                          VARIANT* fractions) noexcept {
    if (T == nullptr || P == nullptr || fractions == nullptr) {
        return E_POINTER;
    }
    return capeCall(L"MaterialObject11::GetTPFraction", interfaceName, [&] {
        const Composition* composition =
            mode == CalculationMode::Equilibrium ? nullptr : compositionOf(label);
        if (composition == nullptr) {
            throwNoValue();
        }
        com::variant moleFractions =
            com::realArray(convertComposition(composition->values, composition->basis, Basis_Mole));
        *T = temperature;
        *P = pressure;
        com::assign(fractions, std::move(moleFractions)); // an object that is there may act when it goes
    });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::SetOverallProp(BSTR name, BSTR basis, VARIANT values) noexcept {
    if (mode != CalculationMode::Equilibrium) {
        return S_OK;
    }
    return capeCall(L"MaterialObject11::SetOverallProp", interfaceName, [&] {
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
    return capeCall(L"MaterialObject11::SetPresentPhases", interfaceName, [&] {
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

std::size_t MaterialObject11::expectedValues() const {
    std::size_t expected = 1;
    for (std::int32_t i = 0; i < property->rank; ++i) {
        expected *= static_cast<std::size_t>(owner().compoundCount());
    }
    return expected;
}

void MaterialObject11::storeRequestedProperty(BSTR label, BSTR basis, ArrayVariant& values) {
    if (!isSameName(label, phase1)) {
        return;
    }
    const Basis given = requireBasis(basis, property->moleConversion != 0);
    requireCount(values, expectedValues());
    copyTo(result, values);
    resultBasis = given;
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

HRESULT STDMETHODCALLTYPE MaterialObject11::SetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                               VARIANT values) noexcept {
    return capeCall(L"MaterialObject11::SetSinglePhaseProp", interfaceName, [&] {
        ArrayVariant reals = readValues(values);
        if (mode == CalculationMode::Equilibrium) {
            storePhaseResult(catalogue().find(com::viewOf(name)), label, basis, reals);
        } else if (mode == CalculationMode::SinglePhase && isRequested(name)) {
            storeRequestedProperty(label, basis, reals);
        }
    });
}

HRESULT STDMETHODCALLTYPE MaterialObject11::SetTwoPhaseProp(BSTR name, VARIANT labels, BSTR basis,
                                                            VARIANT values) noexcept {
    if (mode != CalculationMode::TwoPhase || !isRequested(name)) {
        return S_OK;
    }
    return capeCall(L"MaterialObject11::SetTwoPhaseProp", interfaceName, [&] {
        ArrayVariant names = readLabels(labels);
        if (names.count != 2) {
            throw CWStrException{L"Invalid phase labels: expected two phases"};
        }
        // Only the first label is compared, whatever the second says: packages in use rely on that.
        if (!isSameName(names.elements<BSTR>()[0], phase1)) {
            return;
        }
        requireBasis(basis, false);
        ArrayVariant reals = readValues(values);
        const bool perPhase =
            property->derivType == Derivative_MolFraction || property->derivType == Derivative_MoleNumber;
        requireCount(reals, expectedValues() * (perPhase ? 2 : 1));
        copyTo(result, reals);
        resultBasis = Basis_Undefined;
    });
}

} // namespace quorvane
