#include <gauge/fit_many.h>

#include <cntr/contourdefs.h>
#include <gauge/robust_fit.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <thread>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Lists in one array.
struct Many {
  explicit Many(const std::vector<Points>& lists) {
    for (const Points& list : lists) {
      points.insert(points.end(), list.begin(), list.end());
      offsets.push_back(points.size());
    }
  }
  gxOutlines all() const { return {points, offsets}; }

  Points points;
  std::vector<std::size_t> offsets{0};
};

// What determines no circle, and so no ellipse: row 4 determines a line all the same.
std::vector<Points> degenerate() {
  return {{},
          {{3, 4}},
          {{1, 1}, {1, 1}, {1, 1}},
          {{0, 0}, {kNaN, 1}, {2, 2}, {5, 1}, {4, 7}, {1, 8}},
          {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}},
          {{0, 0}, {1, 0}, {kInfinity, 3}}};
}

// Points near an arc of an ellipse, or anywhere.
Points randomList(RandomShapes& random) {
  Points list;
  const int count = random.integer(3, 60);
  const gxVector<2> centre(random.uniform(-500, 500), random.uniform(-500, 500));
  const bool anywhere = random.chance(0.2);
  const double a = random.uniform(5, 50);
  const double b = random.chance(0.3) ? a : random.uniform(2, a);
  const double turn = random.uniform(0.0, 6.0);
  const double part = random.uniform(2.0, 6.3);
  for (int i = 0; i < count; ++i) {
    const double t = part * i / count;
    const gxVector<2> noise(random.uniform(-0.2, 0.2), random.uniform(-0.2, 0.2));
    const gxVector<2> on(a * std::cos(t), b * std::sin(t));
    const gxVector<2> turned(on.x() * std::cos(turn) - on.y() * std::sin(turn),
                             on.x() * std::sin(turn) + on.y() * std::cos(turn));
    list.push_back(anywhere ? centre + gxVector<2>(random.uniform(-9, 9), random.uniform(-9, 9))
                            : centre + turned + noise);
  }
  return list;
}

std::vector<Points> mixed(RandomShapes& random) {
  std::vector<Points> lists = degenerate();
  for (int i = 0; i < 12; ++i) lists.push_back(randomList(random));
  return lists;
}

}  // namespace

TEST(FitMany, LinesAreThoseOfTheSingleForm) {
  RandomShapes random("lines of many", 10);
  gxRobustOptions options;
  options.weights = gxFitWeights::eLeastSquares;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<Points> lists = mixed(random);
    const Many many(lists);
    const gxLineColumns c = gfFitLinesMany(many.all());
    ASSERT_EQ(c.size(), lists.size());
    for (std::size_t k = 0; k < lists.size(); ++k) {
      SCOPED_TRACE(k);
      const gxRobustLine one = gfRobustLine(lists[k], options);
      EXPECT_EQ(c.status[k], one.status);
      EXPECT_TRUE(sameBits(c.pointX[k], one.point.x()));
      EXPECT_TRUE(sameBits(c.pointY[k], one.point.y()));
      EXPECT_TRUE(sameBits(c.angle[k], one.angle.toDouble()));
      EXPECT_TRUE(sameBits(c.residual[k], one.residualRms));
    }
    EXPECT_EQ(c.status[4], gxStatus::eOk);
    EXPECT_NEAR(c.angle[4], std::numbers::pi / 4.0, 1e-15);
  }
}

TEST(FitMany, CirclesAreThoseOfTheSingleForm) {
  RandomShapes random("circles of many", 20);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<Points> lists = mixed(random);
    const Many many(lists);
    const gxCircleColumns c = gfFitCirclesMany(many.all());
    ASSERT_EQ(c.size(), lists.size());
    for (std::size_t k = 6; k < lists.size(); ++k) {
      SCOPED_TRACE(k);
      gxCircleFitResults one;
      gfCircleFit(gxCircleFitParams(gxCircleFitDefs::eFitAll, 1.0, 0, kInfinity), lists[k], one);
      EXPECT_EQ(c.status[k], gxStatus::eOk);
      EXPECT_TRUE(sameBits(c.centreX[k], one.circle().center().x()));
      EXPECT_TRUE(sameBits(c.centreY[k], one.circle().center().y()));
      EXPECT_TRUE(sameBits(c.radius[k], one.circle().radius()));
      EXPECT_TRUE(sameBits(c.residual[k], one.residual()));
    }
  }
}

TEST(FitMany, EllipsesAreThoseOfTheSingleForm) {
  RandomShapes random("ellipses of many", 10);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<Points> lists = mixed(random);
    const Many many(lists);
    const gxEllipseColumns c = gfFitEllipsesMany(many.all());
    ASSERT_EQ(c.size(), lists.size());
    for (std::size_t k = 6; k < lists.size(); ++k) {
      SCOPED_TRACE(k);
      gxEllipseFitResults one;
      try {
        gfEllipseFit(gxEllipseFitParams(gxEllipseFitDefs::eFitAll, gxRadian(0), 0, kInfinity), lists[k],
                     one);
      } catch (const gxEllipseFitDefs::BadPoints&) {
        EXPECT_EQ(c.status[k], gxStatus::eUndetermined);
        continue;
      }
      const auto& geom = one.ellipse().geom();
      EXPECT_EQ(c.status[k], gxStatus::eOk);
      EXPECT_TRUE(sameBits(c.centreX[k], geom.center.x()));
      EXPECT_TRUE(sameBits(c.centreY[k], geom.center.y()));
      EXPECT_TRUE(sameBits(c.a[k], geom.radii.x()));
      EXPECT_TRUE(sameBits(c.b[k], geom.radii.y()));
      EXPECT_TRUE(sameBits(c.angle[k], geom.rotation.toDouble()));
      EXPECT_TRUE(sameBits(c.residual[k], one.residual()));
    }
  }
}

TEST(FitMany, WhatDeterminesNoShapeIsToldAndSpoilsNoOtherRow) {
  const Many many(degenerate());
  const std::vector<gxStatus> expected{gxStatus::eEmpty,        gxStatus::eUndetermined,
                                       gxStatus::eUndetermined, gxStatus::eNotFinite,
                                       gxStatus::eUndetermined, gxStatus::eNotFinite};
  const gxCircleColumns circles = gfFitCirclesMany(many.all());
  const gxEllipseColumns ellipses = gfFitEllipsesMany(many.all());
  EXPECT_EQ(circles.status, expected);
  EXPECT_EQ(ellipses.status, expected);
  for (std::size_t k = 0; k < expected.size(); ++k) {
    for (const auto* column :
         {&circles.centreX, &circles.centreY, &circles.radius, &circles.residual, &ellipses.centreX,
          &ellipses.centreY, &ellipses.a, &ellipses.b, &ellipses.angle, &ellipses.residual}) {
      EXPECT_TRUE(std::isnan((*column)[k]));
    }
  }
}

TEST(FitMany, OffsetsThatFallAreTold) {
  const Points points{{0, 0}, {2, 0}, {2, 2}};
  const std::vector<std::size_t> offsets{0, 3, 1};
  const gxOutlines lists(points, offsets);
  EXPECT_EQ(gfFitLinesMany(lists).status[1], gxStatus::eBadArgument);
  EXPECT_TRUE(std::isnan(gfFitLinesMany(lists).angle[1]));
  EXPECT_EQ(gfFitEllipsesMany(lists).status[1], gxStatus::eBadArgument);
  const gxCircleColumns circles = gfFitCirclesMany(lists);
  EXPECT_EQ(circles.status, (std::vector<gxStatus>{gxStatus::eOk, gxStatus::eBadArgument}));
  EXPECT_NEAR(circles.radius[0], std::numbers::sqrt2, 1e-15);
  EXPECT_TRUE(std::isnan(circles.radius[1]));
}

TEST(FitMany, ARangeWritesItsRowsAloneAndThreadsShareTheColumns) {
  RandomShapes random("fits of many, ranges", 1);
  while (random.next()) {
    std::vector<Points> lists;
    for (int i = 0; i < 90; ++i) lists.push_back(randomList(random));
    const Many many(lists);
    const gxCircleColumns whole = gfFitCirclesMany(many.all());
    gxCircleColumns part;
    part.resize(90);
    gfFitCirclesMany(many.all(), 30, 60, part);
    for (std::size_t k = 0; k < 90; ++k) {
      EXPECT_TRUE(sameBits(part.radius[k], k >= 30 && k < 60 ? whole.radius[k] : kNaN));
      EXPECT_EQ(part.status[k], k >= 30 && k < 60 ? gxStatus::eOk : gxStatus::eEmpty);
    }
    std::thread first([&] { gfFitCirclesMany(many.all(), 0, 30, part); });
    std::thread second([&] { gfFitCirclesMany(many.all(), 60, 1000, part); });
    first.join();
    second.join();
    EXPECT_EQ(part.radius, whole.radius);
    part.resize(20);
    const std::vector<double> before = part.radius;
    EXPECT_THROW(gfFitCirclesMany(many.all(), 0, 21, part), gxContourDefs::BadParams);
    EXPECT_EQ(part.radius, before);
    gxLineColumns lines;
    EXPECT_THROW(gfFitLinesMany(many.all(), 0, 1, lines), gxContourDefs::BadParams);
    gxEllipseColumns ellipses;
    EXPECT_THROW(gfFitEllipsesMany(many.all(), 0, 1, ellipses), gxContourDefs::BadParams);
  }
  EXPECT_EQ(gfFitLinesMany(gxOutlines()).size(), 0U);
}
