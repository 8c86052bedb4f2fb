#include <velstd/vector.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <vector>

#include <support/quad.h>
#include <support/random_doubles.h>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kMost = std::numeric_limits<double>::max();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();

using V = gxVector<2>;

Quad exactLength(const V& v) {
  const Quad x = v.x();
  const Quad y = v.y();
  return quadSqrt(x * x + y * y);
}

TEST(Vector, DefaultIsTheOrigin) {
  EXPECT_EQ(V().x(), 0.0);
  EXPECT_EQ(V().y(), 0.0);
}

TEST(Vector, AnArrayOfVectorsIsAnArrayOfDoubles) {
  const std::vector<V> points{{1, 2}, {3, 4}};
  double seen[4];
  std::memcpy(seen, points.data(), sizeof seen);
  EXPECT_EQ(seen[0], 1.0);
  EXPECT_EQ(seen[1], 2.0);
  EXPECT_EQ(seen[2], 3.0);
  EXPECT_EQ(seen[3], 4.0);
}

TEST(Vector, PolarFormIsLengthTimesCosineAndSine) {
  const V v(2.0, gxRadian(std::numbers::pi / 6));
  EXPECT_DOUBLE_EQ(v.x(), std::sqrt(3.0));
  EXPECT_DOUBLE_EQ(v.y(), 1.0);
  EXPECT_EQ(V(-3.0, gxRadian(0.0)), V(-3.0, 0.0));
}

TEST(Vector, IntegerPairsBecomeVectors) {
  EXPECT_EQ(V(gxPair<long>(-7, 9007199254740992L)), V(-7.0, 9007199254740992.0));
}

TEST(Vector, ArithmeticIsComponentByComponent) {
  constexpr V a(1, 2);
  constexpr V b(10, -20);
  static_assert(a + b == V(11, -18));
  static_assert(a - b == V(-9, 22));
  static_assert(-a == V(-1, -2));
  static_assert(b * 0.5 == V(5, -10));
  static_assert(b / 4.0 == V(2.5, -5));
  static_assert(a * b == -30.0);
  static_assert(gf_Cross(a, b) == -40.0);
  V c = a;
  c += b;
  EXPECT_EQ(c, V(11, -18));
  c -= a;
  EXPECT_EQ(c, b);
}

TEST(Vector, EqualityIsExact) {
  EXPECT_TRUE(V(0.0, 1.0) == V(-0.0, 1.0));
  EXPECT_FALSE(V(1.0, 1.0) == V(1.0, std::nextafter(1.0, 2.0)));
  EXPECT_FALSE(V(kNaN, 0.0) == V(kNaN, 0.0));
  EXPECT_TRUE(V(kInf, 0.0) == V(kInf, 0.0));
}

TEST(VectorLength, WholeTrianglesAreExact) {
  EXPECT_EQ(V(3, 4).len(), 5.0);
  EXPECT_EQ(V(-5, 12).len(), 13.0);
  EXPECT_EQ(V(0, -7).len(), 7.0);
  EXPECT_EQ(V(0, 0).len(), 0.0);
}

TEST(VectorLength, EndsOfTheDoubleRange) {
  EXPECT_EQ(V(3e300, 4e300).len(), 5e300);
  EXPECT_EQ(V(kMost, 0).len(), kMost);
  EXPECT_EQ(V(kMost, kMost).len(), kInf);
  EXPECT_EQ(V(kLeast, 0).len(), kLeast);
  EXPECT_EQ(V(3 * kLeast, 4 * kLeast).len(), 5 * kLeast);
  EXPECT_EQ(V(-3e-310, 4e-310).len(), 5e-310);
}

TEST(VectorLength, NotFiniteComponents) {
  EXPECT_EQ(V(kInf, 1).len(), kInf);
  EXPECT_EQ(V(1, -kInf).len(), kInf);
  EXPECT_TRUE(std::isnan(V(kNaN, 1).len()));
  EXPECT_TRUE(std::isnan(V(kInf, kNaN).len()));
}

TEST(VectorLength, IsGoodToTwoUnitsOverTheWholeRange) {
  constexpr std::uint64_t kSeed = 101;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  double worst = 0.0;
  for (int i = 0; i < 200000; ++i) {
    const double x = random.anyFinite();
    const bool alike = i % 2 == 0;
    const V v(x, alike ? x * random.uniform(-4.0, 4.0) : random.anyFinite());
    if (!std::isfinite(v.y())) continue;
    const Quad truth = exactLength(v);
    if (truth > static_cast<Quad>(kMost)) continue;
    worst = std::max(worst, errorInUlps(v.len(), truth));
  }
  EXPECT_LE(worst, 2.0);
}

TEST(VectorLength, DistanceIsTheLengthOfTheDifference) {
  EXPECT_EQ(V(1e6 + 3, 4).distance(V(1e6, 0)), 5.0);
  EXPECT_EQ(V(1, 1).distance(V(1, 1)), 0.0);
  EXPECT_TRUE(std::isnan(V(kInf, 0).distance(V(kInf, 0))));
}

TEST(VectorUnit, HasLengthOneInTheSameDirection) {
  EXPECT_EQ(V(3, 4).unit(), V(0.6, 0.8));
  EXPECT_EQ(V(0, -5).unit(), V(0, -1));
  EXPECT_EQ(V(kMost, 0).unit(), V(1, 0));
  EXPECT_EQ(V(0, kLeast).unit(), V(0, 1));
  EXPECT_EQ(V(-kMost, kMost).unit(), V(-1, 1).unit());
}

TEST(VectorUnit, ZeroHasNoDirection) {
  EXPECT_EQ(V(0, -0.0).unit(), V(0, 0));
}

TEST(VectorUnit, NotFiniteGivesNaNInBothComponents) {
  for (const V v : {V(kNaN, 0), V(0, kNaN), V(kNaN, 5), V(5, kNaN), V(kInf, 1), V(1, -kInf)}) {
    EXPECT_TRUE(std::isnan(v.unit().x())) << v.x() << ' ' << v.y();
    EXPECT_TRUE(std::isnan(v.unit().y())) << v.x() << ' ' << v.y();
  }
}

TEST(VectorUnit, RandomVectorsOfAnySize) {
  constexpr std::uint64_t kSeed = 102;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 100000; ++i) {
    const V v(random.anyFinite(), random.anyFinite());
    const Quad length = exactLength(v);
    const V unit = v.unit();
    ASSERT_NEAR(unit.x(), static_cast<double>(static_cast<Quad>(v.x()) / length), 5e-16)
        << v.x() << ' ' << v.y();
    ASSERT_NEAR(unit.y(), static_cast<double>(static_cast<Quad>(v.y()) / length), 5e-16)
        << v.x() << ' ' << v.y();
  }
}

TEST(VectorAngle, RunsFromTheXAxisTowardsTheYAxis) {
  constexpr double kPi = std::numbers::pi;
  EXPECT_EQ(V(1, 0).angle().toDouble(), 0.0);
  EXPECT_DOUBLE_EQ(V(1, 1).angle().toDouble(), kPi / 4);
  EXPECT_DOUBLE_EQ(V(0, 2).angle().toDouble(), kPi / 2);
  EXPECT_DOUBLE_EQ(V(-1, 0).angle().toDouble(), kPi);
  EXPECT_DOUBLE_EQ(V(0, -3).angle().toDouble(), -kPi / 2);
}

TEST(VectorAngle, NegativeZerosCountAsZero) {
  EXPECT_EQ(V(-1, -0.0).angle().toDouble(), V(-1, 0.0).angle().toDouble());
  EXPECT_EQ(V(-0.0, 0.0).angle().toDouble(), 0.0);
  EXPECT_EQ(V(-0.0, -0.0).angle().toDouble(), 0.0);
  EXPECT_FALSE(std::signbit(V(2, -0.0).angle().toDouble()));
}

TEST(VectorAngle, NaNGivesNaN) {
  EXPECT_TRUE(std::isnan(V(kNaN, 1).angle().toDouble()));
}

TEST(DifferenceOfProducts, KeepsItsDigitsWhereTheProductsCancel) {
  constexpr std::uint64_t kSeed = 103;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  double worst = 0.0;
  double worstPlain = 0.0;
  for (int i = 0; i < 200000; ++i) {
    const double a = random.uniform(1.0, 2.0);
    const double d = random.uniform(1.0, 2.0);
    const double b = random.uniform(1.0, 2.0);
    const double c = a * d / b * (1.0 + random.uniform(-1e-15, 1e-15));
    // Both products take at most 106 bits and lie in the same two powers of two: exact.
    const Quad truth =
        static_cast<Quad>(a) * static_cast<Quad>(d) - static_cast<Quad>(b) * static_cast<Quad>(c);
    if (truth == 0) continue;
    worst = std::max(worst, errorInUlps(gf_DifferenceOfProducts(a, d, b, c), truth));
    worstPlain = std::max(worstPlain, errorInUlps(gf_Cross({a, b}, {c, d}), truth));
  }
  EXPECT_LE(worst, 1.5);
  EXPECT_GT(worstPlain, 1e6);  // the plain formula is what the accurate one is there for
}

TEST(DifferenceOfProducts, IsZeroExactlyForEqualProducts) {
  EXPECT_EQ(gf_DifferenceOfProducts(2, 6, 3, 4), 0.0);
  const double a = 1.0 + 0x1p-30;
  EXPECT_EQ(gf_DifferenceOfProducts(a, a, 1.0 + 0x1p-29, 1.0), 0x1p-60);
}

TEST(Vector, TimesANumberFromEitherSide) {
  EXPECT_EQ(2.0 * gxVector<2>(1, -3), gxVector<2>(2, -6));
  static_assert(0.5 * gxVector<2>(2, 4) == gxVector<2>(1, 2));
}

}  // namespace
