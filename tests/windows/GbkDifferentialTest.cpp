// The portable GBK comparison against the runtime's _mbsicmp under code page 936,
// over a large generated set of byte strings.
//
// The portable comparison folds an ASCII letter to lower case and a double-byte
// letter to its upper-case partner, and ends a text at a lead byte that has
// nothing after it, as the Windows runtime does. Wine's runtime folds double-byte
// letters to lower case instead, and compares such a lead byte as a character of
// its own. The folding direction changes the order of two texts only when a
// compared character lies between an upper- and a lower-case block, so the test
// finds out which way the runtime it runs on folds, compares directly every pair
// on which both ways agree, and checks the rest against a small model of the
// foldings (itself checked against the runtime). A text that ends in a lead byte is
// handed to Wine's runtime without it. Wine also lower-cases the Roman numerals
// eleven and twelve (A2FB, A2FC), which have no lower-case form in GBK, to '?';
// those two are left out of the generated texts.
#include <gtest/gtest.h>

#include <mbctype.h>
#include <mbstring.h>

#include <cstdint>
#include <string>
#include <vector>

#include "FormulaFunction/platform/Platform.h"

namespace {

int Sign(int v) { return (v > 0) - (v < 0); }

// One character of a GBK text: a single byte or a lead byte with its trail byte.
struct Unit {
    unsigned code;  // byte, or lead << 8 | trail
};

bool IsLead(unsigned char c) { return c >= 0x81 && c <= 0xFE; }

// The GBK blocks whose characters have a case partner: upper-case start, lower-case
// start, count.
struct CaseBlock {
    unsigned upper, lower, count;
};
const CaseBlock kCaseBlocks[] = {
    {0xA3C1, 0xA3E1, 26},  // full-width Latin
    {0xA6A1, 0xA6C1, 24},  // Greek
    {0xA7A1, 0xA7D1, 33},  // Cyrillic
    {0xA2F1, 0xA2A1, 10},  // Roman numerals (the upper-case block comes second)
};

// Folds a character: ASCII letters and double-byte letters each to lower or to
// upper case.
struct Folding {
    bool asciiLower;
    bool pairsLower;
};
const Folding kPortableFolding = {true, false};

unsigned Fold(unsigned code, Folding folding) {
    if (code < 0x100) {
        if (folding.asciiLower) return (code >= 'A' && code <= 'Z') ? code + 0x20 : code;
        return (code >= 'a' && code <= 'z') ? code - 0x20 : code;
    }
    for (const CaseBlock& b : kCaseBlocks) {
        if (folding.pairsLower && code >= b.upper && code < b.upper + b.count) return code - b.upper + b.lower;
        if (!folding.pairsLower && code >= b.lower && code < b.lower + b.count) return code - b.lower + b.upper;
    }
    return code;
}

// The case partner of a character, or the character itself.
unsigned Partner(unsigned code) {
    const unsigned lower = Fold(code, {true, true});
    return lower != code ? lower : Fold(code, {false, false});
}

// Splits a text into characters; a lead byte at the very end ends it.
std::vector<unsigned> Characters(const std::string& s, bool* endsInLead) {
    std::vector<unsigned> out;
    *endsInLead = false;
    for (size_t i = 0; i < s.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(s[i]);
        if (IsLead(c)) {
            if (i + 1 == s.size()) {
                *endsInLead = true;
                break;
            }
            out.push_back(static_cast<unsigned>(c) << 8 | static_cast<unsigned char>(s[i + 1]));
            ++i;
        } else {
            out.push_back(c);
        }
    }
    return out;
}

// The order of two texts after folding every character.
int ModelCompare(const std::string& a, const std::string& b, Folding folding) {
    bool leadA, leadB;
    const std::vector<unsigned> x = Characters(a, &leadA), y = Characters(b, &leadB);
    for (size_t i = 0; i < x.size() && i < y.size(); ++i) {
        const unsigned p = Fold(x[i], folding), q = Fold(y[i], folding);
        if (p != q) return p < q ? -1 : 1;
    }
    return Sign(static_cast<int>(x.size()) - static_cast<int>(y.size()));
}

int Runtime(const std::string& a, const std::string& b) {
    return Sign(_mbsicmp(reinterpret_cast<const unsigned char*>(a.c_str()),
                         reinterpret_cast<const unsigned char*>(b.c_str())));
}

// A small deterministic generator, so that every run compares the same pairs.
class Draw {
public:
    explicit Draw(uint32_t seed) : state_(seed) {}
    uint32_t Next(uint32_t bound) {
        state_ = state_ * 1664525u + 1013904223u;
        return (state_ >> 8) % bound;
    }

private:
    uint32_t state_;
};

// The characters the generated texts are made of.
std::vector<std::string> Alphabet() {
    std::vector<std::string> units;
    for (char c = 'A'; c <= 'Z'; ++c) units.push_back(std::string(1, c));
    for (char c = 'a'; c <= 'z'; ++c) units.push_back(std::string(1, c));
    for (const char* s : {"0", "9", " ", "@", "[", "\\", "]", "^", "_", "`", "{", "~", "\x7F"})
        units.push_back(s);
    auto pair = [&units](unsigned code) {
        units.push_back(std::string{static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)});
    };
    for (const CaseBlock& b : kCaseBlocks) {
        for (unsigned i = 0; i < b.count; ++i) {
            pair(b.upper + i);
            pair(b.lower + i);
        }
        pair(b.upper - 1);
        if (b.upper + b.count != 0xA2FB) pair(b.upper + b.count);
        pair(b.lower - 1);
        pair(b.lower + b.count);
    }
    // Characters without a partner, neighbours of the blocks, and trail bytes that
    // are ASCII letters.
    for (unsigned code : {0xA3DBu, 0xA3E0u, 0xA3FBu, 0xA6B9u, 0xA6D9u, 0xA7C2u, 0xA7F2u, 0xA2ABu,
                          0xA2F0u, 0xA2FDu, 0xB0A1u, 0xB0A2u, 0xD6D0u, 0xCEC4u, 0xFEFEu, 0x8140u,
                          0x8141u, 0x8161u, 0x815Au, 0x817Au, 0xA341u, 0xA361u, 0x8180u, 0xA3A1u})
        pair(code);
    for (const char* s : {"\x80", "\xFF"}) units.push_back(s);
    return units;
}

// Another text close to `s`: some characters swapped for their case partner,
// changed, dropped or added.
std::string Variant(const std::string& s, const std::vector<std::string>& alphabet, Draw& draw) {
    bool lead;
    const std::vector<unsigned> chars = Characters(s, &lead);
    std::string out;
    for (unsigned c : chars) {
        const uint32_t what = draw.Next(10);
        unsigned d = c;
        if (what < 4) d = Partner(c);
        if (what == 8) {
            out += alphabet[draw.Next(static_cast<uint32_t>(alphabet.size()))];
            continue;
        }
        if (what == 9) continue;
        if (d < 0x100)
            out += static_cast<char>(d);
        else
            out += std::string{static_cast<char>(d >> 8), static_cast<char>(d & 0xFF)};
    }
    if (draw.Next(8) == 0) out += alphabet[draw.Next(static_cast<uint32_t>(alphabet.size()))];
    return out;
}

class GbkDifferential : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(_setmbcp(936), 0);
        runtime_.asciiLower = Runtime("[", "a") < 0;
        runtime_.pairsLower = Runtime("\xA3\xE1", "\xA3\xDB") > 0;  // full-width a, [
        runtimeCountsLeadAtEnd_ = Runtime("\xB0", "") != 0;
        ::testing::Test::RecordProperty("runtime_ascii_lower", runtime_.asciiLower ? 1 : 0);
        ::testing::Test::RecordProperty("runtime_pairs_lower", runtime_.pairsLower ? 1 : 0);
        ::testing::Test::RecordProperty("runtime_counts_lead_at_end", runtimeCountsLeadAtEnd_ ? 1 : 0);
    }
    void TearDown() override { _setmbcp(_MB_CP_ANSI); }

    Folding runtime_ = kPortableFolding;
    bool runtimeCountsLeadAtEnd_ = false;
};

// The text as Windows reads it: without a lead byte at its very end.
std::string WithoutLeadAtEnd(const std::string& s) {
    bool lead;
    Characters(s, &lead);
    return lead ? s.substr(0, s.size() - 1) : s;
}

TEST_F(GbkDifferential, GeneratedPairsAgreeWithTheRuntime) {
    const std::vector<std::string> alphabet = Alphabet();
    Draw draw(20240601u);
    size_t compared = 0, equalPairs = 0, byDirection = 0, byLeadAtEnd = 0;
    std::string report;
    int reported = 0;
    auto note = [&](const std::string& what, const std::string& a, const std::string& b, int runtime,
                    int portable) {
        if (++reported > 20) return;
        report += what + ": " + ::testing::PrintToString(a) + " vs " + ::testing::PrintToString(b) +
                  ": _mbsicmp " + std::to_string(runtime) + ", portable " + std::to_string(portable) + "\n";
    };
    for (int n = 0; n < 200000; ++n) {
        std::string a;
        const uint32_t length = draw.Next(7);
        for (uint32_t i = 0; i < length; ++i)
            a += alphabet[draw.Next(static_cast<uint32_t>(alphabet.size()))];
        if (draw.Next(16) == 0) a += "\xB0";
        const std::string b = draw.Next(4) == 0 ? alphabet[draw.Next(static_cast<uint32_t>(alphabet.size()))]
                                                : Variant(a, alphabet, draw);
        const int portable = Sign(ffplatform::CompareNoCaseGbk(a, b));
        std::string ra = a, rb = b;
        if (runtimeCountsLeadAtEnd_) {
            ra = WithoutLeadAtEnd(a);
            rb = WithoutLeadAtEnd(b);
            if (ra != a || rb != b) ++byLeadAtEnd;
        }
        const int runtime = Runtime(ra, rb);
        const int rule = ModelCompare(a, b, kPortableFolding);
        const int model = ModelCompare(a, b, runtime_);
        if (portable != rule) note("portable differs from the rule", a, b, runtime, portable);
        if (runtime != model) note("the runtime model is wrong", a, b, runtime, portable);
        if (rule != model) {
            ++byDirection;
            continue;
        }
        ++compared;
        if (portable == 0) ++equalPairs;
        if (portable != runtime) note("differ", a, b, runtime, portable);
    }
    EXPECT_TRUE(report.empty()) << reported << " problems, the first of them:\n" << report;
    EXPECT_GT(compared, 100000u);
    EXPECT_GT(equalPairs, 20000u);
    ::testing::Test::RecordProperty("compared", static_cast<int>(compared));
    ::testing::Test::RecordProperty("left_out_by_direction", static_cast<int>(byDirection));
    ::testing::Test::RecordProperty("lead_at_end_cut_for_the_runtime", static_cast<int>(byLeadAtEnd));
}

TEST_F(GbkDifferential, EveryCasePairIsEqualBothWays) {
    for (const CaseBlock& b : kCaseBlocks) {
        for (unsigned i = 0; i < b.count; ++i) {
            const std::string up{static_cast<char>((b.upper + i) >> 8), static_cast<char>((b.upper + i) & 0xFF)};
            const std::string low{static_cast<char>((b.lower + i) >> 8), static_cast<char>((b.lower + i) & 0xFF)};
            EXPECT_EQ(Runtime(up, low), 0) << std::hex << b.upper + i;
            EXPECT_EQ(ffplatform::CompareNoCaseGbk(up, low), 0) << std::hex << b.upper + i;
            EXPECT_EQ(ffplatform::CompareNoCaseGbk("x" + low + "y", "X" + up + "Y"), 0);
        }
    }
}

// Every double-byte character that the runtime folds has its partner in one of the
// four blocks, and the portable comparison finds the two equal.
TEST_F(GbkDifferential, TheRuntimeFoldsNoOtherCharacter) {
    for (unsigned lead = 0x81; lead <= 0xFE; ++lead) {
        for (unsigned trail = 0x40; trail <= 0xFE; ++trail) {
            if (trail == 0x7F) continue;
            const unsigned code = lead << 8 | trail;
            if (code == 0xA2FB || code == 0xA2FC) continue;
            const unsigned folded = runtime_.pairsLower ? _mbctolower(code) : _mbctoupper(code);
            EXPECT_EQ(folded, Fold(code, runtime_)) << std::hex << code;
            const unsigned partner = Partner(code);
            const std::string a{static_cast<char>(lead), static_cast<char>(trail)};
            const std::string b{static_cast<char>(partner >> 8), static_cast<char>(partner & 0xFF)};
            EXPECT_EQ(ffplatform::CompareNoCaseGbk(a, b), 0) << std::hex << code;
        }
    }
}

// Where the folding direction decides: ASCII letters compare as lower case, the
// double-byte letters as upper case.
TEST_F(GbkDifferential, FoldingDirection) {
    EXPECT_LT(ffplatform::CompareNoCaseGbk("[", "a"), 0);
    EXPECT_LT(ffplatform::CompareNoCaseGbk("_", "Z"), 0);
    EXPECT_LT(ffplatform::CompareNoCaseGbk("\xA3\xE1", "\xA3\xDB"), 0);  // full-width a, [
    EXPECT_GT(ffplatform::CompareNoCaseGbk("\xA2\xA1", "\xA2\xB0"), 0);  // small Roman one
}

// A lead byte with nothing after it ends the text.
TEST_F(GbkDifferential, ALeadByteAtTheEnd) {
    EXPECT_EQ(ffplatform::CompareNoCaseGbk("a\x81", "A"), 0);
    EXPECT_EQ(ffplatform::CompareNoCaseGbk("\xB0", ""), 0);
    EXPECT_LT(ffplatform::CompareNoCaseGbk("a\x81", "ab"), 0);
}

// Roman numerals eleven and twelve have no partner: only themselves are equal.
TEST_F(GbkDifferential, RomanElevenAndTwelveHaveNoPartner) {
    EXPECT_EQ(ffplatform::CompareNoCaseGbk("\xA2\xFB", "\xA2\xFB"), 0);
    EXPECT_NE(ffplatform::CompareNoCaseGbk("\xA2\xFB", "?"), 0);
    EXPECT_NE(ffplatform::CompareNoCaseGbk("\xA2\xFC", "\xA2\xFB"), 0);
}

}  // namespace
