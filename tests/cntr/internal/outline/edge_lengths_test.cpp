// Lengths of consecutive edges, two at a time, held against the distance of points.
#include <support/large_outlines.h>

#include <cntr/internal/outline/edge_lengths.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>

namespace {

std::vector<double> lengthsOf(const std::vector<gxVector<2>>& points) {
  std::vector<double> lengths;
  gx_forEachLength(points, [&lengths](double length, std::size_t i) {
    EXPECT_EQ(i, lengths.size() + 1);
    lengths.push_back(length);
  });
  return lengths;
}

TEST(EdgeLengths, OfNoPointsAndOfOneThereAreNone) {
  EXPECT_TRUE(lengthsOf({}).empty());
  EXPECT_TRUE(lengthsOf({{1, 2}}).empty());
}

TEST(EdgeLengths, ComeInOrderForOddAndEvenCounts) {
  EXPECT_EQ(lengthsOf({{0, 0}, {3, 4}}), (std::vector<double>{5}));
  EXPECT_EQ(lengthsOf({{0, 0}, {3, 4}, {3, 5}}), (std::vector<double>{5, 1}));
  EXPECT_EQ(lengthsOf({{0, 0}, {3, 4}, {3, 5}, {3, 5}}), (std::vector<double>{5, 1, 0}));
}

TEST(EdgeLengths, BeyondTheRangeOfSquaresAreScaled) {
  EXPECT_EQ(lengthsOf({{0, 0}, {0x3p650, 0x4p650}, {0x3p650, 0}}),
            (std::vector<double>{0x5p650, 0x4p650}));
  EXPECT_EQ(lengthsOf({{0, 0}, {5e-324, 0}, {1, 0}}), (std::vector<double>{5e-324, 1}));
}

TEST(EdgeLengths, AreTheDistancesOfTheirEndsBitForBit) {
  RandomShapes random("lengths two at a time", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<gxVector<2>> points =
        random.chance(0.5) ? random.outline() : largeOutline(random).points;
    const std::vector<double> lengths = lengthsOf(points);
    for (std::size_t i = 1; i < points.size(); ++i) {
      EXPECT_TRUE(sameBits(lengths[i - 1], points[i - 1].distance(points[i])));
    }
  }
}

}  // namespace
