#include "packages/peng_robinson/eos/phase_slopes.h"

#include "packages/peng_robinson/eos/ideal_gas.h"
#include "packages/peng_robinson/eos/phase_equations.h"

#include <algorithm>
#include <iterator>

namespace peng_robinson::eos {
namespace {

using Variable = Direction::Variable;

// The implicit function theorem, which is one step of Newton's method: when f(root) = 0, f with a fixed root
// has the slope that the root must make up for.
Dual rootAlong(double root, const Dual& residual, double derivative) {
    return {root, -residual.slope / derivative};
}

PhaseSlopes slopesOf(const PhaseProperties& at, Direction direction) {
    const PengRobinson& model = at.fluid->model();
    const PhaseState& state = at.state;
    Dual T = state.T, P = state.P;
    std::vector<Dual> x(at.x.begin(), at.x.end());
    switch (direction.variable) {
    case Variable::none:
        break;
    case Variable::temperature:
        T.slope = 1.0;
        break;
    case Variable::pressure:
        P.slope = 1.0;
        break;
    case Variable::moleFraction:
        x[direction.compound].slope = 1.0;
        break;
    }
    constexpr Detail detail{.thermal = true};
    Attractions<Dual> attractions;
    setAttractions(model, T, attractions);
    BasicPhaseState<Dual> phase;
    mix<Dual>(model, attractions, x, detail, phase);
    const Dual RT = model.R() * T;

    // Volume and compressibility factor have equations of their own: that of the volume loses digits in a
    // dilute gas, that of the factor in a liquid at low pressure.
    const double v = state.v;
    const Dual pressure = RT / (v - phase.b) - phase.a / (v * (v + 2.0 * phase.b) - phase.b * phase.b);
    const Dual volume = rootAlong(v, pressure - P, state.dP_dv);
    const double z = state.Z;
    const auto [c2, c1, c0] = cubicCoefficients(phase, P, RT);
    const Dual Z = rootAlong(z, ((z + c2) * z + c1) * z + c0, (3.0 * z + 2.0 * c2.value) * z + c1.value);

    evaluatePhase<Dual>(model, attractions, P, Z, volume, x, detail, phase);
    return totalProperties(*at.fluid, std::move(phase), std::move(x));
}

} // namespace

const PhaseSlopes& DifferentiablePhase::along(Direction direction) {
    auto found = slopes_.find(direction);
    if (found == slopes_.end()) {
        found = slopes_.emplace(direction, slopesOf(values_, direction)).first;
    }
    return found->second;
}

std::vector<double> slopesOf(std::span<const Dual> values) {
    std::vector<double> slopes;
    slopes.reserve(values.size());
    std::ranges::transform(values, std::back_inserter(slopes), &Dual::slope);
    return slopes;
}

std::vector<double> compositionDerivatives(std::span<const double> x, const SlopesByCompound& slopes,
                                           Derivative kind, bool isProportional) {
    const std::size_t n = x.size();
    std::vector<double> result;
    std::vector<Dual> values;
    for (std::size_t j = 0; j < n; ++j) {
        values = slopes(j);
        result.resize(values.size() * n);
        for (std::size_t i = 0; i < values.size(); ++i) {
            result[i * n + j] = values[i].slope;
        }
    }
    if (kind == Derivative::moleNumber) {
        // With x_k = n_k / n: n (d/dn_j) = (d/dx_j) - sum_k x_k (d/dx_k).
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::span<double> row{result.data() + i * n, n};
            double common = isProportional ? -values[i].value : 0.0;
            for (std::size_t k = 0; k < n; ++k) {
                common += x[k] == 0.0 ? 0.0 : x[k] * row[k];
            }
            for (double& value : row) {
                value -= common;
            }
        }
    }
    return result;
}

} // namespace peng_robinson::eos
