// The text built-ins. Texts are byte strings; the invalid text "N/A" passes through
// as missing data, and a count or position equal to the invalid integer gives "N/A".
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/builtins/ScalarHelpers.h"

using ffbuiltins::IsInvalidText;
using ffbuiltins::kInvalidInteger;
using ffbuiltins::kInvalidNumeric;
using ffbuiltins::kInvalidString;

namespace {

// Case conversion as the C library's in-place conversion of a C string does it:
// byte by byte through the current locale, ending at the first NUL byte.
std::string ConvertCase(const std::string& s, int (*convert)(int)) {
    std::string result(s);
    for (char& c : result) {
        if (c == '\0') break;
        c = static_cast<char>(convert(static_cast<unsigned char>(c)));
    }
    return result;
}

// Clamps a requested count to what the text holds from `start` on.
size_t ClampCount(size_t available, int32_t n) {
    if (n <= 0) return 0;
    return static_cast<size_t>(n) < available ? static_cast<size_t>(n) : available;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Length of the decimal number at the start of `p` (after white space was skipped):
// sign, digits, an optional fraction and an optional exponent. 0 when no digit is
// there. Hexadecimal forms and the names of infinity and NaN are not decimal and
// are not taken.
size_t DecimalNumberLength(const char* p) {
    size_t i = 0;
    if (p[i] == '+' || p[i] == '-') ++i;
    size_t digits = 0;
    while (IsDigit(p[i])) ++i, ++digits;
    if (p[i] == '.') {
        ++i;
        while (IsDigit(p[i])) ++i, ++digits;
    }
    if (digits == 0) return 0;
    if (p[i] == 'e' || p[i] == 'E') {
        size_t j = i + 1;
        if (p[j] == '+' || p[j] == '-') ++j;
        if (IsDigit(p[j])) {
            while (IsDigit(p[j])) ++j;
            i = j;
        }
    }
    return i;
}

}  // namespace

int32_t CSystemFuncs::Len(const std::string& s) {
    if (IsInvalidText(s)) return kInvalidInteger;
    return s.size() > static_cast<size_t>(INT32_MAX) ? INT32_MAX : static_cast<int32_t>(s.size());
}

// Two missing values are not equal to each other.
bool CSystemFuncs::Exact(const std::string& a, const std::string& b) {
    if (IsInvalidText(a) || IsInvalidText(b)) return false;
    return a == b;
}

std::string CSystemFuncs::Upper(const std::string& s) {
    if (IsInvalidText(s)) return kInvalidString;
    return ConvertCase(s, [](int c) { return std::toupper(c); });
}

std::string CSystemFuncs::Lower(const std::string& s) {
    if (IsInvalidText(s)) return kInvalidString;
    return ConvertCase(s, [](int c) { return std::tolower(c); });
}

// Drops blanks at both ends and shrinks each inner run of blanks to one. Only the
// blank (0x20) counts; tabs and line breaks are kept.
std::string CSystemFuncs::Trim(const std::string& s) {
    if (IsInvalidText(s)) return kInvalidString;
    std::string result;
    result.reserve(s.size());
    bool droppedBlank = false;
    for (char c : s) {
        if (c == ' ') {
            droppedBlank = true;
            continue;
        }
        if (droppedBlank && !result.empty()) result.push_back(' ');
        result.push_back(c);
        droppedBlank = false;
    }
    return result;
}

std::string CSystemFuncs::Left(const std::string& s, int32_t n) {
    if (IsInvalidText(s) || n == kInvalidInteger) return kInvalidString;
    return s.substr(0, ClampCount(s.size(), n));
}

std::string CSystemFuncs::Right(const std::string& s, int32_t n) {
    if (IsInvalidText(s) || n == kInvalidInteger) return kInvalidString;
    const size_t count = ClampCount(s.size(), n);
    return s.substr(s.size() - count);
}

// A negative start counts as 0; a start at or past the end gives an empty text.
std::string CSystemFuncs::Mid(const std::string& s, int32_t first, int32_t n) {
    if (IsInvalidText(s) || first == kInvalidInteger || n == kInvalidInteger) return kInvalidString;
    const size_t start = first < 0 ? 0 : static_cast<size_t>(first);
    if (start >= s.size()) return std::string();
    return s.substr(start, ClampCount(s.size() - start, n));
}

// The C library's decimal conversion of the leading number, 0 when none begins the
// text. Like the C function, it ends at the first NUL byte.
double CSystemFuncs::Value(const std::string& s) {
    if (IsInvalidText(s)) return kInvalidNumeric;
    const char* p = s.c_str();
    while (*p == ' ' || (*p >= '\t' && *p <= '\r')) ++p;
    const size_t length = DecimalNumberLength(p);
    if (length == 0) return 0;
    char buffer[64];
    if (length < sizeof buffer) {
        std::snprintf(buffer, sizeof buffer, "%.*s", static_cast<int>(length), p);
        return std::strtod(buffer, nullptr);
    }
    const std::string number(p, length);
    return std::strtod(number.c_str(), nullptr);
}

// Whole numbers (a fraction above the floor below 0.00001) print without decimals,
// anything else with four. The fraction is measured above the floor, so -2.25 has
// the fraction 0.75 and prints as -2.2500.
std::string CSystemFuncs::Text(double v) {
    if (v == kInvalidNumeric) return kInvalidString;
    char buffer[512];  // the widest double, 309 digits, with sign and four decimals
    std::snprintf(buffer, sizeof buffer, FracPart(v) < 0.00001 ? "%.f" : "%.4f", v);
    return buffer;
}
