#include <cntr/internal/outline/box.h>
#include <gauge/inscribed.h>
#include <gauge/locate.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

TEST(Inscribed, DegenerateShapes) {
  EXPECT_EQ(gfInscribedCircle(gxRegion()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfInscribedCircle(gxRegion()).radius, 0.0);
  EXPECT_EQ(gfInscribedCircle(gxRegionSet()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfInscribedCircle(gxRegion(pointsOf("0 0, 1 nan, 2 2"))).status, gxStatus::eNotFinite);
  for (const char* text : {"3 3", "0 0, 6 6", "0 0, 6 6, 2 2"}) {
    const auto c = gfInscribedCircle(gxRegion(pointsOf(text)));
    EXPECT_EQ(c.status, gxStatus::eFlat) << text;
    EXPECT_EQ(c.radius, 0.0);
    EXPECT_EQ(c.centre, V(3, 3));
  }
  for (const double tolerance : {0.0, -1.0, std::nan("")}) {
    EXPECT_EQ(gfInscribedCircle(gxRegion(pointsOf("0 0, 1 0, 1 1")), tolerance).status,
              gxStatus::eBadArgument);
  }
}

TEST(Inscribed, OfPointsAndContoursAsOfTheRegion) {
  const Points points = pointsOf("0 0, 7 1, 8 6, 3 5, 1 9");
  const auto region = gfInscribedCircle(gxRegion(points), 1e-6);
  const auto outline = gfInscribedCircle(std::span<const V>(points), 1e-6);
  const auto contour = gfInscribedCircle(gxContour(points, true), 1e-6);
  for (const auto& c : {outline, contour}) {
    EXPECT_EQ(c.status, gxStatus::eOk);
    EXPECT_EQ(c.centre, region.centre);
    EXPECT_EQ(c.radius, region.radius);
    EXPECT_EQ(c.gap, region.gap);
    EXPECT_EQ(c.touch, region.touch);
    EXPECT_EQ(c.looks, region.looks);
  }
  EXPECT_EQ(gfInscribedCircle(std::span<const V>(points), 1e-9, 3).status, gxStatus::eCapped);
  EXPECT_EQ(gfInscribedCircle(gxContour(points, true), 1e-9, 3).status, gxStatus::eCapped);
}

TEST(Inscribed, AnOpenContourHasNoInside) {
  const auto open = gfInscribedCircle(gxContour(pointsOf("0 0, 4 0, 4 4"), false));
  EXPECT_EQ(open.status, gxStatus::eNotClosed);
  EXPECT_TRUE(std::isnan(open.radius) && std::isnan(open.centre.x()));
  EXPECT_EQ(gfInscribedCircle(gxContour()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfInscribedCircle(gxContour(pointsOf("0 0, nan 1"), false)).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfInscribedCircle(std::span<const V>()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfInscribedCircle(std::span<const V>(pointsOf("0 0, 6 6"))).status, gxStatus::eFlat);
}

TEST(Inscribed, OfATriangleToTheLastDigits) {
  const auto c = gfInscribedCircle(gxRegion(pointsOf("0 0, 4 0, 0 3")));
  EXPECT_EQ(c.status, gxStatus::eOk);
  EXPECT_NEAR(c.radius, 1.0, 1e-15);
  EXPECT_NEAR(c.centre.distance({1, 1}), 0.0, 1e-14);
  EXPECT_LE(c.gap, 1e-9);
  EXPECT_LT(c.looks, 1000U);
  EXPECT_TRUE(c.touch.valid());
}

TEST(Inscribed, APlateauEnds) {
  // All points of a line, or of a ring, are equally good.
  const auto c = gfInscribedCircle(gxRegion(pointsOf("0 0, 3 0, 3 1, 0 1")), 1e-12);
  EXPECT_EQ(c.status, gxStatus::eOk);
  EXPECT_NEAR(c.radius, 0.5, 1e-15);
  EXPECT_LT(c.looks, 1000U);
  const auto slanted = gfInscribedCircle(gxRegion(pointsOf("0 0, 80 60, 77 64, -3 4")), 1e-12);
  EXPECT_EQ(slanted.status, gxStatus::eOk);
  EXPECT_NEAR(slanted.radius, 2.5, 1e-13);
  gxRegion ring(regularPolygon(360));
  Points inner;
  for (const V& p : regularPolygon(360)) inner.push_back(p * 0.5);
  ring.holes({Handle(new gxRegion(inner))});
  const auto around = gfInscribedCircle(ring, 1e-9);
  EXPECT_EQ(around.status, gxStatus::eOk);
  EXPECT_NEAR(around.radius, 0.25, 2e-5);
}

TEST(Inscribed, ASliverEnds) {
  const auto c = gfInscribedCircle(gxRegion(pointsOf("0 0, 1000 0, 1000 1e-6, 0 1e-6")));
  EXPECT_EQ(c.status, gxStatus::eOk);
  EXPECT_NEAR(c.radius, 5e-7, 1e-15);
}

TEST(Inscribed, ASliverThatLiesAskewEnds) {
  // 1000 by 1e-4, along (0.8, 0.6).
  for (const double scale : {1e-6, 1.0, 1e6}) {
    const Points points{{0, 0},
                        {800 * scale, 600 * scale},
                        {(800 - 6e-5) * scale, (600 + 8e-5) * scale},
                        {-6e-5 * scale, 8e-5 * scale}};
    const auto c = gfInscribedCircle(gxRegion(points));
    EXPECT_EQ(c.status, gxStatus::eOk) << scale;
    EXPECT_NEAR(c.radius, 5e-5 * scale, 1e-12 * scale);
    EXPECT_LT(c.looks, 20000U);
  }
}

TEST(Inscribed, AThinRingHasPlateausAllAround) {
  gxRegion ring(regularPolygon(500));
  Points inner;
  for (const V& p : regularPolygon(500)) inner.push_back(p * 0.999);
  ring.holes({Handle(new gxRegion(inner))});
  const auto c = gfInscribedCircle(ring);
  EXPECT_EQ(c.status, gxStatus::eOk);
  EXPECT_NEAR(c.radius, 5e-4, 2e-5);
  EXPECT_LE(c.gap, 1e-9 * c.radius + 1e-14);
}

TEST(Inscribed, ADenseCircleIsFast) {
  // Near the centre all edges are equally far: looking there for the nearest one 20,000 times would take
  // long.
  const auto c = gfInscribedCircle(gxRegion(regularPolygon(20000)));
  EXPECT_EQ(c.status, gxStatus::eOk);
  EXPECT_NEAR(c.radius, std::cos(3.141592653589793 / 20000), 1e-14);
  EXPECT_LT(c.looks, 10000U);
}

TEST(Inscribed, HeldByThreeTipsAlone) {
  // Three needles point to the middle of a large plate: no side of an edge is touched.
  gxRegion plate(pointsOf("-100 -100, 100 -100, 100 100, -100 100"));
  std::vector<Handle> needles;
  for (int k = 0; k < 3; ++k) {
    const gxRadian angle(0.4 + k * 2.0943951023931953);
    const V tip(5.0, angle);
    const V along = V(1.0, angle);
    const V side(-along.y(), along.x());
    needles.emplace_back(
        new gxRegion(Points{tip, tip + along * 80 + side * 20, tip + along * 80 - side * 20}));
  }
  plate.holes(needles);
  const auto c = gfInscribedCircle(plate, 1e-12);
  EXPECT_EQ(c.status, gxStatus::eOk);
  const gxLocator locator(plate);
  for (int i = 0; i <= 200; ++i) {
    for (int j = 0; j <= 200; ++j) {
      EXPECT_LE(-locator.signedDistance({i - 100.0, j - 100.0}), c.radius * (1 + 1e-12));
    }
  }
}

TEST(Inscribed, AnOutlineThatCrossesItselfIsReadEvenOdd) {
  // A bow tie; a pentagram, whose middle is outside.
  EXPECT_NEAR(gfInscribedCircle(gxRegion(pointsOf("0 0, 4 4, 4 0, 0 4"))).radius, 2 * std::sqrt(2.0) - 2,
              1e-14);
  const Points p = regularPolygon(5);
  const auto c = gfInscribedCircle(gxRegion(Points{p[0], p[2], p[4], p[1], p[3]}));
  EXPECT_EQ(c.status, gxStatus::eOk);
  // A point of the star: 36 degrees at the tip, sides to the inner pentagon of radius 1 / golden ratio².
  const double inner = 0.3819660112501051;
  const double base = inner * std::sin(0.6283185307179586);
  const double height = 1 - inner * std::cos(0.6283185307179586);
  EXPECT_NEAR(c.radius, base * height / (base + std::hypot(base, height)), 1e-14);
}

TEST(Inscribed, TheCapIsKeptAndTheGapTold) {
  const auto c = gfInscribedCircle(gxRegion(pointsOf("0 0, 9 1, 12 7, 3 5")), 1e-12, 6);
  EXPECT_EQ(c.status, gxStatus::eCapped);
  const auto whole = gfInscribedCircle(gxRegion(pointsOf("0 0, 9 1, 12 7, 3 5")), 1e-12);
  EXPECT_GE(c.radius + c.gap, whole.radius);
  EXPECT_LE(c.radius, whole.radius + 1e-12);
}

TEST(Inscribed, KnownShapesInAnyPlace) {
  for (const KnownShape& known : knownShapes()) {
    for (const bool turn : {false, true}) {
      for (const double scale : {1e-3, 1.0, 1e6}) {
        for (const V offset : {V(0, 0), V(1e6, -1e6)}) {
          const KnownShape s = placed(known, turn, scale, offset);
          const auto c = gfInscribedCircle(s.set());
          EXPECT_EQ(c.status, gxStatus::eOk) << s.name;
          EXPECT_NEAR(c.radius, s.inscribed, s.inscribed * 1e-9 + offset.len() * 1e-15) << s.name;
          EXPECT_NEAR(gxLocator(s.set()).signedDistance(c.centre), -c.radius,
                      s.inscribed * 1e-12 + offset.len() * 1e-15)
              << s.name;
        }
      }
    }
  }
}

TEST(Inscribed, RandomShapesAgainstManyPoints) {
  RandomShapes random("inscribed", 40);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto shape = random.outlineWithHoles();
    gxRegion region(shape.outline);
    std::vector<Handle> holes;
    for (const auto& hole : shape.holes) holes.emplace_back(new gxRegion(hole));
    region.holes(holes);
    const auto c = gfInscribedCircle(region, 1e-6);
    ASSERT_EQ(c.status, gxStatus::eOk);
    const gxLocator locator(region);
    EXPECT_NEAR(locator.signedDistance(c.centre), -c.radius, 1e-12 * c.radius);
    gx_Box box;
    for (const V& p : shape.outline) box.add(p);
    for (int i = 0; i <= 60; ++i) {
      for (int j = 0; j <= 60; ++j) {
        const V p(box.lowX + (box.highX - box.lowX) * i / 60,
                  box.lowY + (box.highY - box.lowY) * j / 60);
        EXPECT_LE(-locator.signedDistance(p), c.radius * (1 + 1e-6));
      }
    }
  }
}

// The largest radius about places near the best of a grid, each moved to where it is greatest nearby.
double plainRadius(const gxLocator& locator, const V& low, const V& high) {
  std::vector<std::pair<double, V>> found;
  constexpr int kCells = 150;
  for (int i = 0; i <= kCells; ++i) {
    for (int j = 0; j <= kCells; ++j) {
      const V p(low.x() + (high.x() - low.x()) * i / kCells,
                low.y() + (high.y() - low.y()) * j / kCells);
      found.emplace_back(locator.signedDistance(p), p);
    }
  }
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  double best = 0.0;
  for (int k = 0; k < 60; ++k) {
    auto [distance, p] = found[static_cast<std::size_t>(k)];
    for (double step = (high.x() - low.x()) / kCells; step > 1e-9;) {
      double least = distance;
      V to = p;
      for (int d = 0; d < 16; ++d) {
        const V q = p + V(step, gxRadian(0.39269908169872414 * d));
        const double there = locator.signedDistance(q);
        if (there < least) {
          least = there;
          to = q;
        }
      }
      if (!(least < distance)) step *= 0.5;
      distance = least;
      p = to;
    }
    best = std::max(best, -distance);
  }
  return best;
}

TEST(Inscribed, TheWidestGapAmongManyHoles) {
  // A plate with some hundred splinters in it, all wound alike: many gaps are about as wide, and the first search
  // seldom finds the widest.
  RandomShapes random("inscribed many holes", 6);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const int rows = random.integer(4, 18);
    const bool isTurned = random.chance(0.5);
    const double longest =
        random.chance(0.5) ? 0.05 : 3.0;  // of those like points only corners are touched
    const double size = 10.0 * rows;
    const auto turned = [&](const Points& points) { return isTurned ? reversed(points) : points; };
    std::vector<Handle> holes;
    for (int i = 0; i < rows; ++i) {
      for (int j = 0; j < rows; ++j) {
        const V middle(10.0 * i + 5 + random.uniform(-1.5, 1.5),
                       10.0 * j + 5 + random.uniform(-1.5, 1.5));
        const V along(longest * random.uniform(0.2, 1), gxRadian(random.uniform(0, 6.28)));
        const V side = V(-along.y(), along.x()) * random.uniform(0.05, 0.5);
        const Points bar{middle - along - side, middle + along - side, middle + along + side};
        holes.emplace_back(new gxRegion(turned(bar)));
      }
    }
    gxRegion plate(turned({{0, size}, {size, size}, {size, 0}, {0, 0}}));
    plate.holes(holes);
    const auto c = gfInscribedCircle(plate);
    EXPECT_EQ(c.status, gxStatus::eOk);
    const double plain = plainRadius(gxLocator(plate), {0, 0}, {size, size});
    EXPECT_GE(c.radius, plain - 2e-9 * plain);
    EXPECT_LE(c.radius, plain * 1.2);
  }
}

// A triangular chamber whose walls are 10 from its middle, with a pin in front of the middle of every wall, its
// tip `reach` from the middle: the circle is held by the three tips alone.
Handle chamber(const V& middle, double reach, double halfAngle, bool isTurned) {
  const auto turned = [&](const Points& points) { return isTurned ? reversed(points) : points; };
  Points walls;
  std::vector<Handle> pins;
  for (int k = 0; k < 3; ++k) {
    const V out(1.0, gxRadian(0.3 + k * 2.0943951023931953));
    const V across(-out.y(), out.x());
    walls.push_back(middle - out * 20.0);
    const V tip = middle + out * reach;
    const V back = tip + out * (0.1 * std::cos(halfAngle));
    const V side = across * (0.1 * std::sin(halfAngle));
    pins.emplace_back(new gxRegion(turned({tip, back - side, back + side})));
  }
  auto* plate = new gxRegion(turned(walls));
  plate->holes(pins);
  return Handle(plate);
}

TEST(Inscribed, OneOfManyChambersIsAHairWider) {
  // The first search cannot look into 100 chambers, so the proof must find the widest one. There the circle is
  // free in the middle of the way around each tip alone; the ends of the way are too near to the wall behind.
  constexpr double kDegree = 0.017453292519943295;
  for (const double halfAngle : {3 * kDegree, 30 * kDegree, 60 * kDegree}) {
    for (const bool isTurned : {false, true}) {
      for (const int wider : {17, 38, 59, 80}) {
        std::vector<Handle> chambers;
        for (int i = 0; i < 100; ++i) {
          chambers.push_back(chamber(V(40.0 * (i % 10), 40.0 * static_cast<double>(i / 10)),
                                     i == wider ? 9.42 : 9.4, halfAngle, isTurned));
        }
        gxRegionSet set;
        set.regions(chambers);
        const auto c = gfInscribedCircle(set);
        EXPECT_EQ(c.status, gxStatus::eOk);
        EXPECT_NEAR(c.radius, 9.42, 1e-8) << halfAngle << ' ' << isTurned << ' ' << wider;
        EXPECT_EQ(c.region, wider);
      }
    }
  }
}

TEST(Inscribed, TheEndsOfTheRange) {
  for (const double scale : {1e300, 1e-300}) {
    const auto c = gfInscribedCircle(gxRegion(Points{{0, 0}, {4 * scale, 0}, {0, 3 * scale}}));
    EXPECT_NEAR(c.radius / scale, 1.0, 1e-14);
    EXPECT_NEAR(c.centre.x() / scale, 1.0, 1e-13);
  }
}

TEST(Inscribed, Prints) {
  std::ostringstream out;
  out << gfInscribedCircle(gxRegion());
  EXPECT_EQ(out.str(), "centre (nan, nan) radius 0 gap 0 touches no place empty");
}

}  // namespace
