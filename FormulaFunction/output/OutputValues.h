// Helpers shared by the output functions: the test for the invalid text, and the
// colour that means "no colour of its own".
#pragma once

#include <cstdint>
#include <string>

#include "FormulaFunction/InvalidValues.h"

namespace ffoutput {

constexpr int32_t kDefaultColour = -1;

using ff::IsInvalidText;

}  // namespace ffoutput
