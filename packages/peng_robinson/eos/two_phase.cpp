#include "packages/peng_robinson/eos/two_phase.h"

#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/volume_shift.h"

#include <cmath>
#include <string>

namespace peng_robinson::eos {
namespace {

using Variable = Direction::Variable;

template <typename Number>
Number surfaceTension(const BasicPhaseProperties<Number>& first, const BasicPhaseProperties<Number>& second) {
    const Number v1 = shiftedVolume(first), v2 = shiftedVolume(second);
    Number fourthRoot = 0.0;
    for (std::size_t i = 0; i < first.x.size(); ++i) {
        if (isNothing(first.x[i]) && isNothing(second.x[i])) {
            continue;
        }
        const Compound& c = first.fluid->compound(i);
        const bool isThere = valueOf(first.x[i]) != 0.0 || valueOf(second.x[i]) != 0.0;
        if (isThere && std::isnan(c.parachor)) {
            throw NotAvailable{"The surface tension needs the parachor of " + std::string{c.name} +
                               ", which is not known"};
        }
        // From (mN/m)^(1/4) cm3/mol; the factor 1e-3 below completes it.
        const Number difference = first.x[i] / v1 - second.x[i] / v2;
        fourthRoot += share(difference, 1e-6 * c.parachor);
    }
    const Number square = fourthRoot * fourthRoot;
    return 1e-3 * square * square;
}

template <typename Number>
std::vector<Number> valuesOf(TwoPhaseProperty property, const BasicPhaseProperties<Number>& first,
                             const BasicPhaseProperties<Number>& second) {
    using std::exp;
    if (property == TwoPhaseProperty::surfaceTension) {
        return {surfaceTension(first, second)};
    }
    std::vector<Number> values;
    values.reserve(first.x.size());
    for (std::size_t i = 0; i < first.x.size(); ++i) {
        const Number lnK = second.state.lnPhi[i] - first.state.lnPhi[i];
        values.push_back(property == TwoPhaseProperty::kValue ? exp(lnK) : lnK);
    }
    return values;
}

} // namespace

std::vector<double> twoPhaseValues(TwoPhaseProperty property, Derivative derivative,
                                   DifferentiablePhase& first, DifferentiablePhase& second) {
    const auto along = [&](Direction ofFirst, Direction ofSecond) {
        return valuesOf(property, first.along(ofFirst), second.along(ofSecond));
    };
    switch (derivative) {
    case Derivative::none:
        return valuesOf(property, first.values(), second.values());
    case Derivative::temperature:
        return slopesOf(along({Variable::temperature}, {Variable::temperature}));
    case Derivative::pressure:
        return slopesOf(along({Variable::pressure}, {Variable::pressure}));
    case Derivative::moleFraction:
    case Derivative::moleNumber:
        break;
    }
    std::vector<double> result = compositionDerivatives(
        first.values().x,
        [&](std::size_t j) {
            return along({Variable::moleFraction, j}, {});
        },
        derivative, false);
    const std::vector<double> bySecond = compositionDerivatives(
        second.values().x,
        [&](std::size_t j) {
            return along({}, {Variable::moleFraction, j});
        },
        derivative, false);
    result.insert(result.end(), bySecond.begin(), bySecond.end());
    return result;
}

} // namespace peng_robinson::eos
