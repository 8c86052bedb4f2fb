// The edge-point classes across the library's border: one type identity, one virtual table, casts
// and catches that work between this program and the shared library.
#include <ch_core/cntrtmpl.h>
#include <gtest/gtest.h>
#include <velip/pel.h>
#include <velstd/registry.h>

#include <memory>
#include <typeinfo>

namespace {

using Contour = gxContourT<gxEdgelet>;
using Region = gxRegionT<gxEdgelet>;
using Set = gxRegionSetT<gxEdgelet>;

}  // namespace

// The factories live in the library: what they make is of this program's class.
TEST(EdgeletBorder, ObjectsMadeByTheLibraryAreOfOurClasses) {
  const std::unique_ptr<gxPersistent> contour(Contour::make());
  const std::unique_ptr<gxPersistent> region(Region::make());
  const std::unique_ptr<gxPersistent> set(Set::make());
  EXPECT_NE(dynamic_cast<Contour*>(contour.get()), nullptr);
  EXPECT_EQ(dynamic_cast<gxRegion*>(contour.get()), nullptr);
  EXPECT_NE(dynamic_cast<Region*>(region.get()), nullptr);
  EXPECT_NE(dynamic_cast<Contour*>(region.get()), nullptr);
  EXPECT_NE(dynamic_cast<gxRegion*>(region.get()), nullptr);
  EXPECT_NE(dynamic_cast<Set*>(set.get()), nullptr);
  EXPECT_NE(dynamic_cast<gxRegionSet*>(set.get()), nullptr);
  const gxPersistent& object = *region;
  EXPECT_TRUE(typeid(object) == typeid(Region));
}

TEST(EdgeletBorder, CrossCastsWorkBetweenTheHalvesOfARegion) {
  const Region region;
  const gxRegion& plain = region;
  EXPECT_EQ(dynamic_cast<const Contour*>(&plain), static_cast<const Contour*>(&region));
  EXPECT_EQ(dynamic_cast<const Region*>(&plain), &region);
  const gxPtrHandle_const<gxRegion> other(new gxRegion);
  EXPECT_EQ(dynamic_cast<const Contour*>(other.get()), nullptr);
}

TEST(EdgeletBorder, RefusalsAreCaughtByClassAndByBase) {
  const Contour contour;
  Contour result;
  EXPECT_THROW(contour.mapT(gxXform<2>::I, result), gxPel::BadWindow);
  EXPECT_THROW(contour.mapT(gxXform<2>::I, result), gxPel::Errors);
  EXPECT_THROW(contour.mapT(gxXform<2>::I, result), gxException);
  EXPECT_THROW(contour.mapT(gxXform<2>::I, result), std::exception);
}

TEST(EdgeletBorder, NamesAreWrittenAsInSourceText) {
  EXPECT_EQ(gf_ClassName(typeid(Contour)), "gxContourT<gxEdgelet>");
  EXPECT_EQ(gf_ClassName(typeid(Region)), "gxRegionT<gxEdgelet>");
  EXPECT_EQ(gf_ClassName(typeid(Set)), "gxRegionSetT<gxEdgelet>");
}

TEST(EdgeletBorder, HandlesOfTheLibraryLeadBackToEdgePointRegions) {
  const gxPtrHandle_const<Region> region(new Region({gxEdgelet()}));
  const Set set({region});
  EXPECT_EQ(dynamic_cast<const Region*>(set.regions()[0].get()), region.get());
}
