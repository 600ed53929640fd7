#include "BuiltinsFixture.h"
#include "FormulaFunction/platform/Platform.h"

namespace {

using RandomTest = BuiltinsTest;

constexpr double kOneIn32767 = 0.0000305185094759971922;

TEST_F(RandomTest, DrawsFromTheProcessWideGenerator) {
    // The generator's first values from seed 1 are 41, 18467, 6334.
    ffplatform::SeedRandom(1);
    EXPECT_EQ(f.Rand(0, 1), 41.0 * (1.0 - 0.0) * kOneIn32767 + 0.0);
    EXPECT_EQ(f.Rand(-2, 5), 18467.0 * (5.0 - -2.0) * kOneIn32767 + -2.0);
    EXPECT_EQ(f.Rand(10, 20), 6334.0 * (20.0 - 10.0) * kOneIn32767 + 10.0);
}

TEST_F(RandomTest, MultipliesInTheStatedOrder) {
    ffplatform::SeedRandom(1);
    const double drawn = f.Rand(0.1, 0.7);
    EXPECT_EQ(drawn, 41.0 * (0.7 - 0.1) * kOneIn32767 + 0.1);
}

TEST_F(RandomTest, EqualBoundsAlwaysGiveTheBound) {
    ffplatform::SeedRandom(99);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(f.Rand(3, 3), 3.0);
}

TEST_F(RandomTest, StaysWithinTheBounds) {
    ffplatform::SeedRandom(12345);
    for (int i = 0; i < 100000; ++i) {
        const double r = f.Rand(-1.5, 2.5);
        ASSERT_GE(r, -1.5);
        ASSERT_LE(r, 2.5);
    }
}

TEST_F(RandomTest, TheLargestDrawLandsOnTheUpperBound) {
    uint32_t seed = 0;
    for (;; ++seed) {
        ffplatform::SeedRandom(seed);
        if (ffplatform::NextRandom() == ffplatform::kRandomMax) break;
    }
    ffplatform::SeedRandom(seed);
    EXPECT_EQ(f.Rand(1.5, 2.5), 2.5);
}

TEST_F(RandomTest, InvalidBoundsDrawNothing) {
    ffplatform::SeedRandom(1);
    EXPECT_EQ(f.Rand(kInvalid, 1), kInvalid);
    EXPECT_EQ(f.Rand(0, kInvalid), kInvalid);
    EXPECT_EQ(ffplatform::NextRandom(), 41);
}

}  // namespace
