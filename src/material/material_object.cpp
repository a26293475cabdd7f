#include "src/material/material_object.h"

#include <limits>

namespace quorvane {

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

HRESULT STDMETHODCALLTYPE MaterialObject11::ClearAllProps() noexcept {
    // The owner resets what matters before every call into the package.
    return S_OK;
}

} // namespace quorvane
