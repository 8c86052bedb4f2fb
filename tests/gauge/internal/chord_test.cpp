#include <gauge/internal/chord.h>

#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <algorithm>
#include <vector>

namespace {

using V = gxVector<2>;

TEST(Chord, BesideItTheDistanceIsThatFromTheLine) {
  const gx_Chord chord({0, 0}, {4, 0});
  EXPECT_EQ(chord.scale(), 16.0);
  EXPECT_EQ(chord.measure({1, 3}), 9.0 * 16.0);
  EXPECT_EQ(chord.measure({4, -2}), 4.0 * 16.0);
  EXPECT_EQ(chord.measure({2, 0}), 0.0);
}

TEST(Chord, BeyondItsEndsTheDistanceIsThatFromTheEnd) {
  const gx_Chord chord({0, 0}, {4, 0});
  EXPECT_EQ(chord.measure({-3, 4}), 25.0 * 16.0);
  EXPECT_EQ(chord.measure({7, 4}), 25.0 * 16.0);
}

TEST(Chord, WithoutLengthTheDistanceIsThatFromThePoint) {
  const gx_Chord chord({2, 1}, {2, 1});
  EXPECT_EQ(chord.scale(), 1.0);
  EXPECT_EQ(chord.measure({5, 5}), 25.0);
  EXPECT_EQ(chord.measure({2, 1}), 0.0);
}

TEST(Chord, OfNoPointsTheLargestMeasureIsMinusOne) {
  EXPECT_EQ(gx_Chord({0, 0}, {1, 0}).measureAll({}, nullptr), -1.0);
}

TEST(Chord, LowerIsLeftAndOfEqualColumnsBelow) {
  EXPECT_TRUE(gx_isLower({1, 5}, {2, 0}));
  EXPECT_TRUE(gx_isLower({1, 0}, {1, 5}));
  EXPECT_FALSE(gx_isLower({1, 5}, {1, 0}));
  EXPECT_FALSE(gx_isLower({1, 5}, {1, 5}));
  EXPECT_FALSE(gx_isLower({2, 0}, {1, 5}));
}

TEST(Chord, ManyPointsHaveTheBitsThatEachHasAloneInBothDirections) {
  RandomShapes random("chord", 500);
  while (random.next()) {
    const auto point = [&] { return V(random.uniform(-2, 2), random.uniform(-2, 2)); };
    const V a = point();
    const V b = random.integer(0, 9) == 0 ? a : point();
    std::vector<V> points;
    for (int i = random.integer(0, 21); i > 0; --i) points.push_back(point());
    constexpr double kUntouched = -7.0;
    std::vector<double> measures(points.size() + 1, kUntouched);
    std::vector<double> turned(points.size() + 1);
    const double most = gx_Chord(a, b).measureAll(points, measures.data());
    const double mostTurned = gx_Chord(b, a).measureAll(points, turned.data());
    ASSERT_TRUE(sameBits(most, mostTurned)) << random.trace();
    ASSERT_EQ(measures.back(), kUntouched) << random.trace();
    double expected = -1.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double alone = gx_Chord(a, b).measure(points[i]);
      ASSERT_TRUE(sameBits(measures[i], alone))
          << i << " of " << points.size() << ", " << random.trace();
      ASSERT_TRUE(sameBits(turned[i], alone)) << i << " of " << points.size() << ", " << random.trace();
      expected = std::max(expected, alone);
    }
    ASSERT_TRUE(sameBits(most, expected)) << random.trace();
  }
}

}  // namespace
