// Grown and shrunk shapes.
#include <overlay/offset.h>

#include <overlay/cgal_judge.h>
#include <overlay/shape_builder.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using V = gxVector<2>;
using judge::Ring;
using slow::Set;

constexpr double kPi = std::numbers::pi;

gxOffsetForm with(gxJoin join) {
  gxOffsetForm form;
  form.join = join;
  return form;
}

gxRegion regionOf(const std::string& points) {
  return gxRegion(pointsOf(points));
}

// A result that is valid and in order.
Set sound(const gxRegionSet& set) {
  const Set plain = judge::plainFrom(set);
  EXPECT_EQ(judge::faultOf(plain), "");
  EXPECT_EQ(judge::disorderOf(plain), "");
  return plain;
}

double areaOf(const gxRegionSet& set) {
  return judge::areaOf(sound(set));
}

const gxRegion kSquare = regionOf("0 0, 10 0, 10 10, 0 10");

TEST(Offset, growsAndShrinksASquare) {
  EXPECT_EQ(areaOf(gfOffset(kSquare, 1, with(gxJoin::eMitre))), 144.0);
  EXPECT_EQ(areaOf(gfOffset(kSquare, 1, with(gxJoin::eBevel))), 142.0);
  EXPECT_NEAR(areaOf(gfOffset(kSquare, 1)), 140.0 + kPi, 0.01);
  EXPECT_EQ(areaOf(gfOffset(kSquare, -1)), 64.0) << "inner corners stay sharp";
  EXPECT_EQ(areaOf(gfOffset(kSquare, -4.5)), 1.0);
  EXPECT_TRUE(gfOffset(kSquare, -5).regions().empty());
  EXPECT_TRUE(gfOffset(kSquare, -50).regions().empty());
}

TEST(Offset, keepsTheShapeAtNoDistance) {
  gxOffsetReport report;
  const gxRegionSet same = gfOffset(kSquare, 0, {}, {}, &report);
  EXPECT_EQ(judge::plainFrom(same)[0].outline, kSquare.points());
  EXPECT_TRUE(report.countedAsZero);
  gfOffset(kSquare, 50 * 0x1p-49, {}, {}, &report);
  EXPECT_TRUE(report.countedAsZero);
  gfOffset(kSquare, -1e-9, {}, {}, &report);
  EXPECT_FALSE(report.countedAsZero);
}

TEST(Offset, growsHolesAsOutlinesShrink) {
  const gxRegionSet frame =
      judge::setFrom({{pointsOf("0 0, 10 0, 10 10, 0 10"), {{pointsOf("4 4, 4 6, 6 6, 6 4"), {}}}}});
  EXPECT_EQ(areaOf(gfOffset(frame, -1, with(gxJoin::eMitre))), 64.0 - 16.0);
  EXPECT_EQ(areaOf(gfOffset(frame, -1, with(gxJoin::eBevel))), 64.0 - 14.0);
  EXPECT_TRUE(gfOffset(frame, -2, with(gxJoin::eMitre)).regions().empty());
  EXPECT_EQ(gfOffset(frame, -2).regions().size(), 4U)
      << "round corners of the hole leave some of the frame's";
  EXPECT_EQ(areaOf(gfOffset(frame, 0.5, with(gxJoin::eMitre))), 120.0);
  EXPECT_EQ(areaOf(gfOffset(frame, 1, with(gxJoin::eMitre))), 144.0);
}

TEST(Offset, unitesWhatGrowsTogether) {
  const std::vector<gxRegion> two{kSquare, regionOf("12 0, 22 0, 22 10, 12 10")};
  EXPECT_EQ(gfOffset(two, 0.5).regions().size(), 2U);
  EXPECT_EQ(gfOffset(two, 1).regions().size(), 1U);
  EXPECT_EQ(areaOf(gfOffset(two, 1.5, with(gxJoin::eMitre))), 25.0 * 13.0);
}

TEST(Offset, takesInvalidShapesByEvenOdd) {
  const gxRegion bow = regionOf("0 0, 10 10, 10 0, 0 10");
  EXPECT_EQ(areaOf(gfOffset(bow, 0)), 50.0);
  // From the apex the straight side is 4 - sqrt(2) away: a triangle with the legs at right angles.
  EXPECT_NEAR(areaOf(gfOffset(bow, -1)), 2 * std::pow(4 - std::numbers::sqrt2, 2), 1e-12);
}

TEST(Offset, refusesWhatHasNoAnswer) {
  EXPECT_THROW(gfOffset(kSquare, std::nan("")), gxContourDefs::BadParams);
  EXPECT_THROW(gfOffset(kSquare, HUGE_VAL), gxContourDefs::BadParams);
  gxOffsetForm form;
  form.mitreLimit = 0.5;
  EXPECT_THROW(gfOffset(kSquare, 1, form), gxContourDefs::BadParams);
  form = {};
  form.arcTolerance = -1;
  EXPECT_THROW(gfOffset(kSquare, 1, form), gxContourDefs::BadParams);
  EXPECT_THROW(gfOffset(regionOf("0 0, nan 0, 1 1"), 1), gxContourDefs::BadParams);
  EXPECT_THROW(gfOffsetPath(kSquare, -1), gxContourDefs::BadParams);
  EXPECT_THROW(gfOffsetPath(regionOf("0 0, nan 0"), 1), gxContourDefs::BadParams);
  EXPECT_THROW(gfToleranceBand(kSquare, -1, 1), gxContourDefs::BadParams);
  EXPECT_TRUE(gfOffset(gxRegion(), 5).regions().empty());
  gxOverlayLimits limits;
  limits.stop = [] { return true; };
  std::vector<V> saw;
  for (int i = 0; i < 3000; ++i) saw.emplace_back(i, i % 2);
  saw.emplace_back(1500, 900);
  EXPECT_THROW(gfOffset(gxRegion(saw), 5, with(gxJoin::eRound), limits), gxStopped);
}

TEST(OffsetPath, goesAroundLinesAndPoints) {
  const gxContour line(pointsOf("0 0, 10 0"), false);
  gxOffsetForm form;
  EXPECT_NEAR(areaOf(gfOffsetPath(line, 1, form)), 20 + kPi, 0.02);
  form.ends = gxEnds::eFlat;
  EXPECT_EQ(areaOf(gfOffsetPath(line, 1, form)), 20.0);
  EXPECT_TRUE(gfOffsetPath(gxContour(pointsOf("3 3"), false), 1, form).regions().empty());
  form.ends = gxEnds::eSquare;
  EXPECT_EQ(areaOf(gfOffsetPath(line, 1, form)), 24.0);
  EXPECT_EQ(areaOf(gfOffsetPath(gxContour(pointsOf("3 3, 3 3"), false), 1, form)), 4.0);
  EXPECT_NEAR(areaOf(gfOffsetPath(gxContour(pointsOf("3 3"), false), 1)), kPi, 0.02);
  EXPECT_TRUE(gfOffsetPath(gxContour(), 1).regions().empty());
  EXPECT_TRUE(gfOffsetPath(line, 0).regions().empty());
}

TEST(OffsetPath, makesABandOfAnOutline) {
  EXPECT_EQ(areaOf(gfOffsetPath(kSquare, 1, with(gxJoin::eMitre))), 144.0 - 64.0);
  EXPECT_EQ(areaOf(gfOffsetPath(kSquare, 6, with(gxJoin::eMitre))), 22.0 * 22.0);
}

TEST(ToleranceBand, hasThreeParts) {
  const gxToleranceBand band = gfToleranceBand(kSquare, 1, 2, with(gxJoin::eMitre));
  EXPECT_EQ(areaOf(band.inside), 64.0);
  EXPECT_EQ(areaOf(band.outside), 196.0);
  EXPECT_EQ(areaOf(band.ring), 132.0);
  const gxToleranceBand none = gfToleranceBand(kSquare, 6, 0);
  EXPECT_TRUE(none.inside.regions().empty());
  EXPECT_EQ(areaOf(none.ring), 100.0);
}

// ---- Random ---------------------------------------------------------------------------------------

// A point is within d of the shape, d being signed: by its distance from all edges of the valid form.
double signedDistance(const Set& valid, const V& p) {
  bool onBorder = false;
  const bool held = judge::setHolds(valid, p, onBorder);
  const double distance = judge::clearance(judge::ringsOf(valid), p);
  return onBorder ? 0.0 : held ? -distance : distance;
}

TEST(OffsetRandom, holdsThePointsWithinTheDistance) {
  RandomShapes random("offsets", 200);
  while (random.next()) {
    const OverlayFamily family = someFamily(random);
    SCOPED_TRACE(random.trace() + " " + nameOf(family));
    const Set given = overlayOperands(random, family, 1)[0];
    const Set whole = sound(gfOffset(judge::setFrom(given), 0));
    if (whole.empty()) continue;
    const judge::Rings rings = judge::ringsOf(whole);
    V low = rings[0][0];
    V high = low;
    for (const Ring& ring : rings) {
      for (const V& p : ring) {
        low = V(std::min(low.x(), p.x()), std::min(low.y(), p.y()));
        high = V(std::max(high.x(), p.x()), std::max(high.y(), p.y()));
      }
    }
    const double size = std::max(high.x() - low.x(), high.y() - low.y());
    const double unit = judge::ulpOf(rings);
    const double d = random.uniform(-0.3, 0.3) * size;
    if (std::fabs(d) <= 4096 * unit) continue;
    gxOffsetForm form;
    form.arcTolerance = std::fabs(d) / 100;
    const Set result = sound(gfOffset(judge::setFrom(given), d, form));
    const double slack = form.arcTolerance + 64 * unit;
    for (int i = 0; i < 40; ++i) {
      const double x = random.uniform(low.x() - 0.4 * size, high.x() + 0.4 * size);
      const V p(x, random.uniform(low.y() - 0.4 * size, high.y() + 0.4 * size));
      const double distance = signedDistance(whole, p);
      bool onBorder = false;
      const bool held = judge::setHolds(result, p, onBorder);
      if (std::fabs(distance - d) < slack) continue;
      ASSERT_EQ(held, distance < d) << testing::PrintToString(p) << " distance " << distance
                                    << " offset " << d;
    }
  }
}

}  // namespace
