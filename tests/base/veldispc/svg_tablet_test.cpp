#include <veldispc/svg_tablet.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace {

using V = gxVector<2>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr gxColor kRed(255, 0, 0);
constexpr gxColor kBlue(0, 0, 255);
constexpr auto kImage = gxUITablet::eImageLayer;
constexpr auto kOverlay = gxUITablet::eOverlayLayer;

const gxRect kView(V(10, 100), V(20, 10));

int count(const std::string& text, const std::string& part) {
  int found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(SvgTablet, EmptyPictureHasTheSizeAsked) {
  const gxSvgTablet tablet(kView, 400);
  EXPECT_EQ(tablet.width(), 400.0);
  EXPECT_EQ(tablet.height(), 200.0);
  EXPECT_EQ(
      tablet.str(),
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"400\" height=\"200\" viewBox=\"0 0 400 200\">\n"
      "</svg>\n");
}

TEST(SvgTablet, OneSegmentIsOnePath) {
  gxSvgTablet tablet(kView, 400);
  tablet.drawLineSeg({10, 100}, {30, 110}, kRed, kImage);
  EXPECT_TRUE(has(tablet.str(), "<path stroke=\"#ff0000\" stroke-width=\"1\" d=\"M0 0L400 200\"/>"))
      << tablet.str();
}

TEST(SvgTablet, YUpTurnsThePictureOver) {
  gxSvgTablet tablet(kView, 400, gxSvgTablet::eYUp);
  tablet.drawLineSeg({10, 100}, {30, 110}, kRed, kImage);
  EXPECT_TRUE(has(tablet.str(), "d=\"M0 200L400 0\"")) << tablet.str();
}

TEST(SvgTablet, MarginLiesOnEverySide) {
  gxSvgTablet tablet(kView, 400, gxSvgTablet::eYDown, 5);
  EXPECT_EQ(tablet.width(), 410.0);
  EXPECT_EQ(tablet.height(), 210.0);
  tablet.drawLineSeg({10, 100}, {30, 110}, kRed, kImage);
  EXPECT_TRUE(has(tablet.str(), "d=\"M5 5L405 205\"")) << tablet.str();
}

TEST(SvgTablet, ConnectedSegmentsBecomeOnePath) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({10, 100}, {11, 101}, kRed, kImage);
  tablet.drawLineSeg({11, 101}, {12, 100}, kRed, kImage);
  tablet.drawLineSeg({12, 100}, {13, 105}, kRed, kImage);
  EXPECT_EQ(count(tablet.str(), "<path"), 1);
  EXPECT_TRUE(has(tablet.str(), "d=\"M0 0L1 1 2 0 3 5\"")) << tablet.str();
}

TEST(SvgTablet, AnOutlineIsAClosedPath) {
  // In the order of a contour's edges, the closing edge first.
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({14, 104}, {10, 100}, kRed, kImage);
  tablet.drawLineSeg({10, 100}, {14, 100}, kRed, kImage);
  tablet.drawLineSeg({14, 100}, {14, 104}, kRed, kImage);
  EXPECT_EQ(count(tablet.str(), "<path"), 1);
  EXPECT_TRUE(has(tablet.str(), "d=\"M4 4L0 0 4 0Z\"")) << tablet.str();
}

TEST(SvgTablet, ColourWidthGapAndLabelBeginANewPath) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({10, 100}, {11, 100}, kRed, kImage);
  tablet.drawLineSeg({11, 100}, {12, 100}, kBlue, kImage);
  tablet.strokeWidth(2.5);
  EXPECT_EQ(tablet.strokeWidth(), 2.5);
  tablet.drawLineSeg({12, 100}, {13, 100}, kBlue, kImage);
  tablet.drawLineSeg({14, 100}, {15, 100}, kBlue, kImage);
  tablet.drawText({15, 100}, "here", kBlue, kImage);
  tablet.drawLineSeg({15, 100}, {16, 100}, kBlue, kImage);
  EXPECT_EQ(count(tablet.str(), "<path"), 5);
  EXPECT_EQ(count(tablet.str(), "stroke-width=\"2.5\""), 3);
}

TEST(SvgTablet, LayersAreGroupsTheLowestFirst) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({10, 100}, {11, 100}, kBlue, kOverlay);
  tablet.drawLineSeg({10, 100}, {11, 100}, kRed, kImage);
  tablet.drawLineSeg({11, 100}, {12, 100}, kBlue, kOverlay);  // goes on in its own layer
  const std::string text = tablet.str();
  EXPECT_EQ(count(text, "<g "), 2);
  EXPECT_EQ(count(text, "<path"), 2);
  EXPECT_LT(text.find("layer0"), text.find("#ff0000"));
  EXPECT_LT(text.find("#ff0000"), text.find("layer1"));
  EXPECT_LT(text.find("layer1"), text.find("#0000ff"));
}

TEST(SvgTablet, ZeroLengthSegmentsAreKept) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({11, 101}, {11, 101}, kRed, kImage);
  EXPECT_TRUE(has(tablet.str(), "d=\"M1 1L1 1\"")) << tablet.str();
  EXPECT_EQ(tablet.skipped(), 0U);
}

TEST(SvgTablet, WhatCannotBeShownIsSkippedAndCounted) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({kNaN, 101}, {11, 101}, kRed, kImage);
  tablet.drawLineSeg({11, 101}, {HUGE_VAL, 101}, kRed, kImage);
  tablet.drawLineSeg({11, 101}, {11, -1e308}, kRed, kImage);
  tablet.drawText({0, kNaN}, "nowhere", kRed);
  EXPECT_EQ(tablet.skipped(), 4U);
  EXPECT_EQ(count(tablet.str(), "<path"), 0);
  EXPECT_FALSE(has(tablet.str(), "nan"));
  EXPECT_FALSE(has(tablet.str(), "nowhere"));
}

TEST(SvgTablet, ASkippedSegmentInterruptsThePath) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({10, 100}, {11, 100}, kRed, kImage);
  tablet.drawLineSeg({11, 100}, {kNaN, 100}, kRed, kImage);
  tablet.drawLineSeg({kNaN, 100}, {12, 100}, kRed, kImage);
  tablet.drawLineSeg({12, 100}, {13, 100}, kRed, kImage);
  EXPECT_EQ(count(tablet.str(), "<path"), 2);
}

TEST(SvgTablet, NumbersHaveUpToFourDecimals) {
  gxSvgTablet tablet(gxRect(V(0, 0), V(1, 1)), 1);
  tablet.drawLineSeg({1.0 / 3, 0.5}, {-0.00001, 123456789.125}, kRed, kImage);
  EXPECT_TRUE(has(tablet.str(), "d=\"M0.3333 0.5L0 123456789.125\"")) << tablet.str();
}

TEST(SvgTablet, ASmallShapeFarAwayIsAsSharpAsANearOne) {
  gxSvgTablet near(gxRect(V(0, 0), V(8, 8)), 800);
  gxSvgTablet far(gxRect(V(0x1p40, -0x1p40), V(8, 8)), 800);
  for (int i = 0; i < 8; ++i) {
    near.drawLineSeg({i * 1.0, 0.25}, {i * 0.5, 7.125}, kRed, kImage);
    far.drawLineSeg({0x1p40 + i * 1.0, -0x1p40 + 0.25}, {0x1p40 + i * 0.5, -0x1p40 + 7.125}, kRed,
                    kImage);
  }
  EXPECT_EQ(near.str(), far.str());
}

TEST(SvgTablet, LabelsAreEscapedAndCentred) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawText({11, 101}, "a<b & \"c\">\n\xc3\xa9", kBlue, kOverlay, 9.5);
  EXPECT_TRUE(has(tablet.str(),
                  "<text x=\"1\" y=\"1\" font-size=\"9.5\" fill=\"#0000ff\" stroke=\"none\">"
                  "a&lt;b &amp; \"c\"&gt; \xc3\xa9</text>"))
      << tablet.str();
  EXPECT_TRUE(has(tablet.str(), "text-anchor=\"middle\""));
}

TEST(SvgTablet, TitleAndBackground) {
  gxSvgTablet tablet(kView, 20);
  tablet.title("coins & more");
  tablet.background(gxColor(255, 255, 255));
  const std::string text = tablet.str();
  EXPECT_TRUE(has(text, "<title>coins &amp; more</title>"));
  EXPECT_TRUE(has(text, "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>"));
  EXPECT_LT(text.find("<title>"), text.find("<rect"));
}

struct CommaPunctuation : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
  char do_thousands_sep() const override { return '.'; }
};

TEST(SvgTablet, TheLocaleDoesNotMatter) {
  gxSvgTablet tablet(kView, 20.5);
  tablet.drawLineSeg({10.5, 100}, {11, 123456}, kRed, kImage);
  const std::string before = tablet.str();
  const std::locale old = std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
  const std::string during = tablet.str();
  std::locale::global(old);
  EXPECT_EQ(before, during);
}

TEST(SvgTablet, BadViewsThrow) {
  const auto make = [](const gxRect& view, double width, double margin) {
    return gxSvgTablet(view, width, gxSvgTablet::eYDown, margin);
  };
  EXPECT_THROW(make(gxRect(), 100, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(gxRect(V(0, 0), V(1, 0)), 100, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(gxRect(V(0, 0), V(-1, 1)), 100, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(gxRect(V(0, 0), V(kNaN, 1)), 100, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(gxRect(V(kNaN, 0), V(1, 1)), 100, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(gxRect(V(0, 0), V(HUGE_VAL, 1)), 100, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(gxRect(V(0, 0), V(1, 1e9)), 100, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(kView, 0, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(kView, -5, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(kView, kNaN, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(kView, 2e6, 0), gxSvgTablet::BadView);
  EXPECT_THROW(make(kView, 100, -1), gxSvgTablet::BadView);
  EXPECT_THROW(make(kView, 100, HUGE_VAL), gxSvgTablet::BadView);
  EXPECT_THROW(make(kView, 100, kNaN), gxSvgTablet::BadView);
}

TEST(SvgTablet, BadWidthsThrowAndChangeNothing) {
  gxSvgTablet tablet(kView, 20);
  EXPECT_THROW(tablet.strokeWidth(0), gxSvgTablet::BadView);
  EXPECT_THROW(tablet.strokeWidth(-1), gxSvgTablet::BadView);
  EXPECT_THROW(tablet.strokeWidth(kNaN), gxSvgTablet::BadView);
  EXPECT_EQ(tablet.strokeWidth(), 1.0);
  EXPECT_THROW(tablet.drawText({11, 101}, "x", kRed, kOverlay, 0), gxSvgTablet::Errors);
  EXPECT_FALSE(has(tablet.str(), "<text"));
}

TEST(SvgTablet, SaveWritesTheTextOfThePicture) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({10, 100}, {11, 101}, kRed, kImage);
  const auto path = std::filesystem::path(testing::TempDir()) / "gxshape_svg_tablet_test.svg";
  tablet.save(path);
  std::ifstream file(path, std::ios::binary);
  std::ostringstream written;
  written << file.rdbuf();
  EXPECT_EQ(written.str(), tablet.str());
  file.close();
  std::filesystem::remove(path);
}

TEST(SvgTablet, SaveSaysWhichFileCannotBeWritten) {
  const gxSvgTablet tablet(kView, 20);
  try {
    tablet.save("/no/such/folder/\xc3\xa9.svg");
    FAIL();
  } catch (const gxSvgTablet::CannotWrite& e) {
    EXPECT_NE(std::string(e.what()).find("/no/such/folder/"), std::string::npos) << e.what();
    EXPECT_NE(e.message().find(L".svg"), std::wstring::npos);
  }
  EXPECT_THROW(tablet.save("/no/such/folder/\xff.svg"), gxException);
}

TEST(SvgTablet, CopiesGoTheirOwnWay) {
  gxSvgTablet tablet(kView, 20);
  tablet.drawLineSeg({10, 100}, {11, 101}, kRed, kImage);
  gxSvgTablet copy(tablet);
  copy.drawLineSeg({11, 101}, {12, 101}, kRed, kImage);
  EXPECT_NE(copy.str(), tablet.str());
  tablet = copy;
  EXPECT_EQ(copy.str(), tablet.str());
}

TEST(SvgTablet, LongPathsAreBrokenIntoLines) {
  gxSvgTablet tablet(kView, 20);
  for (int i = 0; i < 100; ++i) tablet.drawLineSeg({10.0 + i, 100}, {11.0 + i, 100}, kRed, kImage);
  const std::string text = tablet.str();
  EXPECT_EQ(count(text, "<path"), 1);
  EXPECT_EQ(count(text, " 0"), 1 + 101);  // the view box, and every point
  std::size_t longest = 0;
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
    longest = std::max(longest, end - begin);
    begin = end + 1;
  }
  EXPECT_LT(longest, 200U);
}

}  // namespace
