#include "packages/peng_robinson/editing/edit_model.h"

#include <gtest/gtest.h>

namespace peng_robinson::test {
namespace {

constexpr std::size_t nitrogen = 0, carbonDioxide = 1, methane = 3, ethane = 4;

struct Editing : testing::Test {
    EditModel model{{builtInCatalogue(), {{methane, nitrogen, ethane}, {{{nitrogen, methane}, 0.5}}}}};
    const CompoundPair changed{nitrogen, methane}, tabulated{nitrogen, ethane};
};

TEST_F(Editing, BeginsWithWhatThePackageHas) {
    EXPECT_EQ(model.chosen(), (std::vector<std::size_t>{methane, nitrogen, ethane}));
    EXPECT_EQ(model.available().size(), eos::compounds().size() - 3);
    EXPECT_EQ(model.available().front(), carbonDioxide);
    EXPECT_FALSE(model.isChanged());
    EXPECT_EQ(model.problem(), std::nullopt);
}

TEST_F(Editing, PairsAreThoseOfTheChosenCompounds) {
    EXPECT_EQ(model.pairs(),
              (std::vector<CompoundPair>{{nitrogen, methane}, {methane, ethane}, {nitrogen, ethane}}));
    EXPECT_EQ(model.nameOf(tabulated), "nitrogen - ethane");
    EXPECT_EQ(model.parameter(changed), 0.5);
    EXPECT_EQ(model.tabulatedParameter(changed), 0.0311);
    EXPECT_TRUE(model.isChanged(changed));
    EXPECT_FALSE(model.isChanged(tabulated));
}

TEST_F(Editing, CompoundsAreAddedAndRemoved) {
    model.add(carbonDioxide);
    model.remove(1);
    EXPECT_EQ(model.chosen(), (std::vector<std::size_t>{methane, ethane, carbonDioxide}));
    EXPECT_EQ(model.available().front(), nitrogen);
    EXPECT_TRUE(model.isChanged());
}

TEST_F(Editing, CompoundsMoveWithinTheList) {
    model.moveUp(0);
    model.moveDown(2);
    EXPECT_FALSE(model.isChanged());
    model.moveUp(2);
    EXPECT_EQ(model.chosen(), (std::vector<std::size_t>{methane, ethane, nitrogen}));
    model.moveDown(0);
    EXPECT_EQ(model.chosen(), (std::vector<std::size_t>{ethane, methane, nitrogen}));
    EXPECT_TRUE(model.isChanged());
}

TEST_F(Editing, ParameterOfARemovedCompoundComesBackWithIt) {
    model.remove(1);
    EXPECT_TRUE(model.result().changed.empty());
    model.add(nitrogen);
    EXPECT_EQ(model.result().changed, (std::map<CompoundPair, double>{{changed, 0.5}}));
}

TEST_F(Editing, TypedParameterIsTaken) {
    EXPECT_EQ(model.setParameter(tabulated, " -0.25 "), std::nullopt);
    EXPECT_EQ(model.parameter(tabulated), -0.25);
    EXPECT_EQ(model.setParameter(tabulated, "+1e-2"), std::nullopt);
    EXPECT_EQ(model.parameter(tabulated), 0.01);
    EXPECT_EQ(model.result().changed.size(), 2u);
}

TEST_F(Editing, TypingTheTableValueChangesNothing) {
    EXPECT_EQ(model.setParameter(tabulated, "0.0515"), std::nullopt);
    EXPECT_FALSE(model.isChanged(tabulated));
    EXPECT_FALSE(model.isChanged());
}

TEST_F(Editing, TableValueComesBack) {
    model.useTabulatedParameter(changed);
    EXPECT_EQ(model.parameter(changed), 0.0311);
    EXPECT_TRUE(model.result().changed.empty());
    EXPECT_TRUE(model.isChanged());
}

TEST_F(Editing, UnusableParametersAreToldAndNotTaken) {
    EXPECT_EQ(model.setParameter(changed, ""), "Enter a number");
    EXPECT_EQ(model.setParameter(changed, "  "), "Enter a number");
    EXPECT_EQ(model.setParameter(changed, "abc"), "\"abc\" is not a number");
    EXPECT_EQ(model.setParameter(changed, "0,1"), "\"0,1\" is not a number; write it with a decimal point");
    EXPECT_EQ(model.setParameter(changed, "0.1x"), "\"0.1x\" is not a number");
    EXPECT_EQ(model.setParameter(changed, "+-1"), "\"+-1\" is not a number");
    EXPECT_EQ(model.setParameter(changed, "nan"), "\"nan\" is not a number");
    EXPECT_EQ(model.setParameter(changed, "1e999"), "\"1e999\" is not a number");
    EXPECT_EQ(model.setParameter(changed, "1.01"), "A binary parameter is between -2 and 1");
    EXPECT_EQ(model.setParameter(changed, "-2.01"), "A binary parameter is between -2 and 1");
    EXPECT_EQ(model.parameter(changed), 0.5);
}

TEST_F(Editing, PackageNeedsACompound) {
    for (int i = 0; i < 3; ++i) {
        model.remove(0);
    }
    EXPECT_EQ(model.problem(), "A package needs at least one compound");
    EXPECT_TRUE(model.pairs().empty());
    model.add(ethane);
    EXPECT_EQ(model.problem(), std::nullopt);
}

} // namespace
} // namespace peng_robinson::test
