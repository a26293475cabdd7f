// The memory that the session lends to calls for the numbers that they read.
#include "src/workbook/session.h"

#include <gtest/gtest.h>
#include <utility>

namespace quorvane {
namespace {

TEST(LentReals, AreTheMemoryThatTheLastCallGaveBack) {
    Session session;
    std::vector<double> reals(10);
    const double* const memory = reals.data();
    session.takeBackReals(std::move(reals));
    EXPECT_EQ(session.lendReals().data(), memory);
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
