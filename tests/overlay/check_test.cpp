// The report of what is wrong: each kind by hand, then against plain tests of all pairs.
// Covers overlay/internal/shape_rings.cpp
// Covers overlay/internal/shape_rings.h
// Covers overlay/internal/check/checked_rings.cpp
// Covers overlay/internal/check/ring_contacts.cpp
// Covers overlay/internal/check/problem_text.cpp
// Covers overlay/internal/check/checked_rings.h
// Covers overlay/internal/check/ring_contacts.h
// Covers overlay/internal/check/problem_text.h
#include <overlay/check.h>
#include <overlay/shape_builder.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>
#include <velstd/orientation.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>

namespace {

using V = gxVector<2>;
using Kind = gxProblemKind;
using Handle = gxPtrHandle_const<gxRegion>;

std::vector<gxProblem> checkOf(const slow::Region& region, const gxCheckOptions& options = {}) {
  return gfCheck(*judge::regionFrom(region), options);
}
std::vector<gxProblem> checkOf(const std::string& outline, const gxCheckOptions& options = {}) {
  return checkOf(slow::Region{pointsOf(outline), {}}, options);
}
slow::Region withHoles(const std::string& outline, const std::vector<std::string>& holes) {
  slow::Region region{pointsOf(outline), {}};
  for (const std::string& hole : holes) region.holes.push_back({pointsOf(hole), {}});
  return region;
}

std::vector<std::string> wordsOf(const std::vector<gxProblem>& problems) {
  std::vector<std::string> words;
  for (const gxProblem& p : problems) words.push_back(p.sentence);
  return words;
}
std::vector<Kind> kindsOf(const std::vector<gxProblem>& problems) {
  std::vector<Kind> kinds;
  for (const gxProblem& p : problems) kinds.push_back(p.kind);
  return kinds;
}

using Words = std::vector<std::string>;
using Kinds = std::vector<Kind>;

constexpr const char* kSquare = "0 0, 10 0, 10 10, 0 10";

// ---- Each kind ----------------------------------------------------------------------------------

TEST(Check, findsNothingWrongWithASquareAndItsHoles) {
  EXPECT_EQ(wordsOf(checkOf(kSquare)), Words{});
  EXPECT_EQ(wordsOf(checkOf(withHoles(kSquare, {"2 2, 2 4, 4 4, 4 2", "6 6, 6 8, 8 8"}))), Words{});
  EXPECT_EQ(wordsOf(gfCheck(gxRegionSet())), Words{});
}

TEST(Check, tellsOfACrossingWhereAndBetweenWhichEdges) {
  const auto problems = checkOf("0 0, 0 3, 6 0, 6 6");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].kind, Kind::eCrossing);
  EXPECT_EQ(problems[0].point, V(2, 2));
  EXPECT_EQ(problems[0].edges, (std::array<long, 2>{0, 2}));
  EXPECT_EQ(problems[0].rings, (std::array<long, 2>{-1, -1}));
  EXPECT_EQ(problems[0].regions, (std::array<long, 2>{0, 0}));
  EXPECT_EQ(problems[0].sentence, "edges 0 and 2 of the outline cross at (2, 2)");
}

TEST(Check, tellsOfEachPointThatIsNotFinite) {
  const auto problems = checkOf("0 0, nan 1, 4 4, 1 -inf, 0 9");
  EXPECT_EQ(wordsOf(problems), (Words{"point 1 of the outline is not finite: (NaN, 1)",
                                      "point 3 of the outline is not finite: (1, -Infinity)"}));
  EXPECT_EQ(problems[1].edges, (std::array<long, 2>{3, 3}));
}

TEST(Check, tellsOfTooFewPoints) {
  EXPECT_EQ(wordsOf(gfCheck(gxRegion())), Words{"the outline has fewer than 3 different points"});
  EXPECT_EQ(kindsOf(checkOf("1 1")), Kinds{Kind::eTooFewPoints});
  EXPECT_EQ(kindsOf(checkOf("1 1, 2 2")), Kinds{Kind::eTooFewPoints});
  EXPECT_EQ(kindsOf(checkOf("1 1, 2 2, 1 1, 2 2")), Kinds{Kind::eTooFewPoints});
  EXPECT_EQ(kindsOf(checkOf("1 1, 1 1, 1 1")), (Kinds{Kind::eRepeatedPoint, Kind::eRepeatedPoint,
                                                      Kind::eRepeatedPoint, Kind::eTooFewPoints}));
}

TEST(Check, tellsOfRepeatedPointsByTheirEdgeOfNoLength) {
  const auto problems = checkOf("0 0, 10 0, 10 0, 10 10, 0 10, 0 0");
  EXPECT_EQ(wordsOf(problems), (Words{"point 0 of the outline repeats the one before it, (0, 0)",
                                      "point 2 of the outline repeats the one before it, (10, 0)"}));
  EXPECT_EQ(problems[0].edges, (std::array<long, 2>{0, 0})) << "the closing edge";
  EXPECT_EQ(checkOf("0 0, -0 0, 4 0, 4 4").size(), 1U) << "both zeros are one number";
}

TEST(Check, numbersEdgesAsGivenAfterRepeatedPoints) {
  const auto problems = checkOf("0 0, 0 0, 0 3, 0 3, 6 0, 6 6");
  ASSERT_EQ(problems.size(), 3U);
  EXPECT_EQ(problems[2].edges, (std::array<long, 2>{0, 4}));
}

TEST(Check, tellsOfSpikes) {
  EXPECT_EQ(wordsOf(checkOf("0 0, 10 0, 10 10, 14 10, 5 10, 0 10")),
            Words{"edges 3 and 4 of the outline go back over each other from (14, 10)"});
  EXPECT_EQ(wordsOf(checkOf("0 0, 10 0, 10 4, 13 4, 10 4, 10 10, 0 10")),
            Words{"edges 3 and 4 of the outline go back over each other from (13, 4)"})
      << "its foot is no meeting of its own";
}

TEST(Check, tellsWhereARingTouchesItself) {
  EXPECT_EQ(wordsOf(checkOf("0 0, 4 0, 4 4, 2 0, 0 4")),
            Words{"edges 1 and 3 of the outline touch at (2, 0)"});
  EXPECT_EQ(wordsOf(checkOf("0 0, 4 -4, 4 4, 0 0, -4 4, -4 -4")),
            Words{"edges 0 and 3 of the outline touch at (0, 0)"});
}

TEST(Check, callsItACrossingWhereARingPassesThroughItselfAtAVertex) {
  EXPECT_EQ(wordsOf(checkOf("0 0, 4 4, 4 0, 0 0, -4 0, -4 -4")).size(), 1U) << "one vertex passed twice";
  EXPECT_EQ(wordsOf(checkOf("-4 0, 0 0, 4 0, 4 4, 0 0, -1 -4")),
            Words{"edges 1 and 4 of the outline cross at (0, 0)"});
  EXPECT_EQ(wordsOf(checkOf("-4 0, 0 0, 4 0, 4 4, 0 0, -1 4")),
            Words{"edges 1 and 4 of the outline touch at (0, 0)"});
}

TEST(Check, tellsOfEdgesThatLieOnEachOther) {
  const auto problems = checkOf("0 0, 10 0, 10 4, 6 0, 2 0, 0 4");
  EXPECT_EQ(wordsOf(problems),
            Words{"edges 1 and 4 of the outline lie on each other from (2, 0) to (6, 0)"});
  EXPECT_EQ(problems[0].kind, Kind::eOverlap);
}

TEST(Check, tellsOfARingWithoutArea) {
  const auto problems = checkOf("5848 49987, 5848 49986, 5848 49984");
  EXPECT_EQ(wordsOf(problems), Words{"the outline has no area: all its points lie on one line"});
  EXPECT_EQ(kindsOf(checkOf(withHoles(kSquare, {"2 2, 4 4, 3 3"}))), Kinds{Kind::eZeroArea});
}

TEST(Check, tellsTheDirectionThatIsWrongUnlessAllAreWelcome) {
  EXPECT_EQ(wordsOf(checkOf("0 10, 10 10, 10 0, 0 0")), Words{"the outline runs clockwise"});
  EXPECT_EQ(wordsOf(checkOf(withHoles(kSquare, {"2 2, 4 2, 4 4"}))),
            Words{"hole 0 runs counter-clockwise"});
  gxCheckOptions options;
  options.anyDirection = true;
  EXPECT_EQ(wordsOf(checkOf("0 10, 10 10, 10 0, 0 0", options)), Words{});
}

TEST(Check, tellsOfHolesOutsideCrossingAndNested) {
  EXPECT_EQ(wordsOf(checkOf(withHoles(kSquare, {"12 2, 12 4, 14 4"}))),
            Words{"hole 0 lies outside the outline"});
  EXPECT_EQ(wordsOf(checkOf(withHoles(kSquare, {"8 4, 8 6, 12 6, 12 4"}))),
            (Words{"edge 2 of the outline and edge 0 of hole 0 cross at (10, 4)",
                   "edge 2 of the outline and edge 2 of hole 0 cross at (10, 6)"}));
  EXPECT_EQ(kindsOf(checkOf(withHoles(kSquare, {"1 1, 1 5, 5 5, 5 1", "4 4, 4 8, 8 8, 8 4"}))),
            (Kinds{Kind::eHoleCrossesHole, Kind::eHoleCrossesHole}));
  EXPECT_EQ(wordsOf(checkOf(withHoles(kSquare, {"1 1, 1 9, 9 9, 9 1", "4 4, 4 5, 5 5"}))),
            Words{"hole 1 lies inside hole 0"});
}

TEST(Check, tellsOfAHoleEqualToItsOutline) {
  const auto problems = checkOf(withHoles(kSquare, {"0 0, 0 10, 10 10, 10 0"}));
  EXPECT_EQ(kindsOf(problems), Kinds(4, Kind::eOverlap));
}

TEST(Check, letsRingsTouchInPointsUnlessThatPartsTheInterior) {
  const slow::Region once = withHoles(kSquare, {"0 5, 5 7, 5 3"});
  const slow::Region twice = withHoles(kSquare, {"0 5, 5 8, 10 5, 5 2"});
  const slow::Region chain = withHoles(kSquare, {"0 5, 3 7, 5 5, 3 3", "5 5, 7 7, 10 5, 7 3"});
  EXPECT_EQ(wordsOf(checkOf(once)), Words{});
  EXPECT_EQ(wordsOf(checkOf(twice)),
            Words{"edge 2 of the outline and edge 2 of hole 0 touch at (10, 5)"});
  EXPECT_EQ(kindsOf(checkOf(chain)), Kinds{Kind::eTouching});
  gxCheckOptions options;
  options.ringsMayTouch = false;
  EXPECT_EQ(wordsOf(checkOf(once, options)),
            Words{"edge 0 of the outline and edge 0 of hole 0 touch at (0, 5)"});
  EXPECT_EQ(checkOf(twice, options).size(), 2U);
  EXPECT_EQ(checkOf(chain, options).size(), 3U);
}

TEST(Check, takesManyRingsAtOnePointForOneMeeting) {
  const slow::Region leaves =
      withHoles("0 0, 10 0, 10 10, 0 10, 0 5", {"0 5, 4 9, 4 8", "0 5, 4 6, 4 5", "0 5, 4 2, 4 1"});
  EXPECT_EQ(wordsOf(checkOf(leaves)), Words{});
}

// ---- Levels and sets ----------------------------------------------------------------------------

TEST(Check, knowsIslandsAndNumbersThemOnAfterTheHoles) {
  slow::Region region =
      withHoles("0 0, 20 0, 20 20, 0 20", {"1 1, 1 9, 9 9, 9 1", "11 11, 11 19, 19 19, 19 11"});
  region.holes[1].holes.push_back({pointsOf("12 12, 18 12, 18 18, 12 18"), {}});
  EXPECT_EQ(wordsOf(checkOf(region)), Words{});
  region.holes[1].holes[0].outline = pointsOf("3 3, 5 3, 5 5");
  EXPECT_EQ(wordsOf(checkOf(region)), Words{"hole 2 lies outside hole 1"});
  region.holes[1].holes[0].outline = pointsOf("12 12, 12 18, 18 18, 18 12");
  EXPECT_EQ(wordsOf(checkOf(region)), Words{"hole 2 runs clockwise"});
}

TEST(Check, comparesTheRegionsOfASet) {
  const slow::Region square{pointsOf(kSquare), {}};
  const slow::Region inner{pointsOf("3 3, 6 3, 6 6"), {}};
  const slow::Region frame = withHoles(kSquare, {"2 2, 2 8, 8 8, 8 2"});
  EXPECT_EQ(wordsOf(gfCheck(judge::setFrom({square, inner}))),
            Words{"the outline of region 1 lies inside the outline of region 0"});
  EXPECT_EQ(wordsOf(gfCheck(judge::setFrom({frame, inner}))), Words{}) << "in the hole";
  EXPECT_EQ(wordsOf(gfCheck(judge::setFrom({square, {pointsOf("10 10, 12 10, 12 12"), {}}}))), Words{});
  const auto crossing = gfCheck(judge::setFrom({square, {pointsOf("8 -4, 20 -4, 8 4"), {}}}));
  ASSERT_EQ(crossing.size(), 2U);
  EXPECT_EQ(
      wordsOf(crossing),
      (Words{"edge 1 of the outline of region 0 and edge 0 of the outline of region 1 cross at (8, 0)",
             "edge 2 of the outline of region 0 and edge 2 of the outline of region 1 cross at "
             "(10, 2.6666666666666665)"}));
}

TEST(Check, refusesWhatIsNoShape) {
  const gxPtrHandle<gxRegion> outer(new gxRegion(pointsOf(kSquare)));
  const gxPtrHandle<gxRegion> hole(new gxRegion(pointsOf("1 1, 2 1, 2 2")));
  outer->holes({Handle(hole)});
  hole->holes({Handle(new gxRegion(pointsOf("1.5 1.2, 1.6 1.2, 1.6 1.3")))});
  EXPECT_THROW(gfCheck(gxRegionSet(std::vector<Handle>{Handle()})), gxBadPointer);
  const gxPtrHandle<gxRegion> own(new gxRegion(pointsOf("1.1 1.1, 1.9 1.1, 1.9 1.5")));
  gxRegion far(pointsOf("-50 -50, -40 -50, -40 -40"));
  outer->points(far.points());
  hole->points(pointsOf("50 50, 51 50, 51 51"));
  hole->holes({Handle(outer)});
  EXPECT_THROW(gfCheck(*outer), gxContourDefs::BadParams);
  hole->holes(std::vector<Handle>{});
}

TEST(Check, looksAtSharedHolesOnce) {
  // 40 levels, each of which refers twice to the next: a trillion paths.
  gxPtrHandle<gxRegion> inner(new gxRegion(pointsOf("0 0, 1 0, 0 1")));
  for (int level = 1; level < 40; ++level) {
    const gxPtrHandle<gxRegion> outer(new gxRegion(pointsOf("0 0, 1 0, 0 1")));
    for (int i = 0; i < level; ++i) outer->points(pointsOf("0 0, 1 0, 0 1"));
    const double far = 100.0 * level;
    outer->points({V(far, far), V(far + 1, far), V(far, far + 1)});
    outer->holes({Handle(inner), Handle(inner)});
    inner = outer;
  }
  gxCheckOptions options;
  options.atMost = 3;
  EXPECT_EQ(gfCheck(*inner, options).size(), 3U);
}

// ---- Limits -------------------------------------------------------------------------------------

TEST(Check, stopsAtTheNumberAskedFor) {
  std::vector<V> zigzag;
  for (int i = 0; i < 80; ++i) zigzag.emplace_back(i % 2 == 0 ? 0 : 100, i);
  for (int i = 0; i < 80; ++i) zigzag.emplace_back(i + 10, i % 2 == 0 ? 0.5 : 90.5);
  const gxRegion region(zigzag);
  const std::size_t all = gfCheck(region).size();
  EXPECT_GT(all, 5000U);
  for (const std::size_t most : {std::size_t{0}, std::size_t{1}, std::size_t{7}, all, all + 5}) {
    gxCheckOptions options;
    options.atMost = most;
    EXPECT_EQ(gfCheck(region, options).size(), std::min(most, all));
  }
  gxOverlayLimits limits;
  limits.maxMeetings = 100;
  EXPECT_THROW(gfCheck(region, {}, limits), gxLimitExceeded);
  limits = {};
  int asked = 0;
  limits.stop = [&asked] { return ++asked == 2; };
  EXPECT_THROW(gfCheck(region, {}, limits), gxStopped);
}

TEST(Check, tellsAllOfABigOutline) {
  std::vector<V> points;
  for (int i = 0; i < 100000; ++i)
    points.emplace_back(std::cos(i * 6.2831853e-5), std::sin(i * 6.2831853e-5));
  EXPECT_EQ(gfCheck(gxRegion(points)).size(), 0U);
  points[50000] = V(2, 2);
  EXPECT_GE(gfCheck(gxRegion(points)).size(), 2U);
}

// ---- Words             -----------------------------------------------------------------------

TEST(ProblemText, hasAWordForEachKind) {
  std::set<std::string> words;
  for (int k = 0; k <= 11; ++k) words.insert(gfName(static_cast<Kind>(k)));
  EXPECT_EQ(words.size(), 12U);
  EXPECT_EQ(words.count("unknown"), 0U);
  EXPECT_EQ(gfName(static_cast<Kind>(99)), "unknown");
}

// ---- Against plain tests of all pairs -----------------------------------------------------------

using Place = std::tuple<long, long, long, long, long, long, int>;

// Crossings within edges, and overlaps, of edges that are no neighbours.
std::set<Place> plainMeetings(const slow::Set& set) {
  struct Edge {
    V a, b;
    long region, ring, number, edges;
  };
  std::vector<Edge> edges;
  for (std::size_t r = 0; r < set.size(); ++r) {
    const judge::Rings rings = judge::ringsOf({set[r]});
    for (std::size_t k = 0; k < rings.size(); ++k) {
      const std::size_t n = rings[k].size();
      for (std::size_t i = 0; i < n; ++i) {
        edges.push_back({rings[k][(i + n - 1) % n], rings[k][i], static_cast<long>(r),
                         static_cast<long>(k) - 1, static_cast<long>(i), static_cast<long>(n)});
      }
    }
  }
  std::set<Place> found;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    for (std::size_t j = i + 1; j < edges.size(); ++j) {
      const Edge& e = edges[i];
      const Edge& f = edges[j];
      const bool oneRing = e.region == f.region && e.ring == f.ring;
      const long apart = f.number - e.number;
      if (oneRing && (apart == 1 || apart == e.edges - 1)) continue;
      const int c = gx_Orientation(e.a, e.b, f.a);
      const int d = gx_Orientation(e.a, e.b, f.b);
      const int a = gx_Orientation(f.a, f.b, e.a);
      const int b = gx_Orientation(f.a, f.b, e.b);
      const Place place{e.region, e.ring, e.number, f.region, f.ring, f.number, 0};
      if (c * d < 0 && a * b < 0) found.insert(place);
      if (c != 0 || d != 0) continue;
      const bool byX = e.a.x() != e.b.x();
      const auto at = [byX](const V& p) { return byX ? p.x() : p.y(); };
      const double low = std::max(std::min(at(e.a), at(e.b)), std::min(at(f.a), at(f.b)));
      const double high = std::min(std::max(at(e.a), at(e.b)), std::max(at(f.a), at(f.b)));
      if (low < high) {
        Place overlap = place;
        std::get<6>(overlap) = 1;
        found.insert(overlap);
      }
    }
  }
  return found;
}

bool vertexIn(const V& p, const slow::Set& set) {
  for (const judge::Ring& ring : judge::ringsOf(set)) {
    if (std::find(ring.begin(), ring.end(), p) != ring.end()) return true;
  }
  return false;
}

// True of rings none of which repeats a point or lies on one line.
bool ringsAreUsable(const slow::Set& set) {
  for (const judge::Ring& ring : judge::ringsOf(set)) {
    bool flat = true;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      if (ring[i] == ring[(i + 1) % ring.size()]) return false;
      flat = flat && gx_Orientation(ring[0], ring[1], ring[i]) == 0;
    }
    if (flat) return false;
  }
  return true;
}

TEST(CheckSlowTruth, findsTheCrossingsAndOverlapsOfAllPairs) {
  RandomShapes random("check against all pairs", 1500);
  int compared = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Set set = overlayOperands(random, someFamily(random), 1)[0];
    if (!ringsAreUsable(set)) continue;
    if (std::any_of(set.begin(), set.end(), [](const slow::Region& r) {
          return std::any_of(r.holes.begin(), r.holes.end(),
                             [](const slow::Region& h) { return !h.holes.empty(); });
        })) {
      continue;
    }
    ++compared;
    std::set<Place> found;
    for (const gxProblem& p : gfCheck(judge::setFrom(set))) {
      const bool crossing = p.kind == Kind::eCrossing || p.kind == Kind::eHoleCrossesHole;
      if (!crossing && p.kind != Kind::eOverlap) continue;
      // Through a vertex: a meeting of more than these two edges, which the all-pairs form leaves out.
      if (crossing && vertexIn(p.point, set) &&
          plainMeetings(set).count(
              {p.regions[0], p.rings[0], p.edges[0], p.regions[1], p.rings[1], p.edges[1], 0}) == 0)
        continue;
      found.insert({p.regions[0], p.rings[0], p.edges[0], p.regions[1], p.rings[1], p.edges[1],
                    p.kind == Kind::eOverlap ? 1 : 0});
    }
    EXPECT_EQ(found, plainMeetings(set));
  }
  EXPECT_GT(compared, 500 * random.share());
}

// Puts every vertex that lies within an edge into that edge.
slow::Set splitAtContacts(slow::Set set) {
  const judge::Rings all = judge::ringsOf(set);
  const auto split = [&](judge::Ring& ring) {
    judge::Ring result;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const V& a = ring[i];
      const V& b = ring[(i + 1) % ring.size()];
      judge::Ring on;
      for (const judge::Ring& other : all) {
        for (const V& p : other) {
          const bool inBox = p.x() >= std::min(a.x(), b.x()) && p.x() <= std::max(a.x(), b.x()) &&
                             p.y() >= std::min(a.y(), b.y()) && p.y() <= std::max(a.y(), b.y());
          if (inBox && gx_Orientation(a, b, p) == 0 && !(p == a) && !(p == b)) on.push_back(p);
        }
      }
      const auto before = [&](const V& p, const V& q) {
        return std::abs(p.x() - a.x()) + std::abs(p.y() - a.y()) <
               std::abs(q.x() - a.x()) + std::abs(q.y() - a.y());
      };
      std::sort(on.begin(), on.end(), before);
      on.erase(std::unique(on.begin(), on.end()), on.end());
      result.push_back(a);
      result.insert(result.end(), on.begin(), on.end());
    }
    ring = result;
  };
  for (slow::Region& region : set) {
    split(region.outline);
    for (slow::Region& hole : region.holes) split(hole.outline);
  }
  return set;
}

TEST(CheckSlowTruth, findsSomethingExactlyWhereThePlainJudgeDoes) {
  RandomShapes random("check against the judge", 4000);
  int valid = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Set set = nearlyValidSet(random);
    const std::string fault = judge::faultOf(splitAtContacts(set));
    const auto problems = gfCheck(judge::setFrom(set));
    EXPECT_EQ(problems.empty(), fault.empty()) << fault << (problems.empty() ? "" : problems[0].sentence)
                                               << testing::PrintToString(judge::ringsOf(set));
    valid += fault.empty() ? 1 : 0;
  }
  EXPECT_GT(valid, 200 * random.share());
}

}  // namespace
