// Covers base/velstd/internal/ellipse_distance.h
// Covers base/velstd/internal/ellipse_forms.cpp
// Covers base/velstd/internal/ellipse_solver.cpp
// Covers base/velstd/internal/ellipse_start.cpp
#include <gtest/gtest.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;
using Defs = gxEllipseFitDefs;
using Geom = gxEllipse::gxEllipseGeom;

constexpr double kPi = 3.141592653589793;
constexpr double kDegree = kPi / 180.0;

gxEllipseFitResults fit(const Points& points, unsigned long ignore = 0, double limit = HUGE_VAL) {
  gxEllipseFitResults results;
  gfEllipseFit(gxEllipseFitParams(Defs::eFitAll, gxRadian(0.0), ignore, limit), points, results);
  return results;
}

gxEllipseFitResults fitHeld(double rotation, const Points& points) {
  gxEllipseFitResults results;
  gfEllipseFit(gxEllipseFitParams(Defs::eFixedRotation, gxRadian(rotation), 0, HUGE_VAL), points,
               results);
  return results;
}

double circleResidual(const Points& points, unsigned long ignore = 0, double limit = HUGE_VAL) {
  gxCircleFitResults results;
  gfCircleFit(gxCircleFitParams(gxCircleFitDefs::eFitAll, 1.0, ignore, limit), points, results);
  return results.residual();
}

Geom ellipse(const gxVector<2>& center, double a, double b, double rotation) {
  return Geom{center, {a, b}, gxRadian(rotation), false, false};
}

struct Arc {
  double start = 17.0;     // degrees of the parameter angle
  double degrees = 360.0;  // how far it runs
  int count = 100;
  double noise = 0.0;  // standard deviation, part of the shorter semi-axis
};

Points sample(const Geom& geom, const Arc& arc, std::uint64_t seed = 1) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal;
  const gxVector<2> u(1.0, geom.rotation);
  const gxVector<2> v(-u.y(), u.x());
  Points points;
  for (int i = 0; i < arc.count; ++i) {
    const double step = arc.degrees / (arc.degrees >= 360.0 ? arc.count : arc.count - 1);
    const double t = (arc.start + step * i) * kDegree;
    const double sigma = arc.noise * geom.radii.y();
    const gxVector<2> noise(sigma * normal(engine), sigma * normal(engine));
    points.push_back(geom.center + u * (geom.radii.x() * std::cos(t)) +
                     v * (geom.radii.y() * std::sin(t)) + noise);
  }
  return points;
}

// The difference of two axis directions, in [0, π/2].
double angleBetween(double a, double b) {
  return std::fabs(std::remainder(a - b, kPi));
}

void expectEllipse(const Geom& found, const Geom& expected, double tolerance) {
  EXPECT_LE(found.center.distance(expected.center), tolerance);
  EXPECT_NEAR(found.radii.x(), expected.radii.x(), tolerance);
  EXPECT_NEAR(found.radii.y(), expected.radii.y(), tolerance);
  const double eccentric = (expected.radii.x() - expected.radii.y()) / expected.radii.x();
  if (eccentric > 0.01) {
    EXPECT_LE(angleBetween(found.rotation.toDouble(), expected.rotation.toDouble()),
              tolerance / expected.radii.x() / eccentric);
  }
}

void expectOneForm(const Geom& geom) {
  EXPECT_GE(geom.radii.x(), geom.radii.y());
  EXPECT_GT(geom.radii.y(), 0.0);
  EXPECT_GT(geom.rotation.toDouble(), -kPi / 2);
  EXPECT_LE(geom.rotation.toDouble(), kPi / 2);
  if (geom.radii.x() == geom.radii.y()) {
    EXPECT_EQ(geom.rotation.toDouble(), 0.0);
  }
  EXPECT_FALSE(geom.clockwise);
  EXPECT_FALSE(geom.inverted);
}

// The distance of a point to an ellipse, by looking at the whole outline, then ever closer.
double slowDistance(const Geom& geom, const gxVector<2>& point) {
  const gxEllipse outline(geom);
  double best = 0.0;
  double width = kPi;
  for (int round = 0; round < 22; ++round) {
    const double middle = best;
    double least = HUGE_VAL;
    const int steps = round == 0 ? 400 : 8;
    for (int i = -steps; i <= steps; ++i) {
      const double t = middle + width * i / steps;
      const double d = outline.point(gxRadian(t)).distance(point);
      if (d < least) {
        least = d;
        best = t;
      }
    }
    width = 2.0 * width / steps;
  }
  return outline.point(gxRadian(best)).distance(point);
}

double slowRms(const Geom& geom, const Points& points) {
  double sum = 0.0;
  for (const auto& p : points) sum += slowDistance(geom, p) * slowDistance(geom, p);
  return std::sqrt(sum / static_cast<double>(points.size()));
}

template <class Exception>
void expectRefused(const gxEllipseFitParams& params, const Points& points) {
  const gxEllipse before(ellipse({1, 2}, 4, 3, 0.5));
  gxEllipseFitResults results(before, 4.0, {5});
  EXPECT_THROW(gfEllipseFit(params, points, results), Exception);
  EXPECT_EQ(results.ellipse(), before);
  EXPECT_EQ(results.residual(), 4.0);
  EXPECT_EQ(results.ignored(), std::vector<unsigned long>{5});
}

const gxEllipseFitParams kAll(Defs::eFitAll, gxRadian(0.0), 0, HUGE_VAL);

}  // namespace

// ---- Exact points ----------------------------------------------------------------------------------

TEST(EllipseFit, FivePointsGiveTheirEllipse) {
  const Geom truth = ellipse({3, -2}, 5, 2, 0.4);
  const auto results = fit(sample(truth, {.count = 5}));
  expectEllipse(results.ellipse().geom(), truth, 1e-12);
  EXPECT_LE(results.residual(), 1e-13);
}

TEST(EllipseFit, ExactOutlinesOfEveryRatioAndCountGiveTheirEllipse) {
  for (const double ratio : {1.0, 1.001, 1.5, 3.0, 10.0, 100.0}) {
    for (const int count : {5, 6, 7, 12, 100, 1001, 100000}) {
      SCOPED_TRACE(testing::Message() << "ratio " << ratio << ", " << count << " points");
      const Geom truth = ellipse({3, -2}, 5, 5 / ratio, -0.7);
      const auto results = fit(sample(truth, {.count = count}));
      expectEllipse(results.ellipse().geom(), truth, 1e-11);
      expectOneForm(results.ellipse().geom());
      EXPECT_LE(results.residual(), 1e-13);
    }
  }
}

TEST(EllipseFit, ExactArcsGiveTheirEllipse) {
  for (const double degrees : {30.0, 60.0, 90.0, 180.0, 270.0}) {
    for (const double ratio : {1.5, 3.0, 10.0}) {
      for (int start = 0; start < 360; start += 40) {
        SCOPED_TRACE(testing::Message() << degrees << " degrees from " << start << ", ratio " << ratio);
        const Geom truth = ellipse({3, -2}, 5, 5 / ratio, 1.2);
        const auto results = fit(sample(truth, {.start = start + 0.5, .degrees = degrees, .count = 60}));
        // Rounding is enlarged by the fourth power of 1 / arc, and by the ratio.
        const double tolerance = 1e-12 * std::pow(360.0 / degrees, 4) * ratio;
        expectEllipse(results.ellipse().geom(), truth, tolerance);
        EXPECT_LE(results.residual(), 1e-13);
      }
    }
  }
}

// ---- One way to say it -----------------------------------------------------------------------------

TEST(EllipseFit, RotationIsTheDirectionOfTheLongerAxisAtEveryFifteenDegrees) {
  for (int degrees = -360; degrees <= 360; degrees += 15) {
    for (const double noise : {0.0, 0.001}) {
      SCOPED_TRACE(degrees);
      const Geom truth = ellipse({1, 2}, 4, 3, degrees * kDegree);
      const auto found = fit(sample(truth, {.count = 72, .noise = noise})).ellipse().geom();
      expectOneForm(found);
      EXPECT_LE(angleBetween(found.rotation.toDouble(), degrees * kDegree), noise == 0.0 ? 1e-13 : 2e-3);
    }
  }
}

TEST(EllipseFit, AnUprightEllipseHasRotationHalfPi) {
  const Geom truth = ellipse({0, 0}, 4, 3, kPi / 2);
  EXPECT_NEAR(fit(sample(truth, {.start = 0, .count = 8})).ellipse().geom().rotation.toDouble(), kPi / 2,
              1e-14);
}

TEST(EllipseFit, CirclesHaveEqualRadiiAndRotationZero) {
  for (const int count : {5, 8, 36, 101, 5000}) {
    SCOPED_TRACE(count);
    const auto found = fit(sample(ellipse({3, 4}, 2, 2, 0.3), {.count = count})).ellipse().geom();
    expectOneForm(found);
    expectEllipse(found, ellipse({3, 4}, 2, 2, 0), 1e-13);
  }
  // The corners of a square are nearest to their circle.
  const auto square = fit({{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 0}, {std::sqrt(0.5), std::sqrt(0.5)}});
  expectEllipse(square.ellipse().geom(), ellipse({0, 0}, 1, 1, 0), 1e-13);
}

// ---- Unit and place --------------------------------------------------------------------------------

TEST(EllipseFit, UnitAndOffsetDoNotMatter) {
  for (const double unit : {1e-6, 1e-3, 1.0, 1e3, 1e6}) {
    for (const double offset : {0.0, 1.0, 1e3, 1e6}) {
      for (const double degrees : {90.0, 200.0, 360.0}) {
        SCOPED_TRACE(testing::Message()
                     << "unit " << unit << ", offset " << offset << ", " << degrees << " degrees");
        const Points plain =
            sample(ellipse({0, 0}, 2, 1, 0.6), {.degrees = degrees, .count = 60, .noise = 0.0005}, 7);
        Points moved;
        for (const auto& p : plain) moved.push_back(p * unit + gxVector<2>(offset, -offset));
        const double lost = (1e-11 + 40 * DBL_EPSILON * offset / unit) * (degrees < 100 ? 1000.0 : 20.0);
        if (lost > 0.01) continue;  // the coordinates themselves have no digits left
        const Geom expected = fit(plain).ellipse().geom();
        Geom found = fit(moved).ellipse().geom();
        found.center = (found.center - gxVector<2>(offset, -offset)) / unit;
        found.radii = found.radii / unit;
        expectEllipse(found, expected, lost);
      }
    }
  }
}

TEST(EllipseFit, PowersOfTwoAsUnitGiveTheSameBits) {
  const Points plain = sample(ellipse({3, 4}, 2, 1, 0.6), {.degrees = 230, .count = 60, .noise = 0.03});
  const auto expected = fit(plain);
  for (const int exponent : {-1000, -300, -1, 1, 300, 990}) {
    Points scaled;
    for (const auto& p : plain)
      scaled.emplace_back(std::ldexp(p.x(), exponent), std::ldexp(p.y(), exponent));
    const auto results = fit(scaled);
    EXPECT_EQ(results.ellipse().geom().radii.x(),
              std::ldexp(expected.ellipse().geom().radii.x(), exponent));
    EXPECT_EQ(results.ellipse().geom().radii.y(),
              std::ldexp(expected.ellipse().geom().radii.y(), exponent));
    EXPECT_EQ(results.ellipse().geom().rotation, expected.ellipse().geom().rotation);
    EXPECT_EQ(results.residual(), std::ldexp(expected.residual(), exponent));
  }
}

TEST(EllipseFit, TurnedPointsGiveTheTurnedEllipse) {
  const Points plain = sample(ellipse({0, 0}, 3, 1, 0.0), {.degrees = 220, .count = 80, .noise = 0.02});
  const Geom expected = fit(plain).ellipse().geom();
  for (int degrees = 0; degrees < 180; degrees += 15) {
    SCOPED_TRACE(degrees);
    const gxVector<2> u(1.0, gxRadian(degrees * kDegree));
    Points turned;
    for (const auto& p : plain)
      turned.emplace_back(u.x() * p.x() - u.y() * p.y(), u.y() * p.x() + u.x() * p.y());
    Geom wanted = expected;
    wanted.center = {u.x() * expected.center.x() - u.y() * expected.center.y(),
                     u.y() * expected.center.x() + u.x() * expected.center.y()};
    wanted.rotation = gxRadian(expected.rotation.toDouble() + degrees * kDegree);
    expectEllipse(fit(turned).ellipse().geom(), wanted, 1e-9);
  }
}

// ---- The least sum ---------------------------------------------------------------------------------

TEST(EllipseFit, ResidualIsTheRootMeanSquareDistance) {
  for (const double ratio : {1.2, 4.0, 30.0}) {
    for (const double degrees : {100.0, 360.0}) {
      SCOPED_TRACE(testing::Message() << "ratio " << ratio << ", " << degrees << " degrees");
      const Points points =
          sample(ellipse({1, 2}, 10, 10 / ratio, 0.5), {.degrees = degrees, .count = 25, .noise = 0.05});
      const auto results = fit(points);
      EXPECT_NEAR(results.residual(), slowRms(results.ellipse().geom(), points), 1e-9);
    }
  }
}

TEST(EllipseFit, DistancesOfPointsOnTheAxesAreRight) {
  // The centre and points of both axes, inside and outside, added to an ellipse of many points.
  const Geom truth = ellipse({0, 0}, 5, 2, 0.0);
  Points points = sample(truth, {.start = 3, .count = 400});
  for (const double x : {0.0, 1.0, 4.1, 4.2, 4.3, 6.0}) points.emplace_back(x, 0.0);
  for (const double y : {0.5, 1.9, 3.0}) points.emplace_back(0.0, y);
  const auto results = fit(points);
  EXPECT_NEAR(results.residual(), slowRms(results.ellipse().geom(), points), 1e-9);
}

TEST(EllipseFit, NoNeighbourIsBetter) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    const double degrees = seed % 3 == 0 ? 200.0 : 360.0;
    const double ratio = 1.0 + 0.7 * static_cast<double>(seed);
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const Points points =
        sample(ellipse({1, 2}, 10, 10 / ratio, 0.3 * static_cast<double>(seed)),
               {.degrees = degrees, .count = 40, .noise = degrees < 300 ? 0.005 : 0.04}, seed);
    const auto results = fit(points);
    const Geom best = results.ellipse().geom();
    const double least = slowRms(best, points);
    EXPECT_NEAR(results.residual(), least, 1e-9);
    for (const double step : {0.03, -0.03, 1e-3, -1e-3}) {
      for (int k = 0; k < 5; ++k) {
        Geom near = best;
        if (k == 0) near.center += gxVector<2>(step, 0);
        if (k == 1) near.center += gxVector<2>(0, step);
        if (k == 2) near.radii += gxVector<2>(step, 0);
        if (k == 3) near.radii += gxVector<2>(0, step);
        if (k == 4) near.rotation = gxRadian(near.rotation.toDouble() + step / 5);
        EXPECT_GE(slowRms(near, points), least * (1 - 1e-9)) << "number " << k << " by " << step;
      }
    }
  }
}

TEST(EllipseFit, NoNeighbourIsBetterForShapesThatAreNoEllipses) {
  // Far from any ellipse, but the size is not in doubt: a rectangle, a bent hexagon.
  const std::vector<Points> corners = {{{0, 0}, {9, 0}, {9, 5}, {0, 5}},
                                       {{0, 0}, {5, -1}, {9, 2}, {8, 5}, {3, 5}, {-1, 3}}};
  for (const Points& ring : corners) {
    SCOPED_TRACE(ring.size());
    Points points;
    for (std::size_t k = 0; k < ring.size(); ++k) {
      const gxVector<2> end = ring[(k + 1) % ring.size()];
      for (int i = 0; i < 12; ++i) points.push_back(ring[k] + (end - ring[k]) * (i / 12.0));
    }
    const auto results = fit(points);
    const Geom best = results.ellipse().geom();
    const double least = slowRms(best, points);
    EXPECT_NEAR(results.residual(), least, 1e-9);
    EXPECT_LT(least, circleResidual(points));
    for (const double step : {0.03, -0.03, 1e-3, -1e-3}) {
      for (int k = 0; k < 5; ++k) {
        Geom near = best;
        if (k == 0) near.center += gxVector<2>(step, 0);
        if (k == 1) near.center += gxVector<2>(0, step);
        if (k == 2) near.radii += gxVector<2>(step, 0);
        if (k == 3) near.radii += gxVector<2>(0, step);
        if (k == 4) near.rotation = gxRadian(near.rotation.toDouble() + step / 5);
        EXPECT_GE(slowRms(near, points), least * (1 - 1e-9)) << "number " << k << " by " << step;
      }
    }
  }
}

TEST(EllipseFit, FewPointsOfEveryCountCountOnce) {
  // Points come eight at a time; each place of the last eight is filled once here.
  for (int count = 9; count <= 33; ++count) {
    SCOPED_TRACE(count);
    const Points points = sample(ellipse({1, 2}, 10, 6, 0.4), {.count = count, .noise = 0.03}, 5);
    const auto results = fit(points);
    EXPECT_NEAR(results.residual(), slowRms(results.ellipse().geom(), points), 1e-9);
  }
}

TEST(EllipseFit, NeverWorseThanTheCircle) {
  std::mt19937_64 engine(20260201);
  SCOPED_TRACE("seed 20260201");
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  for (int i = 0; i < 400; ++i) {
    Points points;
    if (i % 4 == 0) {
      const int count = 5 + static_cast<int>(engine() % 30);
      for (int k = 0; k < count; ++k) points.emplace_back(uniform(engine), uniform(engine));
    } else {
      points = sample(ellipse({0, 0}, 1, 1 - 0.5 * uniform(engine) * (i % 3), 3 * uniform(engine)),
                      {.start = 360 * uniform(engine),
                       .degrees = 30 + 330 * uniform(engine),
                       .count = 5 + static_cast<int>(engine() % 300),
                       .noise = 0.05 * uniform(engine)},
                      engine());
    }
    const auto results = fit(points);
    expectOneForm(results.ellipse().geom());
    ASSERT_LE(results.residual(), circleResidual(points)) << i;
    ASSERT_LE(fitHeld(3 * uniform(engine), points).residual(), circleResidual(points) * (1 + 1e-9)) << i;
  }
}

TEST(EllipseFit, CleanNearCirclesOfAnyCountFit) {
  for (const int count : {20, 99, 100, 101, 102, 150, 499, 500, 501, 1000, 1001, 20000}) {
    for (const double noise : {0.0, 1e-9, 1e-6, 1e-3}) {
      SCOPED_TRACE(testing::Message() << count << " points, noise " << noise);
      const auto results = fit(sample(ellipse({320, 240}, 50, 50, 0), {.count = count, .noise = noise}));
      expectEllipse(results.ellipse().geom(), ellipse({320, 240}, 50, 50, 0), 1e-10 + 100 * noise);
      EXPECT_LE(results.residual(), 1e-10 + 75 * noise);
    }
  }
}

TEST(EllipseFit, TheEllipseStaysNearItsPoints) {
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    const double degrees = 30.0 + static_cast<double>(seed % 12) * 30.0;
    const double ratio = std::pow(10.0, static_cast<double>(seed % 5) / 2.0);
    const double noise = 0.05 * static_cast<double>(seed % 7) / 6.0;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const Points points = sample(ellipse({1, 2}, 10, 10 / ratio, static_cast<double>(seed)),
                                 {.start = static_cast<double>(seed * 37),
                                  .degrees = degrees,
                                  .count = 30 + static_cast<int>(seed),
                                  .noise = noise},
                                 seed);
    const auto results = fit(points);
    expectOneForm(results.ellipse().geom());
    // Nearly as near as the truth itself, which the noise hides.
    EXPECT_LE(results.residual(), 1.2 * noise * 10 / ratio + 1e-12);
  }
}

TEST(EllipseFit, NoiseAveragesOut) {
  const Geom truth = ellipse({-7, 9}, 100, 50, 0.8);
  const auto full = fit(sample(truth, {.count = 100000, .noise = 0.05}));
  expectEllipse(full.ellipse().geom(), truth, 0.3);
  EXPECT_NEAR(full.residual(), 2.5, 0.03);
  expectEllipse(fit(sample(truth, {.degrees = 180, .count = 100000, .noise = 0.02})).ellipse().geom(),
                truth, 1.0);
}

TEST(EllipseFit, AManyPointFitIsThatOfAllPoints) {
  // Every other point belongs to another ellipse: a regular sample sees only one of them.
  const Points a = sample(ellipse({0, 0}, 10, 6, 0.2), {.count = 2000});
  const Points b = sample(ellipse({0, 0}, 11, 7, 0.2), {.count = 2000});
  Points points;
  for (std::size_t i = 0; i < a.size(); ++i) points.push_back(i % 2 == 0 ? a[i] : b[i]);
  expectEllipse(fit(points).ellipse().geom(), ellipse({0, 0}, 10.5, 6.5, 0.2), 0.02);
}

// ---- A held rotation -------------------------------------------------------------------------------

TEST(EllipseFit, HeldRotationIsReturnedAsGiven) {
  for (int degrees = -75; degrees <= 90; degrees += 15) {
    SCOPED_TRACE(degrees);
    const double held = degrees * kDegree;
    const Geom truth = ellipse({1, 2}, 4, 3, held);
    const auto found = fitHeld(held, sample(truth, {.count = 50})).ellipse().geom();
    EXPECT_EQ(found.rotation.toDouble(), held);
    expectEllipse(found, truth, 1e-12);
  }
}

TEST(EllipseFit, HeldRotationMayBeThatOfTheShorterAxis) {
  const Geom truth = ellipse({1, 2}, 4, 3, 0.3);
  const auto found = fitHeld(0.3 - kPi / 2, sample(truth, {.count = 50})).ellipse().geom();
  expectEllipse(found, truth, 1e-12);
  expectOneForm(found);
  EXPECT_NEAR(found.rotation.toDouble(), 0.3, 1e-15);
}

TEST(EllipseFit, HeldRotationBeyondTheRangeIsBroughtIn) {
  const Points points = sample(ellipse({1, 2}, 4, 3, 0.3), {.count = 50});
  for (const int turns : {-3, -1, 1, 2}) {
    const auto found = fitHeld(0.3 + turns * kPi, points).ellipse().geom();
    EXPECT_NEAR(found.rotation.toDouble(), 0.3, 1e-14);
    expectOneForm(found);
  }
}

TEST(EllipseFit, HeldRotationThatIsWrongIsKept) {
  const Points points = sample(ellipse({1, 2}, 4, 3, 0.3), {.count = 50});
  const auto held = fitHeld(0.4, points);
  EXPECT_EQ(held.ellipse().geom().rotation.toDouble(), 0.4);
  EXPECT_GT(held.residual(), 0.01);
  EXPECT_NEAR(held.residual(), slowRms(held.ellipse().geom(), points), 1e-9);
}

TEST(EllipseFit, FourPointsDetermineAnEllipseOfHeldRotation) {
  const Geom truth = ellipse({1, 2}, 4, 3, 0.3);
  expectEllipse(fitHeld(0.3, sample(truth, {.count = 4})).ellipse().geom(), truth, 1e-11);
}

// ---- Outliers --------------------------------------------------------------------------------------

TEST(EllipseFit, OutliersBeyondTheLimitAreLeftOut) {
  const Geom truth = ellipse({1, 2}, 10, 6, 0.4);
  Points points = sample(truth, {.count = 40});
  points[3] = {40, 50};
  points[17] = {1, 2};
  const auto results = fit(points, 2, 0.5);
  EXPECT_EQ(results.ignored(), (std::vector<unsigned long>{3, 17}));
  expectEllipse(results.ellipse().geom(), truth, 1e-11);
  EXPECT_LE(results.residual(), 1e-12);
}

TEST(EllipseFit, ManyGrossOutliersAreLeftOut) {
  for (const int count : {20, 1500}) {
    for (const double share : {0.1, 0.4}) {
      SCOPED_TRACE(testing::Message() << count << " points, share " << share);
      const Geom truth = ellipse({1, 2}, 10, 6, 0.4);
      std::mt19937_64 engine(99);
      std::uniform_real_distribution<double> uniform(-1.0, 1.0);
      Points points = sample(truth, {.degrees = 300, .count = count, .noise = 0.001});
      std::vector<unsigned long> spoiled;
      for (int i = 0; i < static_cast<int>(share * count); ++i) {
        const auto k = static_cast<std::size_t>(i) * 2;
        points[k] = gxVector<2>(60.0 + uniform(engine), -30.0 + 20.0 * uniform(engine));
        spoiled.push_back(k);
      }
      const auto results = fit(points, spoiled.size(), 0.1);
      EXPECT_EQ(results.ignored(), spoiled);
      expectEllipse(results.ellipse().geom(), truth, 0.05);
      EXPECT_LE(results.residual(), 0.02);
    }
  }
}

TEST(EllipseFit, ScatteredOutliersAreLeftOut) {
  const Geom truth = ellipse({1, 2}, 10, 4, -0.4);
  std::mt19937_64 engine(123);
  std::uniform_real_distribution<double> uniform(-15.0, 15.0);
  Points points = sample(truth, {.count = 200, .noise = 0.01});
  for (std::size_t i = 0; i < 60; ++i) points[i * 3] = {uniform(engine), uniform(engine)};
  const auto results = fit(points, 60, 0.2);
  expectEllipse(results.ellipse().geom(), truth, 0.05);
  EXPECT_LE(results.residual(), 0.2);
}

TEST(EllipseFit, NobodyWithinTheLimitIsLeftOut) {
  const Points points = sample(ellipse({1, 2}, 10, 6, 0.4), {.count = 50, .noise = 0.01});
  EXPECT_TRUE(fit(points, 10, 1.0).ignored().empty());
  EXPECT_EQ(fit(points, 10, 1.0).ellipse(), fit(points).ellipse());
}

TEST(EllipseFit, InfiniteLimitLeavesNobodyOut) {
  Points points = sample(ellipse({1, 2}, 10, 6, 0.4), {.count = 50});
  points[7] = {100, 100};
  EXPECT_TRUE(fit(points, 10).ignored().empty());
  EXPECT_EQ(fit(points, 10).ellipse(), fit(points).ellipse());
}

TEST(EllipseFit, WithOutliersNeverWorseThanTheCircle) {
  std::mt19937_64 engine(5);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  for (int i = 0; i < 20; ++i) {
    Points points = sample(ellipse({0, 0}, 1, 0.97, 0.2), {.count = 40, .noise = 0.02}, engine());
    for (std::size_t k = 0; k < 6; ++k) points[k * 5] = {uniform(engine) * 3, uniform(engine) * 3};
    EXPECT_LE(fit(points, 6, 0.1).residual(), circleResidual(points, 6, 0.1)) << i;
  }
}

TEST(EllipseFit, EveryCallGivesTheSameResult) {
  Points points = sample(ellipse({1, 2}, 10, 6, 0.4), {.count = 120, .noise = 0.02});
  for (std::size_t i = 0; i < 30; ++i) points[i * 4] = {static_cast<double>(i), 30.0};
  const auto first = fit(points, 30, 0.5);
  const auto second = fit(points, 30, 0.5);
  EXPECT_EQ(first.ellipse(), second.ellipse());
  EXPECT_EQ(first.residual(), second.residual());
  EXPECT_EQ(first.ignored(), second.ignored());
}

// ---- Failures --------------------------------------------------------------------------------------

TEST(EllipseFit, TooFewDistinctPointsAreRefused) {
  expectRefused<Defs::BadPoints>(kAll, {});
  expectRefused<Defs::BadPoints>(kAll, {{1, 1}});
  expectRefused<Defs::BadPoints>(kAll, {{1, 0}, {0, 1}, {-1, 0}, {0, -1}});
  expectRefused<Defs::BadPoints>(kAll, {{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 0}, {0, 1}});
  expectRefused<Defs::BadPoints>(kAll, Points(100, {3, 3}));
  expectRefused<Defs::BadPoints>(gxEllipseFitParams(Defs::eFixedRotation, gxRadian(0.0), 0, HUGE_VAL),
                                 {{1, 0}, {0, 1}, {-1, 0}});
}

TEST(EllipseFit, PointsOnALineAreRefused) {
  for (const double slope : {0.0, 1.0, 3.0, 0.1}) {
    Points points;
    for (int i = 0; i < 40; ++i) points.emplace_back(1e3 + i * 0.1, 7 + slope * i * 0.1);
    expectRefused<Defs::BadPoints>(kAll, points);
    expectRefused<Defs::BadPoints>(gxEllipseFitParams(Defs::eFixedRotation, gxRadian(0.3), 0, HUGE_VAL),
                                   points);
  }
}

TEST(EllipseFit, NotFinitePointsAreRefused) {
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL}) {
    Points points = sample(ellipse({0, 0}, 2, 1, 0), {.count = 10});
    points[4] = {bad, 0};
    expectRefused<Defs::BadPoints>(kAll, points);
    points[4] = {0, bad};
    expectRefused<Defs::BadPoints>(kAll, points);
  }
}

TEST(EllipseFit, SenselessParametersAreRefused) {
  const Points points = sample(ellipse({0, 0}, 2, 1, 0), {.count = 10});
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const gxRadian zero(0.0);
  expectRefused<Defs::BadParams>(gxEllipseFitParams(static_cast<Defs::fit_mode>(2), zero, 0, HUGE_VAL),
                                 points);
  expectRefused<Defs::BadParams>(gxEllipseFitParams(static_cast<Defs::fit_mode>(-1), zero, 0, HUGE_VAL),
                                 points);
  expectRefused<Defs::BadParams>(gxEllipseFitParams(Defs::eFixedRotation, gxRadian(nan), 0, HUGE_VAL),
                                 points);
  expectRefused<Defs::BadParams>(
      gxEllipseFitParams(Defs::eFixedRotation, gxRadian(HUGE_VAL), 0, HUGE_VAL), points);
  expectRefused<Defs::BadParams>(gxEllipseFitParams(Defs::eFitAll, zero, 1, nan), points);
  expectRefused<Defs::BadParams>(gxEllipseFitParams(Defs::eFitAll, zero, 1, -1.0), points);
  gxEllipseFitResults results;
  EXPECT_NO_THROW(
      gfEllipseFit(gxEllipseFitParams(Defs::eFitAll, gxRadian(nan), 0, HUGE_VAL), points, results));
}

TEST(EllipseFit, ExceptionsAreCaughtAsTheBaseClass) {
  gxEllipseFitResults results;
  EXPECT_THROW(gfEllipseFit(kAll, {}, results), gxException);
  EXPECT_THROW(gfEllipseFit(kAll, {}, results), Defs::Errors);
}

TEST(EllipseFit, PointsOfNoEllipseGiveNothingWorseThanACircle) {
  Points parabola;
  Points branches;
  for (int i = -20; i <= 20; ++i) {
    parabola.emplace_back(i * 0.1, i * i * 0.01);
    branches.emplace_back(std::cosh(i * 0.1) * (i % 2 == 0 ? 1 : -1), std::sinh(i * 0.1));
  }
  for (const Points& points : {parabola, branches}) {
    const auto results = fit(points);
    expectOneForm(results.ellipse().geom());
    EXPECT_LE(results.residual(), circleResidual(points));
  }
}

TEST(EllipseFit, TheEndsOfTheRangeWork) {
  for (const double size : {1e-300, 1e300}) {
    const Geom found =
        fit(sample(ellipse({size, -size}, size, size / 2, 0.5), {.count = 20})).ellipse().geom();
    EXPECT_NEAR(found.radii.x() / size, 1.0, 1e-13);
    EXPECT_NEAR(found.radii.y() / size, 0.5, 1e-13);
    EXPECT_NEAR(found.rotation.toDouble(), 0.5, 1e-13);
  }
}

TEST(EllipseFit, DefaultResultsAreEmpty) {
  const gxEllipseFitResults results;
  EXPECT_EQ(results.ellipse(), gxEllipse());
  EXPECT_EQ(results.residual(), 0.0);
  EXPECT_TRUE(results.ignored().empty());
}

// ---- Within a budget ----------------------------------------------------------------------------

TEST(EllipseFit, ThatIsStoppedLeavesTheResultsAsTheyWere) {
  Points points = sample(ellipse({3, 4}, 10, 6, 0.5), {17.0, 360.0, 200, 0.001}, 5);
  for (std::size_t i = 0; i < points.size(); i += 15) points[i] = points[i] * 1.5;
  const gxEllipseFitParams params(Defs::eFitAll, gxRadian(0.0), 20, 0.5);
  gxEllipseFitResults expected;
  gfEllipseFit(params, points, expected);
  gxEllipseFitResults results;
  int stopped = 0;
  for (std::uint64_t most = 0;; most = most * 3 + 1) {
    gxBudget budget(most);
    try {
      gfEllipseFit(params, points, results, budget);
      break;
    } catch (const gxStopped&) {
      ++stopped;
      EXPECT_EQ(results.residual(), 0.0);
      EXPECT_TRUE(results.ignored().empty());
    }
  }
  EXPECT_GT(stopped, 8) << "hundreds of passes over the points";
  EXPECT_EQ(results.ellipse(), expected.ellipse());
  EXPECT_EQ(results.residual(), expected.residual());
  EXPECT_EQ(results.ignored(), expected.ignored());
  EXPECT_GT(results.ignored().size(), 10U);
}
