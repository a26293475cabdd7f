// Flashes at a given vapour fraction all along the border of the two-phase region, past the cricondentherm,
// the cricondenbar and the critical point, against the border as a continuation method traces it.
#include "packages/peng_robinson/eos/errors.h"
#include "packages/peng_robinson/eos/flash.h"
#include "tests/packages/peng_robinson/eos/envelope.h"
#include "tests/packages/peng_robinson/eos/support.h"

#include <algorithm>

namespace peng_robinson::eos::test {
namespace {

struct Feed {
    const char* name;
    std::vector<std::string> compounds;
    std::vector<double> z;
};

void PrintTo(const Feed& feed, std::ostream* out) { *out << feed.name; }

const Feed naturalGas{"natural gas",
                      {"nitrogen", "carbon dioxide", "methane", "ethane", "propane", "isobutane", "n-butane",
                       "isopentane", "n-pentane", "n-hexane"},
                      {0.01, 0.01, 0.70, 0.12, 0.08, 0.02, 0.03, 0.01, 0.01, 0.01}};
const Feed leanGas{"lean gas",
                   {"nitrogen", "carbon dioxide", "methane", "ethane", "propane", "n-butane"},
                   {0.02, 0.01, 0.9, 0.05, 0.015, 0.005}};
const Feed condensate{"gas condensate",
                      {"methane", "ethane", "propane", "n-butane", "n-pentane", "n-hexane", "n-heptane"},
                      {0.84, 0.07, 0.04, 0.02, 0.01, 0.01, 0.01}};
const Feed oil{"light oil",
               {"methane", "ethane", "propane", "n-pentane", "n-heptane", "n-decane"},
               {0.4, 0.1, 0.1, 0.1, 0.15, 0.15}};
const Feed carbonDioxide{
    "carbon dioxide with methane", {"carbon dioxide", "methane", "n-butane"}, {0.8, 0.15, 0.05}};
const Feed sourGas{"sour gas",
                   {"methane", "hydrogen sulfide", "carbon dioxide", "ethane", "n-pentane"},
                   {0.5, 0.25, 0.1, 0.1, 0.05}};

SolutionType type(bool isNormal) { return isNormal ? SolutionType::normal : SolutionType::retrograde; }

class Envelope : public testing::TestWithParam<Feed> {
  protected:
    Fluid fluid = fluidOf(GetParam().compounds);
    std::vector<double> z = GetParam().z;
    std::vector<EnvelopePoint> points = traceEnvelope(fluid.model(), z, 1e5, 150.0);

    // So many points as a test has time for: closer together where the border turns and the phases meet.
    std::vector<EnvelopePoint> chosen(std::size_t apart) const {
        std::vector<EnvelopePoint> some;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const bool isDelicate = points[i].spread < 1.5 || std::abs(points[i].dlnT) < 0.01;
            if (i % (isDelicate ? apart : 6 * apart) == 0) {
                some.push_back(points[i]);
            }
        }
        return some;
    }

    // Where the border turns, two solutions meet; the smallest error moves them far. Near the critical point
    // it is the phases that meet.
    static constexpr double turn = 5e-4, meeting = 0.01;
};

INSTANTIATE_TEST_SUITE_P(Feeds, Envelope,
                         testing::Values(naturalGas, leanGas, condensate, oil, carbonDioxide, sourGas),
                         [](const auto& feed) {
                             std::string name{feed.param.name};
                             std::ranges::replace(name, ' ', '_');
                             return name;
                         });

TEST_P(Envelope, PressureIsFoundAtEveryTemperature) {
    for (const EnvelopePoint& point : chosen(4)) {
        if (std::abs(point.dlnT) < turn || point.spread < meeting) {
            continue;
        }
        SCOPED_TRACE(testing::Message() << (point.isDew ? "dew" : "bubble") << " point at " << point.T
                                        << " K, " << point.P << " Pa");
        const Equilibrium e = flashTVaporFraction(fluid.model(), point.T, point.isDew ? 1.0 : 0.0, z,
                                                  type(point.isNormalAtTemperature()));
        expectRelative(e.P, point.P, 1e-7);
        EXPECT_EQ((point.isDew ? e.vapor : e.liquid)->fraction, 1.0);
        for (std::size_t i = 0; i < z.size(); ++i) {
            EXPECT_NEAR((point.isDew ? e.liquid : e.vapor)->x[i], point.forming[i], 1e-6);
        }
    }
}

TEST_P(Envelope, TemperatureIsFoundAtEveryPressure) {
    for (const EnvelopePoint& point : chosen(4)) {
        if (std::abs(point.dlnP) < turn || point.spread < meeting) {
            continue;
        }
        SCOPED_TRACE(testing::Message() << (point.isDew ? "dew" : "bubble") << " point at " << point.T
                                        << " K, " << point.P << " Pa");
        const Equilibrium e = flashPVaporFraction(fluid.model(), point.P, point.isDew ? 1.0 : 0.0, z,
                                                  type(point.isNormalAtPressure()));
        expectRelative(e.T, point.T, 1e-7);
    }
}

TEST_P(Envelope, EveryPointHasOnePhaseOutsideAndTwoInside) {
    for (const EnvelopePoint& point : chosen(2)) {
        if (point.spread < 0.2) {
            continue;
        }
        // To the left of the border's direction, in the plane of ln T and ln P.
        const double length = std::hypot(point.dlnT, point.dlnP);
        const auto flash = [&](double inwards) {
            return flashTP(fluid.model(), point.T * std::exp(-inwards * point.dlnP / length),
                           point.P * std::exp(inwards * point.dlnT / length), z);
        };
        SCOPED_TRACE(testing::Message() << point.T << " K, " << point.P << " Pa");
        const Equilibrium inside = flash(1e-5), outside = flash(-1e-5);
        EXPECT_TRUE(inside.vapor && inside.liquid);
        EXPECT_FALSE(outside.vapor && outside.liquid);
    }
}

TEST_P(Envelope, BeyondItsEndsNothingIsFound) {
    const double hottest = std::ranges::max(points, {}, &EnvelopePoint::T).T;
    const double highest = std::ranges::max(points, {}, &EnvelopePoint::P).P;
    for (const double fraction : {0.0, 1.0}) {
        EXPECT_THROW(flashTVaporFraction(fluid.model(), 1.002 * hottest, fraction, z), NoConvergence);
        EXPECT_THROW(flashPVaporFraction(fluid.model(), 1.002 * highest, fraction, z), NoConvergence);
    }
}

// Between the bubble and the dew points a state is found again from its temperature and pressure.
TEST_P(Envelope, EveryFractionBetweenBubbleAndDewPointIsFound) {
    for (const EnvelopePoint& point : chosen(12)) {
        if (point.spread < 0.3) {
            continue;
        }
        const double length = std::hypot(point.dlnT, point.dlnP);
        const Equilibrium inside = flashTP(fluid.model(), point.T * std::exp(-0.01 * point.dlnP / length),
                                           point.P * std::exp(0.01 * point.dlnT / length), z);
        SCOPED_TRACE(testing::Message() << inside.T << " K, " << inside.P << " Pa");
        ASSERT_TRUE(inside.vapor && inside.liquid);
        const double fraction = inside.vapor->fraction;
        const auto isFound = [](auto flashAt) {
            for (const SolutionType wanted : {SolutionType::normal, SolutionType::retrograde}) {
                try {
                    if (std::abs(flashAt(wanted) - 1.0) < 1e-6) {
                        return true;
                    }
                } catch (const NoConvergence&) {
                    continue;
                }
            }
            return false;
        };
        EXPECT_TRUE(isFound([&](SolutionType wanted) {
            return flashTVaporFraction(fluid.model(), inside.T, fraction, z, wanted).P / inside.P;
        }));
        EXPECT_TRUE(isFound([&](SolutionType wanted) {
            return flashPVaporFraction(fluid.model(), inside.P, fraction, z, wanted).T / inside.T;
        }));
    }
}

struct NaturalGasNearItsCriticalPoint : testing::Test {
    Fluid fluid = fluidOf(naturalGas.compounds);
    const std::vector<double>& z = naturalGas.z;
};

TEST_F(NaturalGasNearItsCriticalPoint, DewTemperatureIsTheUpperOne) {
    EXPECT_NEAR(flashPVaporFraction(fluid.model(), 9.5e6, 1.0, z).T, 319.477, 1e-2);
    EXPECT_NEAR(flashPVaporFraction(fluid.model(), 11e6, 1.0, z).T, 309.154, 1e-2);
    const double between = 11.7e6; // above the critical pressure, below the highest
    const Equilibrium upper = flashPVaporFraction(fluid.model(), between, 1.0, z);
    const Equilibrium lower = flashPVaporFraction(fluid.model(), between, 1.0, z, SolutionType::retrograde);
    EXPECT_LT(lower.T + 10.0, upper.T);
}

TEST_F(NaturalGasNearItsCriticalPoint, DewPressureIsTheLowerOne) {
    EXPECT_LT(flashTVaporFraction(fluid.model(), 325.5, 1.0, z).P,
              flashTVaporFraction(fluid.model(), 325.5, 1.0, z, SolutionType::retrograde).P);
}

TEST_F(NaturalGasNearItsCriticalPoint, BubblePointsEndAtTheCriticalPoint) {
    EXPECT_NEAR(flashPVaporFraction(fluid.model(), 11e6, 0.0, z).T, 264.947, 1e-2);
    for (const double T : {280.0, 285.0, 290.0}) {
        try {
            const Equilibrium e = flashTVaporFraction(fluid.model(), T, 0.0, z);
            ADD_FAILURE() << "a bubble point at " << e.T << " K and " << e.P << " Pa";
        } catch (const NoConvergence& error) {
            EXPECT_EQ(error.what(), "No state with a vapor fraction of 0 was found at " +
                                        std::to_string(static_cast<int>(T)) +
                                        " K; the mixture may be above its critical point");
        }
    }
}

} // namespace
} // namespace peng_robinson::eos::test
