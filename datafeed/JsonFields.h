// Strict reading of the JSON files the datafeed loads. Every refusal names the file,
// the place in it and the problem: "instruments.json: instruments[2].MinMove: missing".
#pragma once

#include <cstdint>
#include <initializer_list>
#include <set>
#include <string>

#include <nlohmann/json.hpp>

namespace datafeed {

// Reads a whole file and parses it; throws DatafeedError when the file cannot be read
// or is not JSON.
nlohmann::json ParseJsonFile(const std::string& path);
nlohmann::json ParseJsonText(const std::string& text, const std::string& file);

// Refuses a top level that is not an object or has members other than `allowed`.
void CheckTopLevel(const nlohmann::json& root, std::initializer_list<const char*> allowed,
                   const std::string& file);

// The array member `name` of the top-level object.
const nlohmann::json& TopLevelArray(const nlohmann::json& root, const char* name,
                                    const std::string& file);

// Reads the members of one object of an array. Each member that is read, present or
// not, counts as known; RefuseUnknown then rejects any other member, which catches
// misspelt field names that would otherwise be silently ignored.
class JsonObjectReader {
public:
    JsonObjectReader(const nlohmann::json& object, const std::string& file, std::string where);

    int64_t Integer(const char* name, int64_t low, int64_t high);
    int64_t OptionalInteger(const char* name, int64_t low, int64_t high, int64_t fallback);
    // A number of either JSON kind, finite and within [-limit, limit].
    double Number(const char* name, double limit);
    double OptionalNumber(const char* name, double limit, double fallback);
    // A text of at least `minLength` and at most `maxLength` bytes.
    std::string Text(const char* name, size_t minLength, size_t maxLength);
    void RefuseUnknown() const;

    [[noreturn]] void Fail(const std::string& member, const std::string& problem) const;

private:
    const nlohmann::json* Member(const char* name, bool required);
    int64_t ReadInteger(const char* name, const nlohmann::json& value, int64_t low,
                        int64_t high) const;
    double ReadNumber(const char* name, const nlohmann::json& value, double limit) const;

    const nlohmann::json& object_;
    const std::string& file_;
    std::string where_;
    std::set<std::string> known_;
};

}  // namespace datafeed
