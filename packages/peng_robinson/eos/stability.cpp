#include "packages/peng_robinson/eos/stability.h"

#include "packages/peng_robinson/eos/linear_solver.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace peng_robinson::eos {
namespace {

// Distances nearer to the plane than this are rounding error.
constexpr double significantDistance = -1e-12;
// A fraction that has underflowed to zero still needs a logarithm.
constexpr double smallestFraction = 1e-290;

class TangentPlane {
  public:
    TangentPlane(const Isotherm& isotherm, double P, std::span<const double> z, const PhaseState& feed)
        : isotherm_{isotherm}, P_{P}, lnZ_(z.size()), plane_(z.size()) {
        for (std::size_t i = 0; i < z.size(); ++i) {
            lnZ_[i] = std::log(std::max(z[i], smallestFraction));
            plane_[i] = lnZ_[i] + feed.lnPhi[i];
        }
    }

    std::optional<TrialPhase> search(std::vector<double> lnW) const;

  private:
    struct Point {
        std::vector<double> lnW, W, gradient, lnPhi, dlnPhi_dn;
        double sum = 0.0, distance = 0.0, error = 0.0;
    };
    Point evaluate(std::vector<double> lnW, bool derivatives) const;
    std::vector<double> newtonStep(const Point& at) const;
    bool isTrivial(const Point& at) const;

    const Isotherm& isotherm_;
    double P_;
    std::vector<double> lnZ_, plane_;
};

TangentPlane::Point TangentPlane::evaluate(std::vector<double> lnW, bool derivatives) const {
    const std::size_t n = lnW.size();
    Point point;
    point.W.assign(n, 0.0);
    std::ranges::transform(lnW, point.W.begin(),
                           [](double value) { return std::exp(std::min(value, 300.0)); });
    point.sum = std::accumulate(point.W.begin(), point.W.end(), 0.0);
    std::vector<double> w(n);
    std::ranges::transform(point.W, w.begin(), [&](double value) { return value / point.sum; });
    PhaseState phase = isotherm_.phase(P_, w, Root::stable, {.moles = derivatives});
    point.gradient.assign(n, 0.0);
    point.distance = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
        point.gradient[i] = lnW[i] + phase.lnPhi[i] - plane_[i];
        point.distance += point.W[i] * (point.gradient[i] - 1.0);
        point.error = std::max(point.error, std::abs(point.gradient[i]) * std::sqrt(point.W[i]));
    }
    point.lnW = std::move(lnW);
    point.lnPhi = std::move(phase.lnPhi);
    point.dlnPhi_dn = std::move(phase.dlnPhi_dn);
    return point;
}

// In the variables 2 sqrt(W) the Hessian is nearly the unit matrix for an ideal phase.
std::vector<double> TangentPlane::newtonStep(const Point& at) const {
    const std::size_t n = at.W.size();
    std::vector<double> matrix(n * n), right(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double root = std::sqrt(at.W[i]);
        right[i] = -root * at.gradient[i];
        for (std::size_t j = 0; j < n; ++j) {
            matrix[i * n + j] = root * std::sqrt(at.W[j]) * at.dlnPhi_dn[i * n + j] / at.sum;
        }
        matrix[i * n + i] += 1.0 + 0.5 * at.gradient[i];
    }
    std::vector<double> step = solveLinear(std::move(matrix), std::move(right));
    std::vector<double> lnW = at.lnW;
    for (std::size_t i = 0; i < step.size(); ++i) {
        const double root = std::sqrt(at.W[i]) + 0.5 * step[i];
        if (!(root > 0.0)) {
            return {};
        }
        lnW[i] = 2.0 * std::log(root);
    }
    return step.empty() ? step : lnW;
}

bool TangentPlane::isTrivial(const Point& at) const {
    double distance = 0.0;
    for (std::size_t i = 0; i < at.lnW.size(); ++i) {
        distance = std::max(distance, at.W[i] * std::abs(at.lnW[i] - lnZ_[i]));
    }
    return distance < 1e-7;
}

std::optional<TrialPhase> TangentPlane::search(std::vector<double> start) const {
    constexpr int substitutions = 6;
    Point at = evaluate(std::move(start), false);
    for (int i = 0; i < 300; ++i) {
        if (at.error < 1e-12) {
            break;
        }
        if (i > 3 && isTrivial(at)) {
            return std::nullopt;
        }
        if (i >= substitutions && i % substitutions != 0) {
            if (at.dlnPhi_dn.empty()) {
                at = evaluate(std::move(at.lnW), true);
            }
            if (std::vector<double> lnW = newtonStep(at); !lnW.empty()) {
                Point next = evaluate(std::move(lnW), true);
                if (next.distance <= at.distance + 1e-15 || next.error < 0.1 * at.error) {
                    at = std::move(next);
                    continue;
                }
            }
        }
        std::vector<double> lnW(at.W.size());
        std::ranges::transform(plane_, at.lnPhi, lnW.begin(), std::minus{});
        at = evaluate(std::move(lnW), i + 1 >= substitutions);
    }
    // A point below the plane proves the split even when the search has not quite arrived.
    if (isTrivial(at) || !(at.distance < significantDistance)) {
        return std::nullopt;
    }
    return TrialPhase{std::move(at.W), at.distance};
}

} // namespace

std::vector<double> wilsonLnK(const PengRobinson& model, double T, double P) {
    std::vector<double> lnK(model.size());
    for (std::size_t i = 0; i < lnK.size(); ++i) {
        const auto& [Tc, Pc, w] = model.component(i);
        lnK[i] = std::log(Pc / P) + 5.373 * (1.0 + w) * (1.0 - Tc / T);
    }
    return lnK;
}

std::vector<TrialPhase> unstableTrials(const Isotherm& isotherm, double P, std::span<const double> z,
                                       const PhaseState& feed) {
    const std::size_t n = z.size();
    const TangentPlane plane{isotherm, P, z, feed};
    const std::vector<double> lnK = wilsonLnK(isotherm.model(), isotherm.T(), P);
    std::vector<std::vector<double>> starts(2, std::vector<double>(n));
    for (std::size_t i = 0; i < n; ++i) {
        const double lnZ = std::log(std::max(z[i], smallestFraction));
        starts[0][i] = lnZ + lnK[i];
        starts[1][i] = lnZ - lnK[i];
    }
    for (std::size_t pure = 0; pure < n; ++pure) {
        std::vector<double> start(n);
        for (std::size_t i = 0; i < n; ++i) {
            start[i] = i == pure ? std::log(0.999) : std::log(1e-3 * std::max(z[i], smallestFraction));
        }
        starts.push_back(std::move(start));
    }
    std::vector<TrialPhase> found;
    for (std::vector<double>& start : starts) {
        if (std::optional<TrialPhase> trial = plane.search(std::move(start))) {
            found.push_back(std::move(*trial));
        }
    }
    std::ranges::sort(found, {}, &TrialPhase::distance);
    return found;
}

} // namespace peng_robinson::eos
