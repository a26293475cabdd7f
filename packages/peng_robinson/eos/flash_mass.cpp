#include "packages/peng_robinson/eos/flash_mass.h"

#include "packages/peng_robinson/eos/bracketing.h"
#include "packages/peng_robinson/eos/errors.h"

#include <functional>

namespace peng_robinson::eos {
namespace {

Equilibrium flashMassFraction(const Fluid& fluid, double massFraction, std::span<const double> amounts,
                              const std::function<Equilibrium(double)>& flashMoleFraction) {
    if (!(massFraction >= 0.0 && massFraction <= 1.0)) {
        throw OutOfRange{"A vapor fraction must lie between 0 and 1", massFraction, 0.0, 1.0};
    }
    if (massFraction == 0.0 || massFraction == 1.0) {
        return flashMoleFraction(massFraction);
    }
    const double overall = fluid.molecularWeight(normalisedComposition(amounts, fluid.size()));
    const auto excess = [&](double moleFraction) {
        return moleFraction * fluid.molecularWeight(flashMoleFraction(moleFraction).vapor->x) / overall -
               massFraction;
    };
    return flashMoleFraction(solveRising(excess, 0.0, -massFraction, 1.0, 1.0 - massFraction, 1e-14));
}

} // namespace

Equilibrium flashTVaporMassFraction(const Fluid& fluid, double T, double massFraction,
                                    std::span<const double> z, SolutionType wanted) {
    return flashMassFraction(fluid, massFraction, z, [&](double moleFraction) {
        return flashTVaporFraction(fluid.model(), T, moleFraction, z, wanted);
    });
}

Equilibrium flashPVaporMassFraction(const Fluid& fluid, double P, double massFraction,
                                    std::span<const double> z, SolutionType wanted) {
    return flashMassFraction(fluid, massFraction, z, [&](double moleFraction) {
        return flashPVaporFraction(fluid.model(), P, moleFraction, z, wanted);
    });
}

} // namespace peng_robinson::eos
