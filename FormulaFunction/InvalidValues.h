// The values a built-in function returns when it has no answer: missing data, an
// index out of range or a bad argument.
#pragma once

#include <cstdint>
#include <string>

namespace ff {

constexpr int32_t kInvalidInteger = 2147483647;
constexpr double kInvalidNumeric = 1.7976931348623157e308;  // the largest finite double
inline const char* const kInvalidString = "N/A";

// True only for the exact text "N/A": a name or value the formula left unset.
inline bool IsInvalidText(const std::string& text) { return text == kInvalidString; }

}  // namespace ff
