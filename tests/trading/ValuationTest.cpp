// Valuing a position with the terms read once per call gives the very bits of the
// per-valuation functions, and reads nothing the host could see differently.
#include "FormulaFunction/statistics/RunningTradeFigures.h"
#include "trading/TradingFixture.h"

namespace {

class ValuationTest : public TradingTest {
protected:
    // Awkward terms, so that a change of the order of the products would show.
    void UseAwkwardTerms(int32_t mode) {
        SetInteger(0, "MarginMode", mode);
        SetDouble(0, "ContractSize", 0.3);
        SetInteger(0, "ContractUnit", 7);
        SetDouble(0, "BigPointValue", 0.1);
        SetDouble(0, "MarginRatio", 0.07);
        data.MarginRate = 0.11;
    }

    // Every valuation of a grid of prices agrees bit for bit; the number compared.
    int CompareGrid() {
        int compared = 0;
        for (const bool isLong : {true, false})
            for (const double entry : {0.1, 3001.7, 99.99})
                for (const double price : {0.3, 2999.9, 100.01, 1e-9}) {
                    const double slow = Access::GetProfitLoss(funcs, isLong, entry, price);
                    const double fast = Access::ValuedProfitLoss(funcs, isLong, entry, price);
                    EXPECT_TRUE(SameBits(slow, fast)) << isLong << " " << entry << " " << price;
                    ++compared;
                }
        for (const double lots : {1.0, 3.0, 0.7})
            for (const double price : {0.3, 2999.9, 100.01}) {
                const double slow = Access::GetRequiredMargin(funcs, lots, price);
                const double fast = Access::ValuedMargin(funcs, lots, price);
                EXPECT_TRUE(SameBits(slow, fast)) << lots << " " << price;
                ++compared;
            }
        return compared;
    }
};

TEST_F(ValuationTest, RememberedTermsGiveTheSameBitsInEveryMarginMode) {
    for (const int32_t mode : {0, 1, 2, 3, 4, 5}) {
        UseAwkwardTerms(mode);
        Access::GetRequiredMargin(funcs, 1, 1);  // reads every term the valuation needs
        Access::GetProfitLoss(funcs, true, 1, 2);
        EXPECT_TRUE(Access::RememberedMoneyTerms(funcs)) << mode;
        EXPECT_EQ(CompareGrid(), 33) << mode;
    }
}

TEST_F(ValuationTest, TermsNotYetReadAreReadByTheFunctionsThemselves) {
    UseAwkwardTerms(4);
    EXPECT_FALSE(Access::RememberedMoneyTerms(funcs));
    EXPECT_TRUE(SameBits(Access::ValuedProfitLoss(funcs, true, 3001.7, 2999.9),
                         7 * 0.1 * (2999.9 - 3001.7)));
    // The profit alone reads neither the margin ratio nor the price scale.
    EXPECT_FALSE(Access::RememberedMoneyTerms(funcs));
    EXPECT_TRUE(SameBits(Access::ValuedMargin(funcs, 3, 2999.9), 7 * 0.07 * 0.1 * 3 * 2999.9));
    EXPECT_TRUE(Access::RememberedMoneyTerms(funcs));
}

TEST_F(ValuationTest, AnEntryTheHostChangesIsReadAsItNowStands) {
    UseAwkwardTerms(1);
    Access::GetRequiredMargin(funcs, 1, 1);
    ASSERT_TRUE(Access::RememberedMoneyTerms(funcs));
    funcs.PropertyCache[Key(0, "ContractSize")].dValue = 0.9;
    EXPECT_TRUE(SameBits(Access::ValuedProfitLoss(funcs, true, 100, 103), 0.9 * 3.0));
    data.MarginRate = 0.5;
    EXPECT_TRUE(SameBits(Access::ValuedMargin(funcs, 2, 10), 0.9 * 0.5 * 2 * 10));
    EXPECT_EQ(CompareGrid(), 33);
}

TEST_F(ValuationTest, EntriesTheHostErasesAreFetchedAgain) {
    UseAwkwardTerms(2);
    Access::GetRequiredMargin(funcs, 1, 1);
    ASSERT_TRUE(Access::RememberedMoneyTerms(funcs));
    funcs.PropertyCache.erase(Key(0, "ContractSize"));
    EXPECT_FALSE(Access::RememberedMoneyTerms(funcs));
    // Fetched from the datafeed, which has no such instrument: the invalid value.
    EXPECT_EQ(CompareGrid(), 33);
}

TEST_F(ValuationTest, OtherDataIndexesHaveTheirOwnTerms) {
    data.DataStreams.resize(2);
    UseAwkwardTerms(4);
    UseInstrument(1, 1);
    SetDouble(1, "ContractSize", 11);
    Access::GetRequiredMargin(funcs, 1, 1);
    data.DataIndex = 1;
    EXPECT_FALSE(Access::RememberedMoneyTerms(funcs));
    Access::GetRequiredMargin(funcs, 1, 1);
    EXPECT_TRUE(Access::RememberedMoneyTerms(funcs));
    EXPECT_EQ(Access::ValuedProfitLoss(funcs, false, 100, 103), -33.0);
    EXPECT_EQ(CompareGrid(), 33);
    data.DataIndex = 0;
    EXPECT_TRUE(SameBits(Access::ValuedProfitLoss(funcs, true, 100, 103), 7 * 0.1 * 3.0));
}

// The one walk gives what the three position queries give.
TEST_F(ValuationTest, OpenPositionMatchesThePositionQueries) {
    const auto check = [&](const char* what) {
        const fftrading::OpenPosition position = Access::ReadOpenPosition(funcs);
        EXPECT_TRUE(SameBits(position.contracts, funcs.CurrentContracts())) << what;
        EXPECT_TRUE(SameBits(position.average, funcs.AvgEntryPrice())) << what;
        EXPECT_EQ(position.marketPosition, funcs.MarketPosition()) << what;
    };
    check("flat");
    AddEntry(1, 1, 2, 100.1);
    AddEntry(1, 3, 0.3, 103.7);
    check("long");
    data.OpenEntries.clear();
    AddEntry(3, 2, 1.5, 110.3);
    AddEntry(3, 4, 2.25, 99.9);
    check("short");
    data.OpenEntries.clear();
    AddEntry(2, 2, 1, 100);  // an exit kind at the front: no direction
    check("odd kind");
    data.OpenEntries.clear();
    AddEntry(1, 2, 0, 100);
    check("no lots");
    data.FormulaKind = 4;
    check("not a strategy");
}

}  // namespace
