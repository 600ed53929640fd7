// Text and JSON printing of catalogues, and the text form read back.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "frame/CatalogueTestUtil.h"
#include "tools/ffcatalog/CataloguePrinters.h"
#include "tools/ffcatalog/CatalogueSource.h"

using namespace ffcatalog;

namespace {

SysFuncInfo Sample() {
    SysFuncInfo f;
    f.strName = "Avg";
    f.wFuncId = 2;
    f.nFirst = 3;
    f.nSecond = -4;
    f.wFirst = 5;
    f.strSecond = "a \"q\"";
    f.strThird = "\xC4\xE3\n";
    SysFuncParam p;
    p.strName = "Price";
    p.cFlag = 1;
    p.Default.nType = KelDouble;
    p.Default.dValue = 0.1;
    f.vParams.push_back(p);
    p = SysFuncParam();
    p.strName = "On";
    p.Default.nType = KelBool;
    p.Default.bValue = true;
    f.vParams.push_back(p);
    p = SysFuncParam();
    p.strName = "T";
    p.Default.nType = KelText;
    p.Default.strValue = "x\\y";
    f.vParams.push_back(p);
    p = SysFuncParam();
    p.strName = "N";
    p.Default.nType = KelInteger;
    p.Default.nValue = -7;
    f.vParams.push_back(p);
    p = SysFuncParam();
    p.strName = "U";
    p.cFlag = 9;
    p.Default.nType = 99;
    f.vParams.push_back(p);
    return f;
}

TEST(Printers, FunctionsAsText) {
    SysFuncInfo bare;
    bare.strName = "B";
    std::string out;
    PrintFunctionsText({Sample(), bare}, out);
    EXPECT_EQ(out,
              "# function catalogue, records: 2\n"
              "\n"
              "function \"Avg\"\n"
              "  number 2\n"
              "  first 3\n"
              "  second -4\n"
              "  first16 5\n"
              "  text2 \"a \\\"q\\\"\"\n"
              "  text3 \"\\xc4\\xe3\\n\"\n"
              "  param \"Price\" double 0.1 flag 1\n"
              "  param \"On\" bool true flag 0\n"
              "  param \"T\" text \"x\\\\y\" flag 0\n"
              "  param \"N\" int -7 flag 0\n"
              "  param \"U\" 99 flag 9\n"
              "\n"
              "function \"B\"\n"
              "  number 65535\n"
              "  first -1\n"
              "  second 0\n"
              "  first16 0\n"
              "  text2 \"\"\n"
              "  text3 \"\"\n");
}

TEST(Printers, FunctionsAsJson) {
    SysFuncInfo bare;
    bare.strName = "B";
    std::string out;
    PrintFunctionsJson({Sample(), bare}, out);
    EXPECT_EQ(out,
              "{\"kind\": \"functions\", \"records\": [\n"
              "  {\"name\": \"Avg\", \"number\": 2, \"first\": 3, \"second\": -4, \"first16\": 5, "
              "\"text2\": \"a \\\"q\\\"\", \"text3\": \"\\u00c4\\u00e3\\n\", \"params\": [\n"
              "    {\"name\": \"Price\", \"flag\": 1, \"kind\": 4, \"value\": 0.1},\n"
              "    {\"name\": \"On\", \"flag\": 0, \"kind\": 1, \"value\": true},\n"
              "    {\"name\": \"T\", \"flag\": 0, \"kind\": 7, \"value\": \"x\\\\y\"},\n"
              "    {\"name\": \"N\", \"flag\": 0, \"kind\": 10, \"value\": -7},\n"
              "    {\"name\": \"U\", \"flag\": 9, \"kind\": 99}\n"
              "  ]},\n"
              "  {\"name\": \"B\", \"number\": 65535, \"first\": -1, \"second\": 0, \"first16\": 0, "
              "\"text2\": \"\", \"text3\": \"\", \"params\": []}\n"
              "]}\n");
}

TEST(Printers, GroupsAsTextAndJson) {
    FuncGroupInfo g;
    g.nGroupId = -1;
    g.strName = "Bar\tdata";
    g.strSecond = "\x7F";
    std::string text;
    PrintGroupsText({g}, text);
    EXPECT_EQ(text, "# group catalogue, records: 1\ngroup -1 \"Bar\\tdata\" \"\\x7f\"\n");
    std::string json;
    PrintGroupsJson({g}, json);
    EXPECT_EQ(json,
              "{\"kind\": \"groups\", \"records\": [\n"
              "  {\"number\": -1, \"name\": \"Bar\\tdata\", \"text2\": \"\\u007f\"}\n"
              "]}\n");
}

TEST(Printers, EmptyCatalogues) {
    std::string out;
    PrintFunctionsJson({}, out);
    EXPECT_EQ(out, "{\"kind\": \"functions\", \"records\": []}\n");
    out.clear();
    PrintGroupsJson({}, out);
    EXPECT_EQ(out, "{\"kind\": \"groups\", \"records\": []}\n");
    out.clear();
    PrintGroupsText({}, out);
    EXPECT_EQ(out, "# group catalogue, records: 0\n");
}

TEST(Printers, DoublesAreShortestAndNonFiniteAreWords) {
    EXPECT_EQ(FormatDouble(14.0), "14");
    EXPECT_EQ(FormatDouble(0.1), "0.1");
    EXPECT_EQ(FormatDouble(-0.0), "-0");
    EXPECT_EQ(FormatDouble(1.7976931348623157e308), "1.7976931348623157e+308");
    EXPECT_EQ(FormatDouble(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(FormatDouble(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(FormatDouble(std::nan("")), "nan");

    SysFuncInfo f;
    SysFuncParam p;
    p.strName = "x";
    p.Default.nType = KelDouble;
    p.Default.dValue = -std::numeric_limits<double>::infinity();
    f.vParams.push_back(p);
    std::string json;
    PrintFunctionsJson({f}, json);
    EXPECT_NE(json.find("\"value\": \"-inf\""), std::string::npos);
}

// The text form of any catalogue reads back into the same records.
TEST(Printers, TextFormReadsBackUnchanged) {
    SysFuncInfo every = Sample();
    every.strName = std::string("all bytes:");
    for (int b = 1; b < 256; ++b) every.strName.push_back(static_cast<char>(b));
    SysFuncParam p;
    p.strName = "";
    p.Default.nType = KelDouble;
    p.Default.dValue = 1.7976931348623157e308;
    every.vParams.push_back(p);
    p.Default.dValue = 4.9406564584124654e-324;
    every.vParams.push_back(p);
    p.Default = tagKelDataType();
    p.Default.nType = std::numeric_limits<int32_t>::min();
    every.vParams.push_back(p);
    p.Default.nType = KelInteger;
    p.Default.nValue = std::numeric_limits<int32_t>::min();
    every.vParams.push_back(p);
    const std::vector<SysFuncInfo> functions = {every, SysFuncInfo()};

    std::string text;
    PrintFunctionsText(functions, text);
    CatalogueSource source;
    std::string error;
    ASSERT_TRUE(ParseCatalogueSource(text, "dump", CatalogueKind::Unknown, source, error)) << error;
    ASSERT_EQ(source.functions.size(), 2u);
    for (std::size_t i = 0; i < functions.size(); ++i) ExpectSameFunction(source.functions[i], functions[i]);

    FuncGroupInfo g;
    g.nGroupId = std::numeric_limits<int32_t>::min();
    g.strName = "\xB9\xAB\xCA\xBD #";
    g.strSecond = "\"";
    std::string groupText;
    PrintGroupsText({g}, groupText);
    ASSERT_TRUE(ParseCatalogueSource(groupText, "dump", CatalogueKind::Unknown, source, error)) << error;
    ASSERT_EQ(source.groups.size(), 1u);
    ExpectSameGroup(source.groups[0], g);
}

}  // namespace
