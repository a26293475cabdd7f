// The memory that the session lends to calls for the numbers that they read.
#include "src/workbook/session.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(LentReals, AreTheMemoryThatTheLastCallGaveBack) {
    Session session;
    session.takeBackReals(std::vector<double>(10));
    EXPECT_EQ(session.lendReals().capacity(), 10U) << "new memory would have none";
}

TEST(LentReals, OfACallInsideACallAreNotThoseOfTheOuterOne) {
    Session session;
    session.takeBackReals(std::vector<double>(10));
    const std::vector<double> outer = session.lendReals();
    const std::vector<double> inner = session.lendReals();
    EXPECT_GE(outer.capacity(), 10U);
    EXPECT_EQ(inner.capacity(), 0U);
}

TEST(LentReals, OfAWholeColumnAreNotKept) {
    Session session;
    session.takeBackReals(std::vector<double>(1048576));
    EXPECT_EQ(session.lendReals().capacity(), 0U);
}

} // namespace
} // namespace quorvane
