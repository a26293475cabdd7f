// Derivatives of everything that is known about a phase, by automatic differentiation of the same formulas
// that give the values: exact to rounding, without differences.
//
// Conventions:
// - By temperature: at constant pressure and composition. By pressure: at constant temperature and
//   composition.
// - By mole fraction: the mole fractions are independent variables of the formulas as they stand, also of
//   those that hold when the fractions sum to one only; nothing is divided by their sum. The molecular weight
//   is sum x_i M_i, so that its derivatives are the M_i.
// - By mole number: at constant temperature, pressure and amounts of the other compounds, for one mole in
//   all. Of a property in proportion to the amount (enthalpy, volume) it is the derivative of the property of
//   the whole amount, that is, the partial molar property; of all others, of the property itself.
// - Values per compound differentiated by composition are n x n values: element i n + j belongs to the value
//   of compound i, differentiated by compound j.
// - Entropy and what contains it hold x ln x: the derivative by a compound that is not there is infinite.
// - Where a property needs a constant that a compound lacks, and this compound is not there, the property and
//   its other derivatives are what they are without it. The derivative by this compound is not a number.
#pragma once

#include "packages/peng_robinson/eos/fluid.h"

#include <compare>
#include <functional>
#include <map>
#include <span>
#include <utility>
#include <vector>

namespace peng_robinson::eos {

enum class Derivative { none, temperature, pressure, moleFraction, moleNumber };

/// The direction in which a phase changes; nothing of it changes along `none`.
struct Direction {
    enum class Variable { none, temperature, pressure, moleFraction } variable = Variable::none;
    std::size_t compound = 0; ///< with moleFraction

    // NOLINTNEXTLINE(modernize-use-nullptr): the comparison is with the number 0, which nobody writes here
    friend auto operator<=>(const Direction&, const Direction&) = default;
};

using PhaseSlopes = BasicPhaseProperties<Dual>;

/// A phase on one branch of the equation, and its slopes in the directions that were asked for: each is
/// calculated once.
class DifferentiablePhase {
  public:
    explicit DifferentiablePhase(PhaseProperties values) : values_{std::move(values)} {}

    std::size_t size() const noexcept { return values_.x.size(); }
    const PhaseProperties& values() const noexcept { return values_; }
    const PhaseSlopes& along(Direction direction);

  private:
    PhaseProperties values_;
    std::map<Direction, PhaseSlopes> slopes_;
};

/// Values with their derivatives in the direction of compound j.
using SlopesByCompound = std::function<std::vector<Dual>(std::size_t j)>;

/// The slopes alone.
std::vector<double> slopesOf(std::span<const Dual> values);

/// Derivatives by composition in the order above, of the values that `slopes` calculates. `kind` is
/// moleFraction or moleNumber; `isProportional` tells that the values are in proportion to the amount.
std::vector<double> compositionDerivatives(std::span<const double> x, const SlopesByCompound& slopes,
                                           Derivative kind, bool isProportional);

} // namespace peng_robinson::eos
