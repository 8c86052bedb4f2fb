#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <velstd/convex_hull.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

Points hullOf(const Points& points) {
  Points hull;
  gfConvexHull(points, hull);
  return hull;
}

bool leftOf(const gxVector<2>& a, const gxVector<2>& b) {
  return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}

// The hull by its definition: a pair of points is an edge when no point lies to its right and none
// beyond its ends. O(n³).
Points slowHull(const Points& points) {
  Points finite;
  for (const auto& p : points) {
    const bool known = std::find(finite.begin(), finite.end(), p) != finite.end();
    if (std::isfinite(p.x()) && std::isfinite(p.y()) && !known) finite.push_back(p);
  }
  if (finite.empty()) return {};
  Points hull{*std::min_element(finite.begin(), finite.end(), leftOf)};
  while (hull.size() <= finite.size()) {
    const gxVector<2> from = hull.back();
    gxVector<2> to = from;
    for (const auto& p : finite) {
      if (p == from) continue;
      const int side = to == from ? -1 : gx_OrientationExact(from, to, p);
      // On the same line the farther one: the nearer lies between.
      const bool farther =
          side == 0 && ((leftOf(from, to) && leftOf(to, p)) || (leftOf(p, to) && leftOf(to, from)));
      if (side < 0 || farther) to = p;
    }
    if (to == from || to == hull.front()) break;
    hull.push_back(to);
  }
  return hull;
}

void expectHull(const Points& points) {
  const Points hull = hullOf(points);
  const std::size_t n = hull.size();
  for (std::size_t i = 0; i < n; ++i) {
    EXPECT_NE(std::find(points.begin(), points.end(), hull[i]), points.end())
        << "a corner that is no point";
    if (i > 0) {
      EXPECT_TRUE(leftOf(hull[0], hull[i])) << "does not begin at the lowest x";
    }
    if (n < 3) continue;
    EXPECT_GT(gx_OrientationExact(hull[i], hull[(i + 1) % n], hull[(i + 2) % n]), 0)
        << "corner " << (i + 1) % n;
    for (const auto& p : points) {
      if (!std::isfinite(p.x()) || !std::isfinite(p.y())) continue;
      ASSERT_GE(gx_Orientation(hull[i], hull[(i + 1) % n], p), 0) << "outside edge " << i;
    }
  }
}

}  // namespace

TEST(ConvexHull, SquareWithPointsOnItsEdgesAndInside) {
  EXPECT_EQ(hullOf({{2, 2}, {1, 0}, {0, 2}, {2, 0}, {1, 1}, {0, 1}, {0, 0}, {2, 1}}),
            (Points{{0, 0}, {2, 0}, {2, 2}, {0, 2}}));
}

TEST(ConvexHull, TriangleOfEitherDirectionComesOutCounterclockwise) {
  const Points expected{{-1, 1}, {3, 0}, {2, 5}};
  EXPECT_EQ(hullOf({{3, 0}, {2, 5}, {-1, 1}}), expected);
  EXPECT_EQ(hullOf({{2, 5}, {3, 0}, {-1, 1}}), expected);
}

TEST(ConvexHull, BeginsAtTheLowestOfTheLeftmostPoints) {
  EXPECT_EQ(hullOf({{0, 4}, {5, 2}, {0, -1}, {0, 0}}), (Points{{0, -1}, {5, 2}, {0, 4}}));
}

TEST(ConvexHull, NoPointsGiveAnEmptyHull) {
  Points hull{{1, 1}};
  gfConvexHull({}, hull);
  EXPECT_TRUE(hull.empty());
}

TEST(ConvexHull, EqualPointsGiveOneCorner) {
  EXPECT_EQ(hullOf({{3, 4}}), (Points{{3, 4}}));
  EXPECT_EQ(hullOf({{3, 4}, {3, 4}, {3, 4}}), (Points{{3, 4}}));
  EXPECT_EQ(hullOf({{0.0, 0.0}, {-0.0, 0.0}, {0.0, -0.0}}).size(), 1U);
}

TEST(ConvexHull, OfZerosOfEitherSignTheFirstIsGiven) {
  for (const std::size_t others : {0U, 100U}) {  // few points are taken another way than many
    Points points{{1, 1}, {-0.0, 0.0}, {5, 0}, {0.0, 0.0}, {0, 5}, {0.0, -0.0}};
    for (std::size_t i = 0; i < others; ++i) points.emplace_back(1, 1);
    const Points hull = hullOf(points);
    ASSERT_EQ(hull, (Points{{0, 0}, {5, 0}, {0, 5}}));
    EXPECT_TRUE(std::signbit(hull[0].x()));
    EXPECT_FALSE(std::signbit(hull[0].y()));
  }
}

TEST(ConvexHull, PointsThatGoAroundTwiceAreNotTakenForAnOutline) {
  // Seen from the middle every step is a turn to the left, and the second time around is the outer.
  for (const int count : {14, 200}) {
    Points points;
    for (int i = 0; i < count; ++i) {
      const double t = 2.0 * 6.283185307179586 * (i + 0.25) / count;
      const double r = i < count / 2 ? 1.0 : 2.0;
      points.emplace_back(r * std::cos(t), r * std::sin(t));
    }
    EXPECT_EQ(hullOf(points), slowHull(points));
  }
}

TEST(ConvexHull, PointsOnALineGiveItsEnds) {
  EXPECT_EQ(hullOf({{1, 1}, {3, 3}, {0, 0}, {2, 2}, {3, 3}}), (Points{{0, 0}, {3, 3}}));
  EXPECT_EQ(hullOf({{3, 0}, {1, 2}, {2, 1}}), (Points{{1, 2}, {3, 0}}));
  EXPECT_EQ(hullOf({{1, 5}, {1, 2}, {1, 9}, {1, 3}}), (Points{{1, 2}, {1, 9}}));
  EXPECT_EQ(hullOf({{7, 1}, {2, 1}, {4, 1}}), (Points{{2, 1}, {7, 1}}));
}

TEST(ConvexHull, OnePointNextToALineMakesATriangle) {
  Points points;
  for (int i = 0; i <= 100; ++i) points.emplace_back(i, i);
  points.emplace_back(50, std::nextafter(50.0, 0.0));
  EXPECT_EQ(hullOf(points), (Points{{0, 0}, {50, std::nextafter(50.0, 0.0)}, {100, 100}}));
}

TEST(ConvexHull, ResultMayReplaceTheInput) {
  Points points{{0, 0}, {1, 1}, {2, 0}, {1, 3}};
  gfConvexHull(points, points);
  EXPECT_EQ(points, (Points{{0, 0}, {2, 0}, {1, 3}}));
}

TEST(ConvexHull, PointsThatAreNotFiniteAreLeftOut) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(hullOf({{nan, 0}, {0, 0}, {1, 0}, {infinity, 7}, {0, 1}, {3, -infinity}, {nan, nan}}),
            (Points{{0, 0}, {1, 0}, {0, 1}}));
  EXPECT_TRUE(hullOf({{nan, 0}, {0, infinity}}).empty());
}

TEST(ConvexHull, TheEndsOfTheRangeDoNotOverflow) {
  const double most = DBL_MAX;
  EXPECT_EQ(hullOf({{0, 0}, {most, most}, {-most, most}, {most, -most}, {-most, -most}, {1, 1}}),
            (Points{{-most, -most}, {most, -most}, {most, most}, {-most, most}}));
  const double tiny = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(hullOf({{0, 0}, {tiny, tiny}, {3 * tiny, 0}, {0, 3 * tiny}}),
            (Points{{0, 0}, {3 * tiny, 0}, {0, 3 * tiny}}));
}

TEST(ConvexHull, RandomShapesOfEveryKindAgreeWithTheDefinition) {
  RandomShapes random("convex hull", 3000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    ASSERT_EQ(hullOf(points), slowHull(points));
    expectHull(points);
  }
}

// Large inputs of each kind, in the order of their outline: the linear way.
TEST(ConvexHull, LargeShapesContainAllTheirPoints) {
  RandomShapes random("convex hull, large", 3);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    for (int kind = 0; kind < static_cast<int>(OutlineKind::eCount); ++kind) {
      SCOPED_TRACE(kind);
      expectHull(random.placed(random.outline(static_cast<OutlineKind>(kind), 1500)));
    }
  }
}

TEST(ConvexHull, EveryOrderOfThePointsGivesTheSameHull) {
  RandomShapes random("convex hull, order", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points points;
    const int count = random.integer(3, 1000);
    const double noise = random.chance(0.5) ? 0.0 : 0.02;
    for (int i = 0; i < count; ++i) {
      const double t = 6.283185307179586 * i / count;
      const double r = 1.0 + random.uniform(-1.0, 1.0) * noise;
      points.emplace_back(1e3 + r * std::cos(t), r * std::sin(t));
    }
    const Points expected = hullOf(points);
    if (noise == 0.0 && count < 500) {
      ASSERT_GT(expected.size(), static_cast<std::size_t>(count) / 2);
    }
    ASSERT_EQ(hullOf(reversed(points)), expected);
    ASSERT_EQ(hullOf(rotatedStart(points, points.size() / 3)), expected);
    for (std::size_t i = points.size(); i-- > 1;) {
      std::swap(points[i], points[static_cast<std::size_t>(random.integer(0, static_cast<int>(i)))]);
    }
    ASSERT_EQ(hullOf(points), expected);
  }
}
