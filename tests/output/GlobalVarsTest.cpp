#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "OutputTestData.h"

namespace {

using outputtest::kInvalidNumeric;

TEST(GlobalVars, StoreAndReadInsideTheHostsVector) {
    CKelBaseData data{};
    data.GlobalVars.assign(3, 0.0);
    CSystemFuncs f(&data);
    EXPECT_TRUE(f.SetGlobalVar(0, 1.25));
    EXPECT_TRUE(f.SetGlobalVar(2, -7.5));
    EXPECT_EQ(f.GetGlobalVar(0), 1.25);
    EXPECT_EQ(f.GetGlobalVar(1), 0.0);
    EXPECT_EQ(f.GetGlobalVar(2), -7.5);
    EXPECT_EQ(data.GlobalVars, (std::vector<double>{1.25, 0.0, -7.5}));
}

TEST(GlobalVars, IndexesAtAndBeyondTheEndAreRefused) {
    CKelBaseData data{};
    data.GlobalVars.assign(3, 4.0);
    CSystemFuncs f(&data);
    EXPECT_FALSE(f.SetGlobalVar(3, 1.0));
    EXPECT_FALSE(f.SetGlobalVar(-1, 1.0));
    EXPECT_FALSE(f.SetGlobalVar(std::numeric_limits<int32_t>::min(), 1.0));
    EXPECT_FALSE(f.SetGlobalVar(std::numeric_limits<int32_t>::max(), 1.0));
    EXPECT_EQ(data.GlobalVars, (std::vector<double>{4.0, 4.0, 4.0}));
    EXPECT_EQ(f.GetGlobalVar(3), kInvalidNumeric);
    EXPECT_EQ(f.GetGlobalVar(-1), kInvalidNumeric);
    EXPECT_EQ(f.GetGlobalVar(std::numeric_limits<int32_t>::min()), kInvalidNumeric);
}

TEST(GlobalVars, ShareTheHostDataObject) {
    CKelBaseData data{};
    data.GlobalVars.assign(1, 0.0);
    CSystemFuncs writer(&data);
    CSystemFuncs reader(&data);
    EXPECT_TRUE(writer.SetGlobalVar(0, 9.0));
    EXPECT_EQ(reader.GetGlobalVar(0), 9.0);
}

TEST(GlobalVars, AnEmptyVectorOrNoHostDataHoldsNothing) {
    CKelBaseData data{};
    CSystemFuncs f(&data);
    EXPECT_FALSE(f.SetGlobalVar(0, 1.0));
    EXPECT_EQ(f.GetGlobalVar(0), kInvalidNumeric);
    EXPECT_TRUE(data.GlobalVars.empty());

    CSystemFuncs none(nullptr);
    EXPECT_FALSE(none.SetGlobalVar(0, 1.0));
    EXPECT_EQ(none.GetGlobalVar(0), kInvalidNumeric);
}

}  // namespace
