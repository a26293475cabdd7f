#include "sheet/checking/questions.h"

#include <cmath>
#include <optional>

namespace sheet::checking {

namespace {

constexpr Question listedOfPhases{"listed properties of a phase", 0.0};
constexpr Question listedByTemperature{"listed properties by temperature", 0.0};
constexpr Question listedConstants{"listed constants", 0.0};

std::string problemIn(const Answer& answer, const ListedProperty& listed, const Place& place) {
    if (answer.failed()) {
        return answer.failure;
    }
    for (std::size_t i = 0; i < answer.values.size(); ++i) {
        if (!std::isfinite(answer.values[i]) && !place.isOfAbsent(i, listed.rank)) {
            return "a value is no number";
        }
    }
    return {};
}

// "the phase Vapor", "the phases Vapor and Liquid"
std::string textOf(const std::vector<std::string>& phases) {
    return phases.size() == 1 ? "the phase " + phases[0] : "the phases " + phases[0] + " and " + phases[1];
}

} // namespace

void askForListed(const Package& package, const Spot& spot, Report& report) {
    const bool single = spot.place.phases.size() == 1;
    const Question& question = single ? listedOfPhases : listedOfTwoPhases;
    for (const ListedProperty& listed : single ? package.offer().singlePhase : package.offer().twoPhase) {
        if (!package.offers(listed.name, spot.place.phases)) {
            report.notOffered(question, listed.name, "not for " + textOf(spot.place.phases));
            continue;
        }
        const std::string problem = problemIn(package.property(listed.name, spot.place), listed, spot.place);
        if (problem.empty()) {
            report.answered(question, listed.name, spot.text);
        } else {
            report.fail(question, listed.name, spot.text, problem);
        }
    }
}

// A correlation may end before the highest temperature, and a compound may lack a constant: what counts is
// that the package answers at some temperature.
void askForListedOfCompounds(const Package& package, const std::vector<double>& temperatures,
                             Report& report) {
    for (const std::string& name : package.offer().constants) {
        if (const Answer found = package.constant(name); found.failed()) {
            report.fail(listedConstants, name, {}, found.failure);
        } else {
            report.answered(listedConstants, name, {});
        }
    }
    for (const ListedProperty& listed : package.offer().temperatureDependent) {
        std::optional<std::string> problem;
        for (const double temperature : temperatures) {
            const Answer found = package.temperatureDependent(listed.name, temperature);
            if (!found.failed()) {
                problem.reset();
                report.answered(listedByTemperature, listed.name, {});
                break;
            }
            problem = found.failure;
        }
        if (problem) {
            report.fail(listedByTemperature, listed.name, {}, *problem);
        }
    }
}

} // namespace sheet::checking
