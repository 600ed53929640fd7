// Parameter values of the example strategies: whole numbers and numbers read from
// the text of "--param name=value", with the messages a user sees.
#pragma once

#include <cstdint>
#include <string>

namespace ffexamples {

// Reads a whole number in [low, high] into `out`; false with a reason otherwise.
bool ReadWhole(const std::string& name, const std::string& text, int32_t low, int32_t high,
               int32_t& out, std::string& error);

// Reads a finite number of at least `low` into `out`; false with a reason otherwise.
bool ReadNumber(const std::string& name, const std::string& text, double low, double& out,
                std::string& error);

}  // namespace ffexamples
