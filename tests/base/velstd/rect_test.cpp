#include <velstd/rect.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <support/random_doubles.h>

namespace {

using V = gxVector<2>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The box of a list of points, grown point by point.
gxRect boxOf(const std::vector<V>& points) {
  gxRect box(points[0], V(0, 0));
  for (const V& p : points) box = box.enclose(gxRect(p, V(0, 0)));
  return box;
}

TEST(Rect, DefaultIsAllZero) {
  EXPECT_EQ(gxRect().origin(), V(0, 0));
  EXPECT_EQ(gxRect().corner(), V(0, 0));
  EXPECT_EQ(gxRect().size(), V(0, 0));
}

TEST(Rect, OriginAndSizeAreKeptAsGiven) {
  const gxRect rect(V(1, 2), V(0.1, -4));
  EXPECT_EQ(rect.origin(), V(1, 2));
  EXPECT_EQ(rect.size(), V(0.1, -4));
  EXPECT_EQ(rect.corner(), V(1.1, -2));
  // 0.1 is lost in the corner, not in the size.
  EXPECT_EQ(gxRect(V(1e17, 0), V(0.1, 0)).size(), V(0.1, 0));
}

TEST(Rect, CopiesAreEqual) {
  const gxRect rect(V(1, 2), V(3, 4));
  gxRect copy(rect);
  EXPECT_EQ(copy, rect);
  EXPECT_EQ(copy.corner(), rect.corner());
  copy = gxRect(V(1, 2), V(3, 5));
  EXPECT_FALSE(copy == rect);
  EXPECT_FALSE(gxRect(V(1, 3), V(3, 4)) == rect);
}

TEST(Rect, ReInitGivesTheDefaultBack) {
  gxRect rect(V(1, 2), V(3, 4));
  rect.reInit();
  EXPECT_EQ(rect, gxRect());
  EXPECT_EQ(rect.corner(), V(0, 0));
}

TEST(RectFromCorners, SizeIsTheirDifference) {
  const gxRect rect = gxRect::fromCorners(V(-1, 2), V(3, 7));
  EXPECT_EQ(rect.origin(), V(-1, 2));
  EXPECT_EQ(rect.corner(), V(3, 7));
  EXPECT_EQ(rect.size(), V(4, 5));
  EXPECT_EQ(gxRect::fromCorners(V(-1.7e308, 0), V(1.7e308, 1)).size(), V(kInf, 1));
}

TEST(RectWithin, BorderIncluded) {
  const gxRect rect(V(0, 0), V(10, 5));
  EXPECT_TRUE(rect.within(V(5, 2)));
  EXPECT_TRUE(rect.within(V(0, 0)));
  EXPECT_TRUE(rect.within(V(10, 5)));
  EXPECT_TRUE(rect.within(V(10, 0)));
  EXPECT_FALSE(rect.within(V(std::nextafter(10.0, 11.0), 2)));
  EXPECT_FALSE(rect.within(V(-5e-324, 2)));
  EXPECT_FALSE(rect.within(V(5, 5.5)));
  EXPECT_FALSE(rect.within(V(5, -0.5)));
}

TEST(RectWithin, NaNIsNowhereAndANegativeSizeHoldsNothing) {
  const gxRect rect(V(0, 0), V(10, 5));
  EXPECT_FALSE(rect.within(V(kNaN, 2)));
  EXPECT_FALSE(rect.within(V(2, kNaN)));
  EXPECT_FALSE(gxRect(V(0, 0), V(-1, 5)).within(V(0, 0)));
  EXPECT_FALSE(gxRect(V(kNaN, 0), V(1, 5)).within(V(0, 0)));
}

TEST(RectOverlaps, BorderIncluded) {
  const gxRect rect(V(0, 0), V(10, 5));
  EXPECT_TRUE(rect.overlaps(rect));
  EXPECT_TRUE(rect.overlaps(gxRect(V(10, 5), V(1, 1))));
  EXPECT_TRUE(rect.overlaps(gxRect(V(-1, -1), V(1, 1))));
  EXPECT_TRUE(rect.overlaps(gxRect(V(2, 2), V(1, 1))));
  EXPECT_TRUE(gxRect(V(2, 2), V(1, 1)).overlaps(rect));
  EXPECT_FALSE(rect.overlaps(gxRect(V(10.5, 0), V(1, 1))));
  EXPECT_FALSE(rect.overlaps(gxRect(V(0, 5.5), V(1, 1))));
  EXPECT_FALSE(gxRect(V(10.5, 0), V(1, 1)).overlaps(rect));
  EXPECT_FALSE(rect.overlaps(gxRect(V(kNaN, 0), V(1, 1))));
}

TEST(RectEnclose, HoldsBothAndNoMore) {
  const gxRect both = gxRect(V(0, 0), V(1, 1)).enclose(gxRect(V(5, -2), V(1, 1)));
  EXPECT_EQ(both.origin(), V(0, -2));
  EXPECT_EQ(both.corner(), V(6, 1));
  EXPECT_EQ(both.size(), V(6, 3));
  const gxRect inner(V(1, 1), V(1, 1));
  const gxRect outer(V(0, 0), V(4, 4));
  EXPECT_EQ(outer.enclose(inner), outer);
  EXPECT_EQ(inner.enclose(outer), outer);
}

TEST(RectEnclose, NaNOfTheOtherIsPassedOver) {
  const gxRect rect(V(0, 0), V(1, 1));
  EXPECT_EQ(rect.enclose(gxRect(V(kNaN, 5), V(0, 0))).corner(), V(1, 5));
  EXPECT_TRUE(std::isnan(gxRect(V(kNaN, 0), V(1, 1)).enclose(rect).origin().x()));
}

TEST(RectEnclose, EveryVertexLiesWithinItsBox) {
  constexpr std::uint64_t kSeed = 191;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  int lostByOriginPlusSize = 0;
  for (int round = 0; round < 20000; ++round) {
    std::vector<V> points;
    for (int i = 0; i < 5; ++i) {
      points.emplace_back(round % 2 == 0 ? random.anyFinite() : random.uniform(-1, 1),
                          round % 3 == 0 ? random.anyFinite() : random.uniform(-1e6, 1e-6));
    }
    const gxRect box = boxOf(points);
    for (const V& p : points) {
      ASSERT_TRUE(box.within(p)) << p.x() << ' ' << p.y();
      if (p.x() > box.origin().x() + box.size().x()) ++lostByOriginPlusSize;
    }
  }
  EXPECT_GT(lostByOriginPlusSize, 0);  // why the corner is kept
}

TEST(RectOverlaps, BoxesThatShareACoordinateOverlap) {
  constexpr std::uint64_t kSeed = 192;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int round = 0; round < 20000; ++round) {
    const auto next = [&] {
      return V(round % 2 == 0 ? random.anyFinite() : random.uniform(-1, 1), random.uniform(-1, 1));
    };
    const V shared = next();
    const gxRect a = boxOf({shared, next(), next()});
    const gxRect b = boxOf({next(), shared, next()});
    ASSERT_TRUE(a.overlaps(b) && b.overlaps(a)) << shared.x() << ' ' << shared.y();
  }
}

TEST(RectEnclose, OrderDoesNotMatter) {
  constexpr std::uint64_t kSeed = 193;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  RandomDoubles random(kSeed);
  for (int round = 0; round < 5000; ++round) {
    const auto next = [&] {
      return boxOf({V(random.uniform(-9, 9), random.anyFinite()), V(random.anyFinite(), 1)});
    };
    const gxRect a = next();
    const gxRect b = next();
    const gxRect c = next();
    ASSERT_EQ(a.enclose(b), b.enclose(a));
    ASSERT_EQ(a.enclose(b).enclose(c).corner(), a.enclose(b.enclose(c)).corner());
  }
}

}  // namespace

// Origin + size, rounded, is not the highest corner: the two have the same origin and size.
TEST(RectEquality, MeansThatEveryQuestionIsAnsweredAlike) {
  const gxRect between = gxRect::fromCorners(gxVector<2>(-0.0137, 0), gxVector<2>(0.0211, 1));
  const gxRect sized(between.origin(), between.size());
  ASSERT_EQ(between.origin(), sized.origin());
  ASSERT_EQ(between.size(), sized.size());
  EXPECT_NE(between.within(gxVector<2>(0.0211, 0.5)), sized.within(gxVector<2>(0.0211, 0.5)));
  EXPECT_FALSE(between == sized);
  EXPECT_TRUE(between == gxRect::fromCorners(gxVector<2>(-0.0137, 0), gxVector<2>(0.0211, 1)));
  EXPECT_TRUE(sized == gxRect(sized.origin(), sized.size()));
  EXPECT_FALSE(gxRect(gxVector<2>(1, 1), gxVector<2>(1, 1)) ==
               gxRect(gxVector<2>(1, 1), gxVector<2>(1, 2)));
  EXPECT_FALSE(gxRect(gxVector<2>(1, 1), gxVector<2>(1, 1)) ==
               gxRect(gxVector<2>(0, 1), gxVector<2>(2, 1)));
}
