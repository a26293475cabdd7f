#include "packages/peng_robinson/com/single_phase_table.h"

#include "packages/peng_robinson/com/property_name.h"
#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/transport.h"

#include <array>
#include <cmath>
#include <string>

namespace peng_robinson {
namespace {

using eos::Derivative;
using eos::Dual;
using Variable = eos::Direction::Variable;

// Each property is one formula for numbers of both kinds: F is a generic function of a phase, or of a phase
// and the index of a compound.
template <auto F, typename Number>
std::vector<Number> only(const eos::BasicPhaseProperties<Number>& phase) {
    return {F(phase)};
}
template <auto F, typename Number>
std::vector<Number> forAll(const eos::BasicPhaseProperties<Number>& phase) {
    std::vector<Number> values(phase.x.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = F(phase, i);
    }
    return values;
}
template <auto F>
constexpr SinglePhaseRow one(std::wstring_view name, Scaling scaling, std::wstring_view alias = {}) {
    return {name, alias, scaling, only<F, double>, only<F, Dual>};
}
template <auto F>
constexpr SinglePhaseRow each(std::wstring_view name) {
    return {name, {}, Scaling::none, forAll<F, double>, forAll<F, Dual>};
}

// Compounds of a definition need not have the properties of formation.
void requireFormation(const auto& phase, const char* property, double eos::Compound::*constant,
                      const char* name) {
    for (std::size_t i = 0; i < phase.x.size(); ++i) {
        const eos::Compound& compound = phase.fluid->compound(i);
        if (eos::valueOf(phase.x[i]) != 0.0 && std::isnan(compound.*constant)) {
            throw eos::NotAvailable{std::string{property} + " needs the " + name + " of " +
                                    std::string{compound.name} + ", which is not known"};
        }
    }
}

constexpr auto compressibility = [](const auto& p) { return p.compressibility(); };
constexpr auto compressibilityFactor = [](const auto& p) { return p.state.Z; };
constexpr auto density = [](const auto& p) { return p.density(); };
constexpr auto enthalpy = [](const auto& p) { return p.enthalpy; };
constexpr auto enthalpyF = [](const auto& p) {
    requireFormation(p, "enthalpyF", &eos::Compound::formationEnthalpy, "enthalpy of formation");
    return p.enthalpy + p.formationEnthalpy;
};
constexpr auto entropy = [](const auto& p) { return p.entropy; };
constexpr auto entropyF = [](const auto& p) {
    requireFormation(p, "entropyF", &eos::Compound::formationEnthalpy, "enthalpy of formation");
    requireFormation(p, "entropyF", &eos::Compound::formationGibbs, "Gibbs energy of formation");
    return p.entropy + p.formationEntropy;
};
constexpr auto gibbsEnergy = [](const auto& p) { return p.gibbsEnergy(); };
constexpr auto heatCapacityCp = [](const auto& p) { return p.Cp; };
constexpr auto heatCapacityCv = [](const auto& p) { return p.Cv; };
constexpr auto helmholtzEnergy = [](const auto& p) { return p.helmholtzEnergy(); };
constexpr auto internalEnergy = [](const auto& p) { return p.internalEnergy(); };
constexpr auto jouleThomsonCoefficient = [](const auto& p) { return p.jouleThomsonCoefficient(); };
constexpr auto molecularWeight = [](const auto& p) { return p.molecularWeight; };
constexpr auto speedOfSound = [](const auto& p) { return p.speedOfSound(); };
constexpr auto thermalConductivity = [](const auto& p) { return eos::thermalConductivity(p); };
constexpr auto viscosity = [](const auto& p) { return eos::viscosity(p); };
constexpr auto volume = [](const auto& p) { return p.state.v; };

constexpr auto logFugacityCoefficient = [](const auto& p, std::size_t i) { return p.state.lnPhi[i]; };
constexpr auto fugacityCoefficient = [](const auto& p, std::size_t i) {
    using std::exp;
    return exp(p.state.lnPhi[i]);
};
constexpr auto fugacity = [](const auto& p, std::size_t i) {
    return p.x[i] * fugacityCoefficient(p, i) * p.state.P;
};

constexpr std::array rows{
    one<compressibility>(L"compressibility", Scaling::none),
    one<compressibilityFactor>(L"compressibilityFactor", Scaling::none),
    one<density>(L"density", Scaling::perVolume),
    one<enthalpy>(L"enthalpy", Scaling::perMole),
    one<enthalpyF>(L"enthalpyF", Scaling::perMole),
    one<enthalpy>(L"enthalpyNF", Scaling::perMole),
    one<entropy>(L"entropy", Scaling::perMole),
    one<entropyF>(L"entropyF", Scaling::perMole),
    one<entropy>(L"entropyNF", Scaling::perMole),
    each<fugacity>(L"fugacity"),
    each<fugacityCoefficient>(L"fugacityCoefficient"),
    one<gibbsEnergy>(L"gibbsEnergy", Scaling::perMole, L"gibbsFreeEnergy"),
    one<heatCapacityCp>(L"heatCapacityCp", Scaling::perMole, L"heatCapacity"),
    one<heatCapacityCv>(L"heatCapacityCv", Scaling::perMole),
    one<helmholtzEnergy>(L"helmholtzEnergy", Scaling::perMole, L"helmholtzFreeEnergy"),
    one<internalEnergy>(L"internalEnergy", Scaling::perMole, L"energy"),
    one<jouleThomsonCoefficient>(L"jouleThomsonCoefficient", Scaling::none),
    each<logFugacityCoefficient>(L"logFugacityCoefficient"),
    one<molecularWeight>(L"molecularWeight", Scaling::none),
    one<speedOfSound>(L"speedOfSound", Scaling::none),
    one<thermalConductivity>(L"thermalConductivity", Scaling::none),
    one<viscosity>(L"viscosity", Scaling::none),
    one<volume>(L"volume", Scaling::perMole),
};

} // namespace

std::vector<double> SinglePhaseProperty::valuesOf(eos::DifferentiablePhase& phase) const {
    const auto along = [&](eos::Direction direction) { return row->slopes(phase.along(direction)); };
    switch (derivative) {
    case Derivative::none:
        return row->values(phase.values());
    case Derivative::temperature:
        return eos::slopesOf(along({Variable::temperature}));
    case Derivative::pressure:
        return eos::slopesOf(along({Variable::pressure}));
    case Derivative::moleFraction:
    case Derivative::moleNumber:
        break;
    }
    return eos::compositionDerivatives(
        phase.values().x,
        [&](std::size_t j) {
            return along({Variable::moleFraction, j});
        },
        derivative, row->scaling == Scaling::perMole);
}

SinglePhaseProperty findSinglePhaseProperty(std::wstring_view text) noexcept {
    if (const auto name = readPropertyName(text)) {
        for (const SinglePhaseRow& row : rows) {
            if (isSameName(row.name, name->base) ||
                (!row.alias.empty() && isSameName(row.alias, name->base))) {
                return {&row, name->derivative};
            }
        }
    }
    return {nullptr, Derivative::none};
}

std::vector<std::wstring> singlePhasePropertyNames() {
    std::vector<std::wstring> names;
    for (const SinglePhaseRow& row : rows) {
        for (const DerivativeName& derivative : derivativeNames) {
            names.push_back(std::wstring{row.name}.append(derivative.suffix));
        }
    }
    return names;
}

} // namespace peng_robinson
