// Phase equilibria: what the package is sent, and its phases on the basis that was asked for.
#include "tests/src/package/package_fixture.h"

#include <cmath>

namespace quorvane {

namespace {

using scripted::Flash;
using scripted::FlashPhase;
using testing::DoubleEq;
using testing::ElementsAre;

class Equilibrium : public PackageTest {
  protected:
    const std::unique_ptr<PropertyPackage> bound = bind();
    std::vector<double> composition = {0.2, 0.3, 0.5};
    bool isMass = false;
    const wchar_t* solutionType = nullptr;
    double T = 0.0;
    double P = 0.0;

    const std::vector<PhaseResult>& flash(const wchar_t* name1, double value1, const wchar_t* name2,
                                          double value2) {
        const com::unique_bstr first = com::makeBstr(name1);
        const com::unique_bstr second = com::makeBstr(name2);
        const com::unique_bstr type =
            solutionType == nullptr ? com::unique_bstr{} : com::makeBstr(solutionType);
        return bound->calcEquilibrium({first.get(), value1}, {second.get(), value2}, type.get(), composition,
                                      isMass, T, P);
    }
    const std::vector<PhaseResult>& flashTP() { return flash(L"Temperature", 350.0, L"Pressure", 2e5); }
    std::string failure(const wchar_t* name1, const wchar_t* name2) {
        return failureOf([&] { flash(name1, 0.5, name2, 0.5); });
    }
    std::string failureTP() {
        return failureOf([&] { flashTP(); });
    }
    /// What the package was sent for these two conditions.
    std::string sent(const wchar_t* name1, const wchar_t* name2) {
        script.forgetCalls();
        flash(name1, 0.5, name2, 0.5);
        return script.calls("CalcEquilibrium").at(0);
    }
    static FlashPhase phase(const wchar_t* label, double fraction, const wchar_t* fractionBasis,
                            std::vector<double> values, const wchar_t* basis) {
        return {label, fraction, fractionBasis, std::move(values), basis, 350.0, 2e5};
    }
    /// Vapor of 15 g/mol and liquid of 40 g/mol; the fractions on `basis`.
    void reportsFractions(double vapor, double liquid, const wchar_t* vaporBasis,
                          const wchar_t* liquidBasis) {
        script.flashes({{phase(L"Vapor", vapor, vaporBasis, {0.5, 0.5, 0.0}, L"Mole"),
                         phase(L"Liquid", liquid, liquidBasis, {0.0, 0.0, 1.0}, L"Mole")},
                        350.0,
                        2e5});
    }
};

TEST_F(Equilibrium, IsWhatThePackageReports) {
    const auto& phases = flashTP();
    ASSERT_EQ(phases.size(), 2U);
    EXPECT_EQ(T, 350.0);
    EXPECT_EQ(P, 2e5);
    EXPECT_TRUE(phases[0].present);
    EXPECT_DOUBLE_EQ(phases[0].fraction, 0.25);
    EXPECT_THAT(phases[0].composition.values, ElementsAre(DoubleEq(0.275), 0.3, DoubleEq(0.425)));
    EXPECT_EQ(phases[0].temperature, 350.0);
    EXPECT_EQ(phases[0].pressure, 2e5);
    EXPECT_TRUE(phases[1].present);
    EXPECT_DOUBLE_EQ(phases[1].fraction, 0.75);
    EXPECT_THAT(phases[1].composition.values, ElementsAre(DoubleEq(0.175), 0.3, DoubleEq(0.525)));
}

TEST_F(Equilibrium, TemperatureAndPressureAreSentAsTheyAreWritten) {
    EXPECT_EQ(sent(L"Temperature", L"PRESSURE"),
              "CalcEquilibrium([Temperature, null, overall], [PRESSURE, null, overall], Unspecified)");
    EXPECT_EQ(sent(L"pressure", L"temperature"),
              "CalcEquilibrium([pressure, null, overall], [temperature, null, overall], Unspecified)");
}

TEST_F(Equilibrium, AnEnergyIsSentWithoutBasis) {
    EXPECT_EQ(sent(L"Pressure", L"Enthalpy"),
              "CalcEquilibrium([Pressure, null, overall], [Enthalpy, null, overall], Unspecified)");
    isMass = true;
    EXPECT_EQ(sent(L"Entropy", L"Volume"),
              "CalcEquilibrium([Entropy, null, overall], [Volume, null, overall], Unspecified)");
}

TEST_F(Equilibrium, AVaporFractionIsSentAsThatOfTheVaporPhase) {
    script.phases({{L"Oil", L"Liquid"}, {L"Gas", L"Vapor"}});
    EXPECT_EQ(sent(L"Pressure", L"VaporFraction"),
              "CalcEquilibrium([Pressure, null, overall], [phaseFraction, Mole, Gas], Unspecified)");
    isMass = true;
    EXPECT_EQ(sent(L"vaporfraction", L"Temperature"),
              "CalcEquilibrium([phaseFraction, Mass, Gas], [Temperature, null, overall], Unspecified)");
}

TEST_F(Equilibrium, TheSolutionTypeIsSentWithAVaporFractionOnly) {
    solutionType = L"Retrograde";
    EXPECT_EQ(sent(L"Pressure", L"VaporFraction"),
              "CalcEquilibrium([Pressure, null, overall], [phaseFraction, Mole, Vapor], Retrograde)");
    EXPECT_EQ(sent(L"Pressure", L"Temperature"),
              "CalcEquilibrium([Pressure, null, overall], [Temperature, null, overall], Unspecified)");
    solutionType = L"";
    EXPECT_EQ(sent(L"VaporFraction", L"Pressure"),
              "CalcEquilibrium([phaseFraction, Mole, Vapor], [Pressure, null, overall], Unspecified)");
}

TEST_F(Equilibrium, ThePackageReadsTheConditionsFromTheMaterial) {
    isMass = true;
    composition = {0.2, 0.2, 0.6};
    std::string seen;
    script.hook("CalcEquilibrium", [&](scripted::Call& call) {
        const auto read = [&](const wchar_t* property, const wchar_t* basis) {
            com::variant value;
            const auto name = com::makeBstr(property);
            const auto basisName = com::makeBstr(basis);
            EXPECT_EQ(call.material->GetOverallProp(name.get(), basisName.get(), &value), S_OK);
            seen += scripted::textOf(value);
        };
        read(L"PRESSURE", L"");
        read(L"enthalpy", L"Mass");
        read(L"enthalpy", L"Mole");
        read(L"fraction", L"Mass");
        read(L"fraction", L"Mole");
        return call.healthy();
    });
    flash(L"Pressure", 3e5, L"Enthalpy", 4500.0);
    // 1 kg is 45 mol.
    EXPECT_EQ(seen, "[300000][4500][100][0.2, 0.2, 0.6][0.4444444444, 0.2222222222, 0.3333333333]");
    EXPECT_DOUBLE_EQ(T, 300.1);
    EXPECT_EQ(P, 3e5);
}

TEST_F(Equilibrium, ThePackageReadsTemperatureAndPressureTogetherHoweverTheyAreWritten) {
    std::string seen;
    script.hook("CalcEquilibrium", [&](scripted::Call& call) {
        com::variant temperature{0.0}, pressure{0.0}, fractions;
        EXPECT_EQ(call.material->GetOverallTPFraction(&temperature.dblVal, &pressure.dblVal, &fractions),
                  S_OK);
        seen = scripted::textOf(temperature) + " " + scripted::textOf(pressure) + " " +
               scripted::textOf(fractions);
        return call.healthy();
    });
    flash(L"PRESSURE", 2e5, L"Temperature", 350.0);
    EXPECT_EQ(seen, "350 200000 [0.2, 0.3, 0.5]");
}

TEST_F(Equilibrium, ThePackageReadsTheVaporFractionOnTheBasisOfTheCalculation) {
    std::string seen;
    script.hook("CalcEquilibrium", [&](scripted::Call& call) {
        com::variant value;
        const auto name = com::makeBstr(L"phaseFraction");
        const auto label = com::makeBstr(L"Vapor");
        const auto mole = com::makeBstr(L"Mole");
        EXPECT_EQ(call.material->GetSinglePhaseProp(name.get(), label.get(), mole.get(), &value), S_OK);
        seen = scripted::textOf(value);
        return call.healthy();
    });
    const auto& phases = flash(L"Pressure", 3e5, L"VaporFraction", 0.4);
    EXPECT_EQ(seen, "[0.4]");
    EXPECT_DOUBLE_EQ(phases[0].fraction, 0.4);
}

TEST_F(Equilibrium, WithoutVaporThereIsNoVaporFraction) {
    script.phases({{L"L1", L"Liquid"}, {L"L2", L"Liquid"}});
    EXPECT_EQ(failure(L"Temperature", L"VaporFraction"),
              "Cannot use vapor fraction as flash condition; no vapor phase defined");
    EXPECT_EQ(script.count("CalcEquilibrium"), 0U);
}

TEST_F(Equilibrium, OtherPropertiesAreNoConditions) {
    EXPECT_EQ(failure(L"Temperature", L"viscosity"), "Unsupported flash condition \"viscosity\"");
    EXPECT_EQ(failure(L"fraction", L"Temperature"), "Unsupported flash condition \"fraction\"");
    EXPECT_EQ(failure(L"phaseFraction", L"Temperature"), "Unsupported flash condition \"phaseFraction\"");
    EXPECT_EQ(failure(L"enthalpy.Dtemperature", L"Temperature"),
              "Unsupported flash condition \"enthalpy.Dtemperature\"");
    EXPECT_EQ(failure(L"Colour", L"Temperature"), "Invalid/unknown property \"Colour\"");
    EXPECT_EQ(script.count("CalcEquilibrium"), 0U);
}

TEST_F(Equilibrium, OfTwoMistakenConditionsTheFirstIsNamed) {
    script.phases({{L"L1", L"Liquid"}, {L"L2", L"Liquid"}});
    EXPECT_EQ(failure(L"Colour", L"viscosity"), "Invalid/unknown property \"Colour\"");
    EXPECT_EQ(failure(L"viscosity", L"Colour"), "Unsupported flash condition \"viscosity\"");
    EXPECT_EQ(failure(L"VaporFraction", L"Colour"),
              "Cannot use vapor fraction as flash condition; no vapor phase defined");
}

TEST_F(Equilibrium, AFailureCountsEvenWhenPhasesArrived) {
    script.hook("CalcEquilibrium", [](scripted::Call& call) {
        EXPECT_EQ(call.healthy(), S_OK);
        return E_FAIL;
    });
    EXPECT_EQ(failureTP(), systemText(E_FAIL));
}

TEST_F(Equilibrium, AFailureIsShownInThePackagesWordsAlone) {
    script.fails("CalcEquilibrium", ecapeComputation, L"Flash did not converge");
    EXPECT_EQ(failureTP(), "Flash did not converge");
    script.fails("CalcEquilibrium", static_cast<HRESULT>(ECapeSolvingErrorHR));
    EXPECT_EQ(failureTP(), "solution error");
    script.fails("CalcEquilibrium", E_FAIL, L"Flash did not converge");
    EXPECT_EQ(failureTP(), systemText(E_FAIL));
}

TEST_F(Equilibrium, APackageThatReportsNothingHasNoPhases) {
    flashTP();
    script.answers("CalcEquilibrium");
    const auto& phases = flash(L"Temperature", 360.0, L"Enthalpy", 1.0);
    EXPECT_FALSE(phases[0].present);
    EXPECT_FALSE(phases[1].present);
    EXPECT_TRUE(std::isnan(phases[0].temperature));
    EXPECT_TRUE(std::isnan(phases[0].pressure));
    EXPECT_EQ(T, 360.0) << "the condition";
}

TEST_F(Equilibrium, ATemperatureOrPressureThatNobodyKnowsIsNotTheOneOfBefore) {
    flashTP();
    script.answers("CalcEquilibrium");
    flash(L"Temperature", 360.0, L"Enthalpy", 1.0);
    EXPECT_TRUE(std::isnan(P));
    flash(L"Enthalpy", 1.0, L"Pressure", 3e5);
    EXPECT_TRUE(std::isnan(T));
    EXPECT_EQ(P, 3e5) << "the condition";
}

TEST_F(Equilibrium, TheOverallTemperatureIsThePackages) {
    script.flashes({{phase(L"Liquid", 1.0, L"Mole", {0.2, 0.3, 0.5}, L"Mole")}, 351.5, 2.5e5});
    flashTP();
    EXPECT_EQ(T, 351.5);
    EXPECT_EQ(P, 2.5e5);
}

TEST_F(Equilibrium, ReportsOfOtherPhasesThanThePresentOnesAreNotPresent) {
    script.hook("CalcEquilibrium", [](scripted::Call& call) {
        const auto name = com::makeBstr(L"temperature");
        const auto label = com::makeBstr(L"Vapor");
        EXPECT_EQ(call.material->SetSinglePhaseProp(name.get(), label.get(), nullptr, scripted::reals({1.0})),
                  S_OK);
        return S_OK;
    });
    EXPECT_FALSE(flashTP()[0].present);
}

TEST_F(Equilibrium, CompositionsAreConvertedToTheBasisAskedFor) {
    script.flashes({{phase(L"Vapor", 0.4, L"Mole", {0.25, 0.25, 0.5}, L"Mass"),
                     phase(L"Liquid", 0.6, L"Mole", {0.5, 0.5, 0.0}, L"Mole")},
                    350.0,
                    2e5});
    const auto& phases = flashTP();
    // 25, 12.5 and 12.5 mol.
    EXPECT_THAT(phases[0].composition.values, ElementsAre(DoubleEq(0.5), DoubleEq(0.25), DoubleEq(0.25)));
    EXPECT_THAT(phases[1].composition.values, ElementsAre(0.5, 0.5, 0.0));
    EXPECT_EQ(phases[0].fraction, 0.4);
}

TEST_F(Equilibrium, MassFractionsOfPhasesBecomeMoleFractions) {
    reportsFractions(0.3, 0.7, L"Mass", L"Mass");
    const auto& phases = flashTP();
    // 0.3/15 and 0.7/40 mol per gram: 0.02 and 0.0175.
    EXPECT_DOUBLE_EQ(phases[0].fraction, 0.02 / 0.0375);
    EXPECT_DOUBLE_EQ(phases[1].fraction, 0.0175 / 0.0375);
}

TEST_F(Equilibrium, MoleFractionsOfPhasesBecomeMassFractions) {
    isMass = true;
    reportsFractions(0.4, 0.6, L"Mole", L"Mole");
    const auto& phases = flashTP();
    // 0.4 * 15 and 0.6 * 40 g: 6 and 24.
    EXPECT_DOUBLE_EQ(phases[0].fraction, 0.2);
    EXPECT_DOUBLE_EQ(phases[1].fraction, 0.8);
    EXPECT_THAT(phases[0].composition.values, ElementsAre(DoubleEq(1.0 / 3.0), DoubleEq(2.0 / 3.0), 0.0));
    EXPECT_THAT(phases[1].composition.values, ElementsAre(0.0, 0.0, 1.0));
}

TEST_F(Equilibrium, FractionsOnTheBasisAskedForAreNotTouched) {
    reportsFractions(0.4, 0.7, L"MOLE", L"mole");
    const auto& phases = flashTP();
    EXPECT_EQ(phases[0].fraction, 0.4);
    EXPECT_EQ(phases[1].fraction, 0.7) << "nor normalised";
}

TEST_F(Equilibrium, ASinglePhaseIsAllOfTheMixtureOnEitherBasis) {
    isMass = true;
    script.flashes({{phase(L"Liquid", 1.0, L"Mole", {0.2, 0.3, 0.5}, L"Mole")}, 350.0, 2e5});
    const auto& phases = flashTP();
    EXPECT_FALSE(phases[0].present);
    EXPECT_DOUBLE_EQ(phases[1].fraction, 1.0);
}

TEST_F(Equilibrium, FractionsOnDifferentBasesAreRefused) {
    reportsFractions(0.3, 0.7, L"Mass", L"Mole");
    EXPECT_EQ(failureTP(), "Property package set phase fraction in inconsistent bases");
    isMass = true;
    EXPECT_EQ(failureTP(), "Property package set phase fraction in inconsistent bases");
}

TEST_F(Equilibrium, FractionsOfZeroHaveNoOtherBasis) {
    reportsFractions(0.0, 0.0, L"Mole", L"Mole");
    EXPECT_EQ(flashTP()[0].fraction, 0.0);
    isMass = true;
    EXPECT_EQ(failureTP(), "Unable to perform basis conversion, phase fractions sum to zero");
}

TEST_F(Equilibrium, APhaseWithoutAnyAmountHasNoOtherBasis) {
    script.flashes({{phase(L"Liquid", 1.0, L"Mole", {0.0, 0.0, 0.0}, L"Mole")}, 350.0, 2e5});
    EXPECT_EQ(flashTP()[1].fraction, 1.0);
    isMass = true;
    EXPECT_EQ(failureTP(), "Unable to perform basis conversion, composition sums to zero");
    script.flashes({{phase(L"Liquid", 1.0, L"Mole", {0.0, 0.0, 0.0}, L"Mass")}, 350.0, 2e5});
    EXPECT_EQ(failureTP(), "Unable to perform basis conversion, composition sums to zero");
}

TEST_F(Equilibrium, OnlyPresentPhasesCount) {
    // The vapor's fraction is on another basis, but the vapor is not there.
    script.hook("CalcEquilibrium", [](scripted::Call& call) {
        const HRESULT code = call.healthy();
        EXPECT_EQ(call.material->SetPresentPhases(scripted::texts({L"Liquid"}), com::variant{}), S_OK);
        return code;
    });
    reportsFractions(0.3, 1.0, L"Mass", L"Mole");
    EXPECT_EQ(failureTP(), "no failure");
}

TEST_F(Equilibrium, AMissingMolecularWeightFailsOnlyAConversionThatNeedsIt) {
    script.model.compounds[2].molecularWeight = std::nan("");
    const std::string message =
        "Unable to perform basis conversion, one or more missing values for molecular weight";
    reportsFractions(0.4, 0.6, L"Mole", L"Mole");
    EXPECT_EQ(failureTP(), "no failure");
    reportsFractions(0.4, 0.6, L"Mass", L"Mass");
    EXPECT_EQ(failureTP(), message);
    isMass = true;
    reportsFractions(0.4, 0.6, L"Mass", L"Mass");
    EXPECT_EQ(failureTP(), message);
}

TEST_F(Equilibrium, APhaseWithoutFractionOrCompositionIsRefused) {
    script.flashes({{{L"Vapor", 1.0, L"Mole", {}, L"", 350.0, 2e5}}, 350.0, 2e5});
    EXPECT_EQ(failureTP(), "Specified basis does not apply");
    script.flashes({{{L"Vapor", {}, L"", std::vector{0.2, 0.3, 0.5}, L"Mole", 350.0, 2e5}}, 350.0, 2e5});
    EXPECT_EQ(failureTP(), "Specified basis does not apply");
}

TEST_F(Equilibrium, ResultsOfACalculationBeforeDoNotComeBack) {
    flashTP();
    script.flashes({{{L"Liquid", {}, L"", {}, L"", {}, {}}}, {}, {}});
    EXPECT_EQ(failureTP(), "Specified basis does not apply");
}

TEST_F(Equilibrium, APhaseThatThePackageDoesNotHaveIsRefused) {
    script.flashes({{phase(L"Plasma", 1.0, L"Mole", {0.2, 0.3, 0.5}, L"Mole")}, 350.0, 2e5});
    EXPECT_EQ(failureTP(), "The material says: Invalid phase labels: undefined phase \"Plasma\"");
}

TEST_F(Equilibrium, PropertiesAndEquilibriaMayAlternate) {
    const auto enthalpy = com::makeBstr(L"enthalpy");
    const auto liquid = com::makeBstr(L"Liquid");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(failureTP(), "no failure");
        EXPECT_THAT(bound->calcSinglePhaseProperty(enthalpy.get(), liquid.get(), 350.0, 2e5, composition,
                                                   false, lookupProperty(L"enthalpy"), false),
                    ElementsAre(DoubleEq(22000.3502)));
    }
    EXPECT_EQ(script.count("SetMaterial"), 1U);
}

} // namespace

} // namespace quorvane
