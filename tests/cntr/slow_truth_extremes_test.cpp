// Contours against the slow truth, bit for bit: extremes, circles, features, vertex lookup; and the
// order of the exchange sort.
#include <cntr/contour.h>
#include <cntr/internal/index/vertex_grid.h>
#include <cntr/internal/search/exchange_order.h>
#include <cntr/region.h>
#include <cntr/shapestat.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_contour.h>
#include <velstd/convex_hull.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

slow::Outline randomOutline(RandomShapes& random) {
  slow::Outline outline{random.outline(), true};
  outline.closed = random.chance(0.7);
  return outline;
}

ExposedContour contourOf(const slow::Outline& outline) {
  return ExposedContour(outline.points, outline.closed);
}

TEST(SlowTruthExtremes, ExtremalVertex) {
  RandomShapes random("extremal vertex", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    for (int query = 0; query < 12; ++query) {
      const double angle = random.angle();
      EXPECT_TRUE(agree([&] { return contour.extremalVertexIndex(gxRadian(angle)); },
                        [&] { return slow::extremalVertexIndex(outline.points, angle); }));
      EXPECT_TRUE(agree([&] { return contour.extremalVertexPosition(gxRadian(angle)); },
                        [&] { return slow::extremalVertexPosition(outline.points, angle); }));
    }
  }
}

TEST(SlowTruthExtremes, EnclosingRectangle) {
  RandomShapes random("enclosing rectangle", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    for (int query = 0; query < 8; ++query) {
      const ExposedContour contour = contourOf(outline);  // fresh: nothing remembered under one key
      const gxXform<2> xform = random.transform();
      EXPECT_TRUE(agree([&] { return contour.encloseRect(xform); },
                        [&] { return slow::encloseRect(outline.points, xform); }));
    }
  }
}

TEST(SlowTruthExtremes, CirclesAndTheirSlots) {
  RandomShapes random("enclosing circle", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    ExposedContour contour;
    gxCircle slots[2];
    for (int change = 0; change < 3; ++change) {  // slots outlive the points
      const slow::Outline outline = randomOutline(random);
      contour.points(outline.points);
      for (int mode = -1; mode <= 2; ++mode) {
        const auto theirs = static_cast<gxContourDefs::DiameterMode>(mode);
        const gxCircle slot = mode == 0 || mode == 1 ? slots[mode] : gxCircle();
        EXPECT_TRUE(agree([&] { return contour.encloseCircle(theirs); },
                          [&] { return slow::encloseCircle(outline.points, mode, slot); }));
        if (mode == 0 || mode == 1) slots[mode] = slow::encloseCircle(outline.points, mode, slot);
      }
      EXPECT_TRUE(agree([&] { return contour.diameter(gxContourDefs::eFirstPoint); },
                        [&] { return 2.0 * slots[1].radius(); }));
    }
  }
}

TEST(SlowTruthExtremes, FeaturesHullAndFit) {
  RandomShapes random("features", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    EXPECT_TRUE(
        agree([&] { return contour.meanPosition(); }, [&] { return slow::meanPosition(outline); }));
    EXPECT_TRUE(agree([&] { return contour.medianFeatureSize(); },
                      [&] { return slow::medianFeatureSize(outline); }));
    EXPECT_TRUE(agree(
        [&] {
          gxRegion hull;
          contour.convexHull(hull);
          return hull.points();
        },
        [&] {
          slow::checkContour(outline.points);
          slow::Points hull;
          gfConvexHull(outline.points, hull);
          return hull;
        }));
    EXPECT_TRUE(agree(
        [&] {
          gxEllipse ellipse;
          double residual = 0.0;
          contour.fitEllipse(ellipse, residual);
          return ellipse;
        },
        [&] {
          slow::checkContour(outline.points);
          gxEllipse ellipse;
          double residual = 0.0;
          slow::fitEllipse(outline.points, ellipse, residual);
          return ellipse;
        }));
  }
}

TEST(SlowTruthExtremes, VertexLookup) {
  RandomShapes random("vertex lookup", 900);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    const double some[] = {1.0,
                           0.5,
                           3.0,
                           1e-6,
                           1e-15,
                           1e4,
                           0.0,
                           -1.0,
                           kNaN,
                           kInfinity,
                           1e300,
                           5e-324,
                           random.uniform(0.0, 10.0)};
    for (int query = 0; query < 12; ++query) {
      const gxVector<2> p = random.pointNear(outline.points);
      const double tolerance = some[random.integer(0, 12)];
      EXPECT_TRUE(agree([&] { return contour.vertexIndex(p, tolerance); },
                        [&] { return slow::vertexIndex(outline.points, p, tolerance); }))
          << "tolerance " << tolerance << " at " << testing::PrintToString(p) << " of "
          << testing::PrintToString(outline.points);
      // The grid, which the contour makes after many questions with one tolerance.
      if (outline.points.size() > 1 && tolerance > 0.0 && tolerance < kInfinity) {
        EXPECT_EQ(gx_VertexGrid(outline.points, tolerance).near(outline.points, p),
                  slow::vertexIndex(outline.points, p, tolerance))
            << "tolerance " << tolerance << " at " << testing::PrintToString(p);
      }
    }
  }
}

// Keys with many ties are where the sort's order is anything but plain.
TEST(SlowTruthExchangeSort, OrderOfTiesAndNaN) {
  RandomShapes random("exchange sort", 3000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const int count = random.integer(0, random.chance(0.1) ? 400 : 60);
    const int different = random.integer(1, random.chance(0.5) ? 4 : 100);
    const double nan = random.chance(0.5) ? random.uniform(0.0, 0.5) : 0.0;
    std::vector<double> keys;
    for (int i = 0; i < count; ++i) {
      const int key = random.integer(-different, different);
      keys.push_back(random.chance(nan) ? kNaN : key == 0 && random.chance(0.5) ? -0.0 : key);
    }
    if (random.chance(0.1) && count > 0) keys[0] = kInfinity;
    ASSERT_EQ(gx_exchangeOrder(keys), slow::exchangeOrder(keys)) << testing::PrintToString(keys);
  }
}

TEST(SlowTruthExchangeSort, EveryShortSequence) {
  for (int length = 0; length <= 7; ++length) {  // all sequences of the keys 0, 1, 2 and NaN
    const int sequences = 1 << (2 * length);
    for (int code = 0; code < sequences; ++code) {
      std::vector<double> keys;
      for (int i = 0; i < length; ++i) {
        const int digit = (code >> (2 * i)) & 3;
        keys.push_back(digit == 3 ? kNaN : digit);
      }
      ASSERT_EQ(gx_exchangeOrder(keys), slow::exchangeOrder(keys)) << testing::PrintToString(keys);
    }
  }
}

}  // namespace
