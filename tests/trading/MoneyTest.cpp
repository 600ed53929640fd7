#include "trading/TradingFixture.h"

namespace {

class MoneyTest : public TradingTest {
protected:
    void UseMode(int32_t mode) {
        SetInteger(0, "MarginMode", mode);
        SetDouble(0, "ContractSize", 5);
    }
};

TEST_F(MoneyTest, ProfitOfAMoveFollowsTheMarginMode) {
    UseMode(1);
    EXPECT_EQ(Access::GetProfitLoss(funcs, true, 100, 103), 15.0);
    EXPECT_EQ(Access::GetProfitLoss(funcs, false, 100, 103), -15.0);
    for (int32_t mode : {2, 3}) {
        UseMode(mode);
        EXPECT_EQ(Access::GetProfitLoss(funcs, true, 100, 103), 5.0 * 3.0 / 103.0);
        EXPECT_EQ(Access::GetProfitLoss(funcs, false, 100, 103), 5.0 * -3.0 / 103.0);
    }
    UseMode(4);
    EXPECT_EQ(Access::GetProfitLoss(funcs, true, 100, 103), 30.0);
    EXPECT_EQ(Access::GetProfitLoss(funcs, false, 100, 103), -30.0);
    for (int32_t mode : {0, 5}) {
        UseMode(mode);
        EXPECT_EQ(Access::GetProfitLoss(funcs, true, 100, 103), 0.0);
    }
}

TEST_F(MoneyTest, MarginFollowsTheMarginMode) {
    data.MarginRate = 0.2;  // used by modes 1 to 3; mode 4 uses the MarginRatio property
    UseMode(1);
    EXPECT_EQ(Access::GetRequiredMargin(funcs, 2, 3000), 5 * 0.2 * 2 * 3000.0);
    for (int32_t mode : {2, 3}) {
        UseMode(mode);
        EXPECT_EQ(Access::GetRequiredMargin(funcs, 2, 3000), 5 * 0.2 * 2.0);
    }
    UseMode(4);
    EXPECT_EQ(Access::GetRequiredMargin(funcs, 2, 3000), 6000.0);
    for (int32_t mode : {0, 7}) {
        UseMode(mode);
        EXPECT_EQ(Access::GetRequiredMargin(funcs, 2, 3000), 0.0);
    }
}

TEST_F(MoneyTest, MarginCallPriceIsRoundedAgainstThePosition) {
    // Mode 4: 10 money per point and contract.
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 305, 3000, 2), 2984.75);
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 300.1, 3000, 2), 29849900 * 0.0001);
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 300.1, 3000, -2), 3015.01);
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, -300, 3000, 2), 3015.0);
    UseMode(1);
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 30, 100, 2), 97.0);
    for (int32_t mode : {2, 3}) {
        UseMode(mode);
        EXPECT_EQ(Access::GetMarginCallPrice(funcs, 30, 100, 2), 25.0);
        EXPECT_EQ(Access::GetMarginCallPrice(funcs, -5, 100, -1), 100.0 / (-5.0 / -5.0 + 1));
    }
}

TEST_F(MoneyTest, MarginCallPriceWithoutContractsOrValueIsTheEntryRoundedDown) {
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 30, 100.567, 0), 100.56);
    UseMode(0);
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 30, 100.567, 2), 100.56);
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 30, 100.567, -2), 100.56);
}

TEST_F(MoneyTest, TickCommissionCountsWholeTicksByMarginMode) {
    data.CommissionType = 1;
    data.CommissionValue = 2.9;
    UseMode(1);
    EXPECT_EQ(Access::GetCommission(funcs, 3, 100), 2.0 * 1 * 0.01 * 5 * 3 * 100.0);
    for (int32_t mode : {2, 3}) {
        UseMode(mode);
        EXPECT_EQ(Access::GetCommission(funcs, 3, 100), 2.0 * 1 * 0.01 * 5 * 3);
    }
    UseMode(4);
    EXPECT_EQ(Access::GetCommission(funcs, 3, 100), 2.0 * 1 * 10 * 0.01 * 1.0 * 3);
    data.CommissionValue = -2.9;
    EXPECT_EQ(Access::GetCommission(funcs, 3, 100), -2.0 * 1 * 10 * 0.01 * 1.0 * 3);
    UseMode(0);
    EXPECT_EQ(Access::GetCommission(funcs, 3, 100), 0.0);
}

TEST_F(MoneyTest, RateCommissionIsTheSameInEveryMarginMode) {
    data.CommissionType = 2;
    data.CommissionValue = 3;
    for (int32_t mode : {0, 1, 2, 3, 4}) {
        UseMode(mode);
        EXPECT_EQ(Access::GetCommission(funcs, 3, 100), 10 * 1.0 * (3 * 0.0001) * 3 * 100.0);
    }
}

TEST_F(MoneyTest, OtherCommissionIsMoneyPerContract) {
    data.CommissionValue = 2.5;
    for (int32_t type : {0, 3, -1}) {
        data.CommissionType = type;
        for (int32_t mode : {0, 1, 2, 3, 4}) {
            UseMode(mode);
            EXPECT_EQ(Access::GetCommission(funcs, 3, 100), 7.5);
        }
    }
}

TEST_F(MoneyTest, RoundTripCommissionChargesBothSides) {
    data.CommissionType = 2;
    data.CommissionValue = 3;
    const double entrySide = 10 * 1.0 * (3 * 0.0001) * 3 * 100.0;
    const double exitSide = 10 * 1.0 * (3 * 0.0001) * 3 * 103.0;
    const tagTradeList trip = Trip(1, 4, 5, 3, 100, 103);
    EXPECT_EQ(Access::GetDoubleCommission(funcs, trip), entrySide + exitSide);
    data.SingleSideCommission = true;
    EXPECT_TRUE(Access::SingleCommission(funcs));
    EXPECT_EQ(Access::GetDoubleCommission(funcs, trip), 0.0 + exitSide);
    data.FreeCloseToday = true;  // bars 4 and 5 are different days
    EXPECT_EQ(Access::GetDoubleCommission(funcs, trip), 0.0 + exitSide);
}

TEST_F(MoneyTest, SameDayRoundTripWithFreeCloseTodayPaysOnlyItsEntrySide) {
    data.CommissionType = 2;
    data.CommissionValue = 3;
    data.FreeCloseToday = true;
    Bar(5).time = LocalMs(2010, 3, 5, 14, 0, 0);  // same day as bar 4
    const tagTradeList trip = Trip(1, 4, 5, 3, 100, 103);
    EXPECT_EQ(Access::GetDoubleCommission(funcs, trip), 10 * 1.0 * (3 * 0.0001) * 3 * 100.0);
    data.SingleSideCommission = true;
    EXPECT_EQ(Access::GetDoubleCommission(funcs, trip), 0.0);
}

TEST_F(MoneyTest, FreeCommissionNeedsTheFlag) {
    EXPECT_FALSE(Access::FreeCommission(funcs, 3, 3));
    EXPECT_FALSE(Access::FreeCommission(funcs, -1, -1));
    data.FreeCloseToday = true;
    EXPECT_TRUE(Access::FreeCommission(funcs, 3, 3));
    EXPECT_FALSE(Access::FreeCommission(funcs, 3, 4));
}

TEST_F(MoneyTest, FreeCommissionCountsTwoUnknownBarsAsOneDay) {
    data.FreeCloseToday = true;
    EXPECT_TRUE(Access::FreeCommission(funcs, -1, -1));
    EXPECT_FALSE(Access::FreeCommission(funcs, -1, 2));
    EXPECT_FALSE(Access::FreeCommission(funcs, 2, -1));
    EXPECT_FALSE(Access::FreeCommission(funcs, 2, 10));
}

TEST_F(MoneyTest, FreeCommissionComparesYearMonthAndDay) {
    data.FreeCloseToday = true;
    Bar(1).time = LocalMs(2010, 1, 31);
    Bar(2).time = LocalMs(2010, 3, 31);
    Bar(3).time = LocalMs(2011, 3, 31);
    EXPECT_FALSE(Access::FreeCommission(funcs, 1, 2));
    EXPECT_FALSE(Access::FreeCommission(funcs, 2, 3));
}

TEST_F(MoneyTest, FreeCommissionUsesTheLocalDayOfTheZone) {
    data.FreeCloseToday = true;
    // 2 March 2010 14:00 and 23:00 UTC; 01:00 and 09:00 UTC.
    Bar(1).time = 1267538400000LL;
    Bar(2).time = 1267570800000LL;
    Bar(3).time = 1267491600000LL;
    Bar(4).time = 1267520400000LL;
    // A formula object is created in the zone it runs in.
    {
        fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
        CSystemFuncs formula(funcs);
        EXPECT_TRUE(Access::FreeCommission(formula, 1, 2));
        EXPECT_FALSE(Access::FreeCommission(formula, 3, 4));
    }
    {
        fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
        CSystemFuncs formula(funcs);
        EXPECT_FALSE(Access::FreeCommission(formula, 1, 2));
        EXPECT_TRUE(Access::FreeCommission(formula, 3, 4));
    }
}

TEST_F(MoneyTest, FreeCommissionAcrossTheDaylightSavingChange) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    data.FreeCloseToday = true;
    Bar(1).time = LocalMs(2010, 3, 14, 0, 30, 0);
    Bar(2).time = LocalMs(2010, 3, 14, 23, 30, 0);
    Bar(3).time = LocalMs(2010, 3, 15, 0, 30, 0);
    EXPECT_EQ(Bar(2).time - Bar(1).time, 22 * 3600 * 1000LL);
    CSystemFuncs formula(funcs);
    EXPECT_TRUE(Access::FreeCommission(formula, 1, 2));
    EXPECT_FALSE(Access::FreeCommission(formula, 2, 3));
}

TEST_F(MoneyTest, SpreadIsInPriceUnits) {
    EXPECT_EQ(Access::GetSpread(funcs), 0.0);
    SetInteger(0, "Spread", 3);
    EXPECT_EQ(Access::GetSpread(funcs), 3 * 0.01);
}

TEST_F(MoneyTest, TheTwoClassificationsDifferNearZero) {
    data.CommissionValue = 2.5;
    double net = 1, commission = 1;
    // Gross 5 on one contract from 100 to 100.5.
    const tagTradeList trip = Trip(1, 4, 5, 1, 100, 100.5);
    EXPECT_EQ(Access::CalcTradeList(funcs, trip), 0);
    EXPECT_EQ(Access::CalcTradeList(funcs, trip, net, commission), 0);
    EXPECT_EQ(net, 0.0);
    EXPECT_EQ(commission, 5.0);

    data.CommissionValue = 2.499975;
    EXPECT_EQ(Access::CalcTradeList(funcs, trip), 1);
    EXPECT_EQ(Access::CalcTradeList(funcs, trip, net, commission), 0);
    EXPECT_EQ(commission, 1 * 2.499975 + 1 * 2.499975);
    EXPECT_EQ(net, 5.0 - commission);
    EXPECT_GT(net, 0.0);
    EXPECT_LT(net, 0.0001);

    data.CommissionValue = 2.500025;
    EXPECT_EQ(Access::CalcTradeList(funcs, trip), -1);
    EXPECT_EQ(Access::CalcTradeList(funcs, trip, net, commission), 0);

    data.CommissionValue = 2.5001;
    EXPECT_EQ(Access::CalcTradeList(funcs, trip), -1);
    EXPECT_EQ(Access::CalcTradeList(funcs, trip, net, commission), -1);

    data.CommissionValue = 1;
    EXPECT_EQ(Access::CalcTradeList(funcs, trip), 1);
    EXPECT_EQ(Access::CalcTradeList(funcs, trip, net, commission), 1);
    EXPECT_EQ(net, 3.0);
}

TEST_F(MoneyTest, ShortRoundTripsAndOtherTypes) {
    double net = 0, commission = 0;
    EXPECT_EQ(Access::CalcTradeList(funcs, Trip(3, 4, 5, 2, 100, 99), net, commission), 1);
    EXPECT_EQ(net, 20.0);
    data.CommissionValue = 1;
    tagTradeList odd = Trip(1, 4, 5, 2, 100, 110);
    odd.nEntryType = 2;
    EXPECT_EQ(Access::CalcTradeList(funcs, odd, net, commission), -1);
    EXPECT_EQ(net, -4.0);
    EXPECT_EQ(Access::CalcTradeList(funcs, odd), -1);
}

TEST_F(MoneyTest, RoundTripsUseTheirEntryStream) {
    data.DataStreams.resize(2);
    UseInstrument(1, 4);
    SetInteger(1, "ContractUnit", 20);
    tagTradeList trip = Trip(1, 4, 5, 1, 100, 101);
    trip.nEntryDataIndex = 1;
    double net = 0, commission = 0;
    Access::CalcTradeList(funcs, trip, net, commission);
    EXPECT_EQ(net, 20.0);
    EXPECT_EQ(data.DataIndex, 0);
    data.DataIndex = 1;
    trip.nEntryDataIndex = 0;
    Access::CalcTradeList(funcs, trip, net, commission);
    EXPECT_EQ(net, 10.0);
    EXPECT_EQ(data.DataIndex, 1);
}

TEST(MoneyWithoutHostData, AnswersZero) {
    CSystemFuncs funcs(nullptr);
    using Access = CSystemFuncsTestAccess;
    EXPECT_EQ(Access::GetProfitLoss(funcs, true, 1, 2), 0.0);
    EXPECT_EQ(Access::GetRequiredMargin(funcs, 1, 2), 0.0);
    EXPECT_EQ(Access::GetMarginCallPrice(funcs, 1, 2, 3), 2.0);
    EXPECT_EQ(Access::GetCommission(funcs, 1, 2), 0.0);
    EXPECT_FALSE(Access::SingleCommission(funcs));
    EXPECT_FALSE(Access::FreeCommission(funcs, -1, -1));
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 2), 0.0);
    EXPECT_EQ(Access::AvailableCapital(funcs), 0.0);
    tagTradeList trip;
    double net = 1, commission = 1;
    EXPECT_EQ(Access::CalcTradeList(funcs, trip, net, commission), 0);
    EXPECT_EQ(net, 0.0);
    EXPECT_EQ(Access::CalcTradeList(funcs, trip), 0);
}

class SizingTest : public TradingTest {
protected:
    void SetUp() override {
        TradingTest::SetUp();
        result.Figures.Capital = 10000;
    }
};

TEST_F(SizingTest, MaxTradeSizeCountsWholeContractsOfMargin) {
    // The margin of a tenth of a contract at 3000 is 300, of one contract 3000.
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 10000, 3000), 3.0);
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 3000, 3000), 1.0);
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 2999, 3000), 0.0);
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 299, 3000), 0.0);
}

TEST_F(SizingTest, MaxSingleTradeSizeCapsAndZeroMeansNoCap) {
    SetInteger(0, "MaxSingleTradeSize", 2);
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 10000, 3000), 2.0);
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 6000, 3000), 2.0);
    SetInteger(0, "MaxSingleTradeSize", 0);
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 10000, 3000), 3.0);
}

TEST_F(SizingTest, AnInstrumentWithoutMarginCarriesNoOrder) {
    SetInteger(0, "MarginMode", 0);
    EXPECT_EQ(Access::GetMaxTradeSize(funcs, 10000, 3000), -2147483648.0);
    EXPECT_EQ(Access::GetTradeSize(funcs, 1, 3000), 0.0);
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 0.0);
}

TEST_F(SizingTest, AvailableCapitalValuesThePositionAtTheOpen) {
    EXPECT_EQ(Access::AvailableCapital(funcs), 10000.0);
    AddEntry(1, 1, 3, 101);
    // Open 105: margin 315, open profit 10 x 4 x 3.
    EXPECT_EQ(Access::AvailableCapital(funcs), 10000.0 - 315.0 + 120.0);
    data.OpenEntries[0] = {3, 1, 0, 0, 3, 110};
    EXPECT_EQ(Access::AvailableCapital(funcs), 10000.0 - 315.0 + 150.0);
}

TEST_F(SizingTest, ExplicitSizeIsAllOrNothing) {
    EXPECT_EQ(Access::GetTradeSize(funcs, 3, 3000), 3.0);
    EXPECT_EQ(Access::GetTradeSize(funcs, 2.5, 3000), 2.0);
    EXPECT_EQ(Access::GetTradeSize(funcs, 4, 3000), 0.0);
}

TEST_F(SizingTest, DefaultSizeByEachSizingMode) {
    data.TradeSizeMode = 0;
    data.TradeSizeValue = 3;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 3.0);
    data.TradeSizeValue = 4;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 0.0);

    data.TradeSizeMode = 1;
    data.TradeSizeValue = 50;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 1.0);
    data.TradeSizeValue = 100;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 3.0);

    data.TradeSizeMode = 2;
    data.TradeSizeValue = 7000;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 2.0);
    data.TradeSizeValue = 10000;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 3.0);
    data.TradeSizeValue = 10001;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 0.0);

    data.TradeSizeMode = 3;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 0.0);
}

TEST_F(SizingTest, DefaultSizeUsesTheCapitalAvailableInAPosition) {
    data.TradeSizeMode = 2;
    data.TradeSizeValue = 9900;
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 3.0);
    AddEntry(1, 1, 1, 105);  // margin 105 at the open, no open profit
    EXPECT_EQ(Access::GetDefaultTradeSize(funcs, 3000), 0.0);
}

}  // namespace
