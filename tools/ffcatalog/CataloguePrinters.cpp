// Text and JSON printers of catalogue records.
#include "tools/ffcatalog/CataloguePrinters.h"

#include <charconv>
#include <cmath>

namespace ffcatalog {

namespace {

const char kHex[] = "0123456789abcdef";

void AppendHexByte(unsigned char byte, std::string& out) {
    out.push_back(kHex[byte >> 4]);
    out.push_back(kHex[byte & 15]);
}

// Quotes a text with the escapes the text form and JSON share; a byte outside
// printable ASCII becomes `bytePrefix` and two hexadecimal digits.
std::string QuoteText(const std::string& text, const char* bytePrefix) {
    std::string out = "\"";
    for (const char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        switch (c) {
            case '\\': out += "\\\\"; continue;
            case '"': out += "\\\""; continue;
            case '\n': out += "\\n"; continue;
            case '\r': out += "\\r"; continue;
            case '\t': out += "\\t"; continue;
            default: break;
        }
        if (byte < 0x20 || byte > 0x7E) {
            out += bytePrefix;
            AppendHexByte(byte, out);
        } else {
            out.push_back(c);
        }
    }
    out.push_back('"');
    return out;
}

// The value kind as the text form names it; other codes stay numbers.
std::string KindWord(int32_t kind) {
    switch (kind) {
        case KelBool: return "bool";
        case KelDouble: return "double";
        case KelText: return "text";
        case KelInteger: return "int";
        default: return std::to_string(kind);
    }
}

void PrintParamText(const SysFuncParam& param, std::string& out) {
    const tagKelDataType& value = param.Default;
    out += "  param " + QuoteSourceText(param.strName) + " " + KindWord(value.nType);
    switch (value.nType) {
        case KelBool: out += value.bValue ? " true" : " false"; break;
        case KelDouble: out += " " + FormatDouble(value.dValue); break;
        case KelText: out += " " + QuoteSourceText(value.strValue); break;
        case KelInteger: out += " " + std::to_string(value.nValue); break;
        default: break;
    }
    out += " flag " + std::to_string(param.cFlag) + "\n";
}

// A JSON number for a double; values JSON cannot hold are written as strings.
std::string JsonDouble(double value) {
    if (!std::isfinite(value)) return "\"" + FormatDouble(value) + "\"";
    return FormatDouble(value);
}

void PrintParamJson(const SysFuncParam& param, std::string& out) {
    const tagKelDataType& value = param.Default;
    out += "{\"name\": " + QuoteJsonText(param.strName) + ", \"flag\": " +
           std::to_string(param.cFlag) + ", \"kind\": " + std::to_string(value.nType);
    switch (value.nType) {
        case KelBool: out += value.bValue ? ", \"value\": true" : ", \"value\": false"; break;
        case KelDouble: out += ", \"value\": " + JsonDouble(value.dValue); break;
        case KelText: out += ", \"value\": " + QuoteJsonText(value.strValue); break;
        case KelInteger: out += ", \"value\": " + std::to_string(value.nValue); break;
        default: break;
    }
    out += "}";
}

}  // namespace

std::string FormatDouble(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    char buffer[64];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, r.ptr);
}

std::string QuoteSourceText(const std::string& text) { return QuoteText(text, "\\x"); }

std::string QuoteJsonText(const std::string& text) { return QuoteText(text, "\\u00"); }

void PrintFunctionsText(const std::vector<SysFuncInfo>& functions, std::string& out) {
    out += "# function catalogue, records: " + std::to_string(functions.size()) + "\n";
    for (const SysFuncInfo& f : functions) {
        out += "\nfunction " + QuoteSourceText(f.strName) + "\n";
        out += "  number " + std::to_string(f.wFuncId) + "\n";
        out += "  first " + std::to_string(f.nFirst) + "\n";
        out += "  second " + std::to_string(f.nSecond) + "\n";
        out += "  first16 " + std::to_string(f.wFirst) + "\n";
        out += "  text2 " + QuoteSourceText(f.strSecond) + "\n";
        out += "  text3 " + QuoteSourceText(f.strThird) + "\n";
        for (const SysFuncParam& param : f.vParams) PrintParamText(param, out);
    }
}

void PrintGroupsText(const std::vector<FuncGroupInfo>& groups, std::string& out) {
    out += "# group catalogue, records: " + std::to_string(groups.size()) + "\n";
    for (const FuncGroupInfo& g : groups)
        out += "group " + std::to_string(g.nGroupId) + " " + QuoteSourceText(g.strName) + " " +
               QuoteSourceText(g.strSecond) + "\n";
}

void PrintFunctionsJson(const std::vector<SysFuncInfo>& functions, std::string& out) {
    out += "{\"kind\": \"functions\", \"records\": [";
    for (std::size_t i = 0; i < functions.size(); ++i) {
        const SysFuncInfo& f = functions[i];
        out += i == 0 ? "\n" : ",\n";
        out += "  {\"name\": " + QuoteJsonText(f.strName) + ", \"number\": " +
               std::to_string(f.wFuncId) + ", \"first\": " + std::to_string(f.nFirst) +
               ", \"second\": " + std::to_string(f.nSecond) + ", \"first16\": " +
               std::to_string(f.wFirst) + ", \"text2\": " + QuoteJsonText(f.strSecond) +
               ", \"text3\": " + QuoteJsonText(f.strThird) + ", \"params\": [";
        for (std::size_t p = 0; p < f.vParams.size(); ++p) {
            out += p == 0 ? "\n    " : ",\n    ";
            PrintParamJson(f.vParams[p], out);
        }
        out += f.vParams.empty() ? "]}" : "\n  ]}";
    }
    out += functions.empty() ? "]}\n" : "\n]}\n";
}

void PrintGroupsJson(const std::vector<FuncGroupInfo>& groups, std::string& out) {
    out += "{\"kind\": \"groups\", \"records\": [";
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const FuncGroupInfo& g = groups[i];
        out += i == 0 ? "\n" : ",\n";
        out += "  {\"number\": " + std::to_string(g.nGroupId) + ", \"name\": " +
               QuoteJsonText(g.strName) + ", \"text2\": " + QuoteJsonText(g.strSecond) + "}";
    }
    out += groups.empty() ? "]}\n" : "\n]}\n";
}

}  // namespace ffcatalog
