#include "packages/peng_robinson/eos/stability.h"

#include "packages/peng_robinson/eos/linear_solver.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

// Distances nearer to the plane than this are rounding error.
constexpr double significantDistance = -1e-12;
// A fraction that has underflowed to zero still needs a logarithm.
constexpr double smallestFraction = 1e-290;

} // namespace

void TangentPlane::touch(const Isotherm& isotherm, double P, std::span<const double> z,
                         const PhaseState& feed) {
    isotherm_ = &isotherm;
    P_ = P;
    lnZ_.resize(z.size());
    plane_.resize(z.size());
    for (std::size_t i = 0; i < z.size(); ++i) {
        lnZ_[i] = std::log(std::max(z[i], smallestFraction));
        plane_[i] = lnZ_[i] + feed.lnPhi[i];
    }
    touched_[0] = z;
    touchedCount_ = 1;
}

void TangentPlane::setStart(std::size_t start) {
    const std::size_t n = lnZ_.size();
    at_.lnW.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        if (start < mixedSearches) {
            const double lnK = wilsonLnK(isotherm_->model().component(i), isotherm_->T(), P_);
            at_.lnW[i] = lnZ_[i] + (start == 0 ? lnK : -lnK);
        } else {
            at_.lnW[i] = i == start - mixedSearches ? std::log(0.999) : std::log(1e-3) + lnZ_[i];
        }
    }
}

void TangentPlane::evaluate(Point& point, bool derivatives) {
    const std::size_t n = point.lnW.size();
    point.W.resize(n);
    point.gradient.resize(n);
    w_.resize(n);
    point.sum = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        point.W[i] = std::exp(std::min(point.lnW[i], 300.0));
        point.sum += point.W[i];
    }
    const double share = 1.0 / point.sum;
    for (std::size_t i = 0; i < n; ++i) {
        w_[i] = point.W[i] * share;
    }
    isotherm_->phase(P_, w_, Root::stable, {.moles = derivatives}, point.phase);
    point.hasDerivatives = derivatives;
    point.distance = 1.0;
    double error = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double gradient = point.lnW[i] + point.phase.lnPhi[i] - plane_[i];
        point.gradient[i] = gradient;
        point.distance += point.W[i] * (gradient - 1.0);
        error = std::max(error, gradient * gradient * point.W[i]);
    }
    point.error = std::sqrt(error);
}

// In the variables 2 sqrt(W) the Hessian is nearly the unit matrix for an ideal phase. Only where it is
// definite does the step lead to a lowest place.
bool TangentPlane::setNewtonStep() {
    const std::size_t n = at_.W.size();
    roots_.resize(n);
    step_.resize(n);
    matrix_.resize(n * n);
    for (std::size_t i = 0; i < n; ++i) {
        roots_[i] = std::sqrt(at_.W[i]);
    }
    const double share = 1.0 / at_.sum;
    for (std::size_t i = 0; i < n; ++i) {
        step_[i] = -roots_[i] * at_.gradient[i];
        for (std::size_t j = 0; j <= i; ++j) {
            matrix_[i * n + j] = roots_[i] * roots_[j] * at_.phase.dlnPhi_dn[i * n + j] * share;
        }
        matrix_[i * n + i] += 1.0 + 0.5 * at_.gradient[i];
    }
    if (!solveDefinite(matrix_, step_)) {
        return false;
    }
    next_.lnW.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double root = roots_[i] + 0.5 * step_[i];
        if (!(root > 0.0)) {
            return false;
        }
        next_.lnW[i] = 2.0 * std::log(root);
    }
    return true;
}

bool TangentPlane::isTrivial() const {
    double distance = 0.0;
    for (std::size_t i = 0; i < at_.lnW.size(); ++i) {
        distance = std::max(distance, at_.W[i] * std::abs(at_.lnW[i] - lnZ_[i]));
    }
    return distance < 1e-7;
}

// Above the plane and near a place where it touches, the distance goes with the square of the way to that
// place (Michelsen, Fluid Phase Equilib. 9 (1982) 1).
bool TangentPlane::nearsTouched() const {
    if (!(at_.distance > 0.0) || at_.distance > 1e-3) {
        return false;
    }
    return std::ranges::any_of(std::span{touched_}.first(touchedCount_), [this](std::span<const double> z) {
        double slope = 0.0;
        for (std::size_t i = 0; i < z.size(); ++i) {
            slope += (at_.W[i] - z[i]) * at_.gradient[i];
        }
        return std::abs(2.0 * at_.distance / slope - 1.0) < 0.2;
    });
}

bool TangentPlane::search(std::size_t start, double enough) {
    constexpr int substitutions = 6;
    setStart(start);
    evaluate(at_, false);
    for (int i = 0; i < 300; ++i) {
        if (at_.error < 1e-12 || at_.distance < enough) {
            break;
        }
        if ((i > 3 && isTrivial()) || (i > 0 && nearsTouched())) {
            return false;
        }
        if (i >= substitutions && i % substitutions != 0) {
            if (!at_.hasDerivatives) {
                evaluate(at_, true);
            }
            if (setNewtonStep()) {
                evaluate(next_, true);
                if (next_.distance <= at_.distance + 1e-15 || next_.error < 0.1 * at_.error) {
                    std::swap(at_, next_);
                    continue;
                }
            }
        }
        for (std::size_t k = 0; k < at_.lnW.size(); ++k) {
            at_.lnW[k] = plane_[k] - at_.phase.lnPhi[k];
        }
        evaluate(at_, i + 1 >= substitutions);
    }
    // A point below the plane proves the split even when the search has not quite arrived.
    return at_.distance < significantDistance && !isTrivial();
}

double wilsonLnK(const CriticalConstants& component, double T, double P) {
    return std::log(component.Pc / P) + 5.373 * (1.0 + component.acentricFactor) * (1.0 - component.Tc / T);
}

std::vector<TrialPhase> unstableTrials(const Isotherm& isotherm, double P, std::span<const double> z,
                                       const PhaseState& feed) {
    TangentPlane plane;
    plane.touch(isotherm, P, z, feed);
    std::vector<TrialPhase> found;
    for (std::size_t start = 0; start < plane.searches(); ++start) {
        if (plane.search(start, TangentPlane::neverEnough)) {
            found.push_back({{plane.amounts().begin(), plane.amounts().end()}, plane.distance()});
        }
    }
    std::ranges::sort(found, {}, &TrialPhase::distance);
    return found;
}

} // namespace peng_robinson::eos
