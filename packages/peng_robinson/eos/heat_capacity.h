// Ideal-gas heat capacity of a compound and its integrals, J/mol and J/(mol K), temperatures in K.
//
//   Cp = a + sum_k s_k [(theta_k/T) / sinh(theta_k/T)]^2 + sum_k c_k [(phi_k/T) / cosh(phi_k/T)]^2
//        + sum_n p_n T^n
//
// With one hyperbolic sine and one cosine this is the equation of Aly and Lee (Fluid Phase Equilib. 6 (1981)
// 169), DIPPR equation 107; with sines alone it is a sum of Planck-Einstein terms, theta being half the
// vibrational temperature. That form stays finite, positive and increasing outside its fitted range. A
// polynomial does not: outside the range its part of Cp keeps the value at the range's end.
#pragma once

#include <array>

namespace peng_robinson::eos {

struct HeatCapacity {
    struct Term {
        double factor = 0.0, temperature = 1.0;
    };
    double constant = 0.0;
    std::array<Term, 4> sinh{};
    Term cosh{};
    double Tmin = 0.0, Tmax = 0.0;  // fitted range; none where Tmax is 0
    std::array<double, 4> powers{}; // of T, T^2, T^3 and T^4

    double cp(double T) const;
    double dCp_dT(double T) const;
    /// Integral of Cp dT from the reference temperature, J/mol.
    double enthalpy(double T) const;
    /// Integral of Cp/T dT from the reference temperature, J/(mol K).
    double entropy(double T) const;
};

} // namespace peng_robinson::eos
