// Single phases against published numbers of the Peng-Robinson equation (Ind. Eng. Chem. Fundam. 15 (1976)
// 59), each with the constants that it was calculated with.
#include "tests/packages/peng_robinson/eos/support.h"

namespace peng_robinson::eos::test {
namespace {

constexpr Detail everything{.thermal = true, .moles = true};

struct NitrogenMethane : testing::Test {
    PengRobinson model = mixture({126.1, 190.6}, {3394000.0, 4604000.0}, {0.04, 0.011});
    std::vector<double> z{0.5, 0.5};
};

TEST_F(NitrogenMethane, ThreeVolumesAt115Kelvin) {
    const Isotherm isotherm = model.at(115.0);
    const CubicRoots factors = isotherm.compressibilityFactors(1e6, z);
    std::vector<double> volumes(factors.begin(), factors.end());
    for (double& value : volumes) {
        value *= isotherm.RT() / 1e6;
    }
    expectRelative(volumes, {3.6257362939705926e-05, 1.938347308115875e-4, 7.006659231347702e-4}, 1e-13);
}

TEST_F(NitrogenMethane, LiquidAndVaporAt115Kelvin) {
    const PhaseState liquid = model.at(115.0).phase(1e6, z, Root::liquid, everything);
    const PhaseState vapor = model.at(115.0).phase(1e6, z, Root::vapor, everything);
    expectRelative(liquid.a, 0.21876490011332972, 1e-13);
    expectRelative(liquid.da_dT, -6.346637957108072e-4, 1e-13);
    expectRelative(exponentials(liquid.lnPhi), {1.5877216764229214, 0.14693710450607678}, 1e-13);
    expectRelative(exponentials(vapor.lnPhi), {0.8730618494018239, 0.7162292765506479}, 1e-13);
    expectRelative(liquid.Z, 0.0379196385078025, 1e-13);
    expectRelative(vapor.Z, 0.732789049335691, 1e-13);
    expectRelative(liquid.residualEnthalpy, -6331.97968493208, 1e-13);
    expectRelative(liquid.residualEntropy, -49.0100482609038, 1e-13);
    expectRelative(vapor.residualEnthalpy, -657.64757795034, 1e-13);
    expectRelative(vapor.residualEntropy, -3.766838596836, 1e-12);
}

TEST_F(NitrogenMethane, GasAt300Kelvin) {
    const PhaseState gas = model.at(300.0).phase(1e7, z, Root::vapor, everything);
    expectRelative(exponentials(gas.lnPhi), {0.9855336740251448, 0.8338953860988254}, 1e-13);
    expectRelative(gas.Z, 0.924983790773373, 1e-13);
    expectRelative(gas.residualEnthalpy, -1098.43576476055, 1e-13);
    expectRelative(gas.residualEntropy, -2.84572351386241, 1e-13);
}

TEST_F(NitrogenMethane, FugacitiesAt700Kelvin) {
    const PhaseState gas = model.at(700.0).phase(1e6, z, Root::vapor, everything);
    const std::vector<double> phi = exponentials(gas.lnPhi);
    expectRelative({z[0] * phi[0] * 1e6, z[1] * phi[1] * 1e6}, {501802.41653963586, 500896.73250179}, 1e-13);
    expectRelative(gas.Z, 1.00270817771619, 1e-13);
    expectRelative(gas.residualEnthalpy, -9.64937437756951, 1e-11);
    expectRelative(gas.residualEntropy, -0.0361931699259052, 1e-11);
}

TEST(PublishedPhases, PentaneHexaneHeptaneWithInteractionParameters) {
    const PengRobinson model =
        mixture({469.7, 507.4, 540.3}, {3369000.0, 3012000.0, 2736000.0}, {0.249, 0.305, 0.349},
                {{0, 1, 0.00076}, {0, 2, 0.00171}, {1, 2, 0.00061}});
    const std::vector<double> z{0.8168, 0.1501, 0.0331};
    const PhaseState vapor = model.at(322.29).phase(101325.0, z, Root::vapor);
    const PhaseState liquid = model.at(322.29).phase(101325.0, z, Root::liquid);
    expectRelative(vapor.v, 0.025451314884217785, 1e-12);
    expectRelative(liquid.v, 1.2128151502941696e-4, 1e-12);
    expectRelative(exponentials(vapor.lnPhi), {0.9664750233480, 0.9532927851961, 0.9407280777215}, 1e-12);
    expectRelative(exponentials(liquid.lnPhi), {1.4518858939297, 0.5021880449341, 0.1851408567683}, 1e-12);
    // A textbook's spreadsheet with rounded constants.
    expectRelative(exponentials(vapor.lnPhi), {0.966475030274237, 0.953292801077091, 0.940728104174207},
                   5e-5);
    expectRelative(exponentials(liquid.lnPhi), {1.45191729893103, 0.502201064053298, 0.185146457753801},
                   5e-5);
}

TEST(PublishedPhases, LiquidHexaneWithAllDerivatives) {
    const PengRobinson model = mixture({507.6}, {3025000.0}, {0.2975});
    const std::vector<double> one{1.0};
    const PhaseState liquid = model.at(299.0).phase(1e6, one, Root::liquid, everything);
    expectRelative(liquid.a, 3.801262003434438, 1e-12);
    expectRelative(liquid.da_dT, -0.006647930535193546, 1e-12);
    expectRelative(liquid.d2a_dT2, 1.6930139095364687e-5, 1e-12);
    expectRelative(liquid.v, 1.3022212513965863e-4, 1e-12);
    expectRelative(std::exp(liquid.lnPhi[0]), 0.022212524527244346, 1e-12);
    expectRelative(liquid.residualEnthalpy, -31134.750843460362, 1e-12);
    expectRelative(liquid.residualEntropy, -72.475619319576, 1e-12);
    expectRelative(liquid.residualCv, 25.165386034971814, 1e-12);
    expectRelative(liquid.residualCp, 44.505614171906245, 1e-12);
    expectRelative(liquid.dP_dT, 582232.4757941114, 1e-12);
    expectRelative(liquid.dP_dv, -3665179372374.127, 1e-12);
}

TEST(PublishedPhases, PropaneNearAmbient) {
    const PengRobinson model = mixture({369.8}, {4249000.0}, {0.152});
    const std::vector<double> one{1.0};
    const PhaseState vapor = model.at(298.0).phase(1e5, one, Root::vapor, everything);
    const PhaseState liquid = model.at(298.0).phase(1e5, one, Root::liquid, everything);
    expectRelative(vapor.v, 0.024366034151169353, 1e-13);
    expectRelative(liquid.v, 8.681724253858589e-5, 1e-13);
    expectRelative(vapor.residualEnthalpy, -111.99060081493053, 1e-13);
    expectRelative(vapor.residualEntropy, -0.23863903817819482, 1e-12);
    const double residualInternalEnergy = vapor.residualEnthalpy - (1e5 * vapor.v - molarGasConstant * 298.0);
    expectRelative(residualInternalEnergy, -70.88415572220038, 1e-12);
    // The same formulas evaluated with 40 digits; a textbook with rounded constants has -16112.72391.
    expectRelative(liquid.residualEnthalpy, -16112.7665222554429, 1e-14);
    expectRelative(liquid.residualEntropy, -71.1582977251424912, 1e-14);
    expectRelative(liquid.residualEnthalpy, -16112.72391, 1e-5);
    expectRelative(1e5 * std::exp(vapor.lnPhi[0]), 98363.77793, 1e-9);
    expectRelative(1e5 * std::exp(liquid.lnPhi[0]), 780908.296, 1e-9);
}

TEST(PublishedPhases, DerivativesOfFugacityCoefficients) {
    const PengRobinson model = mixture({126.2, 190.6, 305.4}, {3390000.0, 4600000.0, 4880000.0},
                                       {0.04, 0.008, 0.098}, {{0, 1, 0.038}, {0, 2, 0.08}, {1, 2, 0.021}});
    const std::vector<double> z{0.3, 0.1, 0.6};
    const PhaseState gas = model.at(270.0).phase(7600000.0, z, Root::vapor, everything);
    expectRelative(gas.Z, 0.49632709443146, 1e-11);
    expectRelative(gas.lnPhi, {0.37900626784756, -0.10197552828393, -0.98188086291668}, 1e-11);
    expectRelative(gas.dlnPhi_dT, {-0.0125202946344780, -0.00154326287196778, 0.0185468995722353}, 1e-11);
    expectRelative(gas.dlnPhi_dP, {8.49254218440054e-8, -3.44512799711331e-9, -1.52343107476988e-7}, 1e-11);
}

TEST(PublishedPhases, DecaneLiquidVolume) {
    const PengRobinson model = mixture({611.7}, {2.11e6}, {0.49});
    const std::vector<double> one{1.0};
    expectRelative(model.at(300.0).phase(1e5, one, Root::liquid).v, 2.0989856076374984e-4, 1e-13);
}

} // namespace
} // namespace peng_robinson::eos::test
