// The text form of catalogues: what each statement yields and every error message.
#include <gtest/gtest.h>

#include <cmath>

#include "frame/CatalogueTestUtil.h"
#include "tools/ffcatalog/CatalogueSource.h"

using namespace ffcatalog;

namespace {

CatalogueSource Parse(const std::string& text, CatalogueKind expected = CatalogueKind::Unknown) {
    CatalogueSource source;
    std::string error;
    EXPECT_TRUE(ParseCatalogueSource(text, "src.txt", expected, source, error)) << error;
    return source;
}

std::string ErrorOf(const std::string& text, CatalogueKind expected = CatalogueKind::Unknown) {
    CatalogueSource source;
    std::string error;
    EXPECT_FALSE(ParseCatalogueSource(text, "src.txt", expected, source, error)) << text;
    return error;
}

TEST(SourceParser, FunctionWithEveryField) {
    const CatalogueSource s = Parse(
        "# a comment\n"
        "function Average   # trailing comment\n"
        "  number 2\n"
        "  first 3\n"
        "  second -4\n"
        "  first16 65535\n"
        "  text2 \"Moving average\"\n"
        "  text3 \"#1 of \\\"many\\\"\"\n"
        "\n"
        "  param Price double 0.25 flag 1\n"
        "  param Length int -10\n"
        "  param Title text \"MA\" flag 255\n"
        "  param Visible bool true\n"
        "  param Hidden bool 0\n"
        "  param Odd 99\n"
        "  param Coded 10 5\n");
    EXPECT_EQ(s.kind, CatalogueKind::Functions);
    ASSERT_EQ(s.functions.size(), 1u);
    EXPECT_TRUE(s.groups.empty());
    const SysFuncInfo& f = s.functions[0];
    EXPECT_EQ(f.strName, "Average");
    EXPECT_EQ(f.wFuncId, 2);
    EXPECT_EQ(f.nFirst, 3);
    EXPECT_EQ(f.nSecond, -4);
    EXPECT_EQ(f.wFirst, 65535);
    EXPECT_EQ(f.strSecond, "Moving average");
    EXPECT_EQ(f.strThird, "#1 of \"many\"");
    ASSERT_EQ(f.vParams.size(), 7u);
    EXPECT_EQ(f.vParams[0].strName, "Price");
    EXPECT_EQ(f.vParams[0].cFlag, 1);
    EXPECT_EQ(f.vParams[0].Default.nType, KelDouble);
    EXPECT_EQ(f.vParams[0].Default.dValue, 0.25);
    EXPECT_EQ(f.vParams[1].Default.nType, KelInteger);
    EXPECT_EQ(f.vParams[1].Default.nValue, -10);
    EXPECT_EQ(f.vParams[2].Default.nType, KelText);
    EXPECT_EQ(f.vParams[2].Default.strValue, "MA");
    EXPECT_EQ(f.vParams[2].cFlag, 255);
    EXPECT_EQ(f.vParams[3].Default.nType, KelBool);
    EXPECT_TRUE(f.vParams[3].Default.bValue);
    EXPECT_FALSE(f.vParams[4].Default.bValue);
    EXPECT_EQ(f.vParams[5].Default.nType, 99);
    EXPECT_EQ(f.vParams[5].cFlag, 0);
    EXPECT_EQ(f.vParams[6].Default.nType, KelInteger);
    EXPECT_EQ(f.vParams[6].Default.nValue, 5);
}

TEST(SourceParser, OmittedFieldsKeepTheReadersInitialValues) {
    const CatalogueSource s = Parse("function A\nfunction \"B C\"\n");
    ASSERT_EQ(s.functions.size(), 2u);
    SysFuncInfo expected;
    expected.strName = "A";
    ExpectSameFunction(s.functions[0], expected);
    expected.strName = "B C";
    ExpectSameFunction(s.functions[1], expected);
}

TEST(SourceParser, GroupsWithAndWithoutSecondText) {
    const CatalogueSource s = Parse("group 1 \"Bar data\"\r\ngroup -2 Math \"x y\"\r\n");
    EXPECT_EQ(s.kind, CatalogueKind::Groups);
    ASSERT_EQ(s.groups.size(), 2u);
    EXPECT_EQ(s.groups[0].nGroupId, 1);
    EXPECT_EQ(s.groups[0].strName, "Bar data");
    EXPECT_EQ(s.groups[0].strSecond, "");
    EXPECT_EQ(s.groups[1].nGroupId, -2);
    EXPECT_EQ(s.groups[1].strName, "Math");
    EXPECT_EQ(s.groups[1].strSecond, "x y");
}

TEST(SourceParser, EscapesAndRawBytes) {
    const CatalogueSource s =
        Parse("group 1 \"\\\\ \\n\\r\\t\\x41\\xc4\\xE3\" \"\xB9\xAB\xCA\xBD\"\n");
    ASSERT_EQ(s.groups.size(), 1u);
    EXPECT_EQ(s.groups[0].strName, "\\ \n\r\tA\xC4\xE3");
    EXPECT_EQ(s.groups[0].strSecond, "\xB9\xAB\xCA\xBD");
}

TEST(SourceParser, NonFiniteAndExtremeDoubles) {
    const CatalogueSource s = Parse(
        "function F\n param a double inf\n param b double -inf\n param c double nan\n"
        " param d double 1.7976931348623157e308\n param e double -0\n");
    const auto& p = s.functions.at(0).vParams;
    EXPECT_TRUE(std::isinf(p[0].Default.dValue) && p[0].Default.dValue > 0);
    EXPECT_TRUE(std::isinf(p[1].Default.dValue) && p[1].Default.dValue < 0);
    EXPECT_TRUE(std::isnan(p[2].Default.dValue));
    EXPECT_EQ(p[3].Default.dValue, 1.7976931348623157e308);
    EXPECT_TRUE(std::signbit(p[4].Default.dValue));
}

TEST(SourceParser, EmptySourceHasNoKindUnlessAsked) {
    EXPECT_EQ(Parse("").kind, CatalogueKind::Unknown);
    EXPECT_EQ(Parse("# nothing\n\n").kind, CatalogueKind::Unknown);
    EXPECT_EQ(Parse("", CatalogueKind::Groups).kind, CatalogueKind::Groups);
}

TEST(SourceParser, ErrorsNameTheFileAndLine) {
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        {"frobnicate 1\n", "src.txt:1: unknown keyword 'frobnicate'"},
        {"\n\nnumber 3\n", "src.txt:3: 'number' outside a function record"},
        {"function A\nfunction\n", "src.txt:2: 'function' takes exactly one name"},
        {"function A B\n", "src.txt:1: 'function' takes exactly one name"},
        {"function A\n number 70000\n",
         "src.txt:2: '70000' is out of range 0..65535 (function number)"},
        {"function A\n number -1\n", "src.txt:2: '-1' is out of range 0..65535 (function number)"},
        {"function A\n number x\n", "src.txt:2: 'x' is not a whole number (function number)"},
        {"function A\n number 1 2\n", "src.txt:2: 'number' takes exactly one value"},
        {"function A\n number\n", "src.txt:2: 'number' takes exactly one value"},
        {"function A\n first 2147483648\n",
         "src.txt:2: '2147483648' is out of range -2147483648..2147483647 (first number)"},
        {"function A\n second 1.5\n", "src.txt:2: '1.5' is not a whole number (second number)"},
        {"function A\n number 1\n number 2\n", "src.txt:3: 'number' given twice for function 'A'"},
        {"function A\n text2 \"x\n", "src.txt:2: unterminated text"},
        {"function A\n text2 \"x\\\n", "src.txt:2: unterminated text"},
        {"function A\n text2 \"\\q\"\n", "src.txt:2: unknown escape \\q"},
        {"function A\n text2 \"\\x4\"\n", "src.txt:2: \\x must be followed by two hexadecimal digits"},
        {"function A\n text2 \"\\x00\"\n", "src.txt:2: a text cannot hold a NUL byte"},
        {"function A\n text2 \"a\"b\n", "src.txt:2: a quoted text must be followed by a blank"},
        {"function A\n text2 a\"b\"\n", "src.txt:2: a quote inside the bare word 'a'"},
        {"function A\n param\n", "src.txt:2: 'param' needs a name and a value kind"},
        {"function A\n param P\n", "src.txt:2: 'param' needs a name and a value kind"},
        {"function A\n param P int\n", "src.txt:2: parameter 'P' needs a default value"},
        {"function A\n param P float 1\n",
         "src.txt:2: 'float' is not a whole number (value kind: bool, double, text, int or a kind code)"},
        {"function A\n param P bool yes\n",
         "src.txt:2: 'yes' is not a boolean (true, false, 1 or 0)"},
        {"function A\n param P double 1e999\n", "src.txt:2: '1e999' is not a number (default value)"},
        {"function A\n param P double \"1\"\n", "src.txt:2: '1' is not a number (default value)"},
        {"function A\n param P text abc\n", "src.txt:2: a text default must be quoted"},
        {"function A\n param P int 1 flag 256\n", "src.txt:2: '256' is out of range 0..255 (flag)"},
        {"function A\n param P int 1 flag\n", "src.txt:2: 'flag' needs a value"},
        {"function A\n param P int 1 2\n",
         "src.txt:2: expected 'flag' or the end of the line, found '2'"},
        {"function A\n param P 99 5\n", "src.txt:2: kind 99 has no stored value; found '5'"},
        {"function A\n param P int 1 flag 1 x\n", "src.txt:2: unexpected 'x' at the end of 'param'"},
        {"group 1\n", "src.txt:1: 'group' takes a number, a name and an optional second text"},
        {"group 1 a b c\n", "src.txt:1: 'group' takes a number, a name and an optional second text"},
        {"group x a\n", "src.txt:1: 'x' is not a whole number (group number)"},
        {"group 1 a\nfunction B\n", "src.txt:2: 'function' record in a groups catalogue"},
        {"function B\ngroup 1 a\n", "src.txt:2: 'group' record in a functions catalogue"},
        {"group 1 a\n number 3\n", "src.txt:2: 'number' outside a function record"},
        {"\"function\" A\n", "src.txt:1: unknown keyword 'function'"},
    };
    for (const auto& c : cases) EXPECT_EQ(ErrorOf(c.text), c.error) << c.text;
}

TEST(SourceParser, KindAskedForRulesOutTheOther) {
    EXPECT_EQ(ErrorOf("group 1 a\n", CatalogueKind::Functions),
              "src.txt:1: 'group' record in a functions catalogue");
    EXPECT_EQ(ErrorOf("# x\r\nfunction A\r\n", CatalogueKind::Groups),
              "src.txt:2: 'function' record in a groups catalogue");
}

TEST(SourceParser, LineNumbersCountEveryLineEnding) {
    EXPECT_EQ(ErrorOf("function A\r\n\r\n# c\r\n bogus\r\n"), "src.txt:4: unknown keyword 'bogus'");
    EXPECT_EQ(ErrorOf("function A\n\n\n\n\n number"), "src.txt:6: 'number' takes exactly one value");
}

}  // namespace
