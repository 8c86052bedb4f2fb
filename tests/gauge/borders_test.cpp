// The rings of a shape, in their order.
#include <gauge/borders.h>
#include <gtest/gtest.h>
#include <support/shape_text.h>

namespace {

gxPtrHandle<gxRegion> squareAt(double low, double high) {
  return gxPtrHandle<gxRegion>(
      new gxRegion(std::vector<gxVector<2>>{{low, low}, {high, low}, {high, high}, {low, high}}));
}

TEST(Borders, AContourIsOneRing) {
  const auto points = pointsOf("0 0, 1 0, 1 1");
  const gxContour open(points, false);
  const gxBorders borders(open);
  ASSERT_EQ(borders.rings().size(), 1u);
  EXPECT_FALSE(borders.rings()[0].closed);
  EXPECT_EQ(borders.rings()[0].points.data(), open.points().data());
  EXPECT_TRUE(gxBorders(points).rings()[0].closed);
  EXPECT_FALSE(gxBorders(points, false).rings()[0].closed);
}

TEST(Borders, HolesOfHolesComeAfterTheHolesOfTheirLevel) {
  gxRegion region(pointsOf("0 0, 100 0, 100 100, 0 100"));
  const auto first = squareAt(10, 40);
  const auto second = squareAt(50, 90);
  first->holes({gxRegion::HoleHandle(squareAt(20, 30))});
  second->holes({gxRegion::HoleHandle(squareAt(60, 80))});
  region.holes({gxRegion::HoleHandle(first), gxRegion::HoleHandle(second)});
  const gxBorders borders(region);
  std::vector<double> lows;
  for (const auto& ring : borders.rings()) lows.push_back(ring.points[0].x());
  EXPECT_EQ(lows, (std::vector<double>{0, 10, 50, 20, 60}));
}

TEST(Borders, AHoleThatTwoRegionsHoldIsListedTwice) {
  gxRegion region(pointsOf("0 0, 100 0, 100 100, 0 100"));
  const auto shared = squareAt(20, 30);
  const auto first = squareAt(10, 40);
  const auto second = squareAt(11, 41);
  first->holes({gxRegion::HoleHandle(shared)});
  second->holes({gxRegion::HoleHandle(shared)});
  region.holes({gxRegion::HoleHandle(first), gxRegion::HoleHandle(second)});
  EXPECT_EQ(gxBorders(region).rings().size(), 5u);
}

TEST(Borders, ARegionBelowItselfIsRefused) {
  const auto outer = squareAt(0, 100);
  const auto inner = squareAt(10, 40);
  outer->holes({gxRegion::HoleHandle(inner)});
  inner->holes({gxRegion::HoleHandle(outer)});
  EXPECT_THROW(gxBorders{*outer}, gxContourDefs::BadParams);
  inner->holes(std::initializer_list<gxRegion::HoleHandle>{});
}

TEST(Borders, ASetListsRegionByRegion) {
  const auto first = squareAt(0, 10);
  first->holes({gxRegion::HoleHandle(squareAt(2, 4))});
  const gxRegionSet set({gxRegionSet::RegionHandle(first), gxRegionSet::RegionHandle(squareAt(20, 30))});
  const gxBorders borders(set);
  std::vector<double> lows;
  for (const auto& ring : borders.rings()) lows.push_back(ring.points[0].x());
  EXPECT_EQ(lows, (std::vector<double>{0, 2, 20}));
}

}  // namespace
