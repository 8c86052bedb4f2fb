// One form of an outline: direction, start, points that say nothing.
#include <gauge/clean.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

const Points kSquare = pointsOf("0 0, 4 0, 4 4, 0 4");

TEST(Clean, OrientationIsTheSignOfTheArea) {
  EXPECT_EQ(gfOrientation(kSquare), 1);
  EXPECT_EQ(gfOrientation(gfReversed(kSquare, true)), -1);
  EXPECT_EQ(gfOrientation(gxContour(kSquare)), 1);
  EXPECT_EQ(gfOrientation(gxContour(kSquare, false)), 0);
  EXPECT_EQ(gfOrientation(Points{}), 0);
  EXPECT_EQ(gfOrientation(pointsOf("0 0, 1 1")), 0);
  EXPECT_EQ(gfOrientation(pointsOf("0 0, 1 1, 2 2")), 0);
  EXPECT_EQ(gfOrientation(pointsOf("1 1, 1 1, 1 1")), 0);
  EXPECT_EQ(gfOrientation(pointsOf("0 0, nan 1, 2 0")), 0);
  // A bow tie: the turn at (0, 0), from (0, 4) to (4, 4), decides.
  EXPECT_EQ(gfOrientation(pointsOf("0 0, 4 4, 4 0, 0 4")), 1);
}

TEST(Clean, OrientationOfAnAreaBelowRoundingIsExact) {
  // Three points whose true area is some 1e-17, far below what sums of products can tell.
  const double up = std::nextafter(0.5, 1.0);
  EXPECT_EQ(gfOrientation(Points{{0, 0}, {1, 1}, {0.5, up}}), 1);
  EXPECT_EQ(gfOrientation(Points{{0, 0}, {0.5, up}, {1, 1}}), -1);
  for (const double scale : {1e300, 1e-300}) {
    EXPECT_EQ(gfOrientation(Placement{1, 0, {0, 0}, scale}.of(kSquare)), 1);
  }
}

TEST(Clean, ReversedKeepsThePointWhereAnOutlineBegins) {
  EXPECT_EQ(gfReversed(kSquare, true), pointsOf("0 0, 0 4, 4 4, 4 0"));
  EXPECT_EQ(gfReversed(kSquare, false), pointsOf("0 4, 4 4, 4 0, 0 0"));
  EXPECT_TRUE(gfReversed(Points{}, true).empty());
  EXPECT_EQ(gfOriented(kSquare, 1), kSquare);
  EXPECT_EQ(gfOriented(kSquare, -1), gfReversed(kSquare, true));
  EXPECT_EQ(gfOriented(kSquare, 0), kSquare);
  EXPECT_EQ(gfOriented(pointsOf("0 0, 1 1"), -1), pointsOf("0 0, 1 1"));
}

TEST(Clean, TheStartCountsAround) {
  EXPECT_EQ(gfStartingAt(kSquare, 1), pointsOf("4 0, 4 4, 0 4, 0 0"));
  EXPECT_EQ(gfStartingAt(kSquare, 9), pointsOf("4 0, 4 4, 0 4, 0 0"));
  EXPECT_TRUE(gfStartingAt(Points{}, 3).empty());
}

TEST(Clean, RepeatedPointsGo) {
  const Points points = pointsOf("0 0, 0 0, 4 0, 4 4, 4 4, 0 0");
  EXPECT_EQ(gfWithoutRepeated(points, true), pointsOf("0 0, 4 0, 4 4"));
  EXPECT_EQ(gfWithoutRepeated(points, false), pointsOf("0 0, 4 0, 4 4, 0 0"));
  EXPECT_EQ(gfWithoutRepeated(pointsOf("1 1, 1 1"), true), pointsOf("1 1"));
  EXPECT_EQ(gfWithoutRepeated(pointsOf("1 1, 1 1"), false), pointsOf("1 1"));
  EXPECT_EQ(gfWithoutRepeated(pointsOf("0 0, 0.5 0, 1.2 0, 1.5 0"), false, 1.0), pointsOf("0 0, 1.5 0"));
  EXPECT_EQ(gfWithoutRepeated(pointsOf("0 0, 1 0, 0.5 0"), true, 0.7), pointsOf("0 0, 1 0"));
  EXPECT_EQ(gfWithoutRepeated(pointsOf("nan 0, nan 0"), true).size(), 2u);
  EXPECT_EQ(gfWithoutRepeated(points, true, -1), gfWithoutRepeated(points, true));
  EXPECT_EQ(gfWithoutRepeated(points, true, kNaN), gfWithoutRepeated(points, true));
  EXPECT_TRUE(gfWithoutRepeated(Points{}, true).empty());
  EXPECT_TRUE(gfWithoutRepeated(Points{}, false).empty());
}

TEST(Clean, PointsExactlyBetweenTheirNeighboursGo) {
  EXPECT_EQ(gfWithoutCollinear(pointsOf("2 0, 4 0, 4 2, 4 4, 0 4, 0 0, 1 0"), true),
            pointsOf("4 0, 4 4, 0 4, 0 0"));
  EXPECT_EQ(gfWithoutCollinear(pointsOf("2 0, 3 0, 4 0, 4 4"), false), pointsOf("2 0, 4 0, 4 4"));
  EXPECT_EQ(gfWithoutCollinear(pointsOf("0 0, 1 0, 1 0, 2 0"), false), pointsOf("0 0, 2 0"));
}

TEST(Clean, ASpikesTipStays) {
  EXPECT_EQ(gfWithoutCollinear(pointsOf("0 0, 2 0, 5 0, 4 0, 4 4"), false),
            pointsOf("0 0, 5 0, 4 0, 4 4"));
  EXPECT_EQ(gfWithoutCollinear(pointsOf("0 0, 1 0, 3 0, 2 0"), true), pointsOf("0 0, 3 0"));
  EXPECT_EQ(gfWithoutCollinear(pointsOf("1 1, 1 1"), true), pointsOf("1 1"));
  EXPECT_TRUE(gfWithoutCollinear(Points{}, true).empty());
}

TEST(Clean, NearlyCollinearAndBadPointsStay) {
  const Points nearly{{0, 0}, {0.5, std::nextafter(0.5, 1.0)}, {1, 1}};
  EXPECT_EQ(gfWithoutCollinear(nearly, false), nearly);
  const Points bad{{0, 0}, {1, 0}, {kInfinity, 0}, {3, 0}, {4, 0}, {5, 0}};
  EXPECT_EQ(gfWithoutCollinear(bad, false), (Points{{0, 0}, {1, 0}, {kInfinity, 0}, {3, 0}, {5, 0}}));
}

TEST(Clean, CleaningTwiceIsCleaningOnce) {
  RandomShapes random("clean twice", 400);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    const bool closed = random.chance(0.6);
    for (const double tolerance : {0.0, 0.5}) {
      const Points once = gfWithoutRepeated(points, closed, tolerance);
      const Points twice = gfWithoutRepeated(once, closed, tolerance);
      ASSERT_EQ(twice.size(), once.size());
      for (std::size_t i = 1; i < once.size(); ++i) {
        EXPECT_FALSE(once[i - 1] == once[i] || once[i - 1].distance(once[i]) <= tolerance);
      }
    }
    const Points once = gfWithoutCollinear(points, closed);
    EXPECT_EQ(gfWithoutCollinear(once, closed).size(), once.size());
  }
}

TEST(Clean, WithoutCollinearTheSameOutlineFromAnyStart) {
  RandomShapes random("clean start", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline(OutlineKind::eLattice, random.integer(3, 30));
    const Points clean = gfWithoutCollinear(points, true);
    // Every point that is gone lies on the outline that is left, and every one left is a corner.
    for (std::size_t i = 0; i < clean.size() && clean.size() > 2; ++i) {
      const auto& a = clean[(i + clean.size() - 1) % clean.size()];
      const auto& c = clean[(i + 1) % clean.size()];
      const double cross = gf_Cross(clean[i] - a, c - a);
      EXPECT_TRUE(cross != 0.0 || (clean[i] - a) * (c - clean[i]) < 0.0);
    }
  }
}

TEST(Clean, TheSameWalkFromAnotherStartAndTheOtherWay) {
  EXPECT_TRUE(gfSameWalk(kSquare, gfStartingAt(kSquare, 2), true));
  EXPECT_TRUE(gfSameWalk(kSquare, gfReversed(gfStartingAt(kSquare, 3), true), true));
  EXPECT_FALSE(gfSameWalk(kSquare, gfStartingAt(kSquare, 2), false));
  EXPECT_TRUE(gfSameWalk(kSquare, gfReversed(kSquare, false), false));
  EXPECT_FALSE(gfSameWalk(kSquare, pointsOf("0 0, 4 4, 4 0, 0 4"), true));
  EXPECT_FALSE(gfSameWalk(kSquare, pointsOf("0 0, 4 0, 4 4"), true));
  EXPECT_TRUE(gfSameWalk(Points{}, Points{}, true));
  EXPECT_FALSE(gfSameWalk(pointsOf("nan 0, 1 0"), pointsOf("nan 0, 1 0"), true));
  EXPECT_TRUE(gfSameWalk(gxContour(kSquare), gxContour(gfStartingAt(kSquare, 1))));
  EXPECT_FALSE(gfSameWalk(gxContour(kSquare), gxContour(kSquare, false)));
  RandomShapes random("same walk", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points points;
    const int n = random.integer(1, 12);
    for (int i = 0; i < n; ++i) {
      points.emplace_back(random.integer(0, 1), random.integer(0, 1));
    }
    Points other = gfStartingAt(points, static_cast<std::size_t>(random.integer(0, n - 1)));
    if (random.chance(0.5)) other = gfReversed(other, true);
    EXPECT_TRUE(gfSameWalk(points, other, true));
    Points spoiled = other;
    spoiled[static_cast<std::size_t>(random.integer(0, n - 1))] = {random.uniform(2, 3), 0};
    EXPECT_FALSE(gfSameWalk(points, spoiled, true));
    // By looking at every start and both directions.
    Points shuffled = points;
    std::swap(shuffled[0], shuffled[static_cast<std::size_t>(random.integer(0, n - 1))]);
    bool same = false;
    for (std::size_t start = 0; start < shuffled.size(); ++start) {
      const Points turned = gfStartingAt(shuffled, start);
      same = same || turned == points || gfReversed(turned, false) == points;
    }
    EXPECT_EQ(gfSameWalk(points, shuffled, true), same);
  }
}

}  // namespace
