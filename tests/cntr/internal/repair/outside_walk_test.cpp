#include <cntr/internal/repair/outside_walk.h>

#include <support/exposed.h>
#include <support/region_shapes.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using Edges = std::vector<int>;

// What the walk asks, asked of a real outline.
class Outline {
 public:
  explicit Outline(const Points& points) : region_(points) {}

  const Points& points() const { return region_.points(); }
  gx_OutlineQuestions questions() const {
    return {[this](const gxLineSeg& seg, std::size_t, Edges& edges) {
              return region_.intersections(seg, edges, false);
            },
            [this](const gxLineSeg& seg) { return region_.intersections(seg, true, false).size(); },
            [this](const V& point) { return gx_RegionInside::insideCount(region_, point, true); }};
  }

 private:
  ExposedRegion region_;
};

// Answers made up by the test; a question without an answer throws std::bad_function_call.
gx_OutlineQuestions scripted() {
  return {};
}

gx_OutlineQuestions nothingInTheWay() {
  return {[](const gxLineSeg&, std::size_t, Edges&) { return Points(); }, {}, {}};
}

template <class Call>
bool isRefused(const Call& call) {
  return messageOfBadParams(call) == L"invalid contour";
}

const Points kSquare = square(0, 0, 4);

// ---- The start edge -------------------------------------------------------------------------------

// The three conditions of an outside edge, one answer each.
struct Answers {
  std::size_t probe = 1;
  std::size_t edge = 2;
  long left = 0;
  long right = 1;
};

// Edge i of kSquare, counted from the point it starts at, is answered by answers[i].
gx_OutlineQuestions answering(const std::vector<Answers>& answers) {
  const auto at = [answers](const V& middle) -> const Answers& {
    for (std::size_t i = 0; i < 4; ++i) {
      if (middle.distance((kSquare[i] + kSquare[(i + 1) % 4]) * 0.5) < 1.0) return answers.at(i);
    }
    throw std::logic_error("no edge there");
  };
  gx_OutlineQuestions questions;
  questions.contacts = [at](const gxLineSeg& seg) {
    const Answers& a = at((seg.p1() + seg.p2()) * 0.5);
    return seg.p1().distance(seg.p2()) < 2.0 ? a.probe : a.edge;
  };
  questions.raysBothWays = [at](const V& point) {
    const Answers& a = at(point);
    const bool outside = point.x() < 0 || point.y() < 0 || point.x() > 4 || point.y() > 4;
    return outside ? a.right : a.left;  // the square is counterclockwise: its left is inside
  };
  return questions;
}

TEST(StartEdge, OfASquareIsTheFirst) {
  const Outline outline(kSquare);
  EXPECT_EQ(gx_findStartEdge(outline.points(), 0.04, outline.questions()), 0u);
}

TEST(StartEdge, TheProbeReachesAsFarToEitherSide) {
  std::vector<gxLineSeg> asked;
  gx_OutlineQuestions questions = scripted();
  questions.contacts = [&asked](const gxLineSeg& seg) {
    asked.push_back(seg);
    return std::size_t{0};
  };
  EXPECT_TRUE(isRefused([&] { gx_findStartEdge(pointsOf("0 0, 4 0, 4 4"), 0.5, questions); }));
  ASSERT_EQ(asked.size(), 2u) << "a probe that meets nothing settles an edge";
  // Edge (0,0) to (4,0): u points from end to start, its left normal downwards.
  EXPECT_EQ(asked[0].p1(), V(2, -0.5));
  EXPECT_EQ(asked[0].p2(), V(2, 0.5));
  EXPECT_EQ(asked[1].p1(), V(4.5, 2));
  EXPECT_EQ(asked[1].p2(), V(3.5, 2));
}

TEST(StartEdge, TheLowestThatQualifiesWins) {
  EXPECT_EQ(gx_findStartEdge(kSquare, 0.1, answering({{}, {}, {}, {}})), 0u);
  EXPECT_EQ(gx_findStartEdge(kSquare, 0.1, answering({{.probe = 2}, {}, {}, {}})), 1u);
}

TEST(StartEdge, TheProbeMustMeetTheOutlineOnce) {
  EXPECT_EQ(gx_findStartEdge(kSquare, 0.1, answering({{.probe = 0}, {.probe = 3}, {}, {}})), 2u);
}

TEST(StartEdge, TheEdgeMustMeetTheOutlineAtItsEndsOnly) {
  EXPECT_EQ(gx_findStartEdge(kSquare, 0.1, answering({{.edge = 1}, {.edge = 3}, {}, {}})), 2u);
}

TEST(StartEdge, OneSideMustBeOutside) {
  EXPECT_EQ(gx_findStartEdge(kSquare, 0.1,
                             answering({{.left = 2, .right = 1}, {.left = 1, .right = 0}, {}, {}})),
            1u);
}

TEST(StartEdge, TheOtherSideIsNotAskedWhenOneIsOutside) {
  gx_OutlineQuestions questions = answering({{}, {}, {}, {}});
  int asked = 0;
  questions.raysBothWays = [&asked](const V&) {
    ++asked;
    return 0L;
  };
  gx_findStartEdge(kSquare, 0.1, questions);
  EXPECT_EQ(asked, 1);
}

TEST(StartEdge, TheClosingEdgeIsNoCandidate) {
  EXPECT_TRUE(isRefused([] {
    gx_findStartEdge(kSquare, 0.1, answering({{.probe = 2}, {.probe = 2}, {.probe = 2}, {}}));
  }));
}

TEST(StartEdge, OfAnOutlineCrossedEverywhereThereIsNone) {
  const Outline star(pentagram());
  EXPECT_TRUE(isRefused([&] { gx_findStartEdge(star.points(), 0.09, star.questions()); }));
}

TEST(StartEdge, OfFewerThanTwoPointsThereIsNone) {
  EXPECT_TRUE(isRefused([] { gx_findStartEdge({}, 0.1, scripted()); }));
  EXPECT_TRUE(isRefused([] { gx_findStartEdge(pointsOf("1 1"), 0.1, scripted()); }));
}

TEST(StartEdge, OfEqualPointsThereIsNone) {
  const Outline outline(pointsOf("1 1, 1 1, 1 1"));
  EXPECT_TRUE(isRefused([&] { gx_findStartEdge(outline.points(), 0.0, outline.questions()); }));
}

TEST(StartEdge, SurvivesCoordinatesThatAreNotFinite) {
  const Outline outline(pointsOf("nan 0, inf 1, 2 2, 3 -inf"));
  EXPECT_TRUE(isRefused([&] { gx_findStartEdge(outline.points(), 0.1, outline.questions()); }));
}

// ---- One step -------------------------------------------------------------------------------------

TEST(WalkStep, ForwardWithNothingInTheWayReachesThePointAhead) {
  const gx_WalkState s = gx_walkStep(kSquare, {V(1, 0), 1, true}, nothingInTheWay());
  EXPECT_EQ(s.at, V(4, 0));
  EXPECT_EQ(s.next, 2u);
  EXPECT_TRUE(s.forward);
}

TEST(WalkStep, ForwardOverTheEndOfTheListComesToItsBeginning) {
  const gx_WalkState last = gx_walkStep(kSquare, {V(4, 4), 3, true}, nothingInTheWay());
  EXPECT_EQ(last.at, V(0, 4));
  EXPECT_EQ(last.next, 0u);
  const gx_WalkState first = gx_walkStep(kSquare, last, nothingInTheWay());
  EXPECT_EQ(first.at, V(0, 0));
  EXPECT_EQ(first.next, 1u);
}

TEST(WalkStep, ANextOnePastTheEndIsTheFirst) {
  const gx_WalkState s = gx_walkStep(kSquare, {V(0, 4), 4, true}, nothingInTheWay());
  EXPECT_EQ(s.at, V(0, 0));
  EXPECT_EQ(s.next, 1u);
}

TEST(WalkStep, BackwardHeadsForThePointBeforeNext) {
  const gx_WalkState s = gx_walkStep(kSquare, {V(4, 2), 2, false}, nothingInTheWay());
  EXPECT_EQ(s.at, V(4, 0));
  EXPECT_EQ(s.next, 1u);
  EXPECT_FALSE(s.forward);
}

TEST(WalkStep, BackwardOverTheBeginningComesToTheEndOfTheList) {
  const gx_WalkState s = gx_walkStep(kSquare, {V(0, 2), 0, false}, nothingInTheWay());
  EXPECT_EQ(s.at, V(0, 4)) << "edge 0 runs from the last point to the first";
  EXPECT_EQ(s.next, 3u);
}

TEST(WalkStep, AtACrossingItTurnsOntoTheCrossedEdgeAgainstItsDirection) {
  gxLineSeg asked;
  gx_OutlineQuestions questions;
  questions.crossings = [&asked](const gxLineSeg& seg, std::size_t, Edges& edges) {
    asked = seg;
    edges = {3, 1};
    return Points{{2, 0}, {3, 0}};
  };
  const gx_WalkState s = gx_walkStep(kSquare, {V(0, 0), 1, true}, questions);
  EXPECT_EQ(asked.p1(), V(0, 0));
  EXPECT_EQ(asked.p2(), V(4, 0));
  EXPECT_EQ(s.at, V(2, 0)) << "the first crossing";
  EXPECT_EQ(s.next, 3u);
  EXPECT_FALSE(s.forward);
  EXPECT_TRUE(gx_walkStep(kSquare, {V(0, 0), 1, false}, questions).forward);
}

TEST(WalkStep, BackOnEdgeZeroHeadsForTheLastPoint) {
  gx_OutlineQuestions questions;
  questions.crossings = [](const gxLineSeg&, std::size_t, Edges& edges) {
    edges = {0};
    return Points{{0, 2}};
  };
  const gx_WalkState onEdgeZero = gx_walkStep(kSquare, {V(4, 2), 1, true}, questions);
  EXPECT_EQ(onEdgeZero.next, 0u);
  EXPECT_EQ(gx_walkStep(kSquare, onEdgeZero, nothingInTheWay()).at, V(0, 4));
}

TEST(WalkStep, ForwardOnEdgeZeroHeadsForTheFirstPoint) {
  EXPECT_EQ(gx_walkStep(kSquare, {V(0, 2), 0, true}, nothingInTheWay()).at, V(0, 0));
}

// ---- The whole walk -------------------------------------------------------------------------------

TEST(OutsideWalk, OfASquareIsTheSquareAndEndsAtItsStart) {
  const Outline outline(kSquare);
  EXPECT_EQ(gx_walkOutside(outline.points(), 0, outline.questions()), pointsOf("4 0, 4 4, 0 4, 0 0"));
  EXPECT_EQ(gx_walkOutside(outline.points(), 2, outline.questions()), pointsOf("0 4, 0 0, 4 0, 4 4"));
}

TEST(OutsideWalk, OfABowTiePassesTheCrossingTwice) {
  const Outline outline(bowTie());
  EXPECT_EQ(gx_walkOutside(outline.points(), 1, outline.questions()),
            pointsOf("4 0, 2 2, 0 0, 0 4, 2 2, 4 4"));
}

TEST(OutsideWalk, TurnsACurlOver) {
  //   5 --------------- 4
  //   |     2-----1     |
  //   |       \ /       |     edges 0-1 and 2-3 cross in (5, 2.5); the walk comes from 0, turns onto
  //   |       / \       |     2-3 backwards, goes around the curl the other way, and leaves for 3
  //   0 ----'     '---- 3
  const Outline outline(pointsOf("0 0, 6 3, 4 3, 10 0, 10 10, 0 10"));
  EXPECT_EQ(gx_walkOutside(outline.points(), 4, outline.questions()),
            pointsOf("0 10, 0 0, 5 2.5, 4 3, 6 3, 5 2.5, 10 0, 10 10"));
}

TEST(OutsideWalk, ThatRunsIntoEdgesOnTopOfEachOtherMayNeverClose) {
  // (0, 0) to (6, 0) and (4, 0) to (10, 0) lie on each other; parallel edges never meet.
  const Outline outline(pointsOf("0 0, 6 0, 4 3, 6 3, 4 0, 10 0, 10 10, 0 10"));
  EXPECT_EQ(gx_findStartEdge(outline.points(), 0.03, outline.questions()), 5u);
  EXPECT_TRUE(isRefused([&] { gx_walkOutside(outline.points(), 5, outline.questions()); }));
}

TEST(OutsideWalk, StopsWhereTheStartPointComesUpEvenOnTheWayBack) {
  // The second point equals the first: the walk is over at once.
  const Outline outline(pointsOf("0 0, 0 0, 4 0, 4 4"));
  EXPECT_EQ(gx_walkOutside(outline.points(), 0, outline.questions()), pointsOf("0 0"));
}

TEST(OutsideWalk, ThatComesBackToAStateIsRefusedThere) {
  // The way from (4, 4) is always cut off by the same crossing: the walk shuttles to and fro.
  int asked = 0;
  gx_OutlineQuestions questions;
  questions.crossings = [&asked](const gxLineSeg&, std::size_t, Edges& edges) {
    ++asked;
    edges = {2};
    return Points{{4, 2}};
  };
  EXPECT_TRUE(isRefused([&] { gx_walkOutside(kSquare, 0, questions); }));
  EXPECT_EQ(asked, 3) << "(4, 2) backward, forward, backward again";
}

TEST(WalkStep, SaysWhichEdgeTheSegmentLiesAlong) {
  std::vector<std::size_t> along;
  gx_OutlineQuestions questions;
  questions.crossings = [&along](const gxLineSeg&, std::size_t edge, Edges&) {
    along.push_back(edge);
    return Points();
  };
  gx_walkStep(kSquare, {V(1, 0), 1, true}, questions);
  gx_walkStep(kSquare, {V(0, 4), 4, true}, questions);
  gx_walkStep(kSquare, {V(4, 2), 2, false}, questions);
  gx_walkStep(kSquare, {V(0, 2), 0, false}, questions);
  EXPECT_EQ(along, (std::vector<std::size_t>{1, 0, 2, 0}));
}

TEST(OutsideWalk, AStateThatDiffersInOneBitIsAnotherOne) {
  // −0 and 0 are equal points but different states, so the walk makes one more round.
  int asked = 0;
  gx_OutlineQuestions questions;
  questions.crossings = [&asked](const gxLineSeg&, std::size_t, Edges& edges) {
    ++asked;
    edges = {2};
    return Points{{4, asked <= 2 ? 0.0 : -0.0}};
  };
  EXPECT_TRUE(isRefused([&] { gx_walkOutside(kSquare, 0, questions); }));
  EXPECT_EQ(asked, 5);
}

TEST(OutsideWalk, ThatNeverComesBackIsRefusedAfterTheMostSteps) {
  std::size_t asked = 0;
  gx_OutlineQuestions questions;
  questions.crossings = [&asked](const gxLineSeg&, std::size_t, Edges& edges) {
    ++asked;
    edges = {2};
    return Points{{static_cast<double>(asked), 7}};
  };
  EXPECT_TRUE(isRefused([&] { gx_walkOutside(kSquare, 0, questions); }));
  EXPECT_EQ(asked, gx_mostWalkSteps(4));
}

TEST(OutsideWalk, FromAStartThatIsNoNumberNeverClosesAndIsRefused) {
  const Outline outline(pointsOf("nan 0, 4 0, 4 4, 0 4"));
  EXPECT_TRUE(isRefused([&] { gx_walkOutside(outline.points(), 0, outline.questions()); }));
}

TEST(OutsideWalk, TakesAtMostTwoHundredThousandStepsOrSixtyFourAPoint) {
  EXPECT_EQ(gx_mostWalkSteps(0), 200'000u);
  EXPECT_EQ(gx_mostWalkSteps(3'125), 200'000u);
  EXPECT_EQ(gx_mostWalkSteps(3'126), 200'064u);
  EXPECT_EQ(gx_mostWalkSteps(1'000'000), 64'000'000u);
}

}  // namespace
