// The raw curve of an offset, judged by the pieces that it is the sum of.
// Covers overlay/internal/offset_walk.h
#include <overlay/internal/offset_walk.h>

#include <overlay/cgal_judge.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>
#include <velstd/orientation.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using V = gxVector<2>;
using judge::Ring;
using judge::Rings;

Rings walksOf(const Rings& rings, double distance, const gxOffsetForm& form = {}, bool ends = false) {
  const double tolerance = form.arcTolerance > 0.0 ? form.arcTolerance : distance / 500.0;
  const gx_ArcDirections arcs(distance, tolerance);
  Rings walks;
  for (const Ring& ring : rings) gx_walkAround(ring, distance, form, arcs, ends, walks);
  return walks;
}

double coveredArea(const Rings& walks) {
  return judge::judgeByCgal(judge::walked(walks, [](int w) { return w > 0; })).area;
}

gxOffsetForm formOf(gxJoin join) {
  gxOffsetForm form;
  form.join = join;
  return form;
}

const Ring kSquare = pointsOf("0 0, 10 0, 10 10, 0 10");

TEST(OffsetWalk, growsASquareByEachJoin) {
  EXPECT_EQ(walksOf({kSquare}, 1.0, formOf(gxJoin::eMitre))[0].size(), 4U);
  EXPECT_EQ(coveredArea(walksOf({kSquare}, 1.0, formOf(gxJoin::eMitre))), 144.0);
  EXPECT_EQ(coveredArea(walksOf({kSquare}, 1.0, formOf(gxJoin::eBevel))), 142.0);
  const double round = coveredArea(walksOf({kSquare}, 1.0));
  EXPECT_LT(round, 140.0 + std::numbers::pi);
  EXPECT_GT(round, 140.0 + std::numbers::pi - 0.01);
}

TEST(OffsetWalk, cutsMitresBeyondTheLimit) {
  gxOffsetForm form = formOf(gxJoin::eMitre);
  form.mitreLimit = 1.41;
  EXPECT_EQ(coveredArea(walksOf({kSquare}, 1.0, form)), 142.0)
      << "the corner of a square reaches 1.4142";
  form.mitreLimit = 1.42;
  EXPECT_EQ(coveredArea(walksOf({kSquare}, 1.0, form)), 144.0);
}

TEST(OffsetWalk, closesAHole) {
  const Rings frame{kSquare, pointsOf("4 4, 4 6, 6 6, 6 4")};
  EXPECT_EQ(coveredArea(walksOf(frame, 0.5, formOf(gxJoin::eMitre))), 120.0);
  EXPECT_EQ(coveredArea(walksOf(frame, 1.0, formOf(gxJoin::eMitre))), 144.0);
  EXPECT_EQ(coveredArea(walksOf(frame, 1.5, formOf(gxJoin::eMitre))), 169.0) << "no hole comes back";
  EXPECT_EQ(coveredArea(walksOf(frame, 3.0, formOf(gxJoin::eMitre))), 256.0);
}

TEST(OffsetWalk, goesAroundALineThereAndBack) {
  const Rings line{pointsOf("0 0, 10 0")};
  gxOffsetForm form;
  form.ends = gxEnds::eFlat;
  EXPECT_EQ(coveredArea(walksOf(line, 1.0, form, true)), 20.0);
  form.ends = gxEnds::eSquare;
  EXPECT_EQ(coveredArea(walksOf(line, 1.0, form, true)), 24.0);
  form.ends = gxEnds::eRound;
  EXPECT_NEAR(coveredArea(walksOf(line, 1.0, form, true)), 20.0 + std::numbers::pi, 0.01);
}

TEST(OffsetWalk, takesEdgesOfTheSmallestAndTheGreatestLength) {
  for (const Ring& p : walksOf({pointsOf("0 0, 5e-324 0, 5e-324 10, 0 10")}, 1.0))
    EXPECT_GT(p.size(), 50U);
  EXPECT_EQ(walksOf({pointsOf("-1e308 0, 1e308 0, 0 1e308")}, 1e307, formOf(gxJoin::eBevel))[0].size(),
            6U);
}

TEST(OffsetWalk, refusesToLeaveTheRangeOfNumbers) {
  EXPECT_THROW(walksOf({pointsOf("1e308 0, 1.7e308 0, 1.7e308 1")}, 1e308), gxContourDefs::BadParams);
}

TEST(ArcDirections, keepChordsWithinTheTolerance) {
  for (const double tolerance : {0.5, 0.1, 0.01, 1e-4, 1e-6}) {
    const gx_ArcDirections arcs(1.0, tolerance);
    EXPECT_EQ(arcs.count() % 4, 0U);
    EXPECT_LE(1.0 - std::cos(std::numbers::pi / static_cast<double>(arcs.count())), tolerance);
    if (arcs.count() > 4) {
      EXPECT_GT(1.0 - std::cos(std::numbers::pi / static_cast<double>(arcs.count() - 4)), tolerance)
          << "no more than needed";
    }
  }
  EXPECT_EQ(gx_ArcDirections(1.0, 1e-30).count(), gx_ArcDirections::kMost);
}

TEST(ArcDirections, giveThoseStrictlyBetween) {
  const gx_ArcDirections arcs(1.0,
                              1.0 - std::cos(std::numbers::pi / 8));  // steps of an eighth of a turn
  ASSERT_EQ(arcs.count(), 8U);
  const auto between = [&](const V& a, const V& b) {
    std::vector<double> degrees;
    arcs.between(a, b, [&](const V& d) {
      degrees.push_back(std::round(std::atan2(d.y(), d.x()) * 180 / std::numbers::pi));
    });
    return degrees;
  };
  using D = std::vector<double>;
  EXPECT_EQ(between(V(1, 0), V(0, 1)), (D{45}));
  EXPECT_EQ(between(V(0, 1), V(1, 0)), D{}) << "more than half a turn is none of a join";
  EXPECT_EQ(between(V(1, 0), V(-1, 0)), (D{45, 90, 135}));
  EXPECT_EQ(between(V(-1, 0), V(1, 0)), (D{-135, -90, -45}));
  EXPECT_EQ(between(V(0.6, -0.8), V(0.6, 0.8)), (D{-45, 0, 45}));
  EXPECT_EQ(between(V(0.6, 0.8), V(0.8, 0.6)), D{});
  EXPECT_EQ(between(V(1, -1e-17), V(1, 1e-17)), (D{0}));
  EXPECT_EQ(between(V(1, 1e-17), V(0, 1)), (D{45}));
}

// ---- Against the pieces -------------------------------------------------------------------------

// The ring itself, a strip for every edge, a fan for every convex corner: all counter-clockwise.
Rings piecesOf(const Ring& ring, double d, const gx_ArcDirections& arcs) {
  Rings pieces{ring};
  const std::size_t n = ring.size();
  const auto normal = [&](std::size_t i) {
    const V e = ring[(i + 1) % n] - ring[i];
    const double length = std::hypot(e.x(), e.y());
    return V(e.y() / length, -e.x() / length);
  };
  for (std::size_t i = 0; i < n; ++i) {
    const V& a = ring[i];
    const V& b = ring[(i + 1) % n];
    const V& c = ring[(i + 2) % n];
    const V p = normal(i);
    const V q = normal((i + 1) % n);
    pieces.push_back({a, a + p * d, b + p * d, b});
    const bool back = gx_Orientation(a, b, c) == 0 && p * q < 0;
    if (gx_Orientation(a, b, c) <= 0 && !back) continue;
    Ring fan{b, b + p * d};
    arcs.between(p, q, [&](const V& v) { fan.push_back(b + v * d); });
    fan.push_back(b + q * d);
    pieces.push_back(fan);
  }
  return pieces;
}

TEST(OffsetWalkSlowTruth, coversWhatItsPiecesCover) {
  RandomShapes random("offset walks", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Ring ring = random.star(random.integer(3, 12), V(0, 0), random.uniform(0.5, 3), 9.0);
    if (random.chance(0.3)) {
      for (V& p : ring) p = V(std::round(p.x()), std::round(p.y()));
      ring.erase(std::unique(ring.begin(), ring.end()), ring.end());
      if (ring.front() == ring.back()) ring.pop_back();
      if (!judge::faultOf({{ring, {}}}).empty()) continue;
    }
    const double d = random.chance(0.3) ? random.integer(1, 6) : random.uniform(0.01, 8.0);
    const gx_ArcDirections arcs(d, d / 100);
    gxOffsetForm form;
    form.arcTolerance = d / 100;
    const bool hole = random.chance(0.5);
    if (!hole) {
      const Rings walks = walksOf({ring}, d, form);
      const double pieces =
          judge::judgeByCgal(judge::combined({[&] {
                                               slow::Set set;
                                               for (const Ring& r : piecesOf(ring, d, arcs))
                                                 set.push_back({r, {}});
                                               return set;
                                             }()},
                                             judge::Rule::eNonZero,
                                             [](const auto& held) { return held[0]; }))
              .area;
      ASSERT_NEAR(coveredArea(walks), pieces, 1e-9 * pieces);
    } else {
      // A hole in a big square: what is left of it, by the pieces around it.
      const Ring frame = pointsOf("-40 -40, 40 -40, 40 40, -40 40");
      Ring inner = reversed(ring);
      const double left = coveredArea(walksOf({frame, inner}, d, form));
      slow::Set set;
      const Rings pieces = piecesOf(inner, d, arcs);
      for (std::size_t i = 1; i < pieces.size(); ++i) set.push_back({pieces[i], {}});
      const double remaining =
          judge::judgeByCgal(judge::combined({{{ring, {}}}, set}, judge::Rule::eNonZero,
                                             [](const auto& held) { return held[0] && !held[1]; }))
              .area;
      const double outer = coveredArea(walksOf({frame}, d, form));
      ASSERT_NEAR(left, outer - remaining, 1e-9 * outer);
    }
  }
}

}  // namespace
