#include "sheet/checking/check.h"

#include "sheet/checking/questions.h"

#include <set>

namespace sheet::checking {

namespace {

constexpr Question lists{"compounds and phases", 0.0};
constexpr Question phaseEquilibria{"phase equilibria", 0.0};

void askInPhases(const Package& package, const std::vector<Spot>& spots, Report& report) {
    for (const Spot& spot : spots) {
        askForListed(package, spot, report);
        askForIdentities(package, spot, report);
        askForIntegrals(package, spot, report);
        askForDerivatives(package, spot, report);
    }
}

std::vector<Spot> spotsOf(const Equilibrium& found, const std::string& mixture) {
    std::vector<Spot> spots;
    for (const PhaseOfEquilibrium& phase : found.phases) {
        spots.push_back(
            {phase.place(), phase.phase + ", " + textOf(phase.temperature, phase.pressure) + ", " + mixture});
    }
    return spots;
}

// K-values are of the vapor over the liquid, which asks for this order.
Spot together(const Package& package, const Spot& one, const Spot& other) {
    if (package.isVapor(other.place.phases.front()) && !package.isVapor(one.place.phases.front())) {
        return together(package, other, one);
    }
    Place place = one.place;
    place.phases.push_back(other.place.phases.front());
    place.compositions.push_back(other.place.compositions.front());
    return {place, one.place.phases.front() + " and " + other.text};
}

struct Refused {
    const State* state;
    std::string kind;
    std::string failure;
};

// A package need not have a solution wherever this program looks for one, as long as it has one somewhere.
void tell(const std::vector<Refused>& refused, const std::set<std::string>& answered, Report& report) {
    for (const auto& [state, kind, failure] : refused) {
        const bool isTP = std::string_view{state->other.name} == "pressure";
        const std::string where =
            (isTP ? textOf(state->one.value, state->other.value) + ", " : std::string{}) + state->text;
        if (state->isGuess && answered.contains(kind)) {
            report.notOffered(phaseEquilibria, where, failure);
        } else {
            report.fail(phaseEquilibria, kind, where, failure);
        }
    }
}

} // namespace

Report check(const Package& package, const Choices& choices, const Progress& progress) {
    Report report;
    if (!package.problem().empty()) {
        report.fail(lists, "names", {}, package.problem());
        return report;
    }
    const std::vector<State> states = statesFor(package, choices, report);
    std::vector<double> temperatures;
    std::vector<Refused> refused;
    std::set<std::string> answered;
    bool haveTwo = false;
    for (std::size_t i = 0; i < states.size(); ++i) {
        if (progress) {
            progress(i, states.size());
        }
        const State& state = states[i];
        const Equilibrium found = package.equilibrium(state.overall, state.one, state.other);
        const std::string kind = std::string{state.one.name} + " and " + state.other.name;
        if (!found.failure.empty()) {
            refused.push_back({&state, kind, found.failure});
            continue;
        }
        report.answered(phaseEquilibria, kind, {});
        answered.insert(kind);
        haveTwo = haveTwo || found.phases.size() > 1;
        temperatures.push_back(found.temperature);
        const std::string where = textOf(found.temperature, found.pressure) + ", " + state.text;
        askForBalance(state, found, where, report);
        const std::vector<Spot> spots = spotsOf(found, state.text);
        askForFugacities(package, spots, report);
        askInPhases(package, spots, report);
        for (std::size_t a = 0; a < spots.size(); ++a) {
            for (std::size_t b = a + 1; b < spots.size(); ++b) {
                const Spot pair = together(package, spots[a], spots[b]);
                askForKValues(package, pair, report);
                askForListed(package, pair, report);
                askForDerivatives(package, pair, report);
            }
        }
    }
    tell(refused, answered, report);
    if (!haveTwo) {
        tellThatTwoPhasesAreMissing(package, report);
    }
    askForListedOfCompounds(package, temperatures, report);
    return report;
}

} // namespace sheet::checking
