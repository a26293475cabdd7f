#include "tests/sheet/cli/ideal_mixture.h"

#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>

namespace ideal {

namespace {

constexpr double R = 8.31446261815324;
constexpr double T0 = 298.15;
constexpr double P0 = 101'325.0;
constexpr double heatCapacities[compounds] = {35.0, 60.0, 90.0};
constexpr double a[compounds] = {21.0, 21.5, 22.0}; // ln of the vapor pressure in Pa is a - b / T
constexpr double b[compounds] = {2'600.0, 3'400.0, 4'200.0};
constexpr double liquidVolumes[compounds] = {6e-5, 9e-5, 1.3e-4};

double logPhi(std::size_t i, Phase phase, double T, double P) {
    return phase == Phase::vapor ? 0.0 : a[i] - b[i] / T + liquidVolumes[i] * P / (R * T) - std::log(P);
}

// Molar properties of a compound in the mixture, without what mixing adds.
struct Pure {
    double volume;
    double enthalpy;
    double entropy;
};
Pure pure(std::size_t i, const State& s) {
    const double h = heatCapacities[i] * (s.T - T0);
    const double entropy = heatCapacities[i] * std::log(s.T / T0) - R * std::log(s.P / P0);
    if (s.phase == Phase::vapor) {
        return {R * s.T / s.P, h, entropy};
    }
    // The chemical potential is that of the ideal gas and R T ln phi; its slopes are the rest.
    const double liquid = h - R * b[i] + liquidVolumes[i] * s.P;
    const double potential = h - s.T * entropy + R * s.T * logPhi(i, Phase::liquid, s.T, s.P);
    return {liquidVolumes[i], liquid, (liquid - potential) / s.T};
}

double sum(const State& s, const std::function<double(std::size_t)>& term) {
    double result = 0.0;
    for (std::size_t i = 0; i < compounds; ++i) {
        result += s.x[i] * term(i);
    }
    return result;
}

std::vector<double> each(const std::function<double(std::size_t)>& value) {
    std::vector<double> result;
    for (std::size_t i = 0; i < compounds; ++i) {
        result.push_back(value(i));
    }
    return result;
}

std::vector<double> plain(std::string_view name, const State& s) {
    const auto entropy = [&] {
        return sum(s, [&](std::size_t i) {
            return pure(i, s).entropy - (s.x[i] == 0.0 ? 0.0 : R * std::log(s.x[i]));
        });
    };
    const auto enthalpy = [&] { return sum(s, [&](std::size_t i) { return pure(i, s).enthalpy; }); };
    if (name == "volume") {
        return {sum(s, [&](std::size_t i) { return pure(i, s).volume; })};
    }
    if (name == "enthalpy") {
        return {enthalpy()};
    }
    if (name == "entropy") {
        return {entropy()};
    }
    if (name == "gibbsEnergy") {
        return {enthalpy() - s.T * entropy()};
    }
    if (name == "heatCapacityCp") {
        return {sum(s, [](std::size_t i) { return heatCapacities[i]; })};
    }
    if (name == "fugacity") {
        return each([&](std::size_t i) { return s.x[i] * s.P * std::exp(logPhi(i, s.phase, s.T, s.P)); });
    }
    if (name == "logFugacity") {
        return each([&](std::size_t i) { return std::log(s.x[i] * s.P) + logPhi(i, s.phase, s.T, s.P); });
    }
    if (name == "fugacityCoefficient") {
        return each([&](std::size_t i) { return std::exp(logPhi(i, s.phase, s.T, s.P)); });
    }
    throw std::invalid_argument{"there is no such property"};
}

// Five-point differences; their error is far below what a check tolerates.
std::vector<double> slope(const std::function<std::vector<double>(double)>& along, double h) {
    const auto before2 = along(-2.0 * h);
    const auto before = along(-h);
    const auto after = along(h);
    const auto after2 = along(2.0 * h);
    std::vector<double> result;
    for (std::size_t i = 0; i < before.size(); ++i) {
        result.push_back((8.0 * (after[i] - before[i]) - (after2[i] - before2[i])) / (12.0 * h));
    }
    return result;
}

bool takeSuffix(std::string_view& name, std::string_view suffix) {
    const bool has = name.ends_with(suffix);
    name.remove_suffix(has ? suffix.size() : 0);
    return has;
}

std::vector<double> byComposition(const State& s,
                                  const std::function<std::vector<double>(const State&)>& value) {
    const std::size_t rows = value(s).size();
    std::vector<double> result(rows * compounds);
    for (std::size_t c = 0; c < compounds; ++c) {
        const auto column = slope(
            [&](double shift) {
                State shifted = s;
                shifted.x[c] += shift;
                return value(shifted);
            },
            s.x[c] > 0.0 ? 1e-3 * s.x[c] : 1e-4); // a logarithm of less than nothing is no number
        for (std::size_t row = 0; row < rows; ++row) {
            result[row * compounds + c] = column[row];
        }
    }
    return result;
}

Split split(double T, double P, const Composition& z, double vaporFraction) {
    Split result{T, P, vaporFraction, {}, {}};
    const std::vector<double> K = kValues(T, P);
    for (std::size_t i = 0; i < compounds; ++i) {
        result.liquid.push_back(z[i] / (1.0 + vaporFraction * (K[i] - 1.0)));
        result.vapor.push_back(K[i] * result.liquid.back());
    }
    return result;
}

// Rachford and Rice: falls with the vapor fraction and rises with the temperature.
double excess(double T, double P, const Composition& z, double vaporFraction) {
    const std::vector<double> K = kValues(T, P);
    double result = 0.0;
    for (std::size_t i = 0; i < compounds; ++i) {
        result += z[i] * (K[i] - 1.0) / (1.0 + vaporFraction * (K[i] - 1.0));
    }
    return result;
}

double bisect(double low, double high, const std::function<bool(double)>& isBelow) {
    for (int i = 0; i < 200; ++i) {
        const double middle = 0.5 * (low + high);
        (isBelow(middle) ? low : high) = middle;
    }
    return 0.5 * (low + high);
}

} // namespace

std::vector<double> property(std::string_view name, const State& state) {
    if (const std::size_t at = name.find("F."); at != std::string_view::npos || name.ends_with("F")) {
        std::string plainName{name};
        plainName.erase(at == std::string_view::npos ? name.size() - 1 : at, 1);
        std::vector<double> values = property(plainName, state);
        const bool isEnthalpy = name.starts_with("enthalpy");
        const bool isMole = name.ends_with(".Dmoles");
        for (double& value : values) {
            value += (at == std::string_view::npos || isMole) ? (isEnthalpy ? -1e5 : 50.0) : 0.0;
        }
        return values;
    }
    if (takeSuffix(name, ".Dtemperature")) {
        return slope(
            [&](double d) {
                return plain(name, {state.phase, state.T + d, state.P, state.x});
            },
            1e-3 * state.T);
    }
    if (takeSuffix(name, ".Dpressure")) {
        return slope(
            [&](double d) {
                return plain(name, {state.phase, state.T, state.P + d, state.x});
            },
            1e-3 * state.P);
    }
    if (takeSuffix(name, ".DmolFraction")) {
        return byComposition(state, [&](const State& s) { return plain(name, s); });
    }
    if (takeSuffix(name, ".Dmoles")) {
        const bool extensive = name.find("ugacity") == std::string_view::npos;
        return byComposition(state, [&](const State& moles) {
            const double total = moles.x[0] + moles.x[1] + moles.x[2];
            State one = moles;
            for (double& x : one.x) {
                x /= total;
            }
            std::vector<double> values = plain(name, one);
            for (double& value : values) {
                value *= extensive ? total : 1.0;
            }
            return values;
        });
    }
    return plain(name, state);
}

std::vector<double> kValues(double T, double P) {
    return each([&](std::size_t i) { return std::exp(logPhi(i, Phase::liquid, T, P)); });
}

Split flashTP(double T, double P, const Composition& z) {
    if (excess(T, P, z, 0.0) <= 0.0) {
        return {T, P, 0.0, {}, z};
    }
    if (excess(T, P, z, 1.0) >= 0.0) {
        return {T, P, 1.0, z, {}};
    }
    return split(T, P, z, bisect(0.0, 1.0, [&](double beta) { return excess(T, P, z, beta) > 0.0; }));
}

Split flashPV(double P, double vaporFraction, const Composition& z) {
    const double T =
        bisect(100.0, 900.0, [&](double guess) { return excess(guess, P, z, vaporFraction) < 0.0; });
    return split(T, P, z, vaporFraction);
}

} // namespace ideal
