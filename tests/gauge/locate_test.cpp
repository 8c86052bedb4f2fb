// Covers gauge/internal/locator_data.h
#include <gauge/locate.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <sstream>
#include <thread>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

// 0 ≤ x ≤ 40, 0 ≤ y ≤ 30 with a hole of 25 to 35 by 10 to 20.
gxRegion plate() {
  gxRegion region(pointsOf("0 0, 40 0, 40 30, 0 30"));
  region.holes({Handle(new gxRegion(pointsOf("25 10, 35 10, 35 20, 25 20")))});
  return region;
}

// Both ways to ask, which have to agree.
gxLocation locate(const gxRegion& region, const V& p, double tolerance = 0.0) {
  const auto one = gfLocate(region, p, tolerance);
  const auto indexed = gxLocator(region).locate(p, tolerance);
  EXPECT_EQ(one.status, indexed.status);
  EXPECT_EQ(one.state, indexed.state);
  EXPECT_EQ(one.region, indexed.region);
  EXPECT_EQ(one.place.ring, indexed.place.ring);
  EXPECT_EQ(one.place.edge, indexed.place.edge);
  return one;
}

TEST(Locate, InsideOutsideAndOnTheBorder) {
  const gxRegion region = plate();
  EXPECT_EQ(locate(region, {5, 5}).state, gxState::eInside);
  EXPECT_EQ(locate(region, {30, 15}).state, gxState::eOutside);
  EXPECT_EQ(locate(region, {-1, 5}).state, gxState::eOutside);
  EXPECT_EQ(locate(region, {5, 5}).region, 0);
  EXPECT_EQ(locate(region, {30, 15}).region, -1);
  const auto left = locate(region, {0, 7.5});
  EXPECT_EQ(left.state, gxState::eBorder);
  EXPECT_EQ(left.place, (gxPlace{-1, 0, 0.75, {0, 7.5}}));  // the closing edge, from (0, 30) to (0, 0)
  const auto hole = locate(region, {35, 12.5});
  EXPECT_EQ(hole.place, (gxPlace{0, 2, 0.25, {35, 12.5}}));
}

TEST(Locate, LeftAndRightBordersAndCornersAreAlike) {
  for (const V p : {V(0, 10), V(40, 10), V(10, 0), V(10, 30), V(0, 0), V(40, 0), V(40, 30), V(0, 30)}) {
    EXPECT_EQ(locate(plate(), p).state, gxState::eBorder);
  }
  for (const V p : {V(-0x1p-1074, 10), V(std::nextafter(40, 50), 10), V(10, -0x1p-1074)}) {
    EXPECT_EQ(locate(plate(), p).state, gxState::eOutside);
  }
  for (const V p : {V(0x1p-1074, 10), V(std::nextafter(40, 0), 10), V(10, 0x1p-1074)}) {
    EXPECT_EQ(locate(plate(), p).state, gxState::eInside);
  }
}

TEST(Locate, ACornerBelongsToTheEdgeThatComesFirst) {
  EXPECT_EQ(locate(plate(), {0, 0}).place.edge, 0);
  EXPECT_EQ(locate(plate(), {40, 0}).place.edge, 1);
  EXPECT_EQ(locate(plate(), {0, 30}).place.edge, 0);
}

TEST(Locate, WithinATolerance) {
  const auto near = locate(plate(), {-0.5, 7.5}, 0.5);
  EXPECT_EQ(near.state, gxState::eBorder);
  EXPECT_EQ(near.place, (gxPlace{-1, 0, 0.75, {0, 7.5}}));
  EXPECT_EQ(locate(plate(), {-0.5, 7.5}, std::nextafter(0.5, 0)).state, gxState::eOutside);
  EXPECT_EQ(locate(plate(), {24, 15}, 1).place.ring, 0);
  EXPECT_EQ(locate(plate(), {24, 15}, 0.9).state, gxState::eInside);
  EXPECT_EQ(locate(plate(), {30, 15}, 1e9).state, gxState::eBorder);
  EXPECT_EQ(locate(plate(), {5, 5}, -1).status, gxStatus::eBadArgument);
  EXPECT_EQ(locate(plate(), {5, 5}, std::nan("")).status, gxStatus::eBadArgument);
}

TEST(Locate, DegenerateShapesAndQueries) {
  EXPECT_EQ(locate(gxRegion(), {0, 0}).status, gxStatus::eEmpty);
  EXPECT_EQ(locate(plate(), {NAN, 0}).status, gxStatus::eNotFinite);
  EXPECT_EQ(locate(plate(), {0, HUGE_VAL}).status, gxStatus::eNotFinite);
  EXPECT_EQ(locate(gxRegion(pointsOf("0 0, nan 1, 1 1")), {0, 0}).status, gxStatus::eNotFinite);
  EXPECT_EQ(locate(gxRegion(pointsOf("3 4")), {3, 4}).state, gxState::eBorder);
  EXPECT_EQ(locate(gxRegion(pointsOf("3 4")), {3, 5}).state, gxState::eOutside);
  EXPECT_EQ(locate(gxRegion(pointsOf("0 0, 2 2")), {1, 1}).state, gxState::eBorder);
  EXPECT_EQ(locate(gxRegion(pointsOf("0 0, 2 2")), {1, 1.5}).state, gxState::eOutside);
  EXPECT_TRUE(std::isnan(gfSignedDistance(gxRegion(), {0, 0})));
  EXPECT_TRUE(std::isnan(gfSignedDistance(plate(), {NAN, 0})));
  EXPECT_TRUE(std::isnan(gxLocator(plate()).signedDistance({NAN, 0})));
  EXPECT_EQ(gfNearest(gxRegion(), {0, 0}).status, gxStatus::eEmpty);
  EXPECT_EQ(gxLocator(gxRegion()).nearest({0, 0}).status, gxStatus::eEmpty);
  EXPECT_EQ(gfNearest(gxRegion(pointsOf("3 4")), {0, 0}).distance, 5.0);
  EXPECT_EQ(gxLocator(gxRegion(pointsOf("3 4"))).nearest({0, 0}).place.edge, 0);
}

TEST(Locate, AnOpenContourEnclosesNothing) {
  const gxContour open(pointsOf("0 0, 4 0, 4 4, 0 4"), false);
  EXPECT_EQ(gfLocate(open, {2, 2}).state, gxState::eOutside);
  EXPECT_EQ(gxLocator(open).locate({2, 2}).state, gxState::eOutside);
  EXPECT_EQ(gfLocate(open, {0, 2}).state, gxState::eOutside);
  EXPECT_EQ(gfLocate(open, {2, 4}).place, (gxPlace{-1, 2, 0.5, {2, 4}}));
  EXPECT_EQ(gxLocator(open).locate({2, 4}).place, (gxPlace{-1, 2, 0.5, {2, 4}}));
  EXPECT_EQ(gfSignedDistance(open, {2, 3}), 1.0);
  EXPECT_EQ(gfLocate(gxContour(pointsOf("0 0, 4 0, 4 4, 0 4")), {2, 2}).state, gxState::eInside);
}

TEST(Locate, SignedDistanceIsNegativeInTheMaterial) {
  for (const auto& [p, d] : {std::pair(V(5, 15), -5.0),
                             {V(30, 15), 5.0},
                             {V(-3, -4), 5.0},
                             {V(23, 15), -2.0},
                             {V(0, 3), 0.0},
                             {V(25, 20), 0.0}}) {
    EXPECT_EQ(gfSignedDistance(plate(), p), d);
    EXPECT_EQ(gxLocator(plate()).signedDistance(p), d);
    EXPECT_FALSE(d == 0.0 && std::signbit(gfSignedDistance(plate(), p)));
  }
  // The documented example of the tool.
  EXPECT_DOUBLE_EQ(gfSignedDistance(gxRegion(pointsOf("50 0, 54 0, 50 3")), {30, 15}),
                   23.323807579381203);
}

TEST(Locate, TheNearestPlace) {
  const auto n = gfNearest(plate(), {30, 12});
  EXPECT_EQ(n.status, gxStatus::eOk);
  EXPECT_EQ(n.distance, 2.0);
  EXPECT_EQ(n.place, (gxPlace{0, 1, 0.5, {30, 10}}));
  EXPECT_EQ(gxLocator(plate()).nearest({30, 12}).place, n.place);
  // Equally near to all four sides of the hole: the closing edge is the first.
  EXPECT_EQ(gfNearest(plate(), {30, 15}).place.edge, 0);
  EXPECT_EQ(gxLocator(plate()).nearest({30, 15}).place.edge, 0);
}

TEST(Locate, KNearestEdgesAndVerticesWithTies) {
  const gxLocator locator(plate());
  const auto edges = locator.nearestEdges({30, 15}, 5);
  ASSERT_EQ(edges.size(), 5U);
  for (long k = 0; k < 4; ++k) {
    EXPECT_EQ(edges[static_cast<std::size_t>(k)].place.edge, k);
    EXPECT_EQ(edges[static_cast<std::size_t>(k)].place.ring, 0);
    EXPECT_EQ(edges[static_cast<std::size_t>(k)].distance, 5.0);
  }
  EXPECT_EQ(edges[4].place.ring, -1);
  EXPECT_EQ(edges[4].distance, 10.0);
  EXPECT_EQ(locator.nearestEdges({30, 15}, 100).size(), 8U);
  EXPECT_TRUE(locator.nearestEdges({30, 15}, 0).empty());
  EXPECT_TRUE(locator.nearestEdges({NAN, 15}, 3).empty());
  const auto vertices = locator.nearestVertices({41, 1}, 2);
  ASSERT_EQ(vertices.size(), 2U);
  EXPECT_EQ(vertices[0].place, (gxPlace{-1, 1, 1.0, {40, 0}}));
  EXPECT_DOUBLE_EQ(vertices[0].distance, std::sqrt(2.0));
  EXPECT_EQ(locator.edgesWithin({30, 15}, 5).size(), 4U);
  EXPECT_EQ(locator.edgesWithin({30, 15}, 4.999).size(), 0U);
  EXPECT_EQ(locator.verticesWithin({30, 15}, 8).size(), 4U);
  EXPECT_TRUE(locator.verticesWithin({30, 15}, -1).empty());
  EXPECT_TRUE(locator.verticesWithin({30, 15}, NAN).empty());
  const auto open = gxLocator(gxContour(pointsOf("0 0, 4 0, 4 4"), false)).nearestVertices({0, 1}, 9);
  ASSERT_EQ(open.size(), 3U);
  EXPECT_EQ(open[0].place, (gxPlace{-1, 0, 0.0, {0, 0}}));
}

TEST(Locate, SetsNameTheRegion) {
  gxRegionSet set;
  for (int i = 0; i < 20; ++i) {
    const double x = 10.0 * i;
    set.add(Handle(new gxRegion(Points{{x, 0}, {x + 12, 0}, {x + 12, 5}, {x, 5}})));
  }
  const gxLocator locator(set);
  const Points queries = pointsOf("5 2, 11 2, 12 2, 10 2, 300 0, 191 4, 201.5 1");
  EXPECT_EQ(locator.which(queries), (std::vector<long>{0, 0, 0, 0, -1, 18, 19}));
  EXPECT_EQ(gfWhich(set, queries), locator.which(queries));
  for (const V& q : queries) {
    EXPECT_EQ(gfLocate(set, q).region, locator.locate(q).region);
    EXPECT_EQ(gfLocate(set, q).state, locator.locate(q).state);
    EXPECT_EQ(gfNearest(set, q).region, locator.nearest(q).region);
    EXPECT_EQ(gfSignedDistance(set, q), locator.signedDistance(q));
  }
  EXPECT_EQ(locator.nearest({300, 2}).region, 19);
  EXPECT_EQ(locator.nearest({300, 2}).distance, 98.0);
  EXPECT_EQ(gxLocator(gxRegionSet()).status(), gxStatus::eEmpty);
  EXPECT_EQ(gxLocator(gxRegionSet()).which(queries)[0], -1);
  set.add(nullptr);
  EXPECT_THROW(gxLocator{set}, gxBadPointer);
}

TEST(Locate, IslandsInHolesAreMaterial) {
  for (const KnownShape& s : knownShapes()) {
    if (s.name != "island") continue;
    const gxRegion region = s.region();
    EXPECT_EQ(locate(region, {0.5, 3}).state, gxState::eInside);
    EXPECT_EQ(locate(region, {1.5, 3}).state, gxState::eOutside);
    EXPECT_EQ(locate(region, {3, 3}).state, gxState::eInside);
    EXPECT_EQ(locate(region, {4, 3}).place.ring, 1);
    EXPECT_EQ(gfSignedDistance(region, {3, 3}), -1.0);
  }
}

TEST(Locate, RandomRegionsAgainstAllEdges) {
  RandomShapes random("locate", 150);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto shape = random.outlineWithHoles();
    gxRegion region(shape.outline);
    std::vector<Handle> holes;
    for (const auto& hole : shape.holes) holes.emplace_back(new gxRegion(hole));
    region.holes(holes);
    const gxLocator locator(region);
    for (int k = 0; k < 30; ++k) {
      const V p =
          random.pointNear(random.chance(0.5) || shape.holes.empty() ? shape.outline : shape.holes[0]);
      const auto one = gfLocate(region, p);
      EXPECT_EQ(one.state, locator.locate(p).state);
      const auto near = gfNearest(region, p);
      const auto indexed = locator.nearest(p);
      EXPECT_EQ(near.status, indexed.status);
      if (near.status != gxStatus::eOk) continue;
      EXPECT_NEAR(near.distance, indexed.distance, 1e-14 * (1 + near.distance));
      long double least = HUGE_VALL;
      const auto measure = [&](const Points& ring) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
          const V& a = ring[i];
          const V& b = ring[(i + 1) % ring.size()];
          const long double dx = static_cast<long double>(b.x()) - a.x(),
                            dy = static_cast<long double>(b.y()) - a.y();
          const long double vx = static_cast<long double>(p.x()) - a.x(),
                            vy = static_cast<long double>(p.y()) - a.y();
          const long double whole = dx * dx + dy * dy;
          const long double t = whole > 0 ? std::clamp((vx * dx + vy * dy) / whole, 0.0L, 1.0L) : 0.0L;
          least = std::min(least, std::hypot(vx - t * dx, vy - t * dy));
        }
      };
      measure(shape.outline);
      for (const auto& hole : shape.holes) measure(hole);
      EXPECT_NEAR(near.distance, static_cast<double>(least), 1e-14 * (1 + near.distance));
      EXPECT_NEAR((near.place.point - p).len(), near.distance, 1e-13 * (1 + near.distance));
      const auto five = locator.nearestEdges(p, 5);
      EXPECT_EQ(five[0].distance, indexed.distance);
      const auto within = locator.edgesWithin(p, five.back().distance);
      ASSERT_GE(within.size(), five.size());
      for (std::size_t i = 0; i < five.size(); ++i) EXPECT_EQ(within[i].place, five[i].place);
    }
  }
}

TEST(Locate, TheEndsOfTheRange) {
  for (const double scale : {1e300, 4e306, 1e-300}) {
    Points points = pointsOf("0 0, 40 0, 40 30, 0 30");
    for (V& p : points) p = p * scale;
    const gxRegion region(points);
    EXPECT_EQ(locate(region, V(20, 15) * scale).state, gxState::eInside);
    EXPECT_EQ(locate(region, V(40, 15) * scale).state, gxState::eBorder);
    EXPECT_DOUBLE_EQ(gfSignedDistance(region, V(20, 15) * scale) / scale, -15.0);
    EXPECT_DOUBLE_EQ(gxLocator(region).signedDistance(V(20, 10) * scale) / scale, -10.0);
  }
  // A small shape and a query far away, and the other way around.
  const gxRegion small(pointsOf("0 0, 1e-300 0, 1e-300 1e-300"));
  EXPECT_DOUBLE_EQ(gxLocator(small).signedDistance({3e10, 4e10}), 5e10);
  EXPECT_DOUBLE_EQ(gfSignedDistance(small, {3e10, 4e10}), 5e10);
  EXPECT_EQ(locate(small, {3e10, 4e10}).state, gxState::eOutside);
}

TEST(Locate, AtAnOffsetOfAMillionAsAtZero) {
  const Points base = pointsOf("0 0, 40 0, 40 30, 0 30");
  Points moved;
  for (const V& p : base) moved.push_back(p + V(1e6, -1e6));
  RandomShapes random("locate far away", 1);
  random.next();
  for (int k = 0; k < 200; ++k) {
    const V p(random.integer(-40, 200) / 4.0, random.integer(-40, 200) / 4.0);
    EXPECT_EQ(gxLocator(gxRegion(base)).signedDistance(p),
              gxLocator(gxRegion(moved)).signedDistance(p + V(1e6, -1e6)));
  }
}

TEST(Locate, ManyPointsAndManyThreads) {
  const gxLocator locator(plate());
  Points queries;
  for (int i = 0; i < 4000; ++i) queries.emplace_back(i % 71 - 10, i / 71 - 10);
  const auto states = gfLocateEach(locator, queries);
  const auto distances = gfSignedDistances(locator, queries);
  const auto nearest = gfNearestEach(locator, queries);
  std::vector<double> other;
  std::thread second([&] { other = locator.signedDistances(queries); });
  const auto again = locator.signedDistances(queries);
  second.join();
  EXPECT_EQ(again, other);
  for (std::size_t i = 0; i < queries.size(); ++i) {
    EXPECT_EQ(states[i], locator.locate(queries[i]).state);
    EXPECT_EQ(distances[i], again[i]);
    EXPECT_EQ(nearest[i].distance, std::fabs(distances[i]));
  }
}

TEST(Locate, Prints) {
  std::ostringstream out;
  out << gfLocate(plate(), {0, 7.5}) << "; " << gfLocate(plate(), {NAN, 0}) << "; "
      << gfNearest(plate(), {30, 12});
  EXPECT_EQ(out.str(),
            "border region 0 ring -1 edge 0 t 0.75 at (0, 7.5); outside not_finite; distance 2 region 0 "
            "ring 0 edge 1 t 0.5 at (30, 10)");
}

}  // namespace
