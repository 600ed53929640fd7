#include "runner/NumberText.h"

#include <charconv>

namespace ffrunner {

// Plain decimals for the magnitudes money and prices have, exponents beyond them.
std::string ShortestText(double value) {
    char buffer[64];
    const double magnitude = value < 0 ? -value : value;
    const bool plain = magnitude == 0 || (magnitude >= 1e-5 && magnitude < 1e16);
    const auto result =
        plain ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed)
              : std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string FixedText(double value, int decimals) {
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    std::string text(buffer, result.ptr);
    if (!text.empty() && text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos) {
        text.erase(0, 1);
    }
    return text;
}

}  // namespace ffrunner
