// The material while a package calculates a property of one phase or two: it hands out the conditions of the
// phases, and takes the values that were asked for.
#include "src/material/material_values.h"

namespace quorvane {

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

HRESULT STDMETHODCALLTYPE MaterialObject11::GetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                               VARIANT* results) noexcept {
    if (results == nullptr) {
        return E_POINTER;
    }
    return capeCall(L"MaterialObject11::GetSinglePhaseProp", materialInterface, [&] {
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
    return capeCall(L"MaterialObject11::GetTPFraction", materialInterface, [&] {
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

HRESULT STDMETHODCALLTYPE MaterialObject11::SetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                               VARIANT values) noexcept {
    return capeCall(L"MaterialObject11::SetSinglePhaseProp", materialInterface, [&] {
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
    return capeCall(L"MaterialObject11::SetTwoPhaseProp", materialInterface, [&] {
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
