#include <gauge/descriptors.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/moments.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/outline_files.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace {

using Points = std::vector<gxVector<2>>;
using Handle = gxPtrHandle_const<gxRegion>;
constexpr double kPi = std::numbers::pi;

gxDescriptors describe(const Points& points) {
  return gfDescribe(std::span<const gxVector<2>>(points));
}

std::vector<double> ratiosOf(const gxDescriptors& d) {
  return {d.circularity,    d.compactness, d.convexity,  d.solidity,     d.extent,
          d.rectangularity, d.aspectRatio, d.elongation, d.eccentricity, d.orientation};
}
std::vector<double> sizesOf(const gxDescriptors& d) {
  return {d.area,     d.filledArea,  d.perimeter, d.length,   d.equivalentDiameter, d.feretMax,
          d.feretMin, d.feretAcross, d.feretMean, d.hullArea, d.hullPerimeter};
}

TEST(Descriptors, NoPoints) {
  const auto d = describe({});
  EXPECT_EQ(d.status, gxStatus::eEmpty);
  for (const double size : sizesOf(d)) EXPECT_EQ(size, 0.0);
  for (const double ratio : ratiosOf(d)) EXPECT_TRUE(std::isnan(ratio));
  EXPECT_TRUE(std::isnan(d.box.origin().x()));
  EXPECT_EQ(d.eulerNumber, 0);
  EXPECT_EQ(gfDescribe(gxRegionSet()).status, gxStatus::eEmpty);
}

TEST(Descriptors, NaNAndInfinityAnywhere) {
  const auto d = describe(pointsOf("0 0, 1 0, 1 nan"));
  EXPECT_EQ(d.status, gxStatus::eNotFinite);
  for (const double size : sizesOf(d)) EXPECT_TRUE(std::isnan(size));
  for (const double ratio : ratiosOf(d)) EXPECT_TRUE(std::isnan(ratio));
  EXPECT_EQ(d.eulerNumber, 1);
}

TEST(Descriptors, APoint) {
  const auto d = describe(pointsOf("3 4, 3 4"));
  EXPECT_EQ(d.status, gxStatus::eFlat);
  for (const double size : sizesOf(d)) EXPECT_EQ(size, 0.0);
  for (const double ratio : ratiosOf(d)) EXPECT_TRUE(std::isnan(ratio));
  EXPECT_EQ(d.box.origin(), gxVector<2>(3, 4));
}

TEST(Descriptors, ASegment) {
  for (const char* text : {"0 0, 3 4", "0 0, 1.5 2, 3 4", "0.1 0.1, 0.3 0.3, 0.7 0.7"}) {
    const auto d = describe(pointsOf(text));
    EXPECT_EQ(d.status, gxStatus::eFlat);
    EXPECT_EQ(d.area, 0.0);
    EXPECT_EQ(d.equivalentDiameter, 0.0);
    EXPECT_EQ(d.circularity, 0.0);
    EXPECT_EQ(d.compactness, 0.0);
    EXPECT_NEAR(d.convexity, 1.0, 1e-15);
    EXPECT_EQ(d.aspectRatio, HUGE_VAL);
    EXPECT_EQ(d.elongation, 1.0);
    EXPECT_EQ(d.feretMin, 0.0);
    EXPECT_EQ(d.feretAcross, 0.0);
    EXPECT_NEAR(d.perimeter, 2 * d.feretMax, 1e-15 * d.perimeter);
    for (const double ratio : {d.solidity, d.rectangularity, d.eccentricity, d.orientation}) {
      EXPECT_TRUE(std::isnan(ratio));
    }
  }
  EXPECT_TRUE(std::isnan(describe(pointsOf("0 0, 5 0")).extent));
}

TEST(Descriptors, AnOpenContourHasLengthBoxAndWidths) {
  const auto d = gfDescribe(gxContour(pointsOf("0 0, 3 0, 3 4"), false));
  EXPECT_EQ(d.status, gxStatus::eNotClosed);
  EXPECT_EQ(d.length, 7.0);
  EXPECT_DOUBLE_EQ(d.feretMax, 5.0);
  EXPECT_EQ(d.box.corner(), gxVector<2>(3, 4));
  EXPECT_DOUBLE_EQ(d.hullArea, 6.0);
  for (const double nan : {d.area, d.perimeter, d.filledArea, d.equivalentDiameter})
    EXPECT_TRUE(std::isnan(nan));
  for (const double nan : ratiosOf(d)) EXPECT_TRUE(std::isnan(nan));
}

TEST(Descriptors, KnownShapesInAnyPlace) {
  for (const KnownShape& known : knownShapes()) {
    for (const bool turn : {false, true}) {
      for (const double scale : {1e-3, 1.0, 1e6}) {
        for (const gxVector<2> offset : {gxVector<2>(0, 0), gxVector<2>(1e6, -1e6)}) {
          const KnownShape s = placed(known, turn, scale, offset);
          const auto d = gfDescribe(s.set());
          const double slack = 1e-9 + offset.len() / s.feretMax * 1e-15;
          EXPECT_EQ(d.status, gxStatus::eOk);
          EXPECT_NEAR(d.area / s.area, 1.0, slack) << s.name;
          EXPECT_NEAR(d.filledArea / s.filled, 1.0, slack) << s.name;
          EXPECT_NEAR(d.perimeter / s.outer, 1.0, slack) << s.name;
          EXPECT_NEAR(d.length / s.total, 1.0, slack) << s.name;
          EXPECT_NEAR(d.circularity, s.circularity, slack) << s.name;
          EXPECT_NEAR(d.solidity, s.solidity, slack) << s.name;
          if (!std::isnan(s.convexity)) {
            EXPECT_NEAR(d.convexity, s.convexity, slack) << s.name;
          }
          EXPECT_NEAR(d.feretMax / s.feretMax, 1.0, slack) << s.name;
          EXPECT_NEAR(d.feretMin / s.feretMin, 1.0, slack) << s.name;
          EXPECT_NEAR(d.eccentricity * d.eccentricity, s.eccentricity * s.eccentricity, 1e-9 + 4 * slack)
              << s.name;
          EXPECT_EQ(d.eulerNumber, s.euler) << s.name;
          EXPECT_NEAR(d.equivalentDiameter, 2 * std::sqrt(s.area / kPi), slack * s.feretMax) << s.name;
          EXPECT_NEAR(d.compactness, 2 * std::sqrt(s.filled / kPi) / s.feretMax, slack) << s.name;
          EXPECT_NEAR(d.rectangularity * s.rectangleLength * s.rectangleWidth / s.area, 1.0, 10 * slack)
              << s.name;
          if (s.name == "3-4-5" || s.name == "equilateral 2") continue;  // rectangles of equal area
          EXPECT_NEAR(d.aspectRatio, s.rectangleLength / s.rectangleWidth, 10 * slack) << s.name;
          EXPECT_NEAR(d.elongation, 1 - s.rectangleWidth / s.rectangleLength, 10 * slack) << s.name;
        }
      }
    }
  }
}

TEST(Descriptors, OrientationIsThatOfTheLongAxis) {
  EXPECT_EQ(describe(pointsOf("0 0, 3 0, 3 1, 0 1")).orientation, 0.0);
  EXPECT_EQ(describe(pointsOf("0 0, 1 0, 1 3, 0 3")).orientation, kPi / 2);
  EXPECT_DOUBLE_EQ(describe(pointsOf("0 0, 3 3, 2 4, -1 1")).orientation, kPi / 4);
  EXPECT_DOUBLE_EQ(describe(pointsOf("0 0, 3 0, 3 1, 1 1, 1 3, 0 3")).orientation, -kPi / 4);
  EXPECT_NEAR(describe(pointsOf("0 0, 4 0, 0 3")).orientation, -29.871781 * kPi / 180, 1e-8);
  EXPECT_EQ(describe(pointsOf("0 0, 2 0, 2 2, 0 2")).orientation, 0.0);
  EXPECT_EQ(describe(pointsOf("0 0, 2 0, 2 2, 0 2")).extent, 1.0);
}

TEST(Descriptors, AgreeWithTheGaugesTheyComeFrom) {
  RandomShapes random("descriptors", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.star(random.integer(3, 200), {5, 5}, 0.3, 2.0);
    const auto d = describe(points);
    const std::span<const gxVector<2>> span(points);
    const auto f = gfFeret(span);
    const auto m = gfMoments(span);
    const auto r = gfLeastAreaRectangle(span);
    EXPECT_EQ(d.feretMax, f.feretMax);
    EXPECT_EQ(d.feretMin, f.feretMin);
    EXPECT_EQ(d.feretAcross, f.feretAcross);
    EXPECT_EQ(d.feretMean, f.feretMean);
    EXPECT_EQ(d.area, m.area);
    EXPECT_NEAR(d.orientation, m.ellipseAngle, 1e-12);
    EXPECT_NEAR(d.aspectRatio, r.length / r.width, 1e-14 * d.aspectRatio);
    EXPECT_NEAR(d.eccentricity, std::sqrt(1 - m.principal2 / m.principal1), 1e-9);
    for (const double ratio :
         {d.circularity, d.compactness, d.convexity, d.solidity, d.extent, d.rectangularity}) {
      EXPECT_GT(ratio, 0.0);
      EXPECT_LE(ratio, 1.0 + 1e-15);
    }
  }
}

TEST(Descriptors, DoNotDependOnDirectionStartOrAPowerOfTwo) {
  RandomShapes random("descriptors invariance", 100);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.star(random.integer(5, 60), {0.5, 0.25}, 0.3, 2.0);
    const auto d = describe(points);
    Points scaled;
    for (const auto& p : points) scaled.push_back(p * 0x1p-900);
    const auto small = describe(scaled);
    for (std::size_t k = 0; k < 10; ++k) {
      EXPECT_EQ(ratiosOf(small)[k], ratiosOf(d)[k]);
      EXPECT_NEAR(ratiosOf(describe(reversed(points)))[k], ratiosOf(d)[k], 1e-12);
      EXPECT_NEAR(ratiosOf(describe(rotatedStart(points, 3)))[k], ratiosOf(d)[k], 1e-12);
    }
    EXPECT_EQ(small.perimeter, d.perimeter * 0x1p-900);
  }
}

TEST(Descriptors, TheEndsOfTheRange) {
  for (const double scale : {1e300, 3e307, 1e-300}) {
    Points points = pointsOf("0 0, 4 0, 4 2, 0 2");
    for (auto& p : points) p = p * scale;
    const auto d = describe(points);
    EXPECT_EQ(d.status, gxStatus::eOk);
    EXPECT_DOUBLE_EQ(d.circularity, 32 * kPi / 144);
    EXPECT_DOUBLE_EQ(d.extent, 1.0);
    EXPECT_DOUBLE_EQ(d.aspectRatio, 2.0);
    EXPECT_DOUBLE_EQ(d.feretMin / scale, 2.0);
  }
}

TEST(Descriptors, HolesThatTakeAwayMoreThanThereIs) {
  gxRegion region(pointsOf("0 0, 1 0, 1 1, 0 1"));
  region.holes({Handle(new gxRegion(pointsOf("5 5, 7 5, 7 7, 5 7")))});
  const auto d = gfDescribe(region);
  EXPECT_EQ(d.status, gxStatus::eNegative);
  EXPECT_DOUBLE_EQ(d.area, -3.0);
  EXPECT_EQ(d.eulerNumber, 0);
}

TEST(Descriptors, ColumnsHaveTheBitsOfTheSingleForm) {
  RandomShapes random("descriptor columns", 1);
  ASSERT_TRUE(random.next());
  std::vector<Handle> regions;
  for (int i = 0; i < 60; ++i) regions.emplace_back(new gxRegion(random.outline()));
  regions.emplace_back(nullptr);
  const auto c = gfDescribeEach(std::span<const Handle>(regions));
  ASSERT_EQ(c.size(), 61U);
  for (std::size_t i = 0; i < 60; ++i) {
    const auto d = gfDescribe(*regions[i]);
    EXPECT_EQ(c.status[i], d.status);
    EXPECT_EQ(c.eulerNumber[i], d.eulerNumber);
    EXPECT_TRUE(sameBits(
        std::vector<double>{c.area[i], c.filledArea[i], c.perimeter[i], c.length[i],
                            c.equivalentDiameter[i], c.feretMax[i], c.feretMin[i], c.feretAcross[i],
                            c.feretMean[i], c.hullArea[i], c.hullPerimeter[i]},
        sizesOf(d)));
    EXPECT_TRUE(
        sameBits(std::vector<double>{c.circularity[i], c.compactness[i], c.convexity[i], c.solidity[i],
                                     c.extent[i], c.rectangularity[i], c.aspectRatio[i], c.elongation[i],
                                     c.eccentricity[i], c.orientation[i]},
                 ratiosOf(d)));
    EXPECT_TRUE(sameBits(gxVector<2>(c.boxXMin[i], c.boxYMin[i]), d.box.origin()));
    EXPECT_TRUE(sameBits(gxVector<2>(c.boxXMax[i], c.boxYMax[i]), d.box.corner()));
  }
  EXPECT_EQ(c.status[60], gxStatus::eFailed);
  EXPECT_TRUE(std::isnan(c.area[60]));
  EXPECT_EQ(gfDescribeEach(gxRegionSet()).size(), 0U);
  gxRegionSet set;
  set.add(regions[0]);
  EXPECT_EQ(gfDescribeEach(set).size(), 1U);
}

TEST(PixelArea, CountsThePixelsOfAnOutlineThroughTheirCentres) {
  const auto pixels = [](const char* text) {
    const auto points = pointsOf(text);
    return gfPixelAreaOfCentres(std::span<const gxVector<2>>(points));
  };
  EXPECT_EQ(pixels("7 8").pixels, 1.0);
  EXPECT_EQ(pixels("0 0, 4 0").pixels, 5.0);
  EXPECT_EQ(pixels("0 0, 1 0, 2 0, 3 0, 4 0, 3 0, 2 0, 1 0").pixels, 5.0);
  EXPECT_EQ(pixels("0 0, 4 0, 4 2, 0 2").pixels, 15.0);
  EXPECT_EQ(pixels("0 2, 4 2, 4 0, 0 0").pixels, 15.0);
  EXPECT_EQ(pixels("0 0, 2 0, 0 2").pixels, 6.0);
  EXPECT_EQ(pixels("1 0, 2 1, 1 2, 0 1").pixels, 5.0);
  EXPECT_EQ(pixels("").status, gxStatus::eEmpty);
  EXPECT_EQ(pixels("0 0, 4.5 0, 4 2").status, gxStatus::eNotOnGrid);
  EXPECT_EQ(pixels("0 0, 1e17 0, 4 2").status, gxStatus::eNotOnGrid);
  EXPECT_EQ(pixels("0 0, nan 0, 4 2").status, gxStatus::eNotFinite);
  EXPECT_TRUE(std::isnan(pixels("0 0, 4.5 0, 4 2").pixels));
  EXPECT_EQ(gfPixelAreaOfCentres(gxContour(pointsOf("0 0, 4 0, 4 2"), false)).status,
            gxStatus::eNotClosed);
  EXPECT_EQ(gfPixelAreaOfCentres(gxContour(pointsOf("0 0, 2 0, 0 2"))).pixels, 6.0);
}

TEST(Descriptors, Prints) {
  std::ostringstream out;
  out << describe(pointsOf("0 0, 5 0"));
  EXPECT_NE(out.str().find("convexity 1 "), std::string::npos);
  EXPECT_NE(out.str().find(" flat"), std::string::npos);
}

TEST(Descriptors, ColumnsPrintHowManyRowsThereAre) {
  const std::vector<gxPtrHandle_const<gxRegion>> regions{
      gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf("0 0, 1 0, 1 1"))),
      gxPtrHandle_const<gxRegion>(new gxRegion())};
  EXPECT_EQ(printed(gfDescribeEach(std::span(regions))), "descriptors of 2 shapes, 1 not ok");
}

TEST(PixelArea, Prints) {
  EXPECT_EQ(printed(gfPixelAreaOfCentres(pointsOf("0 0, 3 0, 3 2, 0 2"))), "12 pixels");
  EXPECT_EQ(printed(gfPixelAreaOfCentres(pointsOf("0 0.5, 1 1"))), "nan pixels not_on_grid");
}

}  // namespace
