// The values the output functions answer with when they store nothing, and the
// colour that means "no colour of its own".
#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace ffoutput {

constexpr double kInvalidNumeric = std::numeric_limits<double>::max();
constexpr const char* kInvalidText = "N/A";
constexpr int32_t kDefaultColour = -1;

inline bool IsInvalidText(const std::string& text) { return text == kInvalidText; }

}  // namespace ffoutput
