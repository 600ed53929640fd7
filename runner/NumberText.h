// Numbers as the reports print them: locale-free, the same on every system.
#pragma once

#include <string>

namespace ffrunner {

// The shortest text that reads back as the same double: "0.1", "100000", and with an
// exponent only for magnitudes below 1e-5 or from 1e16 on ("1e-07").
std::string ShortestText(double value);

// Fixed decimals ("12.50"); "-0.00" is written "0.00".
std::string FixedText(double value, int decimals);

}  // namespace ffrunner
