#include "packages/peng_robinson/eos/peng_robinson.h"

#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/phase_equations.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace peng_robinson::eos {
namespace {

bool isPositive(double value) { return std::isfinite(value) && value > 0.0; }

double requirePositive(const char* message, double value) {
    if (!isPositive(value)) {
        throw OutOfRange{message, value, 0.0, std::numeric_limits<double>::infinity()};
    }
    return value;
}

// Those for which the volume exceeds the co-volume, in increasing order.
CubicRoots physicalRoots(double P, double RT, const PhaseState& mixed) {
    requirePositive("The pressure must be a positive number of pascal", P);
    const auto [c2, c1, c0] = cubicCoefficients(mixed, P, RT);
    const double B = mixed.b * P / RT;
    CubicRoots physical;
    for (const double Z : realRoots(c2, c1, c0)) {
        if (Z > B) {
            physical.value[physical.count++] = Z;
        }
    }
    return physical;
}

// Gibbs energy over RT that one volume of a phase has more than another.
double gibbsDifference(double Z1, double Z2, double A, double B) {
    constexpr double root2 = std::numbers::sqrt2;
    const auto attraction = [&](double Z) {
        return std::log1p(2.0 * root2 * B / (Z + (1.0 - root2) * B)) / (2.0 * root2);
    };
    return Z1 - Z2 - std::log((Z1 - B) / (Z2 - B)) - A / B * (attraction(Z1) - attraction(Z2));
}

} // namespace

bool isLiquidLike(const PhaseState& phase, double R) {
    const bool subcritical = phase.a > pengRobinsonCriticalAttraction * phase.b * R * phase.T;
    return subcritical && phase.v < pengRobinsonCriticalVolumeRatio * phase.b;
}

PengRobinson::PengRobinson(std::vector<CriticalConstants> components, InteractionMatrix k,
                           EquationConstants constants)
    : components_{std::move(components)}, k_{std::move(k)}, constants_{constants} {
    if (components_.empty()) {
        throw InvalidInput{"A mixture needs at least one compound"};
    }
    if (k_.size() == 0) {
        k_ = InteractionMatrix{size()};
    }
    if (k_.size() != size()) {
        throw InvalidInput{"The matrix of interaction parameters does not match the number of compounds"};
    }
    for (const auto& [Tc, Pc, w] : components_) {
        if (!isPositive(Tc) || !isPositive(Pc) || !std::isfinite(w)) {
            throw InvalidInput{
                "The Peng-Robinson equation needs the critical temperature, the critical pressure and "
                "the acentric factor of every compound"};
        }
        b_.push_back(constants_.omegaB * constants_.R * Tc / Pc);
        sqrtA_.push_back(std::sqrt(constants_.omegaA / Pc) * constants_.R * Tc);
        m_.push_back(0.37464 + (1.54226 - 0.26992 * w) * w);
    }
}

PengRobinson PengRobinson::subset(std::span<const std::size_t> indices) const {
    std::vector<CriticalConstants> components;
    InteractionMatrix k{indices.size()};
    for (std::size_t i = 0; i < indices.size(); ++i) {
        components.push_back(components_[indices[i]]);
        for (std::size_t j = 0; j < i; ++j) {
            k.set(i, j, k_(indices[i], indices[j]));
        }
    }
    return PengRobinson{std::move(components), std::move(k), constants_};
}

Isotherm PengRobinson::at(double T) const { return Isotherm{*this, T}; }

void Isotherm::assign(const PengRobinson& model, double T) {
    model_ = &model;
    setAttractions(model, requirePositive("The temperature must be a positive number of kelvin", T),
                   attractions_);
}

CubicRoots Isotherm::compressibilityFactors(double P, std::span<const double> x) const {
    PhaseState mixed;
    mix(*model_, attractions_, x, {}, mixed);
    return physicalRoots(P, RT(), mixed);
}

CubicRoots Isotherm::compressibilityFactors(const PhaseState& phase) const {
    return physicalRoots(phase.P, RT(), phase);
}

void Isotherm::phase(double P, std::span<const double> x, Root root, Detail detail, PhaseState& state) const {
    if (x.size() != model_->size()) {
        throw InvalidInput{"The composition must have one value for every compound"};
    }
    mix(*model_, attractions_, x, detail, state);
    const CubicRoots found = physicalRoots(P, RT(), state);
    if (found.count == 0) {
        throw NoConvergence{
            "The Peng-Robinson equation has no volume at these conditions; check the temperature, the "
            "pressure and the composition"};
    }
    const double smallest = found.value[0], largest = found.value[found.count - 1];
    const double PoverRT = P / RT();
    const bool isLiquid =
        root == Root::liquid ||
        (root == Root::stable && found.count > 1 &&
         gibbsDifference(smallest, largest, state.a * PoverRT / RT(), state.b * PoverRT) < 0.0);
    const double Z = isLiquid ? smallest : largest;
    evaluatePhase(*model_, attractions_, P, Z, Z * RT() / P, x, detail, state);
}

PhaseState Isotherm::phase(double P, std::span<const double> x, Root root, Detail detail) const {
    PhaseState state;
    phase(P, x, root, detail, state);
    return state;
}

} // namespace peng_robinson::eos
