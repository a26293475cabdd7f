#include "packages/peng_robinson/eos/cubic.h"
#include "tests/packages/peng_robinson/eos/support.h"

#include <random>

namespace peng_robinson::eos::test {
namespace {

CubicRoots fromRoots(double a, double b, double c) {
    return realRoots(-(a + b + c), a * b + b * c + c * a, -a * b * c);
}

TEST(Cubic, FindsThreeRootsInIncreasingOrder) {
    const CubicRoots roots = fromRoots(0.7, 0.04, 0.3);
    ASSERT_EQ(roots.count, 3u);
    expectRelative({roots.begin(), roots.end()}, {0.04, 0.3, 0.7}, 1e-15);
}

TEST(Cubic, FindsTheOnlyRealRoot) {
    const CubicRoots roots = realRoots(-2.0, 2.0, -1.0); // (Z - 1)(Z^2 - Z + 1)
    ASSERT_EQ(roots.count, 1u);
    EXPECT_DOUBLE_EQ(roots.value[0], 1.0);
}

TEST(Cubic, KeepsTheDigitsOfARootThatIsTwentyOrdersSmaller) {
    const CubicRoots roots = fromRoots(3e-20, 7e-10, 0.99);
    ASSERT_EQ(roots.count, 3u);
    expectRelative({roots.begin(), roots.end()}, {3e-20, 7e-10, 0.99}, 1e-15);
}

TEST(Cubic, FindsATripleRoot) {
    const CubicRoots roots = fromRoots(1.0, 1.0, 1.0);
    ASSERT_GE(roots.count, 1u);
    EXPECT_NEAR(roots.value[0], 1.0, 1e-5); // three equal roots are known to a third of the digits
}

TEST(Cubic, RootsOfRandomCubicsAreRoots) {
    std::mt19937 random{20};
    std::uniform_real_distribution<double> exponent{-12.0, 0.0};
    for (int i = 0; i < 2000; ++i) {
        const double a = std::pow(10.0, exponent(random)), b = std::pow(10.0, exponent(random)),
                     c = std::pow(10.0, exponent(random));
        for (const double z : fromRoots(a, b, c)) {
            const double nearest =
                std::min({std::abs(z / a - 1.0), std::abs(z / b - 1.0), std::abs(z / c - 1.0)});
            EXPECT_LT(nearest, 1e-4) << a << ' ' << b << ' ' << c;
            const double residual = ((z - (a + b + c)) * z + (a * b + b * c + c * a)) * z - a * b * c;
            const double size = z * z * z + (a + b + c) * z * z + (a * b + b * c + c * a) * z + a * b * c;
            EXPECT_LT(std::abs(residual), 4e-16 * size) << a << ' ' << b << ' ' << c;
        }
    }
}

} // namespace
} // namespace peng_robinson::eos::test
