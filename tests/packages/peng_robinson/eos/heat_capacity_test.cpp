// Heat capacities that are polynomials; the hyperbolic form is tested with the compounds that have it.
#include "packages/peng_robinson/eos/heat_capacity.h"

#include "tests/packages/peng_robinson/eos/support.h"

namespace peng_robinson::eos::test {
namespace {

// Methane between 298 and 1500 K, in J/(mol K): Reid, Prausnitz, Poling, The Properties of Gases and Liquids,
// 4th ed. (1987).
HeatCapacity methane() {
    HeatCapacity c;
    c.constant = 19.25;
    c.powers = {5.213e-2, 1.197e-5, -1.132e-8, 0.0};
    c.Tmin = 250.0;
    c.Tmax = 1500.0;
    return c;
}

TEST(PolynomialHeatCapacity, IsThePolynomialWithinItsRange) {
    expectRelative(methane().cp(400.0), 19.25 + 5.213e-2 * 400.0 + 1.197e-5 * 160000.0 - 1.132e-8 * 6.4e7,
                   1e-15);
}

TEST(PolynomialHeatCapacity, KeepsTheValuesAtTheEndsOfItsRange) {
    EXPECT_EQ(methane().cp(100.0), methane().cp(250.0));
    EXPECT_EQ(methane().cp(4000.0), methane().cp(1500.0));
}

TEST(PolynomialHeatCapacity, EnthalpyAndEntropyAreItsIntegrals) {
    for (const double T : {60.0, 200.0, 300.0, 900.0, 1400.0, 2500.0}) {
        const double step = 1e-3 * T;
        const double dh = methane().enthalpy(T + step) - methane().enthalpy(T - step);
        const double ds = methane().entropy(T + step) - methane().entropy(T - step);
        const double dCp = methane().cp(T + step) - methane().cp(T - step);
        EXPECT_NEAR(dCp / (2.0 * step), methane().dCp_dT(T), 1e-6) << T;
        expectRelative(dh / (2.0 * step), methane().cp(T), 1e-6, "dh/dT at " + std::to_string(T));
        expectRelative(ds / (2.0 * step), methane().cp(T) / T, 1e-6, "ds/dT at " + std::to_string(T));
    }
}

TEST(PolynomialHeatCapacity, EnthalpyAndEntropyVanishAtTheReferenceTemperature) {
    EXPECT_EQ(methane().enthalpy(referenceTemperature), 0.0);
    EXPECT_EQ(methane().entropy(referenceTemperature), 0.0);
}

TEST(PolynomialHeatCapacity, ConstantHeatCapacityNeedsNoRange) {
    HeatCapacity c;
    c.constant = 30.0;
    expectRelative(c.enthalpy(400.0), 30.0 * (400.0 - referenceTemperature), 1e-14);
    expectRelative(c.entropy(400.0), 30.0 * std::log(400.0 / referenceTemperature), 1e-14);
}

} // namespace
} // namespace peng_robinson::eos::test
