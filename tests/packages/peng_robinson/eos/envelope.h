// The border of the two-phase region of a mixture, traced from its dew point at a low pressure over the
// cricondentherm and the critical point to its bubble points: Michelsen, Fluid Phase Equilib. 4 (1980) 1. It
// shares the equation of state with the flashes, but nothing of how they search. SI units.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <optional>
#include <vector>

namespace peng_robinson::eos::test {

struct EnvelopePoint {
    double T, P;
    bool isDew;                  ///< a drop forms; else a bubble
    std::vector<double> forming; ///< composition of the phase that forms
    // Direction of the border in its order from the dew points to the bubble points.
    double dlnT, dlnP;
    double spread; ///< largest modulus of ln K: how far from the critical point

    // The two-phase region lies to the left of this direction. Normal: more vapour at a higher temperature,
    // or at a lower pressure.
    bool isNormalAtPressure() const { return isDew == (dlnP > 0.0); }
    bool isNormalAtTemperature() const { return isDew == (dlnT > 0.0); }
};

/// All points met, from the dew point at `lowest` pressure to the bubble point at `lowest` pressure or the
/// temperature `coldest`, whichever comes first. All of z is positive and sums to one.
std::vector<EnvelopePoint> traceEnvelope(const PengRobinson& model, const std::vector<double>& z,
                                         double lowest, double coldest);

} // namespace peng_robinson::eos::test
