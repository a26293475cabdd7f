// Flashes, bubble and dew points against published numbers of the Peng-Robinson equation (Ind. Eng. Chem.
// Fundam. 15 (1976) 59), each with the constants that it was calculated with.
#include "packages/peng_robinson/eos/flash.h"
#include "tests/packages/peng_robinson/eos/support.h"

namespace peng_robinson::eos::test {
namespace {

void expectTwoPhases(const Equilibrium& result, double vaporFraction, const std::vector<double>& x,
                     const std::vector<double>& y, double tolerance) {
    ASSERT_TRUE(result.vapor && result.liquid);
    expectRelative(result.vapor->fraction, vaporFraction, tolerance, "vapour fraction");
    expectRelative(result.liquid->x, x, tolerance, "x");
    expectRelative(result.vapor->x, y, tolerance, "y");
}

TEST(PublishedFlashes, TenAlkanesFromMethaneToDecane) {
    const PengRobinson model =
        mixture({190.564, 305.32, 369.83, 425.12, 469.7, 507.6, 540.2, 568.7, 594.6, 611.7},
                {4599000.0, 4872000.0, 4248000.0, 3796000.0, 3370000.0, 3025000.0, 2740000.0, 2490000.0,
                 2290000.0, 2110000.0},
                {0.008, 0.098, 0.152, 0.193, 0.251, 0.2975, 0.3457, 0.394, 0.444, 0.49});
    const std::vector<double> z(10, 0.1);
    const Equilibrium result = flashTP(model, 300.0, 1e5, z);
    expectTwoPhases(
        result, 0.393348063627238,
        {0.001465490233164, 0.007841226018122, 0.024851366919494, 0.062806770618088, 0.111484785391744,
         0.143382779128696, 0.157313221622231, 0.162320852023913, 0.164023343373789, 0.164510164670758},
        {0.251967574464125, 0.242134419512050, 0.215900058979973, 0.157362287274091, 0.082287271907535,
         0.033091708343591, 0.011607097906455, 0.003883941341743, 0.001258226943823, 0.000507413326615},
        1e-9);
    expectRelative(result.vapor->fraction, 0.3933480634014041, 1e-9);
}

TEST(PublishedFlashes, FurfuralAndFurfurylAlcohol) {
    const PengRobinson model = mixture({670.0, 632.0}, {5510000.0, 5350000.0}, {0.4522, 0.734});
    const std::vector<double> z{0.5, 0.5};
    expectRelative(flashPVaporFraction(model, 1e6, 0.0, z).T, 539.1838522423529, 1e-12);
    expectRelative(flashPVaporFraction(model, 1e6, 1.0, z).T, 540.2081697501809, 1e-12);
    expectRelative(flashTVaporFraction(model, 600.0, 0.0, z).P, 2766476.7473238464, 1e-12);
    expectRelative(flashTVaporFraction(model, 600.0, 1.0, z).P, 2702616.6490743402, 1e-12);
}

TEST(PublishedFlashes, CarbonDioxideAndMethaneNearTheirCriticalPoint) {
    const PengRobinson model =
        mixture({304.2, 190.6}, {7380000.0, 4600000.0}, {0.225, 0.008}, {{0, 1, 0.095}});
    const std::vector<double> z{0.43, 0.57};
    const Equilibrium result = flashTP(model, 220.0, 6080000.0, z);
    expectTwoPhases(result, 0.0485533537664, {0.442119693437, 0.557880306563},
                    {0.192503704080, 0.807496295920}, 1e-10);
    expectRelative(result.vapor->fraction, 0.04855003898, 1e-4);
}

TEST(PublishedFlashes, MethaneEthaneNitrogen) {
    const PengRobinson model =
        mixture({190.564, 305.32, 126.2}, {4599000.0, 4872000.0, 3394387.5}, {0.008, 0.098, 0.04},
                {{0, 1, -0.0059}, {0, 2, 0.0289}, {1, 2, 0.0533}});
    const std::vector<double> z{0.965, 0.018, 0.017};
    expectTwoPhases(flashTP(model, 110.0, 1e5, z), 0.10365811421741843,
                    {0.9746230250107605, 0.02007852867924521, 0.005298446309994311},
                    {0.8817887584083738, 2.6758541062044167e-05, 0.11818448305056425}, 1e-12);
    expectRelative(flashPVaporFraction(model, 1e5, 1.0, z).T, 133.65815908907126, 1e-12);
    expectRelative(flashTVaporFraction(model, 133.0, 0.0, z).P, 518367.3577265032, 1e-12);
}

struct ButanesToHexane : testing::Test {
    PengRobinson model = mixture({408.14, 425.12, 469.7, 507.6}, {3620000.0, 3770000.0, 3360000.0, 3040000.0},
                                 {0.177, 0.197, 0.251, 0.304});
    std::vector<double> z{0.25, 0.25, 0.25, 0.25};
};

TEST_F(ButanesToHexane, LiquidJustBelowTheBubblePoint) {
    const Equilibrium result = flashTP(model, 282.2, 1e5, z);
    EXPECT_TRUE(result.liquid);
    EXPECT_FALSE(result.vapor);
}

TEST_F(ButanesToHexane, FirstVaporJustAboveTheBubblePoint) {
    expectTwoPhases(flashTP(model, 282.3, 1e5, z), 0.0008916102299747,
                    {0.24975531522, 0.24990626251, 0.25013856690, 0.25019985537},
                    {0.524185521175, 0.355039072896, 0.094726601078, 0.026048804851}, 1e-8);
}

TEST_F(ButanesToHexane, ATenthVaporized) {
    expectTwoPhases(flashTP(model, 284.4, 1e5, z), 0.10143251127265655,
                    {0.2220766508414, 0.2374113008457, 0.2658557804194, 0.2746562678935},
                    {0.49736658311504, 0.36152041533284, 0.10953725669927, 0.03157574485285}, 1e-8);
}

// Enthalpy and entropy differences between states of equal temperature need no ideal-gas heat capacity.
struct EthaneHeptane : testing::Test {
    PengRobinson model = mixture({305.322, 540.13}, {4872200.0, 2736000.0}, {0.099, 0.349});
    std::vector<double> z{0.4, 0.6};

    struct Value {
        double h, s;
    };
    Value phase(double T, double P, const std::vector<double>& x, Root root) const {
        const PhaseState state = model.at(T).phase(P, x, root, {.thermal = true});
        double s = state.residualEntropy - molarGasConstant * std::log(P);
        for (const double fraction : x) {
            s -= molarGasConstant * fraction * std::log(fraction);
        }
        return {state.residualEnthalpy, s};
    }
    Value flash(double T, double vaporFraction) const {
        const Equilibrium e = flashTVaporFraction(model, T, vaporFraction, z);
        const Value vapor = phase(T, e.P, e.vapor->x, Root::vapor),
                    liquid = phase(T, e.P, e.liquid->x, Root::liquid);
        return {e.vapor->fraction * vapor.h + e.liquid->fraction * liquid.h,
                e.vapor->fraction * vapor.s + e.liquid->fraction * liquid.s};
    }
    void expectDifference(Value first, Value second, double dH, double dS, double tolerance) const {
        expectRelative(first.h - second.h, dH, tolerance, "enthalpy");
        expectRelative(first.s - second.s, dS, tolerance, "entropy");
    }
};

TEST_F(EthaneHeptane, FromDiluteVaporToDenseVapor) {
    expectDifference(phase(450.0, 400.0, z, Root::vapor), phase(450.0, 1e6, z, Root::vapor),
                     1638.193586065765, 67.59097448573374, 1e-13);
}
TEST_F(EthaneHeptane, FromDiluteVaporToCompressedLiquid) {
    expectDifference(phase(450.0, 400.0, z, Root::vapor), phase(450.0, 1e8, z, Root::liquid),
                     13815.671299952719, 128.67198457877873, 1e-13);
}
TEST_F(EthaneHeptane, FromDiluteVaporToTheDewPoint) {
    expectDifference(phase(450.0, 400.0, z, Root::vapor), flash(450.0, 1.0), 2003.8453690354618,
                     69.64347719345321, 1e-10);
    expectRelative(flashTVaporFraction(model, 450.0, 1.0, z).P, 1192351.04764687, 1e-12);
}
TEST_F(EthaneHeptane, FromDiluteVaporToTheBubblePoint) {
    expectDifference(phase(350.0, 400.0, z, Root::vapor), flash(350.0, 0.0), 23682.354847696974,
                     124.44424015029476, 1e-10);
    expectRelative(flashTVaporFraction(model, 350.0, 0.0, z).P, 2728059.37427505, 1e-12);
}
TEST_F(EthaneHeptane, FromDiluteVaporToHalfVaporized) {
    expectDifference(phase(350.0, 400.0, z, Root::vapor), flash(350.0, 0.5), 16445.148662152467,
                     96.84962967388968, 1e-7);
    expectRelative(flashTVaporFraction(model, 350.0, 0.5, z).P, 232229.5163768, 1e-11);
}
TEST_F(EthaneHeptane, FromCompressedLiquidToAQuarterVaporized) {
    expectDifference(phase(350.0, 3e6, z, Root::liquid), flash(350.0, 0.25), -2328.213423713927,
                     -7.913403132740896, 1e-7);
    expectRelative(flashTVaporFraction(model, 350.0, 0.25, z).P, 1397046.7512, 1e-9);
}

// Both constants of the equation are rounded, and the gas constant is an older one.
struct FiveComponentGas : testing::Test {
    static constexpr EquationConstants constants{8.3144621, 0.45724333333, 0.077803333};
    std::vector<double> Tc{126.1, 304.19, 190.56, 305.32, 540.2};
    std::vector<double> Pc{3394400.0, 7381500.0, 4599000.0, 4872000.0, 2740000.0};
    std::vector<double> w{0.0403, 0.2276, 0.0115, 0.0995, 0.3495};
    std::vector<PairParameter> k{{0, 2, 0.0319},     {1, 2, 0.0973}, {2, 3, 0.00295295}, {0, 3, 0.0388},
                                 {1, 3, 0.12980001}, {1, 4, 0.1},    {0, 1, -0.019997},  {0, 4, 0.142199993}};
};

TEST_F(FiveComponentGas, EquilibriumGasCompressibility) {
    const PengRobinson model = mixture(Tc, Pc, w, k, constants);
    const std::vector<double> z{0.01, 0.01, 0.68, 0.1, 0.2};
    const Equilibrium result = flashTP(model, 298.0, 1e6, z);
    expectTwoPhases(result, 0.7881658913591083,
                    {0.00018586820882063985, 0.0017233119504919767, 0.047630957584619237, 0.03595540933973997,
                     0.9145044529163281},
                    {0.012637728786364702, 0.01222451244679327, 0.8499608342618851, 0.11721316403630765,
                     0.007963760468649267},
                    1e-12);
    expectRelative(model.at(298.0).phase(1e6, result.vapor->x, Root::vapor).Z, 0.9708455641951108, 1e-14);
}

TEST_F(FiveComponentGas, WithoutHeptaneAt75Bar) {
    for (std::vector<double>* values : {&Tc, &Pc, &w}) {
        values->pop_back();
    }
    std::erase_if(k, [](const PairParameter& pair) { return pair.j == 4; });
    const std::vector<double> z = normalisedComposition(std::vector{0.01, 0.01, 0.68, 0.1}, 4);
    const PengRobinson model = mixture(Tc, Pc, w, k, constants);
    expectRelative(model.at(298.0).phase(7.5e6, z, Root::vapor).Z, 0.81737433257, 1e-11);
    EXPECT_FALSE(flashTP(model, 298.0, 7.5e6, z).liquid);
}

} // namespace
} // namespace peng_robinson::eos::test
