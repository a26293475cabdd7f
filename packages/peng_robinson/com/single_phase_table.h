// The properties of one phase that the package calculates: one table row a property, with the derivatives
// that the equation of state has in closed form. Values are in SI units on a mole basis.
#pragma once

#include "packages/peng_robinson/eos/fluid.h"

#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

/// A phase at its conditions, evaluated once for all properties of a call.
struct PhasePoint {
    const eos::Fluid& fluid;
    eos::PhaseProperties properties;
    std::vector<double> x;
    eos::Root root;
};

struct SinglePhaseRow {
    using Values = std::vector<double> (*)(const PhasePoint&);

    std::wstring_view name;
    std::wstring_view alias; ///< an older name of the same property, understood but not listed
    bool perMole;            ///< the value depends on the basis
    Values value;
    Values temperatureDerivative, pressureDerivative, molesDerivative; ///< null where there is none
};

/// A property or a derivative of one ("enthalpy.Dtemperature").
struct SinglePhaseProperty {
    bool perMole;
    SinglePhaseRow::Values values;
};

/// Null values when the package does not calculate it. Names are compared without case.
SinglePhaseProperty findSinglePhaseProperty(std::wstring_view name);

/// Standard spellings of all properties and derivatives.
std::vector<std::wstring> singlePhasePropertyNames();

} // namespace peng_robinson
