#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "runner/BarCsv.h"

namespace {

using ffrunner::BarCsvData;
using ffrunner::BarCsvError;
using ffrunner::BarCsvOptions;
using ffrunner::ParseBarCsv;

BarCsvOptions Zone(const char* zone, bool skip = false) {
    BarCsvOptions options;
    options.timeZone = zone;
    options.skipBadRows = skip;
    return options;
}

// The message of the error that parsing `text` throws, or "no error".
std::string ErrorOf(const std::string& text, const BarCsvOptions& options = Zone("Asia/Shanghai")) {
    try {
        ParseBarCsv(text, "bars.csv", options);
    } catch (const BarCsvError& e) {
        return e.what();
    }
    return "no error";
}

const char* kHeader8 = "date,time,open,high,low,close,volume,openinterest\n";
const char* kHeader7 = "datetime,open,high,low,close,volume,openinterest\n";

TEST(BarCsv, ReadsSeparateDateAndTimeColumns) {
    const BarCsvData data = ParseBarCsv(std::string(kHeader8) +
                                            "2010-03-25,09:05:03.007,3500,3510.5,3498,3505,120,"
                                            "56000\n2010-03-25,09:06:00,3505,3506,3501,3502,80,"
                                            "56010\n",
                                        "bars.csv", Zone("Asia/Shanghai"));
    ASSERT_EQ(data.bars.size(), 2u);
    EXPECT_EQ(data.bars[0].time, 1269479103007);
    EXPECT_EQ(data.bars[0].open, 3500);
    EXPECT_EQ(data.bars[0].high, 3510.5);
    EXPECT_EQ(data.bars[0].low, 3498);
    EXPECT_EQ(data.bars[0].close, 3505);
    EXPECT_EQ(data.bars[0].vol, 120);
    EXPECT_EQ(data.bars[0].openInt, 56000);
    EXPECT_EQ(data.bars[1].time, 1269479160000);
    EXPECT_TRUE(data.warnings.empty());
}

TEST(BarCsv, ReadsOneIsoDateTimeColumnWithTOrSpace) {
    const BarCsvData data =
        ParseBarCsv(std::string(kHeader7) +
                        "2010-03-25T09:05:03.007,1,2,1,2,3,4\n"
                        "2010-03-25 09:06:00,1,2,1,2,3,4\n"
                        "2010-03-25 09:07,1,2,1,2,3,4\n"
                        "2010-03-26,1,2,1,2,3,4\n"
                        "2010-03-26T00:00:01.5,1,2,1,2,3,4\n"
                        "2010-03-26T00:00:02.25,1,2,1,2,3,4\n",
                    "bars.csv", Zone("Asia/Shanghai"));
    ASSERT_EQ(data.bars.size(), 6u);
    EXPECT_EQ(data.bars[0].time, 1269479103007);
    EXPECT_EQ(data.bars[1].time, 1269479160000);
    EXPECT_EQ(data.bars[2].time, 1269479220000);
    EXPECT_EQ(data.bars[3].time, 1269532800000);  // 2010-03-26 00:00 in Shanghai
    EXPECT_EQ(data.bars[4].time, 1269532801500);
    EXPECT_EQ(data.bars[5].time, 1269532802250);
}

TEST(BarCsv, ReadsTimesInTheGivenZoneWithAndWithoutDaylightSaving) {
    const std::string text = std::string(kHeader7) +
                             "2024-01-15 09:30:00,1,2,1,2,3,4\n"
                             "2024-07-15 09:30:00,1,2,1,2,3,4\n";
    const BarCsvData ny = ParseBarCsv(text, "ny.csv", Zone("America/New_York"));
    EXPECT_EQ(ny.bars[0].time, 1705329000000);  // 14:30 UTC, standard time
    EXPECT_EQ(ny.bars[1].time, 1721050200000);  // 13:30 UTC, daylight time
    const BarCsvData sh = ParseBarCsv(text, "sh.csv", Zone("Asia/Shanghai"));
    EXPECT_EQ(sh.bars[0].time, 1705329000000 - 13 * 3600000LL);
    EXPECT_EQ(sh.bars[1].time, 1721050200000 - 12 * 3600000LL);
}

TEST(BarCsv, ASkippedLocalTimeIsReadWithTheOffsetBeforeTheChange) {
    // New York skips 02:00-03:00 on 2024-03-10; 02:30 is read as EST, i.e. 03:30 EDT.
    const BarCsvData data = ParseBarCsv(std::string(kHeader7) + "2024-03-10 02:30,1,2,1,2,3,4\n",
                                        "gap.csv", Zone("America/New_York"));
    EXPECT_EQ(data.bars[0].time, 1710055800000);
}

TEST(BarCsv, ARepeatedLocalTimeTakesTheEarlierInstantUnlessThatGoesBackwards) {
    // On 2024-11-03 New York passes 01:00-02:00 twice.
    const BarCsvData data = ParseBarCsv(std::string(kHeader7) +
                                            "2024-11-03 01:30,1,2,1,2,3,4\n"
                                            "2024-11-03 01:45,1,2,1,2,3,4\n"
                                            "2024-11-03 01:15,1,2,1,2,3,4\n",
                                        "overlap.csv", Zone("America/New_York"));
    ASSERT_EQ(data.bars.size(), 3u);
    EXPECT_EQ(data.bars[0].time, 1730611800000);  // 05:30 UTC, first pass (EDT)
    EXPECT_EQ(data.bars[1].time, 1730612700000);  // 05:45 UTC
    EXPECT_EQ(data.bars[2].time, 1730614500000);  // 06:15 UTC, second pass (EST)
}

TEST(BarCsv, ToleratesCrlfBlankLinesByteOrderMarkAndAMissingFinalNewline) {
    const std::string text =
        "\xEF\xBB\xBF" "datetime,open,high,low,close,volume,openinterest\r\n"
        "2010-03-25 09:06:00, 1 ,2,1,2,3,+4\r\n"
        "\r\n"
        "2010-03-25 09:07:00,1,2,1,2,3,4";
    const BarCsvData data = ParseBarCsv(text, "bars.csv", Zone("Asia/Shanghai"));
    ASSERT_EQ(data.bars.size(), 2u);
    EXPECT_EQ(data.bars[0].open, 1);
    EXPECT_EQ(data.bars[0].openInt, 4);
    EXPECT_EQ(data.bars[1].time, 1269479220000);
    const BarCsvData trailing =
        ParseBarCsv(std::string(kHeader7) + "2010-03-25 09:06:00,1,2,1,2,3,4\n\n\n", "bars.csv",
                    Zone("Asia/Shanghai"));
    EXPECT_EQ(trailing.bars.size(), 1u);
}

TEST(BarCsv, AHeaderAloneGivesNoBars) {
    EXPECT_TRUE(ParseBarCsv(kHeader8, "bars.csv").bars.empty());
    EXPECT_TRUE(ParseBarCsv("date,time,o,h,l,c,v,oi", "bars.csv").bars.empty());
}

TEST(BarCsv, RefusesAnEmptyFile) {
    EXPECT_EQ(ErrorOf(""), "bars.csv:1: empty file, expected a header line");
    EXPECT_EQ(ErrorOf("\r\n\n"), "bars.csv:1: empty file, expected a header line");
}

TEST(BarCsv, RefusesAHeaderOfTheWrongWidthOrAMissingHeader) {
    EXPECT_EQ(ErrorOf("a,b,c\n"),
              "bars.csv:1: the header must have 7 columns (datetime,open,high,low,close,volume,"
              "openinterest) or 8 (date,time,open,high,low,close,volume,openinterest), found 3");
    EXPECT_EQ(ErrorOf("2010-03-25,09:00,1,2,1,2,3,4\n"),
              "bars.csv:1: the first line must be a header, found a data row");
}

TEST(BarCsv, NamesEachBadRowExactly) {
    const std::string h = kHeader8;
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,2,1\n"),
              "bars.csv:2: too few fields: expected 8, found 5");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,2,1,2,3,4,5\n"),
              "bars.csv:2: too many fields: expected 8, found 9");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,2x,1,2,3,4\n"),
              "bars.csv:2: bad number in column high: '2x'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,2,1,2,,4\n"),
              "bars.csv:2: bad number in column volume: ''");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,2,1,nan,3,4\n"),
              "bars.csv:2: bad number in column close: 'nan'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,inf,2,1,2,3,4\n"),
              "bars.csv:2: bad number in column open: 'inf'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,2,1,2,3,4 5\n"),
              "bars.csv:2: bad number in column openinterest: '4 5'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,2,y,2,3,4\n"),
              "bars.csv:2: bad number in column low: 'y'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00,1,10,11.5,2,3,4\n"),
              "bars.csv:2: high 10 is below low 11.5");
    EXPECT_EQ(ErrorOf(h + "2010-13-25,09:00,1,2,1,2,3,4\n"), "bars.csv:2: bad date '2010-13-25'");
    EXPECT_EQ(ErrorOf(h + "2010-02-29,09:00,1,2,1,2,3,4\n"), "bars.csv:2: bad date '2010-02-29'");
    EXPECT_EQ(ErrorOf(h + "25/03/2010,09:00,1,2,1,2,3,4\n"), "bars.csv:2: bad date '25/03/2010'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,24:00,1,2,1,2,3,4\n"), "bars.csv:2: bad time '24:00'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:60:00,1,2,1,2,3,4\n"), "bars.csv:2: bad time '09:60:00'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:00:00.1234,1,2,1,2,3,4\n"),
              "bars.csv:2: bad time '09:00:00.1234'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,9:00,1,2,1,2,3,4\n"), "bars.csv:2: bad time '9:00'");
    EXPECT_EQ(ErrorOf(std::string(kHeader7) + "2010-03-25X09:00,1,2,1,2,3,4\n"),
              "bars.csv:2: bad datetime '2010-03-25X09:00'");
    EXPECT_EQ(ErrorOf(std::string(kHeader7) + "2010-03-25T09:00Z,1,2,1,2,3,4\n"),
              "bars.csv:2: bad datetime '2010-03-25T09:00Z'");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:01,1,2,1,2,3,4\n2010-03-25,09:00:30.5,1,2,1,2,3,4\n"),
              "bars.csv:3: time 2010-03-25 09:00:30.500 is not after the previous row's "
              "2010-03-25 09:01:00");
    EXPECT_EQ(ErrorOf(h + "2010-03-25,09:01,1,2,1,2,3,4\n2010-03-25,09:01,1,2,1,2,3,4\n"),
              "bars.csv:3: time 2010-03-25 09:01:00 is not after the previous row's "
              "2010-03-25 09:01:00");
}

TEST(BarCsv, CountsLinesIncludingBlankOnes) {
    EXPECT_EQ(ErrorOf(std::string(kHeader8) + "\n2010-03-25,09:00,1,2,1\n"),
              "bars.csv:3: too few fields: expected 8, found 5");
}

TEST(BarCsv, SkipsBadRowsWithAWarningEachWhenAsked) {
    const std::string text = std::string(kHeader8) +
                             "2010-03-25,09:01,1,2,1,2,3,4\n"
                             "2010-03-25,09:02,1,2\n"
                             "2010-03-25,09:00,1,2,1,2,3,4\n"
                             "2010-03-25,09:03,1,2,3,2,3,4\n"
                             "2010-03-25,09:04,1,2,1,2,3,4\n";
    const BarCsvData data = ParseBarCsv(text, "bars.csv", Zone("Asia/Shanghai", true));
    ASSERT_EQ(data.bars.size(), 2u);
    EXPECT_EQ(data.bars[1].time - data.bars[0].time, 180000);
    ASSERT_EQ(data.warnings.size(), 3u);
    EXPECT_EQ(data.warnings[0], "bars.csv:3: too few fields: expected 8, found 4");
    EXPECT_EQ(data.warnings[1],
              "bars.csv:4: time 2010-03-25 09:00:00 is not after the previous row's "
              "2010-03-25 09:01:00");
    EXPECT_EQ(data.warnings[2], "bars.csv:5: high 2 is below low 3");
}

TEST(BarCsv, SkippingStillStopsAtAFileWithoutAUsableHeader) {
    EXPECT_EQ(ErrorOf("", Zone("Asia/Shanghai", true)),
              "bars.csv:1: empty file, expected a header line");
}

TEST(BarCsv, RefusesAnUnknownZone) {
    EXPECT_EQ(ErrorOf(kHeader8, Zone("Asia/Nowhere")), "bars.csv: unknown time zone 'Asia/Nowhere'");
}

TEST(BarCsv, ReadsAFileAndNamesOneItCannotOpen) {
    const std::string path = testing::TempDir() + "runner_barcsv_test.csv";
    {
        std::ofstream out(path, std::ios::binary);
        out << kHeader8 << "2010-03-25,09:05:03.007,1,2,1,2,3,4\n";
    }
    const BarCsvData data = ffrunner::ReadBarCsv(path, Zone("Asia/Shanghai"));
    ASSERT_EQ(data.bars.size(), 1u);
    EXPECT_EQ(data.bars[0].time, 1269479103007);
    std::remove(path.c_str());
    try {
        ffrunner::ReadBarCsv(path);
        FAIL() << "no error";
    } catch (const BarCsvError& e) {
        EXPECT_EQ(std::string(e.what()), path + ": cannot open the file");
    }
}

}  // namespace
