#include "packages/peng_robinson/catalogue/configuration.h"

#include <gtest/gtest.h>

namespace peng_robinson::test {
namespace {

constexpr std::size_t nitrogen = 0, methane = 3, ethane = 4;

TEST(Configuration, HasAllCompoundsInTheOrderOfTheCatalogue) {
    const Configuration all = Configuration::allOf(builtInCatalogue());
    ASSERT_EQ(all.size(), eos::compounds().size());
    EXPECT_EQ(all.compound(nitrogen).name, "nitrogen");
    EXPECT_EQ(all.compound(methane).name, "methane");
}

TEST(Configuration, TabulatedParametersHoldUntilTheyAreChanged) {
    const Configuration chosen{builtInCatalogue(),
                               {{methane, nitrogen, ethane}, {{{nitrogen, methane}, 0.05}}}};
    EXPECT_EQ(chosen.k(0, 1), 0.05);
    EXPECT_EQ(chosen.k(1, 0), 0.05);
    EXPECT_EQ(chosen.k(1, 2), eos::interactionParameter("nitrogen", "ethane"));
}

TEST(Configuration, FindsOnlyTheChosenCompounds) {
    const Configuration chosen{builtInCatalogue(), {{ethane, nitrogen}, {}}};
    EXPECT_EQ(chosen.find("ETHANE"), 0u);
    EXPECT_EQ(chosen.find("methane"), std::nullopt);
    EXPECT_EQ(chosen.findByCas("7727-37-9"), 1u);
    EXPECT_EQ(chosen.findByCas("74-82-8"), std::nullopt);
    EXPECT_EQ(chosen.findByCas(""), std::nullopt);
}

TEST(Configuration, MixturesAreThoseOfTheTable) {
    const Configuration all = Configuration::allOf(builtInCatalogue());
    const std::vector<std::size_t> some{ethane, nitrogen};
    const std::vector<double> x{0.4, 0.6};
    const eos::Fluid expected{{eos::findCompound("ethane"), eos::findCompound("nitrogen")}};
    const auto given = all.fluidOf(some).properties(250.0, 1e6, x, eos::Root::vapor);
    const auto wanted = expected.properties(250.0, 1e6, x, eos::Root::vapor);
    EXPECT_EQ(given.state.lnPhi, wanted.state.lnPhi);
    EXPECT_EQ(given.enthalpy, wanted.enthalpy);
}

TEST(Configuration, ChangedParametersChangeTheMixture) {
    const std::vector<std::size_t> both{0, 1};
    const std::vector<double> x{0.4, 0.6};
    const auto lnPhi = [&](const std::map<CompoundPair, double>& changed) {
        const Configuration chosen{builtInCatalogue(), {{ethane, nitrogen}, changed}};
        return chosen.fluidOf(both).properties(250.0, 1e6, x, eos::Root::vapor).state.lnPhi;
    };
    EXPECT_NE(lnPhi({}), lnPhi({{{nitrogen, ethane}, 0.2}}));
}

} // namespace
} // namespace peng_robinson::test
