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

TEST(MomentSum, RefusesATangleWhoseAreasCancel) {
  std::vector<gxVector<2>> eight;
  for (int i = 0; i < 200; ++i) {
    const double t = 6.283185307179586 * i / 200;
    eight.emplace_back(std::sin(t), std::sin(2 * t));
  }
  gx_MomentSum sum;
  EXPECT_FALSE(gx_sumMoments(eight, {0, 0}, sum));
}

TEST(MomentSum, FollowsTheRecordsWhereAFootLiesOutsideItsSideByTheSlack) {
  // Vertices at radii that differ by some 1e-6: feet of altitudes lie outside their sides by that.
  RandomShapes random("feet within the slack", 50);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<gxVector<2>> points;
    for (int i = 0; i < 400; ++i) {
      points.emplace_back(5.0 + random.uniform(0.0, 3e-6) + (i % 2 == 0 ? 0.0 : 2.6e-6),
                          gxRadian(6.283185307179586 * i / 400));
    }
    EXPECT_LT(
        difference(gf_InertiaDataPolygon(points).inertiaMatrix(), slow::polygonMoments(points).matrix),
        1e-13);
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
    EXPECT_EQ(gx_sumMoments(points, apex, wide), gx_sumMoments(points, apex, narrow, false));
    EXPECT_TRUE(sameBits(wide.area, narrow.area) && sameBits(wide.x, narrow.x) &&
                sameBits(wide.y, narrow.y) && sameBits(wide.xx, narrow.xx) &&
                sameBits(wide.xy, narrow.xy) && sameBits(wide.yy, narrow.yy));
    sums += wide.area == wide.area ? 1 : 0;
  }
  EXPECT_GT(sums, 100);
}

}  // namespace
