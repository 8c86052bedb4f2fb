#include <gauge/internal/segments.h>
#include <gauge/locate.h>
#include <gauge/wall.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/placements.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <sstream>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

gxWall wallOf(const char* text) {
  return gfSmallestWall(gxRegion(pointsOf(text)));
}

TEST(Wall, DegenerateShapes) {
  EXPECT_EQ(gfSmallestWall(gxRegion()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfSmallestWall(gxRegion()).wall, HUGE_VAL);
  EXPECT_EQ(gfSmallestWall(gxRegionSet()).status, gxStatus::eEmpty);
  EXPECT_EQ(wallOf("0 0, nan 1, 2 2").status, gxStatus::eNotFinite);
  EXPECT_TRUE(std::isnan(wallOf("0 0, nan 1, 2 2").wall));
  for (const char* text : {"1 1", "0 0, 1 1", "0 0, 1 1, 3 3", "2 2, 2 2, 2 2"}) {
    EXPECT_EQ(wallOf(text).status, gxStatus::eNone) << text;
    EXPECT_EQ(wallOf(text).wall, HUGE_VAL);
  }
}

TEST(Wall, OfPointsAndContoursAsOfTheRegion) {
  const Points points = pointsOf("0 0, 8 0, 8 4, 5 4, 4 1, 3 4, 0 4");
  const gxWall region = gfSmallestWall(gxRegion(points));
  const gxWall outline = gfSmallestWall(std::span<const V>(points));
  const gxWall contour = gfSmallestWall(gxContour(points, true));
  for (const gxWall& w : {outline, contour}) {
    EXPECT_EQ(w.status, gxStatus::eOk);
    EXPECT_EQ(w.wall, region.wall);
    EXPECT_EQ(w.from, region.from);
    EXPECT_EQ(w.to, region.to);
    EXPECT_EQ(w.region, 0);
  }
}

TEST(Wall, AnOpenContourHasNone) {
  const gxWall open = gfSmallestWall(gxContour(pointsOf("0 0, 4 0, 4 4"), false));
  EXPECT_EQ(open.status, gxStatus::eNotClosed);
  EXPECT_TRUE(std::isnan(open.wall));
  EXPECT_EQ(gfSmallestWall(gxContour()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfSmallestWall(gxContour(pointsOf("0 0, nan 1"), false)).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfSmallestWall(std::span<const V>()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfSmallestWall(std::span<const V>(pointsOf("0 0, 6 6"))).status, gxStatus::eNone);
}

TEST(Wall, ATriangleHasNone) {
  EXPECT_EQ(wallOf("0 0, 4 0, 0 3").status, gxStatus::eNone);
  EXPECT_EQ(wallOf("0 0, 100 0, 0 0.001").status, gxStatus::eNone);
}

TEST(Wall, BetweenParallelEdgesWithBothPlaces) {
  const auto w = wallOf("0 0, 5 0, 5 2, 0 2");
  EXPECT_EQ(w.status, gxStatus::eOk);
  EXPECT_EQ(w.wall, 2.0);
  EXPECT_EQ((w.from.point - w.to.point).len(), 2.0);
  EXPECT_EQ(w.region, 0);
}

TEST(Wall, FromACornerThatTurnsInwards) {
  // A notch from above, 3 deep: 1 is left below its tip at (4, 1).
  const auto w = wallOf("0 0, 8 0, 8 4, 5 4, 4 1, 3 4, 0 4");
  EXPECT_DOUBLE_EQ(w.wall, 1.0);
  EXPECT_EQ(w.from.point, V(4, 0));
  EXPECT_EQ(w.from.edge, 1);
  EXPECT_EQ(w.from.t, 0.5);
  EXPECT_EQ(w.to.point, V(4, 1));
}

TEST(Wall, AcrossAGapIsNone) {
  // A U with thick arms and a slot of 0.5: the slot is no wall.
  EXPECT_DOUBLE_EQ(wallOf("0 0, 6.5 0, 6.5 6, 3.5 6, 3.5 3, 3 3, 3 6, 0 6").wall, 3.0);
}

TEST(Wall, BetweenTwoTips) {
  EXPECT_DOUBLE_EQ(wallOf("0 0, 3 0, 4 2, 5 0, 8 0, 8 9, 5 9, 4 3, 3 9, 0 9").wall, 1.0);
}

TEST(Wall, BetweenCornersWhoseSidesGoAwayAtRightAngles) {
  // Two square holes; straight above the right corner of the lower one is the left corner of the other.
  for (const bool turn : {false, true}) {
    const Placement placed = turn ? kTurned345 : kInPlace;
    gxRegion plate(placed.of(pointsOf("-20 -20, 20 -20, 20 20, -20 20")));
    plate.holes({Handle(new gxRegion(placed.of(pointsOf("0 0, 5 0, 5 5, 0 5")))),
                 Handle(new gxRegion(placed.of(pointsOf("5 6, 10 6, 10 11, 5 11"))))});
    EXPECT_NEAR(gfSmallestWall(plate).wall, 1.0, 1e-14);
  }
}

TEST(Wall, BetweenOutlineAndHoleAndBetweenHoles) {
  gxRegion plate(pointsOf("0 0, 20 0, 20 10, 0 10"));
  plate.holes({Handle(new gxRegion(pointsOf("3 3, 8 3, 8 7, 3 7"))),
               Handle(new gxRegion(pointsOf("10 3, 15 3, 15 7, 10 7")))});
  const auto w = gfSmallestWall(plate);
  EXPECT_EQ(w.wall, 2.0);
  EXPECT_EQ(w.from.ring, 0);
  EXPECT_EQ(w.to.ring, 1);
}

TEST(Wall, BordersThatTouchAreZero) {
  // A hole that an archive or a later change may put on the border.
  gxPtrHandle<gxRegion> hole(new gxRegion(pointsOf("1 1, 2 1, 2 2")));
  gxRegion plate(pointsOf("0 0, 9 0, 9 9, 0 9"));
  plate.holes({Handle(hole)});
  hole->points(pointsOf("3 0, 4 1, 2 1"));
  EXPECT_EQ(gfSmallestWall(plate).wall, 0.0);
  EXPECT_EQ(gfSmallestWall(plate).status, gxStatus::eOk);
  // An outline that touches itself; repeated points are no touching.
  EXPECT_EQ(wallOf("0 0, 4 0, 4 4, 2 0, 0 4").wall, 0.0);
  EXPECT_EQ(wallOf("0 0, 5 0, 5 0, 5 0, 5 2, 0 2, 0 2").wall, 2.0);
}

TEST(Wall, KnownShapesInAnyPlace) {
  for (const KnownShape& known : knownShapes()) {
    if (std::isnan(known.wall)) continue;
    for (const bool turn : {false, true}) {
      for (const double scale : {1e-3, 1.0, 1e6}) {
        for (const V offset : {V(0, 0), V(1e6, -1e6)}) {
          const KnownShape s = placed(known, turn, scale, offset);
          const auto w = gfSmallestWall(s.set());
          if (s.wall == HUGE_VAL) {
            EXPECT_EQ(w.status, gxStatus::eNone) << s.name;
            continue;
          }
          EXPECT_NEAR(w.wall, s.wall, s.wall * 1e-9 + offset.len() * 4e-15) << s.name;
        }
      }
    }
  }
}

// Tells whether the line from p to q, which ends on edges i and j, crosses another edge on its way.
bool plainCrosses(const Points& ring, const V& p, const V& q, std::size_t i, std::size_t j) {
  for (std::size_t m = 0; m < ring.size(); ++m) {
    const V d = ring[(m + 1) % ring.size()] - ring[m];
    const double cross = gf_Cross(q - p, d);
    if (m == i || m == j || cross == 0.0) continue;
    const double t = gf_Cross(ring[m] - p, d) / cross;
    const double s = gf_Cross(ring[m] - p, q - p) / cross;
    if (t > 1e-9 && t < 1 - 1e-9 && s >= 0 && s <= 1) return true;
  }
  return false;
}

// All pairs of edges, their ends tried by steps along the border, the line between by all edges.
double plainWall(const Points& ring) {
  const std::size_t n = ring.size();
  const gxRegion region(ring);
  const gxLocator locator(region);
  const auto at = [&](std::size_t i) { return ring[i % n]; };
  double best = HUGE_VAL;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) {
      if ((i + 1) % n == j || (j + 1) % n == i) continue;
      const auto gap = gx_gapBetween(at(i), at(i + 1), at(j), at(j + 1));
      if (!(gap.distance < best) || gap.distance == 0.0) continue;
      const auto stays = [&](std::size_t edge, double t, const V& p, const V& q) {
        for (const std::size_t k : {edge + n - 1, edge, edge + 1}) {
          const bool own = k == edge;
          if (!own && t != (k == edge + 1 ? 1.0 : 0.0)) continue;
          const V a = at(k), b = at(k + 1);
          for (const double step : {-1e-5, 1e-5}) {
            const double from = own ? t : k == edge + 1 ? 0.0 : 1.0;
            const double to = from + step;
            if (to < 0 || to > 1) continue;
            if ((a + (b - a) * to - q).len() < (p - q).len() - 1e-13) return false;
          }
        }
        return true;
      };
      if (!stays(i, gap.s, gap.p, gap.q) || !stays(j, gap.t, gap.q, gap.p)) continue;
      if (locator.locate((gap.p + gap.q) * 0.5).state != gxState::eInside) continue;
      if (!plainCrosses(ring, gap.p, gap.q, i, j)) best = gap.distance;
    }
  }
  // Parallel edges, from points along them.
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      const V d = at(i + 1) - at(i);
      const V g = at(j + 1) - at(j);
      if (i == j || std::fabs(gf_Cross(d, g)) > 1e-12 * d.len() * g.len()) continue;
      for (int k = 1; k < 20; ++k) {
        const V p = at(i) + d * (k / 20.0);
        const auto foot = gx_footOn(at(j), at(j + 1), p);
        if (!(foot.distance < best) || foot.t <= 0 || foot.t >= 1) continue;
        if (locator.locate((p + foot.point) * 0.5).state != gxState::eInside) continue;
        if (!plainCrosses(ring, p, foot.point, i, j)) best = foot.distance;
      }
    }
  }
  return best;
}

TEST(Wall, RandomOutlinesAgainstAllPairs) {
  RandomShapes random("wall", 150);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const bool comb = random.chance(0.3);
    const auto ring = comb ? random.outline(OutlineKind::eComb, 20)
                           : random.star(random.integer(4, 40), {0, 0}, 0.4, 2);
    const auto w = gfSmallestWall(gxRegion(ring));
    const double slow = plainWall(ring);
    if (slow == HUGE_VAL) {
      EXPECT_EQ(w.status, gxStatus::eNone);
    } else {
      EXPECT_NEAR(w.wall, slow, 1e-12);
      EXPECT_NEAR((w.from.point - w.to.point).len(), w.wall, 1e-14);
    }
    const double back = gfSmallestWall(gxRegion(reversed(ring))).wall;
    if (w.wall == HUGE_VAL) {
      EXPECT_EQ(back, w.wall);
    } else {
      EXPECT_NEAR(back, w.wall, 1e-14);
    }
  }
}

TEST(Wall, RandomOutlinesOfManyPointsAgainstAllPairs) {
  RandomShapes random("wall many", 25);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto ring = random.star(random.integer(60, 250), {0, 0}, random.uniform(0.3, 1.9), 2);
    const double slow = plainWall(ring);
    const auto w = gfSmallestWall(gxRegion(ring));
    if (slow == HUGE_VAL) {
      EXPECT_EQ(w.status, gxStatus::eNone);
    } else {
      EXPECT_NEAR(w.wall, slow, 1e-12);
    }
  }
}

TEST(Wall, ADenseRoundPlateIsFast) {
  // 20,000 neighbours within each other's reach: looking at all pairs would take minutes.
  const auto w = gfSmallestWall(gxRegion(regularPolygon(20000)));
  EXPECT_NEAR(w.wall, 2.0, 1e-6);
}

TEST(Wall, TheEndsOfTheRange) {
  for (const double scale : {1e300, 1e-300}) {
    Points points = pointsOf("0 0, 8 0, 8 4, 5 4, 4 1, 3 4, 0 4");
    for (V& p : points) p = p * scale;
    EXPECT_DOUBLE_EQ(gfSmallestWall(gxRegion(points)).wall / scale, 1.0);
  }
}

TEST(Wall, Prints) {
  std::ostringstream out;
  out << wallOf("0 0, 4 0, 0 3");
  EXPECT_EQ(out.str(), "wall inf from no place to no place none");
}

}  // namespace
