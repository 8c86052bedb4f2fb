#include <gauge/internal/segments.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <cmath>

namespace {

using V = gxVector<2>;

TEST(Segments, TheFootLiesOnTheSegment) {
  EXPECT_EQ(gx_footOn({0, 0}, {4, 0}, {1, 3}).t, 0.25);
  EXPECT_EQ(gx_footOn({0, 0}, {4, 0}, {1, 3}).point, V(1, 0));
  EXPECT_EQ(gx_footOn({0, 0}, {4, 0}, {3, -3}).distance, 3.0);
  EXPECT_EQ(gx_footOn({0, 0}, {4, 0}, {-3, 4}).t, 0.0);
  EXPECT_EQ(gx_footOn({0, 0}, {4, 0}, {-3, 4}).distance, 5.0);
  EXPECT_EQ(gx_footOn({0, 0}, {4, 0}, {7, 4}).t, 1.0);
  EXPECT_EQ(gx_footOn({0, 0}, {4, 0}, {7, 4}).point, V(4, 0));
  EXPECT_EQ(gx_footOn({2, 2}, {2, 2}, {5, 6}).distance, 5.0);
  EXPECT_EQ(gx_footOn({2, 2}, {2, 2}, {5, 6}).t, 0.0);
}

TEST(Segments, MeetingIsExact) {
  EXPECT_TRUE(gx_segmentsMeet({0, 0}, {2, 2}, {0, 2}, {2, 0}));
  EXPECT_TRUE(gx_segmentsMeet({0, 0}, {2, 0}, {1, 0}, {1, 5}));
  EXPECT_FALSE(gx_segmentsMeet({0, 0}, {2, 0}, {1, 0x1p-1074}, {1, 5}));
  EXPECT_TRUE(gx_segmentsMeet({0, 0}, {2, 0}, {2, 0}, {3, 0}));
  EXPECT_FALSE(gx_segmentsMeet({0, 0}, {2, 0}, {2.5, 0}, {3, 0}));
  EXPECT_TRUE(gx_segmentsMeet({0, 0}, {4, 0}, {1, 0}, {2, 0}));
  EXPECT_TRUE(gx_segmentsMeet({1, 1}, {1, 1}, {0, 0}, {2, 2}));
  EXPECT_FALSE(gx_segmentsMeet({1, 1.5}, {1, 1.5}, {0, 0}, {2, 2}));
}

TEST(Segments, GapsAreTakenAtAnEndOrAreNone) {
  const auto parallel = gx_gapBetween({0, 0}, {4, 0}, {1, 3}, {9, 3});
  EXPECT_EQ(parallel.distance, 3.0);
  EXPECT_EQ(parallel.p, V(4, 0));  // an end of the first has its foot on the second
  EXPECT_EQ(parallel.q, V(4, 3));
  const auto crossing = gx_gapBetween({0, 0}, {4, 4}, {0, 4}, {4, 0});
  EXPECT_EQ(crossing.distance, 0.0);
  EXPECT_EQ(crossing.p, V(2, 2));
  EXPECT_EQ(crossing.s, 0.5);
  EXPECT_EQ(crossing.t, 0.5);
  const auto ends = gx_gapBetween({0, 0}, {1, 0}, {4, 4}, {9, 9});
  EXPECT_EQ(ends.distance, 5.0);
  EXPECT_EQ(ends.s, 1.0);
  EXPECT_EQ(ends.t, 0.0);
}

TEST(Segments, RandomGapsAgainstManyPoints) {
  RandomShapes random("segment gaps", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    V p[4];
    for (V& v : p)
      v = random.chance(0.3) ? V(random.integer(-2, 2), random.integer(-2, 2))
                             : V(random.uniform(-2, 2), random.uniform(-2, 2));
    const auto gap = gx_gapBetween(p[0], p[1], p[2], p[3]);
    double least = HUGE_VAL;
    for (int i = 0; i <= 200; ++i) {
      const V q = p[0] + (p[1] - p[0]) * (i / 200.0);
      least = std::min(least, gx_footOn(p[2], p[3], q).distance);
    }
    EXPECT_LE(gap.distance, least + 1e-15);
    EXPECT_GE(gap.distance, least - 0.02);
    EXPECT_NEAR((gap.p - gap.q).len(), gap.distance, 1e-14);
    EXPECT_NEAR((p[0] + (p[1] - p[0]) * gap.s - gap.p).len(), 0, 1e-14);
    EXPECT_NEAR((p[2] + (p[3] - p[2]) * gap.t - gap.q).len(), 0, 1e-14);
    EXPECT_EQ(gap.distance == 0.0, gx_segmentsMeet(p[0], p[1], p[2], p[3]));
  }
}

TEST(Segments, TheDistanceAloneHasTheBitsOfTheFoot) {
  RandomShapes random("distance alone", 2000);
  while (random.next()) {
    const auto point = [&] {
      const double size = random.chance(0.2) ? 1e-150 : 1.0;
      return gxVector<2>(size * random.integer(-3, 3), size * random.uniform(-2.0, 2.0));
    };
    const gxVector<2> a = point();
    const gxVector<2> b = random.chance(0.1) ? a : point();
    const gxVector<2> p = random.chance(0.1) ? b : point();
    ASSERT_TRUE(sameBits(gx_distanceFrom(a, b, p), gx_footOn(a, b, p).distance)) << random.trace();
  }
}

TEST(Segments, LengthsHaveTheBitsOfLen) {
  for (const double size :
       {0.0, 1e-300, 1e-160, 9e-141, 1e-140, 1.1e-140, 1.0, 9e139, 1e140, 1e150, 1e300}) {
    for (const gxVector<2>& v : {gxVector<2>(0.6, -0.8), gxVector<2>(1, 0), gxVector<2>(-0.3, 1)}) {
      EXPECT_TRUE(sameBits(gx_lengthOf(v * size), (v * size).len())) << size;
    }
  }
}

}  // namespace
