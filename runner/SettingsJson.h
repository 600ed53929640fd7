// Reads a JSON settings file: one object whose members are numbers, texts, booleans
// or one level of nested object (for strategy parameters). Enough JSON for settings
// without a dependency; anything else is refused with the line it is on.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ffrunner {

struct SettingValue {
    enum Kind { Number, Text, Boolean, Object } kind = Number;
    std::string text;  // the number as written, the text, "true"/"false"
    std::vector<std::pair<std::string, SettingValue>> members;  // for an object
};

class SettingsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The members of the top-level object, in file order. Throws SettingsError with
// "FILE:LINE: reason".
std::vector<std::pair<std::string, SettingValue>> ParseSettingsJson(const std::string& text,
                                                                    const std::string& fileName);

}  // namespace ffrunner
