// An outline onto which others are spliced, held against the splice of points one after the other.
#include <cntr/internal/repair/spliced_outline.h>

#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_set.h>

#include <gtest/gtest.h>

namespace {

// Splices the other outline on, as a set does.
bool spliceOn(gx_SplicedOutline& merged, const Points& other, gxBudget& budget) {
  const ExposedContour contour(gxContour(other, true));
  return merged.splice(
      other,
      [&contour](const V& from, const V& to) -> std::optional<gx_SplicedOutline::Meeting> {
        std::vector<int> edges;
        const Points hits = contour.intersections(gxLineSeg(from, to), edges, true);
        if (hits.empty()) return std::nullopt;
        return gx_SplicedOutline::Meeting{hits.front(), static_cast<std::size_t>(edges.front())};
      },
      budget);
}
bool spliceOn(gx_SplicedOutline& merged, const Points& other) {
  gxBudget unlimited;
  return spliceOn(merged, other, unlimited);
}

bool isHitBy(const gx_SplicedOutline& merged, const Points& other, gxBudget& budget) {
  bool isHit = false;
  for (std::size_t k = 0; k < other.size() && !isHit; ++k) {
    const V& from = other[k == 0 ? other.size() - 1 : k - 1];
    isHit = merged.isHit(gx_CrossingQuery(from, other[k], true), budget);
  }
  return isHit;
}
bool isHitBy(const gx_SplicedOutline& merged, const Points& other) {
  gxBudget unlimited;
  return isHitBy(merged, other, unlimited);
}

TEST(SplicedOutline, HasThePointsItWasMadeOf) {
  const gx_SplicedOutline outline(square(1, 2, 3));
  EXPECT_EQ(outline.size(), 4U);
  EXPECT_EQ(outline.points(), square(1, 2, 3));
  EXPECT_EQ(outline.box().lowX, 1.0);
  EXPECT_EQ(outline.box().highY, 5.0);
}

TEST(SplicedOutline, OfNoPointsMeetsNothing) {
  gx_SplicedOutline outline({});
  EXPECT_TRUE(outline.points().empty());
  EXPECT_FALSE(isHitBy(outline, square(0, 0, 1)));
  EXPECT_FALSE(spliceOn(outline, square(0, 0, 1)));
}

TEST(SplicedOutline, IsCutAtTheLowestEdgeThatMeets) {
  gx_SplicedOutline outline(square(0, 0, 2));
  ASSERT_TRUE(spliceOn(outline, square(1, 1, 2)));
  EXPECT_EQ(outline.points(), slow::splice(square(0, 0, 2), square(1, 1, 2)));
}

TEST(SplicedOutline, StaysAsItIsWhereNothingMeets) {
  gx_SplicedOutline outline(square(0, 0, 2));
  EXPECT_FALSE(spliceOn(outline, square(5, 5, 2)));
  EXPECT_FALSE(spliceOn(outline, square(0.5, 0.5, 1))) << "inside, and touching nothing";
  EXPECT_EQ(outline.points(), square(0, 0, 2));
}

TEST(SplicedOutline, IsThatOfTheSplicesOneAfterTheOtherBitForBit) {
  RandomShapes random("splices", 300);
  long spliced = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const bool isCluster = random.chance(0.5);
    const Points first = random.star(random.integer(2, 12), {0.0, 0.0}, 1.0, 5.0);
    gx_SplicedOutline outline(first);
    Points plain = first;
    for (int i = 0; i < 12; ++i) {
      const double reach = isCluster ? 2.0 : 12.0;
      Points other =
          random.star(random.integer(1, 12),
                      {random.uniform(-reach, reach), random.uniform(-reach, reach)}, 1.0, 5.0);
      if (random.chance(0.2)) other = first;
      if (random.chance(0.1)) other.push_back(other.back());
      const bool isHit = !slow::intersections(slow::Outline{plain, true}, {other, true}).empty();
      ASSERT_EQ(isHitBy(outline, other), isHit);
      if (!isHit) continue;
      ASSERT_TRUE(spliceOn(outline, other));
      plain = slow::splice(plain, other);
      ++spliced;
      ASSERT_TRUE(sameBits(outline.points(), plain));
      gx_Box box;
      for (const V& point : plain) box.add(point);
      EXPECT_EQ(outline.box().lowX, box.lowX);
      EXPECT_EQ(outline.box().lowY, box.lowY);
      EXPECT_EQ(outline.box().highX, box.highX);
      EXPECT_EQ(outline.box().highY, box.highY);
    }
  }
  EXPECT_GT(spliced, 800);
}

// Steps of splicing so many copies of an outline onto it; at its first vertex where `atStart`.
double stepsOf(int count, bool atStart) {
  const Points other = square(0, 0, 2);
  gx_SplicedOutline outline(other);
  gxBudget steps;
  for (int i = 0; i < count; ++i) {
    EXPECT_TRUE(isHitBy(outline, other, steps));
    if (atStart) {
      const auto atFirst = [&](const V&, const V&) { return gx_SplicedOutline::Meeting{other[1], 1}; };
      EXPECT_TRUE(outline.splice(other, atFirst, steps));
    } else {
      EXPECT_TRUE(spliceOn(outline, other, steps));
    }
  }
  return static_cast<double>(steps.spent());
}

TEST(SplicedOutline, SplicesTenTimesAsManyInAboutTenTimesTheSteps) {
  EXPECT_LT(stepsOf(4000, false) / stepsOf(400, false), 20.0);
}

TEST(SplicedOutline, EdgesWithoutLengthThatSplicesLeaveBehindCostNothing) {
  EXPECT_LT(stepsOf(4000, true) / stepsOf(400, true), 20.0);
}

}  // namespace
