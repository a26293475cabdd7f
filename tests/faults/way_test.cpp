// Without a fault each way ends in the result that ways.tsv has for it, which is what "-" means in the other
// tables.
#include "tests/faults/stage.h"

namespace faults {

namespace {

TEST(Ways, HaveAResultEach) {
    std::vector<std::string> listed;
    for (const auto& [way, result] : resultsWithoutFault()) {
        listed.push_back(way);
        // On some ways something fails from the start.
        const bool fails = way.find("of a failing") != std::string::npos ||
                           way.find("without words") != std::string::npos ||
                           way.find("unreadable") != std::string::npos;
        EXPECT_EQ(result.starts_with("! "), fails) << way;
        EXPECT_FALSE(result.starts_with("failed")) << way;
    }
    EXPECT_EQ(Stage::wayNames(), listed);
}

class WayWithoutFault : public Stage, public ::testing::WithParamInterface<std::string> {};

TEST_P(WayWithoutFault, GivesItsResult) {
    const std::string& way = GetParam();
    EXPECT_EQ(go(way, [] {}), healthy(way));
    // A name is given once.
    if (const auto& again = wayNamed(way).again; again && !way.starts_with("CreateWorkbookPP")) {
        EXPECT_EQ(again(*this), healthy(way)) << "the same objects once more";
    }
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, WayWithoutFault, ::testing::ValuesIn(Stage::wayNames()),
                         [](const auto& tested) { return inNames(tested.param); });

} // namespace

} // namespace faults
