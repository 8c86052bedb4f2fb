// Repair and splice against the slow truth, bit for bit, of regions and of region sets; and the
// measures and queries of sets.
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

template <class Repair>
auto repaired(const Repair& repair) {
  return [repair] {
    gxRegion result;
    repair(result);
    return plainOf(result);
  };
}

// Outlines that cross themselves more often than not.
slow::Points crossingOutline(RandomShapes& random) {
  if (random.chance(0.3)) return random.outline();
  constexpr OutlineKind kKinds[] = {OutlineKind::eCloud, OutlineKind::eWalk, OutlineKind::eLattice,
                                    OutlineKind::eRepeated};
  return random.placed(random.outline(kKinds[random.integer(0, 3)], random.integer(4, 14)));
}

TEST(SlowTruthRepair, RegularizeAndOuterHull) {
  RandomShapes random("repair", 2500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Region truth{crossingOutline(random), {}};
    const gxRegion region(truth.outline);
    EXPECT_TRUE(agree(repaired([&](gxRegion& result) { region.regularize(result); }), [&] {
      return slow::regularize(truth);
    })) << testing::PrintToString(truth.outline);
    EXPECT_TRUE(agree(repaired([&](gxRegion& result) { region.outerHull(result); }), [&] {
      return slow::outerHull(truth);
    })) << testing::PrintToString(truth.outline);
  }
}

// Enough points for the index: smooth outlines with small loops, kinks and spikes in them, most of
// which can be repaired, where tangles of as many points are mostly refused.
TEST(SlowTruthRepair, OutlinesOfManyPointsWithSmallCrossings) {
  RandomShapes random("repair of many points", 250);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const int count = random.integer(65, 200);
    slow::Points points = random.star(count, {0.0, 0.0}, 18.0, 20.0);
    for (int i = random.integer(1, 20); i > 0; --i) {
      const auto k = static_cast<std::size_t>(random.integer(0, count - 3));
      switch (random.integer(0, 3)) {
        case 0: std::swap(points[k], points[k + 1]); break;
        case 1: std::swap(points[k], points[k + 2]); break;
        case 2: points[k] = points[k + 2]; break;
        default: points[k] = points[k] * random.uniform(0.3, 1.5);
      }
    }
    if (random.chance(0.3)) points = reversed(points);
    if (random.chance(0.3)) points = random.placed(points);
    const slow::Region truth{points, {}};
    const gxRegion region(points);
    EXPECT_TRUE(agree(repaired([&](gxRegion& result) { region.regularize(result); }), [&] {
      return slow::regularize(truth);
    })) << testing::PrintToString(points);
    EXPECT_TRUE(agree(repaired([&](gxRegion& result) { region.outerHull(result); }), [&] {
      return slow::outerHull(truth);
    })) << testing::PrintToString(points);
  }
}

TEST(SlowTruthRepair, HolesStayWhereNothingCrosses) {
  RandomShapes random("repair with holes", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    slow::Region truth{shape.outline, {}};
    for (const auto& hole : shape.holes) truth.holes.push_back({hole, {}});
    const auto region = regionOf(truth);
    EXPECT_TRUE(agree(repaired([&](gxRegion& result) { region->outerHull(result); }),
                      [&] { return slow::outerHull(truth); }));
  }
}

TEST(SlowTruthRepair, TheCoreOfOutlinesThatDoNotCrossToo) {
  RandomShapes random("repair core", 800);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Points outline = random.outline();
    const gxRegion region(outline);
    EXPECT_TRUE(agree(
        repaired([&](gxRegion& result) { gx_RegionInside::outerHullRegularize(region, result, false); }),
        [&] {
          return slow::Region{slow::outsideWalk(outline), {}};
        }));
    EXPECT_TRUE(agree(
        repaired([&](gxRegion& result) { gx_RegionInside::outerHullRegularize(region, result, true); }),
        [&] {
          return slow::Region{slow::hullOfWalk(slow::outsideWalk(outline)), {}};
        }));
  }
}

TEST(SlowTruthRepair, Splice) {
  RandomShapes random("splice", 1500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Points a = random.outline();
    slow::Points b = random.chance(0.1) ? a : random.outline();
    if (random.chance(0.4) && !a.empty() && !b.empty()) {  // onto each other
      const gxVector<2> move = random.pointNear(a) - b[0];
      b = mapped(gxXform<2>({1.0, 0.0, 0.0, 1.0}, move), b);
    }
    const gxRegion region(a);
    const gxRegion other(b);
    EXPECT_TRUE(
        agree(repaired([&](gxRegion& result) { gx_RegionInside::splice(region, other, result); }), [&] {
          return slow::Region{slow::splice(a, b), {}};
        }));
  }
}

// ---- Sets -----------------------------------------------------------------------------------------

slow::Set randomSet(RandomShapes& random) {
  slow::Set set;
  for (int count = random.integer(0, 4); count > 0; --count) {
    slow::Region region =
        random.chance(0.3) ? randomRegion(random) : slow::Region{random.finiteOutline(), {}};
    if (random.chance(0.5)) {
      region = {random.star(random.integer(3, 7), {random.uniform(-5.0, 5.0), random.uniform(-5.0, 5.0)},
                            1.0, 5.0),
                {}};
    }
    try {
      regionOf(region);
    } catch (const gxContourDefs::Errors&) {
      region.holes.clear();
    }
    set.push_back(region);
  }
  return set;
}

TEST(SlowTruthSet, SelfIntersectionAndRepair) {
  RandomShapes random("set repair", 800);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Set truth = randomSet(random);
    const gxRegionSet set = setOf(truth);
    EXPECT_TRUE(agree([&] { return set.isSelfIntersecting(); },
                      [&] { return slow::isSelfIntersecting(truth); }));
    EXPECT_TRUE(agree(
        [&] {
          gxRegionSet result;
          set.regularize(result);
          return plainOf(result);
        },
        [&] { return slow::regularize(truth); }));
    EXPECT_TRUE(agree(
        [&] {
          gxRegionSet result;
          set.outerHull(result);
          return plainOf(result);
        },
        [&] { return slow::outerHull(truth); }));
  }
}

slow::Points allPoints(const slow::Set& set) {
  slow::Points all;
  for (const slow::Region& region : set)
    all.insert(all.end(), region.outline.begin(), region.outline.end());
  return all;
}

// A region that runs the other way is taken out of the others; where little is left, last digits become first ones.
bool areasCancel(const slow::Set& set) {
  double left = 0.0;
  double all = 0.0;
  for (const slow::Region& region : set) {
    const double area = slow::polygonMoments(region.outline).area;
    left += area;
    all += std::abs(area);
  }
  return std::abs(left) < 0.05 * all;
}

TEST(SlowTruthSet, MeasuresAndQueries) {
  RandomShapes random("set measures", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Set truth = randomSet(random);
    const gxRegionSet set = setOf(truth);
    const gxXform<2> xform = random.transform();
    EXPECT_TRUE(agree([&] { return setOf(truth).encloseRect(xform); },  // fresh: nothing remembered
                      [&] { return slow::encloseRect(truth, xform); }));
    for (const bool holes : {false, true}) {
      EXPECT_TRUE(agree([&] { return set.area(holes); }, [&] { return slow::area(truth, holes); }));
      EXPECT_TRUE(agree([&] { return set.centerOfMass(holes); },
                        [&] { return slow::centerOfMass(truth, holes); }));
      const auto near = [&](const gxMatrix<2>& got, const gxMatrix<2>& want) {
        return slow::nearMoments(got, want, allPoints(truth)) || areasCancel(truth);
      };
      EXPECT_TRUE(agree([&] { return set.inertiaMatrix(holes); },
                        [&] { return slow::inertiaMatrix(truth, holes); }, near));
      for (int query = 0; query < 4; ++query) {
        const gxVector<2> p = random.pointNear(truth.empty() ? slow::Points() : truth.back().outline);
        const bool vertexOnly = random.chance(0.5);
        const bool zero = random.chance(0.5);
        EXPECT_TRUE(
            agree([&] { return set.inside(p, holes); }, [&] { return slow::inside(truth, p, holes); }));
        EXPECT_TRUE(agree([&] { return set.distToPoint(p, vertexOnly, holes, zero); },
                          [&] { return slow::distToPoint(truth, p, vertexOnly, holes, zero); }));
      }
    }
  }
}

}  // namespace
