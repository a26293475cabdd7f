#include "packages/peng_robinson/eos/active.h"
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/pure_saturation.h"
#include "packages/peng_robinson/eos/quality_line.h"
#include "packages/peng_robinson/eos/stability.h"
#include "packages/peng_robinson/eos/text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace peng_robinson::eos {
namespace {

using Variable = QualityLine::Variable;

bool isWanted(const QualityLine::Point& point, SolutionType wanted) {
    return wanted == SolutionType::any || point.normal == (wanted == SolutionType::normal);
}

// At a dew point another liquid may have dropped out before (water from a gas that also holds heavy
// hydrocarbons): then the vapour is unstable, and the K-values of the phase that it would rather form are a
// better start. Likewise a bubble point. Empty when the point is the first one met.
std::vector<double> moreStableIncipientPhase(const ActiveMixture& mixture, const QualityLine::Point& point,
                                             double beta) {
    if (beta != 0.0 && beta != 1.0) {
        return {};
    }
    const Isotherm isotherm = mixture.model().at(point.T);
    const std::vector<double>& z = mixture.z();
    const PhaseState feed = isotherm.phase(point.P, z, beta == 1.0 ? Root::vapor : Root::liquid);
    for (const TrialPhase& trial : unstableTrials(isotherm, point.P, z, feed)) {
        double sum = 0.0;
        std::vector<double> lnK(z.size());
        for (std::size_t i = 0; i < z.size(); ++i) {
            lnK[i] = (beta == 1.0 ? -1.0 : 1.0) * std::log(trial.amounts[i] / z[i]);
            sum += trial.amounts[i];
        }
        std::vector<double> w = trial.amounts;
        for (double& fraction : w) {
            fraction /= sum;
        }
        const PhaseState phase = isotherm.phase(point.P, w, Root::stable);
        const bool denser = phase.v / phase.b < feed.v / feed.b;
        if (trial.distance < -1e-9 && denser == (beta == 1.0)) {
            return lnK;
        }
    }
    return {};
}

std::optional<QualityLine::Point> findPoint(const ActiveMixture& mixture, Variable given, double value,
                                            double beta, SolutionType wanted) {
    const QualityLine line{mixture.model(), mixture.z(), beta};
    if (wanted != SolutionType::retrograde) {
        // Most questions end here: the direct solution is the normal one.
        std::optional<QualityLine::Point> direct = line.estimateAndSolve(given, value);
        for (int i = 0; i < 5 && direct && direct->normal; ++i) {
            const std::vector<double> lnK = moreStableIncipientPhase(mixture, *direct, beta);
            if (lnK.empty()) {
                return direct;
            }
            direct = line.solveFrom(lnK, direct->T, direct->P, given);
        }
    }
    std::vector<QualityLine::Point> points = line.follow(given, value);
    std::erase_if(points, [wanted](const QualityLine::Point& point) { return !isWanted(point, wanted); });
    const auto normal = std::ranges::find_if(points, &QualityLine::Point::normal);
    return normal != points.end() ? std::optional{*normal}
           : points.empty()       ? std::nullopt
                                  : std::optional{points.front()};
}

Equilibrium pureSaturation(const ActiveMixture& mixture, Variable given, double value, double beta,
                           SolutionType wanted) {
    if (wanted == SolutionType::retrograde) {
        throw NotAvailable{
            "A pure compound has no retrograde vapor-liquid equilibrium; ask for the normal solution"};
    }
    const Saturation at = given == Variable::temperature ? saturationAtTemperature(mixture.model(), value)
                                                         : saturationAtPressure(mixture.model(), value);
    constexpr double one[] = {1.0};
    return mixture.twoPhases(at.T, at.P, beta, one, one);
}

Equilibrium flashFraction(const PengRobinson& full, Variable given, double value, double beta,
                          std::span<const double> amounts, SolutionType wanted) {
    const bool byTemperature = given == Variable::temperature;
    if (!(value > 0.0) || !std::isfinite(value)) {
        throw OutOfRange{byTemperature ? "The temperature must be a positive number of kelvin"
                                       : "The pressure must be a positive number of pascal",
                         value, 0.0, std::numeric_limits<double>::infinity()};
    }
    if (!(beta >= 0.0 && beta <= 1.0)) {
        throw OutOfRange{"A vapor fraction must lie between 0 and 1", beta, 0.0, 1.0};
    }
    const ActiveMixture mixture{full, amounts};
    if (mixture.isPure()) {
        return pureSaturation(mixture, given, value, beta, wanted);
    }
    const std::optional<QualityLine::Point> point = findPoint(mixture, given, value, beta, wanted);
    if (!point) {
        throw NoConvergence{std::string{"No "} + (wanted == SolutionType::retrograde ? "retrograde " : "") +
                            "state with a vapor fraction of " + numberText(beta) + " was found at " +
                            numberText(value) + (byTemperature ? " K" : " Pa") +
                            "; the mixture may be above its critical point"};
    }
    const double T = byTemperature ? value : point->T;
    const double P = byTemperature ? point->P : value;
    return mixture.twoPhases(T, P, beta, point->x, point->y);
}

} // namespace

Equilibrium flashTVaporFraction(const PengRobinson& model, double T, double vaporFraction,
                                std::span<const double> z, SolutionType wanted) {
    return flashFraction(model, Variable::temperature, T, vaporFraction, z, wanted);
}

Equilibrium flashPVaporFraction(const PengRobinson& model, double P, double vaporFraction,
                                std::span<const double> z, SolutionType wanted) {
    return flashFraction(model, Variable::pressure, P, vaporFraction, z, wanted);
}

} // namespace peng_robinson::eos
