// The portable private-profile emulation against the real Windows API: the same
// files and queries must give the same answers, and the same writes files that
// mean the same.
//
// Wine's profile functions differ from Windows' in two ways that the emulation
// deliberately does not follow, so those cases are compared differently:
//   - Wine rewrites the whole file on every write, with CRLF line endings, names
//     trimmed and blank lines dropped; Windows changes only the line of the key
//     (or adds one) and keeps every other byte. Writes into files that are already
//     in that tidy form must give the same bytes; writes into other files must give
//     files in which every name reads back the same.
//   - Wine skips a UTF-8 byte-order mark at the start of the file; Windows reads it
//     as part of the first line, so a section header there is not found. Files with
//     a byte-order mark are left out of the comparison and checked on their own.
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "FormulaFunction/platform/Platform.h"
#include "FormulaFunction/platform/portable/ProfileEmulation.h"
#include "platform/TempDir.h"

namespace {

using fftest::GetBytes;
using fftest::PutBytes;
using fftest::TempDir;

// Files written with '\n' and then given each line ending in turn.
const std::vector<std::string> kFiles = {
    // plain sections and keys
    "[Sec]\nkey=value\nOther=2\n[Sec2]\nkey=v2\n",
    // names and values padded with blanks and tabs, mixed case
    "  [ MixedCase ]  \n  Key One  =  spaced value  \nTAB\t=\ttabbed\t\n[Blank Name]\nx y = z w \n",
    // quotes
    "[Q]\nd=\"double\"\ns='single'\nm=\"mismatch'\no=\"only open\nc=only close\"\ne=\"\"\n"
    "q='\ninner=a\"b\"c\nsp= \" padded \" \nnested=\"'x'\"\nlone=\"\n",
    // no comment syntax
    "[C]\n;comment=1\nkey=value ; not a comment\n#hash=2\n;=semi\n; spaced = 3\n",
    // lines without '=' and empty values
    "[N]\nbare\nbare2 \nkey=\n=novalue\n   \n\nafter=blank lines\n",
    // repeated sections: only the first of a name counts
    "[D]\na=1\n[d]\na=2\nb=3\n[D]\nc=4\n",
    // repeated keys: the first wins
    "[K]\nx=1\nX=2\nx = 3\n",
    // values around the 260-character buffer
    "[L]\nv258=" + std::string(258, 'a') + "\nv259=" + std::string(259, 'b') + "\nv260=" +
        std::string(260, 'c') + "\nv300=" + std::string(300, 'd') + "\nq300=\"" +
        std::string(300, 'e') + "\"\n",
    // no newline at the end
    "[E]\nfirst=1\nlast=end",
    // a UTF-8 byte-order mark before the first line
    "\xEF\xBB\xBF[B]\nk=v\n[Second]\nk=w\n",
    // empty section name, keys before the first section, odd section lines
    "orphan=1\n[]\nk=empty section\n[S] trailing\nk=after trailing\n[Open\nk=open\n[ ]\nk=blank\n",
    // '=' inside values, blanks inside keys, text in the GBK code page
    "[V]\nk=a=b\nmy key=1\n[\xD6\xD0\xCE\xC4]\n\xBC\xFC=\xD6\xB5\n",
    // control characters and non-breaking blanks around values and names
    "[W]\nv=\v1\v\nf=\f2\f\nsub=\x1a" "3\x1a\nctl=\x01" "4\x01\nnb=\xA0" "5\xA0\n\vvk\v=6\n"
    "\x1a[X]\nk=7\n",
    // integers
    "[I]\na=42\nb=-3\nc=+5\nd=  12\ne=7abc\nf=abc\ng=4294967295\nh=4294967296\n"
    "i=99999999999\nj=-2147483648\nk=0x10\nl= -0\nm=--1\nn=+\no=\"12\"\np=1 2\nq=\t9\n"
    "r=-\ns=2147483648\nt=-4294967297\n",
};

const char* const kLineEndings[] = {"\n", "\r\n", "\r"};

std::string WithLineEnding(const std::string& text, const std::string& ending) {
    std::string out;
    for (char c : text) {
        if (c == '\n')
            out += ending;
        else
            out += c;
    }
    return out;
}

bool HasByteOrderMark(const std::string& text) { return text.rfind("\xEF\xBB\xBF", 0) == 0; }

std::string Trim(const std::string& s) {
    size_t b = 0, e = s.size();
    while (b < e && (s[b] == ' ' || s[b] == '\t')) ++b;
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t')) --e;
    return s.substr(b, e - b);
}

std::string Upper(std::string s) {
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return s;
}

std::string Lower(std::string s) {
    for (char& c : s)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return s;
}

// Every section and key name a file mentions, as written (untrimmed), so that the
// queries below reach each line of it.
void NamesIn(const std::string& text, std::set<std::string>& sections, std::set<std::string>& keys) {
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        const std::string t = Trim(line);
        if (!t.empty() && t[0] == '[') {
            const size_t close = t.find(']');
            sections.insert(t.substr(1, close == std::string::npos ? std::string::npos : close - 1));
        } else {
            keys.insert(line.substr(0, line.find('=')));
        }
    }
}

// The spellings a query tries for one name: as written, trimmed, in both cases and
// padded with blanks.
std::vector<std::string> Spellings(const std::string& name) {
    const std::string t = Trim(name);
    std::set<std::string> all = {name, t, Upper(t), Lower(t), " " + t + " ", "\t" + t};
    return {all.begin(), all.end()};
}

std::string Show(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (c == '"')
            out += "\\\"";
        else if (c < 0x20 || c >= 0x7F) {
            const char* hex = "0123456789ABCDEF";
            out += "\\x";
            out += hex[c >> 4];
            out += hex[c & 15];
        } else
            out += static_cast<char>(c);
    }
    if (out.size() > 90) out = out.substr(0, 60) + "...(" + std::to_string(s.size()) + " bytes)";
    return out + "\"";
}

struct Mismatch {
    std::string what;
    std::string windows;
    std::string emulation;
};

std::string Report(const std::vector<Mismatch>& found) {
    std::string out;
    for (const Mismatch& m : found)
        out += m.what + "\n    Windows:   " + m.windows + "\n    emulation: " + m.emulation + "\n";
    return out;
}

TEST(ProfileDifferential, ReadingStrings) {
    TempDir dir;
    const std::string longDefault(300, 'z');
    std::vector<Mismatch> found;
    size_t compared = 0;
    int fileNo = 0;
    for (const std::string& base : kFiles) {
        if (HasByteOrderMark(base)) continue;
        for (const char* ending : kLineEndings) {
            const std::string bytes = WithLineEnding(base, ending);
            const std::string path = dir.File("read" + std::to_string(fileNo++) + ".ini");
            PutBytes(path, bytes);
            std::set<std::string> sections, keys;
            NamesIn(base, sections, keys);
            sections.insert("Missing");
            sections.insert("");
            sections.insert("B");
            keys.insert("missing");
            for (const std::string& section : sections)
                for (const std::string& s : Spellings(section))
                    for (const std::string& key : keys)
                        for (const std::string& k : Spellings(key))
                            for (const std::string& fallback : {std::string("N/A"), std::string(), longDefault}) {
                                const std::string real = ffplatform::ProfileGetString(s, k, fallback, path);
                                const std::string emulated =
                                    ffplatform::emulated::ProfileGetString(s, k, fallback, path);
                                ++compared;
                                if (real != emulated)
                                    found.push_back({"file " + Show(bytes) + " [" + Show(s) + "] " + Show(k) +
                                                         " default " + Show(fallback),
                                                     Show(real), Show(emulated)});
                            }
        }
    }
    EXPECT_GT(compared, 10000u);
    EXPECT_TRUE(found.empty()) << found.size() << " of " << compared << " reads differ:\n"
                               << Report(found);
}

TEST(ProfileDifferential, ReadingIntegers) {
    TempDir dir;
    std::vector<Mismatch> found;
    size_t compared = 0;
    int fileNo = 0;
    for (const std::string& base : kFiles) {
        if (HasByteOrderMark(base)) continue;
        for (const char* ending : kLineEndings) {
            const std::string bytes = WithLineEnding(base, ending);
            const std::string path = dir.File("int" + std::to_string(fileNo++) + ".ini");
            PutBytes(path, bytes);
            std::set<std::string> sections, keys;
            NamesIn(base, sections, keys);
            keys.insert("missing");
            for (const std::string& section : sections)
                for (const std::string& key : keys)
                    for (const std::string& k : Spellings(key))
                        for (int32_t fallback : {0, -7, 2147483647}) {
                            const uint32_t real = ffplatform::ProfileGetInt(section, k, fallback, path);
                            const uint32_t emulated =
                                ffplatform::emulated::ProfileGetInt(section, k, fallback, path);
                            ++compared;
                            if (real != emulated)
                                found.push_back({"file " + Show(bytes) + " [" + Show(section) + "] " +
                                                     Show(k) + " default " + std::to_string(fallback),
                                                 std::to_string(real), std::to_string(emulated)});
                        }
        }
    }
    EXPECT_GT(compared, 1000u);
    EXPECT_TRUE(found.empty()) << found.size() << " of " << compared << " reads differ:\n"
                               << Report(found);
}

TEST(ProfileDifferential, MissingFilesAndFolders) {
    TempDir dir;
    for (const std::string& path : {dir.File("absent.ini"), dir.File("no\\such\\folder.ini")}) {
        EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", path),
                  ffplatform::emulated::ProfileGetString("S", "k", "N/A", path));
        EXPECT_EQ(ffplatform::ProfileGetInt("S", "k", -1, path),
                  ffplatform::emulated::ProfileGetInt("S", "k", -1, path));
    }
}

struct WriteStep {
    const char* section;
    const char* key;
    std::string value;
};

// Files that writes start from ("" = no file), and the writes applied to each.
const std::vector<std::string> kWriteBases = {
    "",
    "[Sec]\nkey=value\nOther=2\n[Sec2]\nkey=v2\n",
    "  [ Sec ]  \n  Key  =  spaced  \n;comment line\nbare\n\n[Tail]\nz=1",
    "[Sec]\nkey=\"quoted\"\n[sec]\nkey=second section\n",
    "\xEF\xBB\xBF[Sec]\nkey=bom\n",
    "orphan=1\n[Sec]\n",
    "[A]\nx=1\n[Sec]\nkey=a\nKEY=b\n[Tail]\nz=\n",
};

const std::vector<std::vector<WriteStep>> kWriteRuns = {
    {{"Sec", "key", "new"}},
    {{"SEC", "KEY", "case differs"}},
    {{"Sec", "added", "1"}, {"Sec", "added2", "2"}},
    {{"New Section", "k", "v"}, {"New Section", "k2", "v2"}, {"Another", "x", "y"}},
    {{"Sec", "key", "   leading blanks"}, {"Sec", "key", "trailing blanks   "}},
    {{"Sec", "key", ""}, {"Sec", "empty", ""}},
    {{"Sec", "key", "\"quoted\""}, {"Sec", "q", "'single'"}},
    {{"Sec", "key", std::string(300, 'x')}},
    {{" Sec ", " key ", "padded names"}},
    {{"Tail", "z", "2"}, {"Tail", "w", "3"}},
    {{"Sec", "key", "a;b=c"}},
    {{" New ", " k ", "v"}, {"New", "k", "w"}, {"\tTabbed\t", "\tk\t", "\tx\t"}},
    {{"", "nameless", "1"}},
    {{"Sec", "", "no key name"}},
};

// True when Wine's rewrite of the file would give back the same bytes: lines end
// in CRLF, none is blank, and names, '=' and values carry no blanks at their edges.
bool Tidy(const std::string& text) {
    if (HasByteOrderMark(text)) return false;
    if (!text.empty() && text.size() < 2) return false;
    if (!text.empty() && text.compare(text.size() - 2, 2, "\r\n") != 0) return false;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = text.find("\r\n", start);
        const std::string line = text.substr(start, end - start);
        start = end + 2;
        if (line.empty() || line.find_first_of("\r\n") != std::string::npos) return false;
        if (Trim(line) != line) return false;
        if (line[0] == '[') {
            if (line.back() != ']' || Trim(line.substr(1, line.size() - 2)) != line.substr(1, line.size() - 2))
                return false;
        } else {
            const size_t eq = line.find('=');
            if (eq != std::string::npos &&
                (Trim(line.substr(0, eq)) != line.substr(0, eq) || Trim(line.substr(eq + 1)) != line.substr(eq + 1)))
                return false;
        }
    }
    return true;
}

// Every name of either file read back from both, the real file through the system
// and the emulated one through the emulation; empty when they all agree.
std::string DifferentMeaning(const std::string& realPath, const std::string& emuPath) {
    std::set<std::string> sections = {""}, keys;
    NamesIn(GetBytes(realPath), sections, keys);
    NamesIn(GetBytes(emuPath), sections, keys);
    std::string out;
    for (const std::string& section : sections)
        for (const std::string& key : keys) {
            const std::string real = ffplatform::ProfileGetString(section, key, "N/A", realPath);
            const std::string emulated = ffplatform::emulated::ProfileGetString(section, key, "N/A", emuPath);
            if (real != emulated)
                out += " [" + Show(section) + "] " + Show(key) + ": " + Show(real) + " vs " + Show(emulated) + ";";
        }
    return out;
}

TEST(ProfileDifferential, WritesGiveTheSameFiles) {
    TempDir dir;
    std::vector<Mismatch> found;
    size_t byBytes = 0, byMeaning = 0;
    int runNo = 0;
    for (const std::string& base : kWriteBases) {
        if (HasByteOrderMark(base)) continue;
        for (const char* ending : kLineEndings) {
            if (base.empty() && std::string(ending) != "\n") continue;
            for (const auto& run : kWriteRuns) {
                const std::string start = WithLineEnding(base, ending);
                const std::string realPath = dir.File("real" + std::to_string(runNo) + ".ini");
                const std::string emuPath = dir.File("emu" + std::to_string(runNo) + ".ini");
                ++runNo;
                if (!base.empty()) {
                    PutBytes(realPath, start);
                    PutBytes(emuPath, start);
                }
                std::string steps;
                for (const WriteStep& step : run) {
                    std::string before = GetBytes(emuPath);
                    if (before == "<missing>") before.clear();
                    const bool tidy = Tidy(before) && GetBytes(emuPath) == GetBytes(realPath);
                    steps += std::string(" [") + step.section + "] " + step.key + "=" + Show(step.value);
                    const bool realOk = ffplatform::ProfileWriteString(step.section, step.key, step.value, realPath);
                    const bool emuOk =
                        ffplatform::emulated::ProfileWriteString(step.section, step.key, step.value, emuPath);
                    const std::string realBytes = GetBytes(realPath);
                    const std::string emuBytes = GetBytes(emuPath);
                    std::string problem;
                    if (realOk != emuOk) problem = "results differ";
                    if (tidy) {
                        ++byBytes;
                        if (realBytes != emuBytes) problem += " bytes differ";
                    } else {
                        ++byMeaning;
                        problem += DifferentMeaning(realPath, emuPath);
                    }
                    if (!problem.empty())
                        found.push_back({"file " + Show(start) + " after" + steps + ":" + problem,
                                         (realOk ? "ok " : "failed ") + Show(realBytes),
                                         (emuOk ? "ok " : "failed ") + Show(emuBytes)});
                }
            }
        }
    }
    ::testing::Test::RecordProperty("compared_by_bytes", static_cast<int>(byBytes));
    ::testing::Test::RecordProperty("compared_by_meaning", static_cast<int>(byMeaning));
    EXPECT_GT(byBytes, 100u);
    EXPECT_GT(byMeaning, 100u);
    EXPECT_TRUE(found.empty()) << found.size() << " of " << byBytes + byMeaning << " writes differ:\n"
                               << Report(found);
}

// Windows reads a UTF-8 byte-order mark as part of the first line (Wine skips it):
// the section on that line is not found, and a write to it adds a section of the
// same name at the end.
TEST(ProfileDifferential, ByteOrderMarkBelongsToTheFirstLine) {
    TempDir dir;
    const std::string path = dir.File("bom.ini");
    PutBytes(path, "\xEF\xBB\xBF[B]\r\nk=v\r\n[Second]\r\nk=w\r\n");
    EXPECT_EQ(ffplatform::emulated::ProfileGetString("B", "k", "N/A", path), "N/A");
    EXPECT_EQ(ffplatform::emulated::ProfileGetString("Second", "k", "N/A", path), "w");
    ASSERT_TRUE(ffplatform::emulated::ProfileWriteString("B", "k", "x", path));
    EXPECT_EQ(GetBytes(path), "\xEF\xBB\xBF[B]\r\nk=v\r\n[Second]\r\nk=w\r\n[B]\r\nk=x\r\n");
}

}  // namespace
