// The states of a mixture at a constant vapour fraction beta: a bubble line (0), a dew line (1) or anything
// between. A point of the line is found by Newton's method in ln K, ln T and ln P together, and the line is
// followed from low pressure up to the critical point (Michelsen, Fluid Phase Equilib. 4 (1980) 1), so that
// also its retrograde part is found. All mole fractions of z are positive, and there are at least two.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <optional>
#include <span>
#include <vector>

namespace peng_robinson::eos {

class QualityLine {
  public:
    enum class Variable { temperature, pressure };

    struct Point {
        std::vector<double> lnK;
        double T, P;
        std::vector<double> x, y;
        /// More vapour at higher temperature (pressure given) or at lower pressure (temperature given)?
        bool normal;
    };

    /// The model and z outlive the line.
    QualityLine(const PengRobinson& model, std::span<const double> z, double beta);

    /// The point at the given temperature or pressure nearest to Wilson's estimate, which is good at low
    /// pressures.
    std::optional<Point> estimateAndSolve(Variable given, double value) const;

    /// The point reached by Newton's method from the given K-values and state.
    std::optional<Point> solveFrom(std::span<const double> lnK, double T, double P, Variable given) const;

    /// All points at the given temperature or pressure, in the order in which the line meets them.
    std::vector<Point> follow(Variable given, double value) const;

  private:
    using Unknowns = std::vector<double>; // ln K of every compound, ln T, ln P

    // Residuals (n fugacity equations, then the material balance) and their derivatives with respect to n
    // ln K, ln T, ln P and beta.
    struct System {
        std::vector<double> x, y, residual, jacobian;
        double volumeRatio = 1.0;
        std::size_t columns = 0;

        double derivative(std::size_t row, std::size_t column) const {
            return jacobian[row * columns + column];
        }
    };
    class Step;

    System assemble(const Unknowns& at) const;
    /// Newton's method with unknown number `fixed` held; empty when it does not converge or ends at equal
    /// phases.
    std::optional<Unknowns> solve(Unknowns start, std::size_t fixed, int maximum) const;
    Unknowns estimate(Variable given, double value) const;
    /// Derivatives of all unknowns with respect to unknown number `fixed` along the line.
    Unknowns tangent(const Unknowns& at, std::size_t fixed) const;
    std::optional<Unknowns> start() const;
    void collect(const Step& step, Variable given, double wanted, std::vector<Point>& found) const;
    void collectBeforeCriticalPoint(const Unknowns& at, const Unknowns& direction, Variable given,
                                    double wanted, std::vector<Point>& found) const;
    void add(Unknowns guess, const Unknowns& near, Variable given, double wanted,
             std::vector<Point>& found) const;
    /// Largest modulus of ln K: how far the phases are from being one.
    double spread(const Unknowns& at) const;
    Point pointAt(const Unknowns& at, Variable given) const;

    std::size_t indexOf(Variable given) const { return z_.size() + (given == Variable::pressure ? 1 : 0); }

    const PengRobinson& model_;
    std::span<const double> z_;
    double beta_;
};

} // namespace peng_robinson::eos
