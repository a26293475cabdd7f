// The two specifications and the solution type of an equilibrium calculation, read and understood: which
// flash is asked for and where its values come from. No value is read here, so that checking a request needs
// no material.
#pragma once

#include "packages/peng_robinson/com/phases.h"
#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/eos/flash.h"

#include <string>

namespace peng_robinson {

struct Specification {
    enum class Kind { temperature, pressure, enthalpy, enthalpyF, phaseFraction };

    Kind kind;
    std::wstring property; ///< as the client spelled it: some materials compare with case
    std::wstring label;
    Basis basis;
    const PhaseKind* phase; ///< of a phase fraction; else null
};

struct EquilibriumRequest {
    enum class Flash { TP, TVaporFraction, PVaporFraction, PEnthalpy };

    Flash flash = Flash::TP;
    Specification first, second; ///< in the order in which the flash is named
    eos::SolutionType solution = eos::SolutionType::any;

    /// Throws ArgumentError for specifications that make no sense, and CapeError (ECapeLimitedImpl) for
    /// combinations that the package does not calculate.
    static EquilibriumRequest read(const VARIANT& specification1, const VARIANT& specification2,
                                   BSTR solutionType);
};

} // namespace peng_robinson
