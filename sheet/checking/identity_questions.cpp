#include "sheet/checking/questions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace sheet::checking {

namespace {

// J/(mol K). Packages may use a rounded one; the tolerance of what depends on it allows for that.
constexpr double R = 8.31446261815324;

constexpr Question identities{"properties that follow from each other", 1e-4};
constexpr Question integrals{"heat capacities and volumes as slopes", 1e-4};

struct Inputs {
    double T;
    double P;
    double a;
    double b;
};

// Rows of the same text stand together, and one of them must hold: a package may count its Gibbs energy from
// either reference. A first property that follows from two others (the second may repeat the first of them),
// and what sizes its deviation: a difference of large numbers is no better than they are.
struct Identity {
    const char* text;
    const char* property;
    const char* from;
    const char* and_;
    double (*expected)(const Inputs&);
    double (*size)(const Inputs&);
};

// clang-format off
constexpr Identity identityTable[] = {
    {"gibbsEnergy = enthalpy - T entropy", "gibbsEnergy", "enthalpy", "entropy",
     [](const Inputs& in) { return in.a - in.T * in.b; }, [](const Inputs& in) { return std::abs(in.a) + std::abs(in.T * in.b); }},
    {"gibbsEnergy = enthalpy - T entropy", "gibbsEnergy", "enthalpyF", "entropyF",
     [](const Inputs& in) { return in.a - in.T * in.b; }, [](const Inputs& in) { return std::abs(in.a) + std::abs(in.T * in.b); }},
    {"internalEnergy = enthalpy - P volume", "internalEnergy", "enthalpy", "volume",
     [](const Inputs& in) { return in.a - in.P * in.b; }, [](const Inputs& in) { return std::abs(in.a) + std::abs(in.P * in.b); }},
    {"helmholtzEnergy = internalEnergy - T entropy", "helmholtzEnergy", "internalEnergy", "entropy",
     [](const Inputs& in) { return in.a - in.T * in.b; }, [](const Inputs& in) { return std::abs(in.a) + std::abs(in.T * in.b); }},
    {"density = 1 / volume", "density", "volume", "volume",
     [](const Inputs& in) { return 1.0 / in.a; }, [](const Inputs& in) { return std::abs(1.0 / in.a); }},
    {"compressibilityFactor = P volume / R T", "compressibilityFactor", "volume", "volume",
     [](const Inputs& in) { return in.P * in.a / (R * in.T); }, [](const Inputs& in) { return std::abs(in.P * in.a / (R * in.T)); }},
    {"logFugacityCoefficient = ln fugacityCoefficient", "logFugacityCoefficient", "fugacityCoefficient", "fugacityCoefficient",
     [](const Inputs& in) { return std::log(in.a); }, [](const Inputs& in) { return std::max(std::abs(std::log(in.a)), 1.0); }},
    {"logFugacity = ln fugacity", "logFugacity", "fugacity", "fugacity",
     [](const Inputs& in) { return std::log(in.a); }, [](const Inputs& in) { return std::max(std::abs(std::log(in.a)), 1.0); }},
};

// The change of the first property over a step of temperature (at constant pressure) or of pressure (at
// constant temperature) is the integral of the slope.
struct Integral {
    const char* text;
    const char* property;
    const char* slope;
    bool byPressure;
    double (*factor)(double T);
};
constexpr Integral integralTable[] = {
    {"enthalpy and heatCapacityCp", "enthalpy", "heatCapacityCp", false, [](double) { return 1.0; }},
    {"enthalpyF and heatCapacityCp", "enthalpyF", "heatCapacityCp", false, [](double) { return 1.0; }},
    {"entropy and heatCapacityCp / T", "entropy", "heatCapacityCp", false, [](double T) { return 1.0 / T; }},
    {"entropyF and heatCapacityCp / T", "entropyF", "heatCapacityCp", false, [](double T) { return 1.0 / T; }},
    {"gibbsEnergy and volume", "gibbsEnergy", "volume", true, [](double) { return 1.0; }},
};
// clang-format on

// Gauss and Legendre's five points on [-1, 1]
// (Abramowitz and Stegun, Handbook of Mathematical Functions, table 25.4).
constexpr std::array<double, 5> points{-0.906179845938664, -0.538469310105683, 0.0, 0.538469310105683,
                                       0.906179845938664};
constexpr std::array<double, 5> weights{0.236926885056189, 0.478628670499366, 0.568888888888889,
                                        0.478628670499366, 0.236926885056189};
// Half the step, of the temperature or pressure.
constexpr double halfStep = 0.005;

bool areListed(const Package& package, std::initializer_list<const char*> names) {
    return std::ranges::all_of(names,
                               [&](const char* name) { return package.offer().find(name) != nullptr; });
}

Answer listed(const Package& package, const char* name, const Place& place) {
    return package.property(package.offer().find(name)->name, place);
}

// Without the energies' pressure part the integral of an ideal liquid's volume would be lost in rounding.
double sizeOf(double integral, double values) { return std::abs(integral) + 1e-9 * std::abs(values); }

void askForFugacityOfCoefficient(const Package& package, const Spot& spot, Report& report) {
    if (!areListed(package, {"fugacity", "fugacityCoefficient"})) {
        return;
    }
    const Answer fugacity = listed(package, "fugacity", spot.place);
    const Answer phi = listed(package, "fugacityCoefficient", spot.place);
    const Composition& x = spot.place.compositions.front();
    if (fugacity.values.size() != x.size() || phi.values.size() != x.size()) {
        return; // askForListed() tells
    }
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double expected = x[i] * phi.values[i] * spot.place.pressure;
        if (expected > 0.0) {
            report.compare(identities, "fugacity = x fugacityCoefficient P",
                           package.compounds()[i] + ", " + spot.text,
                           std::abs(fugacity.values[i] - expected) / expected);
        }
    }
}

// The mean of ln f, weighted with the mole fractions, changes with the pressure by the integral of V / (R T).
// Packages solve for the volume; its rounding shows in ln f.
void askForFugacitiesAndVolume(const Package& package, const Spot& spot, Report& report) {
    constexpr const char* text = "fugacities and volume";
    constexpr double noise = 1e-4;
    if (!areListed(package, {"volume"})) {
        report.notOffered(integrals, text, "it lists no volume");
        return;
    }
    const double P = spot.place.pressure;
    const Composition& x = spot.place.compositions.front();
    std::string failure = "a value is missing within 0.5 % of the pressure";
    const auto at = [&](double step) {
        Place place = spot.place;
        place.pressure = P * (1.0 + halfStep * step);
        return place;
    };
    const auto mean = [&](double step) {
        const Place place = at(step);
        const Answer logs = logFugacities(package, place);
        failure = logs.failed() ? logs.failure : failure;
        double sum = std::log(place.pressure);
        for (std::size_t i = 0; i < x.size(); ++i) {
            sum += x[i] == 0.0 ? 0.0 : i < logs.values.size() ? x[i] * logs.values[i] : std::nan("");
        }
        return sum;
    };
    const double before = mean(-1.0);
    const double after = mean(1.0);
    double integral = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Answer volume = listed(package, "volume", at(points[i]));
        integral += volume.values.size() == 1 ? weights[i] * volume.values.front() : std::nan("");
    }
    integral *= P * halfStep / (R * spot.place.temperature);
    if (!std::isfinite(before + after + integral)) {
        report.notOffered(integrals, text, failure);
        return;
    }
    report.compare(integrals, text, spot.text,
                   std::abs(after - before - integral) /
                       (std::abs(integral) + noise * std::max(1.0, std::abs(before))));
}

// The deviation of each value; empty when there is nothing to compare. `missing` is the first input that is
// not listed.
std::vector<double> deviations(const Package& package, const Identity& identity, const Spot& spot,
                               const char*& missing) {
    for (const char* const name : {identity.property, identity.from, identity.and_}) {
        if (package.offer().find(name) == nullptr) {
            missing = missing == nullptr ? name : missing;
            return {};
        }
    }
    const int rank = package.offer().find(identity.property)->rank;
    const Answer found = listed(package, identity.property, spot.place);
    const Answer a = listed(package, identity.from, spot.place);
    const Answer b = listed(package, identity.and_, spot.place);
    std::vector<double> result;
    if (found.values.size() != a.values.size() || a.values.size() != b.values.size()) {
        return result; // one of them failed, as askForListed() tells
    }
    for (std::size_t i = 0; i < found.values.size(); ++i) {
        const Inputs in{spot.place.temperature, spot.place.pressure, a.values[i], b.values[i]};
        const bool mayBeInfinite = !std::isfinite(found.values[i]) && spot.place.isOfAbsent(i, rank);
        const double deviation = std::abs(found.values[i] - identity.expected(in)) / identity.size(in);
        result.push_back(mayBeInfinite           ? 0.0
                         : std::isnan(deviation) ? std::numeric_limits<double>::infinity()
                                                 : deviation);
    }
    return result;
}

} // namespace

void askForIdentities(const Package& package, const Spot& spot, Report& report) {
    for (auto first = std::begin(identityTable); first != std::end(identityTable);) {
        const auto end = std::find_if(first, std::end(identityTable), [&](const Identity& other) {
            return std::string_view{other.text} != first->text;
        });
        const char* missing = nullptr;
        double best = std::numeric_limits<double>::infinity();
        bool isAsked = false;
        for (auto identity = first; identity != end; ++identity) {
            const std::vector<double> found = deviations(package, *identity, spot, missing);
            if (!found.empty()) {
                isAsked = true;
                best = std::min(best, std::ranges::max(found));
            }
        }
        if (isAsked) {
            report.compare(identities, first->text, spot.text, best);
        } else if (missing != nullptr) {
            report.notOffered(identities, first->text, std::string{"it lists no "} + missing);
        }
        first = end;
    }
    askForFugacityOfCoefficient(package, spot, report);
}

void askForIntegrals(const Package& package, const Spot& spot, Report& report) {
    for (const Integral& entry : integralTable) {
        if (!areListed(package, {entry.property, entry.slope})) {
            const bool lacksProperty = package.offer().find(entry.property) == nullptr;
            if (!(lacksProperty && std::string_view{entry.property}.ends_with('F'))) { // the other one tells
                report.notOffered(integrals, entry.text,
                                  std::string{"it lists no "} +
                                      (lacksProperty ? entry.property : entry.slope));
            }
            continue;
        }
        const double middle = entry.byPressure ? spot.place.pressure : spot.place.temperature;
        const auto at = [&](const char* name, double step) {
            Place place = spot.place;
            (entry.byPressure ? place.pressure : place.temperature) = middle * (1.0 + halfStep * step);
            const Answer answer = listed(package, name, place);
            return answer.values.size() == 1 ? answer.values.front() : std::nan("");
        };
        const double before = at(entry.property, -1.0);
        const double after = at(entry.property, 1.0);
        double integral = 0.0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            integral += weights[i] * at(entry.slope, points[i]) *
                        entry.factor(middle * (1.0 + halfStep * points[i])) * middle * halfStep;
        }
        if (!std::isfinite(before + after + integral)) {
            report.notOffered(integrals, entry.text,
                              entry.byPressure ? "a value is missing within 0.5 % of the pressure"
                                               : "a value is missing within 0.5 % of the temperature");
        } else {
            report.compare(integrals, entry.text, spot.text,
                           std::abs(after - before - integral) /
                               sizeOf(integral, std::abs(before) + std::abs(after)));
        }
    }
    askForFugacitiesAndVolume(package, spot, report);
}

} // namespace sheet::checking
