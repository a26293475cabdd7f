#include "packages/peng_robinson/com/single_phase_table.h"

#include "packages/peng_robinson/com/values.h"

#include <array>
#include <cmath>

namespace peng_robinson {
namespace {

using eos::PhaseProperties;
using Point = PhasePoint;
using Values = std::vector<double>;

double dv_dT(const PhaseProperties& p) { return -p.state.dP_dT / p.state.dP_dv; }
double dv_dP(const PhaseProperties& p) { return 1.0 / p.state.dP_dv; }

/// A property with one value.
template <auto F>
Values scalar(const Point& at) {
    return {F(at.properties)};
}

/// A property with a value for each compound.
template <auto F>
Values perCompound(const Point& at) {
    Values values(at.x.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = F(at.properties.state, at.x[i], i);
    }
    return values;
}

Values lnPhiByMoles(const Point& at) {
    return at.fluid.model()
        .at(at.properties.state.T)
        .phase(at.properties.state.P, at.x, at.root, {.moles = true})
        .dlnPhi_dn;
}

double gibbs(const PhaseProperties& p) { return p.gibbsEnergy(); }
double phi(const eos::PhaseState& s, std::size_t i) { return std::exp(s.lnPhi[i]); }

constexpr auto enthalpySlope = scalar<[](const PhaseProperties& p) { return p.Cp; }>;
constexpr auto enthalpyByPressure =
    scalar<[](const PhaseProperties& p) { return p.state.v - p.state.T * dv_dT(p); }>;
constexpr auto entropySlope = scalar<[](const PhaseProperties& p) { return p.Cp / p.state.T; }>;
constexpr auto entropyByPressure = scalar<[](const PhaseProperties& p) { return -dv_dT(p); }>;

// clang-format off
constexpr std::array rows{
    SinglePhaseRow{L"compressibility", {}, false,
        scalar<[](const PhaseProperties& p) { return p.compressibility(); }>, nullptr, nullptr, nullptr},
    SinglePhaseRow{L"compressibilityFactor", {}, false,
        scalar<[](const PhaseProperties& p) { return p.state.Z; }>,
        scalar<[](const PhaseProperties& p) { return p.state.Z * (dv_dT(p) / p.state.v - 1.0 / p.state.T); }>,
        scalar<[](const PhaseProperties& p) { return p.state.Z * (dv_dP(p) / p.state.v + 1.0 / p.state.P); }>, nullptr},
    SinglePhaseRow{L"density", {}, true,
        scalar<[](const PhaseProperties& p) { return p.density(); }>,
        scalar<[](const PhaseProperties& p) { return -dv_dT(p) / (p.state.v * p.state.v); }>,
        scalar<[](const PhaseProperties& p) { return -dv_dP(p) / (p.state.v * p.state.v); }>, nullptr},
    SinglePhaseRow{L"enthalpy", {}, true,
        scalar<[](const PhaseProperties& p) { return p.enthalpy; }>, enthalpySlope, enthalpyByPressure, nullptr},
    SinglePhaseRow{L"enthalpyF", {}, true,
        scalar<[](const PhaseProperties& p) { return p.enthalpy + p.formationEnthalpy; }>, enthalpySlope, enthalpyByPressure,
        nullptr},
    SinglePhaseRow{L"enthalpyNF", {}, true,
        scalar<[](const PhaseProperties& p) { return p.enthalpy; }>, enthalpySlope, enthalpyByPressure, nullptr},
    SinglePhaseRow{L"entropy", {}, true,
        scalar<[](const PhaseProperties& p) { return p.entropy; }>, entropySlope, entropyByPressure, nullptr},
    SinglePhaseRow{L"entropyF", {}, true,
        scalar<[](const PhaseProperties& p) { return p.entropy + p.formationEntropy; }>, entropySlope, entropyByPressure,
        nullptr},
    SinglePhaseRow{L"entropyNF", {}, true,
        scalar<[](const PhaseProperties& p) { return p.entropy; }>, entropySlope, entropyByPressure, nullptr},
    SinglePhaseRow{L"fugacity", {}, false,
        perCompound<[](const eos::PhaseState& s, double x, std::size_t i) { return x * phi(s, i) * s.P; }>,
        perCompound<[](const eos::PhaseState& s, double x, std::size_t i) { return x * phi(s, i) * s.P * s.dlnPhi_dT[i]; }>,
        perCompound<[](const eos::PhaseState& s, double x, std::size_t i) {
            return x * phi(s, i) * (1.0 + s.P * s.dlnPhi_dP[i]); }>, nullptr},
    SinglePhaseRow{L"fugacityCoefficient", {}, false,
        perCompound<[](const eos::PhaseState& s, double, std::size_t i) { return phi(s, i); }>,
        perCompound<[](const eos::PhaseState& s, double, std::size_t i) { return phi(s, i) * s.dlnPhi_dT[i]; }>,
        perCompound<[](const eos::PhaseState& s, double, std::size_t i) { return phi(s, i) * s.dlnPhi_dP[i]; }>, nullptr},
    SinglePhaseRow{L"gibbsEnergy", L"gibbsFreeEnergy", true,
        scalar<gibbs>,
        scalar<[](const PhaseProperties& p) { return -p.entropy; }>,
        scalar<[](const PhaseProperties& p) { return p.state.v; }>, nullptr},
    SinglePhaseRow{L"heatCapacityCp", L"heatCapacity", true,
        scalar<[](const PhaseProperties& p) { return p.Cp; }>, nullptr, nullptr, nullptr},
    SinglePhaseRow{L"heatCapacityCv", {}, true,
        scalar<[](const PhaseProperties& p) { return p.Cv; }>, nullptr, nullptr, nullptr},
    SinglePhaseRow{L"helmholtzEnergy", L"helmholtzFreeEnergy", true,
        scalar<[](const PhaseProperties& p) { return p.helmholtzEnergy(); }>,
        scalar<[](const PhaseProperties& p) { return -p.entropy - p.state.P * dv_dT(p); }>,
        scalar<[](const PhaseProperties& p) { return -p.state.P * dv_dP(p); }>, nullptr},
    SinglePhaseRow{L"internalEnergy", L"energy", true,
        scalar<[](const PhaseProperties& p) { return p.internalEnergy(); }>,
        scalar<[](const PhaseProperties& p) { return p.Cp - p.state.P * dv_dT(p); }>,
        scalar<[](const PhaseProperties& p) { return -p.state.T * dv_dT(p) - p.state.P * dv_dP(p); }>, nullptr},
    SinglePhaseRow{L"jouleThomsonCoefficient", {}, false,
        scalar<[](const PhaseProperties& p) { return p.jouleThomsonCoefficient(); }>, nullptr, nullptr, nullptr},
    SinglePhaseRow{L"logFugacityCoefficient", {}, false,
        perCompound<[](const eos::PhaseState& s, double, std::size_t i) { return s.lnPhi[i]; }>,
        perCompound<[](const eos::PhaseState& s, double, std::size_t i) { return s.dlnPhi_dT[i]; }>,
        perCompound<[](const eos::PhaseState& s, double, std::size_t i) { return s.dlnPhi_dP[i]; }>, lnPhiByMoles},
    SinglePhaseRow{L"molecularWeight", {}, false,
        scalar<[](const PhaseProperties& p) { return p.molecularWeight; }>, nullptr, nullptr, nullptr},
    SinglePhaseRow{L"speedOfSound", {}, false,
        scalar<[](const PhaseProperties& p) { return p.speedOfSound(); }>, nullptr, nullptr, nullptr},
    SinglePhaseRow{L"volume", {}, true,
        scalar<[](const PhaseProperties& p) { return p.state.v; }>, scalar<dv_dT>, scalar<dv_dP>, nullptr},
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
