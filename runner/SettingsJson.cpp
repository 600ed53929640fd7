#include "runner/SettingsJson.h"

#include <cctype>

namespace ffrunner {
namespace {

class Reader {
public:
    Reader(const std::string& text, const std::string& fileName) : s_(text), file_(fileName) {}

    std::vector<std::pair<std::string, SettingValue>> Document() {
        Blank();
        SettingValue top = Value(0);
        if (top.kind != SettingValue::Object) Fail("the settings must be one JSON object");
        Blank();
        if (at_ < s_.size()) Fail("unexpected text after the object");
        return std::move(top.members);
    }

private:
    [[noreturn]] void Fail(const std::string& reason) const {
        int line = 1;
        for (size_t i = 0; i < at_ && i < s_.size(); ++i) line += s_[i] == '\n';
        throw SettingsError(file_ + ":" + std::to_string(line) + ": " + reason);
    }

    void Blank() {
        while (at_ < s_.size() && std::isspace(static_cast<unsigned char>(s_[at_]))) ++at_;
    }

    bool Take(char c) {
        Blank();
        if (at_ < s_.size() && s_[at_] == c) {
            ++at_;
            return true;
        }
        return false;
    }

    std::string String() {
        if (!Take('"')) Fail("expected a text in double quotes");
        std::string out;
        while (at_ < s_.size() && s_[at_] != '"') {
            char c = s_[at_++];
            if (static_cast<unsigned char>(c) < 0x20) Fail("control character in a text");
            if (c == '\\') {
                if (at_ >= s_.size()) break;
                c = s_[at_++];
                switch (c) {
                case '"': case '\\': case '/': out += c; break;
                case 'n': out += '\n'; break;
                case 't': out += '\t'; break;
                case 'r': out += '\r'; break;
                case 'b': out += '\b'; break;
                case 'f': out += '\f'; break;
                default: Fail(std::string("unsupported escape \\") + c);
                }
                continue;
            }
            out += c;
        }
        if (at_ >= s_.size()) Fail("unterminated text");
        ++at_;
        return out;
    }

    SettingValue Value(int depth) {
        Blank();
        if (at_ >= s_.size()) Fail("unexpected end of the file");
        SettingValue v;
        const char c = s_[at_];
        if (c == '{') {
            if (depth > 1) Fail("objects nest only one level deep");
            ++at_;
            v.kind = SettingValue::Object;
            if (Take('}')) return v;
            do {
                Blank();
                std::string name = String();
                if (!Take(':')) Fail("expected ':' after \"" + name + "\"");
                v.members.emplace_back(std::move(name), Value(depth + 1));
            } while (Take(','));
            if (!Take('}')) Fail("expected ',' or '}'");
            return v;
        }
        if (c == '"') {
            v.kind = SettingValue::Text;
            v.text = String();
            return v;
        }
        for (const char* word : {"true", "false"}) {
            const std::string w = word;
            if (s_.compare(at_, w.size(), w) == 0) {
                at_ += w.size();
                v.kind = SettingValue::Boolean;
                v.text = w;
                return v;
            }
        }
        const size_t start = at_;
        while (at_ < s_.size() && (std::isdigit(static_cast<unsigned char>(s_[at_])) ||
                                   s_[at_] == '-' || s_[at_] == '+' || s_[at_] == '.' ||
                                   s_[at_] == 'e' || s_[at_] == 'E')) {
            ++at_;
        }
        if (at_ == start) Fail("expected a value");
        v.kind = SettingValue::Number;
        v.text = s_.substr(start, at_ - start);
        return v;
    }

    const std::string& s_;
    const std::string& file_;
    size_t at_ = 0;
};

}  // namespace

std::vector<std::pair<std::string, SettingValue>> ParseSettingsJson(const std::string& text,
                                                                    const std::string& fileName) {
    return Reader(text, fileName).Document();
}

}  // namespace ffrunner
