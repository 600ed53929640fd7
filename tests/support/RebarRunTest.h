// The base of the host-loop tests that trade the rebar-like instrument: the library
// is initialised with the rebar datafeed, in Shanghai time, for each test.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "runner/Report.h"
#include "runner/ReportWriters.h"
#include "runner/ZoneClock.h"
#include "support/RebarFeed.h"

class RebarRunTest : public testing::Test {
protected:
    RebarRunTest() : zone_("Asia/Shanghai") {
        FormulaFunction_Init(0, &feed_, "/nonexistent-root", "tester");
    }

    // The report of a finished run over stream 0 of `data`, and its JSON text.
    static ffrunner::Report RebarReport(const CKelBaseData& data) {
        ffrunner::ReportInput input;
        input.data = &data;
        input.bars = &data.DataStreams[0].Bars;
        input.spec = fftest::RebarFeed::Spec();
        return ffrunner::BuildReport(input);
    }

    static std::string RebarJson(const CKelBaseData& data) {
        std::ostringstream out;
        ffrunner::WriteJsonReport(RebarReport(data), out);
        return out.str();
    }

    fftest::RebarFeed feed_;

private:
    ffrunner::ScopedZone zone_;
};
