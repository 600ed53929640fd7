// Constant built-ins: colours (0x00BBGGRR), weekday numbers, the enumeration
// constants of order directions and states, the invalid values, and the two
// conditional selectors.
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/builtins/ScalarHelpers.h"

namespace {

// The one process-wide invalid text that InvalidString hands out copies of.
const std::string g_strInvalidString(ffbuiltins::kInvalidString);

}  // namespace

int32_t CSystemFuncs::Black() { return 0x000000; }
int32_t CSystemFuncs::White() { return 0xFFFFFF; }
int32_t CSystemFuncs::Red() { return 0x0000FF; }
int32_t CSystemFuncs::Green() { return 0x00FF00; }
int32_t CSystemFuncs::Blue() { return 0xFF0000; }
int32_t CSystemFuncs::Yellow() { return 0x00FFFF; }
int32_t CSystemFuncs::Cyan() { return 0xFFFF00; }
int32_t CSystemFuncs::Magenta() { return 0xFF00FF; }
int32_t CSystemFuncs::DarkRed() { return 0x000080; }
int32_t CSystemFuncs::DarkGreen() { return 0x008000; }
int32_t CSystemFuncs::DarkCyan() { return 0x8B8B00; }
int32_t CSystemFuncs::DarkMagenta() { return 0x8B008B; }
// Red 218, green 11: this is the value the language has always given the name.
int32_t CSystemFuncs::DarkBrown() { return 0x000BDA; }
int32_t CSystemFuncs::DarkGray() { return 0xA9A9A9; }
int32_t CSystemFuncs::LightGray() { return 0xD3D3D3; }
// All bits set: the host draws in its own default colour.
int32_t CSystemFuncs::DefaultColor() { return -1; }

// Only the low byte of each component counts; larger or negative values are masked,
// not clamped.
int32_t CSystemFuncs::Rgb(int32_t red, int32_t green, int32_t blue) {
    using ffbuiltins::kInvalidInteger;
    if (red == kInvalidInteger || green == kInvalidInteger || blue == kInvalidInteger) {
        return kInvalidInteger;
    }
    return (red & 255) + (green & 255) * 256 + (blue & 255) * 65536;
}

int32_t CSystemFuncs::Sunday() { return 0; }
int32_t CSystemFuncs::Monday() { return 1; }
int32_t CSystemFuncs::Tuesday() { return 2; }
int32_t CSystemFuncs::Wednesday() { return 3; }
int32_t CSystemFuncs::Thursday() { return 4; }
int32_t CSystemFuncs::Friday() { return 5; }
int32_t CSystemFuncs::Saturday() { return 6; }

int32_t CSystemFuncs::Enum_Entry() { return 0; }
int32_t CSystemFuncs::Enum_Exit() { return 1; }
int32_t CSystemFuncs::Enum_ExitToday() { return 2; }
int32_t CSystemFuncs::Enum_Buy() { return 1; }
int32_t CSystemFuncs::Enum_Sell() { return 2; }
int32_t CSystemFuncs::Enum_Declared() { return 1; }
int32_t CSystemFuncs::Enum_FillPart() { return 2; }
int32_t CSystemFuncs::Enum_Filled() { return 3; }
int32_t CSystemFuncs::Enum_Canceled() { return 4; }
int32_t CSystemFuncs::Enum_Deleted() { return 5; }
int32_t CSystemFuncs::Enum_Canceling() { return 7; }
int32_t CSystemFuncs::Enum_Declare() { return 11; }

int32_t CSystemFuncs::InvalidInteger() { return ffbuiltins::kInvalidInteger; }
double CSystemFuncs::InvalidNumeric() { return ffbuiltins::kInvalidNumeric; }
std::string CSystemFuncs::InvalidString() { return g_strInvalidString; }

double CSystemFuncs::IIF(bool condition, double a, double b) { return condition ? a : b; }

std::string CSystemFuncs::IIFString(bool condition, const std::string& a, const std::string& b) {
    return condition ? a : b;
}
