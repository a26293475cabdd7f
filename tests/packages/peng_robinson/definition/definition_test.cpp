#include "tests/packages/peng_robinson/definition/support.h"

#include <cmath>

namespace peng_robinson::test {
namespace {

std::shared_ptr<const Catalogue> read(const std::string& text) { return readDefinition(text, "Test"); }

TEST(Definition, ValuesAreThoseOfTheFile) {
    const auto catalogue = read(definition());
    ASSERT_EQ(catalogue->compounds.size(), 2u);
    const eos::Compound& compound = catalogue->compounds[1];
    EXPECT_EQ(compound.name, "ethane");
    EXPECT_EQ(compound.formula, "C2H6");
    EXPECT_EQ(compound.cas, "74-84-0");
    EXPECT_EQ(compound.molecularWeight, 30.06904);
    EXPECT_EQ(compound.Tc, 305.322);
    EXPECT_EQ(compound.Pc, 4872200.0);
    EXPECT_EQ(compound.acentricFactor, 0.0995);
    EXPECT_EQ(compound.normalBoilingPoint, 184.569);
    EXPECT_EQ(compound.idealGas.cp(300.0), 53.0);
    EXPECT_EQ(catalogue->origin, "Test");
}

TEST(Definition, UnlistedPairsHaveNoParameter) {
    EXPECT_EQ(read(definition())->k(0, 1), 0.0);
    EXPECT_EQ(read(definition("[binary parameters]\n"))->k(0, 1), 0.0);
}

TEST(Definition, ParametersHoldInBothDirections) {
    const auto catalogue =
        read(definition("[binary parameters]\ncompound 1,compound 2,k\nEthane,METHANE,-0.0026\n"));
    EXPECT_EQ(catalogue->k(0, 1), -0.0026);
    EXPECT_EQ(catalogue->k(1, 0), -0.0026);
}

TEST(Definition, ConstantsAreExactUnlessTheFileHasThem) {
    const auto exact = read(definition())->constants;
    EXPECT_EQ(exact.R, 8.31446261815324);
    EXPECT_EQ(exact.omegaA, 0.45723552892138218938);
    EXPECT_EQ(exact.omegaB, 0.077796073903888455972);
    const auto given =
        read(definition("[package]\ngas constant,8.3144621\nOmega A,0.45724333333\nomega b,0.077803333\n"))
            ->constants;
    EXPECT_EQ(given.R, 8.3144621);
    EXPECT_EQ(given.omegaA, 0.45724333333);
    EXPECT_EQ(given.omegaB, 0.077803333);
}

TEST(Definition, DescriptionMayHoldASeparator) {
    EXPECT_EQ(read("[package]\ndescription,\"Lean gas, dry\"\n" + definition())->description,
              "Lean gas, dry");
}

TEST(Definition, SectionsStandInAnyOrder) {
    const auto catalogue = read("[binary parameters]\ncompound 1,compound 2,k\nmethane,ethane,0.01\n" +
                                definition("[Package]\n"));
    EXPECT_EQ(catalogue->k(0, 1), 0.01);
}

TEST(Definition, ColumnsStandInAnyOrderAndCase) {
    const auto catalogue =
        read("[compounds]\n"
             "cp0,NAME,formula,cas number,Molecular Weight,acentric factor,critical pressure,"
             "critical temperature,normal boiling point\n"
             "20.8,argon,Ar,7440-37-1,39.948,-0.00219,4863000,150.687,87.302\n");
    EXPECT_EQ(catalogue->compounds[0].name, "argon");
    EXPECT_EQ(catalogue->compounds[0].Tc, 150.687);
}

TEST(Definition, PseudoComponentNeedsNoFormulaNoNumberAndNoBoilingPoint) {
    const auto catalogue = read("[compounds]\n" + header + "C7+,,,110,580,2600000,0.36,,180\n");
    EXPECT_EQ(catalogue->compounds[0].formula, "");
    EXPECT_EQ(catalogue->compounds[0].cas, "");
    EXPECT_TRUE(std::isnan(catalogue->compounds[0].normalBoilingPoint));
    EXPECT_TRUE(std::isnan(catalogue->compounds[0].formationEnthalpy));
}

TEST(Definition, FurtherColumnsMayBeGiven) {
    const auto catalogue =
        read("[compounds]\n" + header.substr(0, header.size() - 1) +
             ",IUPAC name,SMILES,critical density,enthalpy of formation,Gibbs energy of formation,standard "
             "entropy,liquid density,parachor\n" +
             ethane.substr(0, ethane.size() - 1) + ",ethane,CC,6856.887,-83820,-31920,229.12,543.8,110.5\n");
    const eos::Compound& compound = catalogue->compounds[0];
    EXPECT_EQ(compound.iupacName, "ethane");
    EXPECT_EQ(compound.smiles, "CC");
    EXPECT_EQ(compound.criticalDensity, 6856.887);
    EXPECT_EQ(compound.formationEnthalpy, -83820.0);
    EXPECT_EQ(compound.formationGibbs, -31920.0);
    EXPECT_EQ(compound.standardEntropy, 229.12);
    EXPECT_EQ(compound.liquidDensity, 543.8);
    EXPECT_EQ(compound.parachor, 110.5);
}

TEST(Definition, HeatCapacityMayBeAPolynomial) {
    const auto catalogue = read("[compounds]\nname,formula,CAS number,molecular weight,critical "
                                "temperature,critical pressure,acentric "
                                "factor,normal boiling point,cp0,cp1,cp2,cp3,cp4,cp from,cp to\n"
                                "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,19.25,5.213e-2,"
                                "1.197e-5,-1.132E-8,,250,1500\n");
    const eos::HeatCapacity& idealGas = catalogue->compounds[0].idealGas;
    EXPECT_EQ(idealGas.powers, (std::array{5.213e-2, 1.197e-5, -1.132e-8, 0.0}));
    EXPECT_EQ(idealGas.cp(3000.0), idealGas.cp(1500.0));
}

TEST(Definition, HeatCapacityMayBeThatOfAlyAndLee) {
    const auto catalogue = read(
        "[compounds]\nname,formula,CAS number,molecular weight,critical temperature,critical "
        "pressure,acentric "
        "factor,normal boiling point,cpA,cpB,cpC,cpD,cpE\n"
        "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,33.298,79.933,2086.9,41.602,991.96\n");
    for (const double T : {100.0, 298.15, 700.0, 1500.0}) {
        EXPECT_EQ(catalogue->compounds[0].idealGas.cp(T), eos::findCompound("methane")->idealGas.cp(T));
        EXPECT_EQ(catalogue->compounds[0].idealGas.enthalpy(T),
                  eos::findCompound("methane")->idealGas.enthalpy(T));
    }
}

TEST(Definition, SpreadsheetFilesAreRead) {
    const auto catalogue =
        read("\xEF\xBB\xBF[package];;;;;;;;\r\ndescription;Gas;;;;;;;\r\n;;;;;;;;\r\n[compounds];;;;;;;;\r\n"
             "name;formula;CAS number;molecular weight;critical temperature;critical pressure;"
             "acentric factor;normal boiling point;cp0\r\n"
             "m\xC3\xA9thane;CH4;74-82-8;16.0428;190.564;4599200;0.01142;111.667;36\r\n");
    EXPECT_EQ(catalogue->compounds[0].name, "m\xC3\xA9thane");
    EXPECT_EQ(catalogue->description, "Gas");
}

} // namespace
} // namespace peng_robinson::test
