#include "packages/peng_robinson/catalogue/named_packages.h"

#include <gtest/gtest.h>
#include <set>

namespace peng_robinson::test {
namespace {

TEST(NamedPackages, EveryPackageHasDifferentCompoundsOfTheTable) {
    for (const NamedPackage& package : namedPackages()) {
        const Configuration configuration = package.configuration();
        const std::vector<std::size_t>& chosen = configuration.selection().compounds;
        EXPECT_EQ(std::set<std::size_t>(chosen.begin(), chosen.end()).size(), chosen.size()) << package.name;
        EXPECT_GE(chosen.size(), 2u) << package.name;
        EXPECT_TRUE(configuration.selection().changed.empty()) << package.name;
    }
}

TEST(NamedPackages, NamesAreDifferentWhateverTheirCase) {
    const auto packages = namedPackages();
    for (std::size_t i = 0; i < packages.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_FALSE(isSameName(packages[i].name, packages[j].name)) << packages[i].name;
        }
    }
}

TEST(NamedPackages, AirSeparationHasTheThreeGasesOfAir) {
    for (const NamedPackage& package : namedPackages()) {
        if (package.name == "Air separation") {
            const Configuration air = package.configuration();
            ASSERT_EQ(air.size(), 3u);
            EXPECT_EQ(air.compound(0).name, "nitrogen");
            EXPECT_EQ(air.compound(1).name, "oxygen");
            EXPECT_EQ(air.compound(2).name, "argon");
            return;
        }
    }
    FAIL() << "there is no such package";
}

} // namespace
} // namespace peng_robinson::test
