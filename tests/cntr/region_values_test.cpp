#include <cntr/region.h>

#include <ch_core/cntrtmpl.h>
#include <support/shape_text.h>
#include <velstd/xform_base.h>

#include <gtest/gtest.h>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

Points square(double x, double y, double side) {
  return {V(x, y), V(x + side, y), V(x + side, y + side), V(x, y + side)};
}

const gxXform<2> kTurnAndShift(gxMatrix<2>(0, -2, 2, 0), V(100, 0));

// ---- Holes as values ----------------------------------------------------------------------------

TEST(RegionHoleValues, AreGivenWithTheOutline) {
  const gxRegion plate(square(0, 0, 10), {square(1, 1, 2), square(5, 5, 3)});
  ASSERT_EQ(plate.holes().size(), 2U);
  EXPECT_EQ(plate.holes()[1]->points(), square(5, 5, 3));
  EXPECT_EQ(plate.area(true), 100.0 - 4.0 - 9.0);
  EXPECT_TRUE(gxRegion(square(0, 0, 10), std::vector<Points>{}).holes().empty());
}

TEST(RegionHoleValues, ReplaceTheHolesOrComeBehindThem) {
  gxRegion plate(square(0, 0, 10));
  gxRegion inner(square(1, 1, 2));
  inner.label(5);
  plate.holes({inner});
  inner.label(6);  // copied: the hole keeps what it was
  ASSERT_EQ(plate.holes().size(), 1U);
  EXPECT_EQ(plate.holes()[0]->label(), 5U);
  plate.addHole(square(4, 4, 1));
  plate.addHole(gxRegion(square(6, 6, 1)));
  ASSERT_EQ(plate.holes().size(), 3U);
  EXPECT_EQ(plate.holes()[0]->points(), square(1, 1, 2));
  EXPECT_EQ(plate.holes()[1]->points(), square(4, 4, 1));
  EXPECT_EQ(plate.holes()[2]->points(), square(6, 6, 1));
  EXPECT_EQ(plate.area(true), 100.0 - 4.0 - 1.0 - 1.0);
}

TEST(RegionHoleValues, ThatCrossTheOutlineAreRefusedAndTheOldOnesKept) {
  gxRegion plate(square(0, 0, 10), {square(1, 1, 2)});
  EXPECT_THROW(plate.addHole(square(9, 9, 3)), gxContourDefs::BadParams);
  EXPECT_THROW(plate.holes({gxRegion(square(-1, -1, 3))}), gxContourDefs::BadParams);
  EXPECT_THROW(gxRegion(square(0, 0, 10), {square(9, 9, 3)}), gxContourDefs::BadParams);
  ASSERT_EQ(plate.holes().size(), 1U);
  EXPECT_EQ(plate.holes()[0]->points(), square(1, 1, 2));
  gxRegion point(Points{V(0, 0)});
  EXPECT_THROW(point.addHole(square(0, 0, 1)), gxContourDefs::EmptyContour);
  EXPECT_TRUE(point.holes().empty());
}

TEST(RegionHoleValues, OfAnEdgePointRegionArePlainHoles) {
  std::vector<gxEdgelet> edges;
  for (const V& point : square(0, 0, 10)) edges.emplace_back(point, 1, gxAngle8(0));
  gxRegionT<gxEdgelet> region(edges, gxPtrHandle_const<gx2XformBase>(new gx2XformLinear(gxXform<2>())));
  region.holes(std::vector<gxRegion>{gxRegion(square(1, 1, 2))});
  EXPECT_EQ(static_cast<const gxRegion&>(region).holes().size(), 1U);
  EXPECT_TRUE(region.holes().empty());
}

// ---- Results as values --------------------------------------------------------------------------

TEST(RegionValues, AreWhatTheFormsWithAnArgumentGive) {
  const gxRegion bow(Points{V(0, 0), V(10, 10), V(10, 0), V(0, 10)});
  gxRegion result;
  bow.regularize(result);
  EXPECT_EQ(bow.regularized().points(), result.points());
  bow.outerHull(result);
  EXPECT_EQ(bow.outerHull().points(), result.points());
  EXPECT_EQ(gxRegion(square(0, 0, 2), {}).encloseRect(), gxRect(V(0, 0), V(2, 2)));
}

// ---- Mapped with everything ---------------------------------------------------------------------

TEST(RegionMapped, KeepsHolesLabelsAndBounds) {
  gxRegion inner(square(2, 2, 4), {square(3, 3, 1)});
  inner.label(4);
  gxRegion plate(square(0, 0, 10));
  plate.holes({inner});
  plate.label(3);
  plate.cachedVectorSize(9);
  const gxRegion mapped = plate.mapped(kTurnAndShift);
  EXPECT_EQ(mapped.points()[1], V(100, 20));
  EXPECT_EQ(mapped.label(), 3U);
  EXPECT_EQ(mapped.cachedVectorSize(), 9);
  ASSERT_EQ(mapped.holes().size(), 1U);
  EXPECT_EQ(mapped.holes()[0]->label(), 4U);
  ASSERT_EQ(mapped.holes()[0]->holes().size(), 1U);
  EXPECT_EQ(mapped.holes()[0]->holes()[0]->points()[0], V(94, 6));
  EXPECT_EQ(mapped.area(true), 4.0 * plate.area(true));
}

TEST(RegionMapped, MapsASharedHoleOnce) {
  const Handle common(new gxRegion(square(4, 4, 1)));
  gxRegion left(square(1, 1, 2));
  left.holes({common});
  gxRegion plate(square(0, 0, 10));
  plate.holes({Handle(new gxRegion(left)), common});
  const gxRegion mapped = plate.mapped(kTurnAndShift);
  ASSERT_EQ(mapped.holes().size(), 2U);
  EXPECT_EQ(mapped.holes()[0]->holes()[0], mapped.holes()[1]);
  EXPECT_NE(mapped.holes()[1], common);
}

TEST(RegionMapped, OfAnyDepthNeedsNoStack) {
  gxPtrHandle<gxRegion> region(new gxRegion(square(1, 1, 1)));
  for (int depth = 0; depth < 10000; ++depth) {
    gxPtrHandle<gxRegion> around(new gxRegion(square(-depth, -depth, 3 + 2 * depth)));
    around->holes({Handle(region)});
    region = around;
  }
  const gxRegion mapped = region->mapped(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), V(1, 0)));
  const gxRegion* at = &mapped;
  int depth = 0;
  while (!at->holes().empty()) {
    at = at->holes()[0].get();
    ++depth;
  }
  EXPECT_EQ(depth, 10000);
  EXPECT_EQ(at->points()[0], V(2, 1));
}

TEST(RegionMapped, OfACycleOfHolesIsRefused) {
  gxPtrHandle<gxRegion> outer(new gxRegion(square(0, 0, 10)));
  gxPtrHandle<gxRegion> inner(new gxRegion(square(3, 3, 2)));
  outer->holes({Handle(inner)});
  inner->holes({Handle(outer)});
  EXPECT_THROW(static_cast<void>(outer->mapped(kTurnAndShift)), gxContourDefs::BadParams);
  EXPECT_THROW(static_cast<void>(inner->unshared()), gxContourDefs::BadParams);
  inner->holes({});
}

TEST(RegionUnshared, IsEqualAndSharesNothing) {
  gxRegion plate(square(0, 0, 10), {square(1, 1, 2)});
  plate.label(8);
  const gxRegion copy = plate.unshared();
  EXPECT_EQ(copy, plate);
  EXPECT_EQ(copy.label(), 8U);
  ASSERT_EQ(copy.holes().size(), 1U);
  EXPECT_NE(copy.holes()[0], plate.holes()[0]);
  EXPECT_EQ(copy.holes()[0]->points(), plate.holes()[0]->points());
  EXPECT_EQ(copy.holes()[0]->refCount(), 1);
}

TEST(RegionUnshared, OfNoPointsIsEmpty) {
  EXPECT_TRUE(gxRegion().unshared().points().empty());
}

}  // namespace
