#include <gauge/internal/shape_points.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/shape_text.h>

namespace {

TEST(ShapePoints, OutlinesOneAfterTheOtherWithoutHoles) {
  EXPECT_TRUE(gx_outlinePoints(gxRegionSet()).empty());
  for (const KnownShape& shape : knownShapes()) {
    auto wanted = shape.outline;
    wanted.insert(wanted.end(), shape.second.begin(), shape.second.end());
    EXPECT_EQ(gx_outlinePoints(shape.set()), wanted) << shape.name;
  }
}

TEST(ShapePoints, ANullHandleThrows) {
  gxRegionSet set;
  set.add(nullptr);
  EXPECT_THROW(gx_outlinePoints(set), gxBadPointer);
}

}  // namespace
