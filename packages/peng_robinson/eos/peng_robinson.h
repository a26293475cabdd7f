// The Peng-Robinson equation of state (Peng, Robinson, Ind. Eng. Chem. Fundam. 15 (1976) 59) with van der
// Waals one-fluid mixing:
//
//   P = R T / (v - b) - a(T) / (v^2 + 2 b v - b^2)
//   a = sum_ij x_i x_j sqrt(a_i a_j) (1 - k_ij),  b = sum_i x_i b_i
//   a_i = OmegaA R^2 Tc^2 / Pc [1 + m (1 - sqrt(T/Tc))]^2,  m = 0.37464 + 1.54226 w - 0.26992 w^2
//
// PengRobinson holds the parameters of a mixture; Isotherm is the same at one temperature and answers
// questions about phases. Both are values, immutable after construction. SI units, one mole of phase;
// "residual" means real minus ideal gas at the same temperature and pressure.
#pragma once

#include "packages/peng_robinson/eos/constants.h"
#include "packages/peng_robinson/eos/cubic.h"
#include "packages/peng_robinson/eos/interaction.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

struct CriticalConstants {
    double Tc, Pc, acentricFactor;
};

/// The numbers that codes of other authors round; overridable to reproduce their results.
struct EquationConstants {
    double R = molarGasConstant;
    double omegaA = pengRobinsonOmegaA;
    double omegaB = pengRobinsonOmegaB;
};

/// Which root of the cubic: the largest volume, the smallest, or the one of lowest Gibbs energy. Where the
/// cubic has one root only, all three mean that one.
enum class Root { vapor, liquid, stable };

/// What a phase evaluation computes beyond volume and fugacity coefficients.
struct Detail {
    bool thermal = false; ///< enthalpy, entropy, heat capacities, temperature derivatives
    bool moles = false;   ///< mole-number derivatives of ln phi
};

struct PhaseState {
    double T = 0.0, P = 0.0;
    double Z = 0.0; ///< P v / (R T)
    double v = 0.0; ///< m3/mol
    double a = 0.0, b = 0.0;
    std::vector<double> lnPhi;
    std::vector<double> dlnPhi_dP; ///< 1/Pa at constant temperature
    double residualGibbs = 0.0;    ///< J/mol
    double dP_dv = 0.0;            ///< at constant temperature

    // With Detail::thermal:
    double da_dT = 0.0, d2a_dT2 = 0.0;
    double residualEnthalpy = 0.0, residualEntropy = 0.0; ///< J/mol, J/(mol K)
    double residualCp = 0.0, residualCv = 0.0;            ///< J/(mol K)
    double dP_dT = 0.0;                                   ///< at constant volume
    std::vector<double> dlnPhi_dT;                        ///< 1/K at constant pressure

    // With Detail::moles: n (d ln phi_i / d n_j), row-major, symmetric, for one mole in all.
    std::vector<double> dlnPhi_dn;
};

/// Above its pseudo-critical temperature, or at more than its critical volume, a phase is called gas-like.
bool isLiquidLike(const PhaseState& phase, double R = molarGasConstant);

class Isotherm;

class PengRobinson {
  public:
    /// Throws InvalidInput when constants are missing or impossible.
    explicit PengRobinson(std::vector<CriticalConstants> components,
                          InteractionMatrix k = InteractionMatrix{}, EquationConstants constants = {});

    std::size_t size() const noexcept { return components_.size(); }
    const CriticalConstants& component(std::size_t i) const { return components_[i]; }
    const EquationConstants& constants() const noexcept { return constants_; }
    double R() const noexcept { return constants_.R; }
    double b(std::size_t i) const { return b_[i]; }

    /// Throws OutOfRange for a temperature that is not positive and finite.
    Isotherm at(double T) const;

    /// The same equation for some of the components, in the order of `indices`.
    PengRobinson subset(std::span<const std::size_t> indices) const;

  private:
    friend class Isotherm;

    std::vector<CriticalConstants> components_;
    InteractionMatrix k_;
    EquationConstants constants_;
    std::vector<double> b_, sqrtA_, m_; ///< co-volumes, sqrt(a_i) at Tc, slopes of alpha
};

class Isotherm {
  public:
    double T() const noexcept { return T_; }
    double RT() const noexcept { return model_->R() * T_; }
    const PengRobinson& model() const noexcept { return *model_; }

    /// All compressibility factors for which the volume exceeds the co-volume, in increasing order.
    std::vector<double> compressibilityFactors(double P, std::span<const double> x) const;

    /// `x` are mole fractions that sum to one. Throws OutOfRange for a pressure that is not positive and
    /// finite.
    PhaseState phase(double P, std::span<const double> x, Root root, Detail detail = {}) const;

  private:
    friend class PengRobinson;
    struct Mixture;

    Isotherm(const PengRobinson& model, double T);
    Mixture mix(std::span<const double> x, Detail detail) const;
    CubicRoots roots(double P, const Mixture& mixture) const;
    PhaseState evaluate(double P, double Z, std::span<const double> x, const Mixture& mixture,
                        Detail detail) const;

    const PengRobinson* model_; // the model outlives its isotherms
    double T_;
    std::vector<double> q_, dq_dT_, d2q_dT2_; ///< sqrt(a_i) and its derivatives
};

} // namespace peng_robinson::eos
