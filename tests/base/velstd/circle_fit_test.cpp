// Covers base/velstd/internal/circle_solver.cpp
// Covers base/velstd/internal/fit_frame.cpp
// Covers base/velstd/internal/normal_equations.h
// Covers base/velstd/internal/outlier_search.h
#include <gtest/gtest.h>
#include <velstd/circle_fit.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;
using Defs = gxCircleFitDefs;

constexpr double kPi = 3.141592653589793;
constexpr double kDegree = kPi / 180.0;

gxCircleFitResults fit(const Points& points, unsigned long ignore = 0, double limit = HUGE_VAL) {
  gxCircleFitResults results;
  gfCircleFit(gxCircleFitParams(Defs::eFitAll, 1.0, ignore, limit), points, results);
  return results;
}

gxCircleFitResults fitHeld(double radius, const Points& points) {
  gxCircleFitResults results;
  gfCircleFit(gxCircleFitParams(Defs::eFixedRadius, radius, 0, HUGE_VAL), points, results);
  return results;
}

// Points of an arc from 0.3 rad on, with Gaussian noise of the given part of the radius.
Points arc(const gxVector<2>& center, double radius, double degrees, int count, double noise,
           std::uint64_t seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal;
  Points points;
  for (int i = 0; i < count; ++i) {
    const double t = 0.3 + degrees * kDegree * i / (degrees >= 360.0 ? count : count - 1);
    points.emplace_back(center.x() + radius * (std::cos(t) + noise * normal(engine)),
                        center.y() + radius * (std::sin(t) + noise * normal(engine)));
  }
  return points;
}

double sumOfSquares(const Points& points, const gxVector<2>& center, double radius) {
  double sum = 0.0;
  for (const auto& p : points) sum += (p.distance(center) - radius) * (p.distance(center) - radius);
  return sum;
}

double rms(const Points& points, const gxCircle& circle) {
  return std::sqrt(sumOfSquares(points, circle.center(), circle.radius()) /
                   static_cast<double>(points.size()));
}

template <class Exception>
void expectRefused(const gxCircleFitParams& params, const Points& points) {
  gxCircleFitResults results(gxCircle({1, 2}, 3), 4.0, {5});
  EXPECT_THROW(gfCircleFit(params, points, results), Exception);
  EXPECT_EQ(results.circle(), gxCircle({1, 2}, 3));
  EXPECT_EQ(results.residual(), 4.0);
  EXPECT_EQ(results.ignored(), std::vector<unsigned long>{5});
}

const gxCircleFitParams kAll(Defs::eFitAll, 1.0, 0, HUGE_VAL);

}  // namespace

TEST(CircleFit, ThreePointsGiveTheirCircle) {
  const auto results = fit({{5, 0}, {0, 5}, {-5, 0}});
  EXPECT_NEAR(results.circle().center().x(), 0.0, 1e-14);
  EXPECT_NEAR(results.circle().center().y(), 0.0, 1e-14);
  EXPECT_NEAR(results.circle().radius(), 5.0, 1e-14);
  EXPECT_NEAR(results.residual(), 0.0, 1e-14);
  EXPECT_TRUE(results.ignored().empty());
}

TEST(CircleFit, ExactArcsGiveTheirCircle) {
  for (const double degrees : {5.0, 30.0, 90.0, 180.0, 360.0}) {
    for (const int count : {5, 6, 50, 1001, 100000}) {
      SCOPED_TRACE(degrees);
      SCOPED_TRACE(count);
      const gxVector<2> center(3, -4);
      const auto results = fit(arc(center, 2.0, degrees, count, 0.0, 1));
      // The rounding of the points is enlarged by radius / height of the arc, squared at worst.
      const double height = 1.0 - std::cos(std::min(degrees, 180.0) / 2 * kDegree);
      EXPECT_LE(results.circle().center().distance(center), 2e-14 / height);
      EXPECT_NEAR(results.circle().radius(), 2.0, 2e-14 / height);
      EXPECT_LE(results.residual(), 1e-14);
    }
  }
}

TEST(CircleFit, UnitAndOffsetDoNotMatter) {
  for (const double unit : {1e-6, 1e-3, 1.0, 1e3, 1e6}) {
    for (const double offset : {0.0, 1.0, 1e3, 1e6}) {
      for (const double degrees : {30.0, 90.0, 360.0}) {
        SCOPED_TRACE(unit);
        SCOPED_TRACE(offset);
        SCOPED_TRACE(degrees);
        const Points plain = arc({0, 0}, 1.0, degrees, 40, 0.001, 7);
        Points moved;
        for (const auto& p : plain) moved.push_back(p * unit + gxVector<2>(offset, -offset));
        const auto expected = fit(plain);
        const auto results = fit(moved);
        const double lost = 1e-12 + 40 * DBL_EPSILON * offset / unit;
        const double weak = degrees < 60 ? 2000.0 : 20.0;
        if (lost * weak > 0.01) continue;  // the coordinates themselves have no digits left
        const gxVector<2> center = (results.circle().center() - gxVector<2>(offset, -offset)) / unit;
        EXPECT_LE(center.distance(expected.circle().center()), lost * weak);
        EXPECT_NEAR(results.circle().radius() / unit, expected.circle().radius(), lost * weak);
        EXPECT_NEAR(results.residual() / unit, expected.residual(), lost);
      }
    }
  }
}

TEST(CircleFit, PowersOfTwoAsUnitGiveTheSameBits) {
  const Points plain = arc({3, 4}, 1.0, 200.0, 60, 0.03, 11);
  const auto expected = fit(plain);
  for (const int exponent : {-1000, -300, -1, 1, 300, 990}) {
    Points scaled;
    for (const auto& p : plain)
      scaled.emplace_back(std::ldexp(p.x(), exponent), std::ldexp(p.y(), exponent));
    const auto results = fit(scaled);
    EXPECT_EQ(results.circle().center().x(), std::ldexp(expected.circle().center().x(), exponent));
    EXPECT_EQ(results.circle().center().y(), std::ldexp(expected.circle().center().y(), exponent));
    EXPECT_EQ(results.circle().radius(), std::ldexp(expected.circle().radius(), exponent));
    EXPECT_EQ(results.residual(), std::ldexp(expected.residual(), exponent));
  }
}

// No circle near the result has a smaller sum: the fit is at the bottom, whatever the start was.
TEST(CircleFit, NoNeighbourIsBetter) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    const double degrees = 30.0 + 10.0 * static_cast<double>(seed % 34);
    const double noise = 0.05 * static_cast<double>(seed % 5) / 4.0 * std::min(1.0, degrees / 120.0);
    SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << degrees << " degrees, noise "
                                    << noise);
    const Points points = arc({10, 20}, 3.0, degrees, 5 + static_cast<int>(seed) * 7, noise, seed);
    const auto results = fit(points);
    const gxVector<2> c = results.circle().center();
    const double r = results.circle().radius();
    const double least = sumOfSquares(points, c, r);
    EXPECT_NEAR(results.residual(), rms(points, results.circle()), 1e-12);
    for (const double step : {1e-1, 1e-3, 1e-5}) {
      for (int i = -1; i <= 1; ++i) {
        for (int j = -1; j <= 1; ++j) {
          for (int k = -1; k <= 1; ++k) {
            EXPECT_GE(sumOfSquares(points, c + gxVector<2>(i * step, j * step), r + k * step),
                      least * (1 - 1e-12) - 1e-27);
          }
        }
      }
    }
  }
}

TEST(CircleFit, NoiseAveragesOut) {
  for (const double degrees : {60.0, 90.0, 180.0, 360.0}) {
    SCOPED_TRACE(degrees);
    const auto results = fit(arc({-7, 9}, 100.0, degrees, 100000, 0.05, 3));
    // The error of a linear algebraic fit would be 20 and more at 60 and 90 degrees.
    const double allowed = degrees < 100.0 ? 3.0 : 0.5;
    EXPECT_LE(results.circle().center().distance({-7, 9}), allowed);
    EXPECT_NEAR(results.circle().radius(), 100.0, allowed);
    EXPECT_NEAR(results.residual(), 5.0, 0.1);
  }
}

TEST(CircleFit, HeldRadiusMovesTheCentreOnly) {
  const Points points = arc({4, 5}, 2.0, 100.0, 30, 0.0, 5);
  const auto exact = fitHeld(2.0, points);
  EXPECT_LE(exact.circle().center().distance({4, 5}), 1e-13);
  EXPECT_EQ(exact.circle().radius(), 2.0);

  const auto other = fitHeld(2.5, points);
  EXPECT_EQ(other.circle().radius(), 2.5);
  const double least = sumOfSquares(points, other.circle().center(), 2.5);
  EXPECT_NEAR(other.residual() * other.residual() * 30.0, least, 1e-12);
  for (const double step : {1.0, 0.1, 1e-3}) {
    for (int k = 0; k < 16; ++k) {
      const gxVector<2> moved = other.circle().center() + gxVector<2>(step, gxRadian(k * kPi / 8));
      EXPECT_GE(sumOfSquares(points, moved, 2.5), least);
    }
  }
  // On the far side of the arc there is a second valley; it is higher.
  EXPECT_LT(other.circle().center().distance({4, 5}), 1.0);
}

TEST(CircleFit, HeldRadiusOfAFullCircleKeepsTheCentre) {
  const Points points = arc({4, 5}, 2.0, 360.0, 36, 0.0, 5);
  // Twice the radius and more lies better against one side.
  for (const double radius : {1.0, 1.9, 2.1, 3.0}) {
    EXPECT_LE(fitHeld(radius, points).circle().center().distance({4, 5}), 1e-7) << radius;
    EXPECT_NEAR(fitHeld(radius, points).residual(), std::fabs(radius - 2.0), 1e-12);
  }
}

TEST(CircleFit, OutliersBeyondTheLimitAreLeftOut) {
  Points points = arc({1, 2}, 10.0, 360.0, 30, 0.0, 5);
  points[3] = {40, 50};
  points[17] = {1, 2};
  const auto results = fit(points, 2, 0.5);
  EXPECT_EQ(results.ignored(), (std::vector<unsigned long>{3, 17}));
  EXPECT_LE(results.circle().center().distance({1, 2}), 1e-12);
  EXPECT_NEAR(results.circle().radius(), 10.0, 1e-12);
  EXPECT_NEAR(results.residual(), 0.0, 1e-12);
}

TEST(CircleFit, ManyGrossOutliersAreLeftOut) {
  for (const int count : {20, 100, 3000}) {
    for (const double share : {0.1, 0.4}) {
      SCOPED_TRACE(count);
      SCOPED_TRACE(share);
      std::mt19937_64 engine(99);
      std::uniform_real_distribution<double> uniform(-1.0, 1.0);
      Points points = arc({1, 2}, 10.0, 200.0, count, 0.001, 5);
      std::vector<unsigned long> spoiled;
      for (int i = 0; i < static_cast<int>(share * count); ++i) {
        const auto k = static_cast<std::size_t>(i) * 2;
        // A heap on one side, where it pulls most.
        points[k] = gxVector<2>(60.0 + uniform(engine), -30.0 + 20.0 * uniform(engine));
        spoiled.push_back(k);
      }
      const auto results = fit(points, spoiled.size(), 0.1);
      EXPECT_EQ(results.ignored(), spoiled);
      EXPECT_LE(results.circle().center().distance({1, 2}), 0.05);
      EXPECT_NEAR(results.circle().radius(), 10.0, 0.05);
      EXPECT_LE(results.residual(), 0.02);
    }
  }
}

TEST(CircleFit, NobodyWithinTheLimitIsLeftOut) {
  const Points points = arc({1, 2}, 10.0, 360.0, 50, 0.01, 5);
  EXPECT_TRUE(fit(points, 10, 1.0).ignored().empty());
  EXPECT_EQ(fit(points, 10, 1.0).circle(), fit(points).circle());
}

TEST(CircleFit, InfiniteLimitLeavesNobodyOut) {
  Points points = arc({1, 2}, 10.0, 360.0, 50, 0.0, 5);
  points[7] = {1000, 1000};
  EXPECT_TRUE(fit(points, 10, HUGE_VAL).ignored().empty());
  EXPECT_EQ(fit(points, 10, HUGE_VAL).circle(), fit(points).circle());
}

TEST(CircleFit, MorePointsThanMayBeLeftOutStayIn) {
  Points points = arc({0, 0}, 10.0, 360.0, 40, 0.0, 5);
  points[1] = {30, 0};
  points[2] = {31, 0};
  const auto results = fit(points, 1, 0.5);
  EXPECT_EQ(results.ignored().size(), 1U);
  EXPECT_GT(results.residual(), 0.5);
}

TEST(CircleFit, IgnoringAllPointsKeepsEnough) {
  const Points points = arc({0, 0}, 10.0, 360.0, 8, 0.1, 5);
  const auto results = fit(points, std::numeric_limits<unsigned long>::max(), 0.0);
  EXPECT_LE(results.ignored().size(), 5U);
}

TEST(CircleFit, TooFewDistinctPointsAreRefused) {
  expectRefused<Defs::BadPoints>(kAll, {});
  expectRefused<Defs::BadPoints>(kAll, {{1, 1}});
  expectRefused<Defs::BadPoints>(kAll, {{1, 1}, {2, 2}});
  expectRefused<Defs::BadPoints>(kAll, {{1, 1}, {2, 5}, {1, 1}, {2, 5}, {2, 5}});
  expectRefused<Defs::BadPoints>(kAll, Points(100, {3, 3}));
}

TEST(CircleFit, PointsOnALineAreRefused) {
  expectRefused<Defs::BadPoints>(kAll, {{0, 0}, {1, 0}, {2, 0}, {5, 0}});
  expectRefused<Defs::BadPoints>(kAll, {{0, 0}, {1, 3}, {2, 6}, {10, 30}});
  Points rounded;
  for (int i = 0; i < 50; ++i) rounded.emplace_back(1e6 + i * 0.1, 2e6 + i * 0.3);
  expectRefused<Defs::BadPoints>(kAll, rounded);
  expectRefused<Defs::BadPoints>(gxCircleFitParams(Defs::eFixedRadius, 2.0, 0, HUGE_VAL),
                                 {{0, 0}, {1, 0}, {2, 0}});
}

TEST(CircleFit, NotFinitePointsAreRefused) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expectRefused<Defs::BadPoints>(kAll, {{0, 0}, {1, 0}, {0, 1}, {nan, 1}});
  expectRefused<Defs::BadPoints>(kAll, {{0, 0}, {1, 0}, {0, 1}, {1, HUGE_VAL}});
  expectRefused<Defs::BadPoints>(kAll, {{0, 0}, {1, 0}, {0, 1}, {-HUGE_VAL, 1}});
}

TEST(CircleFit, SenselessParametersAreRefused) {
  const Points points = arc({0, 0}, 1.0, 360.0, 10, 0.0, 1);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expectRefused<Defs::BadParams>(gxCircleFitParams(static_cast<Defs::fit_mode>(2), 1.0, 0, HUGE_VAL),
                                 points);
  expectRefused<Defs::BadParams>(gxCircleFitParams(static_cast<Defs::fit_mode>(-1), 1.0, 0, HUGE_VAL),
                                 points);
  for (const double radius : {0.0, -1.0, nan, HUGE_VAL}) {
    expectRefused<Defs::BadParams>(gxCircleFitParams(Defs::eFixedRadius, radius, 0, HUGE_VAL), points);
  }
  expectRefused<Defs::BadParams>(gxCircleFitParams(Defs::eFitAll, 1.0, 1, nan), points);
  expectRefused<Defs::BadParams>(gxCircleFitParams(Defs::eFitAll, 1.0, 1, -1.0), points);
  // The radius is not looked at when it is not held.
  gxCircleFitResults results;
  EXPECT_NO_THROW(gfCircleFit(gxCircleFitParams(Defs::eFitAll, nan, 0, HUGE_VAL), points, results));
}

TEST(CircleFit, ExceptionsAreCaughtAsTheBaseClass) {
  gxCircleFitResults results;
  EXPECT_THROW(gfCircleFit(kAll, {}, results), gxException);
  EXPECT_THROW(gfCircleFit(kAll, {}, results), Defs::Errors);
  try {
    gfCircleFit(kAll, {{0, 0}, {1, 1}, {2, 2}}, results);
  } catch (const gxException& error) {
    EXPECT_STREQ(error.what(), "gxCircleFitDefs::BadPoints: the points do not determine a circle");
    EXPECT_EQ(error.errorNumber(), 0x10000142);
  }
}

TEST(CircleFit, TheEndsOfTheRangeWork) {
  for (const double size : {1e-300, 1e300}) {
    const auto results = fit(arc({size, -size}, size, 360.0, 20, 0.0, 1));
    EXPECT_NEAR(results.circle().radius() / size, 1.0, 1e-13);
    EXPECT_NEAR(results.circle().center().x() / size, 1.0, 1e-13);
  }
  const auto largest = fit({{DBL_MAX, 0}, {-DBL_MAX, 0}, {0, DBL_MAX}, {0, -DBL_MAX}});
  EXPECT_NEAR(largest.circle().radius() / DBL_MAX, 1.0, 1e-13);
  const double tiny = std::numeric_limits<double>::denorm_min();
  const auto smallest = fit({{100 * tiny, 0}, {-100 * tiny, 0}, {0, 100 * tiny}});
  EXPECT_NEAR(smallest.circle().radius() / tiny, 100.0, 1.0);
}

TEST(CircleFit, DefaultResultsAreEmpty) {
  const gxCircleFitResults results;
  EXPECT_EQ(results.circle(), gxCircle());
  EXPECT_EQ(results.residual(), 0.0);
  EXPECT_TRUE(results.ignored().empty());
}

// ---- Within a budget ----------------------------------------------------------------------------

TEST(CircleFit, ThatIsStoppedLeavesTheResultsAsTheyWere) {
  Points points = arc({3, 4}, 10, 360, 200, 0.001, 5);
  for (std::size_t i = 0; i < points.size(); i += 15) points[i] = points[i] * 1.5;
  const gxCircleFitParams params(Defs::eFitAll, 1.0, 20, 0.5);
  gxCircleFitResults expected;
  gfCircleFit(params, points, expected);
  gxCircleFitResults results;
  int stopped = 0;
  for (std::uint64_t most = 0;; most = most * 3 + 1) {
    gxBudget budget(most);
    try {
      gfCircleFit(params, points, results, budget);
      break;
    } catch (const gxStopped&) {
      ++stopped;
      EXPECT_EQ(results.residual(), 0.0);
      EXPECT_TRUE(results.ignored().empty());
    }
  }
  EXPECT_GT(stopped, 8) << "hundreds of passes over the points";
  EXPECT_EQ(results.circle(), expected.circle());
  EXPECT_EQ(results.residual(), expected.residual());
  EXPECT_EQ(results.ignored(), expected.ignored());
  EXPECT_GT(results.ignored().size(), 10U);
}
