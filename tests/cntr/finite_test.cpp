#include <cntr/finite.h>

#include <gtest/gtest.h>
#include <support/region_shapes.h>

#include <limits>

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

template <class Shape>
std::wstring refusalOf(const Shape& shape) {
  return messageOfBadParams([&] { gfCheckFinite(shape); });
}

TEST(CheckFinite, SaysNothingOfFiniteShapes) {
  const gxRegion plate = squareWithHole();
  EXPECT_NO_THROW(gfCheckFinite(plate));
  EXPECT_NO_THROW(gfCheckFinite(plate.points()));
  EXPECT_NO_THROW(gfCheckFinite(gxContour({{1e308, -1e308}, {5e-324, 0}})));
  EXPECT_NO_THROW(gfCheckFinite(gxRegionSet({shared(plate), shared(plate)})));
}

TEST(CheckFinite, SaysNothingWhereThereAreNoPoints) {
  EXPECT_NO_THROW(gfCheckFinite(Points()));
  EXPECT_NO_THROW(gfCheckFinite(gxContour()));
  EXPECT_NO_THROW(gfCheckFinite(gxRegion()));
  EXPECT_NO_THROW(gfCheckFinite(gxRegionSet()));
}

TEST(CheckFinite, NamesTheFirstPointThatIsNot) {
  const Points points{{0, 0}, {1, kInfinity}, {kNan, 2}};
  EXPECT_EQ(refusalOf(points), L"point 1 is (1, Infinity): coordinates have to be finite");
  EXPECT_EQ(refusalOf(gxContour(points, false)),
            L"point 1 is (1, Infinity): coordinates have to be finite");
  EXPECT_EQ(refusalOf(Points{{kNan, 2}}), L"point 0 is (NaN, 2): coordinates have to be finite");
  EXPECT_EQ(refusalOf(Points{{0, 0}, {-kInfinity, 0.5}}),
            L"point 1 is (-Infinity, 0.5): coordinates have to be finite");
}

// A hole gets its points after it was set: the setter would refuse it.
gxRegion withHoles(const std::vector<Points>& holes) {
  gxRegion region(square(0, 0, 100));
  std::vector<gxPtrHandle<gxRegion>> handles;
  for (std::size_t i = 0; i < holes.size(); ++i) {
    handles.push_back(gfMakeHandle<gxRegion>(square(10.0 * static_cast<double>(i) + 1, 1, 2)));
  }
  region.holes(handles);
  for (std::size_t i = 0; i < holes.size(); ++i) handles[i]->points(holes[i]);
  return region;
}

TEST(CheckFinite, NamesTheHole) {
  const gxRegion region = withHoles({square(1, 1, 2), {{5, 5}, {6, 6}, {6, kNan}}});
  EXPECT_EQ(refusalOf(region), L"point 2 of hole 1 is (6, NaN): coordinates have to be finite");
  EXPECT_EQ(refusalOf(region.holes()[1]->points()),
            L"point 2 is (6, NaN): coordinates have to be finite");
}

TEST(CheckFinite, LooksAtTheOutlineBeforeTheHoles) {
  gxRegion region = withHoles({{{kNan, 0}}});
  region.points({{0, 0}, {0, 1}, {kInfinity, 0}});
  EXPECT_EQ(refusalOf(region), L"point 2 is (Infinity, 0): coordinates have to be finite");
}

TEST(CheckFinite, NamesTheRegionOfASetAndTheWayToAnIsland) {
  gxRegion inner = withHoles({square(1, 1, 2), {{kNan, kNan}}});
  gxRegion outer(square(-10, -10, 200));
  outer.addHole(inner);
  EXPECT_EQ(refusalOf(outer),
            L"point 0 of hole 1 of hole 0 is (NaN, NaN): coordinates have to be finite");
  EXPECT_EQ(refusalOf(gxRegionSet({shared(squareWithHole()), shared(outer)})),
            L"point 0 of hole 1 of hole 0 of region 1 is (NaN, NaN): coordinates have to be finite");
}

TEST(CheckFinite, RefusesNullHandles) {
  gxRegion region = squareWithHole();
  addNullHole(region);
  EXPECT_THROW(gfCheckFinite(region), gxBadPointer);
  EXPECT_THROW(gfCheckFinite(gxRegionSet({Handle()})), gxBadPointer);
}

TEST(CheckFinite, EndsWhereARegionIsAHoleOfItsOwnHole) {
  const gxPtrHandle<gxRegion> own = gfMakeHandle<gxRegion>(square(0, 0, 10));
  const gxPtrHandle<gxRegion> hole = gfMakeHandle<gxRegion>(square(1, 1, 2));
  own->holes({hole});
  const gxPtrHandle<gxRegion> small = gfMakeHandle<gxRegion>(square(1.5, 1.5, 0.5));
  hole->holes({small});
  small->points({{1.5, 1.5}});
  small->points(square(1.5, 1.5, 0.5));
  const_cast<std::vector<Handle>&>(small->holes())
      .emplace_back(own);  // NOLINT: archives may come with one
  EXPECT_EQ(refusalOf(*own), L"holes nest too deeply");
  const_cast<std::vector<Handle>&>(small->holes()).clear();  // NOLINT: or nobody lets go
}

}  // namespace
