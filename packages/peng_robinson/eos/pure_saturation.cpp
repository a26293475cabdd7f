#include "packages/peng_robinson/eos/pure_saturation.h"

#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/text.h"

#include <algorithm>
#include <cmath>

namespace peng_robinson::eos {
namespace {

constexpr double one[] = {1.0};

// Pa. The last coefficient of the cubic goes with the square of the pressure: at lower pressures it
// underflows and takes the volume of the liquid with it.
constexpr double smallestPressure = 1e-140;

// With eta = v/b, (b/RT) P = 1/(eta - 1) - tau/(eta^2 + 2 eta - 1), where tau = a/(b R T).
double reducedPressure(double eta, double tau) { return 1.0 / (eta - 1.0) - tau / (eta * (eta + 2.0) - 1.0); }
double spinodal(double eta, double tau) {
    const double d = eta * (eta + 2.0) - 1.0;
    return d * d - 2.0 * tau * (eta + 1.0) * (eta - 1.0) * (eta - 1.0);
}

// The volume between `stable` (where the pressure falls with volume) and `unstable` at which it stops
// falling.
double spinodalVolume(double stable, double unstable, double tau) {
    for (int i = 0; i < 200 && stable != unstable; ++i) {
        const double middle = 0.5 * (stable + unstable);
        if (middle == stable || middle == unstable) {
            break;
        }
        (spinodal(middle, tau) > 0.0 ? stable : unstable) = middle;
    }
    return stable;
}

double dv_dT(const PhaseState& phase) { return -phase.dP_dT / phase.dP_dv; }

} // namespace

double Saturation::liquidVolumeSlope() const { return dv_dT(liquid) + dP_dT() / liquid.dP_dv; }

double Saturation::heatOfVaporizationSlope() const {
    // Of the enthalpy along the line: Cp + (v - T (dv/dT)) dP/dT; what an ideal gas has is the same in both
    // phases.
    const auto slope = [this](const PhaseState& phase) {
        return phase.residualCp + (phase.v - T * dv_dT(phase)) * dP_dT();
    };
    return slope(vapor) - slope(liquid);
}

Saturation saturationAtTemperature(const PengRobinson& pure, double T) {
    const Isotherm isotherm = pure.at(T);
    const double Tc = pure.component(0).Tc;
    const PhaseState dilute = isotherm.phase(1.0, one, Root::vapor);
    const double tau = dilute.a / (dilute.b * isotherm.RT());
    const double critical = pengRobinsonCriticalVolumeRatio;
    if (T >= Tc || spinodal(critical, tau) >= 0.0) {
        throw OutOfRange{"A pure compound boils only below its critical temperature of " + numberText(Tc) +
                             " K",
                         T, 0.0, Tc};
    }
    const double unit = isotherm.RT() / dilute.b;
    const double low = std::max(0.0, unit * reducedPressure(spinodalVolume(1.0, critical, tau), tau));
    const double high = unit * reducedPressure(spinodalVolume(2.0 * tau + 4.0, critical, tau), tau);

    // ln phi(liquid) - ln phi(vapour) falls by Z(vapour) - Z(liquid) for each unit of ln P, nearly linearly.
    const auto lnPhiDifference = [](const PhaseState& liquid, const PhaseState& vapor) {
        return liquid.lnPhi[0] - vapor.lnPhi[0];
    };
    if (!(low > 0.0) && lnPhiDifference(isotherm.phase(smallestPressure, one, Root::liquid),
                                        isotherm.phase(smallestPressure, one, Root::vapor)) < 0.0) {
        throw NotAvailable{"The vapor pressure at " + numberText(T) + " K is too small to be calculated"};
    }
    double lower = std::log(std::max(low, smallestPressure));
    double upper = std::log(high);
    double lnP = low > 0.0 ? 0.5 * (lower + upper) : upper - 1.0;
    for (int i = 0; i < 200; ++i) {
        const double P = std::exp(lnP);
        const PhaseState liquid = isotherm.phase(P, one, Root::liquid);
        const PhaseState vapor = isotherm.phase(P, one, Root::vapor);
        const double difference = lnPhiDifference(liquid, vapor);
        (difference > 0.0 ? lower : upper) = lnP;
        const double next = lnP + difference / (vapor.Z - liquid.Z);
        if (std::abs(next - lnP) <= 4e-16 * std::abs(lnP)) {
            break;
        }
        lnP = next > lower && next < upper ? next : 0.5 * (lower + upper);
    }
    const double P = std::exp(lnP);
    return {T, P, isotherm.phase(P, one, Root::vapor, {.thermal = true}),
            isotherm.phase(P, one, Root::liquid, {.thermal = true})};
}

Saturation saturationAtPressure(const PengRobinson& pure, double P) {
    const auto& [Tc, Pc, w] = pure.component(0);
    if (!(P > 0.0) || P >= Pc) {
        throw OutOfRange{"A pure compound boils only below its critical pressure of " + numberText(Pc) +
                             " Pa",
                         P, 0.0, Pc};
    }
    if (P < smallestPressure) {
        throw NotAvailable{"The boiling temperature at " + numberText(P) + " Pa cannot be calculated"};
    }
    // Wilson's estimate, then Newton's method in 1/T, in which ln P is almost straight.
    double T = std::min(Tc * 0.9999, Tc / (1.0 - std::log(P / Pc) / (5.373 * (1.0 + w))));
    double lower = 0.0, upper = Tc;
    for (int i = 0; i < 100; ++i) {
        const Saturation at = saturationAtTemperature(pure, T);
        const double difference = std::log(at.P / P);
        (difference < 0.0 ? lower : upper) = T;
        const double slope =
            at.heatOfVaporization() / (at.P * (at.vapor.v - at.liquid.v)); // -d ln P / d(1/T) / T
        const double next = T / (1.0 + difference / slope);
        if (std::abs(next - T) <= 2e-16 * T) {
            break;
        }
        T = next > lower && next < upper ? next : 0.5 * (lower + upper);
    }
    return saturationAtTemperature(pure, T);
}

} // namespace peng_robinson::eos
