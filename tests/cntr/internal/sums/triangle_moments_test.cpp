// The moments of one triangle.
#include <cntr/internal/sums/triangle_moments.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_stats.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

void expectRightTriangle(const gx_InertiaData& m, double sign) {
  EXPECT_DOUBLE_EQ(m.area(), sign * 6.0);
  EXPECT_NEAR(m.centerOfMass().x(), 4.0 / 3.0, 1e-14);
  EXPECT_NEAR(m.centerOfMass().y(), 1.0, 1e-14);
  EXPECT_NEAR(m.inertiaMatrix().m00(), 16.0 / 3.0, 1e-13);
  EXPECT_NEAR(m.inertiaMatrix().m11(), 3.0, 1e-13);
  EXPECT_NEAR(m.inertiaMatrix().m01(), -2.0, 1e-13);
}

TEST(TriangleMoments, OfARightTriangleFromEveryCorner) {
  expectRightTriangle(gx_triangleMoments({0, 0}, {4, 0}, {0, 3}), 1.0);
  expectRightTriangle(gx_triangleMoments({4, 0}, {0, 3}, {0, 0}), 1.0);
  expectRightTriangle(gx_triangleMoments({0, 3}, {0, 0}, {4, 0}), 1.0);
}

TEST(TriangleMoments, OfAClockwiseTriangleHaveANegativeAreaAndTheSameMatrix) {
  expectRightTriangle(gx_triangleMoments({0, 0}, {0, 3}, {4, 0}), -1.0);
}

TEST(TriangleMoments, OfAnObtuseTriangleAreTheSameFromEveryCorner) {
  const gxVector<2> a(0, 0);
  const gxVector<2> b(10, 0);
  const gxVector<2> c(14, 1);
  const gx_InertiaData m = gx_triangleMoments(a, b, c);
  for (const gx_InertiaData& other : {gx_triangleMoments(b, c, a), gx_triangleMoments(c, a, b)}) {
    EXPECT_NEAR(m.area(), other.area(), 1e-12);
    EXPECT_NEAR(m.inertiaMatrix().m00(), other.inertiaMatrix().m00(), 1e-11);
    EXPECT_NEAR(m.inertiaMatrix().m01(), other.inertiaMatrix().m01(), 1e-11);
    EXPECT_NEAR(m.inertiaMatrix().m11(), other.inertiaMatrix().m11(), 1e-11);
  }
}

TEST(TriangleMoments, OfATriangleWithTwoEqualCornersAreZero) {
  EXPECT_EQ(gx_triangleMoments({1, 1}, {1, 1}, {5, 5}).area(), 0.0);
  EXPECT_EQ(gx_triangleMoments({1, 1}, {5, 5}, {5, 5}).area(), 0.0);
}

TEST(TriangleMoments, AreThoseOfTheSlowTruthBitForBit) {
  RandomShapes random("triangles", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points =
        random.outline(random.chance(0.5) ? OutlineKind::eCloud : OutlineKind::eLattice, 3);
    const gx_InertiaData m = gx_triangleMoments(points[0], points[1], points[2]);
    const slow::Moments want = slow::triangleMoments(points[0], points[1], points[2]);
    EXPECT_TRUE(sameBits(m.area(), want.area));
    EXPECT_TRUE(sameBits(m.centerOfMass(), want.center));
    EXPECT_TRUE(sameBits(m.inertiaMatrix(), want.matrix));
  }
}

TEST(TriangleMoments, OfAFootBeyondItsEndWithinTheSlackAreExact) {
  // Seen from its long side, the foot of the altitude of 1e-3 lies 1e-7 before the first corner, and by
  // 5e-12 the side is farther than its line.
  const gxVector<2> c(0, 0);
  const gxVector<2> p(4, 0);
  const gxVector<2> q(-1e-7, 1e-3);
  const slow::Moments want = slow::momentsByGreen({c, p, q});
  const gx_InertiaData got = gx_triangleMoments(c, p, q);
  EXPECT_NEAR(got.area(), want.area, 1e-17);
  EXPECT_NEAR(got.centerOfMass().x(), want.center.x(), 1e-15);
  EXPECT_NEAR(got.inertiaMatrix().m00(), want.matrix.m00(), 1e-17);
  const gx_InertiaData behind = gx_triangleMoments(c, p, {4 + 1e-7, 1e-3});
  EXPECT_NEAR(behind.inertiaMatrix().m00(), slow::momentsByGreen({c, p, {4 + 1e-7, 1e-3}}).matrix.m00(),
              1e-17);
}

TEST(TriangleMoments, AreExactAtEveryScale) {
  RandomShapes random("triangles at every scale", 3000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double unit = std::pow(10.0, random.uniform(-12.0, 6.0));
    const auto corner = [&] {
      return gxVector<2>(random.uniform(-unit, unit), random.uniform(-unit, unit));
    };
    const gxVector<2> c = corner();
    const gxVector<2> p = corner();
    const gxVector<2> q = random.chance(0.5) ? corner() : c + (p - c) * 1e-7 + corner() * 1e-3;
    const slow::Moments want = slow::momentsByGreen({c, p, q});
    const gxMatrix<2> got = gx_triangleMoments(c, p, q).inertiaMatrix();
    const double limit = 1e-13 * (want.matrix.m00() + want.matrix.m11()) + 1e-14 * std::pow(unit, 4);
    EXPECT_NEAR(got.m00(), want.matrix.m00(), limit);
    EXPECT_NEAR(got.m01(), want.matrix.m01(), limit);
    EXPECT_NEAR(got.m11(), want.matrix.m11(), limit);
  }
}

}  // namespace
