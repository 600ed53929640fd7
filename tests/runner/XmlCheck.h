// A small well-formedness check for the HTML report, which is written to parse as
// XML: one root element, properly nested and closed elements, quoted and unique
// attributes, and only the character references the writer uses.
#pragma once

#include <cctype>
#include <set>
#include <string>
#include <vector>

// Returns "" when `text` is well-formed, else what is wrong and where.
inline std::string XmlProblem(const std::string& text) {
    std::vector<std::string> open;
    size_t i = 0;
    int roots = 0;
    auto where = [&](size_t at) { return " at byte " + std::to_string(at); };
    auto nameChar = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || c == ':' ||
               c == '.';
    };
    auto reference = [&](size_t at) -> size_t {  // length of a valid reference at `at`
        for (const char* known : {"&amp;", "&lt;", "&gt;", "&quot;", "&#39;", "&apos;"}) {
            if (text.compare(at, std::string(known).size(), known) == 0) return std::string(known).size();
        }
        if (text.compare(at, 2, "&#") == 0) {
            size_t j = at + 2;
            while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j]))) ++j;
            if (j > at + 2 && j < text.size() && text[j] == ';') return j - at + 1;
        }
        return 0;
    };
    while (i < text.size()) {
        if (text[i] == '<') {
            if (text.compare(i, 9, "<!DOCTYPE") == 0) {
                const size_t end = text.find('>', i);
                if (end == std::string::npos || roots > 0) return "bad doctype" + where(i);
                i = end + 1;
                continue;
            }
            if (text.compare(i, 4, "<!--") == 0) {
                const size_t end = text.find("-->", i);
                if (end == std::string::npos) return "open comment" + where(i);
                i = end + 3;
                continue;
            }
            const bool closing = i + 1 < text.size() && text[i + 1] == '/';
            size_t j = i + (closing ? 2 : 1);
            const size_t nameStart = j;
            while (j < text.size() && nameChar(text[j])) ++j;
            const std::string name = text.substr(nameStart, j - nameStart);
            if (name.empty()) return "element without a name" + where(i);
            if (closing) {
                while (j < text.size() && std::isspace(static_cast<unsigned char>(text[j]))) ++j;
                if (j >= text.size() || text[j] != '>') return "bad end tag" + where(i);
                if (open.empty() || open.back() != name) {
                    return "</" + name + "> does not close <" +
                           (open.empty() ? std::string("nothing") : open.back()) + ">" + where(i);
                }
                open.pop_back();
                i = j + 1;
                continue;
            }
            std::set<std::string> attributes;
            bool selfClosing = false;
            while (true) {
                while (j < text.size() && std::isspace(static_cast<unsigned char>(text[j]))) ++j;
                if (j >= text.size()) return "unterminated tag" + where(i);
                if (text[j] == '>') break;
                if (text.compare(j, 2, "/>") == 0) {
                    selfClosing = true;
                    ++j;
                    break;
                }
                const size_t a = j;
                while (j < text.size() && nameChar(text[j])) ++j;
                const std::string attribute = text.substr(a, j - a);
                if (attribute.empty() || j >= text.size() || text[j] != '=') {
                    return "bad attribute in <" + name + ">" + where(a);
                }
                if (!attributes.insert(attribute).second) return "duplicate attribute " + attribute + where(a);
                ++j;
                if (j >= text.size() || (text[j] != '"' && text[j] != '\'')) {
                    return "unquoted attribute " + attribute + where(j);
                }
                const char quote = text[j++];
                while (j < text.size() && text[j] != quote) {
                    if (text[j] == '<') return "< inside attribute" + where(j);
                    if (text[j] == '&') {
                        const size_t n = reference(j);
                        if (n == 0) return "bad reference" + where(j);
                        j += n;
                        continue;
                    }
                    ++j;
                }
                if (j >= text.size()) return "unterminated attribute" + where(a);
                ++j;
            }
            if (open.empty()) {
                if (++roots > 1) return "second root element" + where(i);
            }
            if (!selfClosing) open.push_back(name);
            i = j + 1;
            continue;
        }
        if (text[i] == '&') {
            const size_t n = reference(i);
            if (n == 0) return "bad reference" + where(i);
            i += n;
            continue;
        }
        if (open.empty() && !std::isspace(static_cast<unsigned char>(text[i]))) {
            return "text outside the root" + where(i);
        }
        ++i;
    }
    if (!open.empty()) return "<" + open.back() + "> is never closed";
    if (roots != 1) return "no root element";
    return "";
}
