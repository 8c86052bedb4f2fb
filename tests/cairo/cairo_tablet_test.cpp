// Pictures are judged by their pixels: a PNG is read back by the library's own reader, which other tests hold
// against bytes written by hand.
// Covers cairo/internal/painter.cpp
// Covers cairo/errors.cpp
// Covers cairo/internal/mark.h
#include <cairo/cairo_tablet.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <limits>
#include <random>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
const gxColor kRed(255, 0, 0);
const gxColor kBlue(0, 0, 255);
const gxColor kWhite(255, 255, 255);
const gxColor kBlack(0, 0, 0);

gxColor at(const gxPicture& picture, std::size_t x, std::size_t y) {
  const std::uint8_t* const p = &picture.rgb.at(3 * (y * picture.width + x));
  return {p[0], p[1], p[2]};
}

gxPicture seen(const gxCairoTablet& tablet) {
  return gfReadPicture(tablet.png());
}

gxCairoTablet white(double side = 100.0, double pixels = 100.0,
                    gxCairoTablet::YAxis y = gxCairoTablet::eYDown, double margin = 0.0) {
  gxCairoTablet tablet(gxRect({0, 0}, {side, side}), pixels, y, margin);
  tablet.background(kWhite);
  return tablet;
}

Points square(double low, double high) {
  return {{low, low}, {high, low}, {high, high}, {low, high}};
}

std::size_t countOf(const gxPicture& picture, const gxColor& colour) {
  std::size_t count = 0;
  for (std::size_t y = 0; y < picture.height; ++y) {
    for (std::size_t x = 0; x < picture.width; ++x) count += at(picture, x, y) == colour ? 1U : 0U;
  }
  return count;
}

TEST(CairoTablet, fillsARegionWithoutItsHoles) {
  gxRegion plate(square(10, 90));
  plate.holes({gxPtrHandle_const<gxRegion>(new gxRegion(square(30, 60)))});
  gxCairoTablet tablet = white();
  tablet.fill(plate, kRed);
  const gxPicture picture = seen(tablet);
  EXPECT_EQ(at(picture, 10, 10), kRed);
  EXPECT_EQ(at(picture, 89, 89), kRed);
  EXPECT_EQ(at(picture, 9, 50), kWhite);
  EXPECT_EQ(at(picture, 90, 50), kWhite);
  EXPECT_EQ(at(picture, 30, 30), kWhite);
  EXPECT_EQ(at(picture, 59, 59), kWhite);
  EXPECT_EQ(at(picture, 60, 59), kRed);
  EXPECT_EQ(countOf(picture, kRed), 80U * 80U - 30U * 30U);
}

TEST(CairoTablet, fillsAnIslandInAHoleAndEveryRegionOfASet) {
  gxRegion hole(square(20, 80));
  hole.holes({gxPtrHandle_const<gxRegion>(new gxRegion(square(40, 60)))});
  gxRegion outer(square(10, 90));
  outer.holes({gxPtrHandle_const<gxRegion>(new gxRegion(hole))});
  const gxRegionSet set({gxPtrHandle_const<gxRegion>(new gxRegion(outer)),
                         gxPtrHandle_const<gxRegion>(new gxRegion(square(92, 98)))});
  gxCairoTablet tablet = white();
  tablet.fill(set, kBlue);
  const gxPicture picture = seen(tablet);
  EXPECT_EQ(at(picture, 50, 50), kBlue);
  EXPECT_EQ(at(picture, 30, 30), kWhite);
  EXPECT_EQ(at(picture, 95, 95), kBlue);
  EXPECT_EQ(countOf(picture, kBlue), 80U * 80U - 60U * 60U + 20U * 20U + 6U * 6U);
}

TEST(CairoTablet, aRingThatGoesAroundTwiceIsEmptyWithin) {
  Points twice = square(10, 90);
  for (const auto& p : square(20, 80)) twice.push_back(p);
  gxCairoTablet tablet = white();
  const std::array<std::span<const gxVector<2>>, 1> rings = {twice};
  tablet.fill(rings, kRed);
  EXPECT_EQ(at(seen(tablet), 50, 50), kWhite);
  EXPECT_EQ(at(seen(tablet), 50, 15), kRed);
}

TEST(CairoTablet, yUpPutsLowCoordinatesBelow) {
  for (const auto axis : {gxCairoTablet::eYDown, gxCairoTablet::eYUp}) {
    gxCairoTablet tablet = white(100, 100, axis);
    tablet.fill(gxRegion(square(0, 20)), kRed);
    const gxPicture picture = seen(tablet);
    EXPECT_EQ(at(picture, 5, 5) == kRed, axis == gxCairoTablet::eYDown);
    EXPECT_EQ(at(picture, 5, 94) == kRed, axis == gxCairoTablet::eYUp);
    EXPECT_EQ(at(picture, 94, 5), kWhite);
  }
}

TEST(CairoTablet, linesHaveTheirWidthAndTheirLayer) {
  gxCairoTablet tablet = white();
  tablet.strokeWidth(6.0);
  tablet.drawLineSeg({0, 50}, {100, 50}, kRed, gxUITablet::eOverlayLayer);
  tablet.drawLineSeg({50, 0}, {50, 100}, kBlue, gxUITablet::eImageLayer);
  const gxPicture picture = seen(tablet);
  EXPECT_EQ(at(picture, 20, 46), kWhite);
  EXPECT_EQ(at(picture, 20, 47), kRed);
  EXPECT_EQ(at(picture, 20, 52), kRed);
  EXPECT_EQ(at(picture, 20, 53), kWhite);
  EXPECT_EQ(at(picture, 50, 50), kRed) << "the overlay lies above, though it was drawn first";
  EXPECT_EQ(at(picture, 50, 20), kBlue);
}

TEST(CairoTablet, connectedSegmentsAreOneLineWithJoints) {
  // A thick corner drawn in two segments: without a joint its outer corner would stay open.
  gxCairoTablet tablet = white();
  tablet.strokeWidth(20.0);
  tablet.drawLine(square(20, 80), true, kBlack);
  const gxPicture joined = seen(tablet);
  EXPECT_EQ(at(joined, 14, 14), kBlack);
  EXPECT_EQ(at(joined, 10, 10), kWhite) << "round";
  // A translucent line that was three would be darker where they meet.
  gxCairoTablet thin = white();
  thin.strokeWidth(10.0);
  thin.opacity(0.5);
  thin.drawLine(Points{{10, 50}, {50, 50}, {90, 50}}, false, kBlack);
  EXPECT_EQ(at(seen(thin), 50, 50), at(seen(thin), 30, 50));
}

TEST(CairoTablet, opacityMixesWithWhatLiesBelow) {
  gxCairoTablet tablet = white();
  tablet.opacity(0.5);
  tablet.fill(gxRegion(square(10, 60)), kBlack);
  tablet.fill(gxRegion(square(40, 90)), kBlack);
  const gxPicture each = seen(tablet);
  EXPECT_NEAR(at(each, 20, 20).red(), 127, 2);
  EXPECT_NEAR(at(each, 50, 50).red(), 64, 2);
  // A layer as a whole does not show through itself.
  gxCairoTablet whole = white();
  whole.fill(gxRegion(square(10, 60)), kBlack, gxUITablet::eOverlayLayer);
  whole.fill(gxRegion(square(40, 90)), kBlack, gxUITablet::eOverlayLayer);
  whole.layerOpacity(gxUITablet::eOverlayLayer, 0.5);
  const gxPicture picture = seen(whole);
  EXPECT_NEAR(at(picture, 20, 20).red(), 127, 2);
  EXPECT_NEAR(at(picture, 50, 50).red(), 127, 2);
}

TEST(CairoTablet, aHiddenLayerIsNotThere) {
  gxCairoTablet tablet = white();
  tablet.fill(gxRegion(square(10, 60)), kRed, gxUITablet::eOverlayLayer);
  tablet.show(gxUITablet::eOverlayLayer, false);
  EXPECT_EQ(countOf(seen(tablet), kWhite), 10000U);
  tablet.show(gxUITablet::eOverlayLayer, true);
  EXPECT_EQ(countOf(seen(tablet), kRed), 2500U);
}

TEST(CairoTablet, dashesLeaveGapsAndADotIsRound) {
  gxCairoTablet tablet = white();
  tablet.strokeWidth(4.0);
  tablet.dashes(10.0);
  tablet.drawLineSeg({0, 50}, {100, 50}, kBlack, gxUITablet::eOverlayLayer);
  const std::size_t dashed = countOf(seen(tablet), kBlack);
  EXPECT_GT(dashed, 150U);
  EXPECT_LT(dashed, 350U);
  gxCairoTablet dot = white();
  dot.drawDot({50, 50}, 10.0, kBlack);
  EXPECT_NEAR(static_cast<double>(countOf(seen(dot), kBlack)), 314.0, 40.0);
  EXPECT_EQ(at(seen(dot), 40, 40), kWhite);
}

TEST(CairoTablet, aSegmentWithoutLengthShowsAsADot) {
  gxCairoTablet tablet = white();
  tablet.strokeWidth(8.0);
  tablet.drawLine(Points{{50, 50}}, true, kBlack);
  EXPECT_EQ(at(seen(tablet), 50, 50), kBlack);
  EXPECT_EQ(at(seen(tablet), 50, 40), kWhite);
}

TEST(CairoTablet, lettersStandWhereTheyAreAskedFor) {
  for (const auto anchor : {gxCairoTablet::eCentred, gxCairoTablet::eRight, gxCairoTablet::eLeft}) {
    gxCairoTablet tablet = white();
    tablet.drawText({50, 50}, "888", kBlack, gxUITablet::eOverlayLayer, 20.0, anchor);
    const gxPicture picture = seen(tablet);
    std::size_t left = 0;
    std::size_t right = 0;
    for (std::size_t y = 0; y < 100; ++y) {
      for (std::size_t x = 0; x < 100; ++x) {
        if (at(picture, x, y).red() < 128) ++(x < 50 ? left : right);
      }
    }
    EXPECT_EQ(left > 0, anchor != gxCairoTablet::eRight);
    EXPECT_EQ(right > 0, anchor != gxCairoTablet::eLeft);
    EXPECT_EQ(at(picture, 50, 20), kWhite);
    EXPECT_EQ(at(picture, 50, 80), kWhite);
  }
}

TEST(CairoTablet, aHaloLiesAroundLetters) {
  gxCairoTablet tablet(gxRect({0, 0}, {100, 100}), 100);
  tablet.background(kBlue);
  tablet.drawText({50, 50}, "8", kBlack, gxUITablet::eOverlayLayer, 40.0);
  EXPECT_EQ(countOf(seen(tablet), kWhite), 0U);
  tablet.halo(kWhite);
  tablet.drawText({50, 50}, "8", kBlack, gxUITablet::eOverlayLayer, 40.0);
  EXPECT_GT(countOf(seen(tablet), kWhite), 50U);
}

TEST(CairoTablet, textThatIsNoUtf8StillMakesAPicture) {
  std::mt19937_64 random(7);
  gxCairoTablet tablet = white();
  for (int i = 0; i < 300; ++i) {
    std::string text;
    for (int k = 0; k < 12; ++k) text += static_cast<char>(random() & 255U);
    tablet.drawText({50, 50}, text, kBlack);
  }
  for (const char* const text :
       {"\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe2\x82", "\xc3\xa9", ""})
    tablet.drawText({50, 50}, text, kBlack);
  EXPECT_EQ(seen(tablet).width, 100U);
  EXPECT_FALSE(tablet.svg().empty());
  EXPECT_FALSE(tablet.pdf().empty());
}

TEST(CairoTablet, aPictureBehindCoversItsPlace) {
  gxPicture behind{2, 1, {255, 0, 0, 0, 0, 255}};
  for (const auto axis : {gxCairoTablet::eYDown, gxCairoTablet::eYUp}) {
    gxCairoTablet tablet = white(100, 100, axis);
    tablet.behind(behind, gxRect({20, 0}, {40, 50}));
    const gxPicture picture = seen(tablet);
    const std::size_t y = axis == gxCairoTablet::eYDown ? 10 : 90;
    EXPECT_EQ(at(picture, 19, y), kWhite);
    EXPECT_EQ(at(picture, 20, y), kRed);
    EXPECT_EQ(at(picture, 39, y), kRed);
    EXPECT_EQ(at(picture, 40, y), kBlue);
    EXPECT_EQ(at(picture, 59, y), kBlue);
    EXPECT_EQ(at(picture, 60, y), kWhite);
    EXPECT_EQ(at(picture, 40, 100 - y), kWhite);
  }
  gxCairoTablet pale = white();
  pale.behind(behind, gxRect({0, 0}, {100, 100}), 0.5);
  pale.fill(gxRegion(square(40, 60)), kBlack);
  EXPECT_NEAR(at(seen(pale), 10, 10).green(), 127, 2);
  EXPECT_EQ(at(seen(pale), 50, 50), kBlack);
}

TEST(CairoTablet, aScaleBarIsARoundNumberOfUnits) {
  // A view of 84 units, 840 pixels wide: a quarter is 21, so the bar is 20 units, 200 pixels.
  gxCairoTablet tablet(gxRect({3, 4}, {84, 30}), 840);
  tablet.background(kWhite);
  tablet.drawScaleBar("mm", kBlack);
  const gxPicture picture = seen(tablet);
  std::size_t first = 840;
  std::size_t last = 0;
  for (std::size_t x = 0; x < 840; ++x) {
    if (at(picture, x, 288) != kBlack) continue;
    first = (std::min)(first, x);
    last = x;
  }
  EXPECT_NEAR(static_cast<double>(last - first), 200.0 + 2.0, 2.0);
}

TEST(CairoTablet, whatCannotBeShownIsSkippedAndCounted) {
  gxCairoTablet tablet = white();
  for (const double bad : {kNaN, kInf, -kInf, 1e300, -1e300, 1e10}) {
    tablet.drawLineSeg({bad, 5}, {5, 5}, kRed, gxUITablet::eOverlayLayer);
    tablet.drawLineSeg({5, 5}, {5, bad}, kRed, gxUITablet::eOverlayLayer);
    tablet.fill(gxRegion(Points{{bad, 0}, {10, 0}, {10, 10}}), kRed);
    tablet.drawText({bad, 5}, "x", kRed);
    tablet.drawDot({5, bad}, 3, kRed);
  }
  EXPECT_EQ(tablet.skipped(), 30U);
  EXPECT_EQ(countOf(seen(tablet), kWhite), 10000U);
  tablet.fill(gxRegion(Points{{1, 1}, {5, 5}}), kRed);
  tablet.fill(gxRegion(), kRed);
  tablet.drawLine({}, true, kRed);
  EXPECT_EQ(tablet.skipped(), 30U);
  EXPECT_EQ(countOf(seen(tablet), kWhite), 10000U);
}

TEST(CairoTablet, whatReachesFarBeyondThePictureIsCutNotWrappedAround) {
  gxCairoTablet tablet = white();
  tablet.strokeWidth(4.0);
  tablet.fill(gxRegion(Points{{-9e8, -9e8}, {9e8, -9e8}, {9e8, 50}, {-9e8, 50}}), kRed);
  tablet.drawLineSeg({-9e8, 70}, {9e8, 70}, kBlue, gxUITablet::eOverlayLayer);
  tablet.drawLineSeg({-9e8, -9e8 + 80}, {9e8, 9e8 + 80}, kBlack, gxUITablet::eOverlayLayer);
  const gxPicture picture = seen(tablet);
  EXPECT_EQ(at(picture, 50, 20), kRed);
  EXPECT_EQ(at(picture, 50, 49), kRed);
  EXPECT_EQ(at(picture, 50, 51), kWhite);
  EXPECT_EQ(at(picture, 2, 70), kBlue);
  EXPECT_EQ(at(picture, 97, 70), kBlue);
  EXPECT_EQ(at(picture, 10, 90), kBlack);
  EXPECT_EQ(at(picture, 90, 90), kWhite);
}

TEST(CairoTablet, marginsSurroundTheView) {
  gxCairoTablet tablet = white(100, 50, gxCairoTablet::eYDown, 8);
  EXPECT_EQ(tablet.width(), 66);
  EXPECT_EQ(tablet.height(), 66);
  EXPECT_EQ(tablet.scale(), 0.5);
  tablet.fill(gxRegion(square(0, 100)), kRed);
  const gxPicture picture = seen(tablet);
  EXPECT_EQ(at(picture, 7, 30), kWhite);
  EXPECT_EQ(at(picture, 8, 30), kRed);
  EXPECT_EQ(at(picture, 57, 30), kRed);
  EXPECT_EQ(at(picture, 58, 30), kWhite);
}

TEST(CairoTablet, viewsThatCannotBeDrawnAreRefused) {
  using BadView = gxPictureError::BadView;
  const auto make = [](gxRect view, double width, double margin) {
    return gxCairoTablet(view, width, gxCairoTablet::eYDown, margin);
  };
  EXPECT_THROW(make(gxRect({0, 0}, {0, 1}), 100, 0), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {1, -1}), 100, 0), BadView);
  EXPECT_THROW(make(gxRect({kNaN, 0}, {1, 1}), 100, 0), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {kInf, 1}), 100, 0), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {1, 1}), 0, 0), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {1, 1}), kNaN, 0), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {1, 1}), 30001, 0), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {1, 1}), 20000, 0), BadView) << "too many in all";
  EXPECT_THROW(make(gxRect({0, 0}, {1, 1000}), 100, 0), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {1, 1}), 100, -1), BadView);
  EXPECT_THROW(make(gxRect({0, 0}, {1, 1}), 100, kNaN), BadView);
  EXPECT_NO_THROW(make(gxRect({1e300, 0}, {1e290, 1e290}), 100, 0));
}

TEST(CairoTablet, sizesThatCannotBeDrawnAreRefused) {
  using BadView = gxPictureError::BadView;
  gxCairoTablet tablet = white();
  for (const double bad : {kNaN, kInf, -1.0}) {
    EXPECT_THROW(tablet.strokeWidth(bad), BadView);
    EXPECT_THROW(tablet.dashes(bad), BadView);
    EXPECT_THROW(tablet.opacity(bad), BadView);
    EXPECT_THROW(tablet.layerOpacity(gxUITablet::eImageLayer, bad), BadView);
    EXPECT_THROW(tablet.drawText({1, 1}, "x", kRed, gxUITablet::eOverlayLayer, bad), BadView);
    EXPECT_THROW(tablet.drawDot({1, 1}, bad, kRed), BadView);
    EXPECT_THROW(tablet.behind({1, 1, {0, 0, 0}}, gxRect({0, 0}, {bad, 1})), BadView);
  }
  EXPECT_THROW(tablet.opacity(1.01), BadView);
  EXPECT_THROW(tablet.strokeWidth(0), BadView);
  EXPECT_THROW(tablet.behind({2, 1, {0, 0, 0}}, gxRect({0, 0}, {1, 1})), gxPictureError::BadPicture);
  EXPECT_NO_THROW(tablet.dashes(0));
}

TEST(CairoTablet, theThreeKindsOfFilesAreWhatTheyShouldBe) {
  gxCairoTablet tablet = white();
  tablet.title("a plate");
  tablet.fill(gxRegion(square(10, 60)), kRed);
  const std::string svg = tablet.svg();
  EXPECT_EQ(svg.rfind("<?xml", 0), 0U);
  EXPECT_NE(svg.find("fill-rule:evenodd"), std::string::npos);
  EXPECT_NE(svg.find("fill:rgb(100%,0%,0%)"), std::string::npos);
  EXPECT_NE(svg.find("M 10 10 L 60 10 L 60 60 L 10 60 Z"), std::string::npos);
  EXPECT_NE(svg.find("</svg>"), std::string::npos);
  const std::string pdf = tablet.pdf();
  EXPECT_EQ(pdf.rfind("%PDF-1.", 0), 0U);
  EXPECT_NE(pdf.find("/MediaBox [ 0 0 100 100 ]"), std::string::npos);
  EXPECT_NE(pdf.find("/Title (a plate)"), std::string::npos);
  EXPECT_NE(pdf.find("%%EOF"), std::string::npos);
  EXPECT_EQ(tablet.png().substr(1, 3), "PNG");
  EXPECT_EQ(tablet.png(), tablet.png());
  EXPECT_EQ(tablet.svg(), svg);
}

TEST(CairoTablet, filesAreNamedByTheirEnding) {
  const auto folder = std::filesystem::temp_directory_path() / "gxshape_cairo_test";
  std::filesystem::create_directories(folder);
  gxCairoTablet tablet = white();
  tablet.save((folder / "a.png").string());
  EXPECT_EQ(gfReadPictureFile((folder / "a.png").string()).width, 100U);
  tablet.save((folder / "a.svg").string());
  tablet.save((folder / "a.pdf").string());
  EXPECT_GT(std::filesystem::file_size(folder / "a.pdf"), 100U);
  EXPECT_THROW(tablet.save((folder / "a.jpg").string()), gxPictureError::BadView);
  EXPECT_THROW(tablet.save((folder / "none").string()), gxPictureError::BadView);
  EXPECT_THROW(tablet.save((folder / "no" / "a.png").string()), gxPictureError::Failed);
  std::filesystem::remove_all(folder);
}

TEST(CairoTablet, anEmptyPictureIsTransparentOrItsBackground) {
  const gxCairoTablet nothing(gxRect({0, 0}, {10, 10}), 10);
  EXPECT_EQ(countOf(seen(nothing), kWhite), 100U);
  gxCairoTablet blue = nothing;
  blue.background(kBlue);
  EXPECT_EQ(countOf(seen(blue), kBlue), 100U);
}

}  // namespace
