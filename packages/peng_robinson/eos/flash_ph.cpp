#include "packages/peng_robinson/eos/flash_ph.h"

#include "packages/peng_robinson/eos/bracketing.h"
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/text.h"
#include "packages/peng_robinson/eos/tp_flash.h"

#include <cmath>

namespace peng_robinson::eos {
namespace {

constexpr double lowestTemperature = 5.0, highestTemperature = 5000.0;

// The pressure where the mixture boils over less than a rounding error of temperature (a pure compound, an
// azeotrope): there the enthalpy fixes the vapour fraction instead.
std::optional<Equilibrium> flashByFraction(const Fluid& fluid, double P, double enthalpy,
                                           std::span<const double> z, double tolerance) {
    const auto at = [&](double fraction) { return flashPVaporFraction(fluid.model(), P, fraction, z); };
    const auto excess = [&](double fraction) { return enthalpyOf(fluid, at(fraction)) - enthalpy; };
    try {
        const double bubble = excess(0.0), dew = excess(1.0);
        if (bubble > 0.0 || dew < 0.0) {
            return std::nullopt;
        }
        return at(solveRising(excess, 0.0, bubble, 1.0, dew, tolerance));
    } catch (const NoConvergence&) {
        return std::nullopt; // above the critical point of the mixture nothing boils
    } catch (const OutOfRange&) {
        return std::nullopt; // the same for a pure compound
    }
}

std::size_t numberOfCompounds(std::span<const double> x) {
    std::size_t count = 0;
    for (const double fraction : x) {
        count += fraction > 0.0 ? 1 : 0;
    }
    return count;
}

} // namespace

double enthalpyOf(const Fluid& fluid, const Equilibrium& e) {
    double h = 0.0;
    if (e.vapor && e.vapor->fraction > 0.0) {
        h += e.vapor->fraction * fluid.properties(e.T, e.P, e.vapor->x, Root::vapor).enthalpy;
    }
    if (e.liquid && e.liquid->fraction > 0.0) {
        h += e.liquid->fraction * fluid.properties(e.T, e.P, e.liquid->x, Root::liquid).enthalpy;
    }
    return h;
}

Equilibrium flashPH(const Fluid& fluid, double P, double enthalpy, std::span<const double> amounts,
                    PhasesAllowed allowed) {
    if (!std::isfinite(enthalpy)) {
        throw InvalidInput{"The enthalpy must be a finite number"};
    }
    const std::vector<double> z = normalisedComposition(amounts, fluid.size());
    const double tolerance = 1e-13 * (1.0 + std::abs(enthalpy));
    const double acceptable = 1e-8 * (1.0 + std::abs(enthalpy));
    if (allowed == PhasesAllowed::both && numberOfCompounds(z) == 1) {
        if (std::optional<Equilibrium> boiling = flashByFraction(fluid, P, enthalpy, z, tolerance)) {
            return *boiling;
        }
    }
    TPFlash flash{fluid.model()};
    Equilibrium result;
    const auto excess = [&](double T) {
        flash.calculate(T, P, z, allowed, result);
        return enthalpyOf(fluid, result) - enthalpy;
    };
    // From room temperature outwards, so that the search stays where the equation is at home.
    double low = referenceTemperature, high = referenceTemperature;
    double fLow = excess(low), fHigh = fLow;
    while (fLow > 0.0 && low > lowestTemperature) {
        high = low;
        fHigh = fLow;
        low = std::max(lowestTemperature, 0.7 * low);
        fLow = excess(low);
    }
    while (fHigh < 0.0 && high < highestTemperature) {
        low = high;
        fLow = fHigh;
        high = std::min(highestTemperature, 1.4 * high);
        fHigh = excess(high);
    }
    if (fLow > 0.0 || fHigh < 0.0) {
        throw NoConvergence{"No temperature between " + numberText(lowestTemperature) + " K and " +
                            numberText(highestTemperature) + " K gives an enthalpy of " +
                            numberText(enthalpy) + " J/mol; check the enthalpy and its reference state"};
    }
    const double T = solveRising(excess, low, fLow, high, fHigh, tolerance);
    flash.calculate(T, P, z, allowed, result);
    if (allowed == PhasesAllowed::both && std::abs(enthalpyOf(fluid, result) - enthalpy) > acceptable) {
        if (std::optional<Equilibrium> boiling = flashByFraction(fluid, P, enthalpy, z, tolerance)) {
            result = *boiling;
        }
    }
    const double error = std::abs(enthalpyOf(fluid, result) - enthalpy);
    if (error > acceptable) {
        throw NoConvergence{"The flash at " + numberText(P) + " Pa and " + numberText(enthalpy) +
                            " J/mol ended with an enthalpy that is wrong by " + numberText(error) + " J/mol"};
    }
    return result;
}

} // namespace peng_robinson::eos
