// Universal constants and the reference state. SI units.
#pragma once

namespace peng_robinson::eos {

// CODATA 2018: Tiesinga, Mohr, Newell, Taylor, Rev. Mod. Phys. 93 (2021) 025010. All exact by definition of
// the SI.
inline constexpr double avogadroConstant = 6.02214076e23;        // 1/mol
inline constexpr double boltzmannConstant = 1.380649e-23;        // J/K
inline constexpr double molarGasConstant = 8.31446261815324;     // J/(mol K)
inline constexpr double speedOfLightInVacuum = 299792458.0;      // m/s
inline constexpr double standardAccelerationOfGravity = 9.80665; // m/s2

// The critical-point conditions of the Peng-Robinson equation fix both constants: the published 0.45724 and
// 0.07780 are these numbers rounded (Peng, Robinson, Ind. Eng. Chem. Fundam. 15 (1976) 59).
inline constexpr double pengRobinsonOmegaA = 0.45723552892138218938;
inline constexpr double pengRobinsonOmegaB = 0.077796073903888455972;

// v_c / b of the equation, and a / (b R T) at its critical point: what tells a liquid-like state from a
// gas-like one.
inline constexpr double pengRobinsonCriticalVolumeRatio = 3.9513730355914394; // v_c / b
inline constexpr double pengRobinsonCriticalAttraction = 5.8773599486044030;  // omegaA / omegaB

// Ideal-gas reference state of enthalpies and entropies.
inline constexpr double referenceTemperature = 298.15; // K
inline constexpr double referencePressure = 101325.0;  // Pa

} // namespace peng_robinson::eos
