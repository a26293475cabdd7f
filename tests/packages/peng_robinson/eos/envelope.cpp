#include "tests/packages/peng_robinson/eos/envelope.h"

#include "packages/peng_robinson/eos/linear_solver.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace peng_robinson::eos::test {
namespace {

using Values = std::vector<double>;

// The unknowns are ln K of every compound (forming phase over mixture), ln T and ln P; one of them is given.
class Border {
  public:
    Border(const PengRobinson& model, const Values& z) : model_{model}, z_{z}, n_{z.size()} {}

    std::size_t temperature() const { return n_; }
    std::size_t pressure() const { return n_ + 1; }

    Values start(double P) const;
    std::optional<Values> solve(Values at, std::size_t given) const;
    Values tangent(const Values& at, std::size_t given) const;
    EnvelopePoint pointAt(const Values& at, const Values& direction) const;
    double spread(const Values& at) const {
        double largest = 0.0;
        for (std::size_t i = 0; i < n_; ++i) {
            largest = std::max(largest, std::abs(at[i]));
        }
        return largest;
    }

  private:
    struct Equations {
        Values residual, jacobian;           // n + 1 rows of n + 2
        double formingVolume, mixtureVolume; // over the co-volumes
    };
    Equations equations(const Values& at) const;
    Values forming(const Values& at) const;
    Values solveWithout(const Equations& equations, std::size_t given, const Values& right) const;

    const PengRobinson& model_;
    const Values& z_;
    std::size_t n_;
};

Values Border::forming(const Values& at) const {
    Values w(n_);
    double sum = 0.0;
    for (std::size_t i = 0; i < n_; ++i) {
        w[i] = z_[i] * std::exp(at[i]);
        sum += w[i];
    }
    for (double& fraction : w) {
        fraction /= sum;
    }
    return w;
}

Border::Equations Border::equations(const Values& at) const {
    const double T = std::exp(at[n_]), P = std::exp(at[n_ + 1]);
    const Isotherm isotherm = model_.at(T);
    constexpr Detail detail{.thermal = true, .moles = true};
    const PhaseState mixture = isotherm.phase(P, z_, Root::stable, detail);
    const PhaseState phase = isotherm.phase(P, forming(at), Root::stable, detail);
    const std::size_t columns = n_ + 2;
    Equations result{Values(n_ + 1, 0.0), Values((n_ + 1) * columns, 0.0), phase.v / phase.b,
                     mixture.v / mixture.b};
    Values amounts(n_);
    double sum = 0.0;
    for (std::size_t i = 0; i < n_; ++i) {
        amounts[i] = z_[i] * std::exp(at[i]);
        sum += amounts[i];
    }
    for (std::size_t i = 0; i < n_; ++i) {
        result.residual[i] = at[i] + phase.lnPhi[i] - mixture.lnPhi[i];
        result.residual[n_] += amounts[i] - z_[i];
        double* const row = &result.jacobian[i * columns];
        for (std::size_t j = 0; j < n_; ++j) {
            row[j] = (i == j ? 1.0 : 0.0) + amounts[j] / sum * phase.dlnPhi_dn[i * n_ + j];
        }
        row[n_] = T * (phase.dlnPhi_dT[i] - mixture.dlnPhi_dT[i]);
        row[n_ + 1] = P * (phase.dlnPhi_dP[i] - mixture.dlnPhi_dP[i]);
        result.jacobian[n_ * columns + i] = amounts[i];
    }
    return result;
}

Values Border::solveWithout(const Equations& equations, std::size_t given, const Values& right) const {
    Values matrix;
    for (std::size_t row = 0; row <= n_; ++row) {
        for (std::size_t column = 0; column < n_ + 2; ++column) {
            if (column != given) {
                matrix.push_back(equations.jacobian[row * (n_ + 2) + column]);
            }
        }
    }
    Values step = solveLinear(std::move(matrix), right);
    if (!step.empty()) {
        step.insert(step.begin() + static_cast<std::ptrdiff_t>(given), 0.0);
    }
    return step;
}

std::optional<Values> Border::solve(Values at, std::size_t given) const {
    for (int i = 0; i < 15; ++i) {
        const Equations here = equations(at);
        Values right = here.residual;
        double error = 0.0;
        for (double& value : right) {
            error = std::max(error, std::abs(value));
            value = -value;
        }
        if (error < 1e-11) {
            return at;
        }
        const Values step = solveWithout(here, given, right);
        if (step.empty()) {
            break;
        }
        for (std::size_t k = 0; k < at.size(); ++k) {
            at[k] += std::clamp(step[k], -1.0, 1.0);
        }
    }
    return std::nullopt;
}

// Derivatives of all unknowns by the given one.
Values Border::tangent(const Values& at, std::size_t given) const {
    const Equations here = equations(at);
    Values right(n_ + 1);
    for (std::size_t row = 0; row <= n_; ++row) {
        right[row] = -here.jacobian[row * (n_ + 2) + given];
    }
    Values direction = solveWithout(here, given, right);
    if (direction.empty()) {
        throw std::runtime_error{"The border has no direction"};
    }
    direction[given] = 1.0;
    return direction;
}

// A drop in a thin gas: ideal phases, then substitution and the temperature by turns.
Values Border::start(double P) const {
    Values at(n_ + 2, 0.0);
    at[n_ + 1] = std::log(P);
    double low = 50.0, high = 1000.0;
    for (int i = 0; i < 60; ++i) {
        const double T = 0.5 * (low + high);
        double sum = 0.0;
        for (std::size_t k = 0; k < n_; ++k) {
            const auto& [Tc, Pc, w] = model_.component(k);
            at[k] = -(std::log(Pc / P) + 5.373 * (1.0 + w) * (1.0 - Tc / T)); // GPA RP-47 (1968)
            sum += z_[k] * std::exp(at[k]);
        }
        (sum > 1.0 ? low : high) = T;
    }
    at[n_] = std::log(low);
    const std::optional<Values> found = solve(std::move(at), pressure());
    if (!found) {
        throw std::runtime_error{"The border has no beginning"};
    }
    return *found;
}

EnvelopePoint Border::pointAt(const Values& at, const Values& direction) const {
    const Equations here = equations(at);
    return {std::exp(at[n_]), std::exp(at[n_ + 1]), here.formingVolume < here.mixtureVolume,
            forming(at),      direction[n_],        direction[n_ + 1],
            spread(at)};
}

} // namespace

std::vector<EnvelopePoint> traceEnvelope(const PengRobinson& model, const std::vector<double>& z,
                                         double lowest, double coldest) {
    const Border border{model, z};
    Values at = border.start(lowest);
    std::size_t given = border.pressure();
    Values direction = border.tangent(at, given);
    std::vector<EnvelopePoint> points{border.pointAt(at, direction)};
    double length = 0.05;
    for (int i = 0; i < 2000; ++i) {
        // The unknown that changes fastest is the one to step in; the line goes on in the direction in which
        // it came.
        std::size_t fastest = given;
        for (std::size_t k = 0; k < direction.size(); ++k) {
            if (std::abs(direction[k]) > std::abs(direction[fastest])) {
                fastest = k;
            }
        }
        const double scale = length / std::abs(direction[fastest]);
        Values guess = at;
        for (std::size_t k = 0; k < guess.size(); ++k) {
            guess[k] += scale * direction[k];
        }
        // Where all ln K are small the equations hold for equal phases as well: step across.
        if (border.spread(guess) < 0.02 && border.spread(at) < 0.1) {
            for (std::size_t k = 0; k < guess.size(); ++k) {
                guess[k] += 2.0 * scale * direction[k];
            }
        }
        std::optional<Values> next = border.solve(std::move(guess), fastest);
        if (next && border.spread(*next) < 1e-6) {
            next.reset();
        }
        if (!next) {
            length *= 0.5;
            if (length < 1e-5) {
                throw std::runtime_error{"The border was lost"};
            }
            continue;
        }
        Values onward = border.tangent(*next, fastest);
        if (direction[fastest] < 0.0) {
            for (double& value : onward) {
                value = -value;
            }
        }
        at = std::move(*next);
        given = fastest;
        direction = std::move(onward);
        length = std::min(0.05, 1.5 * length);
        points.push_back(border.pointAt(at, direction));
        if (points.back().P < lowest || points.back().T < coldest) {
            break;
        }
    }
    return points;
}

} // namespace peng_robinson::eos::test
