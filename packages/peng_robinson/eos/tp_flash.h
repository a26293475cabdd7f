// Flashes of one model at given temperature and pressure, see flash.h. What they need of memory is kept: a
// flash takes none when some with the same compounds, and with as many phases in the same result, came
// before.
#pragma once

#include "packages/peng_robinson/eos/active.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/phase_split.h"
#include "packages/peng_robinson/eos/stability.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

class TPFlash {
  public:
    /// The model outlives its flashes.
    explicit TPFlash(const PengRobinson& model);

    /// Throws as flashTP().
    void calculate(double T, double P, std::span<const double> z, PhasesAllowed allowed, Equilibrium& result);

  private:
    void findBestSplit();
    void searchFromFeed(std::size_t first, bool isEnoughToSplit);
    bool findBetterSplit(bool vaporOnly);
    bool takeSplit(std::span<const double> formed, std::span<const double> partner);
    bool isLiquid() const;

    ActiveMixture mixture_;
    Isotherm isotherm_;
    double P_ = 0.0;
    PhaseState feed_;
    TangentPlane plane_;
    PhaseSplitter splitter_;
    PhaseSplit best_, better_, candidate_;
    bool isSplit_ = false; ///< there is a best_
    double feedDistance_ = 0.0,
           splitDistance_ = 0.0; ///< how far phases lie below the planes of feed and split
    std::vector<double> lnK_;
};

} // namespace peng_robinson::eos
