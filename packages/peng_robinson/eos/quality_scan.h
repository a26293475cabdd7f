// Where a mixture has a given vapour fraction, from flashes at temperature and pressure alone: slow, but sure
// to find what lies between two of its states. For mixtures whose quality line does not begin at a low
// pressure, such as those with hydrogen. All mole fractions of z are positive, and there are at least two.
#pragma once

#include "packages/peng_robinson/eos/quality_line.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

/// Starts for QualityLine::solveFrom().
struct QualityStart {
    std::vector<double> lnK;
    double T, P;
};

std::vector<QualityStart> scanForQuality(const PengRobinson& model, std::span<const double> z,
                                         QualityLine::Variable given, double value, double beta);

} // namespace peng_robinson::eos
