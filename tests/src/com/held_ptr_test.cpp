// Objects that are lent to components which others wrote.
#include "com/held_ptr.h"
#include "tests/src/com/counted.h"

#include <gtest/gtest.h>

namespace com {
namespace {

TEST(HeldPtr, EndsItsObjectWithItself) {
    int ended = 0;
    {
        const auto object = held_ptr<Counted>::make(&ended);
        EXPECT_EQ(object->references(), 1U);
    }
    EXPECT_EQ(ended, 1);
}

TEST(HeldPtr, KeepsItsObjectFromReleasesTooMany) {
    int ended = 0;
    {
        const auto object = held_ptr<Counted>::make(&ended);
        const auto lent = com_ptr<IPersist>::share(object->persistFace());
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(object->errorFace()->Release(), 1U);
        }
        EXPECT_EQ(ended, 0);
    }
    EXPECT_EQ(ended, 1);
}

TEST(HeldPtr, LeavesItsObjectToThoseWhoKeepIt) {
    int ended = 0;
    {
        com_ptr<IPersist> kept;
        {
            const auto object = held_ptr<Counted>::make(&ended);
            kept = com_ptr<IPersist>::share(object->persistFace());
        }
        EXPECT_EQ(ended, 0);
    }
    EXPECT_EQ(ended, 1);
}

TEST(HeldPtr, EndsItsObjectWhenItGetsAnother) {
    int ended = 0;
    auto object = held_ptr<Counted>::make(&ended);
    object = held_ptr<Counted>::make();
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(object);
    object = {};
    EXPECT_FALSE(object);
}

TEST(HeldPtr, HoldsOnWhenItMoves) {
    int ended = 0;
    auto first = held_ptr<Counted>::make(&ended);
    const held_ptr<Counted> second = std::move(first);
    EXPECT_EQ(second->errorFace()->Release(), 1U);
    EXPECT_EQ(ended, 0);
}

} // namespace
} // namespace com
