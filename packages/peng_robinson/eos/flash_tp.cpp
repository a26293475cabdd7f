#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/text.h"
#include "packages/peng_robinson/eos/tp_flash.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

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

bool isLower(const PhaseSplit& candidate, const PhaseSplit& best) {
    return gibbsEnergy(candidate) < gibbsEnergy(best) - 1e-12;
}

// A feed below its tangent plane by more than this is certainly not one phase; nearer to it, at the very
// border of the two phases, one phase is as good an answer.
constexpr double provenDistance = -1e-8;

// So far below the plane, a phase is a start for the split that needs no refinement.
constexpr double enoughForAStart = -0.02;

} // namespace

TPFlash::TPFlash(const PengRobinson& model) : mixture_{model}, isotherm_{model.at(referenceTemperature)} {}

bool TPFlash::isLiquid() const {
    const CubicRoots roots = isotherm_.compressibilityFactors(feed_);
    return roots.count > 1 ? feed_.Z < 0.5 * (roots.value[0] + roots.value[roots.count - 1])
                           : isLiquidLike(feed_, isotherm_.model().R());
}

// Of the mixture, into candidate_, from a phase that would form beside `partner`.
bool TPFlash::takeSplit(std::span<const double> formed, std::span<const double> partner) {
    lnK_.resize(formed.size());
    for (std::size_t i = 0; i < formed.size(); ++i) {
        lnK_[i] = std::log(std::max(formed[i], 1e-290)) - std::log(std::max(partner[i], 1e-290));
    }
    return splitter_.split(isotherm_, P_, mixture_.z(), lnK_, candidate_);
}

// The best of best_ and the splits that the searches from the feed lead to, into best_. The trial phase may
// be the lighter or the heavier one; which it is shows in the result.
void TPFlash::searchFromFeed(std::size_t first, bool isEnoughToSplit) {
    plane_.touch(isotherm_, P_, mixture_.z(), feed_);
    for (std::size_t start = first; start < plane_.searches(); ++start) {
        if (isSplit_ && isEnoughToSplit && start >= TangentPlane::mixedSearches) {
            break;
        }
        if (!plane_.search(start, enoughForAStart)) {
            continue;
        }
        feedDistance_ = std::min(feedDistance_, plane_.distance());
        if ((takeSplit(plane_.amounts(), mixture_.z()) ||
             (plane_.search(start, TangentPlane::neverEnough) && takeSplit(plane_.amounts(), mixture_.z())) ||
             splitter_.splitDownhill(isotherm_, P_, mixture_.z(), plane_.amounts(), candidate_)) &&
            (!isSplit_ || isLower(candidate_, best_))) {
            std::swap(best_, candidate_);
            isSplit_ = true;
        }
    }
}

// The split of lowest Gibbs energy, into best_; none for a stable feed. Throws NoConvergence for a feed that
// is not stable when no split of it is found.
void TPFlash::findBestSplit() {
    isSplit_ = false;
    feedDistance_ = 0.0;
    // Where the feed splits already, whether this is the best split shows better on its own phases.
    searchFromFeed(0, true);
    if (!isSplit_ && feedDistance_ < provenDistance) {
        throw NoConvergence{"The mixture forms two phases at " + numberText(isotherm_.T()) + " K and " +
                            numberText(P_) +
                            " Pa, but their compositions were not found; try a higher temperature"};
    }
    // The feed's test may have led to a pair that is itself unstable (a vapour over the wrong one of two
    // liquids).
    for (int i = 0; i < 3 && isSplit_; ++i) {
        if (!findBetterSplit(false) || !isLower(better_, best_)) {
            if (splitDistance_ < provenDistance) {
                searchFromFeed(TangentPlane::mixedSearches, false);
            }
            break;
        }
        std::swap(best_, better_);
    }
}

// The split of lowest Gibbs energy that pairs one phase of best_ with a phase that best_ would still form,
// into better_; none when it would form none. With `vaporOnly`, pairs of liquids do not count.
bool TPFlash::findBetterSplit(bool vaporOnly) {
    plane_.touch(isotherm_, P_, best_.x, best_.heavy);
    plane_.touchesAlso(best_.y);
    bool isFound = false;
    splitDistance_ = 0.0;
    for (std::size_t start = 0; start < plane_.searches(); ++start) {
        if (!plane_.search(start, TangentPlane::neverEnough)) {
            continue;
        }
        splitDistance_ = std::min(splitDistance_, plane_.distance());
        for (const std::vector<double>* const partner : {&best_.x, &best_.y}) {
            if (takeSplit(plane_.amounts(), *partner) &&
                !(vaporOnly && isClearlyLiquid(candidate_.light, isotherm_.RT())) &&
                (!isFound || isLower(candidate_, better_))) {
                std::swap(better_, candidate_);
                isFound = true;
            }
        }
    }
    return isFound;
}

void TPFlash::calculate(double T, double P, std::span<const double> amounts, PhasesAllowed allowed,
                        Equilibrium& result) {
    mixture_.assign(amounts);
    const std::vector<double>& z = mixture_.z();
    P_ = P;
    isotherm_.assign(mixture_.model(), T);
    isotherm_.phase(P, z, Root::stable, {}, feed_);
    isSplit_ = false;
    bool liquid = isLiquid();
    if (allowed != PhasesAllowed::both) {
        liquid = allowed == PhasesAllowed::liquidOnly;
    } else if (!mixture_.isPure()) {
        findBestSplit();
        if (isSplit_ && isClearlyLiquid(best_.light, isotherm_.RT())) {
            // Two liquids that would not boil are one liquid here; two that would are a vapour over one of
            // them.
            isSplit_ = findBetterSplit(true);
            std::swap(best_, better_);
            liquid = true;
        }
    }
    if (isSplit_) {
        mixture_.setTwoPhases(T, P, best_.beta, best_.x, best_.y, result);
    } else {
        mixture_.setOnePhase(T, P, liquid, result);
    }
}

Equilibrium flashTP(const PengRobinson& model, double T, double P, std::span<const double> amounts,
                    PhasesAllowed allowed) {
    Equilibrium result;
    TPFlash{model}.calculate(T, P, amounts, allowed, result);
    return result;
}

} // namespace peng_robinson::eos
