#include "packages/peng_robinson/eos/active.h"
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/phase_split.h"
#include "packages/peng_robinson/eos/pure_saturation.h"
#include "packages/peng_robinson/eos/quality_line.h"
#include "packages/peng_robinson/eos/quality_scan.h"
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

// The fugacity equations hold as well for the two phases the other way round, for two liquids, for a volume
// that is not the stable one, and for phases of which one would rather split. None of these is a state of
// vapour and liquid.
class Judge {
  public:
    Judge(const ActiveMixture& mixture, const QualityLine& line, Variable given, double beta)
        : mixture_{mixture}, line_{line}, given_{given}, beta_{beta} {}

    /// The point, when it is a stable state; the state with another incipient phase that comes before it,
    /// when there is one; else nothing.
    std::optional<QualityLine::Point> stablePoint(std::optional<QualityLine::Point> point) const;

  private:
    bool isVaporOverLiquid(const QualityLine::Point& point) const;
    bool isLowest(const QualityLine::Point& point) const;
    /// K-values of a phase that the mixture would rather form than the incipient one, as a start for
    /// solving; none for a stable mixture.
    struct Rival {
        bool exists = false;
        std::vector<double> lnK; ///< empty: it cannot be the incipient phase
    };
    Rival rivalOf(const QualityLine::Point& point) const;

    const ActiveMixture& mixture_;
    const QualityLine& line_;
    Variable given_;
    double beta_;
};

bool Judge::isVaporOverLiquid(const QualityLine::Point& point) const {
    const Isotherm isotherm = mixture_.model().at(point.T);
    const auto lost = [&](std::span<const double> x, const PhaseState& phase) {
        return phase.residualGibbs - isotherm.phase(point.P, x, Root::stable).residualGibbs;
    };
    const PhaseState liquid = isotherm.phase(point.P, point.x, Root::liquid);
    const PhaseState vapor = isotherm.phase(point.P, point.y, Root::vapor);
    const double rounding = 1e-10 * isotherm.RT();
    return vapor.v / vapor.b > liquid.v / liquid.b && !isClearlyLiquid(vapor, isotherm.RT()) &&
           lost(point.x, liquid) <= rounding && lost(point.y, vapor) <= rounding;
}

// Between bubble and dew point: does a flash at its temperature and pressure find no state of lower Gibbs
// energy? Where it reports one phase although this point is lower, two liquids that do not boil are lower
// still.
bool Judge::isLowest(const QualityLine::Point& point) const {
    const Isotherm isotherm = mixture_.model().at(point.T);
    const auto gibbs = [&](std::span<const double> x) {
        const PhaseState phase = isotherm.phase(point.P, x, Root::stable);
        double sum = 0.0;
        for (std::size_t i = 0; i < x.size(); ++i) {
            sum += x[i] > 0.0 ? x[i] * (std::log(x[i]) + phase.lnPhi[i]) : 0.0;
        }
        return sum;
    };
    Equilibrium lowest;
    try {
        lowest = flashTP(mixture_.model(), point.T, point.P, mixture_.z());
    } catch (const NoConvergence&) {
        return true; // it finds less than what is known already
    }
    double difference = beta_ * gibbs(point.y) + (1.0 - beta_) * gibbs(point.x);
    for (const std::optional<PhaseAmount>& phase : {lowest.vapor, lowest.liquid}) {
        difference -= phase ? phase->fraction * gibbs(phase->x) : 0.0;
    }
    const bool isSplit = lowest.vapor && lowest.liquid;
    return difference < 1e-10 && (isSplit || difference > -1e-8);
}

// At a dew point another liquid may have dropped out before (water from a gas that also holds heavy
// hydrocarbons): then the vapour is unstable, and the K-values of the phase that it would rather form are a
// better start. Likewise a bubble point, where a second liquid does not count.
Judge::Rival Judge::rivalOf(const QualityLine::Point& point) const {
    const Isotherm isotherm = mixture_.model().at(point.T);
    const std::vector<double>& z = mixture_.z();
    const bool isDew = beta_ == 1.0;
    const PhaseState feed = isotherm.phase(point.P, z, isDew ? Root::vapor : Root::liquid);
    Rival rival;
    for (const TrialPhase& trial : unstableTrials(isotherm, point.P, z, feed)) {
        const PhaseState phase =
            isotherm.phase(point.P, normalisedComposition(trial.amounts, z.size()), Root::stable);
        const bool isSecondLiquid =
            !isDew && isClearlyLiquid(feed, isotherm.RT()) && isClearlyLiquid(phase, isotherm.RT());
        if (trial.distance > -1e-9 || isSecondLiquid) {
            continue;
        }
        rival.exists = true;
        const bool isDenser = phase.v / phase.b < feed.v / feed.b;
        if (isDenser == isDew) {
            for (std::size_t i = 0; i < z.size(); ++i) {
                rival.lnK.push_back((isDew ? -1.0 : 1.0) * std::log(trial.amounts[i] / z[i]));
            }
            break;
        }
    }
    return rival;
}

std::optional<QualityLine::Point> Judge::stablePoint(std::optional<QualityLine::Point> point) const {
    for (int i = 0; i < 5 && point && isVaporOverLiquid(*point); ++i) {
        if (beta_ > 0.0 && beta_ < 1.0) {
            return isLowest(*point) ? point : std::nullopt;
        }
        const Rival rival = rivalOf(*point);
        if (!rival.exists) {
            return point;
        }
        if (rival.lnK.empty()) {
            break;
        }
        point = line_.solveFrom(rival.lnK, point->T, point->P, given_);
    }
    return std::nullopt;
}

std::optional<QualityLine::Point> findPoint(const ActiveMixture& mixture, Variable given, double value,
                                            double beta, SolutionType wanted) {
    const QualityLine line{mixture.model(), mixture.z(), beta};
    const Judge judge{mixture, line, given, beta};
    if (wanted != SolutionType::retrograde) {
        // Most questions end here: the direct solution is the normal one.
        std::optional<QualityLine::Point> direct = judge.stablePoint(line.estimateAndSolve(given, value));
        if (direct && direct->normal) {
            return direct;
        }
    }
    std::optional<QualityLine::Point> best;
    const auto consider = [&](std::optional<QualityLine::Point> met) {
        std::optional<QualityLine::Point> point = judge.stablePoint(std::move(met));
        if (!point || !isWanted(*point, wanted)) {
            return;
        }
        const bool isBetter = !best || (point->normal != best->normal    ? point->normal
                                        : given == Variable::temperature ? point->P < best->P
                                                                         : point->T > best->T);
        if (isBetter) {
            best = std::move(point);
        }
    };
    for (QualityLine::Point& met : line.follow(given, value)) {
        consider(std::move(met));
    }
    if (!best) {
        for (const auto& [lnK, T, P] : scanForQuality(mixture.model(), mixture.z(), given, value, beta)) {
            consider(line.solveFrom(lnK, T, P, given));
        }
    }
    return best;
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
