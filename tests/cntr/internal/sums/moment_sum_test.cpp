// Moments as sums of polynomials, held against the triangles taken as records.
#include <support/large_outlines.h>

#include <cntr/internal/sums/moment_sum.h>
#include <cntr/shapestat.h>
#include <support/same_bits.h>
#include <support/slow_truth_stats.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

double norm(const gxMatrix<2>& m) {
  return std::abs(m.m00()) + 2.0 * std::abs(m.m01()) + std::abs(m.m11());
}

// The largest difference of an element, relative to the norm.
double difference(const gxMatrix<2>& a, const gxMatrix<2>& b) {
  const gxMatrix<2> d = a - b;
  return std::max({std::abs(d.m00()), std::abs(d.m01()), std::abs(d.m11())}) / norm(b);
}

std::vector<gxVector<2>> wavy(int count, double size, double wave) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < count; ++i) {
    const double t = 6.283185307179586 * i / count;
    points.emplace_back(size * (1.0 + wave * std::cos(5.0 * t)), gxRadian(t));
  }
  return points;
}

TEST(MomentSum, OfAWellConditionedPolygonDiffersBelow1e13) {
  for (const double size : {1e-2, 1.0, 50.0, 1e4}) {
    for (const int count : {65, 200, 3000}) {
      const auto points = wavy(count, size, 0.3);
      const slow::Moments want = slow::polygonMoments(points);
      const gx_InertiaData got = gf_InertiaDataPolygon(points);
      EXPECT_LT(difference(got.inertiaMatrix(), want.matrix), 1e-13) << size << ' ' << count;
      EXPECT_NEAR(got.area() / want.area, 1.0, 1e-13);
    }
  }
}

TEST(MomentSum, OfAClockwisePolygonHasTheSameMatrixAndTheOtherSign) {
  auto points = wavy(500, 20.0, 0.4);
  const gx_InertiaData forward = gf_InertiaDataPolygon(points);
  const gx_InertiaData backward = gf_InertiaDataPolygon(reversed(points));
  EXPECT_NEAR(forward.area(), -backward.area(), 1e-10);
  EXPECT_LT(difference(forward.inertiaMatrix(), backward.inertiaMatrix()), 1e-13);
}

// Two squares that share a corner, run through in opposite directions, of sides 1 and `side`, every edge
// in ten parts.
std::vector<gxVector<2>> eightOfSquares(double side) {
  std::vector<gxVector<2>> points;
  const auto edge = [&points](const gxVector<2>& from, const gxVector<2>& to) {
    for (int i = 0; i < 10; ++i) points.push_back(from + (to - from) * (i / 10.0));
  };
  edge({0, 0}, {1, 0});
  edge({1, 0}, {1, 1});
  edge({1, 1}, {0, 1});
  edge({0, 1}, {0, 0});
  edge({0, 0}, {0, -side});
  edge({0, -side}, {-side, -side});
  edge({-side, -side}, {-side, 0});
  edge({-side, 0}, {0, 0});
  return points;
}

TEST(MomentSum, RefusesATangleWhoseAreasCancel) {
  gx_MomentSum sum;
  EXPECT_FALSE(gx_sumMoments(eightOfSquares(1.0), {0, 0}, sum));
  // What is left of two squares of areas 1 and 1 − d is d / (2 − d) of all.
  EXPECT_FALSE(gx_sumMoments(eightOfSquares(std::sqrt(0.982)), {0, 0}, sum));
  EXPECT_TRUE(gx_sumMoments(eightOfSquares(std::sqrt(0.978)), {0, 0}, sum));
  EXPECT_NEAR(sum.area, 0.022, 1e-15);
}

TEST(MomentSum, RefusesTrianglesTooSmallForACommonCentre) {
  gx_MomentSum sum;
  EXPECT_TRUE(gx_sumMoments(wavy(100, 2e-7, 0.0), {0, 0}, sum));     // 1.25e-15 each
  EXPECT_FALSE(gx_sumMoments(wavy(100, 1.7e-7, 0.0), {0, 0}, sum));  // 0.9e-15
  EXPECT_FALSE(gx_sumMoments(reversed(wavy(100, 1.7e-7, 0.0)), {0, 0}, sum));
}

TEST(MomentSum, RefusesWhatIsNotFinite) {
  gx_MomentSum sum;
  EXPECT_FALSE(gx_sumMoments(wavy(100, 1e100, 0.1), {0, 0}, sum));
  auto points = wavy(100, 10.0, 0.1);
  points[50] = gxVector<2>(std::nan(""), 1);
  EXPECT_FALSE(gx_sumMoments(points, {0, 0}, sum));
}

TEST(MomentSum, AgreesWithTheRecordsWhereAFootLiesOutsideItsSideWithinTheSlack) {
  // Vertices in pairs close together at nearly the same radius: flat triangles, whose feet of altitudes lie
  // beyond the ends of their sides by up to 1e-5.
  RandomShapes random("feet within the slack", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const int pairs = random.integer(9, 28);
    const double jitter = std::pow(10.0, random.uniform(-9.0, -3.0));
    std::vector<gxVector<2>> points;
    for (int i = 0; i < 2 * pairs; ++i) {
      const double angle = 6.283185307179586 * (i / 2 + (i % 2) * random.uniform(1e-6, 1e-3)) / pairs;
      points.emplace_back(5.0 + random.uniform(-jitter, jitter), gxRadian(angle));
    }
    const gxMatrix<2> truth = slow::momentsByGreen(points).matrix;
    EXPECT_LT(difference(gf_InertiaDataPolygon(points).inertiaMatrix(), truth), 1e-13);
    EXPECT_LT(difference(slow::polygonMoments(points).matrix, truth), 1e-13);
  }
}

TEST(MomentSum, OfRandomStarsAgreesWithTheRecords) {
  RandomShapes random("moments as polynomials", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.star(random.integer(65, 500), {0, 0}, 2.0, 10.0);
    EXPECT_LT(
        difference(gf_InertiaDataPolygon(points).inertiaMatrix(), slow::polygonMoments(points).matrix),
        1e-13);
  }
}

TEST(MomentSum, HasTheSameBitsWithoutTheWidestRegisters) {
  RandomShapes random("moments side by side", 1000);
  int sums = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.chance(0.5) ? largeOutline(random).points : random.outline();
    if (points.empty()) continue;
    const gxVector<2> apex = random.chance(0.5) ? gf_CenterOfMass(points) : points.back();
    gx_MomentSum wide;
    gx_MomentSum narrow;
    const bool stands = gx_sumMoments(points, apex, wide);
    EXPECT_EQ(gx_sumMoments(points, apex, narrow, false), stands);
    EXPECT_TRUE(sameBits(wide.area, narrow.area) && sameBits(wide.x, narrow.x) &&
                sameBits(wide.y, narrow.y) && sameBits(wide.xx, narrow.xx) &&
                sameBits(wide.xy, narrow.xy) && sameBits(wide.yy, narrow.yy));
    sums += stands ? 1 : 0;
  }
  EXPECT_GT(sums, 100);
}

}  // namespace
