// How two rings lie to each other, where one look settles it.
// Covers overlay/internal/two_rings.h
#include <overlay/internal/two_rings.h>

#include <overlay/cgal_judge.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>
#include <support/slab_judge.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

namespace {

using V = gxVector<2>;
using Ring = std::vector<V>;

// As letters: I interiors meet, B borders, 1 first beyond, 2 second beyond; "?" for not settled.
std::string lettersOf(const std::optional<gx_Relation>& r) {
  if (!r) return "?";
  return std::string(r->interiorsMeet ? "I" : "") + (r->bordersMeet ? "B" : "") +
         (r->firstBeyond ? "1" : "") + (r->secondBeyond ? "2" : "");
}

std::string relationOf(const Ring& a, const Ring& b) {
  return lettersOf(gx_relateTwoRings(a, b, {}));
}

Ring of(const char* text) {
  return pointsOf(text);
}

Ring wheel(int count, double radius) {
  Ring ring;
  for (int i = 0; i < count; ++i) {
    const double angle = 6.283185307179586 * i / count;
    ring.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  return ring;
}

const Ring kSquare = pointsOf("0 0, 10 0, 10 10, 0 10");

TEST(TwoRings, OneCrossingSettlesEverything) {
  EXPECT_EQ(relationOf(kSquare, of("5 5, 15 5, 15 15, 5 15")), "IB12");
  EXPECT_EQ(relationOf(kSquare, of("5 5, 5 15, 15 15, 15 5")), "IB12") << "the other way round";
  EXPECT_EQ(relationOf(kSquare, of("-1 4, 11 4, 11 6, -1 6")), "IB12") << "right across";
}

TEST(TwoRings, WithoutACommonPointOneVertexTells) {
  EXPECT_EQ(relationOf(kSquare, of("2 2, 4 2, 4 4")), "I1");
  EXPECT_EQ(relationOf(of("2 2, 4 2, 4 4"), kSquare), "I2");
  EXPECT_EQ(relationOf(kSquare, of("20 0, 30 0, 30 10")), "12") << "boxes apart";
  EXPECT_EQ(relationOf(of("0 0, 10 0, 10 1, 1 1, 1 10, 0 10"), of("5 5, 6 5, 6 6")), "12")
      << "boxes in each other";
}

TEST(TwoRings, WhatOnlyTouchesIsLeft) {
  EXPECT_EQ(relationOf(kSquare, kSquare), "?");
  EXPECT_EQ(relationOf(kSquare, of("10 0, 20 0, 20 10, 10 10")), "?") << "side by side";
  EXPECT_EQ(relationOf(kSquare, of("10 5, 5 8, 5 2")), "?") << "touching from within";
  EXPECT_EQ(relationOf(kSquare, of("0 0, 10 10, 15 -5")), "?") << "through corners";
}

TEST(TwoRings, RingsThatCrossThemselvesCount) {
  const Ring bow = of("0 0, 10 10, 10 0, 0 10");
  EXPECT_EQ(relationOf(bow, of("1 3, 2 4, 2 6")), "I1") << "in the left wing";
  EXPECT_EQ(relationOf(bow, of("4 8, 5 7, 6 8")), "12") << "between the wings";
  EXPECT_EQ(relationOf(bow, of("4 2, 7 4, 4 4.5")), "IB12");
}

TEST(TwoRings, ACrossingOnAThirdEdgeIsLeft) {
  // Two bows whose four diagonals meet in one point, and which have that point in common and no area.
  const Ring bow = of("0 0, 100 100, 100 0, 0 100");
  EXPECT_EQ(relationOf(bow, of("49 90, 51 90, 49 10, 51 10")), "?");
  EXPECT_EQ(relationOf(bow, of("49 90, 51 90, 49 10, 51 10, 150 50")), "IB12")
      << "and a side is crossed";
}

TEST(TwoRings, AnEdgeThatIsThereTwiceIsNoBorder) {
  const Ring spike = of("0 0, 10 0, 20 0, 10 0, 10 10, 0 10");
  EXPECT_EQ(relationOf(spike, of("15 -1, 16 -1, 15 1")), "?");
  const Ring twice = of("0 0, 10 0, 10 10, 0 10, 0 0, 10 0, 10 10, 0 10");
  EXPECT_EQ(relationOf(twice, of("5 5, 15 5, 15 15, 5 15")), "?");
  EXPECT_EQ(relationOf(twice, of("2 2, 4 2, 4 4")), "?") << "it holds nothing";
}

TEST(TwoRings, RingsWithoutAreaAreLeft) {
  EXPECT_EQ(relationOf(kSquare, of("2 2, 4 4, 6 6")), "?");
  EXPECT_EQ(relationOf(of("2 2, 4 4, 3 3"), kSquare), "?");
  EXPECT_EQ(relationOf(kSquare, of("2 2, 4 2")), "?");
  EXPECT_EQ(relationOf(Ring(), kSquare), "?");
  EXPECT_EQ(relationOf(kSquare, of("2 2, 2 2, 4 2, 4 4")), "?") << "the first vertex stands twice";
}

TEST(TwoRings, WhatIsNotFiniteIsLeft) {
  EXPECT_EQ(relationOf(kSquare, of("20 20, nan 21, 22 22")), "?");
  EXPECT_EQ(relationOf(of("20 20, 30 inf, 22 22"), kSquare), "?");
}

TEST(TwoRings, AsksWhetherToStop) {
  // Boxes of both rings meet all around, their edges nowhere.
  gxOverlayLimits limits;
  int asked = 0;
  limits.stop = [&asked] { return ++asked == 2; };
  EXPECT_THROW(gx_relateTwoRings(wheel(20000, 1.0), wheel(20000, 1.00001), limits), gxStopped);
  EXPECT_EQ(asked, 2);
}

TEST(TwoRings, LargeRingsAreSearchedToTheEnd) {
  const Ring outer = wheel(3000, 1.001);
  const Ring inner = wheel(3000, 1.0);
  EXPECT_EQ(relationOf(outer, inner), "I1");
  EXPECT_EQ(relationOf(inner, outer), "I2");
  for (const std::size_t tooth : {0U, 7U, 8U, 63U, 64U, 511U, 512U, 2999U}) {
    Ring with = inner;
    with[tooth] = with[tooth] * 1.002;
    EXPECT_EQ(relationOf(outer, with), "IB12") << tooth;
    EXPECT_EQ(relationOf(with, outer), "IB12") << tooth;
  }
}

// ---- Against areas --------------------------------------------------------------------------------

std::string relationByAreas(const Ring& a, const Ring& b, bool bordersMeet, bool lattice) {
  const auto has = [&](bool inA, bool inB) {
    const judge::Question question =
        judge::combined({{{a, {}}}, {{b, {}}}}, judge::Rule::eEvenOdd,
                        [&](const std::vector<bool>& held) { return held[0] == inA && held[1] == inB; });
    return (lattice ? judge::judgeBySlabs(question) : judge::judgeByCgal(question)).area != 0.0;
  };
  return std::string(has(true, true) ? "I" : "") + (bordersMeet ? "B" : "") +
         (has(true, false) ? "1" : "") + (has(false, true) ? "2" : "");
}

Ring latticeRing(RandomShapes& random, int most) {
  Ring ring;
  const int count = random.integer(3, 7);
  const int x = random.integer(0, most);
  const int y = random.integer(0, most);
  const int size = random.integer(2, most);
  for (int i = 0; i < count; ++i) {
    ring.emplace_back(x + random.integer(0, size), y + random.integer(0, size));
  }
  return ring;
}

// A rectangle around the middle of the lattice, with a dent or a crossing in it.
Ring largeRing(RandomShapes& random, int most) {
  return {V(-1, random.integer(-2, 1)), V(2 * most, -1), V(random.integer(most, 2 * most), most),
          V(2 * most + random.integer(-1, 1), 2 * most), V(0, 2 * most + 1)};
}

TEST(TwoRingsSlowTruth, WhatIsSettledIsWhatAreasTell) {
  RandomShapes random("two rings", 4000);
  std::map<std::string, int> seen;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const bool lattice = !random.chance(0.05);
    Ring a;
    Ring b;
    if (lattice) {
      const int most = random.integer(3, 24);
      a = random.chance(0.2) ? largeRing(random, most) : latticeRing(random, most);
      b = random.chance(0.2) ? largeRing(random, most) : latticeRing(random, most);
    } else {
      const auto pair = overlayOperands(
          random, random.chance(0.5) ? OverlayFamily::eGeneral : OverlayFamily::eThin, 2);
      a = pair[0][0].outline;
      b = pair[1][0].outline;
    }
    const auto relation = gx_relateTwoRings(a, b, {});
    ++seen[lettersOf(relation)];
    if (!relation) continue;
    ASSERT_EQ(lettersOf(relation), relationByAreas(a, b, relation->bordersMeet, lattice))
        << testing::PrintToString(a) << testing::PrintToString(b);
    const auto turned = gx_relateTwoRings(rotatedStart(reversed(a), 1), b, {});
    ASSERT_EQ(lettersOf(turned), lettersOf(relation));
  }
  for (const char* relation : {"12", "I1", "I2", "IB12", "?"}) {
    EXPECT_GT(seen[relation], 20 * random.share()) << relation;
  }
}

}  // namespace
