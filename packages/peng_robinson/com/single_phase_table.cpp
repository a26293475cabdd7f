#include "packages/peng_robinson/com/single_phase_table.h"

#include "packages/peng_robinson/com/values.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace peng_robinson {
namespace {

using eos::PhaseProperties;
using eos::PhaseState;
using Values = std::vector<double>;

// Properties of a phase and their derivatives, in closed form. A suffix tells the variable: _T at constant
// pressure, _P at constant temperature.
using P = const PhaseProperties&;

double v(P p) { return p.state.v; }
double v_T(P p) { return -p.state.dP_dT / p.state.dP_dv; }
double v_P(P p) { return 1.0 / p.state.dP_dv; }
double density(P p) { return p.density(); }
double density_T(P p) { return -v_T(p) / (v(p) * v(p)); }
double density_P(P p) { return -v_P(p) / (v(p) * v(p)); }
double Z(P p) { return p.state.Z; }
double Z_T(P p) { return p.state.Z * (v_T(p) / v(p) - 1.0 / p.state.T); }
double Z_P(P p) { return p.state.Z * (v_P(p) / v(p) + 1.0 / p.state.P); }
double h(P p) { return p.enthalpy; }
double hF(P p) { return p.enthalpy + p.formationEnthalpy; }
double h_P(P p) { return v(p) - p.state.T * v_T(p); }
double s(P p) { return p.entropy; }
double sF(P p) { return p.entropy + p.formationEntropy; }
double s_T(P p) { return p.Cp / p.state.T; }
double s_P(P p) { return -v_T(p); }
double g(P p) { return p.gibbsEnergy(); }
double g_T(P p) { return -p.entropy; }
double u(P p) { return p.internalEnergy(); }
double u_T(P p) { return p.Cp - p.state.P * v_T(p); }
double u_P(P p) { return -p.state.T * v_T(p) - p.state.P * v_P(p); }
double a(P p) { return p.helmholtzEnergy(); }
double a_T(P p) { return -p.entropy - p.state.P * v_T(p); }
double a_P(P p) { return -p.state.P * v_P(p); }
double Cp(P p) { return p.Cp; }
double Cv(P p) { return p.Cv; }
double M(P p) { return p.molecularWeight; }
double kappa(P p) { return p.compressibility(); }
double mu(P p) { return p.jouleThomsonCoefficient(); }
double w(P p) { return p.speedOfSound(); }

// The same for properties with a value for each compound; x is the mole fraction of compound i.
using S = const PhaseState&;

double lnPhi(S q, double, std::size_t i) { return q.lnPhi[i]; }
double lnPhi_T(S q, double, std::size_t i) { return q.dlnPhi_dT[i]; }
double lnPhi_P(S q, double, std::size_t i) { return q.dlnPhi_dP[i]; }
double phi(S q, double, std::size_t i) { return std::exp(q.lnPhi[i]); }
double phi_T(S q, double x, std::size_t i) { return phi(q, x, i) * q.dlnPhi_dT[i]; }
double phi_P(S q, double x, std::size_t i) { return phi(q, x, i) * q.dlnPhi_dP[i]; }
double f(S q, double x, std::size_t i) { return x * phi(q, x, i) * q.P; }
double f_T(S q, double x, std::size_t i) { return f(q, x, i) * q.dlnPhi_dT[i]; }
double f_P(S q, double x, std::size_t i) { return x * phi(q, x, i) * (1.0 + q.P * q.dlnPhi_dP[i]); }

template <auto F>
Values one(const PhasePoint& at) {
    return {F(at.properties)};
}

template <auto F>
Values each(const PhasePoint& at) {
    Values values(at.x.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = F(at.properties.state, at.x[i], i);
    }
    return values;
}

Values lnPhi_n(const PhasePoint& at) {
    const PhaseState& state = at.properties.state;
    return at.fluid.model().at(state.T).phase(state.P, at.x, at.root, {.moles = true}).dlnPhi_dn;
}

// clang-format off
constexpr std::array rows{
    SinglePhaseRow{L"compressibility",         {},                     false, one<kappa>,   nullptr,        nullptr,        nullptr},
    SinglePhaseRow{L"compressibilityFactor",   {},                     false, one<Z>,       one<Z_T>,       one<Z_P>,       nullptr},
    SinglePhaseRow{L"density",                 {},                     true,  one<density>, one<density_T>, one<density_P>, nullptr},
    SinglePhaseRow{L"enthalpy",                {},                     true,  one<h>,       one<Cp>,        one<h_P>,       nullptr},
    SinglePhaseRow{L"enthalpyF",               {},                     true,  one<hF>,      one<Cp>,        one<h_P>,       nullptr},
    SinglePhaseRow{L"enthalpyNF",              {},                     true,  one<h>,       one<Cp>,        one<h_P>,       nullptr},
    SinglePhaseRow{L"entropy",                 {},                     true,  one<s>,       one<s_T>,       one<s_P>,       nullptr},
    SinglePhaseRow{L"entropyF",                {},                     true,  one<sF>,      one<s_T>,       one<s_P>,       nullptr},
    SinglePhaseRow{L"entropyNF",               {},                     true,  one<s>,       one<s_T>,       one<s_P>,       nullptr},
    SinglePhaseRow{L"fugacity",                {},                     false, each<f>,      each<f_T>,      each<f_P>,      nullptr},
    SinglePhaseRow{L"fugacityCoefficient",     {},                     false, each<phi>,    each<phi_T>,    each<phi_P>,    nullptr},
    SinglePhaseRow{L"gibbsEnergy",             L"gibbsFreeEnergy",     true,  one<g>,       one<g_T>,       one<v>,         nullptr},
    SinglePhaseRow{L"heatCapacityCp",          L"heatCapacity",        true,  one<Cp>,      nullptr,        nullptr,        nullptr},
    SinglePhaseRow{L"heatCapacityCv",          {},                     true,  one<Cv>,      nullptr,        nullptr,        nullptr},
    SinglePhaseRow{L"helmholtzEnergy",         L"helmholtzFreeEnergy", true,  one<a>,       one<a_T>,       one<a_P>,       nullptr},
    SinglePhaseRow{L"internalEnergy",          L"energy",              true,  one<u>,       one<u_T>,       one<u_P>,       nullptr},
    SinglePhaseRow{L"jouleThomsonCoefficient", {},                     false, one<mu>,      nullptr,        nullptr,        nullptr},
    SinglePhaseRow{L"logFugacityCoefficient",  {},                     false, each<lnPhi>,  each<lnPhi_T>,  each<lnPhi_P>,  lnPhi_n},
    SinglePhaseRow{L"molecularWeight",         {},                     false, one<M>,       nullptr,        nullptr,        nullptr},
    SinglePhaseRow{L"speedOfSound",            {},                     false, one<w>,       nullptr,        nullptr,        nullptr},
    SinglePhaseRow{L"volume",                  {},                     true,  one<v>,       one<v_T>,       one<v_P>,       nullptr},
};
// clang-format on

struct Derivative {
    std::wstring_view suffix;
    SinglePhaseRow::Values SinglePhaseRow::*values;
};
constexpr Derivative derivatives[] = {
    {L"", &SinglePhaseRow::value},
    {L".Dtemperature", &SinglePhaseRow::temperatureDerivative},
    {L".Dpressure", &SinglePhaseRow::pressureDerivative},
    {L".Dmoles", &SinglePhaseRow::molesDerivative},
};

} // namespace

SinglePhaseProperty findSinglePhaseProperty(std::wstring_view name) {
    const std::size_t dot = std::min(name.find(L'.'), name.size());
    const std::wstring_view base = name.substr(0, dot), suffix = name.substr(dot);
    for (const SinglePhaseRow& row : rows) {
        if (isSameName(row.name, base) || (!row.alias.empty() && isSameName(row.alias, base))) {
            for (const Derivative& derivative : derivatives) {
                if (isSameName(derivative.suffix, suffix)) {
                    return {row.perMole, row.*derivative.values};
                }
            }
        }
    }
    return {false, nullptr};
}

std::vector<std::wstring> singlePhasePropertyNames() {
    std::vector<std::wstring> names;
    for (const SinglePhaseRow& row : rows) {
        for (const Derivative& derivative : derivatives) {
            if (row.*derivative.values != nullptr) {
                names.push_back(std::wstring{row.name}.append(derivative.suffix));
            }
        }
    }
    return names;
}

} // namespace peng_robinson
