// Compositions and their totals on mole and mass basis.
#include "src/foundation/missing.h"
#include "src/material/material_object.h"

namespace quorvane {

namespace {

// Instead of a quotient that a cell can only show as #NUM!.
void requireAmount(double sum) {
    if (sum == 0.0) {
        throw CWStrException{L"Unable to perform basis conversion, composition sums to zero"};
    }
}

} // namespace

double CompositionTotals::massPerMole() const {
    requireAmount(moles);
    return mass / moles;
}

double CompositionTotals::molesPerMass() const {
    requireAmount(mass);
    return moles / mass;
}

void MaterialObject11::setComposition(const std::vector<double>& values, std::int32_t basis) {
    if (composition1_.basis == basis && composition1_.values == values) {
        return;
    }
    totals_.mass = 0.0;
    composition1_.values = values;
    composition1_.basis = basis;
}

void MaterialObject11::requireMolecularWeight(std::size_t compound) const {
    if (isMissing(owner().molecularWeights()[compound])) {
        throw CWStrException{
            L"Unable to perform basis conversion, one or more missing values for molecular weight"};
    }
}

const std::vector<double>& MaterialObject11::convertComposition(const std::vector<double>& values,
                                                                std::int32_t from, std::int32_t to) {
    const std::int32_t exponent = basisExponent(from, to);
    if (exponent == 0) {
        return values;
    }
    const std::vector<double>& factors =
        exponent < 0 ? owner().molecularWeights() : owner().inverseMolecularWeights();
    const bool missing = owner().missingMolecularWeight();
    conversionBuffer_.assign(values.size(), 0.0);
    double sum = 0.0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (missing) {
            if (values[i] == 0.0) {
                continue;
            }
            requireMolecularWeight(i);
        }
        conversionBuffer_[i] = values[i] * factors[i];
        sum += conversionBuffer_[i];
    }
    requireAmount(sum);
    const double scale = 1.0 / sum;
    for (double& value : conversionBuffer_) {
        value *= scale;
    }
    return conversionBuffer_;
}

CompositionTotals MaterialObject11::totalsOf(const Composition& composition) const {
    CompositionTotals totals;
    const bool isMole = composition.basis == Basis_Mole;
    if (!isMole && composition.basis != Basis_Mass) {
        return totals;
    }
    const std::vector<double>& factors =
        isMole ? owner().molecularWeights() : owner().inverseMolecularWeights();
    const bool missing = owner().missingMolecularWeight();
    double given = 0.0;
    double converted = 0.0;
    for (std::size_t i = 0; i < composition.values.size(); ++i) {
        const double value = composition.values[i];
        if (missing) {
            if (value == 0.0) {
                continue;
            }
            requireMolecularWeight(i);
        }
        given += value;
        converted += value * factors[i];
    }
    totals.mass = isMole ? converted : given;
    totals.moles = isMole ? given : converted;
    return totals;
}

const CompositionTotals& MaterialObject11::totals() {
    if (totals_.mass == 0.0 && composition1_.basis != Basis_Undefined) {
        totals_ = totalsOf(composition1_);
    }
    return totals_;
}

double MaterialObject11::specificationValue(const EquilibriumSpecification& specification, Basis requested) {
    const std::int32_t exponent = basisExponent(specification.basis, requested);
    if (exponent == 0) {
        return specification.value;
    }
    const CompositionTotals& amount = totals();
    return specification.value * (exponent < 0 ? amount.molesPerMass() : amount.massPerMole());
}

} // namespace quorvane
