// The Fréchet distance by hand, and beside a plain search on a fine grid of parameters.
#include <gauge/frechet.h>
#include <gauge/hausdorff.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <sstream>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
using Points = std::vector<gxVector<2>>;

double frechet(const char* a, const char* b) {
  return gfFrechet(pointsOf(a), pointsOf(b)).frechet;
}

TEST(Frechet, FiguresByHand) {
  EXPECT_EQ(frechet("0 0, 10 0", "0 1, 10 1"), 1.0);
  EXPECT_NEAR(frechet("0 0, 10 0", "0 0, 8 0, 2 0, 10 0"), 3.0, 1e-14);
  EXPECT_NEAR(frechet("0 0, 10 0", "0 0, 5 4, 10 0"), 4.0, 1e-14);
  EXPECT_EQ(frechet("0 0, 10 0", "10 0, 0 0"), 10.0);
  EXPECT_EQ(frechet("0 0, 4 4, 9 1", "0 0, 4 4, 9 1"), 0.0);
  EXPECT_EQ(
      gfHausdorff({pointsOf("0 0, 10 0"), false}, {pointsOf("0 0, 8 0, 2 0, 10 0"), false}).hausdorff,
      0.0);
}

TEST(Frechet, InAnyPlace) {
  const Points line = pointsOf("0 0, 10 0");
  const Points back = pointsOf("0 0, 8 0, 2 0, 10 0");
  for (const Placement& placed : {kTurned345, kFarAway, kTurnedFarAway}) {
    EXPECT_NEAR(gfFrechet(placed.of(line), placed.of(back)).frechet, 3.0, 1e-9);
  }
  for (const int exponent : {-1000, 1000}) {
    const Placement placed{1, 0, {0, 0}, std::ldexp(1.0, exponent)};
    EXPECT_NEAR(std::ldexp(gfFrechet(placed.of(line), placed.of(back)).frechet, -exponent), 3.0, 1e-14);
  }
}

TEST(Frechet, OfAPointTheGreatestDistance) {
  EXPECT_EQ(frechet("0 0", "3 4, 1 0, 6 8"), 10.0);
  EXPECT_EQ(frechet("3 4, 6 8", "0 0"), 10.0);
  EXPECT_EQ(gfFrechet(pointsOf("0 0"), pointsOf("3 4, 6 8")).lower, 10.0);
  EXPECT_EQ(frechet("1 1", "1 1"), 0.0);
  EXPECT_EQ(frechet("1 1, 1 1, 1 1", "1 1, 4 5"), 5.0);
}

TEST(Frechet, WhatHasNoneSaysSo) {
  EXPECT_EQ(gfFrechet(Points{}, pointsOf("0 0")).status, gxStatus::eEmpty);
  EXPECT_EQ(gfFrechet(pointsOf("0 0"), Points{}).status, gxStatus::eEmpty);
  EXPECT_EQ(gfFrechet(Points{{0, kNaN}}, Points{}).status, gxStatus::eNotFinite);
  EXPECT_TRUE(std::isnan(gfFrechet(Points{}, Points{}).frechet));
}

TEST(Frechet, AClosedContourIsWalkedAround) {
  const gxContour square(pointsOf("0 0, 4 0, 4 4, 0 4"));
  const gxContour open(pointsOf("0 0, 4 0, 4 4, 0 4, 0 0"), false);
  EXPECT_EQ(gfFrechet(square, open).frechet, 0.0);
  EXPECT_GT(gfFrechet(gxContour(pointsOf("0 0, 4 0, 4 4, 0 4"), false), open).frechet, 1.0);
}

TEST(Frechet, TooManyPairsAreBounded) {
  Points a;
  Points b;
  for (int i = 0; i < 5000; ++i) {
    a.emplace_back(0.01 * i, std::sin(0.05 * i));
    b.emplace_back(0.01 * i, std::sin(0.05 * i) + 0.125 * (i % 2));
  }
  const gxFrechet got = gfFrechet(a, b);
  EXPECT_EQ(got.status, gxStatus::eCapped);
  EXPECT_LE(got.lower, got.frechet);
  EXPECT_GE(got.frechet, 0.12);
}

// The discrete distance of both lines cut into small pieces, which is above the true one by at most the
// length of two pieces.
double fineDiscrete(const Points& a, const Points& b, int pieces, double& slack) {
  const auto cut = [&](const Points& p) {
    Points result{p[0]};
    for (std::size_t i = 1; i < p.size(); ++i) {
      for (int k = 1; k <= pieces; ++k) {
        const double t = static_cast<double>(k) / pieces;
        result.push_back(p[i - 1] * (1 - t) + p[i] * t);
      }
      slack = std::max(slack, p[i - 1].distance(p[i]) / pieces);
    }
    return result;
  };
  const Points p = cut(a);
  const Points q = cut(b);
  std::vector<double> row(q.size());
  for (std::size_t i = 0; i < p.size(); ++i) {
    double diagonal = 0.0;
    for (std::size_t j = 0; j < q.size(); ++j) {
      const double above = row[j];
      double best = i == 0 && j == 0 ? 0.0 : std::numeric_limits<double>::infinity();
      if (i > 0) best = std::min(best, above);
      if (j > 0) best = std::min(best, row[j - 1]);
      if (i > 0 && j > 0) best = std::min(best, diagonal);
      row[j] = std::max(best, p[i].distance(q[j]));
      diagonal = above;
    }
  }
  return row.back();
}

// A poly-line from its end to its start (`reversed` turns outlines around, which keep their first point).
Points fromEnd(const Points& points) {
  return {points.rbegin(), points.rend()};
}

TEST(Frechet, RandomLinesBesideAFineGrid) {
  RandomShapes random("frechet", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto line = [&] {
      Points points;
      const int n = random.integer(2, 9);
      for (int i = 0; i < n; ++i) points.emplace_back(random.uniform(0, 10), random.uniform(0, 10));
      return points;
    };
    const Points a = line();
    const Points b = line();
    double slack = 0.0;
    const double fine = fineDiscrete(a, b, 60, slack);
    const gxFrechet got = gfFrechet(a, b);
    EXPECT_LE(got.frechet, fine + 1e-12);
    EXPECT_GE(got.frechet, fine - 2 * slack);
    EXPECT_EQ(got.lower, got.frechet);
    EXPECT_NEAR(gfFrechet(b, a).frechet, got.frechet, 1e-13);
    EXPECT_NEAR(gfFrechet(fromEnd(a), fromEnd(b)).frechet, got.frechet, 1e-13);
    EXPECT_GE(got.frechet, gfHausdorff({a, false}, {b, false}).hausdorff - 1e-13);
  }
}

TEST(Frechet, ResultsPrint) {
  std::ostringstream out;
  out << gfFrechet(pointsOf("0 0, 1 0"), pointsOf("0 2, 1 2"));
  EXPECT_EQ(out.str(), "frechet 2, at least 2, ok");
}

}  // namespace
