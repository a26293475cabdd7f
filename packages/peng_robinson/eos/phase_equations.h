// The formulas of the equation of state, as templates over the number type: double for values, Dual for
// derivatives of whatever the formulas give. Only peng_robinson.cpp and phase_slopes.cpp include this.
#pragma once

#include "packages/peng_robinson/eos/peng_robinson.h"

#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <vector>

namespace peng_robinson::eos {

template <typename Number>
void setAttractions(const PengRobinson& model, const Number& T, Attractions<Number>& at) {
    using std::sqrt;
    const std::size_t n = model.size();
    at.T = T;
    at.q.assign(n, 0.0);
    at.dq_dT.assign(n, 0.0);
    at.d2q_dT2.assign(n, 0.0);
    at.pairs.assign(n * n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        const Number root = sqrt(T / model.component(i).Tc);
        const Number slope = model.sqrtA(i) * model.m(i) * root;
        const Number value = model.sqrtA(i) * (1.0 + model.m(i) * (1.0 - root));
        // Far above the critical temperature the bracket turns negative; the square root of a_i is its
        // modulus.
        const double sign = valueOf(value) < 0.0 ? -1.0 : 1.0;
        at.q[i] = sign * value;
        at.dq_dT[i] = -sign * slope / (2.0 * T);
        at.d2q_dT2[i] = sign * slope / (4.0 * T * T);
        for (std::size_t j = 0; j <= i; ++j) {
            const Number pair = at.q[i] * at.q[j] * (1.0 - model.k(i, j));
            at.pairs[i * n + j] = pair;
            at.pairs[j * n + i] = pair;
        }
    }
}

/// Sets what the mixing rules give of the state of a phase: a, b and their derivatives.
template <typename Number>
void mix(const PengRobinson& model, const Attractions<Number>& at, std::span<const Number> x, Detail detail,
         BasicPhaseState<Number>& state) {
    const std::size_t n = model.size();
    state.aI.assign(n, 0.0);
    Number* const aI = state.aI.data();
    for (std::size_t j = 0; j < n; ++j) {
        const Number* const row = &at.pairs[j * n];
        const Number twice = 2.0 * x[j];
        for (std::size_t i = 0; i < n; ++i) {
            aI[i] += twice * row[i];
        }
    }
    Number twiceA = 0.0, b = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        twiceA += x[i] * aI[i];
        b += x[i] * model.b(i);
    }
    state.a = 0.5 * twiceA;
    state.b = b;
    if (!detail.thermal) {
        return;
    }
    state.daI_dT.assign(n, 0.0);
    state.da_dT = state.d2a_dT2 = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        Number sum = 0.0, slopes = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
            const Number weight = x[j] * (1.0 - model.k(i, j));
            sum += weight * at.q[j];
            slopes += weight * at.dq_dT[j];
        }
        state.daI_dT[i] = 2.0 * (at.dq_dT[i] * sum + at.q[i] * slopes);
        state.da_dT += 2.0 * x[i] * at.dq_dT[i] * sum;
        state.d2a_dT2 += 2.0 * x[i] * (at.d2q_dT2[i] * sum + at.dq_dT[i] * slopes);
    }
}

/// Coefficients c2, c1, c0 of Z^3 + c2 Z^2 + c1 Z + c0 = 0 for a phase that is mixed.
template <typename Number>
std::array<Number, 3> cubicCoefficients(const BasicPhaseState<Number>& mixed, const Number& P,
                                        const Number& RT) {
    const Number A = mixed.a * P / (RT * RT);
    const Number B = mixed.b * P / RT;
    return {B - 1.0, A - B * (2.0 + 3.0 * B), -B * (A - B * (1.0 + B))};
}

/// The rest of the state of a phase that is mixed.
// Derivatives of the reduced residual Helmholtz energy F(T, V, n), after Michelsen, Mollerup, Thermodynamic
// Models: Fundamentals and Computational Aspects, 2nd ed. (2007), chapter 3. Their D is n^2 a here, at n = 1.
template <typename Number>
void evaluatePhase(const PengRobinson& model, const Attractions<Number>& at, const Number& P, const Number& Z,
                   const Number& v, std::span<const Number> x, Detail detail,
                   BasicPhaseState<Number>& state) {
    using std::log, std::log1p;
    constexpr double root2 = std::numbers::sqrt2;
    const std::size_t n = model.size();
    const double R = model.R();
    const Number T = at.T;
    const Number a = state.a, b = state.b;
    const Number v1 = v + (1.0 + root2) * b, v2 = v + (1.0 - root2) * b;

    const Number g = log1p(-b / v);
    const Number f = log1p(2.0 * root2 * b / v2) / (2.0 * root2 * R * b);
    const Number f_v = -1.0 / (R * v1 * v2);
    const Number f_b = -(f + v * f_v) / b;
    const Number f_vv = (1.0 / (v2 * v2) - 1.0 / (v1 * v1)) / (2.0 * root2 * R * b);
    const Number f_bv = -(2.0 * f_v + v * f_vv) / b;
    const Number f_bb = -(2.0 * f_b + v * f_bv) / b;
    const Number g_v = b / (v * (v - b)), g_b = -1.0 / (v - b);
    const Number g_vv = 1.0 / (v * v) - g_b * g_b, g_bv = g_b * g_b, g_bb = -g_b * g_b;

    const Number F_b = -g_b - a / T * f_b;
    const Number F_a = -f / T;
    const Number F_vv = -g_vv - a / T * f_vv;
    const Number F_bv = -g_bv - a / T * f_bv;
    const Number F_bb = -g_bb - a / T * f_bb;
    const Number F_av = -f_v / T;
    const Number F_ab = -f_b / T;

    state.T = T;
    state.P = P;
    state.Z = Z;
    state.v = v;
    state.dP_dv = -R * T * (F_vv + 1.0 / (v * v));
    const Number lnZ = log(Z);
    state.lnPhi.assign(n, 0.0);
    state.dlnPhi_dP.assign(n, 0.0);
    state.dP_dn.assign(n, 0.0);
    Number gibbs = 0.0;
    const Number ideal = -g - lnZ;
    const Number RT = R * T;
    const Number dP_dN = RT * (g_v + 1.0 / v);
    const Number volume = -1.0 / (state.dP_dv * RT);
    const Number perP = 1.0 / P;
    for (std::size_t i = 0; i < n; ++i) {
        const double bI = model.b(i);
        state.lnPhi[i] = ideal + F_b * bI + F_a * state.aI[i];
        state.dP_dn[i] = dP_dN - RT * (F_bv * bI + F_av * state.aI[i]);
        state.dlnPhi_dP[i] = state.dP_dn[i] * volume - perP;
        gibbs += x[i] * state.lnPhi[i];
    }
    state.residualGibbs = R * T * gibbs;

    if (detail.thermal) {
        const Number da = state.da_dT, d2a = state.d2a_dT2;
        const Number F_T = a * f / (T * T) + F_a * da;
        const Number F_TT = -2.0 * a * f / (T * T * T) + 2.0 * f / (T * T) * da + F_a * d2a;
        const Number F_Tv = a / (T * T) * f_v + F_av * da;
        const Number F_Tb = a / (T * T) * f_b + F_ab * da;
        const Number F_Ta = f / (T * T);
        state.dP_dT = -R * T * F_Tv + P / T;
        state.residualEnthalpy = R * T * (Z - 1.0 - T * F_T);
        state.residualEntropy = (state.residualEnthalpy - state.residualGibbs) / T;
        state.residualCv = -R * T * (T * F_TT + 2.0 * F_T);
        state.residualCp = state.residualCv - T * state.dP_dT * state.dP_dT / state.dP_dv - R;
        state.dlnPhi_dT.assign(n, 0.0);
        for (std::size_t i = 0; i < n; ++i) {
            const Number F_iT = F_Tb * model.b(i) + F_Ta * state.aI[i] + F_a * state.daI_dT[i];
            const Number partialVolume = -state.dP_dn[i] / state.dP_dv;
            state.dlnPhi_dT[i] = F_iT + 1.0 / T - partialVolume / (R * T) * state.dP_dT;
        }
    }
    if (detail.moles) {
        state.dlnPhi_dn.resize(n * n);
        const Number perSlope = 1.0 / (R * T * state.dP_dv);
        for (std::size_t i = 0; i < n; ++i) {
            const double bI = model.b(i);
            const Number aI = state.aI[i];
            const Number constant = 1.0 - g_b * bI;
            const Number byB = F_bb * bI + F_ab * aI - g_b;
            const Number byA = F_ab * bI;
            const Number bySlope = state.dP_dn[i] * perSlope;
            const Number* const pairs = &at.pairs[i * n];
            for (std::size_t j = 0; j <= i; ++j) {
                const Number value = constant + byB * model.b(j) + byA * state.aI[j] + 2.0 * F_a * pairs[j] +
                                     bySlope * state.dP_dn[j];
                state.dlnPhi_dn[i * n + j] = value;
                state.dlnPhi_dn[j * n + i] = value;
            }
        }
    }
}

} // namespace peng_robinson::eos
