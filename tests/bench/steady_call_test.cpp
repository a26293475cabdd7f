// A sheet recalculates the same calls again and again: what such a call may allocate, once the first ones
// have made what is made once.
#include "bench/mixture_scene.h"
#include "bench/steady_counts.h"

#include <gtest/gtest.h>

namespace bench {
namespace {

class SteadyCall : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK); }
    static void TearDownTestSuite() { CoUninitialize(); }

    const Server server{L"Quorvane.dll"};
};

TEST_F(SteadyCall, IsCountedWhereTheAddInAllocates) {
    const SteadyCounts counts =
        steadyCounts([&] { const com::com_ptr<IQuorvaneUDF> made = server.createFunctions(); });
    EXPECT_GE(counts.heap, 1.0) << "making the add-in's object takes memory";
}

TEST_F(SteadyCall, TakesNoMemoryOfItsOwnThroughTheVtable) {
    MixtureScene scene{server, {}};
    EXPECT_EQ(steadyCounts([&] { scene.addInByVtable(); }).heap, 0.0);
}

TEST_F(SteadyCall, TakesNoMemoryOfItsOwnThroughInvoke) {
    MixtureScene scene{server, {}};
    EXPECT_EQ(steadyCounts([&] { scene.addInByInvoke(); }).heap, 0.0);
}

TEST_F(SteadyCall, TakesNoMoreOfComThanAHandWrittenClient) {
    MixtureScene scene{server, {}};
    scene.requireSameResults();
    const double client = steadyCounts([&] { scene.client(); }).com;
    EXPECT_GE(client, 1.0) << "the composition is handed out as an array";
    EXPECT_EQ(steadyCounts([&] { scene.addInByVtable(); }).com, client);
    EXPECT_EQ(steadyCounts([&] { scene.addInByInvoke(); }).com, client);
}

TEST_F(SteadyCall, CopiesACompositionOfAVariableAlone) {
    MixtureScene scene{server, {}};
    const double byValue = steadyCounts([&] { scene.addInByInvoke(); }).com;
    const double ofVariables = steadyCounts([&] {
                                   com::variant result;
                                   scene.call.byInvokeOfVariables(scene.addIn.get(), &result);
                               }).com;
    EXPECT_GT(ofVariables, byValue) << "Automation's dispatcher copies what it hands over";
}

TEST_F(SteadyCall, AsksExcelForTheWorkbookAndNothingElse) {
    MixtureScene scene{server, {}};
    const double client = steadyCounts([&] { scene.client(); }).interfaces;
    // The name of the member, what the workbook is, and references that the client holds all along.
    EXPECT_LE(steadyCounts([&] { scene.addInByVtable(); }).interfaces, client + 6.0);
}

TEST_F(SteadyCall, OfManyCompoundsTakesNoMemoryOfItsOwn) {
    MixtureScene scene{server, {.compounds = 100}};
    EXPECT_EQ(steadyCounts([&] { scene.addInByVtable(); }).heap, 0.0);
}

} // namespace
} // namespace bench
