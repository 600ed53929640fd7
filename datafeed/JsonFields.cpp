#include "datafeed/JsonFields.h"

#include <cmath>
#include <fstream>
#include <sstream>

#include "datafeed/DatafeedError.h"

namespace datafeed {

nlohmann::json ParseJsonFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw DatafeedError(path + ": cannot be opened");
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) throw DatafeedError(path + ": cannot be read");
    return ParseJsonText(text.str(), path);
}

nlohmann::json ParseJsonText(const std::string& text, const std::string& file) {
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& e) {
        // The parser's message starts with its own tag in brackets; the rest says where
        // and what.
        std::string detail = e.what();
        const size_t tagEnd = detail.find("] ");
        if (tagEnd != std::string::npos) detail.erase(0, tagEnd + 2);
        throw DatafeedError(file + ": not valid JSON: " + detail);
    }
}

void CheckTopLevel(const nlohmann::json& root, std::initializer_list<const char*> allowed,
                   const std::string& file) {
    if (!root.is_object()) throw DatafeedError(file + ": expected a JSON object at the top");
    for (const auto& item : root.items()) {
        bool known = false;
        for (const char* name : allowed) known = known || item.key() == name;
        if (!known) throw DatafeedError(file + ": " + item.key() + ": unknown field");
    }
}

const nlohmann::json& TopLevelArray(const nlohmann::json& root, const char* name,
                                    const std::string& file) {
    if (!root.is_object()) throw DatafeedError(file + ": expected a JSON object at the top");
    const auto it = root.find(name);
    if (it == root.end()) throw DatafeedError(file + ": " + name + ": missing");
    if (!it->is_array()) throw DatafeedError(file + ": " + name + ": expected an array");
    return *it;
}

JsonObjectReader::JsonObjectReader(const nlohmann::json& object, const std::string& file,
                                   std::string where)
    : object_(object), file_(file), where_(std::move(where)) {
    if (!object_.is_object()) throw DatafeedError(file_ + ": " + where_ + ": expected an object");
}

void JsonObjectReader::Fail(const std::string& member, const std::string& problem) const {
    throw DatafeedError(file_ + ": " + where_ + "." + member + ": " + problem);
}

const nlohmann::json* JsonObjectReader::Member(const char* name, bool required) {
    known_.insert(name);
    const auto it = object_.find(name);
    if (it == object_.end()) {
        if (required) Fail(name, "missing");
        return nullptr;
    }
    return &*it;
}

int64_t JsonObjectReader::ReadInteger(const char* name, const nlohmann::json& value,
                                      int64_t low, int64_t high) const {
    if (!value.is_number_integer()) Fail(name, "expected an integer");
    bool inRange;
    int64_t result = 0;
    if (value.is_number_unsigned()) {
        const uint64_t u = value.get<uint64_t>();
        inRange = high >= 0 && u <= static_cast<uint64_t>(high);
        if (inRange) result = static_cast<int64_t>(u);
        inRange = inRange && result >= low;
    } else {
        result = value.get<int64_t>();
        inRange = result >= low && result <= high;
    }
    if (!inRange) {
        Fail(name, "out of range (" + std::to_string(low) + " to " + std::to_string(high) + ")");
    }
    return result;
}

double JsonObjectReader::ReadNumber(const char* name, const nlohmann::json& value,
                                    double limit) const {
    if (!value.is_number()) Fail(name, "expected a number");
    const double result = value.get<double>();
    if (!std::isfinite(result) || std::fabs(result) > limit) Fail(name, "out of range");
    return result;
}

int64_t JsonObjectReader::Integer(const char* name, int64_t low, int64_t high) {
    return ReadInteger(name, *Member(name, true), low, high);
}

int64_t JsonObjectReader::OptionalInteger(const char* name, int64_t low, int64_t high,
                                          int64_t fallback) {
    const nlohmann::json* value = Member(name, false);
    return value ? ReadInteger(name, *value, low, high) : fallback;
}

double JsonObjectReader::Number(const char* name, double limit) {
    return ReadNumber(name, *Member(name, true), limit);
}

double JsonObjectReader::OptionalNumber(const char* name, double limit, double fallback) {
    const nlohmann::json* value = Member(name, false);
    return value ? ReadNumber(name, *value, limit) : fallback;
}

std::string JsonObjectReader::Text(const char* name, size_t minLength, size_t maxLength) {
    const nlohmann::json& value = *Member(name, true);
    if (!value.is_string()) Fail(name, "expected a text");
    std::string result = value.get<std::string>();
    if (result.size() < minLength) Fail(name, "empty");
    if (result.size() > maxLength) {
        Fail(name, "longer than " + std::to_string(maxLength) + " bytes");
    }
    return result;
}

void JsonObjectReader::RefuseUnknown() const {
    for (const auto& item : object_.items()) {
        if (known_.count(item.key()) == 0) Fail(item.key(), "unknown field");
    }
}

}  // namespace datafeed
