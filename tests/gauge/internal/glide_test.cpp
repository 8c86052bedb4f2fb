// Distances from a gliding point, and where two are equal.
#include <gauge/internal/glide.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

TEST(Glide, ZonesAreTheSquareOfTheDistance) {
  RandomShapes random("glide zones", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto point = [&random] { return gxVector<2>(random.uniform(-2, 2), random.uniform(-2, 2)); };
    const gx_Piece glide{point(), point()};
    const gx_Piece segment{point(), random.chance(0.1) ? point() : point()};
    gx_Cuts cuts;
    cuts.add(0.0);
    cuts.add(1.0);
    gx_addZoneCuts(glide, segment, 0.0, 1.0, cuts);
    for (std::size_t i = 0; i + 1 < cuts.count; ++i) {
      ASSERT_LE(cuts.t[i], cuts.t[i + 1]);
      const gx_GlideZone zone = gx_zoneOf(glide, segment, cuts.t[i], 0.5 * (cuts.t[i] + cuts.t[i + 1]));
      for (const double share : {0.0, 0.3, 0.7, 1.0}) {
        const double u = share * (cuts.t[i + 1] - cuts.t[i]);
        const double square = segment.squareFrom(glide.at(cuts.t[i] + u));
        EXPECT_NEAR(zone.a + zone.b * u + zone.c * u * u, square, 1e-13);
        if (zone.inside) {
          EXPECT_NEAR(std::abs(zone.at + zone.slope * u), std::sqrt(square), 1e-13);
        }
      }
    }
  }
}

TEST(Glide, RootsOfAllKindsOfEquations) {
  const auto roots = [](double a, double b, double c) {
    gx_Roots found;
    gx_addRoots(a, b, c, found);
    std::vector<double> result(found.u.begin(), found.u.begin() + static_cast<long>(found.count));
    std::sort(result.begin(), result.end());
    return result;
  };
  EXPECT_EQ(roots(-2, 1, 0), std::vector<double>{2.0});
  EXPECT_TRUE(roots(1, 0, 0).empty());
  EXPECT_TRUE(roots(0, 0, 0).empty());
  EXPECT_TRUE(roots(1, 0, 1).empty());
  EXPECT_EQ(roots(2, -3, 1), (std::vector<double>{1.0, 2.0}));
  EXPECT_EQ(roots(0, 0, 1), (std::vector<double>{0.0}));
  // Without cancellation: the roots of 1 − 1e8 u + u² are 1e-8 and 1e8.
  const auto wide = roots(1, -1e8, 1);
  ASSERT_EQ(wide.size(), 2u);
  EXPECT_NEAR(wide[0], 1e-8, 1e-23);
  EXPECT_NEAR(wide[1], 1e8, 1e-7);
  // A double root that rounding may lose.
  const auto twice = roots(0.1 * 0.1, -0.2, 1);
  ASSERT_FALSE(twice.empty());
  EXPECT_NEAR(twice[0], 0.1, 1e-8);
}

TEST(Glide, TheSummitIsNoLowerThanAnySample) {
  RandomShapes random("glide summit", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto point = [&random] { return gxVector<2>(random.uniform(-2, 2), random.uniform(-2, 2)); };
    const gx_Piece glide{point(), point()};
    const gx_Piece f{point(), point()};
    const gx_Piece g{point(), point()};
    const auto least = [&](double t) {
      return std::min(f.squareFrom(glide.at(t)), g.squareFrom(glide.at(t)));
    };
    const gx_Summit summit = gx_summitOf(glide, f, g, 0.0, 1.0);
    EXPECT_GE(summit.t, 0.0);
    EXPECT_LE(summit.t, 1.0);
    EXPECT_EQ(summit.square, least(summit.t));
    double most = std::max({summit.square, least(0.0), least(1.0)});
    for (int k = 1; k < 400; ++k) EXPECT_LE(least(k / 400.0), most + 1e-13);
  }
}

}  // namespace
