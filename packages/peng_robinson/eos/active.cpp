#include "packages/peng_robinson/eos/active.h"

#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/text.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

std::vector<std::size_t> indicesOfAmounts(std::span<const double> x) {
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (x[i] > 0.0) {
            indices.push_back(i);
        }
    }
    return indices;
}

} // namespace

std::vector<double> normalisedComposition(std::span<const double> amounts, std::size_t expectedSize) {
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
    std::vector<double> x(amounts.begin(), amounts.end());
    for (double& value : x) {
        value /= sum;
    }
    return x;
}

ActiveMixture::ActiveMixture(const PengRobinson& full, std::span<const double> amounts)
    : fullSize_{full.size()}, z_{normalisedComposition(amounts, full.size())}, indices_{indicesOfAmounts(z_)},
      model_{full.subset(indices_)} {
    std::erase_if(z_, [](double value) { return !(value > 0.0); });
}

std::vector<double> ActiveMixture::expand(std::span<const double> active) const {
    std::vector<double> full(fullSize_, 0.0);
    for (std::size_t i = 0; i < active.size(); ++i) {
        full[indices_[i]] = active[i];
    }
    return full;
}

Equilibrium ActiveMixture::twoPhases(double T, double P, double beta, std::span<const double> x,
                                     std::span<const double> y) const {
    return {T, P, PhaseAmount{beta, expand(y)}, PhaseAmount{1.0 - beta, expand(x)}};
}

} // namespace peng_robinson::eos
