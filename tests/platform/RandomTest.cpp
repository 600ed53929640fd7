// The process-wide generator: state = state * 214013 + 2531011 (mod 2^32), value =
// bits 16 to 30 of the state.
#include <gtest/gtest.h>

#include <vector>

#include "FormulaFunction/platform/Platform.h"

namespace {

using ffplatform::NextRandom;
using ffplatform::SeedRandom;

std::vector<int32_t> Draw(size_t n) {
    std::vector<int32_t> out;
    for (size_t i = 0; i < n; ++i) out.push_back(NextRandom());
    return out;
}

TEST(Random, SequenceFromSeedOne) {
    SeedRandom(1);
    // 1 * 214013 + 2531011 = 2745024, and 2745024 >> 16 = 41; and so on.
    EXPECT_EQ(Draw(10), (std::vector<int32_t>{41, 18467, 6334, 26500, 19169, 15724, 11478,
                                              29358, 26962, 24464}));
}

TEST(Random, SequenceFromSeedZero) {
    SeedRandom(0);
    // 2531011 >> 16 = 38.
    EXPECT_EQ(Draw(3), (std::vector<int32_t>{38, 7719, 21238}));
}

TEST(Random, StateWrapsModulo2To32) {
    SeedRandom(0xFFFFFFFFu);
    // (2^32 - 1) * 214013 + 2531011 = 2316998 (mod 2^32), and 2316998 >> 16 = 35.
    EXPECT_EQ(Draw(3), (std::vector<int32_t>{35, 29739, 3374}));
    // Bit 31 of the state never reaches a value, so seeds 2^31 apart agree.
    SeedRandom(0x80000000u);
    EXPECT_EQ(Draw(3), (std::vector<int32_t>{38, 7719, 21238}));
}

TEST(Random, ReseedingRestartsTheSequence) {
    SeedRandom(12345);
    const std::vector<int32_t> first = Draw(1000);
    EXPECT_EQ(first.back(), 23642);
    SeedRandom(12345);
    EXPECT_EQ(Draw(1000), first);
}

TEST(Random, ValuesStayWithinRange) {
    SeedRandom(7);
    int32_t low = ffplatform::kRandomMax;
    int32_t high = 0;
    for (int i = 0; i < 200000; ++i) {
        const int32_t v = NextRandom();
        ASSERT_GE(v, 0);
        ASSERT_LE(v, ffplatform::kRandomMax);
        low = v < low ? v : low;
        high = v > high ? v : high;
    }
    EXPECT_EQ(low, 0);
    EXPECT_EQ(high, 32767);
    EXPECT_EQ(ffplatform::kRandomMax, 32767);
}

}  // namespace
