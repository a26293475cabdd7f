// Is a mixture at T and P one phase? Michelsen's tangent-plane test (Fluid Phase Equilib. 9 (1982) 1): a
// phase is stable when no other composition W has a lower Gibbs energy than the tangent plane of the feed.
// All mole fractions of the feed are positive.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <array>
#include <limits>
#include <span>
#include <vector>

namespace peng_robinson::eos {

/// The tangent plane of a feed, and the searches for phases below it. Its memory is used again from one feed
/// to the next.
class TangentPlane {
  public:
    /// The plane of the feed z in the state `feed`. The isotherm and z outlive the searches.
    void touch(const Isotherm& isotherm, double P, std::span<const double> z, const PhaseState& feed);
    /// The plane also touches this composition, as that of one phase touches the other at equilibrium: a
    /// search that comes near ends there. It outlives the searches.
    void touchesAlso(std::span<const double> y) { touched_[touchedCount_++] = y; }

    /// How many searches there are: from a vapour-like composition, a liquid-like one, and almost pure
    /// compounds in their order.
    std::size_t searches() const noexcept { return lnZ_.size() + 2; }
    /// The first two.
    static constexpr std::size_t mixedSearches = 2;

    /// Whether search number `start` ends below the plane. It looks for the lowest place, but no further than
    /// to `enough`.
    bool search(std::size_t start, double enough);
    static constexpr double neverEnough = -std::numeric_limits<double>::infinity();

    /// Where the last successful search ended: a phase that would form.
    std::span<const double> amounts() const noexcept { return at_.W; } ///< W, whose sum exceeds one
    double distance() const noexcept { return at_.distance; } ///< modified tangent-plane distance, negative

  private:
    struct Point {
        std::vector<double> lnW, W, gradient;
        PhaseState phase;
        double sum = 0.0, distance = 0.0, error = 0.0;
        bool hasDerivatives = false;
    };
    void setStart(std::size_t start);
    void evaluate(Point& point, bool derivatives);
    /// ln W of the next point from this one; false when there is no such step.
    bool setNewtonStep();
    bool isTrivial() const;
    bool nearsTouched() const;

    const Isotherm* isotherm_ = nullptr;
    double P_ = 0.0;
    std::vector<double> lnZ_, plane_;
    std::array<std::span<const double>, 2> touched_;
    std::size_t touchedCount_ = 0;
    Point at_, next_;
    std::vector<double> w_, roots_, matrix_, step_;
};

/// A phase below the plane.
struct TrialPhase {
    std::vector<double> amounts;
    double distance;
};

/// Wilson's estimate of ln K (GPA RP-47, 1968).
double wilsonLnK(const CriticalConstants& component, double T, double P);

/// The phases that the feed would split off, most unstable first; none means that the feed is stable. From
/// all starts.
std::vector<TrialPhase> unstableTrials(const Isotherm& isotherm, double P, std::span<const double> z,
                                       const PhaseState& feed);

} // namespace peng_robinson::eos
