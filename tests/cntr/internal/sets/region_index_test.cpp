#include <cntr/internal/sets/region_index.h>

#include <cntr/region.h>
#include <support/computed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

gxPtrHandle<gxRegion> squareAt(double x, double y) {
  return gxPtrHandle<gxRegion>(new gxRegion(Points{{x, y}, {x + 1, y}, {x + 1, y + 1}, {x, y + 1}}));
}

std::vector<gxPtrHandle<gxRegion>> row(int count) {
  std::vector<gxPtrHandle<gxRegion>> regions;
  for (int i = 0; i < count; ++i) regions.push_back(squareAt(2.0 * i, 0));
  return regions;
}

std::vector<Handle> constOf(const std::vector<gxPtrHandle<gxRegion>>& regions) {
  return {regions.begin(), regions.end()};
}

std::vector<std::size_t> mayHold(const gx_RegionIndex& index, const V& point) {
  std::vector<std::size_t> found;
  EXPECT_FALSE(index.anyThatMayHold(point, [&](std::size_t i) {
    found.push_back(i);
    return false;
  }));
  return found;
}

TEST(RegionIndex, GivesTheRegionsWhoseBoxHoldsThePoint) {
  const auto regions = constOf(row(20));
  gx_RegionIndex index(regions);
  ASSERT_TRUE(index.holds(regions));
  EXPECT_EQ(mayHold(index, {6.5, 0.5}), (std::vector<std::size_t>{3}));
  EXPECT_EQ(mayHold(index, {7, 1}), (std::vector<std::size_t>{3})) << "borders count";
  EXPECT_TRUE(mayHold(index, {7.5, 0.5}).empty());
  EXPECT_TRUE(mayHold(index, {std::numeric_limits<double>::quiet_NaN(), 0.5}).empty());
  EXPECT_TRUE(index.alwaysAsked().empty());
}

TEST(RegionIndex, EndsAtTheFirstRegionThatHoldsThePoint) {
  const auto regions = constOf(row(20));
  const gx_RegionIndex index(regions);
  int asked = 0;
  EXPECT_TRUE(index.anyThatMayHold({6.5, 0.5}, [&asked](std::size_t) { return ++asked == 1; }));
  EXPECT_EQ(asked, 1);
}

TEST(RegionIndex, OfManyRegionsOnOnePointGivesThemInOrder) {
  std::vector<gxPtrHandle<gxRegion>> regions;
  for (int i = 0; i < 40; ++i) regions.push_back(squareAt(0.01 * i, 0));
  const gx_RegionIndex index(constOf(regions));
  std::vector<std::size_t> all(40);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
  EXPECT_EQ(mayHold(index, {0.5, 0.5}), all);
  EXPECT_EQ(mayHold(index, {1.2, 0.5}).size(), 20U);
  EXPECT_EQ(mayHold(index, {1.235, 0.5}).size(), 16U);
}

TEST(RegionIndex, AsksNoRegionForAnythingItWouldRemember) {
  const Computed boxes(gx_Computation::eUprightBox);
  const Computed rects(gx_Computation::eEncloseRect);
  const auto regions = constOf(row(20));
  EXPECT_TRUE(gx_RegionIndex(regions).holds(regions));
  EXPECT_EQ(boxes.times() + rects.times(), 0);
}

TEST(RegionIndex, ANullRegionOneOfTooFewPointsAndOneWithANaNAreAlwaysAsked) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  auto regions = row(5);
  regions[1] = nullptr;
  regions[3] = gxPtrHandle<gxRegion>(new gxRegion(Points{{1, 1}}));
  regions.emplace_back(new gxRegion(Points{{5, 5}, {kNaN, 5}, {6, 6}}));
  regions.emplace_back(new gxRegion(Points{{5, 5}, {6, kNaN}, {6, 6}}));
  gx_RegionIndex index(constOf(regions));
  EXPECT_TRUE(index.holds(constOf(regions)));
  EXPECT_EQ(index.alwaysAsked(), (std::vector<std::size_t>{1, 3, 5, 6}));
  EXPECT_EQ(mayHold(index, {0.5, 0.5}), (std::vector<std::size_t>{0, 1, 3, 5, 6}));
}

TEST(RegionIndex, OfAnOutlineWithANaNAndATreeOverItsEdgesAlwaysAsksToo) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  auto regions = row(2);
  Points many;
  for (int i = 0; i < 100; ++i) many.emplace_back(i, i % 7);
  many.emplace_back(kNaN, 3);
  regions.emplace_back(new gxRegion(many));
  static_cast<void>(regions[2]->intersections(gxLineSeg(V(0, 0), V(9, 9)), true));  // makes the tree
  EXPECT_EQ(gx_RegionIndex(constOf(regions)).alwaysAsked(), (std::vector<std::size_t>{2}));
}

TEST(RegionIndex, ARegionWithHolesIsAlwaysAskedForItsDistance) {
  auto regions = row(5);
  gxRegion large(Points{{0, 10}, {9, 10}, {9, 19}, {0, 19}});
  large.holes({Handle(squareAt(3, 13))});
  regions.emplace_back(new gxRegion(large));
  gx_RegionIndex index(constOf(regions));
  ASSERT_TRUE(index.holds(constOf(regions)));
  EXPECT_EQ(index.alwaysAsked(), (std::vector<std::size_t>{5}));
  EXPECT_EQ(mayHold(index, {1, 11}), (std::vector<std::size_t>{5}));
}

TEST(RegionIndex, NoLongerHoldsOnceARegionChanged) {
  for (int change = 0; change < 5; ++change) {
    SCOPED_TRACE(change);
    const auto regions = row(20);
    const auto handles = constOf(regions);
    gx_RegionIndex index(handles);
    gx_RegionIndex other(handles);
    ASSERT_TRUE(index.holds(handles));
    gxRegion& region = *regions[7];
    switch (change) {
      case 0: region.points({{0, 0}, {1, 0}, {1, 1}}); break;
      case 1: region = gxRegion(Points{{0, 0}, {1, 0}, {1, 1}}); break;
      case 2: region.holes({Handle(squareAt(100, 100))}); break;
      case 3: static_cast<void>(gxRegion(std::move(region))); break;
      default: region.reInit();
    }
    EXPECT_FALSE(index.holds(handles));
    EXPECT_FALSE(index.holds(handles)) << "and stays so";
    EXPECT_TRUE(gx_RegionIndex(handles).holds(handles));
    EXPECT_FALSE(other.holds(handles)) << "a watch begun again tells nothing of before";
  }
}

TEST(RegionIndex, HoldsThroughChangesElsewhere) {
  const auto regions = constOf(row(20));
  gx_RegionIndex index(regions);
  auto others = row(20);
  gx_RegionIndex otherIndex(constOf(others));
  others[3]->points({{0, 0}, {1, 0}, {1, 1}});
  EXPECT_TRUE(index.holds(regions));
  EXPECT_FALSE(otherIndex.holds(constOf(others)));
  const gxRegion copy(*regions[2]);  // asking or copying is no change
  regions[2]->cachedVectorSize();
  static_cast<void>(regions[2]->encloseRect(gxXform<2>(gxMatrix<2>(1, 0, 7, 1), {0, 0})));
  static_cast<void>(regions[2]->inside({4.5, 0.5}, true));
  EXPECT_TRUE(index.holds(regions));
}

TEST(RegionIndex, NearRegionsComeUpAndFarOnesOnlyBeyondTheLimit) {
  RandomShapes random("near regions", 40);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<gxPtrHandle<gxRegion>> regions;
    for (int i = random.integer(1, 300); i > 0; --i) {
      regions.push_back(squareAt(random.uniform(-20.0, 20.0), random.uniform(-20.0, 20.0)));
    }
    const auto handles = constOf(regions);
    const gx_RegionIndex index(handles);
    for (int query = 0; query < 10; ++query) {
      const V p(random.uniform(-25.0, 25.0), random.uniform(-25.0, 25.0));
      const double limit = random.uniform(0.0, 5.0);
      std::set<std::size_t> seen;
      index.forEachNear(p, limit, [&](std::size_t i) { EXPECT_TRUE(seen.insert(i).second); });
      for (std::size_t i = 0; i < regions.size(); ++i) {
        const double distance = regions[i]->distToPoint(p, false, true, true);
        if (distance < limit) {
          EXPECT_TRUE(seen.count(i) == 1) << i;
        }
        if (distance > limit * 1.0001 + 1e-6) {
          EXPECT_TRUE(seen.count(i) == 0) << i;
        }
      }
    }
  }
}

}  // namespace
