// Neighbours on a ring, where edges without a length stand between them.
#include <gauge/internal/edge_links.h>
#include <gtest/gtest.h>
#include <support/shape_text.h>

namespace {

TEST(EdgeLinks, EdgesWithoutLengthAreLeftOut) {
  // Edge 0 closes the ring; edges 2 and 3 have no length.
  const auto outline = pointsOf("0 0, 4 0, 4 0, 4 0, 0 3");
  const gx_EdgeLinks links{gx_EdgeTree(gx_ringsOf(outline))};
  EXPECT_EQ(links.after[0], 1u);
  EXPECT_EQ(links.after[1], 4u);
  EXPECT_EQ(links.after[4], 0u);
  EXPECT_EQ(links.before[4], 1u);
  EXPECT_EQ(links.before[1], 0u);
  EXPECT_EQ(links.before[0], 4u);
}

TEST(EdgeLinks, EachRingIsClosedInItself) {
  gxRegion plate(pointsOf("0 0, 9 0, 9 9, 0 9"));
  plate.holes({gxPtrHandle_const<gxRegion>(new gxRegion(pointsOf("1 1, 2 1, 2 2")))});
  const gx_EdgeLinks links{gx_EdgeTree(gx_ringsOf(plate))};
  EXPECT_EQ(links.after, (std::vector<std::size_t>{1, 2, 3, 0, 5, 6, 4}));
  EXPECT_EQ(links.before, (std::vector<std::size_t>{3, 0, 1, 2, 6, 4, 5}));
}

TEST(EdgeLinks, APointHasNone) {
  const auto outline = pointsOf("1 1, 1 1");
  const gx_EdgeLinks links{gx_EdgeTree(gx_ringsOf(outline))};
  EXPECT_EQ(links.after, (std::vector<std::size_t>{0, 0}));
}

}  // namespace
