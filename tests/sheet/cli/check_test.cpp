// What `quorvane-sheet check` finds in a package that fits itself, and in the same package with one error
// planted.
#include "sheet/checking/check.h"

#include "sheet/cli/add_in.h"
#include "tests/scripted_package/registered.h"
#include "tests/sheet/cli/ideal_mixture.h"
#include "tests/sheet/cli/program.h"

#include <gmock/gmock.h>
#include <objbase.h>

namespace sheet::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

constexpr const char* functions[] = {"CapeOpenCompounds",        "CapeOpenPhases",
                                     "CapeOpenCompoundConstant", "CapeOpenTemperatureDependentProperty",
                                     "CapeOpenMixtureProperty",  "CapeOpenTwoPhaseProperty",
                                     "CapeOpenPhaseEquilibrium"};

// The scripted package with the ideal mixture's results. What a test plants changes them.
class IdealPackage {
  public:
    IdealPackage() {
        package->model.singlePhase = {{L"volume", 0, true},
                                      {L"enthalpy", 0, true},
                                      {L"entropy", 0, true},
                                      {L"gibbsEnergy", 0, true},
                                      {L"heatCapacityCp", 0, true},
                                      {L"fugacity", 1, false},
                                      {L"fugacityCoefficient", 1, false}};
        package->model.twoPhase = {{L"kvalue", 1, false}};
        package->hook("CalcSinglePhaseProp", [this](scripted::Call& call) { return singlePhase(call); });
        package->hook("CalcTwoPhaseProp", [this](scripted::Call& call) { return twoPhase(call); });
        package->hook("CalcEquilibrium", [this](scripted::Call& call) { return equilibrium(call); });
    }

    scripted::Package package;
    std::function<void(std::string_view name, const ideal::State&, std::vector<double>& values)>
        spoilProperty;
    std::function<void(ideal::Split&)> spoilFlash;
    HRESULT failure = S_OK; // of the property that fails
    std::string fails;
    std::function<bool(const ideal::State&)> refuses; // a property there
    std::function<bool(const ideal::State&)> refusesFlash;
    bool withSolid = false; // half of a liquid is a solid of the same kind
    bool askedWithSolid = false;

  private:
    static ideal::State stateOf(ICapeThermoMaterial& material, const std::wstring& label) {
        const com::unique_bstr phase = com::makeBstr(label);
        ideal::State state{label == L"Vapor" ? ideal::Phase::vapor : ideal::Phase::liquid, 0.0, 0.0, {}};
        com::variant composition;
        EXPECT_EQ(material.GetTPFraction(phase.get(), &state.T, &state.P, &composition), S_OK);
        state.x = scripted::realsOf(composition);
        return state;
    }

    HRESULT singlePhase(scripted::Call& call) {
        const std::wstring label{com::viewOf(call.in[1].bstrVal)};
        const ideal::State state = stateOf(*call.material, label);
        for (const std::wstring& property : scripted::textsOf(call.in[0])) {
            const std::string name = scripted::narrow(property);
            if (name == fails) {
                return failure;
            }
            if (refuses && refuses(state)) {
                return static_cast<HRESULT>(ECapeOutOfBoundsHR);
            }
            std::vector<double> values = ideal::property(name, state);
            if (spoilProperty) {
                spoilProperty(name, state, values);
            }
            package->calculates(property, name.find("ugacity") != std::string::npos ? L"" : L"Mole",
                                std::move(values));
        }
        return call.healthy();
    }

    HRESULT twoPhase(scripted::Call& call) {
        askedWithSolid = askedWithSolid || std::ranges::count(scripted::textsOf(call.in[1]), L"Solid") > 0;
        const ideal::State vapor = stateOf(*call.material, L"Vapor");
        for (const std::wstring& property : scripted::textsOf(call.in[0])) {
            if (property != L"kvalue") {
                return static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR);
            }
            std::vector<double> values = ideal::kValues(vapor.T, vapor.P);
            if (spoilProperty) {
                spoilProperty("kvalue", vapor, values);
            }
            package->calculates(property, L"", std::move(values));
        }
        return call.healthy();
    }

    HRESULT equilibrium(scripted::Call& call) {
        const auto overall = [&](const wchar_t* property, const wchar_t* basis) {
            const com::unique_bstr name = com::makeBstr(property);
            const com::unique_bstr basisName = basis == nullptr ? com::unique_bstr{} : com::makeBstr(basis);
            com::variant value;
            EXPECT_EQ(call.material->GetOverallProp(name.get(), basisName.get(), &value), S_OK) << name.get();
            return scripted::realsOf(value);
        };
        const std::vector<double> z = overall(L"fraction", L"Mole");
        const double P = overall(L"pressure", nullptr).at(0);
        const bool isTP = scripted::textsOf(call.in[0]).at(0) == L"temperature";
        if (isTP && refusesFlash && refusesFlash({{}, overall(L"temperature", nullptr).at(0), P, z})) {
            return static_cast<HRESULT>(ECapeSolvingErrorHR);
        }
        ideal::Split split = isTP ? ideal::flashTP(overall(L"temperature", nullptr).at(0), P, z)
                                  : ideal::flashPV(P, vaporFraction(*call.material), z);
        if (spoilFlash) {
            spoilFlash(split);
        }
        scripted::Flash flash{{}, split.T, split.P};
        const auto add = [&](const wchar_t* label, double fraction, const ideal::Composition& x) {
            if (!x.empty()) {
                flash.phases.push_back({label, fraction, L"Mole", x, L"Mole", split.T, split.P});
            }
        };
        add(L"Vapor", split.vaporFraction, split.vapor);
        const double condensed = 1.0 - split.vaporFraction;
        add(L"Liquid", withSolid ? condensed / 2.0 : condensed, split.liquid);
        if (withSolid) {
            add(L"Solid", condensed / 2.0, split.liquid);
        }
        package->flashes(std::move(flash));
        return call.healthy();
    }

    static double vaporFraction(ICapeThermoMaterial& material) {
        const com::unique_bstr name = com::makeBstr(L"phaseFraction");
        const com::unique_bstr label = com::makeBstr(L"Vapor");
        const com::unique_bstr basis = com::makeBstr(L"Mole");
        com::variant value;
        EXPECT_EQ(material.GetSinglePhaseProp(name.get(), label.get(), basis.get(), &value), S_OK);
        return scripted::realsOf(value).at(0);
    }
};

class CheckTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { ASSERT_EQ(callExport(L"Quorvane.dll", "DllRegisterServer"), S_OK); }
    void SetUp() override {
        ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
        ideal_ = std::make_unique<IdealPackage>();
    }
    void TearDown() override {
        ideal_.reset();
        CoUninitialize();
    }

    checking::Report check(const checking::Choices& choices = {}) {
        AddIn addIn{"check"};
        for (const char* const function : functions) {
            EXPECT_TRUE(addIn.hasFunction(function));
        }
        Component component;
        component.clsid = scripted::packageInProcess;
        component.isPackage = true;
        component.name = "Ideal";
        addIn.attach({"Ideal", "Ideal", std::nullopt}, component);
        return checking::check(
            checking::Package{"Ideal", addIn.offerOf("Ideal"),
                              [&](const formula::EnteredFormula& entered, const formula::Grid& grid) {
                                  return addIn.call(entered, grid);
                              }},
            choices);
    }

    // "question: property: verdict" of what does not fit.
    static std::vector<std::string> misses(const checking::Report& report) {
        const formula::Matrix table = report.table();
        std::vector<std::string> result;
        for (std::size_t row = 1; row < table.rows; ++row) {
            const auto cell = [&](std::size_t column) { return formula::exactText(table.at(row, column)); };
            if (cell(5).starts_with("DIFFERS") || cell(5).starts_with("FAILS")) {
                result.push_back(cell(0) + ": " + cell(1) + ": " + cell(5));
            }
        }
        EXPECT_EQ(report.agrees(), result.empty());
        return result;
    }
    // "question: property: verdict" of all that was asked.
    static std::vector<std::string> rowsOf(const checking::Report& report) {
        const formula::Matrix table = report.table();
        std::vector<std::string> rows;
        for (std::size_t row = 1; row < table.rows; ++row) {
            rows.push_back(formula::exactText(table.at(row, 0)) + ": " +
                           formula::exactText(table.at(row, 1)) + ": " +
                           formula::exactText(table.at(row, 5)));
        }
        return rows;
    }

    std::vector<std::string> found() { return misses(check()); }

    // The property's values are multiplied.
    void plant(const std::string& property, double factor) {
        ideal_->spoilProperty = [=](std::string_view name, const ideal::State&, std::vector<double>& values) {
            for (double& value : values) {
                value *= name == property ? factor : 1.0;
            }
        };
    }

    std::unique_ptr<IdealPackage> ideal_;
};

TEST_F(CheckTest, AHealthyPackageFitsInEveryRespect) {
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    const formula::Matrix table = report.table();
    std::vector<std::string> agreeing;
    for (std::size_t row = 1; row < table.rows; ++row) {
        if (table.at(row, 5) == formula::Value{"agrees"}) {
            agreeing.push_back(formula::exactText(table.at(row, 0)) + ": " +
                               formula::exactText(table.at(row, 1)));
        }
    }
    EXPECT_THAT(
        agreeing,
        ElementsAre("phases add up to the mixture: all 3", "phases have the conditions asked for: all 2",
                    "properties that follow from each other: 2 of 8",
                    "heat capacities and volumes as slopes: all 4", "derivatives by temperature: 7 of 8",
                    "derivatives by pressure: 7 of 8", "derivatives by mole fractions: 7 of 8",
                    "derivatives by mole numbers: 7 of 8", "fugacities agree across phases: Vapor and Liquid",
                    "K-values fit the compositions: Vapor and Liquid"));
}

TEST_F(CheckTest, AWrongTemperatureDerivativeIsNamed) {
    plant("enthalpy.Dtemperature", 1.001);
    EXPECT_THAT(found(), ElementsAre("derivatives by temperature: enthalpy: DIFFERS"));
}

TEST_F(CheckTest, AWrongPressureDerivativeIsNamed) {
    plant("volume.Dpressure", -1.0);
    EXPECT_THAT(found(), ElementsAre("derivatives by pressure: volume: DIFFERS"));
}

TEST_F(CheckTest, AWrongDerivativeByMoleFractionsIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "entropy.DmolFraction") {
            values[1] += 1.0;
        }
    };
    EXPECT_THAT(found(), ElementsAre("derivatives by mole fractions: entropy: DIFFERS"));
}

TEST_F(CheckTest, ATransposedMatrixOfDerivativesIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "fugacity.Dmoles") {
            std::swap(values[1], values[3]);
            std::swap(values[2], values[6]);
            std::swap(values[5], values[7]);
        }
    };
    EXPECT_THAT(found(), ElementsAre("derivatives by mole numbers: fugacity: DIFFERS"));
}

TEST_F(CheckTest, DerivativesByMoleNumbersMustSumToTheProperty) {
    // Of one mole, not of all moles: differences between compounds cannot tell.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name == "enthalpy.Dmoles") {
            const double h = ideal::property("enthalpy", state).at(0);
            for (double& value : values) {
                value -= h;
            }
        }
    };
    EXPECT_THAT(found(), ElementsAre("derivatives by mole numbers: enthalpy: DIFFERS"));
}

TEST_F(CheckTest, FugacitiesThatDifferBetweenThePhasesAreNamed) {
    // All that follows from the fugacities of the vapor is wrong in the same way.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name.starts_with("fugacity") && state.phase == ideal::Phase::vapor) {
            for (double& value : values) {
                value *= 1.0001;
            }
        }
    };
    EXPECT_THAT(found(), ElementsAre("fugacities agree across phases: Vapor and Liquid: DIFFERS"));
}

TEST_F(CheckTest, FugacityCoefficientsThatDoNotFitTheFugacitiesAreNamed) {
    plant("fugacityCoefficient", 1.001);
    EXPECT_THAT(found(), testing::Contains("properties that follow from each other: fugacity = x "
                                           "fugacityCoefficient P: DIFFERS"));
}

TEST_F(CheckTest, APhaseThatLacksSomeOfTheMixtureIsNamed) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        if (!split.vapor.empty()) {
            split.vapor[0] -= 1e-3;
            split.vapor[2] += 1e-3;
        }
    };
    EXPECT_THAT(found(), testing::Contains("phases add up to the mixture: compositions: DIFFERS"));
}

TEST_F(CheckTest, PhaseFractionsThatDoNotSumToOneAreNamed) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        if (split.liquid.empty()) {
            split.vaporFraction = 0.99;
        }
    };
    EXPECT_THAT(found(), testing::Contains("phases add up to the mixture: sum of phase fractions: DIFFERS"));
}

TEST_F(CheckTest, AFlashAtAnotherTemperatureIsNamed) {
    ideal_->spoilFlash = [](ideal::Split& split) { split.T += 0.01; };
    EXPECT_THAT(found(), testing::Contains("phases have the conditions asked for: temperature: DIFFERS"));
}

TEST_F(CheckTest, AHeatCapacityThatDoesNotFitTheEnthalpyIsNamed) {
    // With its derivatives, so that the heat capacity fits itself.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name.starts_with("heatCapacityCp")) {
            for (double& value : values) {
                value *= 1.01;
            }
        }
    };
    EXPECT_THAT(
        found(),
        ElementsAre("heat capacities and volumes as slopes: enthalpy and heatCapacityCp: DIFFERS",
                    "heat capacities and volumes as slopes: entropy and heatCapacityCp / T: DIFFERS"));
}

TEST_F(CheckTest, FugacitiesThatDoNotFitTheVolumeAreNamed) {
    // In both phases alike, so that they agree across the phases.
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name.starts_with("fugacity")) {
            for (double& value : values) {
                value *= std::exp(1e-8 * state.P);
            }
        }
    };
    EXPECT_THAT(found(),
                testing::Contains("heat capacities and volumes as slopes: fugacities and volume: DIFFERS"));
}

TEST_F(CheckTest, AGibbsEnergyThatDoesNotFitEnthalpyAndEntropyIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "gibbsEnergy") {
            values[0] += 50.0;
        }
    };
    EXPECT_THAT(found(),
                testing::Contains("properties that follow from each other: gibbsEnergy = enthalpy - T "
                                  "entropy: DIFFERS"));
}

TEST_F(CheckTest, KValuesThatDoNotFitTheCompositionsAreNamed) {
    plant("kvalue", 1.01);
    EXPECT_THAT(found(), ElementsAre("K-values fit the compositions: Vapor and Liquid: DIFFERS"));
}

TEST_F(CheckTest, AListedPropertyThatFailsIsNamedWithItsText) {
    ideal_->fails = "heatCapacityCp";
    ideal_->failure = static_cast<HRESULT>(ECapeLimitedImplHR);
    ideal_->package->fails("GetTDependentProperty", static_cast<HRESULT>(ECapeComputationHR),
                           L"No correlation");
    EXPECT_THAT(found(), UnorderedElementsAre(
                             StartsWith("listed properties of a phase: heatCapacityCp: FAILS: "),
                             "listed properties by temperature: vaporPressure: FAILS: No correlation",
                             "listed properties by temperature: idealGasEnthalpy: FAILS: No correlation"));
}

TEST_F(CheckTest, DerivativesThatThePackageDoesNotHaveAreNoMiss) {
    ideal_->fails = "volume.Dmoles";
    ideal_->failure = static_cast<HRESULT>(ECapeLimitedImplHR);
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    const formula::Matrix table = report.table();
    const auto row = std::ranges::find_if(table.values, [](const formula::Value& cell) {
        return formula::exactText(cell).starts_with("not available: ");
    });
    EXPECT_NE(row, table.values.end());
}

TEST_F(CheckTest, WhatIsInfiniteForACompoundThatIsNotThereIsNoMiss) {
    ideal_->package->model.singlePhase.push_back({L"logFugacity", 1, false});
    ideal_->package->model.singlePhase.push_back({L"entropy.Dmoles", 1, true});
    const checking::Report report = check({{}, {}, {{1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}}});
    EXPECT_THAT(misses(report), IsEmpty());
}

TEST_F(CheckTest, WhatIsInfiniteForACompoundThatIsThereIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "fugacityCoefficient") {
            values[1] = std::numeric_limits<double>::infinity();
        }
    };
    EXPECT_THAT(
        misses(check({{}, {}, {{1.0, 1.0, 0.0}}})),
        testing::Contains("listed properties of a phase: fugacityCoefficient: FAILS: a value is no number"));
}

TEST_F(CheckTest, TwoPhasePropertiesAreAskedOfThePhasesThatThePackageOffersThemFor) {
    ideal_->package->model.phases.push_back({L"Solid", L"Solid"});
    ideal_->withSolid = true;
    ideal_->package->hook("CheckTwoPhasePropSpec", [](scripted::Call& call) {
        const std::vector<std::wstring> phases = scripted::textsOf(call.in[1]);
        const HRESULT code = call.healthy();
        if (std::ranges::find(phases, L"Solid") != phases.end()) {
            call.out[0].give(com::variant{false});
        }
        return code;
    });
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report),
                testing::Contains("K-values fit the compositions: 2 of 3: not available: not for "
                                  "these phases"));
    EXPECT_FALSE(ideal_->askedWithSolid);
}

// A vapor is not condensed, so that it stays one phase.
TEST_F(CheckTest, WithoutTwoPhasesWhatNeedsThemIsToldAsNotAvailable) {
    const checking::Report report = check({{700.0}, {50'000.0}, {}});
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report),
                testing::IsSupersetOf(
                    {"fugacities agree across phases: phases: not available: no state has two phases",
                     "K-values fit the compositions: phases: not available: no state has two phases",
                     "listed properties of two phases: kvalue: not available: no state has two phases"}));
}

TEST_F(CheckTest, WhatIsNotListedIsToldAsNotAvailable) {
    std::erase_if(ideal_->package->model.singlePhase,
                  [](const scripted::Property& listed) { return listed.name == L"heatCapacityCp"; });
    EXPECT_THAT(
        rowsOf(check()),
        testing::IsSupersetOf(
            {"heat capacities and volumes as slopes: 2 of 4: not available: it lists no heatCapacityCp",
             "properties that follow from each other: 6 of 8: not available: it lists no internalEnergy; "
             "and for other reasons"}));
}

TEST_F(CheckTest, APropertyThatIsMissingCloseByIsToldAsNotAvailable) {
    ideal_->refuses = [](const ideal::State& state) { return state.T != 300.0; };
    const checking::Report report = check({{300.0}, {50'000.0}, {{1.0, 1.0, 1.0}}});
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(
        rowsOf(report),
        testing::IsSupersetOf<testing::Matcher<std::string>>(
            {"heat capacities and volumes as slopes: 2 of 4: not available: a value is missing within "
             "0.5 % of the temperature",
             testing::AllOf(StartsWith("derivatives by temperature: "),
                            testing::HasSubstr("it is not calculated close by, so that no difference "
                                               "can be formed"))}));
}

TEST_F(CheckTest, AListOfKValuesOfAnotherLengthIsNamed) {
    ideal_->spoilProperty = [](std::string_view name, const ideal::State&, std::vector<double>& values) {
        if (name == "kvalue") {
            values.pop_back();
        }
    };
    EXPECT_THAT(found(), ElementsAre("listed properties of two phases: kvalue: FAILS: The material says: "
                                     "Unexpected number of values"));
}

TEST_F(CheckTest, KValuesAreOfTheVaporOverTheLiquidWhateverTheOrderOfThePhases) {
    std::ranges::reverse(ideal_->package->model.phases);
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report), testing::Contains("K-values fit the compositions: Vapor and Liquid: agrees"));
}

TEST_F(CheckTest, AGibbsEnergyMayCountFromTheFormationOfTheCompounds) {
    ideal_->package->model.singlePhase.push_back({L"enthalpyF", 0, true});
    ideal_->package->model.singlePhase.push_back({L"entropyF", 0, true});
    ideal_->spoilProperty = [](std::string_view name, const ideal::State& state,
                               std::vector<double>& values) {
        if (name == "gibbsEnergy") {
            values[0] -= 1e5 + 50.0 * state.T;
        } else if (name == "gibbsEnergy.Dtemperature") {
            values[0] -= 50.0;
        } else if (name == "gibbsEnergy.Dmoles") {
            for (double& value : values) {
                value -= 1e5 + 50.0 * state.T;
            }
        }
    };
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(CheckTest, AStateThatThePackageRefusesIsToldAsNotAvailable) {
    ideal_->refusesFlash = [](const ideal::State& state) { return state.T > 370.0; };
    const checking::Report report = check();
    EXPECT_THAT(misses(report), IsEmpty());
    EXPECT_THAT(rowsOf(report), testing::Contains("K-values fit the compositions: Vapor and Liquid: agrees"));
}

TEST_F(CheckTest, AStateThatWasAskedForAndIsRefusedIsNamed) {
    ideal_->refusesFlash = [](const ideal::State& state) { return state.T > 370.0; };
    EXPECT_THAT(misses(check({{300.0, 380.0}, {50'000.0}, {}})),
                ElementsAre("phase equilibria: temperature and pressure: FAILS: solution error"));
}

TEST_F(CheckTest, DewPointsBelowBubblePointsByRoundingAreOneTemperature) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        split.T *= split.vaporFraction == 1.0 ? 1.0 - 1e-9 : 1.0;
    };
    EXPECT_THAT(rowsOf(check({{}, {}, {{0.0, 1.0, 0.0}}})),
                testing::Contains("fugacities agree across phases: Vapor and Liquid: agrees"));
}

TEST_F(CheckTest, TracesThatAFlashDoesNotResolveAreNoMiss) {
    ideal_->spoilFlash = [](ideal::Split& split) {
        if (!split.liquid.empty() && !split.vapor.empty()) {
            split.liquid[2] += 1e-11;
            split.liquid[0] -= 1e-11;
        }
    };
    EXPECT_THAT(misses(check({{}, {}, {{0.5, 0.5, 1e-7}}})), IsEmpty());
}

TEST_F(CheckTest, AFlashThatFailsIsNamedWithItsText) {
    ideal_->package->recovers("CalcEquilibrium");
    ideal_->package->fails("CalcEquilibrium", static_cast<HRESULT>(ECapeSolvingErrorHR), L"No solution");
    EXPECT_THAT(found(), testing::Contains("phase equilibria: temperature and pressure: FAILS: No solution"));
}

TEST_F(CheckTest, ChosenConditionsAreThoseThatAreAsked) {
    const checking::Report report = check({{290.0}, {50'000.0}, {{1.0, 1.0, 2.0}}});
    EXPECT_THAT(misses(report), IsEmpty());
    bool asked = false;
    for (const formula::Value& cell : report.table().values) {
        const std::string text = formula::exactText(cell);
        asked = asked || text.find("290 K, 50000 Pa, composition 1") != std::string::npos;
        EXPECT_EQ(text.find("composition 2"), std::string::npos) << text;
    }
    EXPECT_TRUE(asked);
}

} // namespace
} // namespace sheet::cli
