// Reading keys: matching, trimming, quotes, line endings, the buffer limit and the
// default.
#include <gtest/gtest.h>

#include <string>

#include "FormulaFunction/platform/Platform.h"
#include "FormulaFunction/platform/portable/ProfileEmulation.h"
#include "TempDir.h"

namespace {

using ffplatform::emulated::CopyProfileDefault;
using ffplatform::emulated::CopyProfileValue;
using ffplatform::emulated::FindProfileValue;
using ffplatform::emulated::kProfileStringBuffer;

// What the string reader answers for a key of the given file text.
std::string Read(const std::string& text, const std::string& section, const std::string& key,
                 const std::string& def = "def") {
    const auto value = FindProfileValue(text, section, key);
    if (!value) return CopyProfileDefault(def, kProfileStringBuffer);
    return CopyProfileValue(*value, kProfileStringBuffer);
}

TEST(ProfileRead, NamesMatchWithoutCaseAfterTrimming) {
    const std::string text = "[Sec]\r\nKey = value \r\n";
    EXPECT_EQ(Read(text, "Sec", "Key"), "value");
    EXPECT_EQ(Read(text, "sec", "KEY"), "value");
    EXPECT_EQ(Read(text, " Sec\t", "\tkey "), "value");
    EXPECT_EQ(Read(text, "Se", "Key"), "def");
    EXPECT_EQ(Read(text, "Sec", "Ke"), "def");
}

TEST(ProfileRead, CaseFoldingIsAsciiOnly) {
    const std::string text = "[\xC4]\nk=1\n[S]\n\xE4=2\n";
    EXPECT_EQ(Read(text, "\xC4", "k"), "1");
    EXPECT_EQ(Read(text, "\xE4", "k"), "def");
    EXPECT_EQ(Read(text, "S", "\xC4"), "def");
}

TEST(ProfileRead, KeyNamesAndValuesLoseBlanksOfEveryKind) {
    const std::string text = "[S]\n\t d \t=\v\fv\v\f \na=\tx\t\n";
    EXPECT_EQ(Read(text, "S", "d"), "v");
    EXPECT_EQ(Read(text, "S", "a"), "x");
}

// Ctrl-Z, the old end-of-file mark, trims like a blank, also before a section header.
TEST(ProfileRead, CtrlZIsABlank) {
    const std::string text = "[S]\nsub=\x1a" "3\x1a\n\x1a[X]\nk=7\n";
    EXPECT_EQ(Read(text, "S", "sub"), "3");
    EXPECT_EQ(Read(text, "S", "k"), "def");
    EXPECT_EQ(Read(text, "X", "k"), "7");
    EXPECT_EQ(Read(text, "S", "\x1aSUB\x1a"), "3");
}

TEST(ProfileRead, SectionHeaders) {
    const std::string text =
        "\t[ A ] junk\na=1\n[B\nb=2\n[C]]\nc=3\n [D] \nd=4\n[E] ] x\ne=5\n";
    EXPECT_EQ(Read(text, "A", "a"), "1");
    // "[B" has no ']' and is a key line of section A.
    EXPECT_EQ(Read(text, "B", "b"), "def");
    EXPECT_EQ(Read(text, "[B", "b"), "def");
    EXPECT_EQ(Read(text, "A", "b"), "2");
    EXPECT_EQ(Read(text, "A", "[B"), "def");
    // The name runs to the last ']'.
    EXPECT_EQ(Read(text, "C", "c"), "def");
    EXPECT_EQ(Read(text, "C]", "c"), "3");
    EXPECT_EQ(Read(text, "D", "d"), "4");
    EXPECT_EQ(Read(text, "E]", "e"), "5");
    EXPECT_EQ(Read(text, "E ]", "e"), "def");
    EXPECT_EQ(Read(text, "E", "e"), "def");
}

TEST(ProfileRead, NoCommentSyntax) {
    const std::string text = "; note\n[S]\n;c=1\nk=a;b\n# x = y\n";
    EXPECT_EQ(Read(text, "S", ";c"), "1");
    EXPECT_EQ(Read(text, "S", "k"), "a;b");
    EXPECT_EQ(Read(text, "S", "# x"), "y");
    EXPECT_EQ(Read(text, "", "; note"), "def");
}

TEST(ProfileRead, LineWithoutEqualsIsAKeyWithNoValue) {
    const std::string text = "[S]\nnoequals\nempty=\nnoequals=later\n";
    EXPECT_EQ(Read(text, "S", "noequals"), "def");
    EXPECT_FALSE(FindProfileValue(text, "S", "noequals").has_value());
    EXPECT_EQ(Read(text, "S", "empty"), "");
    ASSERT_TRUE(FindProfileValue(text, "S", "empty").has_value());
}

TEST(ProfileRead, OnlyTheFirstEqualsSeparates) {
    EXPECT_EQ(Read("[S]\nk = a = b\n", "S", "k"), "a = b");
    EXPECT_EQ(Read("[S]\nk = a = b\n", "S", "k = a"), "def");
}

TEST(ProfileRead, OnePairOfMatchingQuotesIsRemoved) {
    const std::string text =
        "[S]\nq1='single'\nq2=\"mismatch'\nq3=\"\nq4=\"\"\nq5=\"a\"b\"\nq6=''\n"
        "q7=  \"  padded \"  \nq8=\"open\nq9=close'\nq10=\"\"x\"\"\n";
    EXPECT_EQ(Read(text, "S", "q1"), "single");
    EXPECT_EQ(Read(text, "S", "q2"), "\"mismatch'");
    EXPECT_EQ(Read(text, "S", "q3"), "\"");
    EXPECT_EQ(Read(text, "S", "q4"), "");
    EXPECT_EQ(Read(text, "S", "q5"), "a\"b");
    EXPECT_EQ(Read(text, "S", "q6"), "");
    EXPECT_EQ(Read(text, "S", "q7"), "  padded ");
    EXPECT_EQ(Read(text, "S", "q8"), "\"open");
    EXPECT_EQ(Read(text, "S", "q9"), "close'");
    EXPECT_EQ(Read(text, "S", "q10"), "\"x\"");
}

TEST(ProfileRead, LineEndings) {
    EXPECT_EQ(Read("[S]\r\na=1\r\nb=2\r\n", "S", "b"), "2");
    EXPECT_EQ(Read("[S]\na=1\nb=2\n", "S", "b"), "2");
    EXPECT_EQ(Read("[S]\ra=1\rb=2\r", "S", "b"), "2");
    EXPECT_EQ(Read("[S]\ra=1\nb=2\r\nc=3", "S", "a"), "1");
    EXPECT_EQ(Read("[S]\ra=1\nb=2\r\nc=3", "S", "c"), "3");
    // LF then CR is two line ends with an empty line between.
    EXPECT_EQ(Read("[S]\n\ra=1\n\r", "S", "a"), "1");
}

TEST(ProfileRead, FileEndingWithoutNewline) {
    EXPECT_EQ(Read("[X]\nk=v", "X", "k"), "v");
    EXPECT_EQ(Read("[X]", "X", "k"), "def");
    EXPECT_EQ(Read("", "X", "k"), "def");
}

TEST(ProfileRead, OnlyTheFirstSectionOfANameIsSearched) {
    const std::string text = "[Sec]\na=1\n[sec]\nb=2\n[SEC]\nc=3\n";
    EXPECT_EQ(Read(text, "Sec", "a"), "1");
    EXPECT_EQ(Read(text, "Sec", "b"), "def");
    EXPECT_EQ(Read(text, "sec", "c"), "def");
}

TEST(ProfileRead, FirstMatchingKeyWins) {
    EXPECT_EQ(Read("[S]\ndup=first\nDUP=second\n", "S", "Dup"), "first");
    EXPECT_EQ(Read("[S]\ndup\nDUP=second\n", "S", "Dup"), "def");
}

TEST(ProfileRead, EmptyKeyName) {
    const std::string text = "[S]\n  = emptykey\n";
    EXPECT_EQ(Read(text, "S", ""), "emptykey");
    EXPECT_EQ(Read(text, "S", "  "), "emptykey");
    EXPECT_EQ(Read("[S]\n\n  \n", "S", ""), "def");
}

TEST(ProfileRead, LinesBeforeTheFirstSectionFormTheNamelessSection) {
    EXPECT_EQ(Read("foo=bar\n[S]\nk=1\n", "", "foo"), "bar");
    EXPECT_EQ(Read("foo=bar\n[S]\nk=1\n", " ", "foo"), "bar");
    EXPECT_EQ(Read("foo=bar\n[S]\nk=1\n", "", "k"), "def");
    // An explicit "[]" comes after the nameless section and is never searched.
    EXPECT_EQ(Read("a=1\n[]\nb=2\n", "", "a"), "1");
    EXPECT_EQ(Read("a=1\n[]\nb=2\n", "", "b"), "def");
    EXPECT_EQ(Read("[]\nb=2\n", "", "b"), "def");
    EXPECT_EQ(Read("[ ]\nb=2\n", "", "b"), "def");
}

TEST(ProfileRead, ByteOrderMarkIsPartOfTheFirstLine) {
    const std::string text = "\xEF\xBB\xBF[Bom]\r\nk=1\r\n[Next]\r\nn=2\r\n";
    EXPECT_EQ(Read(text, "Bom", "k"), "def");
    EXPECT_EQ(Read(text, "\xEF\xBB\xBF[Bom]", "k"), "def");
    EXPECT_EQ(Read(text, "", "k"), "1");
    EXPECT_EQ(Read(text, "Next", "n"), "2");
    EXPECT_EQ(Read("\xEF\xBB\xBFk=1\n", "", "k"), "def");
    EXPECT_EQ(Read("\xEF\xBB\xBFk=1\n", "", "\xEF\xBB\xBFk"), "1");
}

TEST(ProfileRead, ValueIsCutToTheBuffer) {
    const std::string longValue(300, 'a');
    EXPECT_EQ(Read("[S]\nk=" + longValue + "\n", "S", "k"), std::string(259, 'a'));
    EXPECT_EQ(Read("[S]\nk=" + std::string(259, 'a') + "\n", "S", "k"), std::string(259, 'a'));
    // The cut may keep a blank from inside the value.
    const std::string spaced = std::string(258, 'd') + "  x";
    EXPECT_EQ(Read("[S]\nk=" + spaced + "\n", "S", "k"), std::string(258, 'd') + " ");
}

TEST(ProfileRead, QuotedValueNearTheBufferSize) {
    auto quoted = [](size_t n) { return "[S]\nk=\"" + std::string(n, 'c') + "\"\n"; };
    EXPECT_EQ(Read(quoted(257), "S", "k"), std::string(257, 'c'));
    EXPECT_EQ(Read(quoted(258), "S", "k"), std::string(258, 'c'));
    // One character too long for the buffer: the closing quote never made it,
    // and the last character copied goes instead.
    EXPECT_EQ(Read(quoted(259), "S", "k"), std::string(258, 'c'));
    EXPECT_EQ(Read(quoted(260), "S", "k"), std::string(259, 'c'));
    EXPECT_EQ(Read(quoted(400), "S", "k"), std::string(259, 'c'));
}

TEST(ProfileRead, CopyWithTinyBuffers) {
    EXPECT_EQ(CopyProfileValue("\"ab\"", 0), "");
    EXPECT_EQ(CopyProfileValue("\"ab\"", 1), "");
    EXPECT_EQ(CopyProfileValue("\"ab\"", 2), "a");
    EXPECT_EQ(CopyProfileValue("\"ab\"", 3), "a");
    EXPECT_EQ(CopyProfileValue("\"ab\"", 4), "ab");
    EXPECT_EQ(CopyProfileDefault("abc", 0), "");
    EXPECT_EQ(CopyProfileDefault("abc", 1), "");
    EXPECT_EQ(CopyProfileDefault("abc", 3), "ab");
}

TEST(ProfileRead, DefaultLosesTrailingSpacesOnly) {
    EXPECT_EQ(Read("", "S", "k", "def   "), "def");
    EXPECT_EQ(Read("", "S", "k", " d e f "), " d e f");
    EXPECT_EQ(Read("", "S", "k", "q\t"), "q\t");
    EXPECT_EQ(Read("", "S", "k", "q \t "), "q \t");
    // The first character always stays.
    EXPECT_EQ(Read("", "S", "k", "   "), " ");
    EXPECT_EQ(Read("", "S", "k", ""), "");
    // No quote removal for the default.
    EXPECT_EQ(Read("", "S", "k", "\"N/A\""), "\"N/A\"");
}

TEST(ProfileRead, LongDefaultIsCutToTheBuffer) {
    EXPECT_EQ(Read("", "S", "k", std::string(300, 'a')), std::string(259, 'a'));
    // Trailing spaces go before the cut, so an inner blank can end the result.
    EXPECT_EQ(Read("", "S", "k", std::string(258, 'd') + "  x"), std::string(258, 'd') + " ");
    EXPECT_EQ(Read("", "S", "k", std::string(258, 'd') + " " + std::string(10, ' ')),
              std::string(258, 'd'));
}

class ProfileReadFile : public ::testing::Test {
protected:
    fftest::TempDir dir;
};

TEST_F(ProfileReadFile, MissingFileSectionOrKeyGivesTheDefault) {
    const std::string path = dir.File("profile.ini");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", path), "N/A");
    fftest::PutBytes(path, "[S]\r\nk=v\r\n");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", path), "v");
    EXPECT_EQ(ffplatform::ProfileGetString("T", "k", "N/A", path), "N/A");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "x", "N/A", path), "N/A");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "x", std::string(300, 'z'), path),
              std::string(259, 'z'));
}

TEST_F(ProfileReadFile, BackslashPathsAreMadeNative) {
    fftest::PutBytes(dir.File("profile.ini"), "[S]\nk=v\n");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", dir.Path().string() + "\\profile.ini"),
              "v");
}

TEST_F(ProfileReadFile, FolderReadsAsMissing) {
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", dir.Path().string()), "N/A");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", ""), "N/A");
}

TEST_F(ProfileReadFile, ArgumentsEndAtAnEmbeddedNul) {
    const std::string path = dir.File("profile.ini");
    fftest::PutBytes(path, "[S]\nk=v\n");
    EXPECT_EQ(ffplatform::ProfileGetString(std::string("S\0x", 3), std::string("k\0y", 3),
                                           "N/A", path),
              "v");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "q", std::string("ab\0cd", 5), path), "ab");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", path + std::string("\0.bak", 5)),
              "v");
}

TEST_F(ProfileReadFile, FileWithAByteOrderMark) {
    const std::string path = dir.File("bom.ini");
    fftest::PutBytes(path, "\xEF\xBB\xBF[Bom]\r\nk=1\r\n");
    EXPECT_EQ(ffplatform::emulated::ProfileGetString("Bom", "k", "N/A", path), "N/A");
    EXPECT_EQ(ffplatform::emulated::ProfileGetString("", "k", "N/A", path), "1");
}

}  // namespace
