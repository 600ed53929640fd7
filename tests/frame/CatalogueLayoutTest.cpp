// Byte layout of catalogue records: writers against hand-written bytes, readers with
// their consumed sizes, and writer-to-reader round trips.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>

#include "FormulaFunction/frame/Catalogue.h"
#include "frame/CatalogueTestUtil.h"

using namespace ffcatalogue;

namespace {

// Group 3 "Bars" "x": 4 + (4 + 5) + (4 + 2) = 19 bytes.
const std::string kGroupBytes = Bytes({
    0x03, 0x00, 0x00, 0x00,                    // group number 3
    0x05, 0x00, 0x00, 0x00, 'B', 'a', 'r', 's', 0x00,  // "Bars" and its NUL
    0x02, 0x00, 0x00, 0x00, 'x', 0x00,         // "x"
});

// A function with one parameter of each stored kind and one of an unknown kind.
const std::string kFunctionBytes = Bytes({
    0xFE, 0xFF, 0xFF, 0xFF,                    // first number -2
    0x04, 0x03, 0x02, 0x01,                    // second number 0x01020304
    0x04, 0x00, 0x00, 0x00, 'A', 'v', 'g', 0x00,  // name "Avg"
    0x01, 0x00, 0x00, 0x00, 0x00,              // second text ""
    0x02, 0x00, 0x00, 0x00, 't', 0x00,         // third text "t"
    0x05, 0x00, 0x00, 0x00,                    // five parameters
    // flag 1, kind 1, true, name "b": 12 bytes
    0x01, 0x01, 0x00, 0x00, 0x00, 0x01, 0x02, 0x00, 0x00, 0x00, 'b', 0x00,
    // flag 0, kind 4, 1.5, name "d": 19 bytes
    0x00, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF8, 0x3F,
    0x02, 0x00, 0x00, 0x00, 'd', 0x00,
    // flag 2, kind 7, "abc", name "s": 19 bytes
    0x02, 0x07, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 'a', 'b', 'c', 0x00,
    0x02, 0x00, 0x00, 0x00, 's', 0x00,
    // flag 255, kind 10, -7, name "n": 15 bytes
    0xFF, 0x0A, 0x00, 0x00, 0x00, 0xF9, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x00, 0x00, 'n', 0x00,
    // flag 3, kind 99 (no value), name "u": 11 bytes
    0x03, 0x63, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 'u', 0x00,
    0x34, 0x12,                                // first 16-bit field 0x1234
    0xCD, 0xAB,                                // function number 0xABCD
});

SysFuncParam Param(uint8_t flag, int32_t kind, const std::string& name) {
    SysFuncParam p;
    p.cFlag = flag;
    p.Default.nType = kind;
    p.strName = name;
    return p;
}

SysFuncInfo FunctionOfBytes() {
    SysFuncInfo f;
    f.nFirst = -2;
    f.nSecond = 0x01020304;
    f.strName = "Avg";
    f.strSecond = "";
    f.strThird = "t";
    SysFuncParam b = Param(1, KelBool, "b");
    b.Default.bValue = true;
    SysFuncParam d = Param(0, KelDouble, "d");
    d.Default.dValue = 1.5;
    SysFuncParam s = Param(2, KelText, "s");
    s.Default.strValue = "abc";
    SysFuncParam n = Param(255, KelInteger, "n");
    n.Default.nValue = -7;
    f.vParams = {b, d, s, n, Param(3, 99, "u")};
    f.wFirst = 0x1234;
    f.wFuncId = 0xABCD;
    return f;
}

TEST(CatalogueLayout, GroupRecordIsWrittenByteForByte) {
    FuncGroupInfo g;
    g.nGroupId = 3;
    g.strName = "Bars";
    g.strSecond = "x";
    std::string out;
    WriteGroupRecord(g, out);
    EXPECT_EQ(out, kGroupBytes);
    EXPECT_EQ(out.size(), g.strName.size() + 1 + g.strSecond.size() + 1 + 12);
}

TEST(CatalogueLayout, GroupRecordIsReadWithItsSize) {
    CatalogueInput in(kGroupBytes.data(), kGroupBytes.size());
    FuncGroupInfo g;
    uint64_t consumed = 0;
    ASSERT_TRUE(ReadGroupRecord(in, g, &consumed));
    EXPECT_EQ(consumed, 19u);
    EXPECT_EQ(g.nGroupId, 3);
    EXPECT_EQ(g.strName, "Bars");
    EXPECT_EQ(g.strSecond, "x");
}

TEST(CatalogueLayout, FunctionRecordIsWrittenByteForByte) {
    std::string out;
    WriteFunctionRecord(FunctionOfBytes(), out);
    EXPECT_EQ(out, kFunctionBytes);
    // 28 + N1 + N2 + N3 + the entry sizes.
    EXPECT_EQ(out.size(), 28u + 4 + 1 + 2 + (12 + 19 + 19 + 15 + 11));
}

TEST(CatalogueLayout, FunctionRecordIsReadWithItsSize) {
    CatalogueInput in(kFunctionBytes.data(), kFunctionBytes.size());
    SysFuncInfo f;
    uint64_t consumed = 0;
    ASSERT_TRUE(ReadFunctionRecord(in, f, &consumed));
    EXPECT_EQ(consumed, 111u);
    ExpectSameFunction(f, FunctionOfBytes());
    // Only the slot the kind names holds anything.
    const tagKelDataType& unknown = f.vParams[4].Default;
    EXPECT_EQ(unknown.nType, 99);
    EXPECT_FALSE(unknown.bValue);
    EXPECT_EQ(unknown.dValue, 0.0);
    EXPECT_EQ(unknown.strValue, "");
    EXPECT_EQ(unknown.nValue, 0);
    const tagKelDataType& text = f.vParams[2].Default;
    EXPECT_FALSE(text.bValue);
    EXPECT_EQ(text.dValue, 0.0);
    EXPECT_EQ(text.nValue, 0);
}

TEST(CatalogueLayout, ParameterEntrySizesFollowTheKind) {
    struct Case {
        SysFuncParam param;
        uint64_t size;
    };
    SysFuncParam text = Param(0, KelText, "p");
    text.Default.strValue = "abc";
    const Case cases[] = {
        {Param(0, KelBool, "p"), 1 + 4 + 1 + 4 + 2},
        {Param(0, KelDouble, "p"), 1 + 4 + 8 + 4 + 2},
        {text, 1 + 4 + (4 + 4) + 4 + 2},
        {Param(0, KelInteger, "p"), 1 + 4 + 4 + 4 + 2},
        {Param(0, 0, "p"), 1 + 4 + 0 + 4 + 2},
        {Param(0, -1, "p"), 1 + 4 + 0 + 4 + 2},
        {Param(0, 5, "p"), 1 + 4 + 0 + 4 + 2},
    };
    for (const Case& c : cases) {
        std::string out;
        WriteParameterEntry(c.param, out);
        EXPECT_EQ(out.size(), c.size) << "kind " << c.param.Default.nType;
        CatalogueInput in(out.data(), out.size());
        SysFuncParam back;
        uint64_t consumed = 0;
        ASSERT_TRUE(ReadParameterEntry(in, back, &consumed));
        EXPECT_EQ(consumed, c.size);
        ExpectSameParam(back, c.param);
    }
}

TEST(CatalogueLayout, TextDefaultIsStoredWithLengthPlusOneAndItsNul) {
    SysFuncParam p = Param(0, KelText, "L");
    p.Default.strValue = "abc";
    std::string out;
    WriteParameterEntry(p, out);
    EXPECT_EQ(out, Bytes({0x00, 0x07, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 'a', 'b', 'c', 0x00,
                          0x02, 0x00, 0x00, 0x00, 'L', 0x00}));
}

TEST(CatalogueLayout, BooleanIsWrittenAsOneOrZero) {
    SysFuncParam p = Param(0, KelBool, "");
    std::string out;
    WriteParameterEntry(p, out);
    EXPECT_EQ(out, Bytes({0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00}));
    p.Default.bValue = true;
    out.clear();
    WriteParameterEntry(p, out);
    EXPECT_EQ(out[5], '\x01');
}

TEST(CatalogueLayout, AnyNonZeroBooleanByteReadsAsTrue) {
    const std::string bytes =
        Bytes({0x00, 0x01, 0x00, 0x00, 0x00, 0x80, 0x02, 0x00, 0x00, 0x00, 'q', 0x00});
    CatalogueInput in(bytes.data(), bytes.size());
    SysFuncParam p;
    ASSERT_TRUE(ReadParameterEntry(in, p, nullptr));
    EXPECT_TRUE(p.Default.bValue);
    EXPECT_EQ(p.strName, "q");
}

TEST(CatalogueLayout, UnknownKindReadsNoValueAndGoesOnWithTheName) {
    // Kind 2 is followed directly by the name length; what would be a value is the name.
    const std::string bytes = Bytes({0x07, 0x02, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00,
                                     'x', 'y', 0x00});
    CatalogueInput in(bytes.data(), bytes.size());
    SysFuncParam p;
    uint64_t consumed = 0;
    ASSERT_TRUE(ReadParameterEntry(in, p, &consumed));
    EXPECT_EQ(consumed, 12u);
    EXPECT_EQ(p.cFlag, 7);
    EXPECT_EQ(p.Default.nType, 2);
    EXPECT_EQ(p.strName, "xy");
}

TEST(CatalogueLayout, TextIsTakenUpToItsFirstNul) {
    // Group texts: "ab\0cd\0" reads "ab"; "abc" without a NUL reads whole; length 0 is "".
    const std::string bytes = Bytes({0x01, 0x00, 0x00, 0x00,
                                     0x06, 0x00, 0x00, 0x00, 'a', 'b', 0x00, 'c', 'd', 0x00,
                                     0x03, 0x00, 0x00, 0x00, 'a', 'b', 'c',
                                     0x02, 0x00, 0x00, 0x00,
                                     0x00, 0x00, 0x00, 0x00,
                                     0x00, 0x00, 0x00, 0x00});
    CatalogueInput in(bytes.data(), bytes.size());
    FuncGroupInfo g;
    uint64_t consumed = 0;
    ASSERT_TRUE(ReadGroupRecord(in, g, &consumed));
    EXPECT_EQ(consumed, 21u);
    EXPECT_EQ(g.strName, "ab");
    EXPECT_EQ(g.strSecond, "abc");
    ASSERT_TRUE(ReadGroupRecord(in, g, &consumed));
    EXPECT_EQ(consumed, 12u);
    EXPECT_EQ(g.nGroupId, 2);
    EXPECT_EQ(g.strName, "");
    EXPECT_EQ(g.strSecond, "");
}

// A record whose parameter count is 0 or negative has no entries: its two 16-bit
// fields follow the third text.
TEST(CatalogueLayout, ZeroOrNegativeParameterCountHasNoEntries) {
    for (const int32_t count : {0, -1, std::numeric_limits<int32_t>::min()}) {
        uint32_t bits;
        std::memcpy(&bits, &count, sizeof bits);
        const std::string bytes = Bytes({0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00,
                                         0x02, 0x00, 0x00, 0x00, 'A', 0x00,
                                         0x01, 0x00, 0x00, 0x00, 0x00,
                                         0x01, 0x00, 0x00, 0x00, 0x00}) +
                                  Le32(bits) + Bytes({0x09, 0x00, 0x07, 0x00});
        CatalogueInput in(bytes.data(), bytes.size());
        SysFuncInfo f;
        f.vParams.resize(3);  // a reused record starts its read with an empty list
        uint64_t consumed = 0;
        ASSERT_TRUE(ReadFunctionRecord(in, f, &consumed)) << count;
        EXPECT_EQ(consumed, 32u);
        EXPECT_TRUE(f.vParams.empty());
        EXPECT_EQ(f.nFirst, -1);
        EXPECT_EQ(f.strName, "A");
        EXPECT_EQ(f.wFirst, 9);
        EXPECT_EQ(f.wFuncId, 7);
    }
}

TEST(CatalogueLayout, EveryShortReadFailsTheRecord) {
    for (std::size_t size = 0; size < kFunctionBytes.size(); ++size) {
        CatalogueInput in(kFunctionBytes.data(), size);
        SysFuncInfo f;
        EXPECT_FALSE(ReadFunctionRecord(in, f, nullptr)) << size;
    }
    for (std::size_t size = 0; size < kGroupBytes.size(); ++size) {
        CatalogueInput in(kGroupBytes.data(), size);
        FuncGroupInfo g;
        EXPECT_FALSE(ReadGroupRecord(in, g, nullptr)) << size;
    }
}

TEST(CatalogueLayout, RoundTripOfEveryValueKind) {
    SysFuncInfo f = FunctionOfBytes();
    SysFuncParam bigText = Param(9, KelText, "long name with spaces");
    bigText.Default.strValue = std::string(5000, 'z') + "\xC4\xE3\xBA\xC3";
    SysFuncParam falseBool = Param(0, KelBool, "f");
    SysFuncParam extremes = Param(0, KelDouble, "max");
    extremes.Default.dValue = 1.7976931348623157e308;
    SysFuncParam negZero = Param(0, KelDouble, "negzero");
    negZero.Default.dValue = -0.0;
    SysFuncParam minInt = Param(0, KelInteger, "min");
    minInt.Default.nValue = std::numeric_limits<int32_t>::min();
    SysFuncParam emptyText = Param(0, KelText, "");
    f.vParams.insert(f.vParams.end(), {bigText, falseBool, extremes, negZero, minInt, emptyText,
                                       Param(0, std::numeric_limits<int32_t>::max(), "k")});
    std::string out;
    WriteFunctionRecord(f, out);
    CatalogueInput in(out.data(), out.size());
    SysFuncInfo back;
    uint64_t consumed = 0;
    ASSERT_TRUE(ReadFunctionRecord(in, back, &consumed));
    EXPECT_EQ(consumed, out.size());
    ExpectSameFunction(back, f);
    EXPECT_TRUE(std::signbit(back.vParams[8].Default.dValue));

    FuncGroupInfo g;
    g.nGroupId = std::numeric_limits<int32_t>::min();
    g.strName = "\xB9\xAB\xCA\xBD";
    std::string gout;
    WriteGroupRecord(g, gout);
    CatalogueInput gin(gout.data(), gout.size());
    FuncGroupInfo gback;
    ASSERT_TRUE(ReadGroupRecord(gin, gback, &consumed));
    EXPECT_EQ(consumed, gout.size());
    EXPECT_EQ(gback.nGroupId, g.nGroupId);
    EXPECT_EQ(gback.strName, g.strName);
    EXPECT_EQ(gback.strSecond, "");
}

TEST(CatalogueLayout, DefaultRecordHasTheReadersInitialValues) {
    std::string out;
    WriteFunctionRecord(SysFuncInfo(), out);
    EXPECT_EQ(out, Bytes({0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00,
                          0x01, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00,
                          0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                          0x00, 0x00, 0xFF, 0xFF}));
}

}  // namespace
