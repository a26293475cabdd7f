#include "sheet/excel/front_end.h"
#include "tests/sheet/excel/late_client.h"

namespace sheet::excel {
namespace {

using FrontEndTest = NothingLeft;

TEST_F(FrontEndTest, ItIsFoundThroughItsDispatch) {
    const auto frontEnd = com::make<FrontEnd>();
    EXPECT_TRUE(frontEnd->dispatch().tryAs<IQuorvaneVSTOContext>());
    EXPECT_EQ(frontEnd->services(), nullptr);
}

TEST_F(FrontEndTest, HandOversAreCounted) {
    const auto frontEnd = com::make<FrontEnd>();
    EXPECT_EQ(frontEnd->SetServices(nullptr), S_OK);
    EXPECT_EQ(frontEnd->handOvers(), 1);
}

TEST_F(FrontEndTest, ItRefusesServicesWhenTold) {
    const auto frontEnd = com::make<FrontEnd>();
    frontEnd->refuse(E_ACCESSDENIED);
    EXPECT_EQ(frontEnd->SetServices(nullptr), E_ACCESSDENIED);
    EXPECT_EQ(frontEnd->handOvers(), 1);
}

} // namespace
} // namespace sheet::excel
