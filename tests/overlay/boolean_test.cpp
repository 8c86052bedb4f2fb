// Boolean operations and cutting: by hand, the known troublemakers, and against the judges.
// Covers overlay/internal/cutting.cpp
#include <overlay/boolean.h>
#include <overlay/plain_sets.h>
#include <overlay/repair.h>
#include <overlay/troublemakers.h>
#include <support/shape_text.h>
#include <support/slab_judge.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

namespace {

using slow::Set;

gxRegion regionOf(const std::string& points) {
  return gxRegion(pointsOf(points));
}

Set outlinesOf(const std::vector<std::string>& outlines) {
  Set set;
  for (const std::string& o : outlines) set.push_back({pointsOf(o), {}});
  return set;
}

void expectSame(const gxRegionSet& result, const Set& expected) {
  EXPECT_TRUE(areSame(plainSet(result), expected));
}

gxRegionSet asked(const Trouble& trouble, const std::string& ask) {
  std::istringstream in(ask);
  std::string what;
  std::string rule;
  in >> what >> rule;
  gxOverlayOptions options;
  if (rule == "non-zero") options.rule = gxFillRule::eNonZero;
  if (rule == "positive") options.rule = gxFillRule::ePositive;
  if (rule == "outer") options.rule = gxFillRule::eOuter;
  std::vector<gxRegionSet> sets;
  for (const Set& operand : trouble.operands) sets.push_back(librarySet(operand));
  if (what == "repair") return gfRepair(sets[0], options).regions;
  if (what == "union") return gfUnion(sets, options);
  if (what == "difference") return gfDifference(sets[0], sets[1], options);
  return gfIntersection(sets[0], sets[1], options);
}

bool isAsked(const std::string& ask) {
  for (const char* what : {"repair", "union", "difference", "intersection"}) {
    if (ask.rfind(what, 0) == 0) return true;
  }
  return false;
}

void expectAnswer(const Trouble& trouble, const Trouble::Question& question, double scale) {
  const Set result = plainSet(asked(trouble, question.ask));
  EXPECT_EQ(judge::faultOf(result), "");
  EXPECT_EQ(judge::disorderOf(result), "");
  const double area = question.rounded >= 0.0 ? question.rounded : question.area;
  const double within = question.within >= 0.0 ? question.within : 1e-12 * area;
  if (area >= 0.0) {
    EXPECT_NEAR(judge::areaOf(result) / scale / scale, area, within);
  }
  std::size_t holes = 0;
  std::size_t points = 0;
  for (const slow::Region& region : result) {
    holes += region.holes.size();
    points += region.outline.size();
    for (const slow::Region& hole : region.holes) points += hole.outline.size();
  }
  if (question.regions >= 0) {
    EXPECT_EQ(result.size(), static_cast<std::size_t>(question.regions));
  }
  if (question.holes >= 0) {
    EXPECT_EQ(holes, static_cast<std::size_t>(question.holes));
  }
  if (question.points >= 0) {
    EXPECT_EQ(points, static_cast<std::size_t>(question.points));
  }
}

}  // namespace

TEST(Boolean, TwoSquares) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4, 0 4");
  const gxRegion b = regionOf("2 2, 6 2, 6 6, 2 6");
  expectSame(gfUnion(a, b), outlinesOf({"0 0, 4 0, 4 2, 6 2, 6 6, 2 6, 2 4, 0 4"}));
  expectSame(gfIntersection(a, b), outlinesOf({"2 2, 4 2, 4 4, 2 4"}));
  expectSame(gfDifference(a, b), outlinesOf({"0 0, 4 0, 4 2, 2 2, 2 4, 0 4"}));
  expectSame(gfSymmetricDifference(a, b),
             outlinesOf({"0 0, 4 0, 4 2, 2 2, 2 4, 0 4", "2 4, 4 4, 4 2, 6 2, 6 6, 2 6"}));
}

TEST(Boolean, NothingIsTheOtherOperandOrNothing) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4");
  const gxRegionSet none;
  expectSame(gfUnion(a, none), outlinesOf({"0 0, 4 0, 4 4"}));
  expectSame(gfIntersection(a, none), {});
  expectSame(gfDifference(a, none), outlinesOf({"0 0, 4 0, 4 4"}));
  expectSame(gfDifference(none, a), {});
  expectSame(gfUnion(gxRegionSet()), {});
  expectSame(gfIntersection(std::vector<gxShapes>()), {});
}

TEST(Boolean, HolesAndIslandsCount) {
  gxRegion ring = regionOf("0 0, 10 0, 10 10, 0 10");
  const gxPtrHandle<gxRegion> hole(new gxRegion(pointsOf("2 2, 8 2, 8 8, 2 8")));
  hole->holes({gxRegion::HoleHandle(new gxRegion(pointsOf("4 4, 6 4, 6 6, 4 6")))});
  ring.holes({gxRegion::HoleHandle(hole)});
  expectSame(gfUnion(ring),
             {{pointsOf("0 0, 10 0, 10 10, 0 10"), {{pointsOf("2 2, 2 8, 8 8, 8 2"), {}}}},
              {pointsOf("4 4, 6 4, 6 6, 4 6"), {}}});
  expectSame(gfIntersection(ring, regionOf("1 3, 9 3, 9 5, 1 5")),
             outlinesOf({"1 3, 2 3, 2 5, 1 5", "4 4, 6 4, 6 5, 4 5", "8 3, 9 3, 9 5, 8 5"}));
}

TEST(Boolean, ManyShapesInOnePass) {
  std::vector<gxRegion> squares;
  for (int i = 0; i < 30; ++i) {
    const double x = i;
    squares.emplace_back(judge::Ring{{x, 0}, {x + 2, 0}, {x + 2, 2}, {x, 2}});
  }
  EXPECT_EQ(judge::areaOf(plainSet(gfUnion(squares))), 62.0);
  EXPECT_EQ(gfUnion(squares).regions().size(), 1U);
  std::vector<gxShapes> three(squares.begin(), squares.begin() + 2);
  expectSame(gfIntersection(three), outlinesOf({"1 0, 2 0, 2 2, 1 2"}));
}

TEST(Boolean, KnownTroublemakers) {
  int questions = 0;
  for (const std::string& name : troubleNames()) {
    SCOPED_TRACE(name);
    const Trouble trouble = troubleNamed(name);
    for (const Trouble::Question& question : trouble.questions) {
      if (!isAsked(question.ask)) continue;
      SCOPED_TRACE(question.ask);
      ++questions;
      expectAnswer(trouble, question, 1.0);
      if (question.rounded >= 0.0) continue;
      Trouble large = trouble;
      for (Set& set : large.operands) set = mappedSet(set, [](const auto& p) { return p * 0x1p400; });
      expectAnswer(large, question, 0x1p400);
    }
  }
  EXPECT_GT(questions, 30);
}

TEST(Boolean, AreasAddUpAndDifferenceAndIntersectionMakeTheWhole) {
  RandomShapes random("areas of two", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto family = random.chance(0.5) ? OverlayFamily::eGeneral : OverlayFamily::eFar;
    const std::vector<Set> operands = overlayOperands(random, family, 2);
    const gxRegionSet a = librarySet(operands[0]);
    const gxRegionSet b = librarySet(operands[1]);
    const auto area = [](const gxRegionSet& set) { return judge::areaOf(plainSet(set)); };
    judge::Rings rings = judge::ringsOf(operands[0]);
    for (judge::Ring& ring : judge::ringsOf(operands[1])) rings.push_back(std::move(ring));
    const double within = 6.0 * judge::ulpOf(rings) * judge::lengthOf(rings);
    const double both = area(gfIntersection(a, b));
    ASSERT_NEAR(area(gfRepair(a).regions) + area(gfRepair(b).regions), area(gfUnion(a, b)) + both,
                within);
    ASSERT_NEAR(area(gfRepair(a).regions), area(gfDifference(a, b)) + both, within);
    ASSERT_NEAR(area(gfSymmetricDifference(a, b)) + both, area(gfUnion(a, b)), within);
  }
}

TEST(Clip, ByARectangle) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4, 0 4");
  expectSame(gfClip(a, gxRect({1, -1}, {2, 3})), outlinesOf({"1 0, 3 0, 3 2, 1 2"}));
  expectSame(gfClip(a, gxRect({-1, -1}, {9, 9})), outlinesOf({"0 0, 4 0, 4 4, 0 4"}));
  expectSame(gfClip(a, gxRect({5, 5}, {1, 1})), {});
  expectSame(gfClip(a, gxRect({3, 3}, {-2, -2})), {});
  expectSame(gfClip(a, gxRect({3, 3}, {std::numeric_limits<double>::quiet_NaN(), 1})), {});
  expectSame(gfClip(a, gxRect({1, 1}, {0, 5})), {});
}

TEST(Clip, ByHalfPlanes) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4, 0 4");
  expectSame(gfClipLeft(a, {1, 0}, {1, 1}), outlinesOf({"0 0, 1 0, 1 4, 0 4"}));
  expectSame(gfClipLeft(a, {1, 1}, {1, 0}), outlinesOf({"1 0, 4 0, 4 4, 1 4"}));
  expectSame(gfClipLeft(a, {0, 3}, {-1, 3}), outlinesOf({"0 0, 4 0, 4 3, 0 3"}));
  EXPECT_NEAR(judge::areaOf(plainSet(gfClipLeft(a, {0, 0}, {3, 1}))), 16.0 - 8.0 / 3.0, 1e-13);
  expectSame(gfClipLeft(a, {100, 0}, {100, -1}), {});
  expectSame(gfClipLeft(gxRegionSet(), {0, 0}, {1, 0}), {});
  EXPECT_THROW(gfClipLeft(a, {1, 1}, {1, 1}), gxContourDefs::BadParams);
  EXPECT_THROW(gfClipLeft(a, {1, std::nan("")}, {1, 1}), gxContourDefs::BadParams);
  EXPECT_THROW(gfClipLeft(a, {1, 1e305}, {1, 1}), gxContourDefs::BadParams);
}

TEST(Split, FromBorderToBorder) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4, 0 4");
  expectSame(gfSplit(a, gxContour(pointsOf("2 -1, 2 5"), false)),
             outlinesOf({"0 0, 2 0, 2 4, 0 4", "2 0, 4 0, 4 4, 2 4"}));
  expectSame(gfSplit(a, gxContour(pointsOf("2 -1, 2 2, 5 2"), false)),
             outlinesOf({"0 0, 2 0, 2 2, 4 2, 4 4, 0 4", "2 0, 4 0, 4 2, 2 2"}));
}

TEST(Split, DeadEndsAndWhatPassesByCutNothing) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4, 0 4");
  const Set whole = outlinesOf({"0 0, 4 0, 4 4, 0 4"});
  expectSame(gfSplit(a, gxContour(pointsOf("2 -1, 2 3, 3 3"), false)), whole);
  expectSame(gfSplit(a, gxContour(pointsOf("1 1, 2 2, 3 1"), false)), whole);
  expectSame(gfSplit(a, gxContour(pointsOf("-1 -1, 5 -1"), false)), whole);
  expectSame(gfSplit(a, gxContour(pointsOf("-1 0, 5 0"), false)), whole);
  expectSame(gfSplit(a, gxContour(judge::Ring(), false)), whole);
}

TEST(Split, LoopsInsideAreCutOutAndBridgesBetweenThemAreNot) {
  const gxRegion a = regionOf("0 0, 9 0, 9 9, 0 9");
  const Set loop = {{pointsOf("0 0, 9 0, 9 9, 0 9"), {{pointsOf("2 2, 2 4, 4 4, 4 2"), {}}}},
                    {pointsOf("2 2, 4 2, 4 4, 2 4"), {}}};
  expectSame(gfSplit(a, gxContour(pointsOf("2 2, 4 2, 4 4, 2 4"), true)), loop);
  expectSame(gfSplit(a, gxContour(pointsOf("1 2, 4 2, 4 4, 2 4, 2 1"), false)), loop);
  // Two squares inside, and the way from one to the other.
  const Set two = plainSet(
      gfSplit(a, gxContour(pointsOf("2 2, 1 2, 1 1, 2 1, 2 2, 6 6, 7 6, 7 7, 6 7, 6 6"), false)));
  ASSERT_EQ(two.size(), 3U);
  EXPECT_EQ(two[0].holes.size(), 2U);
  EXPECT_EQ(judge::faultOf({two[0]}), "");
  EXPECT_EQ(judge::areaOf(two), 81.0);
}

TEST(Split, RandomKnivesLoseNoArea) {
  RandomShapes random("knives", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const std::vector<Set> operands = overlayOperands(random, OverlayFamily::eGeneral, 2);
    const gxRegionSet shape = librarySet(operands[0]);
    const gxContour knife(operands[1][0].outline, random.chance(0.3));
    const Set pieces = plainSet(gfSplit(shape, knife));
    judge::Rings rings = judge::ringsOf(operands[0]);
    rings.push_back(operands[1][0].outline);
    const double within = 6.0 * judge::ulpOf(rings) * judge::lengthOf(rings);
    ASSERT_NEAR(judge::areaOf(pieces), judge::areaOf(plainSet(gfRepair(shape).regions)), within);
    Set each;
    for (const slow::Region& piece : pieces) {
      each = {piece};
      ASSERT_EQ(judge::faultOf(each), "");
    }
    ASSERT_EQ(judge::disorderOf(pieces), "");
  }
}

TEST(Cut, AContourIntoItsPartsInsideAndOutside) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4, 0 4");
  const gxCutContour cut = gfCut(gxContour(pointsOf("-1 1, 2 1, 2 5, 3 5"), false, 7), a);
  ASSERT_EQ(cut.outside.size(), 2U);
  ASSERT_EQ(cut.inside.size(), 1U);
  EXPECT_TRUE(cut.border.empty());
  EXPECT_EQ(cut.outside[0].points(), pointsOf("-1 1, 0 1"));
  EXPECT_EQ(cut.inside[0].points(), pointsOf("0 1, 2 1, 2 4"));
  EXPECT_EQ(cut.outside[1].points(), pointsOf("2 4, 2 5, 3 5"));
  EXPECT_EQ(cut.inside[0].label(), 7U);
  EXPECT_FALSE(cut.inside[0].isClosed());
}

TEST(Cut, AlongTheBorderAndTouchingIt) {
  const gxRegion a = regionOf("0 0, 4 0, 4 4, 0 4");
  const gxCutContour along = gfCut(gxContour(pointsOf("1 0, 3 0, 3 2"), false), a);
  ASSERT_EQ(along.border.size(), 1U);
  EXPECT_EQ(along.border[0].points(), pointsOf("1 0, 3 0"));
  ASSERT_EQ(along.inside.size(), 1U);
  EXPECT_EQ(along.inside[0].points(), pointsOf("3 0, 3 2"));
  const gxCutContour touching =
      gfCut(gxContour(pointsOf("-1 -1, -1 5, 1 5, 5 1, 3 1"), false), regionOf("0 0, 3 0, 3 3, 0 3"));
  ASSERT_EQ(touching.outside.size(), 1U);
  EXPECT_EQ(touching.outside[0].points(), pointsOf("-1 -1, -1 5, 1 5, 5 1, 3 1"));
}

TEST(Cut, AClosedContourThatStaysOnOneSideComesBackClosed) {
  const gxRegion a = regionOf("0 0, 9 0, 9 9, 0 9");
  const gxCutContour cut = gfCut(gxContour(pointsOf("1 1, 2 1, 2 2"), true), a);
  ASSERT_EQ(cut.inside.size(), 1U);
  EXPECT_TRUE(cut.inside[0].isClosed());
  EXPECT_EQ(cut.inside[0].points(), pointsOf("1 1, 2 1, 2 2"));
  const gxCutContour nothing = gfCut(gxContour(), a);
  EXPECT_TRUE(nothing.inside.empty() && nothing.outside.empty() && nothing.border.empty());
}

TEST(RegionsOf, AnOutlineAndHolesThatTouchOverlapAndPokeOut) {
  const gxContour outline(pointsOf("0 0, 10 0, 10 10, 0 10"));
  const auto regions = [&outline](const std::vector<std::string>& holes) {
    std::vector<gxContour> contours;
    for (const std::string& hole : holes) contours.emplace_back(pointsOf(hole));
    return plainSet(gfRegionsOf(outline, contours));
  };
  EXPECT_EQ(judge::areaOf(regions({"8 4, 12 4, 12 6, 8 6"})), 96.0);
  EXPECT_EQ(judge::areaOf(regions({"2 2, 6 2, 6 6, 2 6", "4 4, 8 4, 8 8, 4 8"})), 72.0);
  EXPECT_EQ(judge::areaOf(regions({"4 4, 6 4, 6 0, 4 0"})), 92.0);
  EXPECT_TRUE(regions({"0 0, 0 10, 10 10, 10 0"}).empty());
  const Set touching = regions({"0 5, 5 8, 10 5, 5 2"});
  EXPECT_EQ(touching.size(), 2U);
  EXPECT_EQ(judge::faultOf(touching), "");
}
