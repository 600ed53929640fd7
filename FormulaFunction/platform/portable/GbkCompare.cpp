// Case-insensitive comparison of texts in the GBK code page (936), character by
// character, as the host's C library compares multi-byte texts: a single byte
// is folded to lower case when it is an ASCII letter; a lead byte takes the next
// byte with it and the pair is folded to upper case when it is one of the GBK
// letters that have a case partner; the folded codes compare as unsigned
// numbers, a pair (lead << 8 | trail) and a single byte alike.
#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

namespace {

// The upper-case partner of a double-byte character, or the character itself.
uint32_t UpperPair(uint32_t code) {
    if (code >= 0xA3E1 && code <= 0xA3FA) return code - 0x20;  // full-width Latin
    if (code >= 0xA6C1 && code <= 0xA6D8) return code - 0x20;  // Greek
    if (code >= 0xA7D1 && code <= 0xA7F1) return code - 0x30;  // Cyrillic
    if (code >= 0xA2A1 && code <= 0xA2AA) return code + 0x50;  // Roman numerals
    return code;
}

// The next character of a NUL-terminated text, folded; 0 at the end. A lead byte
// with nothing after it ends the text.
uint32_t NextFolded(const unsigned char*& p) {
    const uint32_t c = *p;
    if (c == 0) return 0;
    ++p;
    if (c >= 0x81 && c <= 0xFE) {
        const uint32_t trail = *p;
        if (trail == 0) return 0;
        ++p;
        return UpperPair(c << 8 | trail);
    }
    return (c >= 'A' && c <= 'Z') ? c + ('a' - 'A') : c;
}

}  // namespace

// The texts end at an embedded NUL, as the C strings they stand for would.
int CompareNoCaseGbk(const std::string& a, const std::string& b) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(a.c_str());
    const unsigned char* q = reinterpret_cast<const unsigned char*>(b.c_str());
    for (;;) {
        const uint32_t x = NextFolded(p);
        const uint32_t y = NextFolded(q);
        if (x != y) return x < y ? -1 : 1;
        if (x == 0) return 0;
    }
}

}  // namespace ffplatform
