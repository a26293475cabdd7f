// Published mixtures given as package definitions: the same digits as the equation evaluated directly, and
// published numbers of the Peng-Robinson equation (Ind. Eng. Chem. Fundam. 15 (1976) 59), each with the
// constants that it was calculated with.
#include "packages/peng_robinson/catalogue/configuration.h"
#include "packages/peng_robinson/eos/flash.h"
#include "tests/packages/peng_robinson/definition/support.h"

#include <cmath>
#include <sstream>

namespace peng_robinson::test {
namespace {

struct Pair {
    std::size_t i, j;
    double k;
};

struct Case {
    std::vector<double> Tc, Pc, w;
    std::vector<Pair> k;
    std::string settings;
    eos::EquationConstants constants;

    std::string text() const {
        std::ostringstream file;
        file.precision(17);
        file << "[package]\n" << settings << "[compounds]\n" << header;
        for (std::size_t i = 0; i < Tc.size(); ++i) {
            file << "c" << i << ",,,30," << Tc[i] << ',' << Pc[i] << ',' << w[i] << ",,40\n";
        }
        file << "[binary parameters]\ncompound 1,compound 2,k\n";
        for (const auto& [i, j, value] : k) {
            file << "c" << i << ",c" << j << ',' << value << '\n';
        }
        return file.str();
    }
    eos::Fluid defined() const {
        catalogue = readDefinition(text(), "Case");
        const Configuration all = Configuration::allOf(catalogue);
        return all.fluidOf(all.selection().compounds);
    }
    eos::PengRobinson direct() const {
        std::vector<eos::CriticalConstants> components;
        eos::InteractionMatrix matrix{Tc.size()};
        for (std::size_t i = 0; i < Tc.size(); ++i) {
            components.push_back({Tc[i], Pc[i], w[i]});
        }
        for (const auto& [i, j, value] : k) {
            matrix.set(i, j, value);
        }
        return eos::PengRobinson{std::move(components), std::move(matrix), constants};
    }

    mutable std::shared_ptr<const Catalogue> catalogue = nullptr; ///< the fluid refers to it
};

void expectSamePhases(const Case& published, double T, double P, const std::vector<double>& z) {
    const eos::Fluid fluid = published.defined();
    const eos::PengRobinson direct = published.direct();
    for (const eos::Root root : {eos::Root::vapor, eos::Root::liquid}) {
        const eos::PhaseState given = fluid.model().at(T).phase(P, z, root, {.thermal = true});
        const eos::PhaseState wanted = direct.at(T).phase(P, z, root, {.thermal = true});
        EXPECT_EQ(given.v, wanted.v);
        EXPECT_EQ(given.lnPhi, wanted.lnPhi);
        EXPECT_EQ(given.residualEnthalpy, wanted.residualEnthalpy);
        EXPECT_EQ(given.residualEntropy, wanted.residualEntropy);
    }
}

const Case pentaneHexaneHeptane{{469.7, 507.4, 540.3},
                                {3369000.0, 3012000.0, 2736000.0},
                                {0.249, 0.305, 0.349},
                                {{0, 1, 0.00076}, {0, 2, 0.00171}, {1, 2, 0.00061}},
                                {},
                                {}};

const Case nitrogenMethaneEthane{{126.2, 190.6, 305.4},
                                 {3390000.0, 4600000.0, 4880000.0},
                                 {0.04, 0.008, 0.098},
                                 {{0, 1, 0.038}, {0, 2, 0.08}, {1, 2, 0.021}},
                                 {},
                                 {}};

const Case alkanes{{190.564, 305.32, 369.83, 425.12, 469.7, 507.6, 540.2, 568.7, 594.6, 611.7},
                   {4599000.0, 4872000.0, 4248000.0, 3796000.0, 3370000.0, 3025000.0, 2740000.0, 2490000.0,
                    2290000.0, 2110000.0},
                   {0.008, 0.098, 0.152, 0.193, 0.251, 0.2975, 0.3457, 0.394, 0.444, 0.49},
                   {},
                   {},
                   {}};

const Case gasWithItsOwnConstants{{126.1, 304.19, 190.56, 305.32, 540.2},
                                  {3394400.0, 7381500.0, 4599000.0, 4872000.0, 2740000.0},
                                  {0.0403, 0.2276, 0.0115, 0.0995, 0.3495},
                                  {{0, 2, 0.0319},
                                   {1, 2, 0.0973},
                                   {2, 3, 0.00295295},
                                   {0, 3, 0.0388},
                                   {1, 3, 0.12980001},
                                   {1, 4, 0.1},
                                   {0, 1, -0.019997},
                                   {0, 4, 0.142199993}},
                                  "gas constant,8.3144621\nomega a,0.45724333333\nomega b,0.077803333\n",
                                  {8.3144621, 0.45724333333, 0.077803333}};

TEST(PublishedDefinitions, GiveTheDigitsOfTheEquation) {
    expectSamePhases(pentaneHexaneHeptane, 322.29, 101325.0, {0.8168, 0.1501, 0.0331});
    expectSamePhases(nitrogenMethaneEthane, 270.0, 7600000.0, {0.3, 0.1, 0.6});
    expectSamePhases(alkanes, 300.0, 1e5, std::vector<double>(10, 0.1));
    expectSamePhases(gasWithItsOwnConstants, 298.0, 1e6, {0.01, 0.01, 0.68, 0.1, 0.2});
}

TEST(PublishedDefinitions, PentaneHexaneHeptane) {
    const std::vector<double> z{0.8168, 0.1501, 0.0331};
    const eos::Fluid fluid = pentaneHexaneHeptane.defined();
    EXPECT_NEAR(fluid.model().at(322.29).phase(101325.0, z, eos::Root::vapor).v, 0.025451314884217785,
                2.5e-14);
    EXPECT_NEAR(fluid.model().at(322.29).phase(101325.0, z, eos::Root::liquid).v, 1.2128151502941696e-4,
                1.2e-16);
}

TEST(PublishedDefinitions, NitrogenMethaneEthane) {
    const std::vector<double> z{0.3, 0.1, 0.6};
    const eos::Fluid fluid = nitrogenMethaneEthane.defined();
    const eos::PhaseState gas = fluid.model().at(270.0).phase(7600000.0, z, eos::Root::vapor);
    EXPECT_NEAR(gas.Z, 0.49632709443146, 5e-12);
    EXPECT_NEAR(gas.lnPhi[0], 0.37900626784756, 4e-12);
    EXPECT_NEAR(gas.lnPhi[1], -0.10197552828393, 1e-12);
    EXPECT_NEAR(gas.lnPhi[2], -0.98188086291668, 1e-11);
}

TEST(PublishedDefinitions, TenAlkanesFlash) {
    const eos::Fluid fluid = alkanes.defined();
    const eos::Equilibrium result =
        eos::flashTP(fluid.model(), 300.0, 1e5, std::vector<double>(10, 0.1), eos::PhasesAllowed::both);
    ASSERT_TRUE(result.vapor.has_value());
    EXPECT_NEAR(result.vapor->fraction, 0.3933480634014041, 4e-10);
}

TEST(PublishedDefinitions, GasWithRoundedConstants) {
    const eos::Fluid fluid = gasWithItsOwnConstants.defined();
    const eos::Equilibrium result = eos::flashTP(
        fluid.model(), 298.0, 1e6, std::vector<double>{0.01, 0.01, 0.68, 0.1, 0.2}, eos::PhasesAllowed::both);
    ASSERT_TRUE(result.vapor.has_value());
    EXPECT_NEAR(result.vapor->fraction, 0.7881658913591083, 1e-12);
    const eos::PhaseState gas = fluid.model().at(298.0).phase(1e6, result.vapor->x, eos::Root::vapor);
    EXPECT_NEAR(gas.Z, 0.9708455641951108, 1e-13);
}

} // namespace
} // namespace peng_robinson::test
