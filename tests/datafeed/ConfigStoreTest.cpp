#include <gtest/gtest.h>

#include "DatafeedTestSupport.h"

using datafeed_test::FeedFixture;

TEST(ConfigTable, MissingValueIsFalseAndEmpty) {
    FeedFixture fixture;
    std::string value = "left over";
    EXPECT_FALSE(fixture.Feed().GetConfigFileProperty("tblprofile", "Strategy", "Lots", value));
    EXPECT_EQ(value, "");
}

TEST(ConfigTable, StoresAndReplacesValues) {
    FeedFixture fixture;
    fixture.Feed().SetConfigFileProperty("tblprofile", "Strategy", "Lots", "3");
    std::string value;
    EXPECT_TRUE(fixture.Feed().GetConfigFileProperty("tblprofile", "Strategy", "Lots", value));
    EXPECT_EQ(value, "3");
    fixture.Feed().SetConfigFileProperty("tblprofile", "Strategy", "Lots", "5");
    EXPECT_TRUE(fixture.Feed().GetConfigFileProperty("tblprofile", "Strategy", "Lots", value));
    EXPECT_EQ(value, "5");
    fixture.Feed().SetConfigFileProperty("tblprofile", "Strategy", "Lots", "");
    value = "x";
    EXPECT_TRUE(fixture.Feed().GetConfigFileProperty("tblprofile", "Strategy", "Lots", value));
    EXPECT_EQ(value, "");
}

TEST(ConfigTable, TablesSectionsAndKeysAreSeparate) {
    FeedFixture fixture;
    fixture.Feed().SetConfigFileProperty("tblprofile", "A", "k", "1");
    fixture.Feed().SetConfigFileProperty("tblother", "A", "k", "2");
    fixture.Feed().SetConfigFileProperty("tblprofile", "B", "k", "3");
    fixture.Feed().SetConfigFileProperty("tblprofile", "A", "j", "4");
    std::string value;
    fixture.Feed().GetConfigFileProperty("tblprofile", "A", "k", value);
    EXPECT_EQ(value, "1");
    fixture.Feed().GetConfigFileProperty("tblother", "A", "k", value);
    EXPECT_EQ(value, "2");
    fixture.Feed().GetConfigFileProperty("tblprofile", "B", "k", value);
    EXPECT_EQ(value, "3");
    fixture.Feed().GetConfigFileProperty("tblprofile", "A", "j", value);
    EXPECT_EQ(value, "4");
    EXPECT_FALSE(fixture.Feed().GetConfigFileProperty("tblother", "B", "k", value));
}

TEST(ConfigTable, NamesMatchWithoutRegardToCase) {
    FeedFixture fixture;
    fixture.Feed().SetConfigFileProperty("tblprofile", "Strategy", "MaxLots", "7");
    std::string value;
    EXPECT_TRUE(fixture.Feed().GetConfigFileProperty("TBLPROFILE", "strategy", "maxlots", value));
    EXPECT_EQ(value, "7");
    fixture.Feed().SetConfigFileProperty("tblProfile", "STRATEGY", "maxLots", "8");
    EXPECT_TRUE(fixture.Feed().GetConfigFileProperty("tblprofile", "Strategy", "MaxLots", value));
    EXPECT_EQ(value, "8");
}

TEST(ConfigTable, KeepsEveryByteOfLongValues) {
    FeedFixture fixture;
    std::string bytes(100000, 'v');
    bytes[10] = '\0';
    bytes[20] = '\xB9';  // a GBK lead byte
    bytes[21] = '\xFA';
    bytes += "\r\n=;[]\"'";
    fixture.Feed().SetConfigFileProperty("tblprofile", "S", "K", bytes);
    std::string value;
    EXPECT_TRUE(fixture.Feed().GetConfigFileProperty("tblprofile", "S", "K", value));
    EXPECT_EQ(value, bytes);
}

TEST(ConfigTable, ValuesOutliveTheProcessObject) {
    FeedFixture fixture;
    fixture.Feed().SetConfigFileProperty("tblprofile", "Strategy", "Lots", "3");
    fixture.Reopen();
    std::string value;
    EXPECT_TRUE(fixture.Feed().GetConfigFileProperty("tblprofile", "Strategy", "Lots", value));
    EXPECT_EQ(value, "3");
}
