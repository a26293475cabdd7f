#include "packages/peng_robinson/eos/active.h"
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/phase_split.h"
#include "packages/peng_robinson/eos/stability.h"
#include "packages/peng_robinson/eos/text.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

bool isLiquid(const Isotherm& isotherm, const PhaseState& phase, std::span<const double> x) {
    const std::vector<double> roots = isotherm.compressibilityFactors(phase.P, x);
    return roots.size() > 1 ? phase.Z < 0.5 * (roots.front() + roots.back())
                            : isLiquidLike(phase, isotherm.model().R());
}

Equilibrium onePhase(const Isotherm& isotherm, double P, bool liquid, const ActiveMixture& mixture) {
    Equilibrium result{isotherm.T(), P, {}, {}};
    PhaseAmount all{1.0, mixture.expand(mixture.z())};
    (liquid ? result.liquid : result.vapor) = std::move(all);
    return result;
}

/// Gibbs energy of both phases over RT, up to a constant of the overall composition.
double gibbsEnergy(const PhaseSplit& split) {
    double sum = 0.0;
    const auto add = [&sum](double amount, double fraction, double lnPhi) {
        sum += fraction > 0.0 ? amount * fraction * (std::log(fraction) + lnPhi) : 0.0;
    };
    for (std::size_t i = 0; i < split.x.size(); ++i) {
        add(split.beta, split.y[i], split.light.lnPhi[i]);
        add(1.0 - split.beta, split.x[i], split.heavy.lnPhi[i]);
    }
    return sum;
}

std::vector<double> logRatio(std::span<const double> numerator, std::span<const double> denominator) {
    std::vector<double> result(numerator.size());
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = std::log(std::max(numerator[i], 1e-290)) - std::log(std::max(denominator[i], 1e-290));
    }
    return result;
}

bool isLower(const PhaseSplit& candidate, const std::optional<PhaseSplit>& best) {
    return !best || gibbsEnergy(candidate) < gibbsEnergy(*best) - 1e-12;
}

// A feed below its tangent plane by more than this is certainly not one phase; nearer to it, at the very
// border of the two phases, one phase is as good an answer.
constexpr double provenDistance = -1e-8;

/// The split of lowest Gibbs energy that the tangent-plane test of the feed leads to; empty for a stable
/// feed. Throws NoConvergence for a feed that is not stable when no split of it is found.
std::optional<PhaseSplit> bestSplit(const Isotherm& isotherm, double P, std::span<const double> z,
                                    const PhaseState& feed) {
    std::optional<PhaseSplit> best;
    double previous = 0.0;
    const std::vector<TrialPhase> trials = unstableTrials(isotherm, P, z, feed);
    for (const TrialPhase& trial : trials) {
        if (std::abs(trial.distance - previous) < 1e-6 * std::abs(previous)) {
            continue; // the same stationary point, found from another start
        }
        previous = trial.distance;
        // The trial phase may be the lighter or the heavier one; which it is shows in the result.
        std::optional<PhaseSplit> split = splitPhases(isotherm, P, z, logRatio(trial.amounts, z));
        if (split && isLower(*split, best)) {
            best = std::move(split);
        }
    }
    if (!best && !trials.empty() && trials.front().distance < provenDistance) {
        throw NoConvergence{"The mixture forms two phases at " + numberText(isotherm.T()) + " K and " +
                            numberText(P) +
                            " Pa, but their compositions were not found; try a higher temperature"};
    }
    return best;
}

/// The split of lowest Gibbs energy that pairs one phase of `split` with a phase that `split` would still
/// form; empty when it would form none. With `vaporOnly`, pairs of liquids do not count.
std::optional<PhaseSplit> betterSplit(const Isotherm& isotherm, double P, std::span<const double> z,
                                      const PhaseSplit& split, bool vaporOnly) {
    std::optional<PhaseSplit> best;
    for (const TrialPhase& trial : unstableTrials(isotherm, P, split.x, split.heavy)) {
        for (const std::vector<double>& partner : {split.x, split.y}) {
            std::optional<PhaseSplit> candidate =
                splitPhases(isotherm, P, z, logRatio(trial.amounts, partner));
            if (candidate && !(vaporOnly && isClearlyLiquid(candidate->light, isotherm.RT())) &&
                isLower(*candidate, best)) {
                best = std::move(candidate);
            }
        }
    }
    return best;
}

} // namespace

Equilibrium flashTP(const PengRobinson& full, double T, double P, std::span<const double> amounts,
                    PhasesAllowed allowed) {
    const ActiveMixture mixture{full, amounts};
    const std::vector<double>& z = mixture.z();
    const Isotherm isotherm = mixture.model().at(T);
    const PhaseState feed = isotherm.phase(P, z, Root::stable);
    if (allowed != PhasesAllowed::both) {
        return onePhase(isotherm, P, allowed == PhasesAllowed::liquidOnly, mixture);
    }
    std::optional<PhaseSplit> split;
    if (!mixture.isPure()) {
        split = bestSplit(isotherm, P, z, feed);
    }
    // The feed's test may have led to a pair that is itself unstable (a vapour over the wrong one of two
    // liquids).
    for (int i = 0; i < 3 && split; ++i) {
        std::optional<PhaseSplit> better = betterSplit(isotherm, P, z, *split, false);
        if (!better || !isLower(*better, split)) {
            break;
        }
        split = std::move(better);
    }
    bool liquid = isLiquid(isotherm, feed, z);
    if (split && isClearlyLiquid(split->light, isotherm.RT())) {
        // Two liquids that would not boil are one liquid here; two that would are a vapour over one of them.
        split = betterSplit(isotherm, P, z, *split, true);
        liquid = true;
    }
    return split ? mixture.twoPhases(T, P, split->beta, split->x, split->y)
                 : onePhase(isotherm, P, liquid, mixture);
}

} // namespace peng_robinson::eos
