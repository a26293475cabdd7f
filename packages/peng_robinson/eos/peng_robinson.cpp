#include "packages/peng_robinson/eos/peng_robinson.h"

#include "packages/peng_robinson/eos/cubic.h"
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/phase_equations.h"

#include <cmath>
#include <limits>

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
CubicRoots physicalRoots(double P, double RT, const Mixture<double>& mixture) {
    requirePositive("The pressure must be a positive number of pascal", P);
    const auto [c2, c1, c0] = cubicCoefficients(mixture, P, RT);
    const double B = mixture.b * P / RT;
    CubicRoots physical;
    for (const double Z : realRoots(c2, c1, c0)) {
        if (Z > B) {
            physical.value[physical.count++] = Z;
        }
    }
    return physical;
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

Isotherm::Isotherm(const PengRobinson& model, double T)
    : model_{&model}, attractions_{attractionsAt(
                          model, requirePositive("The temperature must be a positive number of kelvin", T))} {
}

std::vector<double> Isotherm::compressibilityFactors(double P, std::span<const double> x) const {
    const CubicRoots found = physicalRoots(P, RT(), mixtureOf(*model_, attractions_, x, {}));
    return {found.begin(), found.end()};
}

PhaseState Isotherm::phase(double P, std::span<const double> x, Root root, Detail detail) const {
    if (x.size() != model_->size()) {
        throw InvalidInput{"The composition must have one value for every compound"};
    }
    const Mixture<double> mixture = mixtureOf(*model_, attractions_, x, detail);
    const CubicRoots found = physicalRoots(P, RT(), mixture);
    if (found.count == 0) {
        throw NoConvergence{
            "The Peng-Robinson equation has no volume at these conditions; check the temperature, the "
            "pressure and the composition"};
    }
    const auto evaluate = [&](double Z) {
        return evaluatePhase(*model_, attractions_, P, Z, Z * RT() / P, x, mixture, detail);
    };
    const double smallest = found.value[0];
    const double largest = found.value[found.count - 1];
    if (root == Root::stable && found.count > 1) {
        PhaseState liquid = evaluate(smallest);
        PhaseState vapor = evaluate(largest);
        if (liquid.residualGibbs < vapor.residualGibbs) {
            return liquid;
        }
        return vapor;
    }
    return evaluate(root == Root::liquid ? smallest : largest);
}

} // namespace peng_robinson::eos
