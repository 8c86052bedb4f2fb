// Covers overlay/internal/ring_boxes.h
#include <overlay/internal/ring_boxes.h>

#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <cmath>

#include <algorithm>
#include <set>
#include <utility>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Pair = std::pair<std::size_t, std::size_t>;

constexpr auto kNoTick = [](std::size_t) {};

TEST(RingBoxes, EdgesRunFromAPointToTheNextAndAroundTheEnd) {
  const Points points = pointsOf("0 0, 4 1, 3 5");
  const gx_RingBoxes ring(points);
  EXPECT_TRUE(ring.isFinite());
  EXPECT_EQ(ring.size(), 3U);
  EXPECT_EQ(ring.from(2), V(3, 5));
  EXPECT_EQ(ring.to(2), V(0, 0));
  EXPECT_EQ(ring.boxOf(1).lowX, 3.0);
  EXPECT_EQ(ring.top(), 0U);
  EXPECT_EQ(ring.box(0, 0).highY, 5.0);
  EXPECT_EQ(ring.first(), 0U);
}

TEST(RingBoxes, OfEqualXTheLowerPointIsFirst) {
  const Points points = pointsOf("1 0, 0 3, 0 2, 0 4");
  EXPECT_EQ(gx_RingBoxes(points).first(), 2U);
}

TEST(RingBoxes, TellThatACoordinateIsNotFinite) {
  for (const char* text : {"0 0, 1 nan, 2 2", "0 0, 1 1, inf 2", "-inf 0, 1 1, 2 2"}) {
    const Points points = pointsOf(text);
    EXPECT_FALSE(gx_RingBoxes(points).isFinite()) << text;
  }
  Points many(20, V(1, 2));
  many[3] = V(1, std::nan(""));  // in the first run of three
  EXPECT_FALSE(gx_RingBoxes(many).isFinite());
}

TEST(RingBoxes, FindAllPairsThatMeetAndAllEdgesThatABoxMeets) {
  RandomShapes random("ring boxes", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    // Of sizes around those at which a level begins.
    constexpr int kSizes[] = {1, 2, 7, 8, 9, 63, 64, 65, 70, 513};
    const int n = kSizes[random.integer(0, 9)];
    Points points;
    // Steps this way and that, and ways straight on for some runs.
    V at(0, 0);
    int dx = 1;
    int dy = 1;
    for (int i = 0; i < n; ++i) {
      if (random.chance(0.15)) dx = random.integer(-2, 2);
      if (random.chance(0.15)) dy = random.integer(-2, 2);
      at += V(dx, dy);
      points.push_back(at);
    }
    const gx_RingBoxes ring(points);
    std::set<Pair> mayMeet;
    std::set<Pair> meet;
    for (std::size_t j = 0; j < ring.size(); ++j) {
      for (std::size_t i = 0; i < j; ++i) {
        const bool neighbours = j == i + 1 || (i == 0 && j + 1 == ring.size());
        if (neighbours || !ring.boxOf(i).meets(ring.boxOf(j))) continue;
        mayMeet.insert({i, j});
        const auto kind = gx_meetingOf(ring.from(i), ring.to(i), ring.from(j), ring.to(j)).kind;
        if (kind != gx_EdgeMeeting::eApart) meet.insert({i, j});
      }
    }
    std::set<Pair> found;
    std::size_t visits = 0;
    EXPECT_FALSE(ring.forEachPair(
        [&](std::size_t i, std::size_t j) {
          ++visits;
          found.insert({i, j});
          return false;
        },
        kNoTick));
    EXPECT_EQ(visits, found.size()) << "none twice";
    EXPECT_TRUE(std::includes(found.begin(), found.end(), meet.begin(), meet.end()));
    EXPECT_TRUE(std::includes(mayMeet.begin(), mayMeet.end(), found.begin(), found.end()));
    gx_Box box;
    box.add(V(random.uniform(-60, 60), random.uniform(-60, 60)));
    box.add(V(random.uniform(-60, 60), random.uniform(-60, 60)));
    std::vector<std::size_t> met;
    EXPECT_FALSE(ring.search(box, [&](std::size_t edge) {
      met.push_back(edge);
      return false;
    }));
    std::vector<std::size_t> all;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      if (ring.boxOf(i).meets(box)) all.push_back(i);
    }
    EXPECT_EQ(met, all);
  }
}

TEST(RingBoxes, ARunThatGoesOneWayIsNotHeldAgainstItselfNorAgainstTheNextThatDoes) {
  // 16 steps to the right, two runs; then back above, with a tooth in the first edge that reaches below.
  Points points;
  for (int i = 0; i < 16; ++i) points.emplace_back(i, i % 2);
  points.emplace_back(15, 9);
  points.emplace_back(0, 9);
  std::set<Pair> found;
  gx_RingBoxes(points).forEachPair(
      [&](std::size_t i, std::size_t j) {
        found.insert({i, j});
        return false;
      },
      kNoTick);
  EXPECT_TRUE(found.empty());
  points[16] = V(14.5, 0.5);
  points[17] = V(0.25, 0.125);
  gx_RingBoxes(points).forEachPair(
      [&](std::size_t i, std::size_t j) {
        found.insert({i, j});
        return false;
      },
      kNoTick);
  EXPECT_TRUE(found.count({0, 16}) == 1 && found.count({13, 16}) == 1);
}

TEST(RingBoxes, SearchesEndWhereTheVisitSaysSo) {
  Points points;
  for (int i = 0; i < 100; ++i) points.emplace_back(i % 10, i % 7);
  const gx_RingBoxes ring(points);
  int visits = 0;
  EXPECT_TRUE(ring.forEachPair([&](std::size_t, std::size_t) { return ++visits == 5; }, kNoTick));
  EXPECT_EQ(visits, 5);
  visits = 0;
  EXPECT_TRUE(ring.search({0, 0, 9, 9}, [&](std::size_t) { return ++visits == 30; }));
  EXPECT_EQ(visits, 30);
}

TEST(RingBoxes, TellOfThePairsThatWereLookedAt) {
  Points points;
  for (int i = 0; i < 64; ++i) points.emplace_back(i % 8, i % 5);
  std::size_t looked = 0;
  gx_RingBoxes(points).forEachPair([](std::size_t, std::size_t) { return false; },
                                   [&looked](std::size_t count) { looked += count; });
  EXPECT_EQ(looked, 8U * (8 + 28)) << "8 runs within themselves, 28 pairs of runs";
}

}  // namespace
