// What every flash result must fulfil, over many states chosen by a random generator with a fixed seed: equal
// fugacities, the balance of every compound, and no other phase that would lower the Gibbs energy.
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "packages/peng_robinson/eos/flash_mass.h"
#include "packages/peng_robinson/eos/stability.h"
#include "packages/peng_robinson/eos/text.h"
#include "packages/peng_robinson/eos/tp_flash.h"
#include "tests/packages/peng_robinson/eos/support.h"

#include <numeric>
#include <random>

namespace peng_robinson::eos::test {
namespace {

const std::vector<std::string> gasNames{"methane",   "nitrogen",        "carbon dioxide", "ethane",
                                        "propane",   "n-butane",        "isobutane",      "n-pentane",
                                        "n-heptane", "hydrogen sulfide"};

class Random {
  public:
    explicit Random(unsigned seed) : engine_{seed} {}
    double between(double low, double high) { return std::uniform_real_distribution{low, high}(engine_); }
    double logarithmic(double low, double high) { return std::exp(between(std::log(low), std::log(high))); }
    std::vector<double> composition(std::size_t n) {
        std::vector<double> z(n);
        for (double& value : z) {
            // A fifth of the amounts is zero, the others differ by up to three orders of magnitude.
            value = between(0.0, 1.0) < 0.2 ? 0.0 : logarithmic(1e-3, 1.0);
        }
        z[0] += 1e-3;
        z[n - 1] += 1e-3;
        return normalisedComposition(z, n);
    }

  private:
    std::mt19937 engine_;
};

void expectMaterialBalance(const Equilibrium& e, const std::vector<double>& z) {
    std::vector<double> total(z.size(), 0.0);
    for (const std::optional<PhaseAmount>& phase : {e.vapor, e.liquid}) {
        if (phase) {
            EXPECT_NEAR(std::accumulate(phase->x.begin(), phase->x.end(), 0.0), 1.0, 1e-13);
            for (std::size_t i = 0; i < z.size(); ++i) {
                total[i] += phase->fraction * phase->x[i];
            }
        }
    }
    for (std::size_t i = 0; i < z.size(); ++i) {
        EXPECT_NEAR(total[i], z[i], 1e-14 + 1e-12 * z[i]) << i;
    }
}

void expectEqualFugacities(const PengRobinson& model, const Equilibrium& e, double tolerance) {
    const Isotherm isotherm = model.at(e.T);
    const PhaseState vapor = isotherm.phase(e.P, e.vapor->x, Root::vapor);
    const PhaseState liquid = isotherm.phase(e.P, e.liquid->x, Root::liquid);
    for (std::size_t i = 0; i < model.size(); ++i) {
        if (e.vapor->x[i] > 0.0) {
            EXPECT_NEAR(std::log(e.vapor->x[i]) + vapor.lnPhi[i], std::log(e.liquid->x[i]) + liquid.lnPhi[i],
                        tolerance)
                << i;
        }
    }
}

// The tangent plane of one phase touches the other; a third composition below it would be a phase that was
// missed.
void expectStable(const PengRobinson& model, const Equilibrium& e) {
    const PhaseAmount& reference = e.liquid ? *e.liquid : *e.vapor;
    std::vector<std::size_t> present;
    std::vector<double> x;
    for (std::size_t i = 0; i < reference.x.size(); ++i) {
        if (reference.x[i] > 0.0) {
            present.push_back(i);
            x.push_back(reference.x[i]);
        }
    }
    if (x.size() < 2) {
        return;
    }
    const PengRobinson active = model.subset(present);
    const Isotherm isotherm = active.at(e.T);
    const PhaseState phase = isotherm.phase(e.P, x, Root::stable);
    for (const TrialPhase& trial : unstableTrials(isotherm, e.P, x, phase)) {
        const PhaseState missed =
            isotherm.phase(e.P, normalisedComposition(trial.amounts, x.size()), Root::stable);
        EXPECT_TRUE(trial.distance > -1e-9 || (e.liquid && isLiquidLike(missed))) << trial.distance;
    }
}

TEST(FlashInvariants, TemperatureAndPressure) {
    const Fluid fluid = fluidOf(gasNames);
    Random random{1976};
    int twoPhases = 0;
    for (int i = 0; i < 800; ++i) {
        const std::vector<double> z = random.composition(fluid.size());
        const double T = random.between(150.0, 450.0), P = random.logarithmic(1e4, 1.5e7);
        SCOPED_TRACE(testing::Message() << "state " << i << ": " << T << " K, " << P << " Pa");
        const Equilibrium e = flashTP(fluid.model(), T, P, z);
        EXPECT_EQ(e.T, T);
        EXPECT_EQ(e.P, P);
        ASSERT_TRUE(e.vapor || e.liquid);
        expectMaterialBalance(e, z);
        expectStable(fluid.model(), e);
        if (e.vapor && e.liquid) {
            ++twoPhases;
            expectEqualFugacities(fluid.model(), e, 1e-10);
        }
    }
    EXPECT_GT(twoPhases, 300);
}

TEST(FlashInvariants, NaturalGasIsTwoPhases) {
    const Fluid fluid = fluidOf({"nitrogen", "carbon dioxide", "methane", "ethane", "propane", "isobutane",
                                 "n-butane", "isopentane", "n-pentane", "n-hexane", "n-heptane"});
    const std::vector<double> z{0.012, 0.018, 0.84, 0.066, 0.032, 0.007, 0.01, 0.004, 0.0035, 0.004, 0.0035};
    const Equilibrium e = flashTP(fluid.model(), 230.0, 4e6, z);
    ASSERT_TRUE(e.vapor && e.liquid);
    expectMaterialBalance(e, z);
    expectEqualFugacities(fluid.model(), e, 1e-10);
    expectStable(fluid.model(), e);
}

// The phases differ so little that substitution of K-values leads out of the two-phase region.
TEST(FlashInvariants, SourGasSplitsUpToItsCriticalPoint) {
    const Fluid fluid = fluidOf({"methane", "hydrogen sulfide", "carbon dioxide", "ethane", "n-pentane"});
    const std::vector<double> z{0.5, 0.25, 0.1, 0.1, 0.05};
    double vapor = 0.0;
    for (int tenths = 2896; tenths < 2960; tenths += 4) {
        const double T = 0.1 * tenths;
        SCOPED_TRACE(testing::Message() << T << " K");
        const Equilibrium e = flashTP(fluid.model(), T, 11165295.0, z);
        ASSERT_TRUE(e.vapor && e.liquid);
        expectMaterialBalance(e, z);
        expectEqualFugacities(fluid.model(), e, 1e-10);
        expectStable(fluid.model(), e);
        EXPECT_GT(e.vapor->fraction, vapor);
        vapor = e.vapor->fraction;
    }
}

// Of several pairs of phases the one of lowest Gibbs energy: the liquid is methane, not the little water and
// carbon dioxide that would drop out alone.
TEST(FlashInvariants, ColdSynthesisGasFormsTheStablePair) {
    const Fluid fluid = fluidOf({"hydrogen", "carbon dioxide", "methane", "nitrogen", "water"});
    const std::vector<double> z{0.47337973143056455, 0.0043448559090442382, 0.51482118026708223,
                                0.0008786050567969895, 0.0065756273365121069};
    const Equilibrium e = flashTP(fluid.model(), 110.750658, 559781.2837, z);
    ASSERT_TRUE(e.vapor && e.liquid);
    EXPECT_NEAR(e.vapor->fraction, 0.577609, 1e-5);
}

TEST(FlashInvariants, VaporOverOneOfTwoLiquidsIsFound) {
    const Fluid fluid = fluidOf({"nitrogen", "hydrogen sulfide", "methane", "isobutane", "n-butane",
                                 "n-pentane", "n-hexane", "n-heptane", "n-octane", "water"});
    const Equilibrium e = flashTP(
        fluid.model(), 167.3818059, 60971.72874,
        std::vector{0.052735905678046521, 0.0008180883473510698, 0.38098553479323388, 0.021125949490777632,
                    0.081978147780160465, 0.0017651913737421119, 0.003878165804212848, 0.0021915650150094662,
                    0.22479228874919188, 0.22972916296827403});
    ASSERT_TRUE(e.vapor && e.liquid);
    EXPECT_NEAR(e.vapor->fraction, 0.465631, 1e-5);
}

// What a flash keeps from those before, of other compounds and in other states, changes no digit.
TEST(FlashInvariants, AFlashWithMemoryAnswersAsANewOne) {
    const Fluid fluid = fluidOf(gasNames);
    Random random{7};
    TPFlash flash{fluid.model()};
    Equilibrium kept;
    for (int i = 0; i < 100; ++i) {
        const std::vector<double> z = random.composition(fluid.size());
        const double T = random.between(150.0, 450.0), P = random.logarithmic(1e4, 1.5e7);
        flash.calculate(T, P, z, PhasesAllowed::both, kept);
        const Equilibrium fresh = flashTP(fluid.model(), T, P, z);
        EXPECT_EQ(kept.T, T);
        EXPECT_EQ(kept.P, P);
        for (const auto phase : {&Equilibrium::vapor, &Equilibrium::liquid}) {
            ASSERT_EQ((kept.*phase).has_value(), (fresh.*phase).has_value());
            if (fresh.*phase) {
                EXPECT_EQ((kept.*phase)->fraction, (fresh.*phase)->fraction);
                EXPECT_EQ((kept.*phase)->x, (fresh.*phase)->x);
            }
        }
    }
}

TEST(FlashInvariants, UnstableFeedThatDoesNotSplitIsAnError) {
    // So far below every melting point liquids separate almost wholly, and at some of these temperatures no
    // split converges.
    const Fluid fluid = fluidOf({"argon", "toluene", "hydrogen sulfide", "ethane"});
    int refused = 0;
    for (int step = 0; step < 100; ++step) {
        const double T = 10.5 + 0.005 * step;
        try {
            flashTP(fluid.model(), T, 155855.0, std::vector{0.006, 0.948, 0.044, 0.002});
        } catch (const NoConvergence& error) {
            ++refused;
            EXPECT_EQ(
                error.what(),
                "The mixture forms two phases at " + numberText(T) +
                    " K and 155855 Pa, but their compositions were not found; try a higher temperature");
        }
    }
    EXPECT_GT(refused, 0);
}

// Is there a temperature (at a given pressure) or a pressure (at a given temperature) at which this fraction
// is vapour? The answer comes from flashes at temperature and pressure alone.
class VaporFractionScan {
  public:
    VaporFractionScan(const PengRobinson& model, bool byTemperature, double given,
                      const std::vector<double>& z)
        : model_{model}, byTemperature_{byTemperature}, given_{given}, z_{z} {}

    bool finds(double fraction) const {
        // The missing variable: 60 K to 700 K, or 1 Pa to 100 MPa on a logarithmic scale.
        constexpr int steps = 40;
        const double low = byTemperature_ ? 0.0 : 60.0, high = byTemperature_ ? std::log(1e8) : 700.0;
        State before = at(low);
        for (int i = 1; i <= steps; ++i) {
            const State here = at(low + (high - low) * i / steps);
            if (isBetween(before, here, fraction)) {
                return true;
            }
            before = here;
        }
        return false;
    }

  private:
    struct State {
        double where, vapor;
        bool two;
    };
    State at(double where) const {
        const Equilibrium e = byTemperature_ ? flashTP(model_, given_, std::exp(where), z_)
                                             : flashTP(model_, where, given_, z_);
        return {where, e.vapor ? e.vapor->fraction : 0.0, e.vapor && e.liquid};
    }
    // The border of the two phases is a bubble or a dew point; between two states with two phases all
    // fractions between theirs are passed.
    bool isBetween(State a, State b, double fraction) const {
        if (a.two && b.two) {
            return (a.vapor - fraction) * (b.vapor - fraction) <= 0.0;
        }
        if (!a.two && !b.two) {
            return false;
        }
        if (!a.two) {
            std::swap(a, b);
        }
        const double inside = a.vapor;
        for (int i = 0; i < 50; ++i) {
            const State middle = at(0.5 * (a.where + b.where));
            (middle.two ? a : b) = middle;
        }
        return std::abs(a.vapor - fraction) < 1e-4 || (inside - fraction) * (a.vapor - fraction) <= 0.0;
    }

    const PengRobinson& model_;
    bool byTemperature_;
    double given_;
    const std::vector<double>& z_;
};

TEST(FlashInvariants, VaporFraction) {
    const Fluid fluid = fluidOf(gasNames);
    Random random{1976};
    int solved = 0;
    for (int i = 0; i < 400; ++i) {
        const std::vector<double> z = random.composition(fluid.size());
        const double fraction = i % 4 == 0 ? 0.0 : i % 4 == 1 ? 1.0 : random.between(0.0, 1.0);
        const double value = i % 2 == 0 ? random.between(170.0, 350.0) : random.logarithmic(1e4, 6e6);
        SCOPED_TRACE(testing::Message() << "state " << i << ": " << value << ", fraction " << fraction);
        const VaporFractionScan scan{fluid.model(), i % 2 == 0, value, z};
        try {
            const Equilibrium e = i % 2 == 0 ? flashTVaporFraction(fluid.model(), value, fraction, z)
                                             : flashPVaporFraction(fluid.model(), value, fraction, z);
            EXPECT_EQ(i % 2 == 0 ? e.T : e.P, value);
            EXPECT_EQ(e.vapor->fraction, fraction);
            expectMaterialBalance(e, z);
            expectEqualFugacities(fluid.model(), e, 1e-10);
            EXPECT_TRUE(i >= 8 || scan.finds(fraction)) << "the scan misses a state that was found";
            ++solved;
        } catch (const NoConvergence&) {
            EXPECT_FALSE(scan.finds(fraction)) << "refused, but there is such a state";
        }
    }
    EXPECT_GT(solved, 300);
}

// A state found from its vapour fraction must be found again from its temperature and pressure.
TEST(FlashInvariants, VaporFractionAgreesWithTemperatureAndPressure) {
    const Fluid fluid = fluidOf(gasNames);
    Random random{42};
    int compared = 0;
    for (int i = 0; i < 200; ++i) {
        const std::vector<double> z = random.composition(fluid.size());
        const double P = random.logarithmic(1e4, 4e6), fraction = random.between(0.05, 0.95);
        SCOPED_TRACE(testing::Message() << "state " << i << ": " << P << " Pa, fraction " << fraction);
        Equilibrium byFraction;
        try {
            byFraction = flashPVaporFraction(fluid.model(), P, fraction, z);
        } catch (const NoConvergence&) {
            continue;
        }
        if (byFraction.T < 200.0) {
            continue; // so cold, some of these mixtures have a second liquid, which only one of the two
                      // flashes notices
        }
        const Equilibrium byT = flashTP(fluid.model(), byFraction.T, P, z);
        ASSERT_TRUE(byT.vapor && byT.liquid);
        EXPECT_NEAR(byT.vapor->fraction, fraction, 1e-8);
        expectRelative(byT.vapor->x, byFraction.vapor->x, 1e-7);
        ++compared;
    }
    EXPECT_GT(compared, 100);
}

TEST(MassFraction, CountsKilogramsOfVapor) {
    const Fluid fluid = fluidOf({"methane", "propane", "n-heptane"});
    const std::vector<double> z{0.3, 0.3, 0.4};
    for (const bool byTemperature : {true, false}) {
        const Equilibrium e = byTemperature ? flashTVaporMassFraction(fluid, 300.0, 0.2, z)
                                            : flashPVaporMassFraction(fluid, 1e6, 0.2, z);
        const double vapor = e.vapor->fraction * fluid.molecularWeight(e.vapor->x);
        const double liquid = e.liquid->fraction * fluid.molecularWeight(e.liquid->x);
        EXPECT_NEAR(vapor / (vapor + liquid), 0.2, 1e-13);
        expectMaterialBalance(e, z);
        expectEqualFugacities(fluid.model(), e, 1e-10);
    }
    EXPECT_EQ(flashTVaporMassFraction(fluid, 300.0, 1.0, z).P,
              flashTVaporFraction(fluid.model(), 300.0, 1.0, z).P);
}

TEST(Retrograde, UpperAndLowerDewPressureOfANaturalGas) {
    const Fluid fluid =
        fluidOf({"methane", "ethane", "propane", "n-butane", "n-pentane", "n-hexane", "n-heptane"});
    const std::vector<double> z{0.84, 0.07, 0.04, 0.02, 0.01, 0.01, 0.01};
    const Equilibrium normal = flashTVaporFraction(fluid.model(), 290.0, 1.0, z, SolutionType::normal);
    const Equilibrium retrograde =
        flashTVaporFraction(fluid.model(), 290.0, 1.0, z, SolutionType::retrograde);
    const Equilibrium any = flashTVaporFraction(fluid.model(), 290.0, 1.0, z);
    EXPECT_EQ(any.P, normal.P);
    EXPECT_LT(1.5 * normal.P, retrograde.P);
    for (const Equilibrium& e : {normal, retrograde}) {
        expectEqualFugacities(fluid.model(), e, 1e-10);
        expectMaterialBalance(e, z);
    }
    // Just outside is gas, just inside are drops: below the upper and above the lower dew pressure.
    EXPECT_TRUE(flashTP(fluid.model(), 290.0, 0.999 * retrograde.P, z).liquid);
    EXPECT_FALSE(flashTP(fluid.model(), 290.0, 1.001 * retrograde.P, z).liquid);
    EXPECT_TRUE(flashTP(fluid.model(), 290.0, 1.001 * normal.P, z).liquid);
    EXPECT_FALSE(flashTP(fluid.model(), 290.0, 0.999 * normal.P, z).liquid);
}

TEST(Retrograde, PureCompoundHasNone) {
    const Fluid fluid = fluidOf({"methane"});
    const std::vector<double> one{1.0};
    try {
        flashTVaporFraction(fluid.model(), 150.0, 0.5, one, SolutionType::retrograde);
        FAIL() << "a pure compound was given a retrograde solution";
    } catch (const NotAvailable& error) {
        EXPECT_STREQ(
            error.what(),
            "A pure compound has no retrograde vapor-liquid equilibrium; ask for the normal solution");
    }
}

TEST(WaterAndHydrocarbon, FirstDropOfHumidGasIsTheStableOne) {
    const Fluid fluid = fluidOf({"water", "n-hexane"});
    const std::vector<double> z{0.5, 0.5};
    const Equilibrium dew = flashPVaporFraction(fluid.model(), 1e5, 1.0, z);
    EXPECT_GT(dew.liquid->x[0], 0.99); // water drops out first, at some 83 C
    expectRelative(dew.T, 356.3, 2e-3);
}

TEST(WaterAndHydrocarbon, TwoColdLiquidsAreOneLiquid) {
    const Fluid fluid = fluidOf({"water", "n-hexane"});
    const std::vector<double> z{0.5, 0.5};
    const Equilibrium cold = flashTP(fluid.model(), 300.0, 1e5, z);
    EXPECT_FALSE(cold.vapor);
    ASSERT_TRUE(cold.liquid);
    EXPECT_EQ(cold.liquid->x, z);
}

} // namespace
} // namespace peng_robinson::eos::test
