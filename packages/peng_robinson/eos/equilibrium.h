// The answer of a flash: temperature, pressure and the phases that are there. A phase can be there in zero
// amount: the bubble at a bubble point, the drop at a dew point.
#pragma once

#include <optional>
#include <vector>

namespace peng_robinson::eos {

struct PhaseAmount {
    double fraction = 0.0; ///< moles of this phase per mole of mixture
    std::vector<double> x; ///< mole fractions
};

struct Equilibrium {
    double T = 0.0, P = 0.0; ///< K, Pa
    std::optional<PhaseAmount> vapor, liquid;
};

} // namespace peng_robinson::eos
