// What a package offers as conditions of an equilibrium.
#include "tests/src/package/package_fixture.h"

namespace quorvane {

namespace {

using scripted::reals;
using scripted::texts;
using scripted::textsFrom;

class Conditions : public PackageTest {
  protected:
    const std::unique_ptr<PropertyPackage> bound = bind();

    std::string names() { return scripted::textOf(bound->equilibriumConditionNames().value); }
    std::string failure() {
        return failureOf([&] { names(); });
    }
};

TEST_F(Conditions, AreTemperatureAndPressureAndTheRestSorted) {
    EXPECT_EQ(names(), "[Temperature, Pressure, Enthalpy, Entropy, VaporFraction, Volume]");
}

TEST_F(Conditions, WithoutVaporThereIsNoVaporFraction) {
    script.phases({{L"L1", L"Liquid"}, {L"L2", L"Liquid"}});
    EXPECT_EQ(names(), "[Temperature, Pressure, Enthalpy, Entropy, Volume]");
}

TEST_F(Conditions, WithOnePhaseThereIsNoVaporFraction) {
    script.phases({{L"V", L"Vapor"}});
    EXPECT_EQ(names(), "[Temperature, Pressure, Enthalpy, Entropy, Volume]");
}

TEST_F(Conditions, DerivativesAndPhasePropertiesAreNone) {
    script.answers("GetSinglePhasePropList", textsFrom(1, {L"enthalpy.Dtemperature", L"viscosity",
                                                           L"Gibbsenergy", L"internalEnergy", L"ENTROPYF"}));
    EXPECT_EQ(names(), "[Temperature, Pressure, ENTROPYF, Gibbsenergy, InternalEnergy, VaporFraction]");
}

TEST_F(Conditions, AreSortedWhateverTheLetterCase) {
    script.answers("GetSinglePhasePropList", texts({L"volume", L"enthalpyNF", L"ENTROPY", L"enthalpyF"}));
    EXPECT_EQ(names(), "[Temperature, Pressure, EnthalpyF, EnthalpyNF, ENTROPY, VaporFraction, Volume]");
}

TEST_F(Conditions, AMissingNameFailsTheWholeList) {
    script.answers("GetSinglePhasePropList", texts({L"enthalpy", nullptr}));
    EXPECT_EQ(failure(), "Property name not specified");
}

TEST_F(Conditions, AnUnknownPropertyFailsTheWholeList) {
    script.answers("GetSinglePhasePropList", texts({L"enthalpy", L"colour"}));
    EXPECT_EQ(failure(), "Invalid/unknown property \"colour\"");
    script.recovers("GetSinglePhasePropList");
    EXPECT_EQ(failure(), "no failure");
}

TEST_F(Conditions, AListThatCannotBeHadAddsNothing) {
    script.fails("GetSinglePhasePropList", E_FAIL);
    EXPECT_EQ(names(), "[Temperature, Pressure, VaporFraction]");
    bound->reset();
    script.recovers("GetSinglePhasePropList");
    script.answers("GetSinglePhasePropList", reals({1.0}));
    EXPECT_EQ(names(), "[Temperature, Pressure, VaporFraction]");
    bound->reset();
    script.answers("GetSinglePhasePropList", com::variant{});
    EXPECT_EQ(names(), "[Temperature, Pressure, VaporFraction]");
}

TEST_F(Conditions, FailWithThePhases) {
    script.fails("GetPhaseList", ecapeComputation, L"Not now");
    EXPECT_EQ(failure(), "Failed to obtain list of phases: Not now");
    EXPECT_EQ(script.count("GetSinglePhasePropList"), 0U);
}

TEST_F(Conditions, AreReadOnceButNotFromTheCachedProperties) {
    bound->singlePhasePropertyList();
    const std::string first = names();
    EXPECT_EQ(names(), first);
    EXPECT_EQ(script.count("GetSinglePhasePropList"), 2U);
    bound->reset();
    EXPECT_EQ(names(), first);
    EXPECT_EQ(script.count("GetSinglePhasePropList"), 3U);
}

} // namespace

} // namespace quorvane
