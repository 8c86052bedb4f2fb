// Regions against the slow truth, bit for bit: queries, measures, holes; and what moving, turning
// and reversing a region may not change.
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

slow::Points allPoints(const slow::Region& region) {
  slow::Points points = region.outline;
  for (const slow::Region& hole : region.holes) {
    points.insert(points.end(), hole.outline.begin(), hole.outline.end());
  }
  return points;
}

// A region whose holes the library accepts.
slow::Region acceptedRegion(RandomShapes& random) {
  slow::Region region = randomRegion(random);
  try {
    regionOf(region);
  } catch (const gxContourDefs::Errors&) {
    region.holes.clear();
  }
  return region;
}

TEST(SlowTruthRegion, Inside) {
  RandomShapes random("region inside", 800);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Region truth = acceptedRegion(random);
    const auto region = regionOf(truth);
    for (int query = 0; query < 8; ++query) {
      const gxVector<2> p = random.pointNear(allPoints(truth));
      for (const bool flag : {false, true}) {
        EXPECT_TRUE(
            agree([&] { return region->inside(p, flag); }, [&] { return slow::inside(truth, p, flag); }))
            << testing::PrintToString(p);
        EXPECT_TRUE(agree([&] { return gx_RegionInside::insideCount(*region, p, flag); },
                          [&] { return slow::insideCount(truth.outline, p, flag); }))
            << testing::PrintToString(p);
      }
    }
  }
}

TEST(SlowTruthRegion, Proximity) {
  RandomShapes random("region proximity", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Region truth = acceptedRegion(random);
    const auto region = regionOf(truth);
    for (int query = 0; query < 8; ++query) {
      const gxVector<2> p = random.pointNear(allPoints(truth));
      for (int flags = 0; flags < 8; ++flags) {
        const bool vertexOnly = (flags & 1) != 0;
        const bool holes = (flags & 2) != 0;
        const bool zero = (flags & 4) != 0;
        EXPECT_TRUE(agree([&] { return region->closestPoint(p, vertexOnly, holes); },
                          [&] { return slow::closestPoint(truth, p, vertexOnly, holes); }));
        EXPECT_TRUE(agree([&] { return region->distToPoint(p, vertexOnly, holes, zero); },
                          [&] { return slow::distToPoint(truth, p, vertexOnly, holes, zero); }));
        EXPECT_TRUE(agree(
            [&] {
              long hole = 7;
              const long index = region->closestVertexIndex(p, holes, hole);
              return std::vector<long>{index, hole};
            },
            [&] {
              long hole = 7;
              const long index = slow::closestVertexIndex(truth, p, holes, hole);
              return std::vector<long>{index, hole};
            }));
      }
    }
  }
}

TEST(SlowTruthRegion, Intersections) {
  RandomShapes random("region intersections", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Region truth = acceptedRegion(random);
    const auto region = regionOf(truth);
    const slow::Outline other{random.placed(allPoints(truth)), random.chance(0.5)};
    const gxContour otherContour(other.points, other.closed);
    for (const bool holes : {false, true}) {
      EXPECT_TRUE(agree([&] { return region->intersections(otherContour, holes); },
                        [&] { return slow::intersections(truth, other, holes); }));
      for (int query = 0; query < 8; ++query) {
        const gxLineSeg seg = random.segmentNear(allPoints(truth));
        const bool ends = random.chance(0.5);
        EXPECT_TRUE(agree([&] { return region->intersections(seg, ends, holes); },
                          [&] { return slow::intersections(truth, seg, ends, holes); }));
      }
    }
  }
}

TEST(SlowTruthRegion, Measures) {
  RandomShapes random("region measures", 1000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Region truth = acceptedRegion(random);
    const auto region = regionOf(truth);
    for (const bool holes : {true, false}) {
      EXPECT_TRUE(agree([&] { return region->area(holes); }, [&] { return slow::area(truth, holes); }));
      EXPECT_TRUE(agree([&] { return region->centerOfMass(holes); },
                        [&] { return slow::centerOfMass(truth, holes); }));
      const auto near = [&](const gxMatrix<2>& got, const gxMatrix<2>& want) {
        return slow::nearMoments(got, want, truth.outline);
      };
      EXPECT_TRUE(agree([&] { return region->inertiaMatrix(holes); },
                        [&] { return slow::inertiaMatrix(truth, holes); }, near));
    }
  }
}

TEST(SlowTruthRegion, HolesThatMayBeSet) {
  RandomShapes random("holes", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    slow::Region truth{random.finiteOutline(), {}};
    if (random.chance(0.1)) truth.outline = random.outline();
    std::vector<slow::Region> holes;
    for (int i = random.integer(0, 3); i > 0; --i) {
      const gxVector<2> at = random.pointNear(truth.outline);
      holes.push_back({random.star(random.integer(0, 6), at, 0.1, 2.0), {}});
    }
    EXPECT_TRUE(agree(
        [&] {
          const auto region = regionOf(slow::Region{truth.outline, holes});
          return region->holes().size() == holes.size();
        },
        [&] {
          slow::checkHoles(truth, holes);
          return true;
        }));
  }
}

// ---- What may not change --------------------------------------------------------------------------

// As good as moments and areas can be after a turn: relative to what was summed up.
void expectNear(double got, double want, double size) {
  EXPECT_NEAR(got, want, 1e-9 * size);
}

TEST(RegionProperties, TranslationAndRotationKeepAreaAndMoveTheCenter) {
  RandomShapes random("moved regions", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    slow::Region truth{shape.outline, {}};
    for (const auto& hole : shape.holes) truth.holes.push_back({hole, {}});
    const gxRadian turn(random.uniform(-3.0, 3.0));
    const gxXform<2> move(gxMatrix<2>(turn, turn, 1.0, 1.0),
                          {random.uniform(-50.0, 50.0), random.uniform(-50.0, 50.0)});
    slow::Region there{mapped(move, truth.outline), {}};
    for (const auto& hole : truth.holes) there.holes.push_back({mapped(move, hole.outline), {}});
    const auto before = regionOf(truth);
    const auto after = regionOf(there);
    for (const bool holes : {false, true}) {
      expectNear(after->area(holes), before->area(holes), 500.0);
      const gxVector<2> center = move * before->centerOfMass(holes);
      expectNear(after->centerOfMass(holes).x(), center.x(), 100.0);
      expectNear(after->centerOfMass(holes).y(), center.y(), 100.0);
    }
    expectNear(after->length(), before->length(), 200.0);
    const gxMatrix<2> rotation(turn, turn, 1.0, 1.0);
    const gxMatrix<2> moments = rotation * before->inertiaMatrix(false) * rotation.transpose();
    expectNear(after->inertiaMatrix(false).m00(), moments.m00(), 1e5);
    expectNear(after->inertiaMatrix(false).m01(), moments.m01(), 1e5);
    expectNear(after->inertiaMatrix(false).m11(), moments.m11(), 1e5);
    for (int query = 0; query < 5; ++query) {
      const gxVector<2> p(random.uniform(-30.0, 30.0), random.uniform(-30.0, 30.0));
      const double distance = before->distToPoint(p, false, true, false);
      expectNear(after->distToPoint(move * p, false, true, false), distance, 200.0);
      if (distance > 1e-3) {
        EXPECT_EQ(after->inside(move * p, true), before->inside(p, true));
      }
    }
  }
}

TEST(RegionProperties, DirectionAndStartVertexChangeNothing) {
  RandomShapes random("listed otherwise", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Points outline = random.outlineWithHoles().outline;
    const auto start = static_cast<std::size_t>(random.integer(0, static_cast<int>(outline.size()) - 1));
    slow::Points listed = rotatedStart(outline, start);
    if (random.chance(0.7)) listed = reversed(listed);
    const gxRegion before(outline);
    const gxRegion after(listed);
    expectNear(after.area(false), before.area(false), 500.0);
    expectNear(after.length(), before.length(), 200.0);
    expectNear(after.centerOfMass(false).x(), before.centerOfMass(false).x(), 100.0);
    expectNear(after.centerOfMass(false).y(), before.centerOfMass(false).y(), 100.0);
    expectNear(after.meanPosition().x(), before.meanPosition().x(), 100.0);
    expectNear(after.inertiaMatrix(false).m00(), before.inertiaMatrix(false).m00(), 1e5);
    expectNear(after.inertiaMatrix(false).m01(), before.inertiaMatrix(false).m01(), 1e5);
    expectNear(after.inertiaMatrix(false).m11(), before.inertiaMatrix(false).m11(), 1e5);
    EXPECT_EQ(after.isSelfIntersecting(), before.isSelfIntersecting());
    EXPECT_EQ(after.diameter(gxContourDefs::eAllPairs), before.diameter(gxContourDefs::eAllPairs));
    EXPECT_EQ(after.encloseRect(gxXform<2>()), before.encloseRect(gxXform<2>()));
  }
}

TEST(RegionProperties, AreaAndCenterWithHolesAreSumsOfParts) {
  RandomShapes random("sums of parts", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    slow::Region truth{shape.outline, {}};
    for (const auto& hole : shape.holes) truth.holes.push_back({hole, {}});
    const auto region = regionOf(truth);
    double area = gxRegion(shape.outline).area(false);
    gxVector<2> first = gxRegion(shape.outline).centerOfMass(false) * area;
    for (const auto& hole : shape.holes) {
      const gxRegion part(hole);
      area -= part.area(false);
      first = first - part.centerOfMass(false) * part.area(false);
    }
    expectNear(region->area(true), area, 500.0);
    expectNear(region->centerOfMass(true).x() * area, first.x(), 1e4);
    expectNear(region->centerOfMass(true).y() * area, first.y(), 1e4);
    for (int query = 0; query < 5; ++query) {  // inside the outline and in no hole
      const gxVector<2> p = random.pointNear(shape.outline);
      bool expected = gxRegion(shape.outline).inside(p, false);
      for (const auto& hole : shape.holes) expected = expected && !gxRegion(hole).inside(p, false);
      EXPECT_EQ(region->inside(p, true), expected);
    }
  }
}

}  // namespace
