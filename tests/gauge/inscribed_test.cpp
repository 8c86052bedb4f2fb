#include <gauge/inscribed.h>
#include <gauge/locate.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

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

TEST(Inscribed, OfATriangleToTheLastDigits) {
  const auto c = gfInscribedCircle(gxRegion(pointsOf("0 0, 4 0, 0 3")));
  EXPECT_EQ(c.status, gxStatus::eOk);
  EXPECT_NEAR(c.radius, 1.0, 1e-15);
  EXPECT_NEAR(c.centre.distance({1, 1}), 0.0, 1e-14);
  EXPECT_LE(c.gap, 1e-9);
  EXPECT_LT(c.cells, 1000U);
  EXPECT_TRUE(c.touch.valid());
}

TEST(Inscribed, APlateauEnds) {
  // All points of a line, or of a ring, are equally good.
  const auto c = gfInscribedCircle(gxRegion(pointsOf("0 0, 3 0, 3 1, 0 1")), 1e-12);
  EXPECT_EQ(c.status, gxStatus::eOk);
  EXPECT_NEAR(c.radius, 0.5, 1e-15);
  EXPECT_LT(c.cells, 1000U);
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
