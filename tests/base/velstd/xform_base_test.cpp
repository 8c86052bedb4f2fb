#include <velstd/exception.h>
#include <velstd/real_eq.h>
#include <velstd/xform_base.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <new>

#include <support/random_doubles.h>

namespace {

using M = gxMatrix<2>;
using V = gxVector<2>;
using X = gxXform<2>;

// A transform that is not affine: x' = x², y' = y.
class Parabola : public gx2XformBase {
 public:
  V mapPoint(const V& p) const override { return {p.x() * p.x(), p.y()}; }
  bool isLinear() const override { return false; }
  X linearXform(const V& p) const override { return {M(2 * p.x(), 0, 0, 1), V(-p.x() * p.x(), 0)}; }
  gxPtrHandle<gx2XformBase> clone() const override {
    return gxPtrHandle<gx2XformBase>(new Parabola(*this));
  }
  gxPtrHandle<gx2XformBase> composeBase(const gx2XformBase& first) const override {
    return first.clone();
  }
  gxPtrHandle<gx2XformBase> inverseBase() const override { throw gxMathError::Singular(); }
};

TEST(XformLinear, DefaultIsTheIdentity) {
  const gx2XformLinear x;
  EXPECT_TRUE(x.isLinear());
  EXPECT_EQ(x.mapPoint(V(2, 3)), V(2, 3));
  EXPECT_EQ(x.linearXform(V(100, 100)), X::I);
}

TEST(XformLinear, IsTheSameTransformAtEveryPoint) {
  const X value(M(1, 2, 3, 4), V(5, 6));
  const gx2XformLinear x(value);
  EXPECT_EQ(x.xform(), value);
  EXPECT_EQ(x.linearXform(V(0, 0)), value);
  EXPECT_EQ(x.linearXform(V(1e9, -1e9)), value);
  EXPECT_EQ(x.mapPoint(V(1, 1)), V(8, 13));
}

TEST(XformLinear, CloneIsAnotherObjectOfTheSameClassAndValue) {
  const gxPtrHandle<gx2XformBase> original(new gx2XformLinear(X(M(2, 0, 0, 2), V(1, 1))));
  const gxPtrHandle<gx2XformBase> copy = original->clone();
  EXPECT_NE(copy, original);
  EXPECT_EQ(copy->refCount(), 1);
  ASSERT_NE(dynamic_cast<const gx2XformLinear*>(copy.get()), nullptr);
  EXPECT_EQ(copy->linearXform(V()), original->linearXform(V()));
}

TEST(XformLinear, ComposesWithTheArgumentFirst) {
  const gx2XformLinear turn(X(M(0, -1, 1, 0), V(0, 0)));
  const gx2XformLinear move(X(M(1, 0, 0, 1), V(10, 0)));
  EXPECT_EQ(turn.composeBase(move)->mapPoint(V(1, 0)), V(0, 11));
  EXPECT_EQ(move.composeBase(turn)->mapPoint(V(1, 0)), V(10, 1));
}

TEST(XformLinear, ComposesWithTheAffineFormOfACurvedOneAtTheOrigin) {
  const gx2XformLinear move(X(M(1, 0, 0, 1), V(10, 0)));
  const auto composed = move.composeBase(Parabola());
  EXPECT_EQ(composed->linearXform(V()), X(M(0, 0, 0, 1), V(10, 0)));
}

TEST(XformLinear, InverseUndoesAndSingularThrows) {
  const gx2XformLinear x(X(M(0, -2, 2, 0), V(3, 4)));
  EXPECT_EQ(x.inverseBase()->mapPoint(x.mapPoint(V(7, 8))), V(7, 8));
  EXPECT_THROW(gx2XformLinear(X(M(), V())).inverseBase(), gxMathError::Singular);
}

TEST(XformLinear, ReInitGivesTheIdentityBack) {
  gx2XformLinear x(X(M(2, 0, 0, 2), V(1, 1)));
  x.trackChanges(true);
  x.reInit();
  EXPECT_EQ(x.xform(), X::I);
  EXPECT_EQ(x.changeCount(), 1U);
}

TEST(XformLinear, IsMadeInGivenMemoryToo) {
  alignas(gx2XformLinear) unsigned char memory[sizeof(gx2XformLinear)];
  auto* const x = new (memory) gx2XformLinear(X(M(2, 0, 0, 2), V(1, 1)));
  EXPECT_EQ(static_cast<void*>(x), static_cast<void*>(memory));
  EXPECT_EQ(x->mapPoint(V(1, 1)), V(3, 3));
  std::destroy_at(x);
  void* const raw = gx2XformLinear::operator new(sizeof(gx2XformLinear));
  EXPECT_NE(raw, nullptr);
  gx2XformLinear::operator delete(raw);
}

TEST(Rigid, TurnsThenMoves) {
  const gx2Rigid rigid(gxDegree(90), V(10, 0));
  EXPECT_EQ(rigid.mapPoint(V(1, 0)), V(10, 1));
  EXPECT_TRUE(rigid.isLinear());
  EXPECT_EQ(rigid.angle(), gxDegree(90));
  EXPECT_EQ(rigid.translation(), V(10, 0));
  EXPECT_EQ(gx2Rigid().xform(), X::I);
}

TEST(Rigid, QuarterTurnsAreExactAnyNumberOfTurnsAway) {
  for (const double turns : {-720.0, -360.0, 0.0, 360.0, 36000000.0}) {
    EXPECT_EQ(gx2Rigid(gxDegree(turns), V()).xform().matrix(), M(1, 0, 0, 1));
    EXPECT_EQ(gx2Rigid(gxDegree(turns + 90), V()).xform().matrix(), M(0, -1, 1, 0));
    EXPECT_EQ(gx2Rigid(gxDegree(turns + 180), V()).xform().matrix(), M(-1, 0, 0, -1));
    EXPECT_EQ(gx2Rigid(gxDegree(turns + 270), V()).xform().matrix(), M(0, 1, -1, 0));
  }
}

TEST(Rigid, LargeAnglesKeepTheirDirection) {
  const X near = gx2Rigid(gxDegree(30), V()).xform();
  const X far = gx2Rigid(gxDegree(30 + 360.0 * 1e9), V()).xform();
  EXPECT_TRUE(gfRealEq(near, far, 1e-15));
}

TEST(Rigid, TwoComposeToARigidOne) {
  const gx2Rigid a(gxDegree(30), V(1, 2));
  const gx2Rigid b(gxDegree(60), V(-5, 3));
  const auto composed = a.composeBase(b);
  ASSERT_NE(dynamic_cast<const gx2Rigid*>(composed.get()), nullptr);
  EXPECT_TRUE(gfRealEq(composed->mapPoint(V(4, 5)), a.mapPoint(b.mapPoint(V(4, 5))), 1e-14));
}

TEST(Rigid, ComposedWithAScalingIsLinear) {
  const gx2Rigid turn(gxDegree(90), V(0, 0));
  const gx2XformLinear twice(X(M(2, 0, 0, 2), V(0, 0)));
  const auto composed = turn.composeBase(twice);
  ASSERT_NE(dynamic_cast<const gx2XformLinear*>(composed.get()), nullptr);
  EXPECT_EQ(composed->mapPoint(V(1, 0)), V(0, 2));
}

TEST(Rigid, InverseIsRigidAndUndoes) {
  constexpr std::uint64_t kSeed = 151;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 5000; ++i) {
    const gx2Rigid rigid(gxDegree(random.uniform(-1000, 1000)),
                         V(random.uniform(-9, 9), random.uniform(-9, 9)));
    const auto back = rigid.inverseBase();
    ASSERT_NE(dynamic_cast<const gx2Rigid*>(back.get()), nullptr);
    const V p(random.uniform(-9, 9), random.uniform(-9, 9));
    ASSERT_TRUE(gfRealEq(back->mapPoint(rigid.mapPoint(p)), p, 1e-13)) << i;
  }
}

TEST(Rigid, WithoutFiniteNumbersThereIsNoInverse) {
  const double kNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(gx2Rigid(gxDegree(kNaN), V()).inverseBase(), gxMathError::Singular);
  EXPECT_THROW(gx2Rigid(gxDegree(0), V(0, kNaN)).inverseBase(), gxMathError::Singular);
  EXPECT_THROW(gx2Rigid(gxDegree(45), V(1.7e308, 1.7e308)).inverseBase(), gxMathError::Singular);
}

TEST(Rigid, CloneAndReInit) {
  gx2Rigid rigid(gxDegree(45), V(1, 2));
  const auto copy = rigid.clone();
  ASSERT_NE(dynamic_cast<const gx2Rigid*>(copy.get()), nullptr);
  EXPECT_EQ(copy->linearXform(V()), rigid.xform());
  rigid.reInit();
  EXPECT_EQ(rigid.xform(), X::I);
}

TEST(XformBase, IsCopiedWithoutItsCount) {
  const gxPtrHandle<gx2XformBase> held(new gx2XformLinear);
  const gx2XformLinear copy(dynamic_cast<const gx2XformLinear&>(*held));
  EXPECT_EQ(held->refCount(), 1);
  EXPECT_EQ(copy.refCount(), 0);
}

}  // namespace
