#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/platform/Platform.h"

namespace {

tagKelDataType DoubleValue(double d) {
    tagKelDataType v;
    v.nType = KelDouble;
    v.dValue = d;
    return v;
}

TEST(SystemFuncs, ConstructionBindsTheHostDataObject) {
    CKelBaseData data{};
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.GetBaseData(), &data);
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

TEST(SystemFuncs, ConstructionReseedsTheGeneratorWithTheClock) {
    CKelBaseData data{};
    ffplatform::SeedRandom(12345);
    const int64_t before = ffplatform::CurrentTimeSeconds();
    CSystemFuncs funcs(&data);
    const int32_t drawn = ffplatform::NextRandom();
    const int64_t after = ffplatform::CurrentTimeSeconds();
    bool matched = false;
    for (int64_t s = before; s <= after; ++s) {
        ffplatform::SeedRandom(static_cast<uint32_t>(s));
        if (ffplatform::NextRandom() == drawn) matched = true;
    }
    EXPECT_TRUE(matched);
}

TEST(SystemFuncs, CopySharesTheHostDataAndCopiesTheCacheWithoutReseeding) {
    CKelBaseData data{};
    CSystemFuncs funcs(&data);
    funcs.PropertyCache["Data0.MinMove"] = DoubleValue(1.5);

    ffplatform::SeedRandom(7);
    CSystemFuncs copy(funcs);
    EXPECT_EQ(ffplatform::NextRandom(), 61);  // the seed 7 sequence goes on
    EXPECT_EQ(copy.GetBaseData(), &data);
    ASSERT_EQ(copy.PropertyCache.size(), 1u);
    EXPECT_EQ(copy.PropertyCache["Data0.MinMove"].dValue, 1.5);

    // The copies are independent caches.
    copy.PropertyCache["Data0.PriceScale"] = DoubleValue(0.01);
    EXPECT_EQ(funcs.PropertyCache.size(), 1u);
}

TEST(SystemFuncs, AssignmentReplacesCacheAndBinding) {
    CKelBaseData first{}, second{};
    CSystemFuncs a(&first), b(&second);
    a.PropertyCache["x"] = DoubleValue(1);
    b.PropertyCache["y"] = DoubleValue(2);
    ffplatform::SeedRandom(7);
    b = a;
    EXPECT_EQ(ffplatform::NextRandom(), 61);
    EXPECT_EQ(b.GetBaseData(), &first);
    ASSERT_EQ(b.PropertyCache.size(), 1u);
    EXPECT_EQ(b.PropertyCache.count("x"), 1u);
}

TEST(SystemFuncs, SelfAssignmentChangesNothing) {
    CKelBaseData data{};
    CSystemFuncs a(&data);
    a.PropertyCache["x"] = DoubleValue(3);
    CSystemFuncs& alias = a;
    a = alias;
    EXPECT_EQ(a.GetBaseData(), &data);
    ASSERT_EQ(a.PropertyCache.size(), 1u);
    EXPECT_EQ(a.PropertyCache["x"].dValue, 3.0);
}

TEST(SystemFuncs, DestructionLeavesTheHostDataObjectAlone) {
    auto data = std::make_unique<CKelBaseData>();
    data->CurrentBar = 42;
    { CSystemFuncs funcs(data.get()); }
    EXPECT_EQ(data->CurrentBar, 42);
}

TEST(SystemFuncs, DestructorIsVirtual) {
    EXPECT_TRUE(std::has_virtual_destructor<CSystemFuncs>::value);
}

}  // namespace
