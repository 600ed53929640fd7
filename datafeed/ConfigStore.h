// Named text values by table, section and key, kept in the database so that they
// outlive the process.
#pragma once

#include <string>

namespace datafeed {

class Database;

class ConfigStore {
public:
    explicit ConfigStore(Database& db) : db_(db) {}

    // True and the value when the key is stored; false and an empty value otherwise.
    bool Get(const std::string& table, const std::string& section, const std::string& key,
             std::string& value);
    // Stores the value, replacing an earlier one. Names compare without regard to ASCII
    // case; an existing key keeps its first spelling.
    void Set(const std::string& table, const std::string& section, const std::string& key,
             const std::string& value);

private:
    Database& db_;
};

}  // namespace datafeed
