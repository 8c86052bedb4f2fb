// Which edge is the nearest where.
#include <gauge/internal/envelope.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>

#include <cmath>

namespace {

TEST(Envelope, OnEveryStretchItsEdgeIsTheNearest) {
  RandomShapes random("envelope", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.finiteOutline();
    if (points.empty()) continue;
    const gx_Rings rings{{points, random.chance(0.6)}};
    const gx_Frame frame(gx_boxOf(rings));
    const gx_BorderTree tree(rings, frame);
    gx_Envelope envelope(tree);
    for (int k = 0; k < 6; ++k) {
      const double reach = random.chance(0.5) ? 0.1 : 2.0;
      const gxVector<2> a(random.uniform(-2, 2), random.uniform(-2, 2));
      const gxVector<2> step(random.uniform(-reach, reach), random.uniform(-reach, reach));
      const gx_Piece glide{a, random.chance(0.05) ? a : a + step};
      double at = 0.0;
      std::size_t before = gx_BorderTree::kNone;
      for (const gx_Stretch& stretch : envelope.along(glide)) {
        EXPECT_EQ(stretch.t0, at);
        EXPECT_GT(stretch.t1, stretch.t0);
        EXPECT_NE(stretch.feature, before);
        for (const double share : {0.0, 0.25, 0.5, 0.75, 1.0}) {
          const gxVector<2> p = glide.at(stretch.t0 + share * (stretch.t1 - stretch.t0));
          double least = std::numeric_limits<double>::infinity();
          for (std::size_t e = 0; e < tree.edges(); ++e) {
            least = std::min(least, std::sqrt(tree.squareFrom(e, p)));
          }
          EXPECT_NEAR(std::sqrt(tree.squareFrom(stretch.feature, p)), least, 1e-12);
        }
        at = stretch.t1;
        before = stretch.feature;
      }
      EXPECT_EQ(at, 1.0);
    }
  }
}

TEST(Envelope, ANeedleBetweenTwoEndsOfOneEdgeIsSeen) {
  // The long edge is the nearest at both ends, the needle's tip in the middle.
  const std::vector<gxVector<2>> points{{-4, 0},  {4, 0},     {4, 4}, {0.01, 4},
                                        {0, 1.2}, {-0.01, 4}, {-4, 4}};
  const gx_Rings rings{{points, true}};
  const gx_Frame frame(gx_boxOf(rings));
  const gx_BorderTree tree(rings, frame);
  gx_Envelope envelope(tree);
  const auto stretches = envelope.along({frame.to({-1, 1}), frame.to({1, 1})});
  ASSERT_GE(stretches.size(), 3u);
  EXPECT_EQ(stretches.front().feature, 1u);
  EXPECT_EQ(stretches.back().feature, 1u);
}

}  // namespace
