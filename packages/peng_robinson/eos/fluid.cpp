#include "packages/peng_robinson/eos/fluid.h"

#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/ideal_gas.h"
#include "packages/peng_robinson/eos/volume_shift.h"

namespace peng_robinson::eos {
namespace {

InteractionMatrix tabulated(std::span<const Compound* const> compounds) {
    InteractionMatrix k{compounds.size()};
    for (std::size_t i = 0; i < compounds.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            k.set(i, j, interactionParameter(compounds[i]->name, compounds[j]->name));
        }
    }
    return k;
}

std::vector<CriticalConstants> criticalConstants(std::span<const Compound* const> compounds) {
    std::vector<CriticalConstants> constants;
    constants.reserve(compounds.size());
    for (const Compound* compound : compounds) {
        constants.push_back({compound->Tc, compound->Pc, compound->acentricFactor});
    }
    return constants;
}

} // namespace

Fluid::Fluid(std::vector<const Compound*> compounds) : Fluid{compounds, tabulated(compounds)} {}

Fluid::Fluid(std::vector<const Compound*> compounds, InteractionMatrix k, EquationConstants constants)
    : compounds_{std::move(compounds)}, model_{criticalConstants(compounds_), std::move(k), constants} {
    for (const Compound* compound : compounds_) {
        volumeShifts_.push_back(volumeShiftOf(*compound, constants));
    }
}

double Fluid::molecularWeight(std::span<const double> x) const {
    double sum = 0.0;
    for (std::size_t i = 0; i < size(); ++i) {
        sum += x[i] * compounds_[i]->molecularWeight;
    }
    return sum;
}

PhaseProperties Fluid::properties(double T, double P, std::span<const double> amounts, Root root) const {
    std::vector<double> x = normalisedComposition(amounts, size());
    PhaseState state = model_.at(T).phase(P, x, root, {.thermal = true});
    return totalProperties(*this, std::move(state), std::move(x));
}

} // namespace peng_robinson::eos
