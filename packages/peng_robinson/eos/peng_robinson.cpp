#include "packages/peng_robinson/eos/peng_robinson.h"

#include "packages/peng_robinson/eos/errors.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace peng_robinson::eos {
namespace {

bool isPositive(double value) { return std::isfinite(value) && value > 0.0; }

void requirePositive(const char* message, double value) {
    if (!isPositive(value)) {
        throw OutOfRange{message, value, 0.0, std::numeric_limits<double>::infinity()};
    }
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

Isotherm::Isotherm(const PengRobinson& model, double T) : model_{&model}, T_{T} {
    requirePositive("The temperature must be a positive number of kelvin", T);
    const std::size_t n = model.size();
    q_.assign(n, 0.0);
    dq_dT_.assign(n, 0.0);
    d2q_dT2_.assign(n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        const double root = std::sqrt(T / model.components_[i].Tc);
        const double slope = model.sqrtA_[i] * model.m_[i] * root;
        const double value = model.sqrtA_[i] * (1.0 + model.m_[i] * (1.0 - root));
        // Far above the critical temperature the bracket turns negative; the square root of a_i is its
        // modulus.
        const double sign = value < 0.0 ? -1.0 : 1.0;
        q_[i] = sign * value;
        dq_dT_[i] = -sign * slope / (2.0 * T);
        d2q_dT2_[i] = sign * slope / (4.0 * T * T);
    }
}

// One mole of mixture at the isotherm's temperature; aI and bI are derivatives of n^2 a and n b with respect
// to n_i.
struct Isotherm::Mixture {
    double a = 0.0, b = 0.0, da_dT = 0.0, d2a_dT2 = 0.0;
    std::vector<double> aI, daI_dT;
};

Isotherm::Mixture Isotherm::mix(std::span<const double> x, Detail detail) const {
    const std::size_t n = model_->size();
    Mixture mixture;
    mixture.aI.assign(n, 0.0);
    if (detail.thermal) {
        mixture.daI_dT.assign(n, 0.0);
    }
    for (std::size_t i = 0; i < n; ++i) {
        double sum = 0.0, slopes = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
            const double weight = x[j] * (1.0 - model_->k_(i, j));
            sum += weight * q_[j];
            slopes += weight * dq_dT_[j];
        }
        mixture.aI[i] = 2.0 * q_[i] * sum;
        mixture.a += x[i] * q_[i] * sum;
        mixture.b += x[i] * model_->b_[i];
        if (detail.thermal) {
            mixture.daI_dT[i] = 2.0 * (dq_dT_[i] * sum + q_[i] * slopes);
            mixture.da_dT += 2.0 * x[i] * dq_dT_[i] * sum;
            mixture.d2a_dT2 += 2.0 * x[i] * (d2q_dT2_[i] * sum + dq_dT_[i] * slopes);
        }
    }
    return mixture;
}

CubicRoots Isotherm::roots(double P, const Mixture& mixture) const {
    requirePositive("The pressure must be a positive number of pascal", P);
    const double A = mixture.a * P / (RT() * RT());
    const double B = mixture.b * P / RT();
    const CubicRoots all = realRoots(B - 1.0, A - B * (2.0 + 3.0 * B), -B * (A - B * (1.0 + B)));
    CubicRoots physical;
    for (const double Z : all) {
        if (Z > B) {
            physical.value[physical.count++] = Z;
        }
    }
    return physical;
}

std::vector<double> Isotherm::compressibilityFactors(double P, std::span<const double> x) const {
    const CubicRoots found = roots(P, mix(x, {}));
    return {found.begin(), found.end()};
}

PhaseState Isotherm::phase(double P, std::span<const double> x, Root root, Detail detail) const {
    if (x.size() != model_->size()) {
        throw InvalidInput{"The composition must have one value for every compound"};
    }
    const Mixture mixture = mix(x, detail);
    const CubicRoots found = roots(P, mixture);
    if (found.count == 0) {
        throw NoConvergence{
            "The Peng-Robinson equation has no volume at these conditions; check the temperature, the "
            "pressure and the composition"};
    }
    const double smallest = found.value[0];
    const double largest = found.value[found.count - 1];
    if (root == Root::stable && found.count > 1) {
        PhaseState liquid = evaluate(P, smallest, x, mixture, detail);
        PhaseState vapor = evaluate(P, largest, x, mixture, detail);
        if (liquid.residualGibbs < vapor.residualGibbs) {
            return liquid;
        }
        return vapor;
    }
    return evaluate(P, root == Root::liquid ? smallest : largest, x, mixture, detail);
}

// Derivatives of the reduced residual Helmholtz energy F(T, V, n), after Michelsen, Mollerup, Thermodynamic
// Models: Fundamentals and Computational Aspects, 2nd ed. (2007), chapter 3. Their D is n^2 a here, at n = 1.
PhaseState Isotherm::evaluate(double P, double Z, std::span<const double> x, const Mixture& mixture,
                              Detail detail) const {
    static const double root2 = std::sqrt(2.0);
    const std::size_t n = model_->size();
    const double R = model_->R();
    const double T = T_;
    const double a = mixture.a, b = mixture.b;
    const double v = Z * RT() / P;
    const double v1 = v + (1.0 + root2) * b, v2 = v + (1.0 - root2) * b;

    const double g = std::log1p(-b / v);
    const double f = std::log1p(2.0 * root2 * b / v2) / (2.0 * root2 * R * b);
    const double f_v = -1.0 / (R * v1 * v2);
    const double f_b = -(f + v * f_v) / b;
    const double f_vv = (1.0 / (v2 * v2) - 1.0 / (v1 * v1)) / (2.0 * root2 * R * b);
    const double f_bv = -(2.0 * f_v + v * f_vv) / b;
    const double f_bb = -(2.0 * f_b + v * f_bv) / b;
    const double g_v = b / (v * (v - b)), g_b = -1.0 / (v - b);
    const double g_vv = 1.0 / (v * v) - g_b * g_b, g_bv = g_b * g_b, g_bb = -g_b * g_b;

    const double F_b = -g_b - a / T * f_b;
    const double F_a = -f / T;
    const double F_vv = -g_vv - a / T * f_vv;
    const double F_bv = -g_bv - a / T * f_bv;
    const double F_bb = -g_bb - a / T * f_bb;
    const double F_av = -f_v / T;
    const double F_ab = -f_b / T;

    PhaseState state;
    state.T = T;
    state.P = P;
    state.Z = Z;
    state.v = v;
    state.a = a;
    state.b = b;
    state.dP_dv = -R * T * (F_vv + 1.0 / (v * v));
    const double lnZ = std::log(Z);
    state.lnPhi.assign(n, 0.0);
    state.dlnPhi_dP.assign(n, 0.0);
    std::vector<double> dP_dn(n);
    double gibbs = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double bI = model_->b_[i];
        state.lnPhi[i] = -g + F_b * bI + F_a * mixture.aI[i] - lnZ;
        dP_dn[i] = -R * T * (-g_v + F_bv * bI + F_av * mixture.aI[i]) + R * T / v;
        state.dlnPhi_dP[i] = -dP_dn[i] / state.dP_dv / (R * T) - 1.0 / P;
        gibbs += x[i] * state.lnPhi[i];
    }
    state.residualGibbs = R * T * gibbs;

    if (detail.thermal) {
        const double da = mixture.da_dT, d2a = mixture.d2a_dT2;
        const double F_T = a * f / (T * T) + F_a * da;
        const double F_TT = -2.0 * a * f / (T * T * T) + 2.0 * f / (T * T) * da + F_a * d2a;
        const double F_Tv = a / (T * T) * f_v + F_av * da;
        const double F_Tb = a / (T * T) * f_b + F_ab * da;
        const double F_Ta = f / (T * T);
        state.da_dT = da;
        state.d2a_dT2 = d2a;
        state.dP_dT = -R * T * F_Tv + P / T;
        state.residualEnthalpy = R * T * (Z - 1.0 - T * F_T);
        state.residualEntropy = (state.residualEnthalpy - state.residualGibbs) / T;
        state.residualCv = -R * T * (T * F_TT + 2.0 * F_T);
        state.residualCp = state.residualCv - T * state.dP_dT * state.dP_dT / state.dP_dv - R;
        state.dlnPhi_dT.assign(n, 0.0);
        for (std::size_t i = 0; i < n; ++i) {
            const double F_iT = F_Tb * model_->b_[i] + F_Ta * mixture.aI[i] + F_a * mixture.daI_dT[i];
            const double partialVolume = -dP_dn[i] / state.dP_dv;
            state.dlnPhi_dT[i] = F_iT + 1.0 / T - partialVolume / (R * T) * state.dP_dT;
        }
    }
    if (detail.moles) {
        state.dlnPhi_dn.assign(n * n, 0.0);
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j <= i; ++j) {
                const double bI = model_->b_[i], bJ = model_->b_[j];
                const double aIJ = 2.0 * q_[i] * q_[j] * (1.0 - model_->k_(i, j));
                const double F_ij = -g_b * (bI + bJ) + F_ab * (bI * mixture.aI[j] + bJ * mixture.aI[i]) +
                                    F_bb * bI * bJ + F_a * aIJ;
                const double value = F_ij + 1.0 + dP_dn[i] * dP_dn[j] / (R * T * state.dP_dv);
                state.dlnPhi_dn[i * n + j] = value;
                state.dlnPhi_dn[j * n + i] = value;
            }
        }
    }
    return state;
}

} // namespace peng_robinson::eos
