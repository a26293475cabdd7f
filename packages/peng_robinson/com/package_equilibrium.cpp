// ICapeThermoEquilibriumRoutine.
#include "packages/peng_robinson/com/equilibrium_request.h"
#include "packages/peng_robinson/com/property_package.h"
#include "packages/peng_robinson/eos/flash_mass.h"
#include "packages/peng_robinson/eos/flash_ph.h"

#include <cmath>

namespace peng_robinson {
namespace {

constexpr const wchar_t* routine = L"ICapeThermoEquilibriumRoutine";

/// The phases that the client lets the calculation use, under the client's own labels.
struct AllowedPhases {
    std::wstring vapor, liquid; ///< empty: not allowed

    static AllowedPhases of(const Material& material);
    eos::PhasesAllowed allowed() const {
        return vapor.empty()    ? eos::PhasesAllowed::liquidOnly
               : liquid.empty() ? eos::PhasesAllowed::vaporOnly
                                : eos::PhasesAllowed::both;
    }
};

AllowedPhases AllowedPhases::of(const Material& material) {
    const std::optional<std::vector<std::wstring>> present = material.presentPhases();
    if (!present) {
        return {std::wstring{vaporKind.label}, std::wstring{liquidKind.label}};
    }
    AllowedPhases phases;
    for (const std::wstring& label : *present) {
        const PhaseKind* kind = findPhase(label);
        if (kind == nullptr) {
            throw CapeError{ECapeFailedInitialisationHR, L"The material object has the phase \"" + label +
                                                             L"\", which this package does not know"};
        }
        (kind == &vaporKind ? phases.vapor : phases.liquid) = label;
    }
    if (phases.vapor.empty() && phases.liquid.empty()) {
        throw CapeError{
            ECapeFailedInitialisationHR,
            L"The material object has no phases; call SetPresentPhases with the phases to consider"};
    }
    return phases;
}

double readTemperatureOrPressure(const Material& material, const Specification& specification) {
    return material.overallValue(specification.property, L"");
}

// On a mole basis, without the enthalpy of formation. A material converts between bases itself.
double readEnthalpy(const Material& material, const Specification& specification, std::span<const double> z) {
    double h = material.overallValue(specification.property, L"Mole");
    if (specification.kind == Specification::Kind::enthalpyF) {
        const std::vector<double> x = eos::normalisedComposition(z, material.fluid().size());
        for (std::size_t i = 0; i < x.size(); ++i) {
            const eos::Compound& compound = material.fluid().compound(i);
            if (x[i] == 0.0) {
                continue;
            }
            if (std::isnan(compound.formationEnthalpy)) {
                throw CapeError{ECapeThrmPropertyNotAvailableHR,
                                L"No value for the enthalpy of formation of " + widen(compound.name)};
            }
            h -= x[i] * compound.formationEnthalpy;
        }
    }
    return h;
}

double readVaporFraction(const Material& material, const Specification& specification) {
    const wchar_t* basis = specification.basis == Basis::mass ? L"Mass" : L"Mole";
    const double fraction = material.phaseValue(specification.property, specification.label, basis);
    return specification.phase == &vaporKind ? fraction : 1.0 - fraction;
}

eos::Equilibrium calculate(const Material& material, const EquilibriumRequest& request,
                           const AllowedPhases& phases) {
    using Flash = EquilibriumRequest::Flash;
    const eos::Fluid& fluid = material.fluid();
    const std::vector<double> z = material.overallComposition();
    const double first = readTemperatureOrPressure(material, request.first);
    if (request.flash == Flash::TP) {
        const double pressure = readTemperatureOrPressure(material, request.second);
        eos::Equilibrium result;
        material.flash().calculate(first, pressure, z, phases.allowed(), result);
        return result;
    }
    if (request.flash == Flash::PEnthalpy) {
        return eos::flashPH(fluid, first, readEnthalpy(material, request.second, z), z, phases.allowed());
    }
    if (phases.allowed() != eos::PhasesAllowed::both) {
        throw CapeError{
            ECapeFailedInitialisationHR,
            L"A flash at a phase fraction needs both phases, Vapor and Liquid, present in the material"};
    }
    const double fraction = readVaporFraction(material, request.second);
    const bool byMass = request.second.basis == Basis::mass;
    if (request.flash == Flash::TVaporFraction) {
        return byMass ? eos::flashTVaporMassFraction(fluid, first, fraction, z, request.solution)
                      : eos::flashTVaporFraction(fluid.model(), first, fraction, z, request.solution);
    }
    return byMass ? eos::flashPVaporMassFraction(fluid, first, fraction, z, request.solution)
                  : eos::flashPVaporFraction(fluid.model(), first, fraction, z, request.solution);
}

void handOver(const Material& material, const EquilibriumRequest& request, const AllowedPhases& phases,
              const eos::Equilibrium& result) {
    struct Present {
        const std::wstring& label;
        const eos::PhaseAmount& amount;
    };
    std::vector<Present> present;
    if (result.vapor) {
        present.push_back({phases.vapor, *result.vapor});
    }
    if (result.liquid) {
        present.push_back({phases.liquid, *result.liquid});
    }
    std::vector<std::wstring> labels;
    labels.reserve(present.size());
    for (const Present& phase : present) {
        labels.push_back(phase.label);
    }
    material.setPhasesAtEquilibrium(labels);
    for (const auto& [label, amount] : present) {
        material.setPhaseValues(L"temperature", label, {}, {result.T});
        material.setPhaseValues(L"pressure", label, {}, {result.P});
        material.setPhaseValues(L"fraction", label, L"Mole", amount.x);
        material.setPhaseValues(L"phaseFraction", label, L"Mole", {amount.fraction});
    }
    const auto isSpecified = [&request](Specification::Kind kind) {
        return request.first.kind == kind || request.second.kind == kind;
    };
    if (!isSpecified(Specification::Kind::temperature)) {
        material.setOverallValue(L"temperature", result.T);
    }
    if (!isSpecified(Specification::Kind::pressure)) {
        material.setOverallValue(L"pressure", result.P);
    }
}

} // namespace

HRESULT STDMETHODCALLTYPE PropertyPackage::CalcEquilibrium(VARIANT specification1, VARIANT specification2,
                                                           BSTR solutionType) noexcept {
    return call(routine, L"CalcEquilibrium", [&] {
        const auto material = requireMaterial();
        const EquilibriumRequest request =
            EquilibriumRequest::read(specification1, specification2, solutionType);
        const AllowedPhases phases = AllowedPhases::of(*material);
        handOver(*material, request, phases, calculate(*material, request, phases));
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::CheckEquilibriumSpec(VARIANT specification1,
                                                                VARIANT specification2, BSTR solutionType,
                                                                VARIANT_BOOL* isSupported) noexcept {
    return call(routine, L"CheckEquilibriumSpec", [&] {
        requirePointer(isSupported);
        *isSupported = VARIANT_FALSE;
        try {
            EquilibriumRequest::read(specification1, specification2, solutionType);
            *isSupported = VARIANT_TRUE;
        } catch (const CapeError&) {
            // The question was whether the request would be refused, and it would.
        }
    });
}

} // namespace peng_robinson
