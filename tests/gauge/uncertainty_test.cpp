// Uncertainty from the noise of the points: by hand, and by shaking the points.
#include <gauge/uncertainty.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>
#include <random>
#include <sstream>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

const Points kSquare = pointsOf("0 0, 5 0, 5 5, 0 5");

Points polygonOf(double radius, int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * std::numbers::pi * i / count;
    points.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  return points;
}

struct Measures {
  double length = 0.0;
  double area = 0.0;
  gxVector<2> centre;
};

Measures measured(const Points& points, bool closed) {
  Measures m;
  gxVector<2> moment;
  gxVector<2> border;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const gxVector<2>& a = points[i];
    const gxVector<2>& b = points[(i + 1) % points.size()];
    if (closed || i + 1 < points.size()) {
      m.length += a.distance(b);
      border += (a + b) * (0.5 * a.distance(b));
    }
    m.area += 0.5 * gf_Cross(a, b);
    moment += (a + b) * (gf_Cross(a, b) / 6.0);
  }
  m.centre = closed ? moment / m.area : border / m.length;
  return m;
}

// Standard deviations over many runs with shaken points; the noise of neighbours is alike as asked.
struct Shaken {
  double length = 0.0;
  double bias = 0.0;
  double area = 0.0;
  double x = 0.0;
  double y = 0.0;
  double xy = 0.0;
};

Shaken shake(const Points& points, bool closed, const gxEdgeNoise& noise, int runs, unsigned seed) {
  std::mt19937 bits(seed);
  std::normal_distribution<double> normal;
  const std::size_t n = points.size();
  const Measures truth = measured(points, closed);
  // The Cholesky factor of the correlations, row by row.
  std::vector<std::vector<double>> factor(n, std::vector<double>(n, 0.0));
  std::vector<double> sums(n, 0.0);
  for (std::size_t i = 1; i < n; ++i) sums[i] = sums[i - 1] + points[i - 1].distance(points[i]);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      double s = sums[i] - sums[j];
      if (closed) s = std::min(s, truth.length - s);
      double value =
          noise.correlationLength > 0.0 ? std::exp(-s / noise.correlationLength) : (i == j ? 1.0 : 0.0);
      for (std::size_t k = 0; k < j; ++k) value -= factor[i][k] * factor[j][k];
      factor[i][j] = i == j ? std::sqrt(value) : value / factor[j][j];
    }
  }
  Shaken sum;
  for (int run = 0; run < runs; ++run) {
    std::vector<gxVector<2>> white(n);
    for (auto& w : white) w = {normal(bits), normal(bits)};
    Points shaken = points;
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j <= i; ++j) shaken[i] += white[j] * (factor[i][j] * noise.sigma);
    }
    const Measures m = measured(shaken, closed);
    const gxVector<2> d = m.centre - truth.centre;
    sum.bias += m.length - truth.length;
    sum.length += (m.length - truth.length) * (m.length - truth.length);
    sum.area += (m.area - truth.area) * (m.area - truth.area);
    sum.x += d.x() * d.x();
    sum.y += d.y() * d.y();
    sum.xy += d.x() * d.y();
  }
  const double bias = sum.bias / runs;
  return {std::sqrt(sum.length / runs - bias * bias),
          bias,
          std::sqrt(sum.area / runs),
          std::sqrt(sum.x / runs),
          std::sqrt(sum.y / runs),
          sum.xy / runs};
}

TEST(Uncertainty, OfASquareByHand) {
  const gxUncertainty got = gfUncertainty(kSquare, true, {.sigma = 0.1});
  EXPECT_EQ(got.status, gxStatus::eOk);
  EXPECT_NEAR(got.area, std::sqrt(2.0) * 5 * 0.1, 1e-14);
  EXPECT_NEAR(got.length, 2 * std::sqrt(2.0) * 0.1, 1e-14);
  EXPECT_NEAR(got.lengthBias, 4 * 0.01 / 5, 1e-15);
  const double diameter = 2 * std::sqrt(25 / std::numbers::pi);
  EXPECT_NEAR(got.equivalentDiameter, got.area * diameter / 50, 1e-14);
  EXPECT_NEAR(got.centreX, got.centreY, 1e-15);
  EXPECT_NEAR(got.centreCovariance, 0.0, 1e-16);
}

TEST(Uncertainty, OfARegularPolygon) {
  const gxUncertainty got = gfUncertainty(polygonOf(10, 64), true, {.sigma = 0.01});
  EXPECT_NEAR(got.area, 0.0784137, 1e-7);
  EXPECT_NEAR(got.length, 0.0078508, 1e-7);
  EXPECT_NEAR(got.lengthBias, 0.0065216, 1e-7);
}

TEST(Uncertainty, OfASegmentTheEndsCountOneEach) {
  const gxUncertainty got = gfUncertainty(pointsOf("0 0, 3 4"), false, {.sigma = 0.1});
  EXPECT_NEAR(got.length, 0.1 * std::sqrt(2.0), 1e-15);
  EXPECT_NEAR(got.lengthBias, 0.01 / 5, 1e-16);
  EXPECT_TRUE(std::isnan(got.area));
  EXPECT_TRUE(std::isnan(got.equivalentDiameter));
  EXPECT_NEAR(got.centreX, 0.1 / std::sqrt(2.0), 1e-15);
}

TEST(Uncertainty, ShakenPointsVaryAsSaid) {
  const Points uneven = pointsOf("0 0, 3 -0.5, 7 0, 7.5 2, 6 5, 2 4.5, 1 3");
  for (const bool closed : {true, false}) {
    for (const double correlation : {0.0, 3.0}) {
      SCOPED_TRACE(testing::Message() << closed << " " << correlation);
      const gxEdgeNoise noise{.sigma = 0.02, .correlationLength = correlation};
      const gxUncertainty got = gfUncertainty(uneven, closed, noise);
      const Shaken truth = shake(uneven, closed, noise, 20000, 7);
      // 20000 runs give a standard deviation to 0.5 %; the rest is what pairs around the long way add.
      const double share = correlation > 0.0 && closed ? 0.06 : 0.025;
      EXPECT_NEAR(got.length, truth.length, share * truth.length);
      EXPECT_NEAR(got.lengthBias, truth.bias, 0.1 * truth.bias + 3 * truth.length / 141);
      if (closed) {
        EXPECT_NEAR(got.area, truth.area, share * truth.area);
      }
      EXPECT_NEAR(got.centreX, truth.x, share * truth.x);
      EXPECT_NEAR(got.centreY, truth.y, share * truth.y);
      EXPECT_NEAR(got.centreCovariance, truth.xy, 0.05 * truth.x * truth.y);
    }
  }
}

TEST(Uncertainty, FullyCorrelatedNoiseMovesTheWhole) {
  const gxUncertainty got = gfUncertainty(kSquare, true, {.sigma = 0.1, .correlationLength = 1e9});
  EXPECT_NEAR(got.area, 0.0, 1e-4);
  EXPECT_NEAR(got.length, 0.0, 1e-4);
}

TEST(Uncertainty, WithoutNoiseThereIsNone) {
  const gxUncertainty got = gfUncertainty(kSquare, true, {});
  EXPECT_EQ(got.length, 0.0);
  EXPECT_EQ(got.lengthBias, 0.0);
  EXPECT_EQ(got.area, 0.0);
  EXPECT_EQ(got.centreX, 0.0);
}

TEST(Uncertainty, EdgesOfNoLengthAndShapesWithoutArea) {
  const gxUncertainty repeated = gfUncertainty(pointsOf("0 0, 0 0, 5 0, 5 5"), true, {.sigma = 0.1});
  EXPECT_EQ(repeated.status, gxStatus::eOk);
  EXPECT_EQ(repeated.lengthBias, kInfinity);
  EXPECT_TRUE(std::isfinite(repeated.length));
  const gxUncertainty flat = gfUncertainty(pointsOf("0 0, 1 1, 2 2"), true, {.sigma = 0.1});
  EXPECT_EQ(flat.status, gxStatus::eFlat);
  EXPECT_GT(flat.area, 0.0);
  EXPECT_TRUE(std::isnan(flat.equivalentDiameter));
  EXPECT_TRUE(std::isnan(flat.centreX));
  EXPECT_EQ(gfUncertainty(pointsOf("1 1, 1 1"), false, {.sigma = 0.1}).status, gxStatus::eFlat);
  EXPECT_EQ(gfUncertainty(pointsOf("1 1"), true, {.sigma = 0.1}).status, gxStatus::eFlat);
}

TEST(Uncertainty, WhatCannotBeAskedSaysSo) {
  EXPECT_EQ(gfUncertainty(Points{}, true, {.sigma = 1}).status, gxStatus::eEmpty);
  for (const double bad : {kNaN, kInfinity}) {
    EXPECT_EQ(gfUncertainty(Points{{0, 0}, {bad, 1}}, true, {.sigma = 1}).status, gxStatus::eNotFinite);
    EXPECT_EQ(gfUncertainty(kSquare, true, {.sigma = bad}).status, gxStatus::eBadArgument);
    EXPECT_EQ(gfUncertainty(kSquare, true, {.sigma = 1, .correlationLength = bad}).status,
              gxStatus::eBadArgument);
  }
  EXPECT_EQ(gfUncertainty(kSquare, true, {.sigma = -1}).status, gxStatus::eBadArgument);
  EXPECT_TRUE(std::isnan(gfUncertainty(kSquare, true, {.sigma = -1}).length));
}

TEST(Uncertainty, InAnyPlaceAtAnyScaleFromAnyStart) {
  const gxEdgeNoise noise{.sigma = 0.1, .correlationLength = 2.0};
  const Points uneven = pointsOf("0 0, 3 -0.5, 7 0, 7.5 2, 6 5, 2 4.5, 1 3");
  const gxUncertainty here = gfUncertainty(uneven, true, noise);
  const gxUncertainty far = gfUncertainty(kTurnedFarAway.of(uneven), true, noise);
  EXPECT_NEAR(far.area, here.area, 1e-9);
  EXPECT_NEAR(far.length, here.length, 1e-9);
  EXPECT_NEAR(far.centreX * far.centreX + far.centreY * far.centreY,
              here.centreX * here.centreX + here.centreY * here.centreY, 1e-9);
  const gxUncertainty large =
      gfUncertainty(Placement{1, 0, {0, 0}, 0x1p500}.of(uneven), true,
                    {.sigma = std::ldexp(0.1, 500), .correlationLength = std::ldexp(2.0, 500)});
  EXPECT_NEAR(large.length * 0x1p-500, here.length, 1e-15);
  const gxUncertainty turned = gfUncertainty(rotatedStart(uneven, 3), true, noise);
  EXPECT_NEAR(turned.area, here.area, 1e-4 * here.area);
  EXPECT_NEAR(turned.centreX, here.centreX, 1e-4 * here.centreX);
  const gxUncertainty back = gfUncertainty(reversed(uneven), true, noise);
  EXPECT_NEAR(back.length, here.length, 1e-4 * here.length);
  std::ostringstream out;
  out << gfUncertainty(kSquare, true, {});
  EXPECT_NE(out.str().find("uncertainty of length 0 (bias 0)"), std::string::npos) << out.str();
}

TEST(Uncertainty, TheNoisePrints) {
  EXPECT_EQ(printed(gxEdgeNoise{0.125, 2.0}), "sigma 0.125, correlation length 2");
}

}  // namespace
