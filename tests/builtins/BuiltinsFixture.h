// A function library object over an empty host data object: the scalar built-ins
// read nothing from it.
#pragma once

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"

constexpr double kInvalid = 1.7976931348623157e308;
constexpr int32_t kInvalidInt = 2147483647;

// Hides a constant from the compiler, so that an expected value computed with a C
// library function is computed at run time by the same library the code uses.
inline double Opaque(double v) {
    volatile double hidden = v;
    return hidden;
}

class BuiltinsTest : public ::testing::Test {
protected:
    CKelBaseData data{};
    CSystemFuncs f{&data};
};
