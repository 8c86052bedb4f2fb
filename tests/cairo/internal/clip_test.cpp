// Cut rings are held against the winding number of the whole ring.
#include <cairo/internal/clip.h>

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <utility>

namespace {

using Ring = std::vector<gxPair<double>>;

const gx_CutBox kBox{{0, 0}, {10, 10}};

// How often a ring goes around a point: signed crossings of the ray to the right.
int winding(const Ring& ring, double x, double y) {
  int sum = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const auto& a = ring[i == 0 ? ring.size() - 1 : i - 1];
    const auto& b = ring[i];
    if ((a.y() <= y) == (b.y() <= y)) continue;
    const double at = a.x() + (y - a.y()) / (b.y() - a.y()) * (b.x() - a.x());
    if (at > x) sum += b.y() > a.y() ? 1 : -1;
  }
  return sum;
}

TEST(Clip, segmentsWithinAcrossAndBeyond) {
  const auto cut = [](gxPair<double> from, gxPair<double> to) {
    return gf_ClipSegment(kBox, from, to) ? std::optional(std::pair(from, to)) : std::nullopt;
  };
  using P = gxPair<double>;
  EXPECT_EQ(cut(P(1, 1), P(9, 9)), std::pair(P(1, 1), P(9, 9)));
  EXPECT_EQ(cut(P(-5, 5), P(15, 5)), std::pair(P(0, 5), P(10, 5)));
  EXPECT_EQ(cut(P(5, 15), P(5, -5)), std::pair(P(5, 10), P(5, 0)));
  EXPECT_EQ(cut(P(-1, 5), P(-1, 6)), std::nullopt);
  EXPECT_EQ(cut(P(11, 5), P(12, 6)), std::nullopt);
  EXPECT_EQ(cut(P(5, -1), P(6, -2)), std::nullopt);
  EXPECT_EQ(cut(P(5, 11), P(6, 12)), std::nullopt);
  EXPECT_EQ(cut(P(-4, 3), P(3, -4)), std::nullopt) << "past the corner";
  EXPECT_EQ(cut(P(0, 0), P(0, 10)), std::pair(P(0, 0), P(0, 10))) << "along the border";
  EXPECT_EQ(cut(P(5, 5), P(5, 5)), std::pair(P(5, 5), P(5, 5)));
}

TEST(Clip, aRingBeyondTheBoxLeavesNothingThatEncloses) {
  EXPECT_TRUE(gf_ClipRing(kBox, {{20, 20}, {30, 20}, {30, 30}}).empty());
  EXPECT_TRUE(gf_ClipRing(kBox, {}).empty());
  const Ring around = gf_ClipRing(kBox, {{-99, -99}, {99, -99}, {99, 99}, {-99, 99}});
  EXPECT_EQ(winding(around, 5, 5), 1);
}

TEST(Clip, randomRingsGoAroundAsOftenAsBefore) {
  const unsigned seed = 4;
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> far(-15, 25);
  std::uniform_real_distribution<double> near(0.001, 9.999);
  for (int round = 0; round < 2000; ++round) {
    Ring ring;
    for (std::size_t i = 0; i < 3 + static_cast<std::size_t>(round % 12); ++i)
      ring.emplace_back(far(random), far(random));
    const Ring cut = gf_ClipRing(kBox, ring);
    for (const auto& p : cut) {
      ASSERT_GE(p.x(), -1e-9);
      ASSERT_LE(p.y(), 10 + 1e-9);
    }
    for (int k = 0; k < 20; ++k) {
      const double x = near(random);
      const double y = near(random);
      ASSERT_EQ(winding(cut, x, y), winding(ring, x, y)) << "seed " << seed << " round " << round;
    }
  }
}

}  // namespace
