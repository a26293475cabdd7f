// Owners of what Windows lends.
#include "com/owned.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace com {
namespace {

int closed = 0;

struct number_traits {
    using pointer = int*;
    static void close(int* number) noexcept { closed += *number; }
};
using unique_number = unique_resource<number_traits>;

class UniqueResource : public testing::Test {
  protected:
    void SetUp() override { closed = 0; }
    int one = 1;
    int ten = 10;
};

TEST_F(UniqueResource, IsClosedOnce) {
    {
        unique_number number{&one};
        const unique_number moved = std::move(number);
        EXPECT_FALSE(number);
        EXPECT_EQ(moved.get(), &one);
    }
    EXPECT_EQ(closed, 1);
    { const unique_number nothing; }
    EXPECT_EQ(closed, 1);
}

TEST_F(UniqueResource, IsClosedWhenAnotherTakesItsPlace) {
    unique_number number{&one};
    number = unique_number{&ten};
    EXPECT_EQ(closed, 1);
    number.reset();
    EXPECT_EQ(closed, 11);
    number.reset(&one);
    EXPECT_EQ(*number.put(), nullptr);
    EXPECT_EQ(closed, 12);
}

TEST_F(UniqueResource, SurvivesBeingMovedIntoItself) {
    unique_number number{&one};
    auto& same = number;
    number = std::move(same);
    EXPECT_EQ(number.get(), &one);
    EXPECT_EQ(closed, 0);
}

TEST_F(UniqueResource, IsNotClosedOnceGivenAway) {
    {
        unique_number number{&one};
        EXPECT_EQ(number.release(), &one);
    }
    EXPECT_EQ(closed, 0);
}

TEST(Bstr, OfAnEmptyTextIsNotNull) {
    EXPECT_TRUE(makeBstr(L""));
    EXPECT_EQ(viewOf(makeBstr(L"")), L"");
}

TEST(Bstr, KeepsEveryCharacter) {
    const std::wstring_view text{L"a\0b", 3};
    const unique_bstr owner = makeBstr(text);
    EXPECT_EQ(viewOf(owner), text);
    EXPECT_EQ(SysStringLen(owner.get()), 3U);
}

TEST(Bstr, OfNothingReadsAsAnEmptyText) { EXPECT_EQ(viewOf(BSTR{nullptr}), L""); }

} // namespace
} // namespace com
