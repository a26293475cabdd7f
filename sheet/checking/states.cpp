#include "sheet/checking/states.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace sheet::checking {

namespace {

constexpr Question boilingAndDew{"bubble and dew points", 0.0};

// Where the package does not tell where its mixtures boil.
constexpr double usualTemperatures[] = {250.0, 300.0, 350.0};
constexpr double usualPressures[] = {101'325.0, 1'000'000.0};

// Relative. Of a pure compound, bubble and dew points differ by what their solutions are rounded to.
constexpr double differentTemperature = 1e-3;

Composition scaled(Composition composition) {
    const double sum = std::accumulate(composition.begin(), composition.end(), 0.0);
    for (double& x : composition) {
        x /= sum;
    }
    return composition;
}

// Equal amounts, and amounts that fall from the first compound to the last.
std::vector<Composition> usualCompositions(std::size_t compounds) {
    std::vector<Composition> result{Composition(compounds, 1.0)};
    if (compounds > 1) {
        result.emplace_back(compounds);
        std::iota(result.back().rbegin(), result.back().rend(), 1.0);
    }
    return result;
}

class Chooser {
  public:
    Chooser(const Package& package, Report& report) : package_{package}, report_{report} {}

    void add(const Composition& overall, const std::string& name, double pressure) {
        const auto saturation = [&](const char* what, double fraction) {
            const Equilibrium found =
                package_.equilibrium(overall, {"pressure", pressure}, {"vaporFraction", fraction});
            if (found.failure.empty() && found.temperature > 0.0) {
                report_.answered(boilingAndDew, what, {});
                return found.temperature;
            }
            report_.notOffered(boilingAndDew, what, found.failure);
            return 0.0;
        };
        const double boiling = saturation("bubble points", 0.0);
        const double dew = saturation("dew points", 1.0);
        if (boiling <= 0.0 || dew < boiling * (1.0 - differentTemperature)) {
            for (const double temperature : usualTemperatures) {
                add(overall, name, pressure, temperature, true);
            }
            return;
        }
        add(overall, name, pressure, 0.95 * boiling, true);
        if (dew - boiling > differentTemperature * boiling) {
            add(overall, name, pressure, 0.5 * (boiling + dew), true);
        } else { // a pure compound has both phases at one temperature only
            states_.push_back({overall, {"pressure", pressure}, {"vaporFraction", 0.5}, name, true});
        }
        add(overall, name, pressure, 1.05 * dew, true);
    }

    void add(const Composition& overall, const std::string& name, double pressure, double temperature,
             bool isGuess) {
        states_.push_back({overall, {"temperature", temperature}, {"pressure", pressure}, name, isGuess});
    }

    std::vector<State> take() { return std::move(states_); }

  private:
    const Package& package_;
    Report& report_;
    std::vector<State> states_;
};

} // namespace

std::string textOf(double temperature, double pressure) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.6g K, %.6g Pa", temperature, pressure);
    return text.data();
}

std::vector<State> statesFor(const Package& package, const Choices& choices, Report& report) {
    Chooser chooser{package, report};
    const std::vector<Composition> compositions =
        choices.compositions.empty() ? usualCompositions(package.compounds().size()) : choices.compositions;
    const std::vector<double> pressures =
        choices.pressures.empty() ? std::vector<double>{std::begin(usualPressures), std::end(usualPressures)}
                                  : choices.pressures;
    for (std::size_t i = 0; i < compositions.size(); ++i) {
        const Composition overall = scaled(compositions[i]);
        const std::string name = "composition " + std::to_string(i + 1);
        for (const double pressure : pressures) {
            if (choices.temperatures.empty()) {
                chooser.add(overall, name, pressure);
            }
            for (const double temperature : choices.temperatures) {
                chooser.add(overall, name, pressure, temperature, false);
            }
        }
    }
    return chooser.take();
}

} // namespace sheet::checking
