#include "examples/strategies/ParameterValues.h"

#include <charconv>
#include <cmath>

#include "runner/NumberText.h"

namespace ffexamples {

bool ReadWhole(const std::string& name, const std::string& text, int32_t low, int32_t high,
               int32_t& out, std::string& error) {
    int32_t value = 0;
    const char* end = text.data() + text.size();
    const auto r = std::from_chars(text.data(), end, value);
    if (r.ec != std::errc() || r.ptr != end || value < low || value > high) {
        error = name + " must be a whole number from " + std::to_string(low) + " to " +
                std::to_string(high) + ", not '" + text + "'";
        return false;
    }
    out = value;
    return true;
}

bool ReadNumber(const std::string& name, const std::string& text, double low, double& out,
                std::string& error) {
    double value = 0;
    const char* end = text.data() + text.size();
    const auto r = std::from_chars(text.data(), end, value);
    if (r.ec != std::errc() || r.ptr != end || !std::isfinite(value) || value < low) {
        error = name + " must be a number of at least " + ffrunner::ShortestText(low) + ", not '" + text + "'";
        return false;
    }
    out = value;
    return true;
}

}  // namespace ffexamples
