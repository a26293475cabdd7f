// A mixture: the equation of state with its interaction parameters, together with the ideal-gas data of the
// compounds, which make residual properties total ones.
//
// Reference state of enthalpy and entropy: each pure compound as an ideal gas at 298.15 K and 101325 Pa has
// zero of both. Formation properties are separate (formationEnthalpy, formationEntropy): add them for
// quantities that balance chemical reactions. SI units, one mole.
#pragma once

#include "packages/peng_robinson/eos/compound.h"
#include "packages/peng_robinson/eos/peng_robinson.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

class Fluid;

/// Everything known about one phase; enthalpies etc. in J/mol and J/(mol K). With Dual numbers: the same with
/// its derivatives in one direction (phase_slopes.h).
template <typename Number>
struct BasicPhaseProperties {
    const Fluid* fluid;            ///< which outlives its phases
    std::vector<Number> x;         ///< mole fractions
    BasicPhaseState<Number> state; ///< with thermal properties
    Number molecularWeight;        ///< g/mol
    Number enthalpy, entropy;
    Number formationEnthalpy, formationEntropy;
    Number Cp, Cv;

    Number gibbsEnergy() const { return enthalpy - state.T * entropy; }
    Number internalEnergy() const { return enthalpy - state.P * state.v; }
    Number helmholtzEnergy() const { return internalEnergy() - state.T * entropy; }
    Number density() const { return 1.0 / state.v; } ///< mol/m3
    /// -1/v (dv/dP) at constant temperature, 1/Pa.
    Number compressibility() const { return -1.0 / (state.v * state.dP_dv); }
    /// (dT/dP) at constant enthalpy, K/Pa.
    Number jouleThomsonCoefficient() const { return (-state.T * state.dP_dT / state.dP_dv - state.v) / Cp; }
    /// m/s
    Number speedOfSound() const {
        using std::sqrt;
        const Number kilogramsPerMole = molecularWeight / 1000.0;
        return state.v * sqrt(-Cp / Cv * state.dP_dv / kilogramsPerMole);
    }
};
using PhaseProperties = BasicPhaseProperties<double>;

class Fluid {
  public:
    /// Compounds of compounds(), with the tabulated interaction parameters. Throws InvalidInput when there
    /// are none.
    explicit Fluid(std::vector<const Compound*> compounds);
    /// Any compounds, which outlive the fluid.
    Fluid(std::vector<const Compound*> compounds, InteractionMatrix k, EquationConstants constants = {});

    std::size_t size() const noexcept { return compounds_.size(); }
    const Compound& compound(std::size_t i) const { return *compounds_[i]; }
    const PengRobinson& model() const noexcept { return model_; }
    double volumeShift(std::size_t i) const { return volumeShifts_[i]; } ///< m3/mol, see volume_shift.h

    /// `x` need not be normalised. Throws InvalidInput and OutOfRange.
    PhaseProperties properties(double T, double P, std::span<const double> x, Root root) const;

    double molecularWeight(std::span<const double> x) const; ///< g/mol, for normalised x

  private:
    std::vector<const Compound*> compounds_;
    PengRobinson model_;
    std::vector<double> volumeShifts_;
};

} // namespace peng_robinson::eos
