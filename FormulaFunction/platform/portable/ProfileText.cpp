// Reading and editing the text of a private-profile file, without touching disk.
#include "FormulaFunction/platform/portable/ProfileEmulation.h"

namespace ffplatform {
namespace emulated {

namespace {

// The system's profile reader also counts Ctrl-Z, the old end-of-file mark, as a
// blank when it trims names and values.
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r' ||
           c == '\x1a';
}

std::string_view TrimLeft(std::string_view s) {
    size_t i = 0;
    while (i < s.size() && IsBlank(s[i])) ++i;
    return s.substr(i);
}

std::string_view Trim(std::string_view s) {
    s = TrimLeft(s);
    size_t n = s.size();
    while (n > 0 && IsBlank(s[n - 1])) --n;
    return s.substr(0, n);
}

char AsciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
    return true;
}

// One line: its content is [begin, end), its terminator (CRLF, LF, CR or none at
// the end of the file) runs from end to next.
struct Line {
    size_t begin;
    size_t end;
    size_t next;
};

Line LineAt(std::string_view text, size_t pos) {
    size_t end = pos;
    while (end < text.size() && text[end] != '\n' && text[end] != '\r') ++end;
    size_t next = end;
    if (next < text.size()) {
        if (text[next] == '\r' && next + 1 < text.size() && text[next + 1] == '\n')
            next += 2;
        else
            next += 1;
    }
    return {pos, end, next};
}

// A line starts a section when its first non-blank character is '[' and a ']'
// follows somewhere; the name runs to the last ']' ("[a]]" names "a]").
bool IsSectionHeader(std::string_view content, std::string_view& name) {
    std::string_view s = TrimLeft(content);
    if (s.empty() || s[0] != '[') return false;
    size_t close = s.rfind(']');
    if (close == std::string_view::npos) return false;
    name = Trim(s.substr(1, close - 1));
    return true;
}

// Where a section and a key of it were found in the text, and where a new key of
// that section would go: after the section's last non-blank line.
struct Location {
    bool sectionFound = false;
    bool keyFound = false;
    Line keyLine{};
    std::string_view keyName;
    bool keyHasValue = false;
    std::string_view keyValue;
    size_t insertAt = 0;
    bool insertNeedsBreak = false;  // the line before insertAt has no terminator
};

// Walks the lines once. The nameless section (lines before the first header) is
// in force from the top when the wanted name is empty; otherwise the first
// header of the wanted name opens it. Either way the next header closes it, so a
// later section of the same name is never searched.
Location Locate(std::string_view text, std::string_view section, std::string_view key) {
    section = Trim(section);
    key = Trim(key);
    Location loc;
    bool inside = section.empty();
    loc.sectionFound = inside;
    for (size_t pos = 0; pos < text.size();) {
        const Line line = LineAt(text, pos);
        pos = line.next;
        const std::string_view content = text.substr(line.begin, line.end - line.begin);
        std::string_view header;
        if (IsSectionHeader(content, header)) {
            if (inside) break;
            if (EqualNoCase(header, section)) {
                inside = true;
                loc.sectionFound = true;
                loc.insertAt = line.next;
                loc.insertNeedsBreak = line.end == line.next;
            }
            continue;
        }
        if (!inside || Trim(content).empty()) continue;
        loc.insertAt = line.next;
        loc.insertNeedsBreak = line.end == line.next;
        const size_t equals = content.find('=');
        const std::string_view name = Trim(content.substr(0, equals));
        if (!EqualNoCase(name, key)) continue;
        loc.keyFound = true;
        loc.keyLine = line;
        loc.keyName = name;
        loc.keyHasValue = equals != std::string_view::npos;
        if (loc.keyHasValue) loc.keyValue = Trim(content.substr(equals + 1));
        return loc;
    }
    return loc;
}

}  // namespace

std::optional<std::string> FindProfileValue(std::string_view text, std::string_view section,
                                            std::string_view key) {
    const Location loc = Locate(text, section, key);
    if (!loc.keyFound || !loc.keyHasValue) return std::nullopt;
    return std::string(loc.keyValue);
}

// A value that begins and ends with the same quote loses the opening quote, is
// cut to the buffer, and then loses its last character when the rest (closing
// quote included) fitted the buffer whole: so a quoted value one character too
// long for the buffer loses a character of its own instead of the quote.
std::string CopyProfileValue(std::string_view value, size_t bufferSize) {
    if (bufferSize == 0) return std::string();
    bool quoted = false;
    if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') &&
        value.back() == value[0]) {
        quoted = true;
        value.remove_prefix(1);
    }
    std::string out(value.substr(0, bufferSize - 1));
    if (quoted && bufferSize >= value.size() && !out.empty()) out.pop_back();
    return out;
}

std::string CopyProfileDefault(std::string_view defaultValue, size_t bufferSize) {
    if (bufferSize == 0) return std::string();
    size_t n = defaultValue.size();
    while (n > 1 && defaultValue[n - 1] == ' ') --n;
    return std::string(defaultValue.substr(0, n < bufferSize - 1 ? n : bufferSize - 1));
}

uint32_t ParseProfileInt(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && static_cast<unsigned char>(text[i]) <= ' ') ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    uint32_t base = 10;
    if (i + 1 < text.size() && text[i] == '0') {
        const char prefix = text[i + 1];
        base = prefix == 'x' ? 16 : prefix == 'o' ? 8 : prefix == 'b' ? 2 : 10;
        if (base != 10) i += 2;
    }
    uint32_t value = 0;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        uint32_t digit;
        if (c >= '0' && c <= '9')
            digit = static_cast<uint32_t>(c - '0');
        else if (c >= 'a' && c <= 'z')
            digit = static_cast<uint32_t>(c - 'a') + 10;
        else if (c >= 'A' && c <= 'Z')
            digit = static_cast<uint32_t>(c - 'A') + 10;
        else
            break;
        if (digit >= base) break;
        value = value * base + digit;
    }
    return negative ? 0u - value : value;
}

// New lines end in CRLF whatever the file uses; names and the value are written
// without their leading blanks. An existing key keeps its spelling and its own
// line ending; only its indentation and the text after '=' change.
std::string SetProfileValue(std::string_view text, std::string_view section,
                            std::string_view key, std::string_view value) {
    value = TrimLeft(value);
    const Location loc = Locate(text, section, key);
    std::string out;
    out.reserve(text.size() + section.size() + key.size() + value.size() + 8);
    if (loc.keyFound) {
        out.append(text.substr(0, loc.keyLine.begin));
        out.append(loc.keyName).append("=").append(value);
        out.append(text.substr(loc.keyLine.end));
    } else if (loc.sectionFound) {
        out.append(text.substr(0, loc.insertAt));
        if (loc.insertNeedsBreak) out.append("\r\n");
        out.append(TrimLeft(key)).append("=").append(value).append("\r\n");
        out.append(text.substr(loc.insertAt));
    } else {
        out.append(text);
        if (!out.empty() && out.back() != '\n' && out.back() != '\r') out.append("\r\n");
        out.append("[").append(TrimLeft(section)).append("]\r\n");
        out.append(TrimLeft(key)).append("=").append(value).append("\r\n");
    }
    return out;
}

}  // namespace emulated
}  // namespace ffplatform
