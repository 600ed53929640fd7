#include <cfloat>
#include <string>

#include "BuiltinsFixture.h"

namespace {

using ConstantsTest = BuiltinsTest;

TEST_F(ConstantsTest, ColoursAreBlueGreenRed) {
    EXPECT_EQ(f.Black(), 0x000000);
    EXPECT_EQ(f.White(), 0xFFFFFF);
    EXPECT_EQ(f.Red(), 0x0000FF);
    EXPECT_EQ(f.Green(), 0x00FF00);
    EXPECT_EQ(f.Blue(), 0xFF0000);
    EXPECT_EQ(f.Yellow(), 0x00FFFF);
    EXPECT_EQ(f.Cyan(), 0xFFFF00);
    EXPECT_EQ(f.Magenta(), 0xFF00FF);
    EXPECT_EQ(f.DarkRed(), 0x000080);
    EXPECT_EQ(f.DarkGreen(), 0x008000);
    EXPECT_EQ(f.DarkCyan(), 0x8B8B00);
    EXPECT_EQ(f.DarkMagenta(), 0x8B008B);
    EXPECT_EQ(f.DarkBrown(), 0x000BDA);
    EXPECT_EQ(f.DarkGray(), 0xA9A9A9);
    EXPECT_EQ(f.LightGray(), 0xD3D3D3);
    EXPECT_EQ(f.DefaultColor(), -1);
}

TEST_F(ConstantsTest, ColoursComposeFromTheirComponents) {
    EXPECT_EQ(f.Rgb(0, 0, 0), f.Black());
    EXPECT_EQ(f.Rgb(255, 255, 255), f.White());
    EXPECT_EQ(f.Rgb(255, 0, 0), f.Red());
    EXPECT_EQ(f.Rgb(0, 255, 0), f.Green());
    EXPECT_EQ(f.Rgb(0, 0, 255), f.Blue());
    EXPECT_EQ(f.Rgb(255, 255, 0), f.Yellow());
    EXPECT_EQ(f.Rgb(0, 255, 255), f.Cyan());
    EXPECT_EQ(f.Rgb(255, 0, 255), f.Magenta());
    EXPECT_EQ(f.Rgb(128, 0, 0), f.DarkRed());
    EXPECT_EQ(f.Rgb(0, 128, 0), f.DarkGreen());
    EXPECT_EQ(f.Rgb(0, 139, 139), f.DarkCyan());
    EXPECT_EQ(f.Rgb(139, 0, 139), f.DarkMagenta());
    EXPECT_EQ(f.Rgb(218, 11, 0), f.DarkBrown());
    EXPECT_EQ(f.Rgb(169, 169, 169), f.DarkGray());
    EXPECT_EQ(f.Rgb(211, 211, 211), f.LightGray());
}

TEST_F(ConstantsTest, RgbMasksEachComponent) {
    EXPECT_EQ(f.Rgb(256, 0, 0), 0);
    EXPECT_EQ(f.Rgb(255, 128, 0), 0x0080FF);
    EXPECT_EQ(f.Rgb(-1, 0, 0), 0x0000FF);
    EXPECT_EQ(f.Rgb(-1, -1, -1), 0xFFFFFF);
    EXPECT_EQ(f.Rgb(0x1234, 0x5678, 0x9ABC), 0xBC7834);
}

TEST_F(ConstantsTest, RgbRefusesTheInvalidInteger) {
    EXPECT_EQ(f.Rgb(kInvalidInt, 0, 0), kInvalidInt);
    EXPECT_EQ(f.Rgb(0, kInvalidInt, 0), kInvalidInt);
    EXPECT_EQ(f.Rgb(0, 0, kInvalidInt), kInvalidInt);
}

TEST_F(ConstantsTest, Weekdays) {
    EXPECT_EQ(f.Sunday(), 0);
    EXPECT_EQ(f.Monday(), 1);
    EXPECT_EQ(f.Tuesday(), 2);
    EXPECT_EQ(f.Wednesday(), 3);
    EXPECT_EQ(f.Thursday(), 4);
    EXPECT_EQ(f.Friday(), 5);
    EXPECT_EQ(f.Saturday(), 6);
}

TEST_F(ConstantsTest, Enumerations) {
    EXPECT_EQ(f.Enum_Entry(), 0);
    EXPECT_EQ(f.Enum_Exit(), 1);
    EXPECT_EQ(f.Enum_ExitToday(), 2);
    EXPECT_EQ(f.Enum_Buy(), 1);
    EXPECT_EQ(f.Enum_Sell(), 2);
    EXPECT_EQ(f.Enum_Declared(), 1);
    EXPECT_EQ(f.Enum_FillPart(), 2);
    EXPECT_EQ(f.Enum_Filled(), 3);
    EXPECT_EQ(f.Enum_Canceled(), 4);
    EXPECT_EQ(f.Enum_Deleted(), 5);
    EXPECT_EQ(f.Enum_Canceling(), 7);
    EXPECT_EQ(f.Enum_Declare(), 11);
}

TEST_F(ConstantsTest, InvalidValues) {
    EXPECT_EQ(f.InvalidInteger(), 2147483647);
    EXPECT_EQ(f.InvalidNumeric(), 1.7976931348623157e308);
    EXPECT_EQ(f.InvalidNumeric(), DBL_MAX);
    EXPECT_EQ(f.InvalidString(), "N/A");
}

TEST_F(ConstantsTest, InvalidStringIsAFreshCopy) {
    std::string first = f.InvalidString();
    first[0] = 'X';
    EXPECT_EQ(f.InvalidString(), "N/A");
}

TEST_F(ConstantsTest, IIF) {
    EXPECT_EQ(f.IIF(true, 1.5, 2.5), 1.5);
    EXPECT_EQ(f.IIF(false, 1.5, 2.5), 2.5);
    EXPECT_EQ(f.IIF(false, 1.5, kInvalid), kInvalid);
}

TEST_F(ConstantsTest, IIFString) {
    EXPECT_EQ(f.IIFString(true, "yes", "no"), "yes");
    EXPECT_EQ(f.IIFString(false, "yes", "no"), "no");
    EXPECT_EQ(f.IIFString(true, "N/A", "no"), "N/A");
}

}  // namespace
