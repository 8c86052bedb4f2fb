// Covers cntr/region_containment.cpp
//
// Questions about many points at once: the same answers, failures and memories as one question after
// the other.
#include <cntr/region.h>
#include <cntr/regionst.h>

#include <support/random_shapes.h>
#include <support/region_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_memory.h>
#include <support/slow_truth_shapes.h>

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Everything that one test asks, on a thread of its own: its sequence of choices begins anew.
template <class Work>
void onAFreshThread(const Work& work) {
  std::thread(work).join();
}

Points regularPolygon(int count, double radius) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double turn = 2.0 * 3.141592653589793 * i / count;
    points.emplace_back(radius * std::cos(turn), radius * std::sin(turn));
  }
  return points;
}

std::vector<V> queriesNear(RandomShapes& random, const Points& outline, int count) {
  std::vector<V> queries;
  for (int i = 0; i < count; ++i) queries.push_back(random.pointNear(outline));
  return queries;
}

TEST(ManyPoints, NoPointsGiveNoAnswersWhateverTheShape) {
  EXPECT_TRUE(gxRegion().inside(Points{}, true).empty());
  EXPECT_TRUE(gxRegion().closestPoints(Points{}, false).empty());
  EXPECT_TRUE(gxRegion().closestPoints(Points{}, true, true).empty());
  EXPECT_TRUE(gxContour().closestVertexIndices(Points{}).empty());
  EXPECT_TRUE(gxContour().distsToPoints(Points{}, true).empty());
  EXPECT_TRUE(gxRegionSet().inside(Points{}, false).empty());
  EXPECT_EQ(gxRegionSet().inside(Points(3), false), std::vector<bool>(3, false));
}

TEST(ManyPoints, BelowTwoPointsThrow) {
  const gxRegion point(pointsOf("1 1"));
  EXPECT_THROW(point.inside(Points(1), false), gxContourDefs::EmptyContour);
  EXPECT_THROW(point.closestPoints(Points(1), false), gxContourDefs::EmptyContour);
  EXPECT_THROW(point.closestPoints(Points(1), true), gxContourDefs::EmptyContour);
  EXPECT_THROW(point.closestPoints(Points(1), false, true), gxContourDefs::EmptyContour);
  EXPECT_THROW(point.closestVertexIndices(Points(1)), gxContourDefs::EmptyContour);
  EXPECT_THROW(point.distsToPoints(Points(1), false), gxContourDefs::EmptyContour);
}

TEST(ManyPoints, APointThatIsNoNumberIsOutsideAndOthersAreNot) {
  for (const int count : {8, 100}) {
    const gxRegion region(regularPolygon(count, 10));
    const Points points{{kNaN, 0}, {1, 2}, {0, kInfinity}, {11, 0}, {3, -2}};
    const std::vector<bool> want{false, true, false, false, true};
    EXPECT_EQ(region.inside(points, false), want);
    EXPECT_EQ(region.inside(points, false), want) << "the second time";
    EXPECT_EQ(gxRegionSet({Handle(new gxRegion(region))}).inside(points, true), want);
  }
}

TEST(ManyPoints, ANullHoleFailsAtTheFirstPointThatReachesIt) {
  gxRegion region = squareWithHole();
  addNullHole(region);
  EXPECT_EQ(region.inside({{11, 5}, {5.1, 5.2}}, true), (std::vector<bool>{false, false}));
  EXPECT_THROW(region.inside({{11, 5}, {1.1, 1.2}}, true), gxBadPointer);
  EXPECT_EQ(region.inside({{11, 5}, {1.1, 1.2}}, false), (std::vector<bool>{false, true}));
}

TEST(ManyPoints, RegionsAnswerAsOneByOne) {
  RandomShapes random("many points", 800);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    slow::Region truth = randomRegion(random);
    try {
      regionOf(truth);
    } catch (const gxContourDefs::Errors&) {
      truth.holes.clear();
    }
    const auto region = regionOf(truth);
    const Points queries = queriesNear(random, truth.outline, random.integer(0, 12));
    for (const bool flag : {false, true, true}) {
      EXPECT_TRUE(agree([&] { return region->inside(queries, flag); },
                        [&] {
                          std::vector<bool> all;
                          for (const V& p : queries) all.push_back(slow::inside(truth, p, flag));
                          return all;
                        }));
      EXPECT_TRUE(agree([&] { return region->closestPoints(queries, flag); },
                        [&] {
                          Points all;
                          for (const V& p : queries) {
                            all.push_back(slow::closestPoint({truth.outline, true}, p, flag));
                          }
                          return all;
                        }));
      EXPECT_TRUE(agree([&] { return region->closestPoints(queries, flag, true); },
                        [&] {
                          Points all;
                          for (const V& p : queries) {
                            all.push_back(slow::closestPoint(truth, p, flag, true));
                          }
                          return all;
                        }));
      EXPECT_TRUE(
          agree([&] { return region->distsToPoints(queries, flag); },
                [&] {
                  std::vector<double> all;
                  for (const V& p : queries) {
                    all.push_back(p.distance(slow::closestPoint({truth.outline, true}, p, flag)));
                  }
                  return all;
                }));
    }
    EXPECT_TRUE(agree([&] { return region->closestVertexIndices(queries); },
                      [&] {
                        std::vector<long> all;
                        for (const V& p : queries) {
                          all.push_back(slow::closestVertexIndex(truth.outline, p));
                        }
                        return all;
                      }));
  }
}

// ---- Memories -------------------------------------------------------------------------------------

gxXform<2> someXform(RandomShapes& random) {
  const double shear = 0.5 * random.integer(-1, 1);
  return {{1.0, 0.0, shear, 1.0}, {1.0 * random.integer(0, 5), 0.0}};
}

TEST(ManyPoints, ARegionRemembersAndForgetsAsWithOneByOne) {
  RandomShapes random("many points, memories", 150);
  onAFreshThread([&random] {
    slow::Evictions evictions;
    while (random.next()) {
      SCOPED_TRACE(random.trace());
      slow::RememberingContour plain;
      plain.outline.points = random.finiteOutline();
      const gxRegion region(plain.outline.points);
      for (int step = 0; step < 12; ++step) {
        const gxXform<2> xform = someXform(random);
        EXPECT_TRUE(agree([&] { return region.encloseRect(xform); },
                          [&] { return plain.encloseRect(xform, evictions); }));
        const Points queries = queriesNear(random, plain.outline.points, random.integer(0, 6));
        EXPECT_TRUE(agree([&] { return region.inside(queries, false); },
                          [&] {
                            std::vector<bool> all;
                            for (const V& p : queries) {
                              all.push_back(slow::insideCount(plain.outline.points, p, false) % 2 != 0);
                            }
                            return all;
                          }));
      }
    }
  });
}

// The regions of a set one after the other, up to the first that holds the point.
bool insideSet(const slow::RememberingSet& set, const V& point) {
  for (const slow::RememberingContour& contour : set.regions) {
    if (slow::insideCount(contour.outline.points, point, false) % 2 != 0) return true;
  }
  return false;
}

double distanceOfSet(const slow::RememberingSet& set, const V& point, bool vertexOnly,
                     bool insideIsZero) {
  double smallest = kInfinity;
  for (const slow::RememberingContour& contour : set.regions) {
    double distance = 0.0;
    if (!insideIsZero || slow::insideCount(contour.outline.points, point, false) % 2 == 0) {
      distance = point.distance(slow::closestPoint(contour.outline, point, vertexOnly));
    }
    if (smallest > distance) smallest = distance;
  }
  return smallest;
}

TEST(ManyPoints, ASetOfManyRegionsAnswersAndRemembersAsOneByOne) {
  RandomShapes random("set questions", 60);
  onAFreshThread([&random] {
    slow::Evictions evictions;
    while (random.next()) {
      SCOPED_TRACE(random.trace());
      slow::RememberingSet plain;
      std::vector<gxPtrHandle<gxRegion>> regions;
      const auto outline = [&random] {
        if (random.chance(0.1)) return random.finiteOutline();
        return random.star(random.integer(3, 90),
                           {random.uniform(-20.0, 20.0), random.uniform(-20.0, 20.0)}, 0.5, 2.5);
      };
      for (int i = random.integer(16, 60); i > 0; --i) {
        slow::RememberingContour contour;
        contour.outline.points = outline();
        regions.emplace_back(new gxRegion(contour.outline.points));
        plain.regions.push_back(contour);
      }
      const gxRegionSet set(regions);
      if (random.chance(0.7)) {  // so that every region remembers its rectangle
        EXPECT_TRUE(agree([&] { return set.encloseRect(gxXform<2>()); },
                          [&] { return plain.encloseRect(gxXform<2>(), evictions); }));
      }
      for (int step = 0; step < 60; ++step) {
        const auto which =
            static_cast<std::size_t>(random.integer(0, static_cast<int>(regions.size()) - 1));
        slow::RememberingContour& contour = plain.regions[which];
        if (random.chance(0.1)) {
          const gxXform<2> xform = someXform(random);
          EXPECT_TRUE(agree([&] { return regions[which]->encloseRect(xform); },
                            [&] { return contour.encloseRect(xform, evictions); }));
        }
        if (random.chance(0.03)) {
          contour.outline.points = outline();
          contour.forget();
          regions[which]->points(contour.outline.points);
        }
        const Points queries = queriesNear(random, contour.outline.points, random.integer(0, 3));
        EXPECT_TRUE(agree([&] { return set.inside(queries, true); },
                          [&] {
                            std::vector<bool> all;
                            for (const V& p : queries) all.push_back(insideSet(plain, p));
                            return all;
                          }));
        const V p = random.pointNear(contour.outline.points);
        const bool vertexOnly = random.chance(0.3);
        const bool zero = random.chance(0.5);
        EXPECT_TRUE(agree([&] { return set.distToPoint(p, vertexOnly, true, zero); },
                          [&] { return distanceOfSet(plain, p, vertexOnly, zero); }));
      }
    }
  });
}

TEST(ManyPoints, ASetAsksAfterItsRegionsHaveChanged) {
  std::vector<gxPtrHandle<gxRegion>> regions;
  for (int i = 0; i < 20; ++i) regions.emplace_back(new gxRegion(square(20.0 * i, 0, 10)));
  gxRegionSet set(regions);
  const V p(45.1, 5.2);
  const V far(1000.1, 5.2);
  for (int i = 0; i < 40; ++i) {
    EXPECT_TRUE(set.inside(p, true));
    EXPECT_FALSE(set.inside(far, true));
  }
  regions[2]->points(square(1000, 0, 10));
  EXPECT_FALSE(set.inside(p, true));
  EXPECT_TRUE(set.inside(far, true));
  EXPECT_DOUBLE_EQ(set.distToPoint(p, false, true, true), 14.9);
  set.add(gxPtrHandle_const<gxRegion>());
  EXPECT_THROW(set.inside(p, true), gxBadPointer);
  EXPECT_TRUE(set.inside(far, true)) << "met before the null region";
}

TEST(ManyPoints, ASetWithHolesFailsWhereOneByOneFails) {
  std::vector<gxPtrHandle<gxRegion>> regions;
  for (int i = 0; i < 20; ++i) regions.emplace_back(new gxRegion(square(20.0 * i, 0, 10)));
  gxRegion holed = squareWithHole();
  addNullHole(holed);
  regions[4] = gxPtrHandle<gxRegion>(new gxRegion(holed));  // at (0, 0), over the first
  const gxRegionSet set(regions);
  for (int i = 0; i < 40; ++i) {
    EXPECT_TRUE(set.inside(V(1.1, 1.2), true)) << "the first region holds it";
    EXPECT_FALSE(set.inside(V(-1, 1), true));
    EXPECT_THROW(set.distToPoint(V(300, 50), false, true, false), gxBadPointer);
  }
}

}  // namespace
