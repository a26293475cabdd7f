#include "packages/peng_robinson/eos/phase_split.h"

#include "packages/peng_robinson/eos/linear_solver.h"
#include "packages/peng_robinson/eos/rachford_rice.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace peng_robinson::eos {
namespace {

constexpr double converged = 1e-11;
// The rounding error of a fugacity.
constexpr double exact = 3e-14;

void normalise(std::span<double> values) {
    const double sum = std::accumulate(values.begin(), values.end(), 0.0);
    for (double& value : values) {
        value /= sum;
    }
}

} // namespace

bool PhaseSplitter::evaluate(Iterate& at, double guess, bool derivatives) {
    const std::size_t n = z_.size();
    K_.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        K_[i] = std::exp(at.lnK[i]);
    }
    const std::optional<double> beta = solveRachfordRice(z_, K_, guess);
    if (!beta) {
        return false;
    }
    at.beta = *beta;
    at.x.resize(n);
    at.y.resize(n);
    compositionsAt(z_, K_, at.beta, at.x, at.y);
    normalise(at.x);
    normalise(at.y);
    setPhases(at, derivatives);
    return true;
}

void PhaseSplitter::setPhases(Iterate& at, bool derivatives) {
    isotherm_->phase(P_, at.x, Root::stable, {.moles = derivatives}, at.liquid);
    isotherm_->phase(P_, at.y, Root::stable, {.moles = derivatives}, at.vapor);
    at.hasDerivatives = derivatives;
    at.residual.resize(z_.size());
    at.error = 0.0;
    for (std::size_t i = 0; i < z_.size(); ++i) {
        at.residual[i] = at.lnK[i] + at.vapor.lnPhi[i] - at.liquid.lnPhi[i];
        at.error = std::max(at.error, std::abs(at.residual[i]));
    }
}

// The step in the moles of vapour that makes the Gibbs energy stationary, in variables in which the ideal
// part of its second derivatives is the unit matrix; damping shortens it and turns it downhill.
bool PhaseSplitter::setNewtonStep(double damping) {
    const std::size_t n = z_.size();
    const double vapor = at_.beta, liquid = 1.0 - at_.beta;
    const double perVapor = 1.0 / vapor, perLiquid = 1.0 / liquid;
    scale_.resize(n);
    step_.resize(n);
    matrix_.resize(n * n);
    for (std::size_t i = 0; i < n; ++i) {
        scale_[i] = std::sqrt(vapor * liquid * at_.x[i] * at_.y[i] / z_[i]);
    }
    for (std::size_t i = 0; i < n; ++i) {
        step_[i] = -scale_[i] * at_.residual[i];
        for (std::size_t j = 0; j <= i; ++j) {
            const double excess = (at_.vapor.dlnPhi_dn[i * n + j] - 1.0) * perVapor +
                                  (at_.liquid.dlnPhi_dn[i * n + j] - 1.0) * perLiquid;
            matrix_[i * n + j] = scale_[i] * scale_[j] * excess;
        }
        matrix_[i * n + i] += 1.0 + damping;
    }
    if (!solveDefinite(matrix_, step_)) {
        return false;
    }
    for (std::size_t i = 0; i < n; ++i) {
        step_[i] *= scale_[i];
    }
    return true;
}

// A step of ln K from that of the moles: mole numbers of a compound that is almost wholly in one phase have
// lost the digits that its K-value keeps.
void PhaseSplitter::setLnKOfNext() {
    const std::size_t n = z_.size();
    const double both = at_.beta * (1.0 - at_.beta);
    const double change = std::accumulate(step_.begin(), step_.end(), 0.0); // of beta
    double largest = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        step_[i] = (step_[i] * z_[i] / (at_.x[i] * at_.y[i]) - change) / both;
        largest = std::max(largest, std::abs(step_[i]));
    }
    const double factor = largest > 2.0 ? 2.0 / largest : 1.0;
    next_.lnK.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        next_.lnK[i] = at_.lnK[i] + factor * step_[i];
    }
}

// From the iterate at_, which is evaluated, as far as it goes.
bool PhaseSplitter::iterate() {
    constexpr int firstSubstitutions = 3, substitutionsBetween = 4;
    constexpr int maximum = 400, maximumOutside = 60;
    int substitutions = firstSubstitutions;
    int outside = 0; // iterations in which one phase had a negative amount
    for (int i = 0; i < maximum && outside < maximumOutside && at_.error > exact; ++i) {
        const bool isOutside = !(at_.beta > 0.0 && at_.beta < 1.0);
        if (substitutions > 0 || isOutside) {
            --substitutions;
            outside += isOutside ? 1 : 0;
            next_.lnK.resize(z_.size());
            for (std::size_t k = 0; k < z_.size(); ++k) {
                next_.lnK[k] = at_.liquid.lnPhi[k] - at_.vapor.lnPhi[k];
            }
            if (!evaluate(next_, at_.beta, substitutions <= 0)) {
                return at_.error < converged;
            }
            std::swap(at_, next_);
            continue;
        }
        if (!at_.hasDerivatives) {
            setPhases(at_, true);
        }
        if (setNewtonStep(0.0)) {
            setLnKOfNext();
            if (evaluate(next_, at_.beta, true) && next_.error < at_.error) {
                std::swap(at_, next_);
                continue;
            }
        }
        if (at_.error < converged) {
            break; // no step improves it any more: rounding error is reached
        }
        substitutions = substitutionsBetween;
    }
    return true;
}

bool PhaseSplitter::isResult() const {
    if (!(at_.error < converged) || !(at_.beta > 0.0 && at_.beta < 1.0)) {
        return false;
    }
    double spread = 0.0;
    for (const double lnK : at_.lnK) {
        spread = std::max(spread, std::abs(lnK));
    }
    return spread >= 1e-7 || std::abs(at_.vapor.v / at_.liquid.v - 1.0) >= 1e-7;
}

bool PhaseSplitter::split(const Isotherm& isotherm, double P, std::span<const double> z,
                          std::span<const double> lnK, PhaseSplit& result) {
    isotherm_ = &isotherm;
    P_ = P;
    z_ = z;
    at_.lnK.assign(lnK.begin(), lnK.end());
    if (!evaluate(at_, 0.5, false) || !iterate() || !isResult()) {
        return false;
    }
    const bool isUpright = at_.vapor.v / at_.vapor.b >= at_.liquid.v / at_.liquid.b;
    result.beta = isUpright ? at_.beta : 1.0 - at_.beta;
    std::swap(result.x, isUpright ? at_.x : at_.y);
    std::swap(result.y, isUpright ? at_.y : at_.x);
    std::swap(result.heavy, isUpright ? at_.liquid : at_.vapor);
    std::swap(result.light, isUpright ? at_.vapor : at_.liquid);
    return true;
}

// False when there would be nothing left of a compound in one of the phases.
bool PhaseSplitter::setMoles(Iterate& at, std::span<const double> vapor) {
    const std::size_t n = z_.size();
    at.lnK.resize(n);
    at.x.resize(n);
    at.y.resize(n);
    at.beta = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        at.y[i] = vapor[i];
        at.x[i] = z_[i] - vapor[i];
        at.beta += vapor[i];
        if (!(at.x[i] > 0.0 && at.y[i] > 0.0)) {
            return false;
        }
    }
    normalise(at.x);
    normalise(at.y);
    for (std::size_t i = 0; i < n; ++i) {
        at.lnK[i] = std::log(at.y[i] / at.x[i]);
    }
    setPhases(at, true);
    return true;
}

double PhaseSplitter::gibbsEnergy(const Iterate& at) const {
    double sum = 0.0;
    for (std::size_t i = 0; i < z_.size(); ++i) {
        sum += at.beta * at.y[i] * (std::log(at.y[i]) + at.vapor.lnPhi[i]) +
               (1.0 - at.beta) * at.x[i] * (std::log(at.x[i]) + at.liquid.lnPhi[i]);
    }
    return sum;
}

bool PhaseSplitter::splitDownhill(const Isotherm& isotherm, double P, std::span<const double> z,
                                  std::span<const double> formed, PhaseSplit& result) {
    constexpr int maximum = 60;
    constexpr double nearEnough = 1e-6; // for Newton's method in ln K
    isotherm_ = &isotherm;
    P_ = P;
    z_ = z;
    const std::size_t n = z.size();
    // As much of the new phase as lowers the Gibbs energy most, of a few amounts.
    const double sum = std::accumulate(formed.begin(), formed.end(), 0.0);
    double most = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
        most = std::min(most, z[i] * sum / formed[i]);
    }
    moles_.resize(n);
    bool isFirst = true;
    for (int halvings = 0; halvings < 14; ++halvings) {
        const double amount = std::ldexp(0.9 * most, -halvings);
        for (std::size_t i = 0; i < n; ++i) {
            moles_[i] = amount * formed[i] / sum;
        }
        if (setMoles(next_, moles_) && (isFirst || gibbsEnergy(next_) < gibbsEnergy(at_))) {
            std::swap(at_, next_);
            isFirst = false;
        }
    }
    if (isFirst) {
        return false;
    }
    double damping = 1e-3;
    for (int i = 0; i < maximum && at_.error > nearEnough && damping < 1e8; ++i) {
        bool isLower = false;
        if (setNewtonStep(damping)) {
            for (std::size_t k = 0; k < n; ++k) {
                moles_[k] = at_.beta * at_.y[k] + step_[k];
            }
            isLower = setMoles(next_, moles_) && gibbsEnergy(next_) <= gibbsEnergy(at_);
        }
        if (isLower) {
            std::swap(at_, next_);
        }
        damping *= isLower ? 0.2 : 8.0;
    }
    moles_.assign(at_.lnK.begin(), at_.lnK.end());
    return split(isotherm, P, z, moles_, result);
}

bool isClearlyLiquid(const PhaseState& phase, double RT) {
    return phase.a > 1.1 * pengRobinsonCriticalAttraction * phase.b * RT && phase.v < 2.5 * phase.b;
}

} // namespace peng_robinson::eos
