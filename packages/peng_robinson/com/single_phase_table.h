// The properties of one phase that the package calculates: one table row a property. Each has all four
// derivatives, whose conventions are those of eos/phase_slopes.h. Values are in SI units on a mole basis.
#pragma once

#include "packages/peng_robinson/eos/phase_slopes.h"

#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

/// How a value depends on the amount that it is given for.
enum class Scaling {
    none,      ///< the same on every basis
    perMole,   ///< in proportion to the amount: J/mol
    perVolume, ///< an amount in a volume: mol/m3
};

struct SinglePhaseRow {
    std::wstring_view name;
    std::wstring_view alias; ///< an older name of the same property, understood but not listed
    Scaling scaling;
    std::vector<double> (*values)(const eos::PhaseProperties&);
    std::vector<eos::Dual> (*slopes)(const eos::PhaseSlopes&);
};

/// A property or a derivative of one.
struct SinglePhaseProperty {
    const SinglePhaseRow* row; ///< null when the package does not calculate it
    eos::Derivative derivative;

    bool isKnown() const noexcept { return row != nullptr; }
    bool hasBasis() const noexcept { return row->scaling != Scaling::none; }
    /// Throws NotAvailable where a compound that is there lacks a constant that the property needs.
    std::vector<double> valuesOf(eos::DifferentiablePhase& phase) const;
};

SinglePhaseProperty findSinglePhaseProperty(std::wstring_view name) noexcept;

/// Standard spellings of all properties and derivatives.
std::vector<std::wstring> singlePhasePropertyNames();

} // namespace peng_robinson
