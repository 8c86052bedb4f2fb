#include <gauge/measure.h>

#include <gauge/descriptors.h>
#include <gauge/moments.h>

#include <gtest/gtest.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

gxMeasure measured(const OutlineWithHoles& shape) {
  std::vector<gxMeasuredRing> rings{{shape.outline, false}};
  for (const auto& hole : shape.holes) rings.push_back({hole, true});
  return gfMeasure(rings);
}

TEST(Measure, Prints) {
  EXPECT_EQ(printed(gfMeasure(pointsOf("0 0, 2 0, 2 2, 0 2"))),
            "area 4 length 8 centre (1, 1) box (0, 0) to (2, 2)");
  EXPECT_EQ(printed(gfMeasure(pointsOf("0 0, 2 0"), false)),
            "area nan length 2 centre (1, 0) box (0, 0) to (2, 0) not_closed");
  const auto points = pointsOf("0 0, 2 0, 2 2");
  EXPECT_EQ(printed(gxMeasuredRing{points, false}), "outline of 3 points");
  EXPECT_EQ(printed(gxMeasuredRing{points, true}), "hole of 3 points");
}

}  // namespace

TEST(Measure, APlateWithAHole) {
  const OutlineWithHoles plate{{{0, 0}, {40, 0}, {40, 30}, {0, 30}},
                               {{{25, 10}, {35, 10}, {35, 20}, {25, 20}}}};
  const gxMeasure m = measured(plate);
  EXPECT_EQ(m.status, gxStatus::eOk);
  EXPECT_EQ(m.area, 1100.0);
  EXPECT_EQ(m.length, 180.0);
  EXPECT_NEAR(m.centre.x(), 21000.0 / 1100.0, 1e-14);
  EXPECT_EQ(m.centre.y(), 15.0);
  EXPECT_EQ(m.low, gxVector<2>(0, 0));
  EXPECT_EQ(m.high, gxVector<2>(40, 30));
}

TEST(Measure, SeveralOutlinesCountTogether) {
  const Points a{{0, 0}, {2, 0}, {2, 2}, {0, 2}};
  const Points b{{10, -1}, {12, -1}, {12, 1}, {10, 1}};
  const std::vector<gxMeasuredRing> rings{{a, false}, {b, false}};
  const gxMeasure m = gfMeasure(rings);
  EXPECT_EQ(m.area, 8.0);
  EXPECT_EQ(m.length, 16.0);
  EXPECT_EQ(m.centre, gxVector<2>(6, 0.5));
  EXPECT_EQ(m.low, gxVector<2>(0, -1));
  EXPECT_EQ(m.high, gxVector<2>(12, 2));
}

TEST(Measure, DegenerateInputIsAnsweredByStatus) {
  EXPECT_EQ(gfMeasure(std::span<const gxMeasuredRing>()).status, gxStatus::eEmpty);
  EXPECT_EQ(gfMeasure(Points()).area, 0.0);
  const gxMeasure point = gfMeasure(Points{{3, 4}});
  EXPECT_EQ(point.status, gxStatus::eFlat);
  EXPECT_EQ(point.centre, gxVector<2>(3, 4));
  const gxMeasure line = gfMeasure(Points{{0, 0}, {4, 0}, {2, 0}});
  EXPECT_EQ(line.status, gxStatus::eFlat);
  EXPECT_EQ(line.area, 0.0);
  EXPECT_EQ(line.length, 8.0);
  EXPECT_EQ(line.centre, gxVector<2>(2, 0));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const gxMeasure bad = gfMeasure(Points{{0, 0}, {nan, 0}, {2, 0}});
  EXPECT_EQ(bad.status, gxStatus::eNotFinite);
  EXPECT_TRUE(std::isnan(bad.area) && std::isnan(bad.length) && std::isnan(bad.centre.x()));
  const gxMeasure open = gfMeasure(Points{{0, 0}, {3, 0}, {3, 4}}, false);
  EXPECT_EQ(open.status, gxStatus::eNotClosed);
  EXPECT_TRUE(std::isnan(open.area));
  EXPECT_EQ(open.length, 7.0);
  const OutlineWithHoles inverted{{{0, 0}, {1, 0}, {0, 1}}, {{{0, 0}, {9, 0}, {0, 9}}}};
  EXPECT_EQ(measured(inverted).status, gxStatus::eNegative);
  EXPECT_EQ(measured(inverted).area, -40.0);
}

TEST(Measure, AgreesBitByBitWithDescriptorsAndMoments) {
  RandomShapes random("measure", 1000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    const gxMeasure m = gfMeasure(points);
    const gxDescriptors d = gfDescribe(std::span<const gxVector<2>>(points));
    const gxMoments moments = gfMoments(std::span<const gxVector<2>>(points));
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    ASSERT_TRUE(same(m.area, d.area));
    ASSERT_TRUE(same(m.length, d.length));
    ASSERT_TRUE(same(m.centre.x(), moments.centre.x()) && same(m.centre.y(), moments.centre.y()));
    ASSERT_TRUE(same(m.low.x(), d.box.origin().x()) && same(m.high.y(), d.box.corner().y()));
  }
}
