// A trading strategy run bar by bar as the host runs it: PrepareBar, a formula body,
// CalStatistic, with the run-end flag on the last bar.
#pragma once

#include <functional>

#include "trading/TradingFixture.h"

class DriverTest : public TradingTest {
protected:
    using Body = std::function<void(int32_t bar)>;

    void SetUp() override {
        TradingTest::SetUp();
        data.CurrentBar = 0;
        result.Figures.Capital = 0;
    }

    // One evaluation of a bar.
    void Evaluate(int32_t bar, const Body& body) {
        data.CurrentBar = bar;
        data.LastBarOfRun = static_cast<size_t>(bar) + 1 == Bar0Count();
        funcs.PrepareBar();
        if (body) body(bar);
        funcs.CalStatistic();
    }

    // Bars first..last in order.
    void Run(int32_t first, int32_t last, const Body& body) {
        for (int32_t bar = first; bar <= last; ++bar) Evaluate(bar, body);
    }

    // A re-evaluation of the live last bar.
    void Reevaluate(const Body& body) {
        data.LastBarOfRun = true;
        funcs.RestoreLastBar();
        if (body) body(data.CurrentBar);
        funcs.CalStatistic();
    }

    double ProfitLoss(bool isLong, double entry, double price) {
        return Access::GetProfitLoss(funcs, isLong, entry, price);
    }
    double Margin(double lots, double price) {
        return Access::GetRequiredMargin(funcs, lots, price);
    }
    double Commission(double lots, double price) {
        return Access::GetCommission(funcs, lots, price);
    }
};
