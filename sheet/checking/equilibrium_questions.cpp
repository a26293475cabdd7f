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

// Of less the convergence of a flash says nothing, and of little it says less: flashes stop when mole
// fractions change by so much no more.
constexpr double leastFraction = 1e-10;
constexpr double trace = 1e-6;
double allowingForTraces(double deviation, double fraction) {
    return fraction < trace ? std::max(deviation - leastFraction / fraction, 0.0) : deviation;
}

double relative(double found, double expected) {
    return std::abs(found - expected) / std::max(std::abs(expected), std::numeric_limits<double>::min());
}

std::string numberInsteadOf(const Answer& answer, std::size_t expected) {
    return std::to_string(answer.values.size()) + " values instead of " + std::to_string(expected);
}

} // namespace

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
            return last;
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
    const std::size_t compounds = package.compounds().size();
    std::vector<Answer> answers;
    for (const Spot& spot : spots) {
        answers.push_back(logFugacities(package, spot.place));
        if (answers.back().failed()) {
            report.notOffered(fugacities, "phases", answers.back().failure);
            return;
        }
        if (answers.back().values.size() != compounds) {
            report.fail(fugacities, "phases", spot.text, numberInsteadOf(answers.back(), compounds));
            return;
        }
    }
    for (std::size_t other = 1; other < spots.size(); ++other) {
        for (std::size_t i = 0; i < compounds; ++i) {
            const double least =
                std::min(spots[0].place.compositions[0][i], spots[other].place.compositions[0][i]);
            if (least > leastFraction) {
                report.compare(
                    fugacities, spots[0].place.phases[0] + " and " + spots[other].place.phases[0],
                    package.compounds()[i] + ", " + spots[other].text,
                    allowingForTraces(std::abs(answers[0].values[i] - answers[other].values[i]), least));
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
    const std::size_t compounds = package.compounds().size();
    if (found.values.size() != compounds) {
        report.fail(kValues, subject, twoPhases.text, numberInsteadOf(found, compounds));
        return;
    }
    for (std::size_t i = 0; i < compounds; ++i) {
        const double y = twoPhases.place.compositions[0][i];
        const double x = twoPhases.place.compositions[1][i];
        if (std::min(x, y) > leastFraction) {
            report.compare(kValues, subject, package.compounds()[i] + ", " + twoPhases.text,
                           allowingForTraces(relative(found.values[i], y / x), std::min(x, y)));
        }
    }
}

void tellThatTwoPhasesAreMissing(const Package& package, Report& report) {
    constexpr const char* reason = "no state has two phases";
    report.notOffered(fugacities, "phases", reason);
    report.notOffered(kValues, "phases", reason);
    for (const ListedProperty& listed : package.offer().twoPhase) {
        report.notOffered(listedOfTwoPhases, listed.name, reason);
    }
}

} // namespace sheet::checking
