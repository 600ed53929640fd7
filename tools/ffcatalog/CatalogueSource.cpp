// Parser of the text form of a catalogue: one statement per line, a statement being
// a keyword followed by bare words and quoted texts.
#include "tools/ffcatalog/CatalogueSource.h"

#include <charconv>
#include <cstdint>
#include <limits>

namespace ffcatalog {

const char* KindName(CatalogueKind kind) {
    switch (kind) {
        case CatalogueKind::Functions:
            return "functions";
        case CatalogueKind::Groups:
            return "groups";
        default:
            return "unknown";
    }
}

namespace {

struct Token {
    std::string text;
    bool quoted = false;
};

// Thrown inside the parser with the reason for the current line; caught once at the
// top, where the file name and line number are added.
struct SourceError {
    std::string reason;
};

[[noreturn]] void Fail(const std::string& reason) { throw SourceError{reason}; }

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Splits one line into tokens. '#' outside quotes ends the line. A quoted text takes
// the escapes \\ \" \n \r \t and \xHH; its other bytes are taken as they stand.
std::vector<Token> Tokenize(const std::string& line) {
    std::vector<Token> tokens;
    std::size_t i = 0;
    while (i < line.size()) {
        const char c = line[i];
        if (IsBlank(c)) {
            ++i;
            continue;
        }
        if (c == '#') break;
        Token token;
        if (c == '"') {
            token.quoted = true;
            ++i;
            bool closed = false;
            while (i < line.size()) {
                const char q = line[i++];
                if (q == '"') {
                    closed = true;
                    break;
                }
                if (q != '\\') {
                    token.text.push_back(q);
                    continue;
                }
                if (i >= line.size()) Fail("unterminated text");
                const char e = line[i++];
                switch (e) {
                    case '\\': token.text.push_back('\\'); break;
                    case '"': token.text.push_back('"'); break;
                    case 'n': token.text.push_back('\n'); break;
                    case 'r': token.text.push_back('\r'); break;
                    case 't': token.text.push_back('\t'); break;
                    case 'x': {
                        const int hi = i < line.size() ? HexDigit(line[i]) : -1;
                        const int lo = i + 1 < line.size() ? HexDigit(line[i + 1]) : -1;
                        if (hi < 0 || lo < 0) Fail("\\x must be followed by two hexadecimal digits");
                        const int byte = hi * 16 + lo;
                        if (byte == 0) Fail("a text cannot hold a NUL byte");
                        token.text.push_back(static_cast<char>(byte));
                        i += 2;
                        break;
                    }
                    default:
                        Fail(std::string("unknown escape \\") + e);
                }
            }
            if (!closed) Fail("unterminated text");
            if (i < line.size() && !IsBlank(line[i]) && line[i] != '#')
                Fail("a quoted text must be followed by a blank");
        } else {
            while (i < line.size() && !IsBlank(line[i]) && line[i] != '#') {
                if (line[i] == '"') Fail("a quote inside the bare word '" + token.text + "'");
                token.text.push_back(line[i++]);
            }
        }
        tokens.push_back(std::move(token));
    }
    return tokens;
}

int64_t ParseInteger(const Token& token, const std::string& what, int64_t low, int64_t high) {
    int64_t value = 0;
    const char* first = token.text.data();
    const char* last = first + token.text.size();
    const auto r = std::from_chars(first, last, value);
    if (token.quoted || token.text.empty() || r.ec == std::errc::invalid_argument || r.ptr != last)
        Fail("'" + token.text + "' is not a whole number (" + what + ")");
    if (r.ec == std::errc::result_out_of_range || value < low || value > high)
        Fail("'" + token.text + "' is out of range " + std::to_string(low) + ".." +
             std::to_string(high) + " (" + what + ")");
    return value;
}

int32_t ParseInt32(const Token& token, const std::string& what) {
    return static_cast<int32_t>(ParseInteger(token, what, std::numeric_limits<int32_t>::min(),
                                             std::numeric_limits<int32_t>::max()));
}

double ParseDouble(const Token& token, const std::string& what) {
    double value = 0;
    const char* first = token.text.data();
    const char* last = first + token.text.size();
    const auto r = std::from_chars(first, last, value);
    if (token.quoted || token.text.empty() || r.ec != std::errc() || r.ptr != last)
        Fail("'" + token.text + "' is not a number (" + what + ")");
    return value;
}

bool ParseBool(const Token& token) {
    if (!token.quoted && (token.text == "true" || token.text == "1")) return true;
    if (!token.quoted && (token.text == "false" || token.text == "0")) return false;
    Fail("'" + token.text + "' is not a boolean (true, false, 1 or 0)");
}

// A value kind: one of the four names, or any kind code as a whole number.
int32_t ParseKind(const Token& token) {
    if (!token.quoted) {
        if (token.text == "bool") return KelBool;
        if (token.text == "double") return KelDouble;
        if (token.text == "text") return KelText;
        if (token.text == "int") return KelInteger;
    }
    return ParseInt32(token, "value kind: bool, double, text, int or a kind code");
}

// param NAME KIND [VALUE] [flag N]
SysFuncParam ParseParam(const std::vector<Token>& tokens) {
    if (tokens.size() < 3) Fail("'param' needs a name and a value kind");
    SysFuncParam param;
    param.strName = tokens[1].text;
    param.Default.nType = ParseKind(tokens[2]);
    std::size_t next = 3;
    const bool hasValue = param.Default.nType == KelBool || param.Default.nType == KelDouble ||
                          param.Default.nType == KelText || param.Default.nType == KelInteger;
    if (hasValue) {
        if (next >= tokens.size()) Fail("parameter '" + param.strName + "' needs a default value");
        const Token& value = tokens[next++];
        switch (param.Default.nType) {
            case KelBool:
                param.Default.bValue = ParseBool(value);
                break;
            case KelDouble:
                param.Default.dValue = ParseDouble(value, "default value");
                break;
            case KelText:
                if (!value.quoted) Fail("a text default must be quoted");
                param.Default.strValue = value.text;
                break;
            default:
                param.Default.nValue = ParseInt32(value, "default value");
                break;
        }
    }
    if (next < tokens.size()) {
        if (tokens[next].quoted || tokens[next].text != "flag") {
            if (!hasValue)
                Fail("kind " + std::to_string(param.Default.nType) +
                     " has no stored value; found '" + tokens[next].text + "'");
            Fail("expected 'flag' or the end of the line, found '" + tokens[next].text + "'");
        }
        if (next + 1 >= tokens.size()) Fail("'flag' needs a value");
        param.cFlag = static_cast<uint8_t>(ParseInteger(tokens[next + 1], "flag", 0, 255));
        next += 2;
    }
    if (next < tokens.size()) Fail("unexpected '" + tokens[next].text + "' at the end of 'param'");
    return param;
}

class Parser {
public:
    Parser(CatalogueKind expected, CatalogueSource& out) : out_(out) { out_.kind = expected; }

    void Line(const std::vector<Token>& tokens) {
        if (tokens.empty()) return;
        const Token& head = tokens[0];
        const std::string keyword = head.quoted ? std::string() : head.text;
        if (keyword == "function") {
            TakeKind(CatalogueKind::Functions, "function");
            if (tokens.size() != 2) Fail("'function' takes exactly one name");
            out_.functions.emplace_back();
            out_.functions.back().strName = tokens[1].text;
            seen_ = 0;
            return;
        }
        if (keyword == "group") {
            TakeKind(CatalogueKind::Groups, "group");
            if (tokens.size() < 3 || tokens.size() > 4)
                Fail("'group' takes a number, a name and an optional second text");
            FuncGroupInfo group;
            group.nGroupId = ParseInt32(tokens[1], "group number");
            group.strName = tokens[2].text;
            if (tokens.size() == 4) group.strSecond = tokens[3].text;
            out_.groups.push_back(std::move(group));
            return;
        }
        if (keyword == "param" || keyword == "number" || keyword == "first" ||
            keyword == "second" || keyword == "first16" || keyword == "text2" ||
            keyword == "text3") {
            if (out_.kind == CatalogueKind::Groups || out_.functions.empty())
                Fail("'" + keyword + "' outside a function record");
            Field(out_.functions.back(), keyword, tokens);
            return;
        }
        Fail("unknown keyword '" + head.text + "'");
    }

private:
    void TakeKind(CatalogueKind kind, const char* keyword) {
        if (out_.kind == CatalogueKind::Unknown) out_.kind = kind;
        if (out_.kind != kind)
            Fail(std::string("'") + keyword + "' record in a " + KindName(out_.kind) + " catalogue");
    }

    void Field(SysFuncInfo& record, const std::string& keyword, const std::vector<Token>& tokens) {
        if (keyword == "param") {
            record.vParams.push_back(ParseParam(tokens));
            return;
        }
        static const char* const kFields[] = {"number", "first", "second", "first16", "text2", "text3"};
        unsigned bit = 0;
        while (keyword != kFields[bit]) ++bit;
        if (seen_ & (1u << bit))
            Fail("'" + keyword + "' given twice for function '" + record.strName + "'");
        seen_ |= 1u << bit;
        if (tokens.size() != 2) Fail("'" + keyword + "' takes exactly one value");
        const Token& value = tokens[1];
        if (keyword == "number")
            record.wFuncId = static_cast<uint16_t>(ParseInteger(value, "function number", 0, 65535));
        else if (keyword == "first")
            record.nFirst = ParseInt32(value, "first number");
        else if (keyword == "second")
            record.nSecond = ParseInt32(value, "second number");
        else if (keyword == "first16")
            record.wFirst = static_cast<uint16_t>(ParseInteger(value, "first16", 0, 65535));
        else if (keyword == "text2")
            record.strSecond = value.text;
        else
            record.strThird = value.text;
    }

    CatalogueSource& out_;
    unsigned seen_ = 0;  // fields given so far for the current function, one bit each
};

}  // namespace

bool ParseCatalogueSource(const std::string& text, const std::string& sourceName,
                          CatalogueKind expected, CatalogueSource& out, std::string& error) {
    out = CatalogueSource();
    Parser parser(expected, out);
    std::size_t lineNumber = 0;
    std::size_t pos = 0;
    while (pos < text.size()) {
        ++lineNumber;
        std::size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        pos = end + 1;
        try {
            parser.Line(Tokenize(line));
        } catch (const SourceError& e) {
            error = sourceName + ":" + std::to_string(lineNumber) + ": " + e.reason;
            return false;
        }
    }
    return true;
}

}  // namespace ffcatalog
