#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "runner/BarCsv.h"
#include "runner/CivilTime.h"
#include "runner/SyntheticBars.h"

namespace {

using ffrunner::SyntheticBarsSpec;

std::string Generate(const SyntheticBarsSpec& spec) {
    std::ostringstream out;
    ffrunner::WriteSyntheticBars(spec, out);
    return out.str();
}

SyntheticBarsSpec SmallSpec() {
    SyntheticBarsSpec spec;
    spec.seed = 7;
    spec.firstDay = ffrunner::DaysFromCivil(2024, 3, 1);  // a Friday
    spec.days = 5;
    spec.tick = 0.2;
    spec.startPrice = 3800;
    return spec;
}

std::vector<BarRecord> Read(const std::string& text) {
    ffrunner::BarCsvOptions options;
    options.timeZone = "UTC";
    return ffrunner::ParseBarCsv(text, "synthetic.csv", options).bars;
}

TEST(SyntheticBars, SameSeedSameBytesOtherSeedOtherBars) {
    const SyntheticBarsSpec spec = SmallSpec();
    EXPECT_EQ(Generate(spec), Generate(spec));
    SyntheticBarsSpec other = spec;
    other.seed = 8;
    EXPECT_NE(Generate(spec), Generate(other));
}

TEST(SyntheticBars, KnownFirstRowsForAFixedSeed) {
    SyntheticBarsSpec spec = SmallSpec();
    spec.maxBars = 2;
    const std::string text = Generate(spec);
    EXPECT_EQ(text.substr(0, 50), "date,time,open,high,low,close,volume,openinterest\n");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    EXPECT_EQ(text.substr(50, 59), "2024-03-01,09:01:00,3804.0,3808.0,3802.4,3808.0,767,100012\n");
}

TEST(SyntheticBars, MinuteBarsFollowTheSessionsAndTheTick) {
    const SyntheticBarsSpec spec = SmallSpec();
    const std::vector<BarRecord> bars = Read(Generate(spec));
    ASSERT_EQ(bars.size(), 5u * 225u);
    for (const BarRecord& bar : bars) {
        const int64_t minuteOfDay = bar.time / 60000 % 1440;
        const bool inSession = (minuteOfDay > 9 * 60 && minuteOfDay <= 10 * 60 + 15) ||
                               (minuteOfDay > 10 * 60 + 30 && minuteOfDay <= 11 * 60 + 30) ||
                               (minuteOfDay > 13 * 60 + 30 && minuteOfDay <= 15 * 60);
        EXPECT_TRUE(inSession) << minuteOfDay;
        const int32_t weekday = ffrunner::WeekdayFromDays(bar.time / 86400000);
        EXPECT_TRUE(weekday >= 1 && weekday <= 5);
        EXPECT_GE(bar.high, std::max(bar.open, bar.close));
        EXPECT_LE(bar.low, std::min(bar.open, bar.close));
        for (const double p : {bar.open, bar.high, bar.low, bar.close}) {
            EXPECT_NEAR(p / 0.2, std::round(p / 0.2), 1e-6);
        }
        EXPECT_GE(bar.vol, 0);
        EXPECT_GT(bar.openInt, 0);
    }
}

TEST(SyntheticBars, LongerBarsAndDailyBarsAggregateTheSamePath) {
    SyntheticBarsSpec spec = SmallSpec();
    const std::vector<BarRecord> minutes = Read(Generate(spec));
    spec.barMinutes = 0;
    const std::vector<BarRecord> days = Read(Generate(spec));
    spec.barMinutes = 30;
    const std::vector<BarRecord> halfHours = Read(Generate(spec));
    ASSERT_EQ(days.size(), 5u);
    // 75 + 60 + 90 minutes give 3 + 2 + 3 bars a day.
    ASSERT_EQ(halfHours.size(), 5u * 8u);
    for (size_t d = 0; d < days.size(); ++d) {
        const BarRecord* first = &minutes[d * 225];
        const BarRecord* last = first + 224;
        EXPECT_EQ(days[d].time, last->time);
        EXPECT_EQ(days[d].open, first->open);
        EXPECT_EQ(days[d].close, last->close);
        double high = first->high, low = first->low, volume = 0;
        for (const BarRecord* b = first; b <= last; ++b) {
            high = std::max(high, b->high);
            low = std::min(low, b->low);
            volume += b->vol;
        }
        EXPECT_EQ(days[d].high, high);
        EXPECT_EQ(days[d].low, low);
        EXPECT_EQ(days[d].vol, volume);
        EXPECT_EQ(days[d].openInt, last->openInt);
    }
    EXPECT_EQ(halfHours[0].time % 86400000, (9 * 60 + 30) * 60000);
    EXPECT_EQ(halfHours[2].time % 86400000, (10 * 60 + 15) * 60000);  // cut at the break
}

TEST(SyntheticBars, StopsAfterTheBarCountAndWritesOneDateTimeColumnWhenAsked) {
    SyntheticBarsSpec spec = SmallSpec();
    spec.maxBars = 1000;
    spec.dateTimeColumn = true;
    const std::string text = Generate(spec);
    EXPECT_EQ(text.substr(0, 9), "datetime,");
    EXPECT_EQ(Read(text).size(), 1000u);
}

TEST(SyntheticBars, ParsesSessionsAndRefusesBadOnes) {
    std::vector<ffrunner::TradingSession> sessions;
    ASSERT_TRUE(ffrunner::ParseSessions("09:30-11:30,13:00-15:00", sessions));
    ASSERT_EQ(sessions.size(), 2u);
    EXPECT_EQ(sessions[1].begin, 13 * 60);
    EXPECT_EQ(sessions[1].end, 15 * 60);
    EXPECT_FALSE(ffrunner::ParseSessions("", sessions));
    EXPECT_FALSE(ffrunner::ParseSessions("11:00-10:00", sessions));
    EXPECT_FALSE(ffrunner::ParseSessions("09:00-11:00,10:00-12:00", sessions));
    EXPECT_FALSE(ffrunner::ParseSessions("09:00-11:00,", sessions));
    EXPECT_FALSE(ffrunner::ParseSessions("09:61-11:00", sessions));
    EXPECT_FALSE(ffrunner::ParseSessions("22:00-25:00", sessions));
    EXPECT_EQ(sessions.size(), 2u);
}

TEST(SyntheticBars, ChecksTheSpec) {
    SyntheticBarsSpec spec = SmallSpec();
    EXPECT_EQ(ffrunner::CheckSpec(spec), "");
    spec.tick = 0;
    EXPECT_EQ(ffrunner::CheckSpec(spec), "the tick must be above 0");
    spec = SmallSpec();
    spec.startPrice = 1;
    EXPECT_EQ(ffrunner::CheckSpec(spec), "the start price must be at least ten ticks");
    spec = SmallSpec();
    spec.sessions.clear();
    EXPECT_EQ(ffrunner::CheckSpec(spec), "no trading session");
}

std::string FileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The bundled sample is what its recorded command line makes.
TEST(SyntheticBars, TheBundledDailySamplesAreReproducible) {
    SyntheticBarsSpec rebar;
    rebar.seed = 2510;
    rebar.firstDay = ffrunner::DaysFromCivil(2024, 1, 2);
    rebar.days = 500;
    rebar.barMinutes = 0;
    rebar.annualVolatility = 0.20;
    rebar.volumePerMinute = 800;
    rebar.openInterest = 1500000;
    EXPECT_EQ(Generate(rebar), FileText(FF_SOURCE_DIR "/examples/data/rb2510_daily.csv"));
    SyntheticBarsSpec index = rebar;
    index.seed = 2509;
    ASSERT_TRUE(ffrunner::ParseSessions("09:30-11:30,13:00-15:00", index.sessions));
    index.startPrice = 3900;
    index.tick = 0.2;
    index.annualVolatility = 0.22;
    index.volumePerMinute = 150;
    index.openInterest = 150000;
    EXPECT_EQ(Generate(index), FileText(FF_SOURCE_DIR "/examples/data/IF2509_daily.csv"));
}

}  // namespace
