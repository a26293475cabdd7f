// What the equation of state says about one phase. SI units, one mole; "residual" means real minus ideal gas
// at the same temperature and pressure. With Dual numbers it is the same phase with its derivatives in one
// direction.
#pragma once

#include "packages/peng_robinson/eos/constants.h"
#include "packages/peng_robinson/eos/dual.h"

#include <vector>

namespace peng_robinson::eos {

/// Which root of the cubic: the largest volume, the smallest, or the one of lowest Gibbs energy. Where the
/// cubic has one root only, all three mean that one.
enum class Root { vapor, liquid, stable };

/// What a phase evaluation computes beyond volume and fugacity coefficients.
struct Detail {
    bool thermal = false; ///< enthalpy, entropy, heat capacities, temperature derivatives
    bool moles = false;   ///< mole-number derivatives of ln phi
};

template <typename Number>
struct BasicPhaseState {
    Number T = 0.0, P = 0.0;
    Number Z = 0.0; ///< P v / (R T)
    Number v = 0.0; ///< m3/mol
    Number a = 0.0, b = 0.0;
    std::vector<Number> aI;    ///< derivatives of n^2 a by n_i, for one mole in all
    std::vector<Number> dP_dn; ///< at constant temperature and volume, for one mole in all
    std::vector<Number> lnPhi;
    std::vector<Number> dlnPhi_dP; ///< 1/Pa at constant temperature
    Number residualGibbs = 0.0;    ///< J/mol
    Number dP_dv = 0.0;            ///< at constant temperature

    // With Detail::thermal:
    Number da_dT = 0.0, d2a_dT2 = 0.0;
    std::vector<Number> daI_dT;
    Number residualEnthalpy = 0.0, residualEntropy = 0.0; ///< J/mol, J/(mol K)
    Number residualCp = 0.0, residualCv = 0.0;            ///< J/(mol K)
    Number dP_dT = 0.0;                                   ///< at constant volume
    std::vector<Number> dlnPhi_dT;                        ///< 1/K at constant pressure

    // With Detail::moles: n (d ln phi_i / d n_j), row-major, symmetric, for one mole in all.
    std::vector<Number> dlnPhi_dn;
};
using PhaseState = BasicPhaseState<double>;

/// Above its pseudo-critical temperature, or at more than its critical volume, a phase is called gas-like.
bool isLiquidLike(const PhaseState& phase, double R = molarGasConstant);

} // namespace peng_robinson::eos
