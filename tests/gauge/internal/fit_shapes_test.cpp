// Distances of lines, circles and ellipses, and their derivatives beside differences.
#include <gauge/internal/fit_shapes.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>

#include <cmath>
#include <numbers>

namespace {

using Points = std::vector<gxVector<2>>;

template <class Shape>
void expectDerivatives(const Shape& shape, const gxVector<2>& p) {
  const auto row = shape.row(p);
  for (std::size_t k = 0; k < Shape::kUnknowns; ++k) {
    std::array<double, Shape::kUnknowns> step{};
    step[k] = 1e-6;
    const auto up = shape.moved(step);
    step[k] = -1e-6;
    const auto down = shape.moved(step);
    ASSERT_TRUE(up && down);
    EXPECT_NEAR(row[k], (up->distance(p) - down->distance(p)) / 2e-6, 1e-5) << k;
  }
}

TEST(FitShapes, RowsAreTheDerivatives) {
  RandomShapes random("fit shapes rows", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto point = [&](double reach) {
      return gxVector<2>(random.uniform(-reach, reach), random.uniform(-reach, reach));
    };
    const double angle = random.uniform(-3, 3);
    const gxVector<2> along(std::cos(angle), std::sin(angle));
    const gx_FitLine line{point(1), along};
    expectDerivatives(line, point(2));
    const gx_FitCircle circle{point(1), random.uniform(0.5, 2)};
    const gxVector<2> p = point(2);
    if ((p - circle.centre).len() > 0.1) expectDerivatives(circle, p);
    const double b = random.uniform(0.5, 1);
    const gx_FitEllipse ellipse{point(1), along, b + random.uniform(0.1, 1), b};
    // Near the ellipse, where one foot is the nearest for certain.
    const double t = random.uniform(0, 6.28);
    const gxVector<2> side(-along.y(), along.x());
    const gxVector<2> on =
        ellipse.centre + along * (ellipse.a * std::cos(t)) + side * (ellipse.b * std::sin(t));
    expectDerivatives(ellipse, on + point(0.1));
  }
}

TEST(FitShapes, TheDistanceOfAnEllipseIsTheLeastToItsPoints) {
  RandomShapes random("fit shapes ellipse", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double b = random.uniform(0.1, 1);
    const gx_FitEllipse ellipse{{0.3, -0.2}, {0.8, 0.6}, b + random.uniform(0, 1), b};
    const gxVector<2> p = random.chance(0.1) ? ellipse.centre + ellipse.along * random.uniform(-2, 2)
                                             : gxVector<2>(random.uniform(-2, 2), random.uniform(-2, 2));
    double least = 1e9;
    for (int k = 0; k < 20000; ++k) {
      const double t = 2 * std::numbers::pi * k / 20000;
      const gxVector<2> on = ellipse.centre + gxVector<2>(0.8, 0.6) * (ellipse.a * std::cos(t)) +
                             gxVector<2>(-0.6, 0.8) * (ellipse.b * std::sin(t));
      least = std::min(least, on.distance(p));
    }
    EXPECT_NEAR(std::abs(ellipse.distance(p)), least, 2e-4 * least + 1e-6);
  }
}

TEST(FitShapes, ThroughPointsOfAShapeThereIsThatShape) {
  RandomShapes random("fit shapes through", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double b = random.uniform(0.4, 1);
    const double angle = random.uniform(-1.5, 1.5);
    const gx_FitEllipse ellipse{
        {0.3, -0.2}, {std::cos(angle), std::sin(angle)}, b + random.uniform(0.1, 1), b};
    gxVector<2> p[5];
    for (int i = 0; i < 5; ++i) {
      const double t = 1.2566 * i + random.uniform(-0.4, 0.4);
      const gxVector<2> side(-ellipse.along.y(), ellipse.along.x());
      p[i] =
          ellipse.centre + ellipse.along * (ellipse.a * std::cos(t)) + side * (ellipse.b * std::sin(t));
    }
    const auto found = gx_FitEllipse::through(p);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->a, ellipse.a, 1e-8);
    EXPECT_NEAR(found->b, ellipse.b, 1e-8);
    EXPECT_NEAR(std::abs(gf_Cross(found->along, ellipse.along)), 0.0, 1e-7);
    const auto circle = gx_FitCircle::through(p);
    ASSERT_TRUE(circle);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(circle->distance(p[i]), 0.0, 1e-10);
    const auto line = gx_FitLine::through(p);
    ASSERT_TRUE(line);
    for (int i = 0; i < 2; ++i) EXPECT_NEAR(line->distance(p[i]), 0.0, 1e-14);
  }
}

TEST(FitShapes, WhatThereIsNotIsNothing) {
  const gxVector<2> onLine[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}};
  EXPECT_FALSE(gx_FitCircle::through(onLine));
  EXPECT_FALSE(gx_FitEllipse::through(onLine));
  const gxVector<2> equal[] = {{1, 1}, {1, 1}};
  EXPECT_FALSE(gx_FitLine::through(equal));
  const gxVector<2> hyperbola[] = {{1, 1}, {2, 0.5}, {0.5, 2}, {-1, -1}, {-2, -0.5}};
  EXPECT_FALSE(gx_FitEllipse::through(hyperbola));
  EXPECT_FALSE(gx_FitCircle::leastSquares(Points{{0, 0}, {1, 1}, {2, 2}}));
  EXPECT_FALSE(gx_FitEllipse::leastSquares(Points{{0, 0}, {1, 1}, {2, 2}}));
  EXPECT_FALSE(gx_FitLine::leastSquares(Points{{1, 1}, {1, 1}}));
  EXPECT_FALSE((gx_FitCircle{{0, 0}, 1}.moved({0, 0, -2})));
}

TEST(FitShapes, RefiningEndsAtTheLeastSum) {
  const Points points{{1, 0.01}, {0, 1.02}, {-1.01, 0}, {0, -0.97}, {0.7, 0.72}};
  const std::vector<double> weights(5, 1.0);
  std::array<std::array<double, 3>, 3> covariance{};
  const auto circle = gx_refined(gx_FitCircle{{0.3, 0.2}, 0.8}, std::span<const gxVector<2>>(points),
                                 std::span<const double>(weights), 100, &covariance);
  ASSERT_TRUE(circle);
  const auto cost = [&](const gx_FitCircle& c) {
    double sum = 0.0;
    for (const auto& p : points) sum += c.distance(p) * c.distance(p);
    return sum;
  };
  for (std::size_t k = 0; k < 3; ++k) {
    std::array<double, 3> step{};
    for (const double d : {1e-4, -1e-4}) {
      step[k] = d;
      EXPECT_GT(cost(*circle->moved(step)), cost(*circle));
    }
    EXPECT_GT(covariance[k][k], 0.0);
  }
}

}  // namespace
