// The exit on close: queued on the bar it is asked on, carried out on the next bar
// at the close of the bar it was asked on.
#include "stops/StopFixture.h"

namespace {

class ExitOnCloseTest : public StopTest {};

TEST_F(ExitOnCloseTest, WithoutAPositionNothingIsQueued) {
    EXPECT_FALSE(funcs.SetExitOnClose());
    EXPECT_TRUE(data.DelayedSignals.empty());
    EXPECT_FALSE(result.ExitOnClose);
}

TEST_F(ExitOnCloseTest, QueuesACloseAllSignalForThisBar) {
    data.OrderSource = 42;
    Long(2, 1, 100);
    EXPECT_TRUE(funcs.SetExitOnClose());
    ASSERT_EQ(data.DelayedSignals.size(), 1u);
    EXPECT_EQ(Text(data.DelayedSignals[0]), SignalText(5, 5, 42, 0, 0, 0));
    EXPECT_TRUE(result.ExitOnClose);
    // Queuing closes nothing.
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_F(ExitOnCloseTest, AShortPositionQueuesTheSameSignal) {
    Short(2, 3, 100);
    EXPECT_TRUE(funcs.SetExitOnClose());
    ASSERT_EQ(data.DelayedSignals.size(), 1u);
    EXPECT_EQ(Text(data.DelayedSignals[0]), SignalText(5, 5, 0, 0, 0, 0));
}

TEST_F(ExitOnCloseTest, TheNextBarClosesThePositionAtTheCloseOfThisBar) {
    data.OrderSource = 42;
    Long(2, 2, 100);
    EXPECT_TRUE(funcs.SetExitOnClose());
    const tagTradeSignal queued = data.DelayedSignals[0];

    data.CurrentBar = 6;
    data.OrderSource = 7;
    Access::HandleDelaySignal(funcs, queued);
    // Bar 5 closes at 106; the exit is booked on bar 5 with the queuing source.
    EXPECT_EQ(Trips(), std::vector<std::string>{TripText(1, 2, 2, 5, 0, 42, 0, 2, 100, 106)});
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(data.CurrentBar, 6);
    EXPECT_EQ(data.OrderSource, 7u);
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + 120.0);
}

TEST_F(ExitOnCloseTest, AShortIsBoughtBackAtTheCloseOfTheQueuingBar) {
    Short(2, 1, 110);
    EXPECT_TRUE(funcs.SetExitOnClose());
    const tagTradeSignal queued = data.DelayedSignals[0];
    data.CurrentBar = 6;
    Access::HandleDelaySignal(funcs, queued);
    EXPECT_EQ(Trips(), std::vector<std::string>{TripText(3, 4, 2, 5, 0, 0, 0, 1, 110, 106)});
}

}  // namespace
