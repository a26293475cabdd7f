#include "packages/peng_robinson/eos/phase_split.h"

#include "packages/peng_robinson/eos/linear_solver.h"
#include "packages/peng_robinson/eos/rachford_rice.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace peng_robinson::eos {
namespace {

struct Iterate {
    std::vector<double> lnK;
    double beta = 0.0;
    std::vector<double> x, y;
    PhaseState liquid, vapor;
    std::vector<double> residual; ///< ln of the fugacity ratio, vapour over liquid
    double error = 0.0;           ///< its largest modulus
};

void normalise(std::vector<double>& values) {
    const double sum = std::accumulate(values.begin(), values.end(), 0.0);
    for (double& value : values) {
        value /= sum;
    }
}

std::optional<Iterate> evaluate(const Isotherm& isotherm, double P, std::span<const double> z,
                                std::vector<double> lnK, bool derivatives) {
    std::vector<double> K(lnK.size());
    std::ranges::transform(lnK, K.begin(), [](double value) { return std::exp(value); });
    const std::optional<double> beta = solveRachfordRice(z, K);
    if (!beta) {
        return std::nullopt;
    }
    Iterate at;
    at.beta = *beta;
    PhaseCompositions phases = compositionsAt(z, K, at.beta);
    at.x = std::move(phases.x);
    at.y = std::move(phases.y);
    normalise(at.x);
    normalise(at.y);
    at.liquid = isotherm.phase(P, at.x, Root::stable, {.moles = derivatives});
    at.vapor = isotherm.phase(P, at.y, Root::stable, {.moles = derivatives});
    at.residual.assign(lnK.size(), 0.0);
    for (std::size_t i = 0; i < lnK.size(); ++i) {
        at.residual[i] = lnK[i] + at.vapor.lnPhi[i] - at.liquid.lnPhi[i];
        at.error = std::max(at.error, std::abs(at.residual[i]));
    }
    at.lnK = std::move(lnK);
    return at;
}

// The step in the moles of vapour that makes the Gibbs energy stationary, turned into a step of ln K: mole
// numbers of a compound that is almost wholly in one phase have lost the digits that its K-value keeps.
std::vector<double> newtonStep(std::span<const double> z, const Iterate& at) {
    const std::size_t n = z.size();
    const double vapor = at.beta, liquid = 1.0 - at.beta;
    std::vector<double> matrix(n * n), right(n), scale(n);
    for (std::size_t i = 0; i < n; ++i) {
        scale[i] = std::sqrt(vapor * liquid * at.x[i] * at.y[i] / z[i]); // makes the ideal part a unit matrix
    }
    for (std::size_t i = 0; i < n; ++i) {
        right[i] = -scale[i] * at.residual[i];
        for (std::size_t j = 0; j < n; ++j) {
            const double excess = (at.vapor.dlnPhi_dn[i * n + j] - 1.0) / vapor +
                                  (at.liquid.dlnPhi_dn[i * n + j] - 1.0) / liquid;
            matrix[i * n + j] = scale[i] * scale[j] * excess;
        }
        matrix[i * n + i] += 1.0;
    }
    std::vector<double> step = solveLinear(std::move(matrix), std::move(right));
    if (step.empty()) {
        return step;
    }
    double change = 0.0; // of beta
    for (std::size_t i = 0; i < n; ++i) {
        step[i] *= scale[i];
        change += step[i];
    }
    double largest = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        step[i] = step[i] * z[i] / (vapor * liquid * at.x[i] * at.y[i]) - change / (vapor * liquid);
        largest = std::max(largest, std::abs(step[i]));
    }
    for (std::size_t i = 0; i < n; ++i) {
        step[i] = at.lnK[i] + step[i] * (largest > 2.0 ? 2.0 / largest : 1.0);
    }
    return step;
}

std::vector<double> substitution(const Iterate& at) {
    std::vector<double> lnK(at.lnK.size());
    std::ranges::transform(at.liquid.lnPhi, at.vapor.lnPhi, lnK.begin(), std::minus{});
    return lnK;
}

} // namespace

bool isClearlyLiquid(const PhaseState& phase, double RT) {
    return phase.a > 1.1 * pengRobinsonCriticalAttraction * phase.b * RT && phase.v < 2.5 * phase.b;
}

std::optional<PhaseSplit> splitPhases(const Isotherm& isotherm, double P, std::span<const double> z,
                                      std::vector<double> lnK) {
    constexpr int firstSubstitutions = 5;
    constexpr int substitutionsBetween = 4;
    constexpr int maximum = 400, maximumOutside = 60;
    constexpr double converged = 1e-11;
    std::optional<Iterate> at = evaluate(isotherm, P, z, std::move(lnK), false);
    int substitutions = firstSubstitutions;
    int outside = 0; // iterations in which one phase had a negative amount
    for (int i = 0; at && i < maximum && outside < maximumOutside; ++i) {
        std::optional<Iterate> next;
        const bool isOutside = !(at->beta > 0.0 && at->beta < 1.0);
        if (substitutions > 0 || isOutside) {
            --substitutions;
            outside += isOutside ? 1 : 0;
            next = evaluate(isotherm, P, z, substitution(*at), substitutions <= 0);
            if (!next && at->error < converged) {
                break;
            }
            at = std::move(next);
        } else {
            if (at->vapor.dlnPhi_dn.empty()) {
                at = evaluate(isotherm, P, z, std::move(at->lnK), true);
                continue;
            }
            std::vector<double> step = newtonStep(z, *at);
            if (!step.empty()) {
                next = evaluate(isotherm, P, z, std::move(step), true);
            }
            if (next && next->error < at->error) {
                at = std::move(next);
            } else if (at->error < converged) {
                break; // no step improves it any more: rounding error is reached
            } else {
                substitutions = substitutionsBetween;
            }
        }
        if (at && at->error == 0.0) {
            break;
        }
    }
    if (!at || !(at->error < converged) || !(at->beta > 0.0 && at->beta < 1.0)) {
        return std::nullopt;
    }
    const double spread = std::ranges::max(at->lnK, {}, [](double value) { return std::abs(value); });
    if (std::abs(spread) < 1e-7 && std::abs(at->vapor.v / at->liquid.v - 1.0) < 1e-7) {
        return std::nullopt;
    }
    PhaseSplit split{at->beta, std::move(at->x), std::move(at->y), std::move(at->liquid),
                     std::move(at->vapor)};
    if (split.light.v / split.light.b < split.heavy.v / split.heavy.b) {
        std::swap(split.x, split.y);
        std::swap(split.heavy, split.light);
        split.beta = 1.0 - split.beta;
    }
    return split;
}

} // namespace peng_robinson::eos
