#include "packages/peng_robinson/eos/quality_scan.h"

#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/tp_flash.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

class QualityScan {
  public:
    QualityScan(const PengRobinson& model, std::span<const double> z, QualityLine::Variable given,
                double value, double beta)
        : flash_{model}, z_{z},
          isByTemperature_{given == QualityLine::Variable::temperature}, value_{value}, beta_{beta} {}

    std::vector<QualityStart> starts(double low, double high);

  private:
    struct State {
        double where = 0.0; ///< ln T or ln P, whichever is not given
        bool isTwoPhases = false;
        double vapor = 0.0;
        std::vector<double> lnK; ///< of two phases
    };
    State at(double where);
    void narrow(State a, State b, std::vector<QualityStart>& found);
    /// Is the fraction between those of two states with two phases?
    bool isBetween(const State& a, const State& b) const {
        return (a.vapor - beta_) * (b.vapor - beta_) <= 0.0;
    }

    TPFlash flash_;
    Equilibrium phases_;
    std::span<const double> z_;
    bool isByTemperature_;
    double value_, beta_;
};

QualityScan::State QualityScan::at(double where) {
    State state;
    state.where = where;
    const double other = std::exp(where);
    try {
        flash_.calculate(isByTemperature_ ? value_ : other, isByTemperature_ ? other : value_, z_,
                         PhasesAllowed::both, phases_);
    } catch (const NoConvergence&) {
        return state; // two liquids, far below every melting point
    }
    if (phases_.vapor && phases_.liquid) {
        state.isTwoPhases = true;
        state.vapor = phases_.vapor->fraction;
        for (std::size_t i = 0; i < z_.size(); ++i) {
            state.lnK.push_back(std::log(std::max(phases_.vapor->x[i], 1e-290)) -
                                std::log(std::max(phases_.liquid->x[i], 1e-290)));
        }
    }
    return state;
}

// At the border of the two phases the fraction is that of a bubble or a dew point, but for rounding.
void QualityScan::narrow(State a, State b, std::vector<QualityStart>& found) {
    constexpr double atTheBorder = 1e-3;
    if (!a.isTwoPhases) {
        std::swap(a, b);
    }
    if (!a.isTwoPhases) {
        return;
    }
    for (int i = 0; i < 40; ++i) {
        const bool isInside = b.isTwoPhases && !isBetween(a, b);
        if (isInside || std::abs(a.where - b.where) < 1e-9) {
            break;
        }
        State middle = at(0.5 * (a.where + b.where));
        const bool isBeyond = middle.isTwoPhases ? isBetween(a, middle) : true;
        (isBeyond ? b : a) = std::move(middle);
    }
    const State& nearest = b.isTwoPhases && std::abs(b.vapor - beta_) < std::abs(a.vapor - beta_) ? b : a;
    if (std::abs(nearest.vapor - beta_) > atTheBorder) {
        return;
    }
    const double other = std::exp(nearest.where);
    found.push_back({nearest.lnK, isByTemperature_ ? value_ : other, isByTemperature_ ? other : value_});
}

std::vector<QualityStart> QualityScan::starts(double low, double high) {
    constexpr int steps = 60;
    std::vector<QualityStart> found;
    State before = at(low);
    for (int i = 1; i <= steps; ++i) {
        State here = at(low + (high - low) * i / steps);
        const bool isCrossed = before.isTwoPhases && here.isTwoPhases
                                   ? isBetween(before, here)
                                   : before.isTwoPhases != here.isTwoPhases;
        if (isCrossed) {
            narrow(before, here, found);
        }
        before = std::move(here);
    }
    return found;
}

} // namespace

std::vector<QualityStart> scanForQuality(const PengRobinson& model, std::span<const double> z,
                                         QualityLine::Variable given, double value, double beta) {
    QualityScan scan{model, z, given, value, beta};
    if (given == QualityLine::Variable::temperature) {
        return scan.starts(std::log(10.0), std::log(1e8));
    }
    double lowest = model.component(0).Tc, highest = lowest;
    for (std::size_t i = 1; i < model.size(); ++i) {
        lowest = std::min(lowest, model.component(i).Tc);
        highest = std::max(highest, model.component(i).Tc);
    }
    return scan.starts(std::log(0.4 * lowest), std::log(1.1 * highest));
}

} // namespace peng_robinson::eos
