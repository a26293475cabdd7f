#include "packages/peng_robinson/eos/volume_shift.h"

#include "packages/peng_robinson/eos/constants.h"

namespace peng_robinson::eos {

double volumeShiftOf(const Compound& c, const EquationConstants& constants) {
    const double T = c.liquidReferenceTemperature();
    if (!(c.liquidDensity > 0.0) || !(T < c.Tc)) {
        // The estimate of Peneloux et al. as Pedersen, Christensen, Phase Behavior of Petroleum Reservoir
        // Fluids (2007), chapter 4, give it for this equation, with the Rackett compressibility of Yamada,
        // Gunn, J. Chem. Eng. Data 18 (1973) 234.
        const double rackett = 0.29056 - 0.08775 * c.acentricFactor;
        return 0.50033 * constants.R * c.Tc / c.Pc * (0.25969 - rackett);
    }
    constexpr double one[] = {1.0};
    const PengRobinson pure{{{c.Tc, c.Pc, c.acentricFactor}}, InteractionMatrix{}, constants};
    // What the pressure of saturation would change in the volume of the liquid does not matter here.
    const PhaseState liquid = pure.at(T).phase(referencePressure, one, Root::liquid);
    return liquid.v - c.molecularWeight / 1000.0 / c.liquidDensity;
}

} // namespace peng_robinson::eos
