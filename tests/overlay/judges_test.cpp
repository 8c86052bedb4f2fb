// The judges before they judge: areas known by hand, then each against the others.
#include <overlay/cgal_judge.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>
#include <support/slab_judge.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using judge::Rule;
using slow::Region;
using slow::Set;

constexpr Rule kRules[] = {Rule::eEvenOdd, Rule::eNonZero, Rule::ePositive, Rule::eOuter};

Set outlineOf(const std::string& points) {
  return {{pointsOf(points), {}}};
}

void expectAreas(const std::string& points, double evenOdd, double nonZero, double positive,
                 double outer) {
  const double areas[] = {evenOdd, nonZero, positive, outer};
  for (int i = 0; i < 4; ++i) {
    const judge::Question question = judge::repaired(outlineOf(points), kRules[i]);
    EXPECT_NEAR(judge::judgeBySlabs(question).area, areas[i], 1e-14 * areas[i])
        << points << " rule " << i;
    EXPECT_NEAR(judge::judgeByCgal(question).area, areas[i], 1e-14 * areas[i])
        << points << " rule " << i;
  }
}

TEST(Judges, knowTheBow) {
  expectAreas("0 0, 10 10, 10 0, 0 10", 50, 50, 25, 50);
}

TEST(Judges, knowTheStar) {
  expectAreas("0 6, 4 -6, -6 2, 6 2, -4 -6", 9664.0 / 285, 13952.0 / 285, 0, 13952.0 / 285);
}

TEST(Judges, knowASquareTwiceAround) {
  expectAreas("0 0, 4 0, 4 4, 0 4, 0 0, 4 0, 4 4, 0 4", 0, 16, 16, 16);
}

TEST(Judges, knowTheLoopInside) {
  expectAreas("0 0, 6 0, 6 6, 2 6, 2 2, 4 2, 4 4, 0 4", 28, 32, 32, 32);
}

TEST(Judges, knowThatAWallOfNoWidthEnclosesWithoutArea) {
  // A square drawn there and back: no winding anywhere, yet nothing inside it can be reached.
  expectAreas("0 0, 4 0, 4 4, 0 4, 0 0, 0 4, 4 4, 4 0", 0, 0, 0, 16);
}

TEST(Judges, takeHolesAway) {
  const Set overlapping = {
      {pointsOf("0 0, 10 0, 10 10, 0 10"),
       {{pointsOf("2 2, 6 2, 6 6, 2 6"), {}}, {pointsOf("4 4, 8 4, 8 8, 4 8"), {}}}}};
  const Set pokingOut = {{pointsOf("0 0, 10 0, 10 10, 0 10"), {{pointsOf("8 4, 12 4, 12 6, 8 6"), {}}}}};
  const Set island = {{pointsOf("0 0, 10 0, 10 10, 0 10"),
                       {{pointsOf("2 2, 8 2, 8 8, 2 8"), {{pointsOf("4 4, 9 4, 9 5, 4 5"), {}}}}}}};
  for (const auto& [set, area] : {std::pair{overlapping, 72.0}, {pokingOut, 96.0}, {island, 68.0}}) {
    EXPECT_EQ(judge::judgeBySlabs(judge::repaired(set, Rule::eEvenOdd)).area, area);
    EXPECT_EQ(judge::judgeByCgal(judge::repaired(set, Rule::eEvenOdd)).area, area);
  }
}

TEST(Judges, agreeOnLatticesByEveryRule) {
  RandomShapes random("judges on lattices", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OverlayFamily family =
        random.chance(0.7) ? OverlayFamily::eLattice : OverlayFamily::eTouchingHoles;
    auto operands = overlayOperands(random, family, random.integer(1, 3));
    for (Set& set : operands) set = mappedSet(set, [](const auto& p) { return p * 2.0; });
    for (const Rule rule : kRules) {
      judge::Question question = judge::combined(operands, rule, [&](const std::vector<bool>& held) {
        return held[0] && (held.size() == 1 || !held[1]);
      });
      question.outer = rule == Rule::eOuter;
      const judge::Answer slabs = judge::judgeBySlabs(question);
      const judge::Answer faces = judge::judgeByCgal(question);
      ASSERT_NEAR(slabs.area, faces.area, 1e-12 * (1 + slabs.area)) << "rule " << static_cast<int>(rule);
    }
  }
}

// The third judge: areas say nothing of places, single points do.
TEST(Judges, holdTheSamePointsAsASinglePointTells) {
  RandomShapes random("judges at points", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto operands = overlayOperands(random, OverlayFamily::eLattice, 1);
    const judge::Question question = judge::repaired(operands[0], Rule::eNonZero);
    // Cut into cells of a fine grid, the held points tell the area.
    const judge::Answer answer = judge::judgeBySlabs(question);
    int held = 0;
    const int cells = 40;
    double low = 1e9;
    double high = -1e9;
    for (const auto& p : operands[0][0].outline) {
      low = std::min({low, p.x(), p.y()});
      high = std::max({high, p.x(), p.y()});
    }
    for (const Region& region : operands[0]) {
      for (const auto& p : region.outline) {
        low = std::min({low, p.x(), p.y()});
        high = std::max({high, p.x(), p.y()});
      }
    }
    const double step = (high - low) / cells;
    for (int i = 0; i < cells * cells; ++i) {
      const gxVector<2> p(low + step * (i % cells + 0.4931), low + step * (i / cells + 0.5077));
      bool onBorder = false;
      held += judge::holdsPoint(question, p, onBorder) ? 1 : 0;
    }
    const double length = judge::lengthOf(judge::ringsOf(operands[0]));
    EXPECT_NEAR(held * step * step, answer.area, 0.5 * step * length + 1e-9);
  }
}

// ---- The judge of results -----------------------------------------------------------------------

Set withHole(const std::string& outline, const std::string& hole) {
  return {{pointsOf(outline), {{pointsOf(hole), {}}}}};
}

constexpr const char* kSquare = "0 0, 10 0, 10 10, 0 10";

TEST(ValidityJudge, passesWhatIsValid) {
  EXPECT_EQ(judge::faultOf({}), "");
  EXPECT_EQ(judge::faultOf(outlineOf(kSquare)), "");
  EXPECT_EQ(judge::faultOf(outlineOf("0 0, 5 0, 10 0, 10 10, 0 10")), "") << "a vertex in line";
  EXPECT_EQ(judge::faultOf(withHole(kSquare, "2 2, 2 6, 6 6, 6 2")), "");
  EXPECT_EQ(judge::faultOf(withHole("0 0, 10 0, 10 10, 0 10, 0 5", "0 5, 5 6, 5 4")), "")
      << "touching at a vertex";
  EXPECT_EQ(judge::faultOf({{pointsOf("0 0, 4 0, 4 4, 0 4"), {}}, {pointsOf("4 4, 8 4, 8 8, 4 8"), {}}}),
            "")
      << "regions that touch at a vertex";
  EXPECT_EQ(judge::faultOf({{pointsOf(kSquare), {{pointsOf("2 2, 2 8, 8 8, 8 2"), {}}}},
                            {pointsOf("3 3, 7 3, 7 7, 3 7"), {}}}),
            "")
      << "an island";
}

TEST(ValidityJudge, findsEachFault) {
  EXPECT_EQ(judge::faultOf(outlineOf("0 0, 1 1")), "a ring of fewer than 3 points");
  EXPECT_EQ(judge::faultOf(outlineOf("0 0, 1 0, nan 1")), "a point that is not finite");
  EXPECT_EQ(judge::faultOf(outlineOf("0 0, 4 0, 4 4, 0 0, -1 4, -4 4")), "a ring passes (0, 0) twice");
  EXPECT_EQ(judge::faultOf(outlineOf("0 0, 10 10, 10 0, 0 10")),
            "edges cross: (0, 0)-(10, 10) and (10, 0)-(0, 10)");
  EXPECT_EQ(judge::faultOf(outlineOf("0 0, 8 0, 4 0, 4 4")),
            "an end on an edge: (0, 0)-(8, 0) and (8, 0)-(4, 0)");
  EXPECT_EQ(judge::faultOf({{pointsOf("0 0, 4 0, 4 4, 0 4"), {}}, {pointsOf("4 0, 8 0, 8 4, 4 4"), {}}}),
            "an edge twice: (4, 0)-(4, 4) and (4, 4)-(4, 0)");
  EXPECT_EQ(judge::faultOf(outlineOf("0 10, 10 10, 10 0, 0 0")),
            "an outline that is not counter-clockwise");
  EXPECT_EQ(judge::faultOf(withHole(kSquare, "2 2, 6 2, 6 6, 2 6")), "a hole that is not clockwise");
  EXPECT_EQ(judge::faultOf(withHole(kSquare, "12 2, 12 6, 16 6, 16 2")), "a hole outside its outline");
  EXPECT_EQ(
      judge::faultOf({{pointsOf(kSquare),
                       {{pointsOf("2 2, 2 8, 8 8, 8 2"), {}}, {pointsOf("3 3, 3 7, 7 7, 7 3"), {}}}}}),
      "a hole in a hole");
  EXPECT_EQ(judge::faultOf({{pointsOf(kSquare), {}}, {pointsOf("3 3, 7 3, 7 7, 3 7"), {}}}),
            "a region inside another");
  EXPECT_EQ(judge::faultOf(withHole("0 0, 10 0, 10 5, 10 10, 0 10, 0 5", "0 5, 5 8, 10 5, 5 2")),
            "a region whose interior is in parts");
  EXPECT_EQ(judge::faultOf({{pointsOf(kSquare),
                             {{pointsOf("2 2, 2 6, 6 6, 6 2"), {{pointsOf("3 3, 4 3, 4 4"), {}}}}}}}),
            "a hole with holes");
}

TEST(ValidityJudge, tellsInFromOutWhereARingTouchesAtAllItsVertices) {
  // The hole's corners all lie on the outline's: inside by the way its edges leave.
  EXPECT_EQ(judge::faultOf(withHole("0 0, 4 0, 4 4, 0 4", "0 0, 4 4, 4 0")),
            "an edge twice: (0, 0)-(4, 0) and (4, 0)-(0, 0)");
  EXPECT_EQ(
      judge::faultOf({{pointsOf("0 0, 8 1, 10 10, 1 8"), {}}, {pointsOf("0 0, 10 10, 11 -2"), {}}}),
      "rings cross at a point");
  EXPECT_EQ(judge::faultOf({{pointsOf("0 0, 8 0, 8 8, 0 8"), {}}, {pointsOf("0 0, 12 -4, 8 8"), {}}}),
            "rings cross at a point")
      << "all corners of the one are on or outside the other";
}

TEST(ValidityJudge, seesTheOrder) {
  EXPECT_EQ(judge::disorderOf(outlineOf(kSquare)), "");
  EXPECT_EQ(judge::disorderOf(outlineOf("10 0, 10 10, 0 10, 0 0")),
            "a ring that does not begin at its first vertex");
  const Region left{pointsOf("0 0, 1 0, 1 1"), {}};
  const Region right{pointsOf("5 0, 6 0, 6 1"), {}};
  EXPECT_EQ(judge::disorderOf({left, right}), "");
  EXPECT_EQ(judge::disorderOf({right, left}), "regions out of order");
  EXPECT_EQ(judge::disorderOf({{pointsOf("0 0, 9 0, 9 9"), {right, left}}}), "holes out of order");
}

}  // namespace
