// The Peng-Robinson equation of state (Peng, Robinson, Ind. Eng. Chem. Fundam. 15 (1976) 59) with van der
// Waals one-fluid mixing:
//
//   P = R T / (v - b) - a(T) / (v^2 + 2 b v - b^2)
//   a = sum_ij x_i x_j sqrt(a_i a_j) (1 - k_ij),  b = sum_i x_i b_i
//   a_i = OmegaA R^2 Tc^2 / Pc [1 + m (1 - sqrt(T/Tc))]^2,  m = 0.37464 + 1.54226 w - 0.26992 w^2
//
// PengRobinson holds the parameters of a mixture; Isotherm is the same at one temperature and answers
// questions about phases. Both are values. SI units, one mole of phase.
#pragma once

#include "packages/peng_robinson/eos/constants.h"
#include "packages/peng_robinson/eos/cubic.h"
#include "packages/peng_robinson/eos/interaction.h"
#include "packages/peng_robinson/eos/phase_state.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

struct CriticalConstants {
    double Tc, Pc, acentricFactor;
};

/// The numbers that published calculations round; overridable to reproduce their results.
struct EquationConstants {
    double R = molarGasConstant;
    double omegaA = pengRobinsonOmegaA;
    double omegaB = pengRobinsonOmegaB;
};

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

    // Parameters of the components: co-volumes, sqrt(a_i) at Tc, slopes of alpha, interaction.
    double b(std::size_t i) const { return b_[i]; }
    double sqrtA(std::size_t i) const { return sqrtA_[i]; }
    double m(std::size_t i) const { return m_[i]; }
    double k(std::size_t i, std::size_t j) const { return k_(i, j); }

    /// Throws OutOfRange for a temperature that is not positive and finite.
    Isotherm at(double T) const;

    /// The same equation for some of the components, in the order of `indices`.
    PengRobinson subset(std::span<const std::size_t> indices) const;

  private:
    std::vector<CriticalConstants> components_;
    InteractionMatrix k_;
    EquationConstants constants_;
    std::vector<double> b_, sqrtA_, m_;
};

/// sqrt(a_i) of the components at a temperature, with its derivatives, and sqrt(a_i a_j) (1 - k_ij) of all
/// pairs, row by row.
template <typename Number>
struct Attractions {
    Number T = 0.0;
    std::vector<Number> q, dq_dT, d2q_dT2, pairs;
};

class Isotherm {
  public:
    /// Becomes the isotherm of the model at T. An isotherm of a mixture of the same size needs no memory for
    /// that. Throws as PengRobinson::at().
    void assign(const PengRobinson& model, double T);

    double T() const noexcept { return attractions_.T; }
    double RT() const noexcept { return model_->R() * T(); }
    const PengRobinson& model() const noexcept { return *model_; }

    /// All compressibility factors for which the volume exceeds the co-volume, in increasing order.
    CubicRoots compressibilityFactors(double P, std::span<const double> x) const;
    /// Those at the pressure and composition of a phase.
    CubicRoots compressibilityFactors(const PhaseState& phase) const;

    /// `x` are mole fractions that sum to one. Throws OutOfRange for a pressure that is not positive and
    /// finite.
    PhaseState phase(double P, std::span<const double> x, Root root, Detail detail = {}) const;
    /// The same, into a state whose memory is used again. What `detail` does not ask for is left as it is.
    void phase(double P, std::span<const double> x, Root root, Detail detail, PhaseState& state) const;

  private:
    friend class PengRobinson;

    Isotherm(const PengRobinson& model, double T) { assign(model, T); }

    const PengRobinson* model_ = nullptr; // the model outlives its isotherms
    Attractions<double> attractions_;
};

} // namespace peng_robinson::eos
