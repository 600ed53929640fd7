// The remembered extremes of stretches of complete bars: when one is handed out again
// and when a fresh one starts instead.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "FormulaFunction/stops/BarStretchCache.h"

namespace {

class BarStretchCacheTest : public ::testing::Test {
protected:
    void SetUp() override {
        bars.reserve(64);
        for (int i = 0; i < 20; ++i) {
            BarRecord bar{};
            bar.time = 1267410600000LL + i * 60000LL;
            bar.high = 100 + i;
            bar.low = 90 - i;
            bars.push_back(bar);
        }
        source.stream = 0;
        source.bars = &bars;
        source.barType = 0;
        source.barInterval = 1;
    }

    // Finds the stretch from `first` and extends it to `last` as a stop would.
    BarStretchCache::Stretch& Reach(int32_t first, int32_t last) {
        BarStretchCache::Stretch& stretch = cache.Find(source, first, last);
        for (int32_t i = stretch.last + 1; i <= last; ++i) {
            if (bars[i].high > stretch.high) stretch.high = bars[i].high;
            if (bars[i].low < stretch.low) stretch.low = bars[i].low;
        }
        cache.Store(stretch, last);
        return stretch;
    }

    static bool IsFresh(const BarStretchCache::Stretch& stretch, int32_t first) {
        return stretch.first == first && stretch.last == first - 1 &&
               stretch.high == std::numeric_limits<double>::lowest() &&
               stretch.low == std::numeric_limits<double>::max();
    }

    std::vector<BarRecord> bars;
    BarStretchCache::Source source;
    BarStretchCache cache;
};

TEST_F(BarStretchCacheTest, AFirstRequestStartsAnEmptyStretch) {
    EXPECT_TRUE(IsFresh(cache.Find(source, 3, 7), 3));
}

TEST_F(BarStretchCacheTest, AStoredStretchIsHandedOutAgainToBeExtended) {
    const BarStretchCache::Stretch& first = Reach(3, 7);
    EXPECT_EQ(first.high, 107.0);
    EXPECT_EQ(first.low, 83.0);
    const BarStretchCache::Stretch& again = cache.Find(source, 3, 9);
    EXPECT_EQ(again.first, 3);
    EXPECT_EQ(again.last, 7);
    EXPECT_EQ(again.high, 107.0);
    const BarStretchCache::Stretch& longer = Reach(3, 9);
    EXPECT_EQ(longer.high, 109.0);
    EXPECT_EQ(longer.low, 81.0);
}

TEST_F(BarStretchCacheTest, AStretchReachingPastTheRequestIsNotUsed) {
    Reach(3, 7);
    EXPECT_TRUE(IsFresh(cache.Find(source, 3, 6), 3));
}

TEST_F(BarStretchCacheTest, AnotherFirstBarIsAnotherStretch) {
    Reach(3, 7);
    EXPECT_TRUE(IsFresh(cache.Find(source, 4, 7), 4));
    EXPECT_EQ(cache.Find(source, 3, 7).last, 7);
}

TEST_F(BarStretchCacheTest, ChangedTimeStampsStartAFreshStretch) {
    Reach(3, 7);
    bars[7].time += 1;
    EXPECT_TRUE(IsFresh(cache.Find(source, 3, 8), 3));
    Reach(3, 7);
    bars[3].time += 1;
    EXPECT_TRUE(IsFresh(cache.Find(source, 3, 8), 3));
}

TEST_F(BarStretchCacheTest, AnotherSourceStartsAFreshStretch) {
    Reach(3, 7);
    BarStretchCache::Source other = source;
    other.stream = 1;
    EXPECT_TRUE(IsFresh(cache.Find(other, 3, 8), 3));
    Reach(3, 7);
    other = source;
    other.barType = 2;
    EXPECT_TRUE(IsFresh(cache.Find(other, 3, 8), 3));
    Reach(3, 7);
    other = source;
    other.barInterval = 5;
    EXPECT_TRUE(IsFresh(cache.Find(other, 3, 8), 3));
    Reach(3, 7);
    std::vector<BarRecord> copy = bars;
    other = source;
    other.bars = &copy;
    EXPECT_TRUE(IsFresh(cache.Find(other, 3, 8), 3));
}

TEST_F(BarStretchCacheTest, MovedStorageStartsAFreshStretch) {
    Reach(3, 7);
    bars.shrink_to_fit();
    bars.reserve(1000);
    EXPECT_TRUE(IsFresh(cache.Find(source, 3, 8), 3));
}

TEST_F(BarStretchCacheTest, GoingBackToAnEarlierBarForgetsEverything) {
    cache.SeeBar(9);
    Reach(3, 7);
    cache.SeeBar(9);
    cache.SeeBar(10);
    EXPECT_EQ(cache.Find(source, 3, 9).last, 7);
    cache.SeeBar(9);
    EXPECT_TRUE(IsFresh(cache.Find(source, 3, 9), 3));
}

TEST_F(BarStretchCacheTest, TheLeastRecentlyUsedStretchMakesRoom) {
    for (int32_t first = 0; first < 8; ++first) Reach(first, 10);
    Reach(0, 11);  // 0 is now the most recent, 1 the least recent
    Reach(12, 15);
    EXPECT_EQ(cache.Find(source, 0, 11).last, 11);
    for (int32_t first = 2; first < 8; ++first)
        EXPECT_EQ(cache.Find(source, first, 10).last, 10) << first;
    EXPECT_TRUE(IsFresh(cache.Find(source, 1, 10), 1));
}

}  // namespace
