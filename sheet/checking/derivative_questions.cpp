// Derivatives against differences of the property. Of a composition derivative only what does not depend on
// how the property is continued to fractions that do not sum to 1 can be compared: the difference of the
// derivatives by two compounds is the slope of the property where one is exchanged for the other. By mole
// numbers, the derivatives weighted with the mole fractions sum to the property when it is one per mole, and
// to zero otherwise (Euler's theorem on homogeneous functions).
#include "sheet/checking/questions.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <utility>

namespace sheet::checking {

namespace {

constexpr Question byTemperature{"derivatives by temperature", 1e-4};
constexpr Question byPressure{"derivatives by pressure", 1e-4};
constexpr Question byMoleFraction{"derivatives by mole fractions", 1e-4};
constexpr Question byMoles{"derivatives by mole numbers", 1e-4};

// Steps relative to the temperature, the pressure, or the smaller of two mole fractions.
constexpr double step = 1e-3;
constexpr double exchangeStep = 5e-3;
// The smaller fraction may be tiny, and then the property's own rounding shows: packages that solve for the
// volume stop somewhere.
constexpr double noiseOfExchange = 1e-8;
// Of less, a difference says nothing.
constexpr double leastFraction = 1e-4;
// A derivative may be this small, relative to the property over the variable, before its digits do not count.
constexpr double leastSlope = 1e-3;

constexpr const char* cannotDiffer = "it is not calculated close by, so that no difference can be formed";

struct Slope {
    double value;
    double uncertainty;
};

// Slopes of all values of a property along a line. Empty when it cannot be calculated all along. `noise`:
// relative, of the property.
using Along = std::function<Answer(double shift)>;
std::vector<Slope> slopes(const Along& along, double h, double noise = 0.0) {
    const Answer before2 = along(-2.0 * h);
    const Answer before = along(-h);
    const Answer after = along(h);
    const Answer after2 = along(2.0 * h);
    const std::size_t count = before.values.size();
    if (before2.values.size() != count || after.values.size() != count || after2.values.size() != count) {
        return {};
    }
    std::vector<Slope> result;
    for (std::size_t i = 0; i < count; ++i) {
        const double narrow = (after.values[i] - before.values[i]) / (2.0 * h);
        const double wide = (after2.values[i] - before2.values[i]) / (4.0 * h);
        const double best = (4.0 * narrow - wide) / 3.0;
        result.push_back({best, std::abs(best - narrow) + noise * std::abs(after.values[i]) / h});
    }
    return result;
}

bool isDerivative(const std::string& name) { return name.find(".D") != std::string::npos; }

class Asker {
  public:
    Asker(const Package& package, const Spot& spot, Report& report)
        : package_{package}, spot_{spot}, report_{report} {}

    void ask(const ListedProperty& listed) {
        if (!package_.offers(listed.name, spot_.place.phases)) {
            return; // askForListed() tells
        }
        listed_ = &listed;
        exchanges_.clear();
        now_ = package_.property(listed.name, spot_.place);
        if (now_.failed() || now_.values.empty()) {
            return; // askForListed() tells
        }
        const Place& place = spot_.place;
        askBy(byTemperature, ".Dtemperature", place.temperature, &Place::temperature);
        askBy(byPressure, ".Dpressure", place.pressure, &Place::pressure);
        if (listed.rank > 1) {
            return;
        }
        if (package_.compounds().size() < 2) {
            report_.notOffered(byMoleFraction, listed.name, "there is one compound only");
            report_.notOffered(byMoles, listed.name, "there is one compound only");
            return;
        }
        for (std::size_t phase = 0; phase < place.phases.size(); ++phase) {
            askByComposition(byMoleFraction, ".DmolFraction", phase);
            askByComposition(byMoles, ".Dmoles", phase);
        }
    }

  private:
    // Nothing when it is not offered.
    std::vector<double> derivative(const Question& question, const char* suffix, std::size_t count,
                                   int byPhase = 0) {
        Answer found = package_.property(listed_->name + suffix, spot_.place, byPhase);
        if (found.failed()) {
            report_.notOffered(question, listed_->name, found.failure);
            return {};
        }
        if (found.values.size() != count) {
            report_.fail(question, listed_->name, spot_.text,
                         std::to_string(found.values.size()) + " values instead of " + std::to_string(count));
            return {};
        }
        return std::move(found.values);
    }

    bool mayBeInfinite(std::size_t value, double shown) const {
        return !std::isfinite(shown) && spot_.place.isOfAbsent(value, listed_->rank);
    }

    // Of one value of the property. `range` is what the variable may change by, so that the property over it
    // is the size of a slope.
    void compare(const Question& question, std::size_t value, double found, const Slope& slope, double range,
                 const std::string& where) {
        if (mayBeInfinite(value, found + slope.value)) {
            return;
        }
        const double size = std::max(
            {std::abs(found), std::abs(slope.value), leastSlope * std::abs(now_.values[value]) / range});
        double deviation = std::abs(found - slope.value);
        if (deviation > question.tolerance * size) { // the difference itself may not be that good
            deviation = std::max(deviation - slope.uncertainty, 0.0);
        }
        report_.compare(question, listed_->name, where, size == 0.0 ? 0.0 : deviation / size);
    }

    void askBy(const Question& question, const char* suffix, double value, double Place::*variable) {
        const std::vector<double> found = derivative(question, suffix, now_.values.size());
        if (found.empty()) {
            return;
        }
        const std::vector<Slope> expected = slopes(
            [&](double shift) {
                Place place = spot_.place;
                place.*variable = value + shift;
                return package_.property(listed_->name, place);
            },
            step * value);
        if (expected.empty()) {
            report_.notOffered(question, listed_->name, cannotDiffer);
        }
        for (std::size_t i = 0; i < expected.size() && i < found.size(); ++i) {
            compare(question, i, found[i], expected[i], value, whereOf(i));
        }
    }

    void askByComposition(const Question& question, const char* suffix, std::size_t phase) {
        const std::size_t compounds = package_.compounds().size();
        const int byPhase = spot_.place.phases.size() > 1 ? static_cast<int>(phase) + 1 : 0;
        const std::vector<double> found =
            derivative(question, suffix, now_.values.size() * compounds, byPhase);
        if (found.empty()) {
            return;
        }
        const Composition& x = spot_.place.compositions[phase];
        const auto reference = static_cast<std::size_t>(std::ranges::max_element(x) - x.begin());
        bool isAsked = false;
        for (std::size_t c = 0; c < compounds; ++c) {
            if (c != reference && x[c] > leastFraction) {
                isAsked = true;
                compareExchange(question, found, phase, c, reference);
            }
        }
        if (!isAsked) {
            report_.notOffered(question, listed_->name, "one compound has all but traces of the phase");
        }
        if (question.text == byMoles.text && byPhase == 0) {
            compareSum(found, x);
        }
    }

    void compareExchange(const Question& question, const std::vector<double>& found, std::size_t phase,
                         std::size_t c, std::size_t reference) {
        const std::size_t compounds = package_.compounds().size();
        const std::vector<Slope>& expected = exchange(phase, c, reference);
        if (expected.empty()) {
            report_.notOffered(question, listed_->name, cannotDiffer);
        }
        for (std::size_t i = 0; i < expected.size(); ++i) {
            compare(question, i, found[i * compounds + c] - found[i * compounds + reference], expected[i],
                    1.0, package_.compounds()[c] + ", " + whereOf(i));
        }
    }

    // The same for both kinds of composition derivatives.
    const std::vector<Slope>& exchange(std::size_t phase, std::size_t c, std::size_t reference) {
        const auto [known, isNew] = exchanges_.try_emplace({phase, c});
        if (!isNew) {
            return known->second;
        }
        const Composition& x = spot_.place.compositions[phase];
        known->second = slopes(
            [&](double shift) {
                Place place = spot_.place;
                place.compositions[phase][c] += shift;
                place.compositions[phase][reference] -= shift;
                return package_.property(listed_->name, place);
            },
            exchangeStep * std::min(x[c], x[reference]), noiseOfExchange);
        return known->second;
    }

    void compareSum(const std::vector<double>& found, const Composition& x) {
        for (std::size_t i = 0; i < now_.values.size(); ++i) {
            double sum = 0.0;
            double size = leastSlope * std::abs(now_.values[i]);
            for (std::size_t c = 0; c < x.size(); ++c) {
                // One by a compound that is not there may be infinite.
                const double term = x[c] > 0.0 ? x[c] * found[i * x.size() + c] : 0.0;
                sum += term;
                size = std::max(size, std::abs(term));
            }
            const double expected = listed_->extensive ? now_.values[i] : 0.0;
            if (mayBeInfinite(i, sum + expected)) {
                continue;
            }
            report_.compare(byMoles, listed_->name, "their sum, " + whereOf(i),
                            size == 0.0 ? 0.0 : std::abs(sum - expected) / size);
        }
    }

    // With the compound that one of several values belongs to.
    std::string whereOf(std::size_t value) const {
        const bool ofCompound = listed_->rank == 1 && value < package_.compounds().size();
        return (ofCompound ? "of " + package_.compounds()[value] + ", " : std::string{}) + spot_.text;
    }

    const Package& package_;
    const Spot& spot_;
    Report& report_;
    const ListedProperty* listed_ = nullptr;
    Answer now_;
    std::map<std::pair<std::size_t, std::size_t>, std::vector<Slope>> exchanges_; // by phase and compound
};

} // namespace

void askForDerivatives(const Package& package, const Spot& spot, Report& report) {
    Asker asker{package, spot, report};
    const bool single = spot.place.phases.size() == 1;
    for (const ListedProperty& listed : single ? package.offer().singlePhase : package.offer().twoPhase) {
        if (!isDerivative(listed.name)) {
            asker.ask(listed);
        }
    }
}

} // namespace sheet::checking
