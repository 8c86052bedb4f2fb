// Portable maps are written here by hand, and cut off at every length.
#include <cairo/cairo_tablet.h>
#include <cairo/errors.h>
#include <cairo/picture.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Bytes = std::vector<std::uint8_t>;
using BadPicture = gxPictureError::BadPicture;
using namespace std::string_literals;

TEST(Picture, greyAndColourAsTextAndAsBytes) {
  EXPECT_EQ(gfReadPicture("P2 2 1 255\n0 200\n").rgb, (Bytes{0, 0, 0, 200, 200, 200}));
  EXPECT_EQ(gfReadPicture("P3\n# a comment\n1 1\n# and another 9\n255 1 2 3").rgb, (Bytes{1, 2, 3}));
  EXPECT_EQ(gfReadPicture("P5 1 2 255\n\x07\xff"s).rgb, (Bytes{7, 7, 7, 255, 255, 255}));
  EXPECT_EQ(gfReadPicture("P6 1 1 255 \x0a\x20\x00"s).rgb, (Bytes{10, 32, 0}))
      << "one space behind the head, no more";
  const gxPicture wide = gfReadPicture("P2 3 2 255 1 2 3 4 5 6");
  EXPECT_EQ(wide.width, 3U);
  EXPECT_EQ(wide.height, 2U);
  EXPECT_EQ(wide.rgb[9], 4U);
}

TEST(Picture, valuesAreScaledToTheGreatest) {
  EXPECT_EQ(gfReadPicture("P2 3 1 15 0 8 15").rgb, (Bytes{0, 0, 0, 136, 136, 136, 255, 255, 255}));
  EXPECT_EQ(gfReadPicture("P5 2 1 65535\n\x80\x00\xff\xff"s).rgb, (Bytes{128, 128, 128, 255, 255, 255}));
  EXPECT_EQ(gfReadPicture("P2 1 1 10 99").rgb, (Bytes{255, 255, 255})) << "beyond the greatest";
}

TEST(Picture, aCutFileIsRefusedWhereverItIsCut) {
  gxCairoTablet tablet(gxRect({0, 0}, {10, 10}), 10);
  tablet.background({1, 2, 3});
  for (const std::string& whole :
       {"P2 2 1 255 0 255"s, "P6 1 1 255\nabc"s, "P5 1 1 256\nab"s, tablet.png()}) {
    EXPECT_NO_THROW(gfReadPicture(whole));
    const std::size_t least = whole[0] == 'P' ? 3 : 16;
    for (std::size_t length = 0; length + least <= whole.size(); ++length)
      EXPECT_THROW(gfReadPicture(whole.substr(0, length)), BadPicture) << length;
  }
}

TEST(Picture, whatIsNoPictureIsRefused) {
  for (const std::string& text :
       {""s, "P"s, "P4 1 1 \xff"s, "P2 x"s, "P2 0 1 255 "s, "P2 1 1 0 0"s, "P2 1 1 65536 0"s,
        "P5 30001 1 255 "s, "P5 20000 20000 255 "s, "P5 99999999999999999999 1 255 "s,
        "P5 30000 3000 255 "s, "\x89PNG\r\n\x1a\nxxxx"s, "GIF89a"s, "P2 #"s, "P2 1 1 255 -1"s})
    EXPECT_THROW(gfReadPicture(text), BadPicture) << text;
  EXPECT_THROW(gfReadPictureFile("/nowhere/to/be/found"), gxPictureError::Failed);
}

TEST(Picture, anErrorSaysWhatAndHasItsNumber) {
  try {
    gfReadPicture("P2 1 x");
    FAIL();
  } catch (const gxException& error) {
    EXPECT_EQ(error.errorNumber(), 0x10003202);
    EXPECT_NE(std::string(error.what()).find("height expected at byte 5"), std::string::npos)
        << error.what();
  }
}

TEST(Picture, aPngComesBackAsItWasPainted) {
  gxCairoTablet tablet(gxRect({0, 0}, {3, 2}), 3);
  tablet.background({9, 8, 7});
  const gxPicture picture = gfReadPicture(tablet.png());
  EXPECT_EQ(picture.width, 3U);
  EXPECT_EQ(picture.height, 2U);
  for (std::size_t i = 0; i < picture.rgb.size(); ++i) EXPECT_EQ(picture.rgb[i], 9 - i % 3);
}

}  // namespace
