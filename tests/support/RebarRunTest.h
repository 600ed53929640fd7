// The base of the host-loop tests that trade the rebar-like instrument: the library
// is initialised with the rebar datafeed, in Shanghai time, for each test.
#pragma once

#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "runner/ZoneClock.h"
#include "support/RebarFeed.h"

class RebarRunTest : public testing::Test {
protected:
    RebarRunTest() : zone_("Asia/Shanghai") {
        FormulaFunction_Init(0, &feed_, "/nonexistent-root", "tester");
    }

    fftest::RebarFeed feed_;

private:
    ffrunner::ScopedZone zone_;
};
