#include "packages/peng_robinson/eos/active.h"

#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/text.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

void setNormalised(std::span<const double> amounts, std::size_t expectedSize, std::vector<double>& x) {
    if (amounts.size() != expectedSize) {
        throw InvalidInput{"The composition has " + std::to_string(amounts.size()) +
                           " values, but the mixture has " + std::to_string(expectedSize) + " compounds"};
    }
    double sum = 0.0;
    for (const double amount : amounts) {
        if (!std::isfinite(amount) || amount < 0.0) {
            throw InvalidInput{"A composition cannot contain " + numberText(amount) +
                               "; every value must be zero or a positive number"};
        }
        sum += amount;
    }
    if (!(sum > 0.0) || !std::isfinite(sum)) {
        throw InvalidInput{"The composition is empty; at least one compound needs a positive amount"};
    }
    x.assign(amounts.begin(), amounts.end());
    for (double& value : x) {
        value /= sum;
    }
}

} // namespace

std::vector<double> normalisedComposition(std::span<const double> amounts, std::size_t expectedSize) {
    std::vector<double> x;
    setNormalised(amounts, expectedSize, x);
    return x;
}

void ActiveMixture::assign(std::span<const double> amounts) {
    setNormalised(amounts, full_->size(), all_);
    z_.clear();
    found_.clear();
    for (std::size_t i = 0; i < all_.size(); ++i) {
        if (all_[i] > 0.0) {
            z_.push_back(all_[i]);
            found_.push_back(i);
        }
    }
    if (found_ != indices_) {
        model_ = full_->subset(found_);
        indices_ = found_;
    }
}

void ActiveMixture::setPhase(double fraction, std::span<const double> active,
                             std::optional<PhaseAmount>& phase) const {
    if (!phase) {
        phase.emplace();
    }
    phase->fraction = fraction;
    phase->x.assign(full_->size(), 0.0);
    for (std::size_t i = 0; i < active.size(); ++i) {
        phase->x[indices_[i]] = active[i];
    }
}

void ActiveMixture::setTwoPhases(double T, double P, double beta, std::span<const double> x,
                                 std::span<const double> y, Equilibrium& result) const {
    result.T = T;
    result.P = P;
    setPhase(beta, y, result.vapor);
    setPhase(1.0 - beta, x, result.liquid);
}

Equilibrium ActiveMixture::twoPhases(double T, double P, double beta, std::span<const double> x,
                                     std::span<const double> y) const {
    Equilibrium result;
    setTwoPhases(T, P, beta, x, y, result);
    return result;
}

void ActiveMixture::setOnePhase(double T, double P, bool isLiquid, Equilibrium& result) const {
    result.T = T;
    result.P = P;
    setPhase(1.0, z_, isLiquid ? result.liquid : result.vapor);
    (isLiquid ? result.vapor : result.liquid).reset();
}

} // namespace peng_robinson::eos
