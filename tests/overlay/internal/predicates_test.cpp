// What two edges have in common, and the sign of an area: by hand, and against integers on lattices.
#include <overlay/internal/predicates.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

using P = gxVector<2>;
using M = gx_EdgeMeeting;
__extension__ using Wide = __int128;

// The slow plain form, on whole numbers: the points of the lattice refined until all ends and crossings of
// short edges are counted would be too many; so the edges are cut by their parameters as fractions.
Wide crossOf(const P& a, const P& b, const P& c) {
  const auto w = [](double v) { return static_cast<Wide>(v); };
  return (w(b.x()) - w(a.x())) * (w(c.y()) - w(a.y())) - (w(b.y()) - w(a.y())) * (w(c.x()) - w(a.x()));
}

bool isOn(const P& p, const P& a, const P& b) {
  return crossOf(a, b, p) == 0 && p.x() >= std::min(a.x(), b.x()) && p.x() <= std::max(a.x(), b.x()) &&
         p.y() >= std::min(a.y(), b.y()) && p.y() <= std::max(a.y(), b.y());
}

M slow(const P& a, const P& b, const P& c, const P& d) {
  unsigned ends = 0;
  if (isOn(a, c, d)) ends |= M::eA;
  if (isOn(b, c, d)) ends |= M::eB;
  if (isOn(c, a, b)) ends |= M::eC;
  if (isOn(d, a, b)) ends |= M::eD;
  std::vector<P> shared;
  if ((ends & M::eA) != 0) shared.push_back(a);
  if ((ends & M::eB) != 0) shared.push_back(b);
  if ((ends & M::eC) != 0) shared.push_back(c);
  if ((ends & M::eD) != 0) shared.push_back(d);
  if (shared.empty()) {
    const bool crossing = (crossOf(a, b, c) > 0) != (crossOf(a, b, d) > 0) &&
                          (crossOf(c, d, a) > 0) != (crossOf(c, d, b) > 0) && crossOf(a, b, c) != 0 &&
                          crossOf(a, b, d) != 0 && crossOf(c, d, a) != 0 && crossOf(c, d, b) != 0;
    return {crossing ? M::eCrossing : M::eApart, 0};
  }
  for (const P& p : shared) {
    if (!(p == shared[0])) return {M::eOverlap, static_cast<unsigned char>(ends)};
  }
  return {M::eTouching, static_cast<unsigned char>(ends)};
}

void expectMeeting(const P& a, const P& b, const P& c, const P& d, M::Kind kind, unsigned ends) {
  const M m = gx_meetingOf(a, b, c, d);
  EXPECT_EQ(m.kind, kind);
  EXPECT_EQ(m.ends, ends);
}

}  // namespace

TEST(Predicates, EdgesThatCrossInsideBoth) {
  expectMeeting({0, 0}, {4, 4}, {0, 4}, {4, 0}, M::eCrossing, 0);
}

TEST(Predicates, EdgesWhoseLinesCrossOutsideOfOne) {
  expectMeeting({0, 0}, {4, 4}, {0, 4}, {1, 3}, M::eApart, 0);
  expectMeeting({0, 4}, {1, 3}, {0, 0}, {4, 4}, M::eApart, 0);
}

TEST(Predicates, AnEndInsideOfTheOtherEdge) {
  expectMeeting({0, 0}, {4, 0}, {2, 0}, {2, 3}, M::eTouching, M::eC);
  expectMeeting({2, 0}, {2, 3}, {0, 0}, {4, 0}, M::eTouching, M::eA);
}

TEST(Predicates, EndsThatAreEqual) {
  expectMeeting({0, 0}, {4, 0}, {4, 0}, {5, 3}, M::eTouching, M::eB | M::eC);
  expectMeeting({0, 0}, {4, 0}, {4, 0}, {5, 0}, M::eTouching, M::eB | M::eC);
}

TEST(Predicates, EdgesOnOneLineThatShareAStretch) {
  expectMeeting({0, 0}, {4, 0}, {2, 0}, {6, 0}, M::eOverlap, M::eB | M::eC);
  expectMeeting({0, 0}, {4, 0}, {1, 0}, {2, 0}, M::eOverlap, M::eC | M::eD);
  expectMeeting({0, 0}, {4, 0}, {4, 0}, {2, 0}, M::eOverlap, M::eB | M::eC | M::eD);
}

TEST(Predicates, TheSameEdgeInEitherDirection) {
  expectMeeting({0, 0}, {4, 1}, {0, 0}, {4, 1}, M::eOverlap, 15);
  expectMeeting({0, 0}, {4, 1}, {4, 1}, {0, 0}, M::eOverlap, 15);
}

TEST(Predicates, EdgesOnOneLineApart) {
  expectMeeting({0, 0}, {1, 0}, {2, 0}, {3, 0}, M::eApart, 0);
  expectMeeting({0, 0}, {0, 1}, {0, 2}, {0, 3}, M::eApart, 0);
}

TEST(Predicates, AnEdgeOfNoLengthIsAPoint) {
  expectMeeting({0, 0}, {4, 0}, {2, 0}, {2, 0}, M::eTouching, M::eC | M::eD);
  expectMeeting({0, 0}, {4, 0}, {2, 1}, {2, 1}, M::eApart, 0);
  expectMeeting({2, 0}, {2, 0}, {2, 0}, {2, 0}, M::eTouching, 15);
}

TEST(Predicates, AnEndOneBitBesideTheEdge) {
  const double up = std::numeric_limits<double>::denorm_min();
  expectMeeting({0, 0}, {4, 0}, {2, up}, {2, 3}, M::eApart, 0);
  expectMeeting({0, 0}, {4, 0}, {2, -up}, {2, 3}, M::eCrossing, 0);
  expectMeeting({0, 0}, {1e300, 0}, {2, -up}, {2, 1e300}, M::eCrossing, 0);
}

TEST(Predicates, RandomEdgesOfALatticeMeetAsIntegersSay) {
  std::mt19937 random(7);
  int seen[4] = {};
  for (int round = 0; round < 200000; ++round) {
    const int size = 1 + static_cast<int>(random() % 6);
    std::uniform_int_distribution<int> at(-size, size);
    const double far = round % 3 == 0 ? 4503599627370496.0 : 0.0;
    const auto point = [&] { return P(at(random) + far, at(random)); };
    const P a = point();
    const P b = point();
    const P c = point();
    const P d = point();
    const M expected = slow(a, b, c, d);
    const M m = gx_meetingOf(a, b, c, d);
    ASSERT_EQ(m.kind, expected.kind) << "round " << round;
    ASSERT_EQ(m.ends, expected.ends) << "round " << round;
    ++seen[m.kind];
  }
  for (const int count : seen) EXPECT_GT(count, 1000);
}

TEST(Predicates, AFoldGoesBackTheWayItCame) {
  EXPECT_TRUE(gx_isFold({0, 0}, {4, 0}, {2, 0}));
  EXPECT_TRUE(gx_isFold({0, 0}, {4, 2}, {0, 0}));
  EXPECT_TRUE(gx_isFold({0, 0}, {4, 2}, {-4, -2}));
  EXPECT_TRUE(gx_isFold({0, 0}, {0, 2}, {0, -4}));
  EXPECT_FALSE(gx_isFold({0, 0}, {4, 0}, {6, 0}));
  EXPECT_FALSE(gx_isFold({0, 0}, {4, 2}, {0, 0.5}));
  EXPECT_FALSE(gx_isFold({4, 0}, {4, 0}, {4, 0}));
  EXPECT_FALSE(gx_isFold({0, 0}, {4, 0}, {4, 0}));
}

TEST(Predicates, ThePointBeforeIsTheOneFurtherLeftThenTheLower) {
  EXPECT_TRUE(gx_before({0, 5}, {1, 0}));
  EXPECT_TRUE(gx_before({0, 0}, {0, 1}));
  EXPECT_FALSE(gx_before({0, 1}, {0, 1}));
  EXPECT_FALSE(gx_before({-0.0, 1}, {0.0, 1}));
  EXPECT_FALSE(gx_before({1, 0}, {0, 5}));
}

TEST(SignOfArea, OfRingsEitherWayRound) {
  const std::vector<P> square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  EXPECT_EQ(gx_signOfArea(square.data(), 4), 1);
  const std::vector<P> reversed(square.rbegin(), square.rend());
  EXPECT_EQ(gx_signOfArea(reversed.data(), 4), -1);
}

TEST(SignOfArea, IsZeroOfABowAFlatRingAndFewPoints) {
  const std::vector<P> bow = {{0, 0}, {10, 10}, {10, 0}, {0, 10}};
  EXPECT_EQ(gx_signOfArea(bow.data(), 4), 0);
  const std::vector<P> flat = {{0, 0}, {0.1, 0.1}, {0.3, 0.3}};
  EXPECT_EQ(gx_signOfArea(flat.data(), 3), 0);
  EXPECT_EQ(gx_signOfArea(flat.data(), 2), 0);
  EXPECT_EQ(gx_signOfArea(nullptr, 0), 0);
}

TEST(SignOfArea, OfATriangleOneBitHigh) {
  const double up = std::nextafter(0.3, 1.0);
  const std::vector<P> thin = {{0.1, 0.1}, {0.3, 0.3}, {0.3, up}};
  EXPECT_EQ(gx_signOfArea(thin.data(), 3), 1);
  const std::vector<P> far = {
      {1e300, 1e300}, {-1e300, -1e300}, {0, std::numeric_limits<double>::denorm_min()}};
  EXPECT_EQ(gx_signOfArea(far.data(), 3), -1);
}

TEST(SignOfArea, RandomRingsOfALatticeFarAwayHaveTheSignThatIntegersGive) {
  std::mt19937 random(8);
  for (int round = 0; round < 20000; ++round) {
    std::uniform_int_distribution<std::int64_t> at(0, 1 + static_cast<std::int64_t>(random() % 5));
    std::vector<P> ring;
    Wide twice = 0;
    for (int i = 0; i < 3 + round % 9; ++i) {
      ring.emplace_back(4503599627370496.0 + static_cast<double>(at(random)),
                        static_cast<double>(at(random)));
    }
    for (std::size_t i = 2; i < ring.size(); ++i) twice += crossOf(ring[0], ring[i - 1], ring[i]);
    ASSERT_EQ(gx_signOfArea(ring.data(), ring.size()), (twice > 0) - (twice < 0)) << "round " << round;
  }
}
