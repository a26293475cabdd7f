// Single-phase properties: what the package is sent, and the values on the basis that was asked for. The
// mixture of 0.2, 0.3 and 0.5 mol of 10, 20 and 40 g/mol weighs 28 g; that of 0.2, 0.2 and 0.6 kg is 45 mol.
#include "tests/src/package/package_fixture.h"

#include <cmath>
#include <limits>

namespace quorvane {

namespace {

using testing::DoubleEq;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

constexpr bool onMole = false;
constexpr bool onMass = true;

class SinglePhaseProperty : public PackageTest {
  protected:
    std::unique_ptr<PropertyPackage> bound = bind();
    std::vector<double> composition = {0.2, 0.3, 0.5};
    bool compositionIsMass = false;

    const std::vector<double>& calculate(const wchar_t* property, bool resultIsMass,
                                         const wchar_t* phase = L"Liquid") {
        const com::unique_bstr name = com::makeBstr(property);
        const com::unique_bstr label = com::makeBstr(phase);
        return bound->calcSinglePhaseProperty(name.get(), label.get(), 350.0, 2e5, composition,
                                              compositionIsMass, lookupProperty(property), resultIsMass);
    }
    std::string failure(const wchar_t* property, bool resultIsMass = onMole) {
        return failureOf([&] { calculate(property, resultIsMass); });
    }
    void useMassComposition() {
        composition = {0.2, 0.2, 0.6};
        compositionIsMass = true;
    }
};

TEST_F(SinglePhaseProperty, IsWhatThePackageCalculates) {
    // Enthalpy is the package's second property, Liquid its second phase.
    EXPECT_THAT(calculate(L"enthalpy", onMole), ElementsAre(DoubleNear(22000.3502, 1e-9)));
    EXPECT_THAT(calculate(L"fugacityCoefficient", onMole, L"vapor"),
                Pointwise(DoubleNear(1e-9), {51010.3502, 51020.3502, 51030.3502}));
    EXPECT_EQ(calculate(L"fugacityCoefficient.Dmoles", onMole).size(), 9U);
}

TEST_F(SinglePhaseProperty, SendsTheNamesAsTheyAreWritten) {
    calculate(L"ENTHALPY", onMole, L"LIQUID");
    EXPECT_THAT(script.calls("CalcSinglePhaseProp"), ElementsAre("CalcSinglePhaseProp([ENTHALPY], LIQUID)"));
}

TEST_F(SinglePhaseProperty, ThePackageReadsConditionsAndCompositionFromTheMaterial) {
    std::string seen;
    script.hook("CalcSinglePhaseProp", [&](scripted::Call& call) {
        com::variant T{0.0}, P{0.0}, fractions, mass;
        const auto fraction = com::makeBstr(L"fraction");
        const auto basis = com::makeBstr(L"Mass");
        EXPECT_EQ(call.material->GetTPFraction(call.in[1].bstrVal, &T.dblVal, &P.dblVal, &fractions), S_OK);
        EXPECT_EQ(call.material->GetSinglePhaseProp(fraction.get(), call.in[1].bstrVal, basis.get(), &mass),
                  S_OK);
        seen = scripted::textOf(T) + " " + scripted::textOf(P) + " " + scripted::textOf(fractions) + " " +
               scripted::textOf(mass);
        return call.healthy();
    });
    calculate(L"viscosity", onMole);
    EXPECT_EQ(seen, "350 200000 [0.2, 0.3, 0.5] [0.07142857143, 0.2142857143, 0.7142857143]");
    useMassComposition();
    calculate(L"viscosity", onMole);
    EXPECT_EQ(seen, "350 200000 [0.4444444444, 0.2222222222, 0.3333333333] [0.2, 0.2, 0.6]");
}

TEST_F(SinglePhaseProperty, TextsAreLentToTheSameArrayEachTimeAndTakenBack) {
    std::vector<SAFEARRAY*> arrays;
    std::vector<BSTR> lent;
    script.hook("CalcSinglePhaseProp", [&](scripted::Call& call) {
        arrays.push_back(call.in[0].parray);
        lent.push_back(*static_cast<BSTR*>(call.in[0].parray->pvData));
        return lent.size() == 2 ? E_FAIL : call.healthy();
    });
    const com::unique_bstr name = com::makeBstr(L"viscosity");
    const com::unique_bstr label = com::makeBstr(L"Liquid");
    for (int i = 0; i < 3; ++i) {
        failureOf([&] {
            bound->calcSinglePhaseProperty(name.get(), label.get(), 350.0, 2e5, composition, false,
                                           lookupProperty(L"viscosity"), false);
        });
        EXPECT_EQ(lent.back(), name.get());
        EXPECT_EQ(*static_cast<BSTR*>(arrays.back()->pvData), nullptr);
        EXPECT_EQ(arrays.back(), arrays.front());
    }
    EXPECT_EQ(lent.size(), 3U);
}

TEST_F(SinglePhaseProperty, AFailureIsShownInThePackagesWordsAlone) {
    script.fails("CalcSinglePhaseProp", ecapeComputation, L"No root found");
    EXPECT_EQ(failure(L"enthalpy"), "No root found");
    script.fails("CalcSinglePhaseProp", ecapeComputation);
    EXPECT_EQ(failure(L"enthalpy"), "computation error");
    script.fails("CalcSinglePhaseProp", E_FAIL, L"No root found");
    EXPECT_EQ(failure(L"enthalpy"), systemText(E_FAIL));
}

TEST_F(SinglePhaseProperty, AFailureCountsEvenWhenAValueArrived) {
    script.hook("CalcSinglePhaseProp", [](scripted::Call& call) {
        EXPECT_EQ(call.healthy(), S_OK);
        return E_FAIL;
    });
    EXPECT_EQ(failure(L"enthalpy"), systemText(E_FAIL));
}

TEST_F(SinglePhaseProperty, NothingHasNoOtherBasis) {
    constexpr const char* message = "Unable to perform basis conversion, composition sums to zero";
    composition = {0.0, 0.0, 0.0};
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    script.calculates(L"density", L"Mole", {50.0});
    script.calculates(L"density.DmolFraction", L"Mole", {1.0, 2.0, 3.0});
    EXPECT_THAT(calculate(L"enthalpy", onMole), ElementsAre(1000.0));
    EXPECT_EQ(failure(L"enthalpy", onMass), message);
    EXPECT_EQ(failure(L"density", onMass), message);
    EXPECT_EQ(failure(L"density.DmolFraction", onMass), message);
    EXPECT_EQ(failure(L"density.DmolFraction", onMass), message) << "and the base property is not used up";
    composition = {0.2, 0.3, 0.5};
    EXPECT_EQ(calculate(L"density.DmolFraction", onMass).size(), 3U);
}

TEST_F(SinglePhaseProperty, NumbersOfThePackageThatAreNoneArePassedOn) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    script.calculates(L"entropy", L"Mole", {infinity});
    EXPECT_THAT(calculate(L"entropy", onMole), ElementsAre(infinity));
    EXPECT_THAT(calculate(L"entropy", onMass), ElementsAre(infinity));
    script.calculates(L"entropy", L"Mole", {std::numeric_limits<double>::quiet_NaN()});
    EXPECT_THAT(calculate(L"entropy", onMass), ElementsAre(testing::IsNan()));
}

TEST_F(SinglePhaseProperty, APackageThatCalculatesNothingIsFoundOut) {
    calculate(L"enthalpy", onMole);
    script.answers("CalcSinglePhaseProp");
    EXPECT_EQ(failure(L"enthalpy"), "Property was not calculated by property package");
}

TEST_F(SinglePhaseProperty, WhatTheMaterialRefusesIsNotAResult) {
    script.calculates(L"enthalpy", L"Mole", {1.0, 2.0});
    EXPECT_EQ(failure(L"enthalpy"), "The material says: Unexpected number of values");
    script.calculates(L"enthalpy", L"", {1.0});
    EXPECT_EQ(failure(L"enthalpy"), "The material says: Invalid basis");
}

TEST_F(SinglePhaseProperty, StaysAsItIsOnTheSameBasis) {
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    EXPECT_THAT(calculate(L"enthalpy", onMole), ElementsAre(1000.0));
    script.calculates(L"enthalpy", L"Mass", {1000.0});
    EXPECT_THAT(calculate(L"enthalpy", onMass), ElementsAre(1000.0));
}

TEST_F(SinglePhaseProperty, PerMoleBecomesPerKilogram) {
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    EXPECT_THAT(calculate(L"enthalpy", onMass), ElementsAre(DoubleEq(1000.0 / 0.028)));
}

TEST_F(SinglePhaseProperty, PerKilogramBecomesPerMole) {
    script.calculates(L"enthalpy", L"Mass", {1000.0});
    EXPECT_THAT(calculate(L"enthalpy", onMole), ElementsAre(DoubleEq(28.0)));
}

TEST_F(SinglePhaseProperty, ADensityGoesTheOtherWay) {
    script.calculates(L"density", L"Mole", {1000.0});
    EXPECT_THAT(calculate(L"density", onMass), ElementsAre(DoubleEq(28.0)));
    script.calculates(L"density", L"Mass", {1000.0});
    EXPECT_THAT(calculate(L"density", onMole), ElementsAre(DoubleEq(1000.0 / 0.028)));
}

TEST_F(SinglePhaseProperty, AMassCompositionHasTheMolarMassOfItsMoles) {
    useMassComposition();
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    EXPECT_THAT(calculate(L"enthalpy", onMass), ElementsAre(DoubleEq(45000.0)));
    script.calculates(L"density", L"Mole", {900.0});
    EXPECT_THAT(calculate(L"density", onMass), ElementsAre(DoubleEq(20.0)));
}

TEST_F(SinglePhaseProperty, TemperatureAndPressureDerivativesConvertLikeTheProperty) {
    script.calculates(L"enthalpy.Dtemperature", L"Mole", {14.0});
    EXPECT_THAT(calculate(L"enthalpy.Dtemperature", onMass), ElementsAre(DoubleEq(500.0)));
    script.calculates(L"density.Dpressure", L"Mole", {1000.0});
    EXPECT_THAT(calculate(L"density.Dpressure", onMass), ElementsAre(DoubleEq(28.0)));
}

TEST_F(SinglePhaseProperty, WithoutABasisNothingIsConverted) {
    script.calculates(L"fugacityCoefficient", L"", {1.0, 2.0, 3.0});
    EXPECT_THAT(calculate(L"fugacityCoefficient", onMass), ElementsAre(1.0, 2.0, 3.0));
    script.calculates(L"viscosity", L"", {5.0});
    EXPECT_THAT(calculate(L"viscosity", onMass), ElementsAre(5.0));
}

TEST_F(SinglePhaseProperty, ANewCompositionConvertsWithItsOwnMolarMass) {
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    calculate(L"enthalpy", onMass);
    composition = {1.0, 0.0, 0.0};
    EXPECT_THAT(calculate(L"enthalpy", onMass), ElementsAre(DoubleEq(100000.0)));
}

TEST_F(SinglePhaseProperty, AMissingMolecularWeightFailsOnlyAConversionThatNeedsIt) {
    script.model.compounds[1].molecularWeight = missingMarker;
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    EXPECT_EQ(failure(L"enthalpy", onMole), "no failure");
    EXPECT_EQ(failure(L"enthalpy", onMass),
              "Unable to perform basis conversion, one or more missing values for molecular weight");
    composition = {0.5, 0.0, 0.5};
    EXPECT_THAT(calculate(L"enthalpy", onMass), ElementsAre(DoubleEq(40000.0)));
}

// Derivatives with respect to composition: M = 0.028 kg/mol, g = 1/M, b the converted property itself.

TEST_F(SinglePhaseProperty, MoleFractionDerivativesPerMoleBecomePerKilogram) {
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    script.calculates(L"enthalpy.DmolFraction", L"Mole", {100.0, 200.0, 300.0});
    // b = 35714.2857; (100 - g b 0.01) g and so on.
    EXPECT_THAT(calculate(L"enthalpy.DmolFraction", onMass),
                Pointwise(DoubleNear(1e-5), {-451967.930029, -903935.860058, -1811443.14869}));
    EXPECT_THAT(script.calls("CalcSinglePhaseProp"),
                ElementsAre("CalcSinglePhaseProp([enthalpy.DmolFraction], Liquid)",
                            "CalcSinglePhaseProp([enthalpy], Liquid)"));
}

TEST_F(SinglePhaseProperty, MoleFractionDerivativesPerKilogramBecomePerMole) {
    script.calculates(L"enthalpy", L"Mass", {1000.0});
    script.calculates(L"enthalpy.DmolFraction", L"Mass", {100.0, 200.0, 300.0});
    // b = 28; 0.028 * 100 + 0.01 * 28 and so on.
    EXPECT_THAT(calculate(L"enthalpy.DmolFraction", onMole),
                Pointwise(DoubleNear(1e-12), {3.08, 6.16, 9.52}));
}

TEST_F(SinglePhaseProperty, MoleFractionDerivativesOfADensityGoTheOtherWay) {
    script.calculates(L"density", L"Mole", {1000.0});
    script.calculates(L"density.DmolFraction", L"Mole", {100.0, 200.0, 300.0});
    EXPECT_THAT(calculate(L"density.DmolFraction", onMass), Pointwise(DoubleNear(1e-12), {3.08, 6.16, 9.52}));
}

TEST_F(SinglePhaseProperty, MoleFractionDerivativesOfAMassDensityBecomeMolar) {
    script.calculates(L"density", L"Mass", {1000.0});
    script.calculates(L"density.DmolFraction", L"Mass", {100.0, 200.0, 300.0});
    EXPECT_THAT(calculate(L"density.DmolFraction", onMole),
                Pointwise(DoubleNear(1e-5), {-451967.930029, -903935.860058, -1811443.14869}));
}

TEST_F(SinglePhaseProperty, MoleFractionDerivativesOfAMassComposition) {
    useMassComposition();
    script.calculates(L"enthalpy", L"Mole", {1000.0});
    script.calculates(L"enthalpy.DmolFraction", L"Mole", {100.0, 200.0, 300.0});
    // g = 45, b = 45000: (100 - 45 * 45000 * 0.01) * 45 and so on.
    EXPECT_THAT(calculate(L"enthalpy.DmolFraction", onMass),
                Pointwise(DoubleNear(1e-6), {-906750.0, -1813500.0, -3631500.0}));
}

TEST_F(SinglePhaseProperty, MoleNumberDerivativesOfADensityBecomePerKilogram) {
    script.calculates(L"density", L"Mole", {1000.0});
    script.calculates(L"density.Dmoles", L"Mole", {100.0, 200.0, 300.0});
    // s = 230, b = 28; (100 - 230) 0.028 + (0.01 - 0.028) 28 and so on.
    EXPECT_THAT(calculate(L"density.Dmoles", onMass), Pointwise(DoubleNear(1e-12), {-4.144, -1.064, 2.296}));
}

TEST_F(SinglePhaseProperty, MoleNumberDerivativesOfAMassDensityBecomeMolar) {
    script.calculates(L"density", L"Mass", {1000.0});
    script.calculates(L"density.Dmoles", L"Mass", {100.0, 200.0, 300.0});
    // b = 35714.2857; (100 - ((0.01 - 0.028) b g + 230)) g and so on.
    EXPECT_THAT(calculate(L"density.Dmoles", onMole),
                Pointwise(DoubleNear(1e-5), {815327.988338, 363360.058309, -544147.230321}));
}

TEST_F(SinglePhaseProperty, MoleNumberDerivativesOfAMassCompositionAreWeightedByMoleFractions) {
    useMassComposition();
    script.calculates(L"density", L"Mole", {1000.0});
    script.calculates(L"density.Dmoles", L"Mole", {100.0, 200.0, 300.0});
    // s = 1700/9, M = 1/45, b = 1000/45.
    EXPECT_THAT(calculate(L"density.Dmoles", onMass),
                Pointwise(DoubleNear(1e-10), {-2.24691358025, 0.197530864198, 2.86419753086}));
}

TEST_F(SinglePhaseProperty, MoleNumberDerivativesOfAMassDensityAreWeightedByMoleFractionsToo) {
    useMassComposition();
    script.calculates(L"density", L"Mass", {1000.0});
    script.calculates(L"density.Dmoles", L"Mass", {100.0, 200.0, 300.0});
    // s = 1700/9, g = 45, b = 45000: (100 - ((0.01 - 1/45) 45000 * 45 + s)) * 45 and so on.
    EXPECT_THAT(calculate(L"density.Dmoles", onMole),
                Pointwise(DoubleNear(1e-6), {1109750.0, 203000.0, -1615000.0}));
}

TEST_F(SinglePhaseProperty, MoleNumberDerivativesOfTotalsAreNeverConverted) {
    script.calculates(L"enthalpy.Dmoles", L"Mole", {100.0, 200.0, 300.0});
    EXPECT_THAT(calculate(L"enthalpy.Dmoles", onMass), ElementsAre(100.0, 200.0, 300.0));
    EXPECT_EQ(script.count("CalcSinglePhaseProp"), 1U);
}

TEST_F(SinglePhaseProperty, CompositionDerivativesOnTheirOwnBasisNeedNoSecondCall) {
    script.calculates(L"enthalpy.DmolFraction", L"Mole", {100.0, 200.0, 300.0});
    EXPECT_THAT(calculate(L"enthalpy.DmolFraction", onMole), ElementsAre(100.0, 200.0, 300.0));
    EXPECT_EQ(script.count("CalcSinglePhaseProp"), 1U);
}

TEST_F(SinglePhaseProperty, ASecondConversionOfCompositionDerivativesFails) {
    ASSERT_EQ(failure(L"enthalpy.DmolFraction", onMass), "no failure");
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), "Invalid/unknown property \"enthalpyenthalpy\"");
    EXPECT_EQ(failure(L"density.Dmoles", onMass), "Invalid/unknown property \"enthalpyenthalpydensity\"");
    EXPECT_EQ(failure(L"enthalpy", onMass), "no failure");
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMole), "no failure");
}

TEST_F(SinglePhaseProperty, ASecondConversionOfCompositionDerivativesFailsEvenAfterTheFirstFailed) {
    script.fails("CalcSinglePhaseProp", E_FAIL);
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), systemText(E_FAIL));
    script.hook("CalcSinglePhaseProp", [](scripted::Call& call) {
        return scripted::textOf(call.in[0]) == "[enthalpy]" ? E_FAIL : call.healthy();
    });
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), systemText(E_FAIL));
    script.recovers("CalcSinglePhaseProp");
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), "Invalid/unknown property \"enthalpyenthalpy\"");
}

TEST_F(SinglePhaseProperty, ASecondConversionOfCompositionDerivativesFailsEvenAfterAnEdit) {
    ASSERT_EQ(failure(L"enthalpy.DmolFraction", onMass), "no failure");
    bound->reset();
    EXPECT_EQ(failure(L"density.DmolFraction", onMass), "Invalid/unknown property \"enthalpydensity\"");
}

TEST_F(SinglePhaseProperty, HoweverOftenAConversionFailsItsMessageFitsIntoACell) {
    constexpr std::size_t mostCharactersOfACell = 32767;
    const auto message = [](const std::string& sought) {
        return "Invalid/unknown property \"" + sought + "\"";
    };
    ASSERT_EQ(failure(L"enthalpy.DmolFraction", onMass), "no failure");
    std::string sought = "enthalpyenthalpy";
    for (; message(sought).size() <= mostCharactersOfACell; sought += "enthalpy") {
        ASSERT_EQ(failure(L"enthalpy.DmolFraction", onMass), message(sought));
    }
    const std::string longest = message(sought.substr(0, sought.size() - 8));
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), longest);
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), longest);
}

TEST_F(SinglePhaseProperty, EveryPackageConvertsCompositionDerivativesOnce) {
    ASSERT_EQ(failure(L"enthalpy.DmolFraction", onMass), "no failure");
    bound = bind();
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), "no failure");
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), "Invalid/unknown property \"enthalpyenthalpy\"");
}

TEST_F(SinglePhaseProperty, ThePropertyBehindADerivativeIsSentAsItIsWritten) {
    calculate(L"ENTHALPY.dMOLFRACTION", onMass, L"LIQUID");
    EXPECT_THAT(script.calls("CalcSinglePhaseProp"),
                ElementsAre("CalcSinglePhaseProp([ENTHALPY.dMOLFRACTION], LIQUID)",
                            "CalcSinglePhaseProp([ENTHALPY], LIQUID)"));
}

TEST_F(SinglePhaseProperty, AFailureOfThePropertyBehindADerivativeIsShown) {
    script.hook("CalcSinglePhaseProp", [](scripted::Call& call) {
        return scripted::textOf(call.in[0]) == "[enthalpy]" ? E_FAIL : call.healthy();
    });
    EXPECT_EQ(failure(L"enthalpy.DmolFraction", onMass), systemText(E_FAIL));
}

TEST_F(SinglePhaseProperty, ACalculationNeedsCompoundsAndPhases) {
    script.fails("GetCompoundList", ecapeComputation, L"No compounds");
    EXPECT_EQ(failure(L"enthalpy"), "Failed to obtain compound data: No compounds");
    script.recovers("GetCompoundList");
    script.fails("GetPhaseList", ecapeComputation, L"No phases");
    EXPECT_EQ(failure(L"enthalpy"), "Failed to obtain list of phases: No phases");
}

} // namespace

} // namespace quorvane
