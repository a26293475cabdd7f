// What a package calculates when its definition does not give every constant of every compound.
#include "tests/packages/peng_robinson/com/definition_files.h"
#include "tests/packages/peng_robinson/com/test_material.h"

#include <cmath>

namespace peng_robinson::test {
namespace {

// Methane has everything, sludge the enthalpy of formation, residue nothing that may be left out.
struct IncompleteDefinition : DefinitionFiles {
    com::com_ptr<IDispatch> package;
    com::com_ptr<ICapeThermoPropertyRoutine> properties;
    com::com_ptr<TestMaterial> material = com::make<TestMaterial>(Texts{L"residue", L"methane", L"sludge"});

    void SetUp() override {
        write(L"mine.txt", "[compounds]\n"
                           "name,formula,CAS number,molecular weight,critical temperature,critical pressure,"
                           "acentric factor,normal boiling point,cp0,critical density,enthalpy of formation,"
                           "Gibbs energy of formation,parachor\n"
                           "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36,10139,-74600,"
                           "-50490,72\n"
                           "sludge,,,110,580,2600000,0.36,,180,,-200000,,\n"
                           "residue,,,210,680,1800000,0.6,,300\n");
        package = open(L"mine");
        ASSERT_EQ(package.tryAs<ICapeThermoMaterialContext>()->SetMaterial(material->self()), S_OK);
        properties = package.tryAs<ICapeThermoPropertyRoutine>();
    }
    HRESULT calculate(const wchar_t* property, const Reals& x) const {
        material->setConditions(L"Vapor", 600.0, 1e5, x);
        material->setConditions(L"Liquid", 600.0, 1e5, x);
        const com::unique_bstr vapor = com::makeBstr(L"Vapor");
        return std::wstring_view{property}.starts_with(L"surface")
                   ? properties->CalcTwoPhaseProp(texts({property}), texts({L"Vapor", L"Liquid"}))
                   : properties->CalcSinglePhaseProp(texts({property}), vapor.get());
    }
    Reals values(const wchar_t* property, const Reals& x) {
        EXPECT_EQ(calculate(property, x), S_OK) << testing::PrintToString(std::wstring{property});
        const bool isTwo = std::wstring_view{property}.starts_with(L"surface");
        const auto value = material->phaseValue(isTwo ? L"two" : L"Vapor", property);
        return value ? value->values : Reals{};
    }
    void expectRefused(const wchar_t* property, const Reals& x, const std::wstring& message) {
        expectFailure(package.get(), calculate(property, x), ECapeThrmPropertyNotAvailableHR, message,
                      L"ICapeThermoPropertyRoutine", L"CalcSinglePhaseProp");
    }
};

TEST_F(IncompleteDefinition, TellsWhichConstantOfWhichCompoundAPropertyLacks) {
    EXPECT_EQ(calculate(L"enthalpy", {0.1, 0.8, 0.1}), S_OK);
    EXPECT_EQ(calculate(L"enthalpyF", {0.0, 0.5, 0.5}), S_OK);
    expectRefused(L"enthalpyF", {0.1, 0.8, 0.1},
                  L"enthalpyF needs the enthalpy of formation of residue, which is not known");
    expectRefused(L"entropyF.Dtemperature", {0.1, 0.8, 0.1},
                  L"entropyF needs the enthalpy of formation of residue, which is not known");
    expectRefused(L"entropyF", {0.0, 0.5, 0.5},
                  L"entropyF needs the Gibbs energy of formation of sludge, which is not known");
    expectRefused(
        L"viscosity.Dmoles", {0.0, 0.5, 0.5},
        L"Viscosity and thermal conductivity need the critical volume of sludge, which is not known");
}

// What a compound lacks matters only where it is: derivatives by the others have their values.
TEST_F(IncompleteDefinition, DerivativesByCompoundsThatAreThereNeedNoConstantsOfTheOthers) {
    for (const wchar_t* property :
         {L"enthalpyF.DmolFraction", L"enthalpyF.Dmoles", L"entropyF.DmolFraction", L"viscosity.DmolFraction",
          L"thermalConductivity.Dmoles", L"surfaceTension.DmolFraction"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring{property}));
        const Reals alone = values(property, {0.0, 1.0, 0.0});
        const std::size_t phases = std::wstring_view{property}.starts_with(L"surface") ? 2 : 1;
        ASSERT_EQ(alone.size(), 3 * phases);
        for (std::size_t i = 0; i < phases; ++i) {
            EXPECT_TRUE(std::isnan(alone[3 * i]));
            EXPECT_TRUE(std::isfinite(alone[3 * i + 1]));
        }
    }
    EXPECT_TRUE(std::isfinite(values(L"enthalpyF.Dmoles", {0.0, 1.0, 0.0})[2]));
    EXPECT_TRUE(std::isnan(values(L"viscosity.Dmoles", {0.0, 1.0, 0.0})[2]));
}

TEST_F(IncompleteDefinition, MoleNumberDerivativesOfTheCompoundThatIsThereAreThePropertyItself) {
    const Reals x{0.0, 1.0, 0.0};
    const double enthalpy = values(L"enthalpyF", x)[0];
    EXPECT_NEAR(values(L"enthalpyF.Dmoles", x)[1], enthalpy, 1e-9 * std::abs(enthalpy));
    EXPECT_NEAR(values(L"viscosity.Dmoles", x)[1], 0.0, 1e-9 * values(L"viscosity", x)[0]);
}

TEST_F(IncompleteDefinition, FlashAtAnEnthalpyWithFormationNeedsThatOfTheCompoundsThatAreThere) {
    const auto flash = [&](const Reals& z) {
        material->setOverall(L"fraction", z, L"Mole");
        material->setOverall(L"pressure", {1e5});
        material->setOverall(L"enthalpyF", {-74600.0}, L"Mole");
        const com::unique_bstr unspecified = com::makeBstr(L"Unspecified");
        return package.tryAs<ICapeThermoEquilibriumRoutine>()->CalcEquilibrium(
            texts({L"pressure", L"", L"Overall"}), texts({L"enthalpyF", L"", L"Overall"}), unspecified.get());
    };
    ASSERT_EQ(flash({0.0, 1.0, 0.0}), S_OK);
    EXPECT_NEAR(material->overallValue(L"temperature")->values[0], 298.15, 1.0);
    expectFailure(package.get(), flash({0.1, 0.9, 0.0}), ECapeThrmPropertyNotAvailableHR,
                  L"No value for the enthalpy of formation of residue", L"ICapeThermoEquilibriumRoutine",
                  L"CalcEquilibrium");
}

} // namespace
} // namespace peng_robinson::test
