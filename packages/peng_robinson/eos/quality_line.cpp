#include "packages/peng_robinson/eos/quality_line.h"

#include "packages/peng_robinson/eos/linear_solver.h"
#include "packages/peng_robinson/eos/rachford_rice.h"
#include "packages/peng_robinson/eos/stability.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace peng_robinson::eos {

QualityLine::QualityLine(const PengRobinson& model, std::span<const double> z, double beta)
    : model_{model}, z_{z}, beta_{beta} {}

double QualityLine::spread(const Unknowns& at) const {
    double largest = 0.0;
    for (std::size_t i = 0; i < z_.size(); ++i) {
        largest = std::max(largest, std::abs(at[i]));
    }
    return largest;
}

QualityLine::System QualityLine::assemble(const Unknowns& at) const {
    const std::size_t n = z_.size();
    const double T = std::exp(at[n]), P = std::exp(at[n + 1]);
    std::vector<double> K(n);
    for (std::size_t i = 0; i < n; ++i) {
        K[i] = std::exp(at[i]);
    }
    PhaseCompositions phases = compositionsAt(z_, K, beta_);
    System system;
    system.columns = n + 3;
    const double sumX = std::accumulate(phases.x.begin(), phases.x.end(), 0.0);
    const double sumY = std::accumulate(phases.y.begin(), phases.y.end(), 0.0);
    system.x = phases.x;
    system.y = phases.y;
    for (std::size_t i = 0; i < n; ++i) {
        system.x[i] /= sumX;
        system.y[i] /= sumY;
    }
    const Isotherm isotherm = model_.at(T);
    const PhaseState liquid = isotherm.phase(P, system.x, Root::liquid, {.thermal = true, .moles = true});
    const PhaseState vapor = isotherm.phase(P, system.y, Root::vapor, {.thermal = true, .moles = true});
    system.volumeRatio = vapor.v / liquid.v;
    system.residual.assign(n + 1, 0.0);
    system.jacobian.assign((n + 1) * system.columns, 0.0);
    const auto entry = [&](std::size_t row, std::size_t column) -> double& {
        return system.jacobian[row * system.columns + column];
    };
    for (std::size_t i = 0; i < n; ++i) {
        system.residual[i] = at[i] + vapor.lnPhi[i] - liquid.lnPhi[i];
        system.residual[n] += phases.y[i] - phases.x[i];
        for (std::size_t j = 0; j < n; ++j) {
            const double overlap = phases.x[j] * phases.y[j] / z_[j];
            const double difference = (phases.y[j] - phases.x[j]) / z_[j];
            const double onVapor = vapor.dlnPhi_dn[i * n + j] / sumY;
            const double onLiquid = liquid.dlnPhi_dn[i * n + j] / sumX;
            entry(i, j) = onVapor * (1.0 - beta_) * overlap + onLiquid * beta_ * overlap;
            entry(i, n + 2) += difference * (onLiquid * phases.x[j] - onVapor * phases.y[j]);
        }
        entry(i, i) += 1.0;
        entry(i, n) = T * (vapor.dlnPhi_dT[i] - liquid.dlnPhi_dT[i]);
        entry(i, n + 1) = P * (vapor.dlnPhi_dP[i] - liquid.dlnPhi_dP[i]);
        entry(n, i) = phases.x[i] * phases.y[i] / z_[i];
        entry(n, n + 2) -= (phases.y[i] - phases.x[i]) * (phases.y[i] - phases.x[i]) / z_[i];
    }
    return system;
}

std::optional<QualityLine::Unknowns> QualityLine::solve(Unknowns at, std::size_t fixed, int maximum) const {
    const std::size_t n = z_.size();
    std::optional<Unknowns> best;
    double bestError = 1e-10;
    for (int iteration = 0; iteration < maximum; ++iteration) {
        if (!(std::abs(at[n]) < 20.0) || !(std::abs(at[n + 1]) < 200.0) || spread(at) > 600.0) {
            break;
        }
        const System system = assemble(at);
        double error = 0.0;
        for (const double residual : system.residual) {
            error = std::max(error, std::abs(residual));
        }
        if (error < bestError) {
            best = at;
            bestError = error;
        } else if (best) {
            break; // rounding error is reached
        }
        if (!std::isfinite(error) || error == 0.0) {
            break;
        }
        std::vector<double> matrix((n + 1) * (n + 1)), right(n + 1);
        for (std::size_t row = 0; row <= n; ++row) {
            right[row] = -system.residual[row];
            for (std::size_t column = 0; column <= n; ++column) {
                matrix[row * (n + 1) + column] = system.derivative(row, column < fixed ? column : column + 1);
            }
        }
        const std::vector<double> step = solveLinear(std::move(matrix), std::move(right));
        if (step.empty()) {
            break;
        }
        // K-values may change by a factor of e^3 at once, temperature and pressure (which shift all of them)
        // by less.
        double scale = 1.0;
        for (std::size_t column = 0; column <= n; ++column) {
            const std::size_t unknown = column < fixed ? column : column + 1;
            const double limit = unknown < n ? 3.0 : unknown == n ? 0.1 : 1.0;
            scale = std::min(scale, limit / std::max(std::abs(step[column]), limit));
        }
        for (std::size_t column = 0; column <= n; ++column) {
            at[column < fixed ? column : column + 1] += scale * step[column];
        }
    }
    // So near the critical point one phase and two cannot be told apart: the equations hold within the
    // third power of the difference.
    if (best && spread(*best) < 1e-3 && std::abs(assemble(*best).volumeRatio - 1.0) < 0.02) {
        return std::nullopt;
    }
    return best;
}

// Wilson's K-values depend on T and P only: the one that is not given follows from the material balance by
// bisection, for which the balance is monotonic in both.
QualityLine::Unknowns QualityLine::estimate(Variable given, double value) const {
    const std::size_t n = z_.size();
    const std::size_t unknown = n + (given == Variable::temperature ? 1 : 0);
    Unknowns at(n + 2);
    at[n] = at[n + 1] = std::log(value);
    double low = unknown == n ? std::log(1.0) : -600.0;
    double high = unknown == n ? std::log(5000.0) : 60.0;
    for (int i = 0; i < 100; ++i) {
        at[unknown] = 0.5 * (low + high);
        const double T = std::exp(at[n]), P = std::exp(at[n + 1]);
        std::vector<double> K(n);
        for (std::size_t k = 0; k < n; ++k) {
            at[k] = std::clamp(wilsonLnK(model_.component(k), T, P), -500.0, 500.0);
            K[k] = std::exp(at[k]);
        }
        const bool tooMuchVapor = rachfordRice(z_, K, beta_) > 0.0;
        (tooMuchVapor == (unknown == n) ? high : low) = at[unknown];
    }
    return at;
}

std::optional<QualityLine::Point> QualityLine::estimateAndSolve(Variable given, double value) const {
    const std::size_t n = z_.size();
    Unknowns at = estimate(given, value);
    if (at[n + 1] > 200.0 || at[n + 1] < -200.0) {
        return std::nullopt;
    }
    // A few substitutions at fixed T and P bring in the non-ideality that Wilson's estimate lacks.
    const double T = std::exp(at[n]), P = std::exp(at[n + 1]);
    const Isotherm isotherm = model_.at(T);
    for (int i = 0; i < 3; ++i) {
        std::vector<double> K(n);
        std::ranges::transform(std::span{at}.first(n), K.begin(), [](double lnK) { return std::exp(lnK); });
        PhaseCompositions phases = compositionsAt(z_, K, beta_);
        for (std::vector<double>* phase : {&phases.x, &phases.y}) {
            const double sum = std::accumulate(phase->begin(), phase->end(), 0.0);
            for (double& fraction : *phase) {
                fraction /= sum;
            }
        }
        const PhaseState liquid = isotherm.phase(P, phases.x, Root::liquid);
        const PhaseState vapor = isotherm.phase(P, phases.y, Root::vapor);
        for (std::size_t k = 0; k < n; ++k) {
            at[k] = liquid.lnPhi[k] - vapor.lnPhi[k];
        }
    }
    const std::optional<Unknowns> found = solve(std::move(at), indexOf(given), 60);
    return found ? std::optional{pointAt(*found, given)} : std::nullopt;
}

std::optional<QualityLine::Point> QualityLine::solveFrom(std::span<const double> lnK, double T, double P,
                                                         Variable given) const {
    Unknowns at{lnK.begin(), lnK.end()};
    at.push_back(std::log(T));
    at.push_back(std::log(P));
    const std::optional<Unknowns> found = solve(std::move(at), indexOf(given), 60);
    return found ? std::optional{pointAt(*found, given)} : std::nullopt;
}

QualityLine::Point QualityLine::pointAt(const Unknowns& at, Variable given) const {
    const std::size_t n = z_.size();
    System system = assemble(at);
    // How beta answers to the variable that is not given: the fugacity equations alone give the change of ln
    // K, and the material balance then that of beta.
    const std::size_t free = given == Variable::temperature ? n + 1 : n;
    std::vector<double> matrix((n + 1) * (n + 1)), right(n + 1);
    for (std::size_t row = 0; row <= n; ++row) {
        right[row] = -system.derivative(row, free);
        for (std::size_t column = 0; column <= n; ++column) {
            matrix[row * (n + 1) + column] = system.derivative(row, column < n ? column : n + 2);
        }
    }
    const std::vector<double> response = solveLinear(std::move(matrix), std::move(right));
    const bool moreVapor = !response.empty() && response[n] > 0.0;
    return {{at.begin(), at.begin() + static_cast<std::ptrdiff_t>(n)},
            std::exp(at[n]),
            std::exp(at[n + 1]),
            std::move(system.x),
            std::move(system.y),
            moreVapor == (given == Variable::pressure)};
}

} // namespace peng_robinson::eos
