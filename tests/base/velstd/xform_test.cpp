#include <velstd/exception.h>
#include <velstd/real_eq.h>
#include <velstd/xform.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <type_traits>

#include <support/random_doubles.h>

namespace {

using M = gxMatrix<2>;
using V = gxVector<2>;
using X = gxXform<2>;

X randomXform(RandomDoubles& random) {
  const auto next = [&] { return random.uniform(-3.0, 3.0); };
  return {M(next(), next(), next(), next()), V(next(), next())};
}

TEST(Xform, DefaultAndStaticIdentity) {
  EXPECT_EQ(X(), X::I);
  EXPECT_EQ(X::I.matrix(), M(1, 0, 0, 1));
  EXPECT_EQ(X::I.translation(), V(0, 0));
  EXPECT_EQ(X::I.determinant(), 1.0);
  EXPECT_EQ(X::I * V(-3.5, 1e300), V(-3.5, 1e300));
}

TEST(Xform, MapsByMatrixThenTranslation) {
  constexpr X x(M(1, 2, 3, 4), V(10, 20));
  static_assert(x * V(1, 1) == V(13, 27));
  static_assert(x.xx() == 1 && x.xy() == 2 && x.yx() == 3 && x.yy() == 4 && x.tx() == 10 &&
                x.ty() == 20);
  EXPECT_EQ(x.determinant(), -2.0);
}

TEST(Xform, StorageOrderIsThatOfTheMapKeys) {
  constexpr X x(M(1, 2, 3, 4), V(5, 6));
  const double expected[] = {1, 2, 4, 5, 6, 3, -2};  // xx, xy, yy, tx, ty, yx, determinant
  for (int i = 0; i < 7; ++i) EXPECT_EQ(x.stored(i), expected[i]) << i;
  double memory[7];
  static_assert(sizeof(X) == sizeof memory && std::is_trivially_copyable_v<X>);
  std::memcpy(memory, &x, sizeof memory);
  for (int i = 0; i < 7; ++i) EXPECT_EQ(memory[i], expected[i]) << i;
}

TEST(Xform, StoredNumberOutsideThrows) {
  EXPECT_THROW(static_cast<void>(X::I.stored(-1)), std::out_of_range);
  EXPECT_THROW(static_cast<void>(X::I.stored(7)), std::out_of_range);
}

TEST(Xform, OnlyShearsAlongYShareTheFirstFiveNumbersOfTheIdentity) {
  const X shear(M(1, 0, 0.5, 1), V(0, 0));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(shear.stored(i), X::I.stored(i)) << i;
  EXPECT_NE(shear, X::I);
}

TEST(Xform, ProductMapsByTheRightFactorFirst) {
  const X turn(M(0, -1, 1, 0), V(0, 0));
  const X move(M(1, 0, 0, 1), V(10, 0));
  EXPECT_EQ((turn * move) * V(1, 0), V(0, 11));
  EXPECT_EQ((move * turn) * V(1, 0), V(10, 1));
}

TEST(Xform, EqualityIsExact) {
  const X x(M(1, 2, 3, 4), V(5, 6));
  EXPECT_EQ(x, X(M(1, 2, 3, 4), V(5, 6)));
  EXPECT_NE(x, X(M(1, 2, 3, 4), V(5, std::nextafter(6.0, 7.0))));
  EXPECT_NE(x, X(M(1, 2, 3.5, 4), V(5, 6)));
}

TEST(XformInverse, UndoesTheTransform) {
  const X x(M(0, -2, 2, 0), V(3, 4));
  const X back = x.inverse();
  EXPECT_EQ(back * (x * V(7, 8)), V(7, 8));
  EXPECT_EQ(x * back, X::I);
}

TEST(XformInverse, SingularThrows) {
  EXPECT_THROW(X(M(1, 2, 2, 4), V(0, 0)).inverse(), gxMathError::Singular);
  EXPECT_THROW(X(M(), V(1, 1)).inverse(), gxMathError::Singular);
  const double kNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(X(M(1, 0, 0, 1), V(kNaN, 0)).inverse(), gxMathError::Singular);
  EXPECT_THROW(X(M(1e-200, 0, 0, 1e-200), V(1e200, 0)).inverse(), gxMathError::Singular);
}

TEST(XformInverse, RandomCompositionsComeBack) {
  constexpr std::uint64_t kSeed = 141;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 20000; ++i) {
    const X a = randomXform(random);
    const X b = randomXform(random);
    const V p(random.uniform(-10, 10), random.uniform(-10, 10));
    ASSERT_TRUE(gfRealEq((a * b) * p, a * (b * p), 1e-11)) << i;
    if (std::abs(a.determinant()) < 0.01) continue;
    ASSERT_TRUE(gfRealEq(a.inverse() * (a * p), p, 1e-10)) << i;
    ASSERT_TRUE(gfRealEq(a * a.inverse(), X::I, 1e-10)) << i;
  }
}

}  // namespace
