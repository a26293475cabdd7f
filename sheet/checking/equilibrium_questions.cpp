#include "sheet/checking/questions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace sheet::checking {

namespace {

constexpr Question balance{"phases add up to the mixture", 1e-6};
constexpr Question conditions{"phases have the conditions asked for", 1e-6};
constexpr Question fugacities{"fugacities agree across phases", 1e-5};
constexpr Question kValues{"K-values fit the compositions", 1e-5};

// Of less the convergence of a flash says nothing.
constexpr double leastFraction = 1e-10;

double relative(double found, double expected) {
    return std::abs(found - expected) / std::max(std::abs(expected), std::numeric_limits<double>::min());
}

// ln of the fugacities over the pressure: ln(x phi).
Answer logFugacities(const Package& package, const Place& place) {
    constexpr std::array<std::string_view, 4> names{"fugacity", "logFugacity", "logFugacityCoefficient",
                                                    "fugacityCoefficient"};
    const Composition& x = place.compositions.front();
    Answer last{{}, "it lists neither fugacities nor fugacity coefficients"};
    for (const std::string_view name : names) {
        const ListedProperty* const listed = package.offer().find(name);
        if (listed == nullptr) {
            continue;
        }
        last = package.property(listed->name, place);
        if (last.failed()) {
            continue;
        }
        if (last.values.size() != x.size()) {
            return {{}, "there is not one fugacity for each compound"};
        }
        const bool ofCompounds = name.ends_with("Coefficient");
        const bool isLog = name.starts_with("log");
        for (std::size_t i = 0; i < x.size(); ++i) {
            const double value = isLog ? last.values[i] : std::log(last.values[i]);
            last.values[i] = value + (ofCompounds ? std::log(x[i]) : -std::log(place.pressure));
        }
        return last;
    }
    return last;
}

} // namespace

void askForBalance(const State& state, const Equilibrium& found, const std::string& where, Report& report) {
    if (found.phases.empty()) {
        report.fail(balance, "phases", where, "there is no phase");
        return;
    }
    double fractions = 0.0;
    Composition mixed(state.overall.size(), 0.0);
    for (const PhaseOfEquilibrium& phase : found.phases) {
        const Composition& x = phase.composition;
        fractions += phase.fraction;
        report.compare(balance, "sum of a phase's fractions", phase.phase + ", " + where,
                       std::abs(std::accumulate(x.begin(), x.end(), 0.0) - 1.0));
        for (std::size_t i = 0; i < x.size(); ++i) {
            mixed[i] += phase.fraction * x[i];
        }
        for (const Condition& asked : {state.one, state.other}) {
            const std::string_view name{asked.name};
            if (name == "temperature" || name == "pressure") {
                const double shown = name == "pressure" ? phase.pressure : phase.temperature;
                report.compare(conditions, asked.name, phase.phase + ", " + where,
                               relative(shown, asked.value));
            }
        }
    }
    report.compare(balance, "sum of phase fractions", where, std::abs(fractions - 1.0));
    for (std::size_t i = 0; i < mixed.size(); ++i) {
        report.compare(balance, "compositions", where, std::abs(mixed[i] - state.overall[i]));
    }
}

void askForFugacities(const Package& package, const std::vector<Spot>& spots, Report& report) {
    std::vector<Answer> answers;
    for (const Spot& spot : spots) {
        answers.push_back(logFugacities(package, spot.place));
        if (answers.back().failed()) {
            report.notOffered(fugacities, "phases", answers.back().failure);
            return;
        }
    }
    for (std::size_t other = 1; other < spots.size(); ++other) {
        for (std::size_t i = 0; i < package.compounds().size(); ++i) {
            const double least =
                std::min(spots[0].place.compositions[0][i], spots[other].place.compositions[0][i]);
            if (least > leastFraction) {
                report.compare(fugacities, spots[0].place.phases[0] + " and " + spots[other].place.phases[0],
                               package.compounds()[i] + ", " + spots[other].text,
                               std::abs(answers[0].values[i] - answers[other].values[i]));
            }
        }
    }
}

void askForKValues(const Package& package, const Spot& twoPhases, Report& report) {
    constexpr std::array<std::string_view, 2> names{"kvalue", "kvalues"};
    const ListedProperty* const listed = package.offer().find(names);
    const std::string subject = twoPhases.place.phases[0] + " and " + twoPhases.place.phases[1];
    Answer found{{}, "it lists no K-values"};
    if (listed != nullptr) {
        found = package.offers(listed->name, twoPhases.place.phases)
                    ? package.property(listed->name, twoPhases.place)
                    : Answer{{}, "not for these phases"};
    }
    if (found.failed()) {
        report.notOffered(kValues, subject, found.failure);
        return;
    }
    for (std::size_t i = 0; i < package.compounds().size() && i < found.values.size(); ++i) {
        const double y = twoPhases.place.compositions[0][i];
        const double x = twoPhases.place.compositions[1][i];
        if (std::min(x, y) > leastFraction) {
            report.compare(kValues, subject, package.compounds()[i] + ", " + twoPhases.text,
                           relative(found.values[i], y / x));
        }
    }
}

} // namespace sheet::checking
