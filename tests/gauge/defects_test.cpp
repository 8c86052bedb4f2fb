#include <gauge/defects.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/plain_gauges.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <sstream>

namespace {

using Points = std::vector<gxVector<2>>;

gxConvexityDefects defectsOf(const Points& points) {
  return gfConvexityDefects(std::span<const gxVector<2>>(points));
}

TEST(Defects, DegenerateOutlinesHaveNone) {
  EXPECT_EQ(defectsOf({}).status, gxStatus::eEmpty);
  for (const char* text : {"1 2", "1 2, 1 2", "0 0, 3 3", "0 0, 1 1, 3 3, 2 2"}) {
    EXPECT_EQ(defectsOf(pointsOf(text)).status, gxStatus::eFlat) << text;
    EXPECT_TRUE(defectsOf(pointsOf(text)).defects.empty());
  }
  EXPECT_EQ(defectsOf(pointsOf("0 0, 1 0, nan 3")).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfConvexityDefects(gxContour(pointsOf("0 0, 1 0, 3 3"), false)).status,
            gxStatus::eNotClosed);
  EXPECT_EQ(gfConvexityDefects(gxContour({}, false)).status, gxStatus::eEmpty);
}

TEST(Defects, AConvexOutlineHasNoneAlsoWithPointsOnItsEdges) {
  for (const char* text : {"0 0, 4 0, 4 3", "0 0, 2 0, 4 0, 4 1, 4 3", "0 0, 0 0, 4 0, 4 3, 4 3"}) {
    EXPECT_EQ(defectsOf(pointsOf(text)).status, gxStatus::eOk);
    EXPECT_TRUE(defectsOf(pointsOf(text)).defects.empty()) << text;
  }
}

TEST(Defects, TheCornerOfAnL) {
  //  5-4        one pocket, from (3, 1) to (1, 3), √2 deep at (1, 1)
  //  | |
  //  | 3-2
  //  0---1
  const auto d = gfConvexityDefects(gxContour(pointsOf("0 0, 3 0, 3 1, 1 1, 1 3, 0 3")));
  EXPECT_EQ(d.status, gxStatus::eOk);
  ASSERT_EQ(d.defects.size(), 1U);
  EXPECT_EQ(d.defects[0].start, 2);
  EXPECT_EQ(d.defects[0].end, 4);
  EXPECT_EQ(d.defects[0].deepest, 3);
  EXPECT_EQ(d.defects[0].startPoint, gxVector<2>(3, 1));
  EXPECT_EQ(d.defects[0].endPoint, gxVector<2>(1, 3));
  EXPECT_EQ(d.defects[0].deepestPoint, gxVector<2>(1, 1));
  EXPECT_DOUBLE_EQ(d.defects[0].depth, std::sqrt(2.0));
  EXPECT_DOUBLE_EQ(d.defects[0].area, 2.0);
}

TEST(Defects, OfEquallyDeepPointsTheFirst) {
  const auto d = defectsOf(pointsOf("0 0, 9 0, 9 5, 6 2, 3 2, 0 5"));
  ASSERT_EQ(d.defects.size(), 1U);
  EXPECT_EQ(d.defects[0].deepest, 3);
  EXPECT_DOUBLE_EQ(d.defects[0].depth, 3.0);
  EXPECT_DOUBLE_EQ(d.defects[0].area, 18.0);
}

TEST(Defects, APocketAcrossTheStartComesLast) {
  const auto d = defectsOf(pointsOf("1 1, 1 3, 0 3, 0 0, 3 0, 3 1"));
  ASSERT_EQ(d.defects.size(), 1U);
  EXPECT_EQ(d.defects[0].start, 5);
  EXPECT_EQ(d.defects[0].end, 1);
  EXPECT_EQ(d.defects[0].deepest, 0);
}

TEST(Defects, AnOutlineThatTouchesItselfAtACorner) {
  // Two squares that share (0, 0), which is a corner of the hull through which the outline passes twice.
  //   the hull: (0,0) (4,−4) (8,0) … both petals on the right
  const auto d = defectsOf(pointsOf("0 0, 4 -4, 5 -3, 0 0, 5 3, 4 4"));
  EXPECT_EQ(d.status, gxStatus::eOk);
  ASSERT_EQ(d.defects.size(), 1U);
  EXPECT_EQ(d.defects[0].start, 2);
  EXPECT_EQ(d.defects[0].end, 4);
  EXPECT_EQ(d.defects[0].deepest, 3);
  EXPECT_DOUBLE_EQ(d.defects[0].depth, 5.0);
  for (std::size_t start = 1; start < 6; ++start) {
    const auto other = defectsOf(rotatedStart(pointsOf("0 0, 4 -4, 5 -3, 0 0, 5 3, 4 4"), start));
    EXPECT_EQ(other.status, gxStatus::eOk);
    ASSERT_EQ(other.defects.size(), 1U) << start;
    EXPECT_DOUBLE_EQ(other.defects[0].depth, 5.0);
  }
}

TEST(Defects, APocketThatClosesBehindItself) {
  // The pocket's own border touches itself at (2, 1).
  const auto d = defectsOf(pointsOf("0 0, 6 0, 6 4, 4 4, 2 1, 3 3, 2 3, 2 1, 0 4"));
  EXPECT_EQ(d.status, gxStatus::eOk);
  ASSERT_EQ(d.defects.size(), 1U);
  EXPECT_EQ(d.defects[0].deepest, 4);
  EXPECT_DOUBLE_EQ(d.defects[0].depth, 3.0);
}

TEST(Defects, ACrossingOutlineIsFlagged) {
  const auto bow = defectsOf(pointsOf("0 0, 4 4, 4 0, 0 4"));
  EXPECT_EQ(bow.status, gxStatus::eCrossing);
  const auto star = defectsOf(pointsOf("0 0, 4 3, 0 3, 4 0, 2 5"));
  EXPECT_EQ(star.status, gxStatus::eCrossing);
}

TEST(Defects, KnownShapesLackWhatTheirHullHas) {
  for (const KnownShape& s : knownShapes()) {
    if (!s.second.empty() || !s.hole.empty()) continue;
    const auto d = defectsOf(s.outline);
    double area = 0.0;
    for (const auto& defect : d.defects) area += defect.area;
    EXPECT_NEAR(area, s.area / s.solidity - s.area, 1e-9) << s.name;
  }
}

TEST(Defects, RandomOutlinesAgainstTheSearchOfEachCorner) {
  RandomShapes random("defects", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto kind = random.chance(0.5) ? OutlineKind::eStar : OutlineKind::eComb;
    const auto points = random.placed(random.outline(kind, random.integer(3, 60)));
    const auto found = defectsOf(points);
    const auto slow = plain::pockets(points);
    ASSERT_EQ(found.status, gxStatus::eOk);
    std::vector<gxConvexityDefect> deep;
    ASSERT_EQ(found.defects.size(), slow.size());
    for (std::size_t k = 0; k < slow.size(); ++k) {
      EXPECT_EQ(found.defects[k].start, static_cast<long>(slow[k].start));
      EXPECT_EQ(found.defects[k].end, static_cast<long>(slow[k].end));
      const double depth = static_cast<double>(slow[k].depth);
      EXPECT_NEAR(found.defects[k].depth, depth, 1e-12 * depth + 1e-15);
      EXPECT_NEAR(found.defects[k].area, static_cast<double>(slow[k].area),
                  1e-12 * static_cast<double>(slow[k].area) + 1e-15);
    }
    EXPECT_EQ(defectsOf(reversed(points)).defects.size(), slow.size());
  }
}

TEST(Defects, TheEndsOfTheRange) {
  for (const double scale : {1e300, 1e-300}) {
    Points points = pointsOf("0 0, 3 0, 3 1, 1 1, 1 3, 0 3");
    for (auto& p : points) p = p * scale;
    const auto d = defectsOf(points);
    ASSERT_EQ(d.defects.size(), 1U);
    EXPECT_DOUBLE_EQ(d.defects[0].depth / scale, std::sqrt(2.0));
  }
}

TEST(Defects, AnyOutlineEndsAndAnswers) {
  RandomShapes random("defects of anything", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto d = defectsOf(random.outline());
    for (const auto& defect : d.defects) EXPECT_GT(defect.depth, 0.0);
  }
}

TEST(Defects, Prints) {
  std::ostringstream out;
  const auto d = defectsOf(pointsOf("0 0, 9 0, 9 5, 6 2, 3 2, 0 5"));
  out << d << ": " << d.defects[0];
  EXPECT_EQ(out.str(), "1 defects: from 2 to 5 deepest 3 depth 3 area 18");
}

}  // namespace
