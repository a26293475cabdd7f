#include "packages/peng_robinson/eos/flash_ph.h"
#include "tests/packages/peng_robinson/com/test_material.h"

#include <cmath>

namespace peng_robinson::test {
namespace {

constexpr const wchar_t* routine = L"ICapeThermoEquilibriumRoutine";

const Texts atT{L"temperature", L"", L"Overall"};
const Texts atP{L"pressure", L"", L"Overall"};
const Texts atH{L"enthalpy", L"Mole", L"Overall"};
const Texts atVaporFraction{L"phaseFraction", L"Mole", L"Vapor"};

struct Equilibria : Package {
    com::com_ptr<TestMaterial> material =
        com::make<TestMaterial>(Texts{L"propane", L"methane", L"n-heptane"});
    eos::Fluid fluid{
        {eos::findCompound("propane"), eos::findCompound("methane"), eos::findCompound("n-heptane")}};
    Reals z{0.3, 0.4, 0.3};

    Equilibria() {
        EXPECT_EQ(context->SetMaterial(material->self()), S_OK);
        material->setOverall(L"fraction", z, L"Mole");
    }
    HRESULT calculate(const Texts& first, const Texts& second, const wchar_t* solution = L"Unspecified") {
        const com::unique_bstr solutionText = com::makeBstr(solution);
        return equilibrium->CalcEquilibrium(texts(first), texts(second), solutionText.get());
    }
    bool isSupported(const Texts& first, const Texts& second, const wchar_t* solution = L"Unspecified") {
        const com::unique_bstr solutionText = com::makeBstr(solution);
        VARIANT_BOOL supported = VARIANT_FALSE;
        EXPECT_EQ(
            equilibrium->CheckEquilibriumSpec(texts(first), texts(second), solutionText.get(), &supported),
            S_OK);
        return supported == VARIANT_TRUE;
    }
    /// The material holds exactly this equilibrium.
    void expectResult(const eos::Equilibrium& expected, double tolerance = 1e-10) const {
        const auto expectPhase = [&](const wchar_t* label, const eos::PhaseAmount& amount) {
            EXPECT_NEAR(material->scalar(label, L"temperature"), expected.T, tolerance * expected.T);
            EXPECT_NEAR(material->scalar(label, L"pressure"), expected.P, tolerance * expected.P);
            EXPECT_NEAR(material->scalar(label, L"phaseFraction"), amount.fraction, tolerance);
            EXPECT_EQ(material->phaseValue(label, L"phaseFraction")->basis, L"Mole");
            const auto x = material->phaseValue(label, L"fraction");
            ASSERT_TRUE(x && x->values.size() == amount.x.size());
            EXPECT_EQ(x->basis, L"Mole");
            for (std::size_t i = 0; i < amount.x.size(); ++i) {
                EXPECT_NEAR(x->values[i], amount.x[i], tolerance);
            }
        };
        Texts labels;
        if (expected.vapor) {
            labels.push_back(L"Vapor");
            expectPhase(L"Vapor", *expected.vapor);
        }
        if (expected.liquid) {
            labels.push_back(L"Liquid");
            expectPhase(L"Liquid", *expected.liquid);
        }
        EXPECT_EQ(material->present, labels);
        EXPECT_EQ(material->presentStatus, std::vector<LONG>(labels.size(), CAPE_ATEQUILIBRIUM));
    }
};

TEST_F(Equilibria, TemperatureAndPressure) {
    material->setOverall(L"temperature", {300.0});
    material->setOverall(L"pressure", {1e6});
    ASSERT_EQ(calculate(atT, atP), S_OK);
    const eos::Equilibrium expected = eos::flashTP(fluid.model(), 300.0, 1e6, z);
    ASSERT_TRUE(expected.vapor && expected.liquid);
    expectResult(expected);
}

TEST_F(Equilibria, SpecificationsInEitherOrderAndAnyCase) {
    material->setOverall(L"temperature", {300.0});
    material->setOverall(L"pressure", {1e6});
    ASSERT_EQ(calculate({L"PRESSURE", L"UNDEFINED", L"overall"}, {L"Temperature", L"", L"OVERALL", L""}, L""),
              S_OK);
    expectResult(eos::flashTP(fluid.model(), 300.0, 1e6, z));
}

TEST_F(Equilibria, OnlyThePhasesFoundArePresentAfterwards) {
    material->setOverall(L"temperature", {600.0});
    material->setOverall(L"pressure", {1e5});
    ASSERT_EQ(calculate(atT, atP), S_OK);
    EXPECT_EQ(material->present, Texts{L"Vapor"});
    EXPECT_EQ(material->scalar(L"Vapor", L"phaseFraction"), 1.0);
    EXPECT_FALSE(material->phaseValue(L"Liquid", L"phaseFraction"));
}

TEST_F(Equilibria, TemperatureAndVaporFraction) {
    material->setOverall(L"temperature", {300.0});
    for (const double fraction : {0.0, 0.3, 1.0}) {
        material->setPresent(Texts{L"Vapor", L"Liquid"});
        material->setPhase(L"Vapor", L"phaseFraction", {fraction}, L"Mole");
        ASSERT_EQ(calculate(atT, atVaporFraction), S_OK);
        const eos::Equilibrium expected = eos::flashTVaporFraction(fluid.model(), 300.0, fraction, z);
        expectResult(expected);
        EXPECT_NEAR(material->overallValue(L"pressure")->values[0], expected.P, 1e-6);
    }
}

TEST_F(Equilibria, PressureAndVaporFraction) {
    material->setOverall(L"pressure", {1e6});
    material->setPhase(L"Vapor", L"phaseFraction", {0.25}, L"Mole");
    ASSERT_EQ(calculate(atVaporFraction, atP, L"Normal"), S_OK);
    const eos::Equilibrium expected = eos::flashPVaporFraction(fluid.model(), 1e6, 0.25, z);
    expectResult(expected);
    EXPECT_NEAR(material->overallValue(L"temperature")->values[0], expected.T, 1e-9);
}

TEST_F(Equilibria, LiquidFractionIsTheRest) {
    material->setOverall(L"pressure", {1e6});
    material->setPhase(L"Liquid", L"phaseFraction", {0.75}, L"Mole");
    ASSERT_EQ(calculate(atP, {L"phaseFraction", L"", L"Liquid"}), S_OK);
    expectResult(eos::flashPVaporFraction(fluid.model(), 1e6, 0.25, z));
}

TEST_F(Equilibria, VaporFractionByMass) {
    material->setOverall(L"pressure", {1e6});
    material->setPhase(L"Vapor", L"phaseFraction", {0.25}, L"Mass");
    ASSERT_EQ(calculate(atP, {L"phaseFraction", L"Mass", L"Vapor"}), S_OK);
    const double vapor = material->scalar(L"Vapor", L"phaseFraction") *
                         fluid.molecularWeight(material->phaseValue(L"Vapor", L"fraction")->values);
    EXPECT_NEAR(vapor / fluid.molecularWeight(z), 0.25, 1e-12);
}

TEST_F(Equilibria, UpperDewPressureWhenRetrogradeIsAskedFor) {
    const auto gas = com::make<TestMaterial>(Texts{L"methane", L"n-heptane"});
    ASSERT_EQ(context->SetMaterial(gas->self()), S_OK);
    gas->setOverall(L"fraction", {0.98, 0.02}, L"Mole");
    gas->setOverall(L"temperature", {320.0});
    gas->setPhase(L"Vapor", L"phaseFraction", {1.0}, L"Mole");
    ASSERT_EQ(calculate(atT, atVaporFraction, L"normal"), S_OK);
    const double lower = gas->overallValue(L"pressure")->values[0];
    gas->setPresent(Texts{L"Vapor", L"Liquid"});
    ASSERT_EQ(calculate(atT, atVaporFraction, L"retrograde"), S_OK);
    EXPECT_GT(gas->overallValue(L"pressure")->values[0], 2.0 * lower);
}

TEST_F(Equilibria, PressureAndEnthalpy) {
    const eos::Equilibrium expected = eos::flashTP(fluid.model(), 300.0, 1e6, z);
    material->setOverall(L"pressure", {1e6});
    material->setOverall(L"enthalpy", {eos::enthalpyOf(fluid, expected)}, L"Mole");
    ASSERT_EQ(calculate(atP, atH), S_OK);
    expectResult(expected, 1e-8);
    EXPECT_NEAR(material->overallValue(L"temperature")->values[0], 300.0, 1e-6);
}

TEST_F(Equilibria, EnthalpyWithoutABasisIsPerMole) {
    const eos::Equilibrium expected = eos::flashTP(fluid.model(), 300.0, 1e6, z);
    double formation = 0.0;
    for (std::size_t i = 0; i < z.size(); ++i) {
        formation += z[i] * fluid.compound(i).formationEnthalpy;
    }
    material->setOverall(L"pressure", {1e6});
    material->setOverall(L"enthalpyF", {eos::enthalpyOf(fluid, expected) + formation}, L"Mole");
    ASSERT_EQ(calculate({L"enthalpyF", L"", L"overall"}, atP), S_OK);
    expectResult(expected, 1e-8);
}

TEST_F(Equilibria, PureCompoundBoilsAtGivenEnthalpy) {
    const auto pure = com::make<TestMaterial>(Texts{L"methane", L"propane"});
    ASSERT_EQ(context->SetMaterial(pure->self()), S_OK);
    pure->setOverall(L"fraction", {0.0, 1.0}, L"Mole");
    pure->setOverall(L"pressure", {101325.0});
    pure->setOverall(L"enthalpy", {-14000.0}, L"Mole");
    ASSERT_EQ(calculate(atP, atH), S_OK);
    EXPECT_NEAR(pure->overallValue(L"temperature")->values[0], 231.0, 0.5);
    const double vapor = pure->scalar(L"Vapor", L"phaseFraction");
    EXPECT_GT(vapor, 0.0);
    EXPECT_NEAR(vapor + pure->scalar(L"Liquid", L"phaseFraction"), 1.0, 1e-15);
}

TEST_F(Equilibria, OnlyPresentPhasesAreConsidered) {
    material->setOverall(L"temperature", {300.0});
    material->setOverall(L"pressure", {1e6});
    material->setPresent(Texts{L"Liquid"});
    ASSERT_EQ(calculate(atT, atP), S_OK);
    EXPECT_EQ(material->present, Texts{L"Liquid"});
    EXPECT_EQ(material->scalar(L"Liquid", L"phaseFraction"), 1.0);
    expectFailure(calculate(atT, atVaporFraction), ECapeFailedInitialisationHR,
                  L"A flash at a phase fraction needs both phases, Vapor and Liquid, present in the material",
                  routine, L"CalcEquilibrium");
}

TEST_F(Equilibria, MaterialThatCannotTellItsPhasesMayHaveBoth) {
    material->setOverall(L"temperature", {300.0});
    material->setOverall(L"pressure", {1e6});
    material->setPresent(std::nullopt);
    ASSERT_EQ(calculate(atT, atP), S_OK);
    expectResult(eos::flashTP(fluid.model(), 300.0, 1e6, z));
}

TEST_F(Equilibria, MaterialWithoutPhasesIsRefused) {
    material->setPresent(Texts{});
    expectFailure(calculate(atT, atP), ECapeFailedInitialisationHR,
                  L"The material object has no phases; call SetPresentPhases with the phases to consider",
                  routine, L"CalcEquilibrium");
    material->setPresent(Texts{L"Vapor", L"Aqueous"});
    expectFailure(calculate(atT, atP), ECapeFailedInitialisationHR,
                  L"The material object has the phase \"Aqueous\", which this package does not know", routine,
                  L"CalcEquilibrium");
}

TEST_F(Equilibria, MissingValuesAreNamed) {
    material->setOverall(L"temperature", {300.0});
    expectFailure(calculate(atT, atP), ECapeFailedInitialisationHR,
                  L"The material object has no value for the overall pressure: the test material says no",
                  routine, L"CalcEquilibrium");
    expectFailure(
        calculate(atT, atVaporFraction), ECapeFailedInitialisationHR,
        L"The material object has no value for the phaseFraction of the phase \"Vapor\": the test material "
        L"says no",
        routine, L"CalcEquilibrium");
}

TEST_F(Equilibria, MaterialThatHandsOutNonsenseIsNamed) {
    material->setOverall(L"pressure", {1e6});
    material->nonsense[L"GetSinglePhaseProp"] = texts({L"half"});
    expectFailure(calculate(atP, atVaporFraction), ECapeFailedInitialisationHR,
                  L"The values of the material object must be a list of numbers", routine,
                  L"CalcEquilibrium");
    material->nonsense[L"GetSinglePhaseProp"] = reals({0.5, 0.5});
    expectFailure(calculate(atP, atVaporFraction), ECapeFailedInitialisationHR,
                  L"The material object has not one value for the phaseFraction of the phase \"Vapor\"",
                  routine, L"CalcEquilibrium");
    material->nonsense[L"GetOverallProp"] = texts({L"a", L"b", L"c"});
    expectFailure(calculate(atT, atP), ECapeFailedInitialisationHR,
                  L"The fractions of the material object must be a list of numbers", routine,
                  L"CalcEquilibrium");
    material->nonsense[L"GetOverallProp"] = reals({0.5, 0.5});
    expectFailure(calculate(atT, atP), ECapeFailedInitialisationHR,
                  L"The material object has not one overall fraction for each of its compounds", routine,
                  L"CalcEquilibrium");
    material->nonsense[L"GetPresentPhases"] = reals({1.0, 2.0});
    expectFailure(calculate(atT, atP), ECapeFailedInitialisationHR,
                  L"The phases of the material object must be a list of texts", routine, L"CalcEquilibrium");
    EXPECT_EQ(lastFailure(object.get()).name, L"ECapeFailedInitialisation");
}

TEST_F(Equilibria, ImpossibleValuesAreOutOfBounds) {
    material->setOverall(L"temperature", {-300.0});
    material->setOverall(L"pressure", {1e6});
    expectFailure(calculate(atT, atP), ECapeOutOfBoundsHR,
                  L"The temperature must be a positive number of kelvin", routine, L"CalcEquilibrium");
    material->setPhase(L"Vapor", L"phaseFraction", {1.5}, L"Mole");
    expectFailure(calculate(atP, atVaporFraction), ECapeOutOfBoundsHR,
                  L"A vapor fraction must lie between 0 and 1", routine, L"CalcEquilibrium");
}

TEST_F(Equilibria, StateThatDoesNotExistIsASolvingError) {
    material->setOverall(L"temperature", {900.0});
    material->setPhase(L"Vapor", L"phaseFraction", {0.5}, L"Mole");
    expectFailure(
        calculate(atT, atVaporFraction), ECapeSolvingErrorHR,
        L"No state with a vapor fraction of 0.5 was found at 900 K; the mixture may be above its critical "
        L"point",
        routine, L"CalcEquilibrium");
    EXPECT_EQ(lastFailure(object.get()).name, L"ECapeSolvingError");
}

TEST_F(Equilibria, UnsupportedFlashesAreRefused) {
    EXPECT_TRUE(isSupported(atT, atP));
    EXPECT_TRUE(isSupported(atVaporFraction, atP, L"Retrograde"));
    EXPECT_TRUE(isSupported(atH, atP));
    EXPECT_FALSE(isSupported(atT, atT));
    EXPECT_FALSE(isSupported(atT, atH));
    EXPECT_FALSE(isSupported(atP, {L"entropy", L"Mole", L"Overall"}));
    EXPECT_FALSE(isSupported(atT, {L"pressure", L"", L"Vapor"}));
    EXPECT_FALSE(isSupported(atT, {L"phaseFraction", L"Mole", L"Solid"}));
    EXPECT_FALSE(isSupported(atT, atP, L"Sideways"));
    EXPECT_FALSE(isSupported(atT, {L"pressure"}));
    expectFailure(calculate(atT, atH), ECapeLimitedImplHR,
                  L"A flash at given temperature and enthalpy is not available; available are temperature "
                  L"and pressure, "
                  L"temperature and phase fraction, pressure and phase fraction, pressure and enthalpy",
                  routine, L"CalcEquilibrium");
    expectFailure(
        calculate(atP, {L"entropy", L"Mole", L"Overall"}), ECapeLimitedImplHR,
        L"A flash at given \"entropy\" is not available; specify temperature, pressure, enthalpy or "
        L"phaseFraction",
        routine, L"CalcEquilibrium");
}

TEST_F(Equilibria, MalformedSpecificationsAreRefused) {
    expectFailure(calculate({L"temperature"}, atP), ECapeInvalidArgumentHR,
                  L"An equilibrium specification has three or four elements: property, basis, phase label "
                  L"and perhaps a "
                  L"compound",
                  routine, L"CalcEquilibrium");
    expectFailure(calculate(atP, {L"enthalpy", L"Barrel", L"Overall"}), ECapeInvalidArgumentHR,
                  L"A basis is Mole or Mass, not \"Barrel\"", routine, L"CalcEquilibrium");
    expectFailure(calculate(atP, {L"phaseFraction", L"Mole", L"Overall"}), ECapeInvalidArgumentHR,
                  L"A phase fraction is specified for a phase, not overall", routine, L"CalcEquilibrium");
    expectFailure(calculate(atT, atP, L"Sideways"), ECapeInvalidArgumentHR,
                  L"A solution type is Unspecified, Normal or Retrograde, not \"Sideways\"", routine,
                  L"CalcEquilibrium");
}

TEST_F(Equilibria, NeedAMaterialToCalculateButNotToCheck) {
    ASSERT_EQ(context->UnsetMaterial(), S_OK);
    EXPECT_TRUE(isSupported(atT, atP));
    expectFailure(calculate(atT, atP), ECapeBadInvOrderHR, L"No material is set; call SetMaterial first",
                  routine, L"CalcEquilibrium");
}

TEST_F(Equilibria, MaterialThatRefusesTheResultIsNamed) {
    material->setOverall(L"temperature", {300.0});
    material->setOverall(L"pressure", {1e6});
    material->refusesWrites = true;
    expectFailure(calculate(atT, atP), ECapeUnknownHR,
                  L"The material object does not accept the phases at equilibrium: the test material says no",
                  routine, L"CalcEquilibrium");
}

} // namespace
} // namespace peng_robinson::test
