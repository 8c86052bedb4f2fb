// Moments and spread against the slow truth: bit for bit, but for moments summed as polynomials.
#include <cntr/internal/sums/triangle_moments.h>
#include <cntr/shapestat.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_stats.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

slow::Moments plain(const gx_InertiaData& data) {
  return {data.area(), data.centerOfMass(), data.inertiaMatrix()};
}

gx_InertiaData record(const slow::Moments& m) {
  return {m.area, m.center, m.matrix};
}

std::vector<gxEdgelet> edgeletsAt(const slow::Points& points) {
  std::vector<gxEdgelet> edgelets;
  for (const gxVector<2>& p : points) edgelets.emplace_back(p, 7, gxAngle8(3));
  return edgelets;
}

TEST(SlowTruthStats, AreaAndCenter) {
  RandomShapes random("area and center", 1500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Points points = random.outline();
    EXPECT_TRUE(agree([&] { return gf_Area(points); }, [&] { return slow::area(points); }));
    EXPECT_TRUE(agree([&] { return gf_Area(edgeletsAt(points)); },
                      [&] { return points.size() <= 2 ? 0.0 : slow::area(points); }));
    EXPECT_TRUE(
        agree([&] { return gf_CenterOfMass(points); }, [&] { return slow::centerOfMass(points); }));
    EXPECT_TRUE(agree([&] { return gnContour::centerOfMass(points); },
                      [&] { return slow::centerOfMass(points); }));
    EXPECT_TRUE(agree([&] { return gf_CenterOfMass(edgeletsAt(points)); },
                      [&] { return slow::centerOfMass(points); }));
  }
}

// What is summed triangle by triangle where areas cancel or are next to none.
TEST(SlowTruthStats, MomentsTriangleByTriangle) {
  RandomShapes random("moments", 1500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    slow::Points points = random.outline();
    if (points.size() > 16) points.resize(16);
    if (random.chance(0.5)) points = reversed(points);
    const auto got = [&] {
      if (points.size() < 3) return gf_InertiaDataPolygon(points);
      return gx_inertiaByTriangles(slow::centerIfAny(points).value_or(points.front()), points);
    };
    EXPECT_TRUE(agree([&] { return plain(got()); }, [&] { return slow::polygonMoments(points); }));
    EXPECT_TRUE(agree([&] { return gf_EllipseFromInertiaData(got()); },
                      [&] { return slow::ellipseOf(slow::polygonMoments(points)); }));
  }
}

// Summed as polynomials they may differ in the last digits, measured by the size of the shape.
TEST(SlowTruthStats, MomentsOfPolygons) {
  RandomShapes random("moments of polygons", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto kind = static_cast<OutlineKind>(random.integer(0, static_cast<int>(OutlineKind::eComb)));
    const int count = random.chance(0.7) ? random.integer(3, 16) : random.integer(17, 400);
    slow::Points points = random.placed(random.outline(kind, count));
    if (random.chance(0.5)) points = reversed(points);
    const slow::Moments got = plain(gf_InertiaDataPolygon(points));
    const slow::Moments want = slow::polygonMoments(points);
    const auto [reach, share] = slow::momentsRounding(points);
    EXPECT_NEAR(got.area, want.area, share * std::pow(reach, 2));
    EXPECT_TRUE(slow::nearMoments(got.matrix, want.matrix, points))
        << testing::PrintToString(got.matrix) << testing::PrintToString(want.matrix);
    const double thinness = reach * reach / std::abs(want.area);
    EXPECT_NEAR(got.center.x(), want.center.x(), share * reach * thinness);
    EXPECT_NEAR(got.center.y(), want.center.y(), share * reach * thinness);
  }
}

TEST(SlowTruthStats, MomentsOfAnEightWhoseHalvesCancelAreThoseOfItsTriangles) {
  const slow::Points eight = {{0, 0}, {4, 3}, {4, 0}, {0, 3.01}};
  EXPECT_TRUE(agree([&] { return plain(gf_InertiaDataPolygon(eight)); },
                    [&] { return slow::polygonMoments(eight); }));
}

// Of outlines that do not cross themselves the moments are those of the area inside, in any unit.
TEST(SlowTruthStats, MomentsOfSimpleOutlinesInUnitsFromAMillionthToAMillion) {
  RandomShapes random("moments in any unit", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double unit = std::pow(10.0, random.uniform(-6.0, 6.0));
    slow::Points points = random.outline(random.chance(0.8) ? OutlineKind::eStar : OutlineKind::eComb,
                                         random.integer(3, 60));
    for (gxVector<2>& p : points) p = p * (0.1 * unit);
    if (random.chance(0.5)) points = reversed(points);
    const slow::Moments want = slow::momentsByGreen(points);
    const gxMatrix<2> got = gf_InertiaDataPolygon(points).inertiaMatrix();
    const double limit = 1e-12 * (want.matrix.m00() + want.matrix.m11());
    EXPECT_NEAR(got.m00(), want.matrix.m00(), limit);
    EXPECT_NEAR(got.m01(), want.matrix.m01(), limit);
    EXPECT_NEAR(got.m11(), want.matrix.m11(), limit);
  }
}

TEST(SlowTruthStats, MomentsOfASmallOutlineFarFromTheOriginKeepTheirSign) {
  for (const double far : {0.0, 1.0, 100.0, 1000.0, 1e5}) {
    SCOPED_TRACE(far);
    const double s = 0.0005;
    const slow::Points square = {{far, far}, {far + s, far}, {far + s, far + s}, {far, far + s}};
    const slow::Moments want = slow::momentsByGreen(square);
    const gx_InertiaData got = gf_InertiaDataPolygon(square);
    EXPECT_NEAR(got.inertiaMatrix().m00(), want.matrix.m00(), 1e-9 * want.matrix.m00());
    EXPECT_NEAR(got.area(), want.area, 1e-12 * want.area);
    EXPECT_NEAR(got.centerOfMass().x(), want.center.x(), 1e-15 * far + 1e-15);
    EXPECT_EQ(gf_CenterOfMass(square), gxVector<2>(0, 0)) << "too little area";
  }
}

TEST(SlowTruthStats, SumsOfRecords) {
  RandomShapes random("sums of records", 3000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto some = [&] {
      constexpr double kAreas[] = {0.0,   -0.0, 1.0,   -1.0,
                                   1e-17, 3.5,  1e200, std::numeric_limits<double>::quiet_NaN()};
      slow::Moments m;
      m.area = random.chance(0.5) ? kAreas[random.integer(0, 7)] : random.uniform(-9.0, 9.0);
      m.center = random.pointNear({});
      const double off = random.uniform(-2.0, 2.0);
      const double m00 = random.uniform(0.0, 9.0);
      m.matrix = gxMatrix<2>(m00, off, off, random.uniform(0.0, 9.0));
      return m;
    };
    const slow::Moments a = some();
    const slow::Moments b = some();
    EXPECT_TRUE(agree([&] { return plain(record(a) + record(b)); }, [&] { return slow::add(a, b); }));
  }
}

TEST(SlowTruthStats, FitAndSpread) {
  RandomShapes random("fit and spread", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Points points = random.outline();
    const auto fitted = [&](auto fit) {
      gxEllipse ellipse;
      double residual = 0.0;
      fit(ellipse, residual);
      return std::vector<double>{ellipse.geom().center.x(),          ellipse.geom().center.y(),
                                 ellipse.geom().radii.x(),           ellipse.geom().radii.y(),
                                 ellipse.geom().rotation.toDouble(), residual};
    };
    const auto truth = [&] {
      return fitted([&](gxEllipse& e, double& r) { slow::fitEllipse(points, e, r); });
    };
    EXPECT_TRUE(agree(
        [&] { return fitted([&](gxEllipse& e, double& r) { gf_FitEllipse(points, e, r); }); }, truth));
    EXPECT_TRUE(agree(
        [&] {
          return fitted([&](gxEllipse& e, double& r) { gf_FitEllipse(edgeletsAt(points), e, r); });
        },
        truth));
    std::vector<double> values;
    for (const gxVector<2>& p : points) values.push_back(p.x());
    EXPECT_TRUE(
        agree([&] { return gf_StdDev(values); }, [&] { return slow::standardDeviation(values); }));
  }
}

}  // namespace
