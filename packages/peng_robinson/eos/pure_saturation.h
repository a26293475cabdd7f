// Vapour-liquid equilibrium of a pure compound from the equation of state. The model has one component. Below
// the critical point every question has exactly one answer, and the answer is found to rounding error.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

namespace peng_robinson::eos {

struct Saturation {
    double T = 0.0, P = 0.0;
    PhaseState vapor, liquid; ///< with thermal properties
    double heatOfVaporization() const { return vapor.residualEnthalpy - liquid.residualEnthalpy; }

    // Derivatives by temperature along the saturation line.
    double dP_dT() const { return heatOfVaporization() / (T * (vapor.v - liquid.v)); } ///< Clapeyron
    double liquidVolumeSlope() const;
    double heatOfVaporizationSlope() const;
};

/// Throws OutOfRange at or above the critical temperature, NotAvailable where the vapor pressure is too small
/// for floating-point numbers (n-decane at 10 K).
Saturation saturationAtTemperature(const PengRobinson& pure, double T);

/// Throws OutOfRange at or above the critical pressure, NotAvailable for pressures too small for
/// floating-point numbers.
Saturation saturationAtPressure(const PengRobinson& pure, double P);

} // namespace peng_robinson::eos
