#include <veldispc/color.h>

#include <gtest/gtest.h>

namespace {

TEST(Color, DefaultIsBlack) {
  EXPECT_EQ(gxColor(), gxColor(0, 0, 0));
}

TEST(Color, PartsAreKept) {
  constexpr gxColor color(1, 2, 255);
  EXPECT_EQ(color.red(), 1);
  EXPECT_EQ(color.green(), 2);
  EXPECT_EQ(color.blue(), 255);
  EXPECT_NE(color, gxColor(255, 2, 1));
}

TEST(Color, HexIsLowerCaseWithTwoDigitsAPart) {
  EXPECT_EQ(gxColor().hex(), "#000000");
  EXPECT_EQ(gxColor(0xab, 0x09, 0xff).hex(), "#ab09ff");
  EXPECT_EQ(gxColor(255, 255, 255).hex(), "#ffffff");
}

}  // namespace
