#include <cntr/internal/sets/region_index.h>

#include <cntr/region.h>
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

// A square region that remembers its upright rectangle.
gxPtrHandle<gxRegion> squareAt(double x, double y) {
  gxPtrHandle<gxRegion> region(new gxRegion(Points{{x, y}, {x + 1, y}, {x + 1, y + 1}, {x, y + 1}}));
  static_cast<void>(region->encloseRect(gxXform<2>::I));
  return region;
}

std::vector<gxPtrHandle<gxRegion>> row(int count) {
  std::vector<gxPtrHandle<gxRegion>> regions;
  for (int i = 0; i < count; ++i) regions.push_back(squareAt(2.0 * i, 0));
  return regions;
}

std::vector<Handle> constOf(const std::vector<gxPtrHandle<gxRegion>>& regions) {
  return {regions.begin(), regions.end()};
}

TEST(RegionIndex, GivesTheRegionsWhoseBoxHoldsThePoint) {
  const auto regions = constOf(row(20));
  gx_RegionIndex index(regions);
  ASSERT_TRUE(index.holds(regions));
  EXPECT_EQ(index.thatMayHold({6.5, 0.5}), (std::vector<std::size_t>{3}));
  EXPECT_EQ(index.thatMayHold({7, 1}), (std::vector<std::size_t>{3})) << "borders count";
  EXPECT_TRUE(index.thatMayHold({7.5, 0.5}).empty());
  EXPECT_TRUE(index.thatMayHold({std::numeric_limits<double>::quiet_NaN(), 0.5}).empty());
  EXPECT_TRUE(index.alwaysAsked().empty());
}

TEST(RegionIndex, DoesNotHoldWhereARegionRemembersNoRectangle) {
  auto regions = row(5);
  regions.emplace_back(new gxRegion(regions[0]->points()));
  EXPECT_FALSE(gx_RegionIndex(constOf(regions)).holds(constOf(regions)));
  EXPECT_FALSE(regions.back()->gxContour::points().empty());
}

TEST(RegionIndex, DoesNotHoldWithANullRegionOrOneOfTooFewPoints) {
  auto regions = row(5);
  regions.emplace_back();
  EXPECT_FALSE(gx_RegionIndex(constOf(regions)).holds(constOf(regions)));
  regions.back() = gxPtrHandle<gxRegion>(new gxRegion(Points{{1, 1}}));
  EXPECT_FALSE(gx_RegionIndex(constOf(regions)).holds(constOf(regions)));
}

TEST(RegionIndex, ARegionWithHolesIsAlwaysAskedForItsDistance) {
  auto regions = row(5);
  gxRegion large(Points{{0, 10}, {9, 10}, {9, 19}, {0, 19}});
  large.holes({Handle(squareAt(3, 13))});
  regions.emplace_back(new gxRegion(large));
  static_cast<void>(regions.back()->encloseRect(gxXform<2>::I));
  gx_RegionIndex index(constOf(regions));
  ASSERT_TRUE(index.holds(constOf(regions)));
  EXPECT_EQ(index.alwaysAsked(), (std::vector<std::size_t>{5}));
  EXPECT_EQ(index.thatMayHold({1, 11}), (std::vector<std::size_t>{5}));
}

TEST(RegionIndex, ARegionThatRemembersAnotherBoxIsAlwaysAsked) {
  auto regions = row(3);
  const gxXform<2> shear(gxMatrix<2>(1.0, 0.0, 10.0, 1.0), {0.0, 0.0});  // the same key
  regions.emplace_back(new gxRegion(Points{{5, 5}, {6, 5}, {6, 6}}));
  static_cast<void>(regions.back()->encloseRect(shear));
  gx_RegionIndex index(constOf(regions));
  ASSERT_TRUE(index.holds(constOf(regions)));
  EXPECT_EQ(index.thatMayHold({-50, -50}), (std::vector<std::size_t>{3}));
  EXPECT_EQ(index.alwaysAsked(), (std::vector<std::size_t>{3}));
}

TEST(RegionIndex, NoLongerHoldsOnceARegionChanged) {
  const gxXform<2> forgets(gxMatrix<2>(1, 0, 0, 1), {1, 0});
  for (int change = 0; change < 6; ++change) {
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
      case 4: region.reInit(); break;
      default:
        region.cachedVectorSize(0);  // the next rectangle takes the place of the upright one
        static_cast<void>(region.encloseRect(forgets));
    }
    EXPECT_FALSE(index.holds(handles));
    EXPECT_FALSE(index.holds(handles)) << "and stays so";
    if (region.points().size() > 1) static_cast<void>(region.encloseRect(gxXform<2>::I));
    gx_RegionIndex again(handles);
    EXPECT_EQ(again.holds(handles), region.points().size() > 1);
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
  static_cast<void>(regions[2]->encloseRect(gxXform<2>::I));
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
