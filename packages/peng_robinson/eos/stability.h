// Is a mixture at T and P one phase? Michelsen's tangent-plane test (Fluid Phase Equilib. 9 (1982) 1): a
// phase is stable when no other composition W has a lower Gibbs energy than the tangent plane of the feed.
// All mole fractions of the feed are positive.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <span>
#include <vector>

namespace peng_robinson::eos {

/// A stationary point of the tangent-plane distance that lies below the plane: a phase that would form.
struct TrialPhase {
    std::vector<double> amounts; ///< W, whose sum exceeds one
    double distance;             ///< modified tangent-plane distance, negative
};

/// Wilson's estimate of ln K (GPA RP-47, 1968).
std::vector<double> wilsonLnK(const PengRobinson& model, double T, double P);

/// The phases that the feed would split off, most unstable first; none means that the feed is stable. Trials
/// start from vapour-like, liquid-like and almost pure compositions.
std::vector<TrialPhase> unstableTrials(const Isotherm& isotherm, double P, std::span<const double> z,
                                       const PhaseState& feed);

} // namespace peng_robinson::eos
